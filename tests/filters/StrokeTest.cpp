#include "filters/MaskFixtures.h"

#include "effect/LmStrokeProperty.h"
#include "effect/LmTextProperty.h"
#include "filters/LmStroke.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <limits>

using namespace LmFontEffect;
using LmTest::FilterRun;
using LmTest::Mask;

namespace {

enum { CENTRE = 0, OUTSIDE = 1, INSIDE = 2 };

struct Kernel {
    unsigned char* bytes = nullptr;
    int k = 0;
    explicit Kernel(float r) { k = makeCircleKernel(&bytes, r); }
    ~Kernel() { std::free(bytes); }
    int at(int x, int y) const { return bytes[y * k + x]; }
};

std::unique_ptr<LmStroke> strokeOf(float size, int position, unsigned colour = 0xFFFFFFFF)
{
    auto s = std::make_unique<LmStroke>();
    LmStrokeProperty p(size, colour, 1.0f, 0, position);
    s->setProperty(&p);
    return s;
}

} // namespace

TEST(StrokeKernel, SubPixelRadiusKeepsTheCentreFaint)
{
    Kernel half(0.5f);
    ASSERT_EQ(half.k, 3);
    EXPECT_EQ(half.at(1, 1), 128);
    EXPECT_EQ(half.at(0, 1), 128);
    EXPECT_EQ(half.at(1, 2), 128);
    EXPECT_EQ(half.at(0, 0), 22);
    EXPECT_EQ(half.at(2, 2), 22);

    Kernel zero(0.0f);
    ASSERT_EQ(zero.k, 1);
    EXPECT_EQ(zero.at(0, 0), 0);
}

TEST(StrokeKernel, WholeRadii)
{
    Kernel one(1.0f);
    ASSERT_EQ(one.k, 3);
    EXPECT_EQ(one.at(1, 1), 255);
    EXPECT_EQ(one.at(1, 0), 255);
    EXPECT_EQ(one.at(2, 1), 255);
    EXPECT_EQ(one.at(0, 0), 149);

    Kernel big(1.5f);
    ASSERT_EQ(big.k, 5);
    // Distance 2 from the centre: 1.5 - 2 + 1 = 0.5 of coverage.
    EXPECT_EQ(big.at(2, 0), 128);
    // The far corner, 2.83 away, is beyond r + 1.
    EXPECT_EQ(big.at(0, 0), 0);
    // Symmetric in both axes and the diagonal.
    for (int y = 0; y < big.k; ++y)
        for (int x = 0; x < big.k; ++x) {
            EXPECT_EQ(big.at(x, y), big.at(big.k - 1 - x, y));
            EXPECT_EQ(big.at(x, y), big.at(y, x));
        }
}

TEST(StrokeKernel, DegenerateRadiiAllocateSafely)
{
    Kernel negative(-3.0f);
    EXPECT_EQ(negative.bytes, nullptr);

    Kernel nan(std::numeric_limits<float>::quiet_NaN());
    ASSERT_NE(nan.bytes, nullptr);
    ASSERT_EQ(nan.k, 1);
    EXPECT_EQ(nan.at(0, 0), 0);

    Kernel huge(1e9f);
    EXPECT_EQ(huge.bytes, nullptr);
    Kernel inf(std::numeric_limits<float>::infinity());
    EXPECT_EQ(inf.bytes, nullptr);
}

