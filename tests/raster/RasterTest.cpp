// The bitmap's cut-outs and size cap, and the blender's branches the filter goldens leave open, with its run-skipping paths against one call per pixel or the plain formulas.
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"
#include "raster/LmRect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

using namespace LmFontEffect;

namespace {

using Px = std::array<unsigned, 4>; // R, G, B, A

Px at(const LmBitmap& bm, unsigned x, unsigned y)
{
    const unsigned char* p = bm.pixels + (y * bm.width + x) * 4;
    return {p[0], p[1], p[2], p[3]};
}

bool sameBytes(const LmBitmap& a, const LmBitmap& b)
{
    return std::memcmp(a.pixels, b.pixels, (size_t)a.width * a.height * a.bytesPerPixel) == 0;
}

} // namespace

// Clearing and copying are pinned by every filter test; self-assignment only here.
TEST(LmBitmap, SelfAssignedThenCutOut)
{
    LmBitmap src(6, 4, 1);
    for (unsigned i = 0; i < 24; ++i) src.pixels[i] = (unsigned char)(i / 6 * 10 + i % 6);
    src = src; // keeps the buffer the cut-outs read
    // A reversed rectangle still has a positive size but copies nothing; one reaching outside
    // the source reads nothing before it (the grid is the byte buffer's: past a row's end is the
    // next row).
    const struct {
        LmRect rect;
        unsigned width, height;
        std::vector<int> pixels; // the first ones
    } cases[] = {{LmRect(2, 1, 5, 3), 3, 2, {12, 13, 14, 22, 23, 24}},
                 {LmRect(5, 1, 2, 3), 3, 2, {0, 0, 0, 0, 0, 0}},
                 {LmRect(-2, 2, 8, 9), 10, 7, {0, 0, 20, 21, 22, 23, 24, 25}}};
    for (auto c : cases) {
        LmBitmap cut(src, &c.rect);
        ASSERT_EQ(std::vector<unsigned>({cut.width, cut.height}), std::vector<unsigned>({c.width, c.height}));
        EXPECT_EQ(std::vector<int>(cut.pixels, cut.pixels + c.pixels.size()), c.pixels) << c.rect.left;
    }
}

TEST(LmBitmap, AbsurdSizesFailAsNullPixelsWithoutWrapping)
{
    // 70000 x 70000 x 4 wraps to a small number in 32 bits; it must fail, not under-allocate.
    LmBitmap huge(70000, 70000, 4), wrapped(65536, 65536, 1), atCap(1u << 14, 1u << 14, 1), zero(0, 10, 4);
    LmBitmap copyOfFailed(huge);
    EXPECT_EQ(std::vector<bool>({!huge.pixels, !wrapped.pixels, !atCap.pixels, !copyOfFailed.pixels}),
              std::vector<bool>({true, true, false, true}));
    EXPECT_EQ(std::vector<unsigned>({huge.width, zero.width}), std::vector<unsigned>({70000, 0}));
    EXPECT_EQ(0u, LmBitmap::byteSize(0, 10, 4));
    EXPECT_EQ(0u, LmBitmap::byteSize(0xFFFFFFFFu, 0xFFFFFFFFu, 4));
}

// One coverage byte over one pixel, for the branches the filter goldens leave open: full
// coverage in mode 7, source-over without coverage and its saturation, unknown modes.
TEST(LmBlender, EightBitModesOverOnePixel)
{
    const struct {
        int mode;
        unsigned char coverage;
        Px dst;
        unsigned colour;
        Px want;
    } cases[] = {
        {LME_BLEND_OTHER, 255, {50, 50, 50, 100}, 0xC8306090u, {79, 108, 137, 221}},
        {LME_BLEND_SRC_OVER, 0, {30, 30, 30, 60}, 0x80FF4000u, {30, 30, 30, 60}},
        {LME_BLEND_SRC_OVER, 100, {30, 30, 30, 4}, 0x80FF4000u, {124, 49, 24, 54}},
        {LME_BLEND_SRC_OVER, 255, {200, 200, 200, 200}, 0x80FF4000u, {255, 163, 99, 227}},
        // Unknown modes leave the destination.
        {0, 200, {1, 2, 3, 4}, 0xFFFFFFFFu, {1, 2, 3, 4}},
        {4, 200, {1, 2, 3, 4}, 0xFFFFFFFFu, {1, 2, 3, 4}},
        {-1, 200, {1, 2, 3, 4}, 0xFFFFFFFFu, {1, 2, 3, 4}},
    };
    for (const auto& c : cases) {
        LmBitmap bm(1, 1, 4);
        std::copy(c.dst.begin(), c.dst.end(), bm.pixels);
        LmBlender::drawBitmapBlend8(0, 0, &bm, &c.coverage, 1, 1, 1, c.colour, c.mode);
        EXPECT_EQ(at(bm, 0, 0), c.want) << "mode " << c.mode << " coverage " << (int)c.coverage;
    }
}

