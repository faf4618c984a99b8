// The outer shadow's shift and margins (the passes: goldens and the inner shadow's same-bytes test).
#include "filters/MaskFixtures.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

TEST(OuterShadowLayer, ShiftAndSideMargins)
{
    const float kNaN = std::nanf("");
    // Halves round away from zero; far distances saturate; whole turns of the angle wrap (the
    // goldens pin the ordinary shifts and margins).
    const struct {
        float angle, distance, size;
        int shiftX, shiftY, left, right, top, bottom;
    } cases[] = {
        {180, 2.5f, 0, 3, 0, 0, 3, 0, 0},
        {0, 1e30f, 3, INT_MIN, 0, INT_MAX, 0, 3, 3},
        {360.0f * 1000 + 90, 5, 0, 0, 5, 0, 0, 0, 5},
        {kNaN, kNaN, kNaN, 0, 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        auto s = outerOf(c.angle, c.distance, c.size);
        EXPECT_EQ(std::vector<int>({s->getShiftX(), s->getShiftY(), s->getLeftOffset(), s->getRightOffset(),
                                    s->getTopOffset(), s->getBottomOffset()}),
                  std::vector<int>({c.shiftX, c.shiftY, c.left, c.right, c.top, c.bottom}))
            << c.angle << " " << c.distance << " " << c.size;
    }
    // With NaN everywhere the shadow is the mask itself: no shift and no blur.
    const Mask m = disc(20, 6);
    FilterRun nan(m);
    EXPECT_EQ(nan.run(*outerOf(kNaN, kNaN, kNaN)), 1);
    EXPECT_EQ(nan.alphaPlane(), m.pixels);
    // An inner-shadow record is read as a shadow record.
    auto s = outerOf(0, 5, 3);
    LmInnerShadowProperty inner(270, 4, 2, 0xFF000000, 0.5f);
    s->setProperty(&inner);
    EXPECT_EQ(s->getShiftY(), -4);
}

TEST(OuterShadowLayer, ShadowOutsideTheTargetIsSkipped)
{
    FilterRun run(rect(20, 20, 2, 2, 6, 6));
    EXPECT_EQ(run.run(*outerOf(0, 30, 3)), 0);  // right + 2R + shiftX < 0
    EXPECT_EQ(run.run(*outerOf(90, 40, 3)), 0); // top - 2R + shiftY >= height
    EXPECT_TRUE(run.untouched());
    EXPECT_EQ(run.run(*outerOf(0, 12, 3)), 1); // right + 2R + shiftX = 0 still reaches
}