TEST(StrokeLayer, KindPropertyAndOffsets)
{
    LmStroke s;
    EXPECT_EQ(s.getStyle(), 10);
    EXPECT_EQ(s.getProperty(), nullptr);
    EXPECT_EQ(s.getOffset(), 0);

    LmStrokeProperty p(3.0f, 0xFF112233, 0.5f, 7, CENTRE);
    s.setProperty(&p);
    auto* copy = static_cast<LmStrokeProperty*>(s.getProperty());
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, &p);
    EXPECT_EQ(copy->colour, 0xFF112233u);
    EXPECT_EQ(copy->extra, 7);
    EXPECT_FLOAT_EQ(copy->opacity, 0.5f);
    EXPECT_EQ(s.getOffset(), 2); // 1.5 + 0.5
    EXPECT_EQ(s.getLeftOffset(), 2);
    EXPECT_EQ(s.getBottomOffset(), 2);

    EXPECT_EQ(strokeOf(1, OUTSIDE)->getOffset(), 1);
    EXPECT_EQ(strokeOf(100, OUTSIDE)->getOffset(), 100);
    EXPECT_EQ(strokeOf(100, INSIDE)->getOffset(), 0);
    EXPECT_EQ(strokeOf(7, 5)->getOffset(), 0);
    EXPECT_EQ(strokeOf(std::nanf(""), OUTSIDE)->getOffset(), 0);

    // A record of another kind, or none, leaves the held one alone.
    s.setProperty(nullptr);
    LmTextProperty text(0xFF000000, 1.0f);
    s.setProperty(&text);
    EXPECT_EQ(s.getProperty(), copy);
}

TEST(StrokeWorkers, BoundedProductDilation)
{
    // One source pixel of 200 in a 3 x 3 padded source, radius-1 kernel.
    Kernel kernel(1.0f);
    unsigned char src[9] = {0, 0, 0, 0, 200, 0, 0, 0, 0};
    unsigned char dst[2 * 25] = {};
    StrokeDTArgs a{dst, src, kernel.bytes, 3, 3, 0, 0, 5, 5, 1, 1, 25, 1, 3, 3, 3, 0, 3};

    partalDTStrokeOutside(&a);
    EXPECT_EQ(dst[2 * 5 + 2], 200);
    EXPECT_EQ(dst[1 * 5 + 2], 200);             // edge: 255 + 200 - 255
    EXPECT_EQ(dst[1 * 5 + 1], 149 + 200 - 255); // corner
    EXPECT_EQ(dst[0], 0);                       // reached by no window of a non-zero pixel

    std::fill(std::begin(dst), std::end(dst), 0);
    partalDTStrokeInside(&a);
    // Every zero pixel stamps the full kernel; the 200 pixel stamps 255 - 200 = 55.
    EXPECT_EQ(dst[2 * 5 + 2], 255);
    EXPECT_EQ(dst[1 * 5 + 1], 255);
    EXPECT_EQ(dst[0], 149); // only the corner pixel's window reaches the corner
    EXPECT_EQ(dst[4 * 5 + 4], 149);

    unsigned char lone[9] = {255, 255, 255, 255, 200, 255, 255, 255, 255};
    a.src = lone;
    std::fill(std::begin(dst), std::end(dst), 0);
    partalDTStrokeCenter(&a);
    EXPECT_EQ(dst[2 * 5 + 2], 255);        // plane 0: the full pixels grow everywhere
    EXPECT_EQ(dst[25 + 2 * 5 + 2], 55);    // plane 1: only the 200 pixel has an inverse
    EXPECT_EQ(dst[25 + 1 * 5 + 1], 0);     // 149 - 200 is below zero
    EXPECT_EQ(dst[25 + 1 * 5 + 2], 55);

    // The row range limits the work.
    std::fill(std::begin(dst), std::end(dst), 0);
    a.rowBegin = 0;
    a.rowEnd = 1;
    partalDTStrokeOutside(&a);
    EXPECT_EQ(dst[4 * 5 + 2], 0);
    EXPECT_EQ(dst[2 * 5 + 2], 255);
}

TEST(StrokeLayer, SizeZeroDrawsNothingVisible)
{
    for (int position : {CENTRE, OUTSIDE, INSIDE}) {
        FilterRun run(LmTest::disc(24, 8));
        auto s = strokeOf(0, position);
        EXPECT_EQ(run.run(*s), 1);
        EXPECT_TRUE(run.untouched()) << position;
    }
}

