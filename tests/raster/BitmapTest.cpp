#include "raster/LmBitmap.h"
#include "raster/LmRect.h"
#include "raster/LmSqrt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace LmFontEffect;

// Clearing and copying are pinned by every filter test; self-assignment only here.
TEST(LmBitmap, SelfAssignmentKeepsTheBuffer)
{
    LmBitmap b(3, 2, 1);
    b.pixels[5] = 6;
    b = b;
    EXPECT_EQ(6, b.pixels[5]);
}

TEST(LmBitmap, CutOutOfEightBitBitmap)
{
    LmBitmap src(6, 4, 1);
    for (unsigned y = 0; y < 4; ++y)
        for (unsigned x = 0; x < 6; ++x) src.pixels[y * 6 + x] = (unsigned char)(y * 10 + x);
    LmRect r(2, 1, 5, 3);
    LmBitmap cut(src, &r);
    ASSERT_EQ(3u, cut.width);
    ASSERT_EQ(2u, cut.height);
    const unsigned char expected[6] = {12, 13, 14, 22, 23, 24};
    EXPECT_EQ(0, std::memcmp(expected, cut.pixels, 6));

    // A reversed rectangle still has a positive size but copies nothing.
    LmRect reversed(5, 1, 2, 3);
    LmBitmap none(src, &reversed);
    EXPECT_EQ(3u, none.width);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(0, none.pixels[i]);

    // A rectangle reaching outside the source reads nothing beyond it.
    LmRect outside(-2, 2, 8, 9);
    LmBitmap clipped(src, &outside);
    EXPECT_EQ(10u, clipped.width);
    EXPECT_EQ(22, clipped.pixels[0 * 10 + 4]);
}

TEST(LmBitmap, AbsurdSizesFailAsNullPixelsWithoutWrapping)
{
    // 70000 x 70000 x 4 wraps to a small number in 32 bits; it must fail, not under-allocate.
    LmBitmap huge(70000, 70000, 4);
    EXPECT_EQ(nullptr, huge.pixels);
    EXPECT_EQ(70000u, huge.width);
    LmBitmap wrapped(65536, 65536, 1);
    EXPECT_EQ(nullptr, wrapped.pixels);
    LmBitmap atCap(1u << 14, 1u << 14, 1);
    EXPECT_NE(nullptr, atCap.pixels);
    LmBitmap copyOfFailed(huge);
    EXPECT_EQ(nullptr, copyOfFailed.pixels);

    LmBitmap zero(0, 10, 4);
    EXPECT_EQ(0u, zero.width);
    EXPECT_EQ(0u, LmBitmap::byteSize(0, 10, 4));
    EXPECT_EQ(0u, LmBitmap::byteSize(0xFFFFFFFFu, 0xFFFFFFFFu, 4));
}

// The table's entries (three-decimal roundings) are pinned by the relief goldens.
TEST(LmSqrt, FastSquareRoot)
{
    EXPECT_EQ(0.0f, fsqrt(0.0f));
    for (float v : {0.25f, 2.0f, 4.0f, 10.0f, 5489.0f}) EXPECT_NEAR(std::sqrt(v), fsqrt(v), std::sqrt(v) * 0.002f);
}
