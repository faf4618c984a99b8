#include "text/LmView.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace LmFontEffect;

TEST(View, NegativeSizesAreRefusedAndLeaveValuesZeroIsAccepted)
{
    LmView view;
    EXPECT_EQ(view.GetDrawingBitmapSize()[0], 0);  // zeroed before any render
    ASSERT_TRUE(view.SetSize(20, 30) && view.SetBitmapWidth(40) && view.SetBitmapHeight(50));

    LmTest::LogCapture log;
    EXPECT_EQ(view.SetSize(-1, 5), 0);
    EXPECT_EQ(view.SetBitmapWidth(-1), 0);
    EXPECT_EQ(view.SetBitmapHeight(-7), 0);
    EXPECT_EQ(view.GetWidth(), 20);
    EXPECT_EQ(view.GetHeight(), 30);
    EXPECT_EQ(view.GetDrawingBitmapSize()[0], 40);
    EXPECT_EQ(view.GetDrawingBitmapSize()[1], 50);
    EXPECT_TRUE(log.contains("LmView", "SetSize() - size invalid"));
    EXPECT_TRUE(log.contains("LmView", "SetBitmapWidht() - width[-1] is invalid"));
    EXPECT_TRUE(log.contains("LmView", "SetBitmapHeight() - height[-7] is invalid"));
    for (const auto& line : log.lines()) EXPECT_EQ(line.priority, 6);

    EXPECT_TRUE(view.SetSize(0, 0) && view.SetBitmapWidth(0) && view.SetBitmapHeight(0));
    EXPECT_EQ(view.GetBitmapWidth() + view.GetBitmapHeight() + view.GetWidth(), 0);
}
