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
