#include "filters/MaskFixtures.h"

#include "effect/LmInnerShadowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "filters/LmGaussianBlur.h"
#include "filters/LmOuterShadow.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

using namespace LmFontEffect;
using LmTest::FilterRun;
using LmTest::Mask;

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

TEST(GaussianWeights, SmallRadii)
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

    // Negative radii set only the centre.
    int w[2] = {-1, -1};
    LmOuterShadow::computeGaussianWeights(w, &sum, -4);
    EXPECT_EQ(w[0], 100);
    EXPECT_EQ(w[1], -1);
    EXPECT_EQ(sum, 100);
}

TEST(GaussianWeights, FallOffToAHundredthAtTheRadius)
{
    for (int R : {5, 17, 50, 100}) {
        int sum = 0;
        std::vector<int> w = weightsOf(R, 100, &sum);
        EXPECT_EQ(w[R], 1) << R;
        int total = w[0];
        for (int i = 1; i <= R; ++i) {
            EXPECT_LE(w[i], w[i - 1]) << R << " " << i;
            total += 2 * w[i];
        }
        EXPECT_EQ(total, sum);
    }
}

TEST(GaussianBlur, ImpulseGivesTheProductOfTheWeights)
{
    // R = 2: weights 100, 32, 1, sum 166. The vertical pass gives 255 * w / 166 = 153, 49, 1 down
    // the column; the horizontal pass spreads each by w / 166 again.
    const int R = 2, W = 9, H = 9;
    std::vector<unsigned char> src(W * H, 0), dst(W * H, 77), tmp(W, 77);
    src[4 * W + 4] = 255;
    int sum = 0;
    std::vector<int> w = weightsOf(R, 100, &sum);
    LmGaussianBlur::blur(src.data(), dst.data(), tmp.data(), W, H, R, w.data(), sum);
    EXPECT_EQ(dst[4 * W + 4], 92);  // 153 * 100 / 166
    EXPECT_EQ(dst[4 * W + 5], 29);  // 153 * 32 / 166
    EXPECT_EQ(dst[5 * W + 4], 29);  // 49 * 100 / 166
    EXPECT_EQ(dst[5 * W + 5], 9);   // 49 * 32 / 166
    EXPECT_EQ(dst[4 * W + 6], 0);   // 153 * 1 / 166
    EXPECT_EQ(dst[6 * W + 4], 0);   // 1 * 100 / 166
    // The frame of R is cleared.
    for (int i = 0; i < W; ++i) {
        EXPECT_EQ(dst[i], 0);
        EXPECT_EQ(dst[(H - 1) * W + i], 0);
        EXPECT_EQ(dst[i * W], 0);
        EXPECT_EQ(dst[i * W + W - 1], 0);
    }
}

TEST(GaussianBlur, ImageSmallerThanItsFrameIsCleared)
{
    std::vector<unsigned char> src(3 * 3, 255), dst(3 * 3, 77), tmp(3, 0);
    int sum = 0;
    std::vector<int> w = weightsOf(2, 100, &sum);
    LmGaussianBlur::blur(src.data(), dst.data(), tmp.data(), 3, 3, 2, w.data(), sum);
    EXPECT_EQ(dst, std::vector<unsigned char>(9, 0));
}

TEST(OuterShadowLayer, ShiftFollowsTheLightAngle)
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
    EXPECT_EQ(below->getTopOffset(), 0);
    EXPECT_EQ(below->getBottomOffset(), 5);

    auto rightBelow = shadowOf(120, 10, 2);
    EXPECT_EQ(rightBelow->getShiftX(), 5);   // -cos 120 * 10
    EXPECT_EQ(rightBelow->getShiftY(), 9);   // sin 120 * 10 = 8.66
    EXPECT_EQ(rightBelow->getLeftOffset(), 0);
    EXPECT_EQ(rightBelow->getRightOffset(), 7);

    // Half-way values round away from zero.
    int x = 0, y = 0;
    LmOuterShadow::computeShift(180, 2.5f, &x, &y);
    EXPECT_EQ(x, 3);
    LmOuterShadow::computeShift(0, 2.5f, &x, &y);
    EXPECT_EQ(x, -3);
}

