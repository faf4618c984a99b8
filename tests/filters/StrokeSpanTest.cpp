// The running-maxima stroke workers against the windowed ones: same bytes for every mask kind,
// radius, position, row split and destination content.

#include "filters/MaskFixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

enum Kind { EMPTY, FULL, FAINT, ONE_PIXEL, THIN_LINES, TEXT_LIKE, NOISE, KINDS };

Mask randomMask(Kind kind, unsigned w, unsigned h, std::mt19937& rng)
{
    auto pick = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); };
    Mask m{w, h, std::vector<unsigned char>((size_t)w * h)};
    switch (kind) {
    case EMPTY: break;
    case FULL: std::fill(m.pixels.begin(), m.pixels.end(), 255); break;
    case FAINT: // no pixel fully covered
        for (auto& p : m.pixels) p = (unsigned char)(rng() % 255);
        break;
    case ONE_PIXEL: m.pixels[rng() % m.pixels.size()] = (unsigned char)(1 + rng() % 255); break;
    case NOISE:
        for (auto& p : m.pixels) p = rng() % 3 == 0 ? 255 : rng() % 2 ? 0 : (unsigned char)(rng() % 256);
        break;
    default: { // strokes of anti-aliased segments: hairlines or glyph-like bars
        const double half = kind == THIN_LINES ? pick(0.1, 0.6) : pick(1.0, 3.0);
        const double ax = pick(0, w), ay = pick(0, h), bx = pick(0, w), by = pick(0, h), cx = pick(0, w);
        m = rasterize(w, h, [=](double x, double y) {
            return segmentDistance(x, y, ax, ay, bx, by) <= half || segmentDistance(x, y, bx, by, cx, 0) <= half;
        });
    }
    }
    return m;
}

// Runs both workers of one position over the mask with the same arguments and compares the
// destination bytes. The source sits inside a larger buffer, the rows are split in two calls, and
// the destination starts with random bytes around and under the windows.
void expectSameBytes(const Mask& m, float r, int position, std::mt19937& rng)
{
    unsigned char* kernelBytes = nullptr;
    const int k = makeCircleKernel(&kernelBytes, r);
    ASSERT_NE(kernelBytes, nullptr);
    const int n = k >> 1, W = (int)m.width, H = (int)m.height;
    const int srcX = (int)(rng() % 3), srcY = (int)(rng() % 3), srcStride = W + srcX + 1;
    std::vector<unsigned char> src((size_t)srcStride * (H + srcY), 7);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) src[(size_t)(y + srcY) * srcStride + x + srcX] = m.at(x, y);
    const int dstX = n + (int)(rng() % 2), dstY = n + (int)(rng() % 2);
    const int dstStride = W + 2 * n + 2, dstHeight = H + 2 * n + 2, planeSize = dstStride * dstHeight;
    std::vector<unsigned char> expected((size_t)planeSize * 2);
    for (auto& b : expected) b = rng() % 4 == 0 ? (unsigned char)(rng() % 256) : 0;
    std::vector<unsigned char> actual = expected;
    const int split = H == 0 ? 0 : (int)(rng() % (H + 1));
    int (*const reference[3])(void*) = {partalDTStrokeCenter, partalDTStrokeOutside, partalDTStrokeInside};
    int (*const fast[3])(void*) = {spanStrokeCenter, spanStrokeOutside, spanStrokeInside};
    for (int part = 0; part < 2; ++part) {
        StrokeDTArgs a{expected.data(), src.data(), kernelBytes, srcStride, H + srcY, srcY, srcX, dstStride,
                       dstHeight, dstY, dstX, planeSize, (int)r, k, W, H, part ? split : 0, part ? H : split};
        reference[position](&a);
        a.dst = actual.data();
        fast[position](&a);
    }
    std::free(kernelBytes);
    ASSERT_EQ(expected, actual) << "kind mask " << W << "x" << H << " radius " << r << " position " << position;
}

} // namespace

TEST(StrokeSpans, EveryRadiusOnSmallMasks)
{
    std::mt19937 rng(12);
    for (int kind = 0; kind < KINDS; ++kind)
        for (int i = 0; i <= 200; ++i) {
            const float r = i <= 100 ? (float)i : std::uniform_real_distribution<float>(0.0f, 60.0f)(rng);
            const Mask m = randomMask((Kind)kind, 1 + rng() % 6, 1 + rng() % 5, rng);
            for (int position = 0; position < 3; ++position) expectSameBytes(m, r, position, rng);
        }
}

TEST(StrokeSpans, SpreadOfRadiiOnLargerMasks)
{
    std::mt19937 rng(34);
    const float radii[] = {0.0f, 0.3f, 0.5f, 1.0f, 1.49f, 1.5f, 2.5f, 3.7f, 7.0f, 12.5f, 25.0f, 50.0f};
    for (int kind = 0; kind < KINDS; ++kind)
        for (float r : radii) {
            const Mask m = randomMask((Kind)kind, 20 + rng() % 40, 10 + rng() % 30, rng);
            for (int position = 0; position < 3; ++position) expectSameBytes(m, r, position, rng);
        }
}

TEST(StrokeSpans, WidestKernel)
{
    std::mt19937 rng(56);
    const Mask m = randomMask(NOISE, 3, 2, rng);
    for (int position = 0; position < 3; ++position) expectSameBytes(m, (float)LmStroke::kMaxRadius, position, rng);
}

TEST(StrokeSpans, OtherKernelShapesFallBackToWindows)
{
    // A kernel that rises away from its centre cannot be cut into spans.
    unsigned char kernel[9] = {0, 9, 0, 200, 100, 200, 0, 9, 0};
    unsigned char src[9] = {0, 0, 0, 0, 180, 90, 0, 0, 0};
    unsigned char expected[50] = {}, actual[50] = {};
    StrokeDTArgs a{expected, src, kernel, 3, 3, 0, 0, 5, 5, 1, 1, 25, 1, 3, 3, 3, 0, 3};
    partalDTStrokeCenter(&a);
    a.dst = actual;
    spanStrokeCenter(&a);
    EXPECT_EQ(0, std::memcmp(expected, actual, sizeof expected));
    EXPECT_EQ(spanStrokeOutside(nullptr), 0);
}
