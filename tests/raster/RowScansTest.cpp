#include "raster/LmRowOps.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace LmFontEffect;

// Every length up to past three 64-byte vectors, every start, with the run broken at each
// place (or not at all), against plain loops.
TEST(LmRowScans, RunsAndSwapMatchPlainLoops)
{
    std::mt19937 rng(3);
    for (size_t count = 0; count < 200; ++count) {
        for (size_t breakAt = 0; breakAt <= count; breakAt += 1 + count / 9) {
            std::vector<unsigned char> zeros(4 * count + 4, 0), opaque(4 * count + 4, 0);
            for (size_t i = 0; i < count; ++i) {
                opaque[4 * i] = (unsigned char)rng();
                opaque[4 * i + 3] = 255;
            }
            if (breakAt < count) {
                zeros[4 * breakAt + rng() % 4] = 1 + rng() % 255;
                opaque[4 * breakAt + 3] = (unsigned char)(rng() % 255);
            }
            EXPECT_EQ(breakAt < count ? 4 * breakAt : 4 * count, LmRowOps::zeroBytes(zeros.data(), 4 * count) & ~3u)
                << count << " " << breakAt;
            EXPECT_EQ(breakAt, LmRowOps::opaquePixels(opaque.data(), count)) << count << " " << breakAt;
        }
        std::vector<unsigned char> row(4 * count + 4);
        for (unsigned char& b : row) b = (unsigned char)(rng() % 3 == 0 ? 0 : rng());
        std::vector<unsigned char> expected(row);
        for (size_t i = 0; i < count; ++i) {
            unsigned char* p = &expected[4 * i];
            const unsigned char px[4] = {p[3] ? p[2] : (unsigned char)0, p[3] ? p[1] : (unsigned char)0,
                                         p[3] ? p[0] : (unsigned char)0, p[3]};
            std::copy(px, px + 4, p);
        }
        LmRowOps::swapVisible(row.data(), count);
        EXPECT_EQ(expected, row) << count;
    }
}
