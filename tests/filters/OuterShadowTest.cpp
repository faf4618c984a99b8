#include "filters/MaskFixtures.h"

#include "effect/LmInnerShadowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "filters/LmGaussianBlur.h"
#include "filters/LmOuterShadow.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <memory>
#include <vector>

using namespace LmFontEffect;
using LmTest::FilterRun;

namespace {

std::unique_ptr<LmOuterShadow> shadowOf(float angle, float distance, float size, unsigned colour = 0xFFFFFFFF)
{
    auto s = std::make_unique<LmOuterShadow>();
    LmOuterShadowProperty p(angle, distance, size, colour, 1.0f);
    s->setProperty(&p);
    return s;
}

std::vector<int> weightsOf(int R, int scale, int* sum)
{
    std::vector<int> w((size_t)std::max(R, 0) + 1, -1);
    LmGaussianBlur::computeGaussianWeights(w.data(), sum, R, scale);
    return w;
}

} // namespace

TEST(GaussianWeights, WorkedTables)
{
    int sum = 0;
    EXPECT_EQ(weightsOf(0, 100, &sum), std::vector<int>({100}));
    EXPECT_EQ(sum, 100);
    EXPECT_EQ(weightsOf(1, 100, &sum), std::vector<int>({100, 1}));
    EXPECT_EQ(sum, 102);
    EXPECT_EQ(weightsOf(2, 100, &sum), std::vector<int>({100, 32, 1}));
    EXPECT_EQ(sum, 166);
    EXPECT_EQ(weightsOf(3, 100, &sum), std::vector<int>({100, 60, 13, 1}));
    EXPECT_EQ(sum, 248);
    EXPECT_EQ(weightsOf(1, 128, &sum), std::vector<int>({128, 1}));
    EXPECT_EQ(sum, 130);
    // The curve always ends at a hundredth of the centre.
    EXPECT_EQ(weightsOf(100, 100, &sum)[100], 1);
}

TEST(OuterShadowLayer, ShiftAndSideMargins)
{
    auto left = shadowOf(0, 5, 3);
    EXPECT_EQ(left->getStyle(), 1);
    EXPECT_EQ(left->getShiftX(), -5);
    EXPECT_EQ(left->getShiftY(), 0);
    EXPECT_EQ(left->getLeftOffset(), 8);
    EXPECT_EQ(left->getRightOffset(), 0);
    EXPECT_EQ(left->getTopOffset(), 3);
    EXPECT_EQ(left->getBottomOffset(), 3);

    auto below = shadowOf(90, 5, 0);
    EXPECT_EQ(below->getShiftX(), 0);
    EXPECT_EQ(below->getShiftY(), 5);

    auto rightBelow = shadowOf(120, 10, 2);
    EXPECT_EQ(rightBelow->getShiftX(), 5); // -cos 120 * 10
    EXPECT_EQ(rightBelow->getShiftY(), 9); // sin 120 * 10 = 8.66
    EXPECT_EQ(rightBelow->getLeftOffset(), 0);
    EXPECT_EQ(rightBelow->getRightOffset(), 7);

    int x = 0, y = 0;
    LmOuterShadow::computeShift(180, 2.5f, &x, &y); // halves round away from zero
    EXPECT_EQ(x, 3);

    // An inner-shadow record is read as a shadow record.
    LmInnerShadowProperty inner(270, 4, 2, 0xFF000000, 0.5f);
    left->setProperty(&inner);
    EXPECT_EQ(left->getShiftY(), -4);
}

TEST(OuterShadowLayer, SizeZeroCopiesTheMaskAtTheShift)
{
    const LmTest::Mask m = LmTest::disc(20, 6);
    FilterRun run(m, 30, 30);
    EXPECT_EQ(run.run(*shadowOf(120, 10, 0)), 1); // shift (5, 9)
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 30; ++x) ASSERT_EQ(run.alpha(x, y), m.at(x - 5, y - 9)) << x << "," << y;
}

TEST(OuterShadowLayer, BlurredImpulse)
{
    // R = 2: weights 100, 32, 1, sum 166. The vertical pass gives 255 * w / 166 = 153, 49, 1 down
    // the column; the horizontal pass takes w / 166 of each again.
    FilterRun run(LmTest::rect(20, 20, 10, 10, 11, 11));
    run.run(*shadowOf(90, 3, 2)); // shift (0, 3)
    EXPECT_EQ(run.alpha(10, 13), 92); // 153 * 100 / 166
    EXPECT_EQ(run.alpha(11, 13), 29); // 153 * 32 / 166
    EXPECT_EQ(run.alpha(10, 14), 29); // 49 * 100 / 166
    EXPECT_EQ(run.alpha(11, 14), 9);  // 49 * 32 / 166
    EXPECT_EQ(run.alpha(12, 13), 0);  // 153 * 1 / 166
    EXPECT_EQ(run.alpha(10, 10), 0);
}

TEST(OuterShadowLayer, GoesUnderWhatTheTargetHolds)
{
    FilterRun run(LmTest::rect(12, 12, 3, 3, 9, 9));
    for (size_t i = 0; i < 12 * 12; ++i) run.target.pixels[i * 4 + 2] = run.target.pixels[i * 4 + 3] = 200;
    run.run(*shadowOf(0, 0, 0, 0xFF00FF00));
    const unsigned char* px = run.target.pixels + (6 * 12 + 6) * 4;
    EXPECT_EQ(px[1], 55); // green fills only the alpha left over
    EXPECT_EQ(px[2], 200);
    EXPECT_EQ(px[3], 255);
}

TEST(OuterShadowLayer, ShadowOutsideTheTargetIsSkipped)
{
    FilterRun run(LmTest::rect(20, 20, 2, 2, 6, 6));
    EXPECT_EQ(run.run(*shadowOf(0, 30, 3)), 0);  // right + 2R + shiftX < 0
    EXPECT_EQ(run.run(*shadowOf(90, 40, 3)), 0); // top - 2R + shiftY >= height
    EXPECT_TRUE(run.untouched());
    EXPECT_EQ(run.run(*shadowOf(0, 12, 3)), 1); // right + 2R + shiftX = 0 still reaches
}

TEST(OuterShadowLayer, AbsurdValuesSaturateOrGiveUp)
{
    auto far = shadowOf(0, 1e30f, 3);
    EXPECT_EQ(far->getShiftX(), INT_MIN);
    EXPECT_EQ(far->getLeftOffset(), INT_MAX);
    EXPECT_EQ(far->getRightOffset(), 0);

    // NaN angle, distance and size: no shift and no blur, the mask itself.
    auto nan = shadowOf(std::nanf(""), std::nanf(""), std::nanf(""));
    EXPECT_EQ(nan->getLeftOffset(), 0);
    FilterRun run(LmTest::disc(16, 5));
    EXPECT_EQ(run.run(*nan), 1);
    EXPECT_EQ(run.alphaPlane(), LmTest::disc(16, 5).pixels);

    auto wound = shadowOf(360.0f * 1000 + 90, 5, 0);
    EXPECT_EQ(wound->getShiftX(), 0);
    EXPECT_EQ(wound->getShiftY(), 5);
}