TEST(OuterShadowLayer, DefaultsAndRecordCopies)
{
    LmOuterShadow s;
    EXPECT_EQ(s.getProperty(), nullptr);
    EXPECT_EQ(s.getLeftOffset(), 0);
    EXPECT_EQ(s.getShiftX(), 0);
    FilterRun run(LmTest::disc(16, 5));
    EXPECT_EQ(run.run(s), 0);
    EXPECT_TRUE(run.untouched());

    // An inner-shadow record is a shadow record too; its values are copied, not its kind.
    LmInnerShadowProperty inner(90, 4, 2, 0xFF000000, 0.5f);
    s.setProperty(&inner);
    ASSERT_NE(s.getProperty(), nullptr);
    EXPECT_NE(dynamic_cast<LmOuterShadowProperty*>(s.getProperty()), nullptr);
    EXPECT_EQ(s.getShiftY(), 4);
}

TEST(OuterShadowLayer, SizeZeroCopiesTheMaskAtTheShift)
{
    const Mask m = LmTest::disc(20, 6);
    FilterRun run(m, 30, 30);
    auto s = shadowOf(120, 10, 0); // shift (5, 9)
    EXPECT_EQ(run.run(*s), 1);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 30; ++x) ASSERT_EQ(run.alpha(x, y), m.at(x - 5, y - 9)) << x << "," << y;
}

TEST(OuterShadowLayer, BlurredImpulseAtTheShift)
{
    FilterRun run(LmTest::rect(20, 20, 10, 10, 11, 11));
    auto s = shadowOf(90, 3, 2); // shift (0, 3)
    run.run(*s);
    EXPECT_EQ(run.alpha(10, 13), 92);
    EXPECT_EQ(run.alpha(11, 13), 29);
    EXPECT_EQ(run.alpha(10, 14), 29);
    EXPECT_EQ(run.alpha(11, 14), 9);
    EXPECT_EQ(run.alpha(10, 10), 0);
}

TEST(OuterShadowLayer, GoesUnderWhatTheTargetHolds)
{
    FilterRun run(LmTest::rect(12, 12, 3, 3, 9, 9));
    for (size_t i = 0; i < (size_t)12 * 12; ++i) {
        run.target.pixels[i * 4 + 2] = 200;
        run.target.pixels[i * 4 + 3] = 200;
    }
    auto s = shadowOf(0, 0, 0, 0xFF00FF00);
    run.run(*s);
    // Destination-over: green fills only the 55 of alpha left over.
    const unsigned char* px = run.target.pixels + (6 * 12 + 6) * 4;
    EXPECT_EQ(px[2], 200);
    EXPECT_EQ(px[3], 255);
    EXPECT_GT(px[1], 0);
    EXPECT_LT(px[1], 60);
}

TEST(OuterShadowLayer, ShadowOutsideTheTargetIsSkipped)
{
    // right + 2R + shiftX < 0: wholly left of the target.
    FilterRun run(LmTest::rect(20, 20, 2, 2, 6, 6));
    auto s = shadowOf(0, 30, 3);
    EXPECT_EQ(run.run(*s), 0);
    EXPECT_TRUE(run.untouched());
    auto below = shadowOf(90, 40, 3);
    EXPECT_EQ(run.run(*below), 0);
    // Just reaching the target: drawn.
    auto near = shadowOf(0, 6 + 6, 3);
    EXPECT_EQ(run.run(*near), 1);
}

TEST(OuterShadowLayer, AbsurdValuesSaturateOrGiveUp)
{
    auto far = shadowOf(0, 1e30f, 3);
    EXPECT_EQ(far->getShiftX(), INT_MIN);
    EXPECT_EQ(far->getLeftOffset(), INT_MAX);
    EXPECT_EQ(far->getRightOffset(), 0);

    auto nan = shadowOf(std::nanf(""), std::nanf(""), std::nanf(""));
    EXPECT_EQ(nan->getShiftX(), 0);
    EXPECT_EQ(nan->getShiftY(), 0);
    EXPECT_EQ(nan->getLeftOffset(), 0);
    FilterRun run(LmTest::disc(16, 5));
    EXPECT_EQ(run.run(*nan), 1); // NaN size is size 0: the mask itself
    EXPECT_EQ(run.alphaPlane(), LmTest::disc(16, 5).pixels);

    auto huge = shadowOf(45, 2, 1e9f);
    FilterRun hugeRun(LmTest::disc(16, 5));
    EXPECT_EQ(hugeRun.run(*huge), 0);
    EXPECT_TRUE(hugeRun.untouched());

    // An angle far outside a turn is the same direction.
    auto wound = shadowOf(360.0f * 1000 + 90, 5, 0);
    EXPECT_EQ(wound->getShiftX(), 0);
    EXPECT_EQ(wound->getShiftY(), 5);
}
