// Raw records past the stack's sizes: refused (warning, error 3) only when the work is huge.

#include "filters/MaskFixtures.h"

#include "effect/LmBevelProperty.h"
#include "effect/LmEmbossProperty.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"
#include "foundation/Error.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace LmFontEffect;
using namespace LmTest;

TEST(WorkBound, LargestRecordsOnALargeBoxAreRefused)
{
    LmBevelProperty bevel(0, 1000.0f, 3, 1, 0, 0, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    std::unique_ptr<LmECore> layers[] = {strokeOf(1000, OUTSIDE), strokeOf(1000, INSIDE), outerOf(120, 5, 1000),
                                         glowOf(3, 1000), glowOf(2, 1000), std::make_unique<LmBevel>()};
    layers[5]->setProperty(&bevel);
    const char* names[] = {"stroke", "stroke", "outer shadow", "outer glow", "inner glow", "bevel or emboss"};
    for (int i = 0; i < 6; ++i) {
        FilterRun run(rect(2000, 1000, 0, 0, 2000, 1000));
        LogCapture log;
        Error::SetError(0);
        EXPECT_TRUE(run.run(*layers[i]) == 0 && Error::GetError() == 3 && run.untouched()) << names[i];
        ASSERT_EQ(log.lines().size(), 1u) << names[i];
        EXPECT_NE(log.lines()[0].message.find(std::string(names[i]) + " refused"), std::string::npos);
    }
    // The same stroke on a small box is drawn.
    FilterRun small(rect(8, 8, 3, 3, 5, 5), 8, 8);
    Error::SetError(0);
    EXPECT_TRUE(small.run(*strokeOf(1000, OUTSIDE)) == 1 && Error::GetError() == 0);
    small.expectAlphas({{0, 0, 255}, {7, 7, 255}});
}

// The windowed searches of an outside chiselled bevel or emboss cost about their reach per pixel
// of a canvas that grows with it: raw sizes of a few hundred on small text are refused too.
TEST(WorkBound, WideReliefSearchesAreRefusedEvenOnSmallText)
{
    LmBevelProperty bevel(2, 514.0f, 3, 1, 1, 16, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    LmEmbossProperty emboss(2, 1000.0f, 3, 1, 1, 0, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    LmBevel b;
    LmEmboss e;
    b.setProperty(&bevel);
    e.setProperty(&emboss);
    for (LmECore* layer : {static_cast<LmECore*>(&b), static_cast<LmECore*>(&e)}) {
        FilterRun run(rect(40, 20, 5, 5, 35, 15), 64, 64);
        LogCapture log;
        Error::SetError(0);
        EXPECT_TRUE(run.run(*layer) == 0 && Error::GetError() == 3 && run.untouched());
        ASSERT_EQ(log.lines().size(), 1u);
        EXPECT_NE(log.lines()[0].message.find("bevel or emboss search refused"), std::string::npos);
    }
}
