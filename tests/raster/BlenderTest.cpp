#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace LmFontEffect;

namespace {

struct Px {
    unsigned r, g, b, a;
};

Px at(const LmBitmap& bm, unsigned x, unsigned y)
{
    const unsigned char* p = bm.pixels + (y * bm.width + x) * 4;
    return {p[0], p[1], p[2], p[3]};
}

void fill(LmBitmap& bm, Px v)
{
    for (unsigned i = 0; i < bm.width * bm.height; ++i) {
        bm.pixels[4 * i] = (unsigned char)v.r;
        bm.pixels[4 * i + 1] = (unsigned char)v.g;
        bm.pixels[4 * i + 2] = (unsigned char)v.b;
        bm.pixels[4 * i + 3] = (unsigned char)v.a;
    }
}

// Blends one coverage byte with mode over one destination pixel.
Px blendOne(int mode, unsigned m, Px d, unsigned colour)
{
    LmBitmap bm(1, 1, 4);
    fill(bm, d);
    unsigned char cov = (unsigned char)m;
    LmBlender::drawBitmapBlend8(0, 0, &bm, &cov, 1, 1, 1, colour, mode);
    return at(bm, 0, 0);
}

unsigned sat(unsigned v) { return std::min(v, 255u); }

} // namespace

TEST(LmBlender, TextModeOverOpaqueWhiteKeepsOnlyTheCoverage)
{
    Px p = blendOne(LME_BLEND_OTHER, 128, {255, 255, 255, 255}, 0xFF000000u);
    EXPECT_EQ(128u, p.a);
    EXPECT_EQ(128u, p.r);
    EXPECT_EQ(128u, p.g);
    EXPECT_EQ(128u, p.b);
}

// Every (coverage, destination alpha) pair of the text mode against its four cases.
TEST(LmBlender, TextModeAllCoverageAndAlphaPairs)
{
    const unsigned colour = 0xC8306090u; // A 200, R 48, G 96, B 144
    const unsigned C[3] = {48, 96, 144}, CA = 200;
    for (unsigned m = 0; m < 256; ++m) {
        for (unsigned d = 0; d < 256; ++d) {
            const unsigned x = d / 2; // a premultiplied colour byte
            Px got = blendOne(LME_BLEND_OTHER, m, {x, x, x, d}, colour);
            unsigned sA = ((CA + 1) * m) >> 8;
            Px want;
            if (m == 0) {
                want = {x, x, x, d};
            } else if (d == 0) {
                want = {((C[0] + 1) * m) >> 8, ((C[1] + 1) * m) >> 8, ((C[2] + 1) * m) >> 8, sA};
            } else if (m == 255) {
                want = {sat(x + (((C[0] + 1) * (255 - d)) >> 8)), sat(x + (((C[1] + 1) * (255 - d)) >> 8)),
                        sat(x + (((C[2] + 1) * (255 - d)) >> 8)), sat(d + (((1 + sA) * (255 - d)) >> 8))};
            } else if (d == 255) {
                want = {((x + 1) * m) >> 8, ((x + 1) * m) >> 8, ((x + 1) * m) >> 8, m};
            } else {
                auto scaled = [&](unsigned v) { return v > 65535 ? 255u : v >> 8; };
                unsigned c[3];
                for (int i = 0; i < 3; ++i)
                    c[i] = scaled((x + (((255 - d) * (1 + (((C[i] + 1) * m) >> 8))) >> 8) + 1) * m);
                want = {c[0], c[1], c[2], scaled((d + (((1 + sA) * (255 - d)) >> 8) + 1) * m)};
            }
            ASSERT_EQ(want.r, got.r) << "m=" << m << " d=" << d;
            ASSERT_EQ(want.g, got.g) << "m=" << m << " d=" << d;
            ASSERT_EQ(want.b, got.b) << "m=" << m << " d=" << d;
            ASSERT_EQ(want.a, got.a) << "m=" << m << " d=" << d;
        }
    }
}

