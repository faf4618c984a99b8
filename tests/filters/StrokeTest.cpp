#include "filters/MaskFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

struct Kernel {
    unsigned char* bytes = nullptr;
    int k;
    explicit Kernel(float r) : k(makeCircleKernel(&bytes, r)) {}
    ~Kernel() { std::free(bytes); }
    int at(int x, int y) const { return bytes[y * k + x]; }
};

} // namespace

TEST(StrokeKernel, WorkedRadii)
{
    // Below radius 1 the centre carries the radius itself: a faint sub-pixel stroke (the stroke
    // goldens pin the kernels from radius 1 up).
    const struct {
        float r;
        int k, x, y, value;
    } cases[] = {{0.5f, 3, 1, 1, 128}, {0.5f, 3, 0, 1, 128}, {0.5f, 3, 0, 0, 22}, {0.0f, 1, 0, 0, 0},
                 {std::nanf(""), 1, 0, 0, 0}};
    for (const auto& c : cases) {
        Kernel kernel(c.r);
        ASSERT_EQ(kernel.k, c.k) << c.r;
        EXPECT_EQ(kernel.at(c.x, c.y), c.value) << c.r << " at " << c.x << "," << c.y;
    }
    EXPECT_EQ(Kernel(-3.0f).bytes, nullptr);
    EXPECT_EQ(Kernel(1e9f).bytes, nullptr);
}

// Halves round up (the goldens pin the centre and inside margins).
TEST(StrokeLayer, Offsets)
{
    EXPECT_EQ(strokeOf(1.5f, OUTSIDE)->getOffset(), 2);
    EXPECT_EQ(strokeOf(7, 5)->getOffset(), 0);
    EXPECT_EQ(strokeOf(std::nanf(""), OUTSIDE)->getOffset(), 0);
}

TEST(StrokeLayer, InsideStrokeReachesBeyondTheBox)
{
    // Radius 2 gives n = 2: the output reaches n + 1 beyond the 6 x 6 box, full wherever the
    // mask is empty.
    FilterRun run(rect(30, 30, 12, 12, 18, 18));
    run.run(*strokeOf(2, INSIDE));
    // Inside, 2 from the empty border is full and 3 from it empty.
    run.expectAlphas({{9, 15, 255}, {8, 15, 0}, {15, 20, 255}, {15, 21, 0}, {13, 15, 255}, {14, 15, 0}});
}
