#include "filters/MaskFixtures.h"

#include "effect/LmInnerShadowProperty.h"
#include "filters/LmInnerShadow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using namespace LmFontEffect;
using LmTest::FilterRun;
using LmTest::Mask;

namespace {

std::unique_ptr<LmInnerShadow> innerOf(float angle, float distance, float size)
{
    auto s = std::make_unique<LmInnerShadow>();
    LmInnerShadowProperty p(angle, distance, size, 0xFFFFFFFF, 1.0f);
    s->setProperty(&p);
    return s;
}

} // namespace

TEST(InnerShadowLayer, NoBlurNoShiftIsTheInverseUnderCoverage)
{
    const Mask m = LmTest::disc(24, 8);
    FilterRun run(m);
    auto s = innerOf(0, 0, 0);
    EXPECT_EQ(s->getStyle(), 2);
    EXPECT_EQ(s->getLeftOffset(), 0); // never leaves the text box
    EXPECT_EQ(run.run(*s), 1);
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 24; ++x) {
            const int v = m.at(x, y);
            ASSERT_EQ(run.alpha(x, y), v ? 255 - v : 0) << x << "," << y;
        }
}

TEST(InnerShadowLayer, SmallSquareByHand)
{
    // 3 x 3 solid square, R = 1 (weights 100, 1, sum 102), no shift. The horizontal inverse blur
    // of the box columns gives 2, 0, 2; the vertical pass, framed by full inverse, gives:
    FilterRun run(LmTest::rect(7, 7, 2, 2, 5, 5));
    auto s = innerOf(0, 0, 1);
    run.run(*s);
    const int expected[3][3] = {{4, 2, 4}, {2, 0, 2}, {4, 2, 4}};
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) EXPECT_EQ(run.alpha(2 + x, 2 + y), expected[y][x]) << x << "," << y;
    EXPECT_EQ(run.alpha(1, 3), 0);
}

TEST(InnerShadowLayer, ThickStrokesDarkenOnlyAtTheEdges)
{
    FilterRun run(LmTest::rect(40, 40, 5, 5, 35, 35));
    auto s = innerOf(0, 0, 4);
    run.run(*s);
    EXPECT_EQ(run.alpha(20, 20), 0);
    EXPECT_GT(run.alpha(5, 20), run.alpha(6, 20));
    EXPECT_GT(run.alpha(6, 20), 0);
    EXPECT_EQ(run.alpha(20, 5), run.alpha(5, 20)); // no shift: symmetric
}

TEST(InnerShadowLayer, ShiftBeyondReachDrawsTheWholeGlyph)
{
    // Box 10 rows high; dy = 20 fails top + dy < bottom + R.
    const Mask m = LmTest::rect(30, 30, 5, 10, 25, 20, 180);
    FilterRun run(m);
    auto s = innerOf(90, 20, 2);
    EXPECT_EQ(run.run(*s), 1);
    EXPECT_EQ(run.alphaPlane(), m.pixels);

    // Sideways too: with a box 20 wide, right + R + dx >= left fails once dx < -22.
    FilterRun left(m);
    auto far = innerOf(0, 23, 2);
    left.run(*far);
    EXPECT_EQ(left.alphaPlane(), m.pixels);
}

TEST(InnerShadowLayer, FullBandsIgnoreTheMask)
{
    // Two separate bars; dy = 6 > R = 2, so rows 0..3 of the box are full across its width,
    // between the bars too.
    Mask m = LmTest::rect(40, 30, 5, 5, 12, 25);
    for (int y = 5; y < 25; ++y)
        for (int x = 25; x < 32; ++x) m.pixels[y * 40 + x] = 255;
    FilterRun run(m);
    auto s = innerOf(90, 6, 2);
    run.run(*s);
    for (int y = 5; y < 9; ++y)
        for (int x = 5; x < 32; ++x) ASSERT_EQ(run.alpha(x, y), 255) << x << "," << y;
    EXPECT_EQ(run.alpha(18, 9), 0); // below the band, outside the glyphs
    EXPECT_EQ(run.alpha(8, 20), 0); // deep inside, away from the top edge
    EXPECT_GT(run.alpha(8, 9), 0);  // just below the band, still shadowed
}

TEST(InnerShadowLayer, SideBandsAndNegativeShifts)
{
    const Mask m = LmTest::rect(40, 40, 5, 5, 35, 35);
    // Angle 0: dx = -6 < -R, so the last R + dx + w .. w - 1 columns are full.
    FilterRun left(m);
    auto s = innerOf(0, 6, 2);
    left.run(*s);
    for (int y = 5; y < 35; ++y)
        for (int x = 31; x < 35; ++x) ASSERT_EQ(left.alpha(x, y), 255) << x << "," << y;
    for (int y = 8; y < 32; ++y) ASSERT_EQ(left.alpha(10, y), 0) << y; // away from top and bottom
    // Angle 270: dy = -6, the bottom rows are full.
    FilterRun up(m);
    auto u = innerOf(270, 6, 2);
    up.run(*u);
    for (int x = 5; x < 35; ++x) ASSERT_EQ(up.alpha(x, 34), 255) << x;
    EXPECT_EQ(up.alpha(20, 20), 0);
}
