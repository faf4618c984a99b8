#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <gtest/gtest.h>

#include <array>

using namespace LmFontEffect;

namespace {

using Px = std::array<unsigned, 4>; // R, G, B, A

Px at(const LmBitmap& bm, unsigned x, unsigned y)
{
    const unsigned char* p = bm.pixels + (y * bm.width + x) * 4;
    return {p[0], p[1], p[2], p[3]};
}

void fill(LmBitmap& bm, Px v)
{
    for (unsigned i = 0; i < bm.width * bm.height * 4; ++i) bm.pixels[i] = (unsigned char)v[i % 4];
}

Px blendOne(int mode, unsigned m, Px d, unsigned colour)
{
    LmBitmap bm(1, 1, 4);
    fill(bm, d);
    unsigned char cov = (unsigned char)m;
    LmBlender::drawBitmapBlend8(0, 0, &bm, &cov, 1, 1, 1, colour, mode);
    return at(bm, 0, 0);
}

} // namespace

// One coverage byte over one pixel, for the branches the filter goldens leave open: no
// coverage, full coverage in mode 7, source-over's saturation, unknown modes.
TEST(LmBlender, EightBitModesOverOnePixel)
{
    struct Case {
        int mode;
        unsigned coverage;
        Px dst;
        unsigned colour;
        Px want;
    };
    const Case cases[] = {
        {LME_BLEND_OTHER, 0, {100, 100, 100, 200}, 0xC8306090u, {100, 100, 100, 200}},
        {LME_BLEND_OTHER, 255, {50, 50, 50, 100}, 0xC8306090u, {79, 108, 137, 221}},
        {LME_BLEND_SRC_OVER, 0, {30, 30, 30, 60}, 0x80FF4000u, {30, 30, 30, 60}},
        {LME_BLEND_SRC_OVER, 100, {30, 30, 30, 4}, 0x80FF4000u, {124, 49, 24, 54}},
        {LME_BLEND_SRC_OVER, 255, {200, 200, 200, 200}, 0x80FF4000u, {255, 163, 99, 227}},
        // Unknown modes leave the destination.
        {0, 200, {1, 2, 3, 4}, 0xFFFFFFFFu, {1, 2, 3, 4}},
        {4, 200, {1, 2, 3, 4}, 0xFFFFFFFFu, {1, 2, 3, 4}},
        {-1, 200, {1, 2, 3, 4}, 0xFFFFFFFFu, {1, 2, 3, 4}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(blendOne(c.mode, c.coverage, c.dst, c.colour), c.want) << "mode " << c.mode << " coverage " << c.coverage;
}

TEST(LmBlender, ClipsAtEveryEdge)
{
    unsigned char src[5 * 5];
    for (int i = 0; i < 25; ++i) src[i] = (unsigned char)(i + 1);
    // Far outside, huge offsets, null inputs and negative sizes draw nothing and never overflow
    // (a source over the edges: LmBlenderRuns).
    LmBitmap rgba(4, 4, 4);
    LmBlender::drawBitmapBlend8(2147483600, 5, &rgba, src, 100, 100, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(-2147483600, -2147483600, &rgba, src, 5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, &rgba, src, -5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, &rgba, nullptr, 5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, nullptr, src, 5, 5, 5, 0xFFFFFFFFu, 1);
    LmBitmap failed(70000, 70000, 4);
    LmBlender::drawBitmapBlend8(0, 0, &failed, src, 5, 5, 5, 0xFFFFFFFFu, 1);
    for (int i = 0; i < 64; ++i) ASSERT_EQ(0, rgba.pixels[i]);
    // Bottom-right clipping with a stride wider than the drawn width.
    LmBlender::drawBitmapBlend8(3, 3, &rgba, src, 2, 2, 5, 0xFFFFFFFFu, 1);
    EXPECT_EQ((256u * src[0]) >> 8, at(rgba, 3, 3)[3]);
    EXPECT_EQ(0u, at(rgba, 2, 3)[3]);
}

TEST(LmBlender, ChannelsKeepTheirMeaningOnAnyByteOrder)
{
    // A 32-bit source given as bytes has the destination's layout (words: LmBlenderRuns).
    LmBitmap under(1, 1, 4);
    const unsigned char bytes[4] = {10, 20, 30, 255};
    LmBlender::drawBitmapBlend32(0, 0, &under, bytes, 1, 1, 1, 0u, 99);
    EXPECT_EQ(at(under, 0, 0), (Px{10, 20, 30, 255}));

    LmBlender::convertBGRAToARGB(&under);
    EXPECT_EQ(at(under, 0, 0), (Px{30, 20, 10, 255}));
    LmBlender::convertBGRAToARGB(nullptr);
}

TEST(LmBlender, EightBitOntoThirtyTwoReplacesThePixel)
{
    // The unscaled colour and the coverage as alpha (the 32-bit blends: LmBlenderRuns).
    LmBitmap dst(1, 1, 4);
    fill(dst, {9, 9, 9, 9});
    unsigned char m = 64;
    LmBlender::drawBitmap(0, 0, &dst, &m, 1, 1, 0xFF204060u);
    EXPECT_EQ(at(dst, 0, 0), (Px{0x20, 0x40, 0x60, 64}));
}
