#include "text/LmView.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace LmFontEffect;

TEST(View, StartsLeftAlignedWithZeroedBitmapSize)
{
    LmView view;
    EXPECT_EQ(view.gravity, 3);
    EXPECT_EQ(view.GetWidth(), 0);
    EXPECT_EQ(view.GetHeight(), 0);
    ASSERT_NE(view.GetDrawingBitmapSize(), nullptr);
    EXPECT_EQ(view.GetDrawingBitmapSize()[0], 0);
    EXPECT_EQ(view.GetDrawingBitmapSize()[1], 0);
}

TEST(View, NegativeSizesAreRefusedAndLeaveValuesZeroIsAccepted)
{
    LmView view;
    ASSERT_EQ(view.SetSize(20, 30), 1);
    ASSERT_EQ(view.SetBitmapWidth(40), 1);
    ASSERT_EQ(view.SetBitmapHeight(50), 1);

    LmTest::LogCapture log;
    EXPECT_EQ(view.SetSize(-1, 5), 0);
    EXPECT_EQ(view.SetSize(5, -1), 0);
    EXPECT_EQ(view.SetBitmapWidth(-1), 0);
    EXPECT_EQ(view.SetBitmapHeight(-7), 0);
    EXPECT_EQ(view.GetWidth(), 20);
    EXPECT_EQ(view.GetHeight(), 30);
    EXPECT_EQ(view.GetBitmapWidth(), 40);
    EXPECT_EQ(view.GetBitmapHeight(), 50);
    EXPECT_TRUE(log.contains("LmView", "SetSize() - size invalid"));
    EXPECT_TRUE(log.contains("LmView", "SetBitmapWidht() - width[-1] is invalid"));
    EXPECT_TRUE(log.contains("LmView", "SetBitmapHeight() - height[-7] is invalid"));
    for (const auto& line : log.lines()) EXPECT_EQ(line.priority, 6);

    EXPECT_EQ(view.SetSize(0, 0), 1);
    EXPECT_EQ(view.SetBitmapWidth(0), 1);
    EXPECT_EQ(view.SetBitmapHeight(0), 1);
    EXPECT_EQ(view.GetWidth(), 0);
    EXPECT_EQ(view.GetDrawingBitmapSize()[0], 0);
    EXPECT_EQ(view.GetDrawingBitmapSize()[1], 0);
}

TEST(View, PaddingIsStoredUnchecked)
{
    LmView view;
    EXPECT_EQ(view.SetPadding(-1, 2, 3, 4), 1);
    EXPECT_EQ(view.GetPaddingLeft(), -1);
    EXPECT_EQ(view.GetPaddingTop(), 2);
    EXPECT_EQ(view.GetPaddingRight(), 3);
    EXPECT_EQ(view.GetPaddingBottom(), 4);
}
