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
            size_t at = 4 * count; // the first non-zero byte
            if (breakAt < count) {
                at = 4 * breakAt + rng() % 4;
                zeros[at] = (unsigned char)(1 + rng() % 255);
                opaque[4 * breakAt + 3] = (unsigned char)(rng() % 255);
            }
            EXPECT_EQ(at, LmRowOps::zeroBytes(zeros.data(), 4 * count)) << count << " " << breakAt;
            EXPECT_EQ(at % 4 == 3 ? breakAt : count, LmRowOps::alphaRun(zeros.data(), count, 0)) << count;
            EXPECT_EQ(breakAt, LmRowOps::alphaRun(opaque.data(), count, 255)) << count << " " << breakAt;
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