TEST(LmBlender, ClipsAtEveryEdge)
{
    unsigned char src[5 * 5];
    for (int i = 0; i < 25; ++i) src[i] = (unsigned char)(i + 1);
    // Far outside, huge offsets, null inputs and negative sizes draw nothing and never overflow
    // (a source over the edges: the filter goldens and the run tests below).
    LmBitmap rgba(4, 4, 4), failed(70000, 70000, 4);
    LmBlender::drawBitmapBlend8(2147483600, 5, &rgba, src, 100, 100, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(-2147483600, -2147483600, &rgba, src, 5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, &rgba, src, -5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, &rgba, nullptr, 5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, nullptr, src, 5, 5, 5, 0xFFFFFFFFu, 1);
    LmBlender::drawBitmapBlend8(0, 0, &failed, src, 5, 5, 5, 0xFFFFFFFFu, 1);
    EXPECT_TRUE(sameBytes(rgba, LmBitmap(4, 4, 4)));
}

TEST(LmBlender, ChannelsKeepTheirMeaningOnAnyByteOrder)
{
    // A 32-bit source given as bytes has the destination's layout (words: the run tests below).
    LmBitmap under(1, 1, 4);
    const unsigned char bytes[4] = {10, 20, 30, 255};
    LmBlender::drawBitmapBlend32(0, 0, &under, bytes, 1, 1, 1, 0u, 99);
    EXPECT_EQ(at(under, 0, 0), (Px{10, 20, 30, 255}));
    LmBlender::convertBGRAToARGB(&under);
    EXPECT_EQ(at(under, 0, 0), (Px{30, 20, 10, 255}));
    LmBlender::convertBGRAToARGB(nullptr);
    // 8-bit onto 32-bit replaces the pixel: the unscaled colour and the coverage as alpha.
    const unsigned char m = 64;
    LmBlender::drawBitmap(0, 0, &under, &m, 1, 1, 0xFF204060u);
    EXPECT_EQ(at(under, 0, 0), (Px{0x20, 0x40, 0x60, 64}));
}

// Whole-mask blends against one call per pixel (a one-pixel source has no runs to skip), over
// masks of clear runs of every length, onto pixels both clear and not.
TEST(LmBlenderRuns, SkippingClearCoverageKeepsEveryByte)
{
    std::mt19937 rng(7);
    const int w = 150, h = 5;
    std::vector<unsigned char> mask(w * h);
    for (int i = 0; i < w * h;) {
        int run = (int)(rng() % (rng() % 4 ? 9 : 140)); // short runs and vector-long ones
        for (; run > 0 && i < w * h; --run) mask[i++] = 0;
        if (i < w * h) mask[i++] = (unsigned char)(rng() % 3 == 0 ? 255 : rng());
    }
    LmBitmap start(160, 7, 4);
    // Row 3 is entirely clear (the unread path), the others mix clear pixels and not.
    for (unsigned i = 0; i < 160 * 7 * 4; ++i) start.pixels[i] = (unsigned char)(i % 16 < 8 || i / 640 == 3 ? 0 : rng());
    for (int mode : {LME_BLEND_SRC_OVER, LME_BLEND_DST_OVER, LME_BLEND_DST_OVER_NSA, LME_BLEND_OTHER}) {
        LmBitmap whole(start), onePixel(start);
        LmBlender::drawBitmapBlend8(2, 1, &whole, mask.data(), w, h, w, 0xC0A05010u, mode);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                LmBlender::drawBitmapBlend8(2 + x, 1 + y, &onePixel, &mask[y * w + x], 1, 1, 1, 0xC0A05010u, mode);
        EXPECT_TRUE(sameBytes(whole, onePixel)) << "mode " << mode;
    }
    LmBitmap lines(160, 7, 1), expected(160, 7, 1);
    for (unsigned i = 0; i < 160 * 7; ++i) lines.pixels[i] = expected.pixels[i] = (unsigned char)rng();
    LmBlender::drawBitmap(-3, 2, &lines, mask.data(), w, h, 0xFF000000u);
    for (int y = 2; y < 7; ++y)
        for (int x = 0; x < w - 3; ++x)
            expected.pixels[y * 160 + x] = std::max(expected.pixels[y * 160 + x], mask[(y - 2) * w + x + 3]);
    EXPECT_TRUE(sameBytes(expected, lines));
}

// 32-bit blends over sparse sources (runs of zero words stepped over, vectors of words) against
// the plain per-pixel formulas, with the source hanging over every edge of the destination.
TEST(LmBlenderRuns, SkippingClearWordsKeepsEveryByte)
{
    std::mt19937 rng(11);
    const int w = 40, h = 9, stride = 43;
    std::vector<unsigned> src(stride * h);
    for (unsigned& v : src) v = rng() % 3 ? 0 : rng() % 4 ? rng() : rng() % 2 ? rng() & 0xFFFFFFu : rng() | 0xFF000000u;
    auto sat = [](unsigned v) { return (unsigned char)std::min(v, 255u); };
    for (int x : {-45, -7, 0, 5, 30}) for (int y : {-10, -3, 0, 2, 8}) for (int over : {0, 1}) {
        LmBitmap fast(36, 12, 4);
        for (unsigned i = 0; i < 36 * 12 * 4; ++i) fast.pixels[i] = (unsigned char)(i % 12 < 4 ? 0 : rng());
        LmBitmap plain(fast);
        for (int Y = std::max(y, 0); Y < std::min(y + h, 12); ++Y)
            for (int X = std::max(x, 0); X < std::min(x + w, 36); ++X) {
                unsigned s = src[(Y - y) * stride + X - x], a = s >> 24, c[4] = {s >> 16 & 255, s >> 8 & 255, s & 255, a};
                unsigned char* d = plain.pixels + (Y * 36 + X) * 4;
                const unsigned da = d[3];
                for (int i = 0; i < 4; ++i)
                    if (!over) d[i] = a == 255 ? c[i] : sat((((255 - a) * (d[i] + 1)) >> 8) + c[i]);
                    else if (da < 255 && a != 0) d[i] = da == 0 ? c[i] : sat(d[i] + (((255 - da) * (c[i] + 1)) >> 8));
            }
        LmBlender::drawBitmapBlend32(x, y, &fast, src.data(), w, h, stride, over ? LME_BLEND_DST_OVER : LME_BLEND_SRC_OVER);
        EXPECT_TRUE(sameBytes(plain, fast)) << over << " at " << x << ", " << y;
    }
}
