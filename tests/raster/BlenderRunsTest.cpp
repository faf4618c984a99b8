#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

using namespace LmFontEffect;

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
        EXPECT_EQ(0, std::memcmp(whole.pixels, onePixel.pixels, 160 * 7 * 4)) << "mode " << mode;
    }
    LmBitmap lines(160, 7, 1), expected(160, 7, 1);
    for (unsigned i = 0; i < 160 * 7; ++i) lines.pixels[i] = expected.pixels[i] = (unsigned char)rng();
    LmBlender::drawBitmap(-3, 2, &lines, mask.data(), w, h, 0xFF000000u);
    for (int y = 2; y < 7; ++y)
        for (int x = 0; x < w - 3; ++x)
            expected.pixels[y * 160 + x] = std::max(expected.pixels[y * 160 + x], mask[(y - 2) * w + x + 3]);
    EXPECT_EQ(0, std::memcmp(expected.pixels, lines.pixels, 160 * 7));
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
        EXPECT_EQ(0, std::memcmp(plain.pixels, fast.pixels, 36 * 12 * 4)) << over << " at " << x << ", " << y;
    }
}