TEST(StrokeLayer, OutsideStrokeOfOnePixelIsTheKernel)
{
    FilterRun run(LmTest::rect(9, 9, 4, 4, 5, 5));
    auto s = strokeOf(1, OUTSIDE);
    run.run(*s);
    EXPECT_EQ(run.alpha(4, 4), 255);
    EXPECT_EQ(run.alpha(3, 4), 255);
    EXPECT_EQ(run.alpha(4, 5), 255);
    EXPECT_EQ(run.alpha(3, 3), 149);
    EXPECT_EQ(run.alpha(5, 5), 149);
    EXPECT_EQ(run.alpha(2, 4), 0);
}

TEST(StrokeLayer, InsideStrokeReachesBeyondTheBox)
{
    // A 6 x 6 solid square in a 30 x 30 mask; radius 2 gives n = 2, so the output reaches
    // n + 1 = 3 pixels beyond the box, and is full wherever the mask is empty.
    FilterRun run(LmTest::rect(30, 30, 12, 12, 18, 18));
    auto s = strokeOf(2, INSIDE);
    EXPECT_EQ(s->getOffset(), 0);
    run.run(*s);
    EXPECT_EQ(run.alpha(9, 15), 255);  // 3 left of the box
    EXPECT_EQ(run.alpha(8, 15), 0);    // beyond the output
    EXPECT_EQ(run.alpha(15, 20), 255); // 3 below the box
    EXPECT_EQ(run.alpha(15, 21), 0);
    EXPECT_EQ(run.alpha(12, 15), 255); // the square's edge column
    EXPECT_EQ(run.alpha(13, 15), 255); // 2 from the empty border: within the kernel
    EXPECT_EQ(run.alpha(14, 15), 0);   // 3 from it: out of reach
}

TEST(StrokeLayer, CentreStrokeIsTheOverlapOfBothDilations)
{
    FilterRun run(LmTest::rect(20, 20, 5, 5, 10, 10));
    auto s = strokeOf(2, CENTRE); // r = 1
    run.run(*s);
    EXPECT_EQ(run.alpha(4, 7), 255);  // just outside
    EXPECT_EQ(run.alpha(5, 7), 255);  // edge pixel inside
    EXPECT_EQ(run.alpha(6, 7), 0);    // one further in
    EXPECT_EQ(run.alpha(4, 4), 149);  // outer corner: the kernel's corner
    EXPECT_EQ(run.alpha(3, 7), 0);
    EXPECT_EQ(run.alpha(7, 7), 0);
}

TEST(StrokeLayer, BlendModeFollowsPositionAndCompositeMode)
{
    // Over an opaque blue target a source-over stroke shows, a destination-over one does not.
    const Mask m = LmTest::rect(16, 16, 5, 5, 11, 11);
    auto strokedRed = [&](int position, int compositeMode) {
        FilterRun run(m);
        for (size_t i = 0; i < (size_t)16 * 16; ++i) {
            run.target.pixels[i * 4 + 2] = 255;
            run.target.pixels[i * 4 + 3] = 255;
        }
        auto s = strokeOf(2, position);
        run.run(*s, compositeMode);
        return run.target.pixels[(5 * 16 + 5) * 4 + 0]; // red byte of an edge pixel
    };
    EXPECT_EQ(strokedRed(CENTRE, 0), 255);
    EXPECT_EQ(strokedRed(CENTRE, 1), 0);
    EXPECT_EQ(strokedRed(OUTSIDE, 0), 0);
    EXPECT_EQ(strokedRed(INSIDE, 0), 0);
}

TEST(StrokeLayer, SecondTargetGetsTheSameStroke)
{
    FilterRun run(LmTest::disc(32, 9));
    LmBitmap second(32, 32, 4);
    auto s = strokeOf(4, CENTRE);
    run.run(*s, 1, &second);
    EXPECT_FALSE(run.untouched());
    EXPECT_EQ(0, std::memcmp(second.pixels, run.target.pixels, 32 * 32 * 4));
}
