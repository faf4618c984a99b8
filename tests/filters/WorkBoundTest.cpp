// Raw records past the effect stack's sizes: refused with a warning and error 3 when the work
// would run for minutes, drawn as usual when it stays small.

#include "filters/MaskFixtures.h"

#include "effect/LmBevelProperty.h"
#include "filters/LmBevel.h"
#include "foundation/Error.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace LmFontEffect;
using namespace LmTest;

TEST(WorkBound, LargestRecordsOnALargeBoxAreRefused)
{
    const Mask big = rect(2000, 1000, 0, 0, 2000, 1000);
    LmBevelProperty bevel(0, 1000.0f, 3, 1, 0, 0, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    LmBevel bevelLayer;
    bevelLayer.setProperty(&bevel);
    struct Case {
        const char* name;
        std::unique_ptr<LmECore> layer;
    };
    Case cases[] = {{"stroke", strokeOf(1000, OUTSIDE)},
                    {"stroke", strokeOf(1000, INSIDE)},
                    {"outer shadow", outerOf(120, 5, 1000)},
                    {"outer glow", glowOf(3, 1000)},
                    {"inner glow", glowOf(2, 1000)}};
    auto refused = [&](LmECore& layer, const char* name) {
        FilterRun run(big);
        LogCapture log;
        Error::SetError(0);
        EXPECT_EQ(run.run(layer), 0) << name;
        EXPECT_EQ(Error::GetError(), 3u) << name;
        ASSERT_EQ(log.lines().size(), 1u) << name;
        EXPECT_NE(log.lines()[0].message.find(std::string(name) + " refused"), std::string::npos) << name;
        EXPECT_TRUE(run.untouched()) << name;
    };
    for (Case& c : cases) refused(*c.layer, c.name);
    refused(bevelLayer, "bevel or emboss");
}

TEST(WorkBound, LargestStrokeOnASmallBoxIsDrawn)
{
    FilterRun run(rect(8, 8, 3, 3, 5, 5), 8, 8);
    Error::SetError(0);
    EXPECT_EQ(run.run(*strokeOf(1000, OUTSIDE)), 1);
    EXPECT_EQ(Error::GetError(), 0u);
    run.expectAlphas({{0, 0, 255}, {7, 7, 255}});
}