TEST(LmBlender, SourceAndDestinationOverAllPairs)
{
    const unsigned colour = 0x80FF4000u;
    for (unsigned m = 0; m < 256; ++m) {
        for (unsigned d = 0; d < 256; ++d) {
            const unsigned x = d;
            Px src = blendOne(LME_BLEND_SRC_OVER, m, {x, x, x, d}, colour);
            unsigned s = ((0x80 + 1) * m) >> 8;
            if (s == 0) {
                ASSERT_EQ(d, src.a);
            } else {
                ASSERT_EQ(sat(s + (((255 - s) * (d + 1)) >> 8)), src.a) << m << " " << d;
                ASSERT_EQ(sat((((255 - s) * (x + 1)) >> 8) + ((256 * m) >> 8)), src.r) << m << " " << d;
            }
            ASSERT_GE(src.a, d);

            Px dst = blendOne(LME_BLEND_DST_OVER, m, {x, x, x, d}, colour);
            if (d == 255 || m == 0) {
                ASSERT_EQ(x, dst.r);
                ASSERT_EQ(d, dst.a);
            } else if (d == 0) {
                ASSERT_EQ((256 * m) >> 8, dst.r);
                ASSERT_EQ(s, dst.a);
            } else {
                ASSERT_EQ(sat(x + (((1 + ((256 * m) >> 8)) * (255 - d)) >> 8)), dst.r);
                ASSERT_EQ(sat(d + (((1 + s) * (255 - d)) >> 8)), dst.a);
            }
        }
    }
}

TEST(LmBlender, NoSourceAlphaModeDropsTheEdge)
{
    // Any coverage over a transparent pixel writes the full colour.
    for (unsigned m : {1u, 64u, 254u, 255u}) {
        Px p = blendOne(LME_BLEND_DST_OVER_NSA, m, {0, 0, 0, 0}, 0xFF102030u);
        EXPECT_EQ(0x10u, p.r);
        EXPECT_EQ(0x20u, p.g);
        EXPECT_EQ(0x30u, p.b);
        EXPECT_EQ(255u, p.a);
    }
    Px half = blendOne(LME_BLEND_DST_OVER_NSA, 3, {100, 0, 0, 100}, 0xFF000000u);
    EXPECT_EQ(sat(100 + ((256 * 155) >> 8)), half.a);
    EXPECT_EQ(100u + ((1 * 155) >> 8), half.r);
}

TEST(LmBlender, UnknownModesLeaveTheDestination)
{
    for (int mode : {0, 4, 5, 6, 8, -1}) {
        Px p = blendOne(mode, 200, {1, 2, 3, 4}, 0xFFFFFFFFu);
        EXPECT_EQ(1u, p.r);
        EXPECT_EQ(4u, p.a);
    }
}

TEST(LmBlender, ClipsAtEveryEdge)
{
    LmBitmap dst(4, 4, 1);
    unsigned char src[5 * 5];
    for (int i = 0; i < 25; ++i) src[i] = (unsigned char)(i + 1);
    // Placed at (-3, -2): source column 3 and row 2 land at the destination's corner.
    LmBlender::drawBitmap(-3, -2, &dst, src, 5, 5, 0xFF000000u);
    EXPECT_EQ(src[2 * 5 + 3], dst.pixels[0]);
    EXPECT_EQ(src[2 * 5 + 4], dst.pixels[1]);
    EXPECT_EQ(0, dst.pixels[2]);
    EXPECT_EQ(src[4 * 5 + 3], dst.pixels[2 * 4]);
    EXPECT_EQ(0, dst.pixels[3 * 4]);

    // Far outside, huge offsets, null inputs and negative sizes draw nothing and never overflow.
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
    EXPECT_EQ((256u * src[0]) >> 8, at(rgba, 3, 3).a);
    EXPECT_EQ(0u, at(rgba, 2, 3).a);
}

