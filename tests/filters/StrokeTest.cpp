#include "filters/MaskFixtures.h"

#include "effect/LmStrokeProperty.h"
#include "effect/LmTextProperty.h"
#include "filters/LmStroke.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace LmFontEffect;
using LmTest::FilterRun;

namespace {

enum { CENTRE = 0, OUTSIDE = 1, INSIDE = 2 };

struct Kernel {
    unsigned char* bytes = nullptr;
    int k;
    explicit Kernel(float r) : k(makeCircleKernel(&bytes, r)) {}
    ~Kernel() { std::free(bytes); }
    int at(int x, int y) const { return bytes[y * k + x]; }
};

std::unique_ptr<LmStroke> strokeOf(float size, int position)
{
    auto s = std::make_unique<LmStroke>();
    LmStrokeProperty p(size, 0xFFFFFFFF, 1.0f, 0, position);
    s->setProperty(&p);
    return s;
}

} // namespace

TEST(StrokeKernel, WorkedRadii)
{
    // Below radius 1 the centre carries the radius itself: a faint sub-pixel stroke.
    Kernel half(0.5f);
    ASSERT_EQ(half.k, 3);
    EXPECT_EQ(half.at(1, 1), 128);
    EXPECT_EQ(half.at(0, 1), 128);
    EXPECT_EQ(half.at(0, 0), 22);
    Kernel zero(0.0f);
    ASSERT_EQ(zero.k, 1);
    EXPECT_EQ(zero.at(0, 0), 0);

    Kernel one(1.0f);
    EXPECT_EQ(one.at(1, 1), 255);
    EXPECT_EQ(one.at(2, 1), 255);
    EXPECT_EQ(one.at(0, 0), 149); // 1 - sqrt 2 + 1 = 0.5858
    Kernel wide(1.5f);
    ASSERT_EQ(wide.k, 5);
    EXPECT_EQ(wide.at(2, 0), 128);
    EXPECT_EQ(wide.at(0, 0), 0);

    Kernel nan(std::nanf(""));
    ASSERT_EQ(nan.k, 1);
    EXPECT_EQ(nan.at(0, 0), 0);
    EXPECT_EQ(Kernel(-3.0f).bytes, nullptr);
    EXPECT_EQ(Kernel(1e9f).bytes, nullptr);
}

TEST(StrokeLayer, PropertyAndOffsets)
{
    LmStroke s;
    EXPECT_EQ(s.getStyle(), 10);
    LmStrokeProperty p(3.0f, 0xFF112233, 0.5f, 7, CENTRE);
    s.setProperty(&p);
    auto* copy = static_cast<LmStrokeProperty*>(s.getProperty());
    ASSERT_NE(copy, &p);
    EXPECT_EQ(s.getLeftOffset(), 2); // 1.5 + 0.5
    // A record of another kind leaves the held one alone.
    LmTextProperty text(0xFF000000, 1.0f);
    s.setProperty(&text);
    EXPECT_EQ(s.getProperty(), copy);

    EXPECT_EQ(strokeOf(1, OUTSIDE)->getOffset(), 1);
    EXPECT_EQ(strokeOf(100, INSIDE)->getOffset(), 0);
    EXPECT_EQ(strokeOf(7, 5)->getOffset(), 0);
    EXPECT_EQ(strokeOf(std::nanf(""), OUTSIDE)->getOffset(), 0);
}

TEST(StrokeWorkers, BoundedProductDilation)
{
    // A 3 x 3 padded source around a 200 pixel, radius-1 kernel, two 5 x 5 planes.
    Kernel kernel(1.0f);
    unsigned char src[9] = {0, 0, 0, 0, 200, 0, 0, 0, 0};
    unsigned char dst[50] = {};
    StrokeDTArgs a{dst, src, kernel.bytes, 3, 3, 0, 0, 5, 5, 1, 1, 25, 1, 3, 3, 3, 0, 3};
    partalDTStrokeOutside(&a);
    EXPECT_EQ(dst[12], 200);
    EXPECT_EQ(dst[7], 200);            // 255 + 200 - 255
    EXPECT_EQ(dst[6], 149 + 200 - 255); // kernel corner
    EXPECT_EQ(dst[0], 0);

    std::memset(dst, 0, sizeof dst);
    partalDTStrokeInside(&a);
    EXPECT_EQ(dst[12], 255); // the empty neighbours stamp the whole kernel
    EXPECT_EQ(dst[0], 149);

    unsigned char solid[9] = {255, 255, 255, 255, 200, 255, 255, 255, 255};
    a.src = solid;
    std::memset(dst, 0, sizeof dst);
    partalDTStrokeCenter(&a);
    EXPECT_EQ(dst[12], 255);
    EXPECT_EQ(dst[25 + 12], 55); // second plane: only the 200 pixel has an inverse
    EXPECT_EQ(dst[25 + 6], 0);   // 149 - 200 is below zero
}

TEST(StrokeLayer, SizeZeroDrawsNothingVisible)
{
    for (int position : {CENTRE, OUTSIDE, INSIDE}) {
        FilterRun run(LmTest::disc(24, 8));
        EXPECT_EQ(run.run(*strokeOf(0, position)), 1);
        EXPECT_TRUE(run.untouched()) << position;
    }
}

TEST(StrokeLayer, InsideStrokeReachesBeyondTheBox)
{
    // Radius 2 gives n = 2: the output reaches n + 1 beyond the 6 x 6 box, full wherever the
    // mask is empty.
    FilterRun run(LmTest::rect(30, 30, 12, 12, 18, 18));
    run.run(*strokeOf(2, INSIDE));
    EXPECT_EQ(run.alpha(9, 15), 255);
    EXPECT_EQ(run.alpha(8, 15), 0);
    EXPECT_EQ(run.alpha(15, 20), 255);
    EXPECT_EQ(run.alpha(15, 21), 0);
    EXPECT_EQ(run.alpha(13, 15), 255); // 2 from the empty border
    EXPECT_EQ(run.alpha(14, 15), 0);   // 3 from it
}

TEST(StrokeLayer, CentreStrokeIsTheOverlapOfBothDilations)
{
    FilterRun run(LmTest::rect(20, 20, 5, 5, 10, 10));
    LmBitmap second(20, 20, 4);
    run.run(*strokeOf(2, CENTRE), 1, &second); // r = 1
    EXPECT_EQ(run.alpha(4, 7), 255);
    EXPECT_EQ(run.alpha(5, 7), 255);
    EXPECT_EQ(run.alpha(6, 7), 0);
    EXPECT_EQ(run.alpha(4, 4), 149);
    EXPECT_EQ(run.alpha(3, 7), 0);
    EXPECT_EQ(0, std::memcmp(second.pixels, run.target.pixels, 20 * 20 * 4));
}

TEST(StrokeLayer, BlendModeFollowsPositionAndCompositeMode)
{
    // Over opaque blue a source-over stroke shows, a destination-over one does not.
    auto strokedRed = [](int position, int compositeMode) {
        FilterRun run(LmTest::rect(16, 16, 5, 5, 11, 11));
        for (size_t i = 0; i < 16 * 16; ++i) run.target.pixels[i * 4 + 2] = run.target.pixels[i * 4 + 3] = 255;
        run.run(*strokeOf(2, position), compositeMode);
        return run.target.pixels[(5 * 16 + 5) * 4];
    };
    EXPECT_EQ(strokedRed(CENTRE, 0), 255);
    EXPECT_EQ(strokedRed(CENTRE, 1), 0);
    EXPECT_EQ(strokedRed(OUTSIDE, 0), 0);
    EXPECT_EQ(strokedRed(INSIDE, 0), 0);
}
