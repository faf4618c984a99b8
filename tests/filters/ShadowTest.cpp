// The outer and inner shadows, and the Gaussian blur they share.
#include "filters/MaskFixtures.h"

#include "filters/LmGaussianBlur.h"
#include "filters/LmRelief.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

TEST(GaussianWeights, WorkedTables)
{
    const struct {
        int R, scale;
        std::vector<int> weights;
        int sum;
    } cases[] = {{0, 100, {100}, 100},          {1, 100, {100, 1}, 102}, {2, 100, {100, 32, 1}, 166},
                 {3, 100, {100, 60, 13, 1}, 248}, {1, 128, {128, 1}, 130}};
    for (const auto& c : cases) {
        std::vector<int> w((size_t)c.R + 1, -1);
        int sum = 0;
        LmGaussianBlur::computeGaussianWeights(w.data(), &sum, c.R, c.scale);
        EXPECT_EQ(w, c.weights) << c.R << "/" << c.scale;
        EXPECT_EQ(sum, c.sum) << c.R << "/" << c.scale;
        if (c.scale != 100) continue;
        // The relief blur uses the same table at scale 100.
        LmRelief::blurWeights(w.data(), &sum, c.R);
        EXPECT_EQ(w, c.weights) << c.R;
        EXPECT_EQ(sum, c.sum) << c.R;
    }
    // The curve always ends at a hundredth of the centre.
    std::vector<int> w(101);
    int sum = 0;
    LmGaussianBlur::computeGaussianWeights(w.data(), &sum, 100, 100);
    EXPECT_EQ(w[100], 1);
}

TEST(OuterShadowLayer, ShiftAndSideMargins)
{
    const float kNaN = std::nanf("");
    // Halves round away from zero; far distances saturate; whole turns of the angle wrap.
    const struct {
        float angle, distance, size;
        int shiftX, shiftY, left, right, top, bottom;
    } cases[] = {
        {0, 5, 3, -5, 0, 8, 0, 3, 3},
        {90, 5, 0, 0, 5, 0, 0, 0, 5},
        {120, 10, 2, 5, 9, 0, 7, 0, 11}, // -cos 120 * 10, sin 120 * 10 = 8.66
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
    // An inner-shadow record is read as a shadow record.
    auto s = outerOf(0, 5, 3);
    LmInnerShadowProperty inner(270, 4, 2, 0xFF000000, 0.5f);
    s->setProperty(&inner);
    EXPECT_EQ(s->getShiftY(), -4);
}

TEST(OuterShadowLayer, SizeZeroOrNaNCopiesTheMaskAtTheShift)
{
    const Mask m = disc(20, 6);
    FilterRun run(m, 30, 30);
    EXPECT_EQ(run.run(*outerOf(120, 10, 0)), 1); // shift (5, 9)
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 30; ++x) ASSERT_EQ(run.alpha(x, y), m.at(x - 5, y - 9)) << x << "," << y;
    // NaN angle, distance and size: no shift and no blur, the mask itself.
    FilterRun nan(m);
    EXPECT_EQ(nan.run(*outerOf(std::nanf(""), std::nanf(""), std::nanf(""))), 1);
    EXPECT_EQ(nan.alphaPlane(), m.pixels);
}

TEST(OuterShadowLayer, ShadowOutsideTheTargetIsSkipped)
{
    FilterRun run(rect(20, 20, 2, 2, 6, 6));
    EXPECT_EQ(run.run(*outerOf(0, 30, 3)), 0);  // right + 2R + shiftX < 0
    EXPECT_EQ(run.run(*outerOf(90, 40, 3)), 0); // top - 2R + shiftY >= height
    EXPECT_TRUE(run.untouched());
    EXPECT_EQ(run.run(*outerOf(0, 12, 3)), 1); // right + 2R + shiftX = 0 still reaches
}

TEST(InnerShadowLayer, NoBlurNoShiftIsTheInverseUnderCoverage)
{
    const Mask m = disc(24, 8);
    FilterRun run(m);
    auto s = innerOf(0, 0, 0);
    EXPECT_EQ(s->getLeftOffset(), 0); // never leaves the text box
    EXPECT_EQ(run.run(*s), 1);
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 24; ++x) ASSERT_EQ(run.alpha(x, y), m.at(x, y) ? 255 - m.at(x, y) : 0) << x << "," << y;
}

TEST(InnerShadowLayer, ShiftBeyondReachDrawsTheWholeGlyph)
{
    // Box 20 x 10. Down: dy = 20 fails top + dy < bottom + R. Sideways: right + R + dx >= left
    // fails once dx < -22.
    const Mask m = rect(30, 30, 5, 10, 25, 20, 180);
    const float angleAndDistance[][2] = {{90, 20}, {0, 23}};
    for (const auto& shift : angleAndDistance) {
        FilterRun run(m);
        EXPECT_EQ(run.run(*innerOf(shift[0], shift[1], 2)), 1);
        EXPECT_EQ(run.alphaPlane(), m.pixels) << shift[0];
    }
}

TEST(InnerShadowLayer, SideBandsAndNegativeShifts)
{
    const Mask m = rect(40, 40, 5, 5, 35, 35);
    // Angle 0: dx = -6 < -R, so the last R + dx + w .. w - 1 columns are full.
    FilterRun left(m);
    left.run(*innerOf(0, 6, 2));
    for (int y = 5; y < 35; ++y)
        for (int x = 31; x < 35; ++x) ASSERT_EQ(left.alpha(x, y), 255) << x << "," << y;
    for (int y = 8; y < 32; ++y) ASSERT_EQ(left.alpha(10, y), 0) << y; // away from top and bottom
    // Angle 270: dy = -6, the bottom rows are full.
    FilterRun up(m);
    up.run(*innerOf(270, 6, 2));
    for (int x = 5; x < 35; ++x) ASSERT_EQ(up.alpha(x, 34), 255) << x;
    EXPECT_EQ(up.alpha(20, 20), 0);
}