TEST(LmBlender, EightBitTargetMergesByMaximum)
{
    LmBitmap mask(2, 1, 1);
    mask.pixels[0] = 200;
    mask.pixels[1] = 10;
    unsigned char glyph[2] = {100, 100};
    LmBlender::drawBitmap(0, 0, &mask, glyph, 2, 1, 0xFF000000u);
    EXPECT_EQ(200, mask.pixels[0]);
    EXPECT_EQ(100, mask.pixels[1]);
}

TEST(LmBlender, ChannelsKeepTheirMeaningOnAnyByteOrder)
{
    // A red colour word lands in the red byte (byte 0 of an R, G, B, A pixel).
    Px red = blendOne(LME_BLEND_SRC_OVER, 255, {0, 0, 0, 0}, 0xFFFF0000u);
    EXPECT_EQ(255u, red.r);
    EXPECT_EQ(0u, red.b);
    Px blue = blendOne(LME_BLEND_DST_OVER, 255, {0, 0, 0, 0}, 0xFF0000FFu);
    EXPECT_EQ(0u, blue.r);
    EXPECT_EQ(255u, blue.b);

    // A 32-bit source given as ARGB words.
    LmBitmap dst(2, 1, 4);
    const unsigned int words[2] = {0xFFFF0000u, 0x800000FFu};
    LmBlender::drawBitmapBlend32(0, 0, &dst, words, 2, 1, 2, LME_BLEND_SRC_OVER);
    EXPECT_EQ(255u, at(dst, 0, 0).r);
    EXPECT_EQ(0u, at(dst, 0, 0).b);
    EXPECT_EQ(255u, at(dst, 1, 0).b);
    EXPECT_EQ(128u, at(dst, 1, 0).a);

    // A 32-bit source given as bytes has the destination's layout.
    LmBitmap under(1, 1, 4);
    const unsigned char bytes[4] = {10, 20, 30, 255};
    LmBlender::drawBitmapBlend32(0, 0, &under, bytes, 1, 1, 1, 0u, 99);
    EXPECT_EQ(10u, at(under, 0, 0).r);
    EXPECT_EQ(30u, at(under, 0, 0).b);

    // The swap exchanges bytes 0 and 2.
    LmBlender::convertBGRAToARGB(&under);
    EXPECT_EQ(30u, at(under, 0, 0).r);
    EXPECT_EQ(10u, at(under, 0, 0).b);
    EXPECT_EQ(255u, at(under, 0, 0).a);
    LmBlender::convertBGRAToARGB(nullptr);
}

TEST(LmBlender, ThirtyTwoBitBlends)
{
    LmBitmap dst(1, 1, 4);
    fill(dst, {100, 50, 0, 128});
    const unsigned int half = 0x80402000u; // premultiplied A 128, R 64, G 32
    LmBlender::blendSrcOver32To32(0, 0, &dst, &half, 1, 1, 1);
    Px p = at(dst, 0, 0);
    EXPECT_EQ(sat(((127 * 101) >> 8) + 64), p.r);
    EXPECT_EQ(sat(128 + ((127 * 129) >> 8)), p.a);

    fill(dst, {100, 50, 0, 128});
    LmBlender::blendDstOver32To32(0, 0, &dst, &half, 1, 1, 1);
    p = at(dst, 0, 0);
    EXPECT_EQ(sat(100 + ((127 * 65) >> 8)), p.r);
    EXPECT_EQ(sat(128 + ((127 * 129) >> 8)), p.a);

    // Opaque destinations and transparent sources are left alone by destination-over.
    fill(dst, {1, 2, 3, 255});
    LmBlender::blendDstOver32To32(0, 0, &dst, &half, 1, 1, 1);
    EXPECT_EQ(1u, at(dst, 0, 0).r);

    // drawBitmap8To32 replaces the pixel with the unscaled colour and coverage alpha.
    fill(dst, {9, 9, 9, 9});
    unsigned char m = 64;
    LmBlender::drawBitmap(0, 0, &dst, &m, 1, 1, 0xFF204060u);
    p = at(dst, 0, 0);
    EXPECT_EQ(0x20u, p.r);
    EXPECT_EQ(0x60u, p.b);
    EXPECT_EQ(64u, p.a);
}
