// The blur's row passes and the glows' spread passes give the bytes of plain sums.

#include "filters/LmGaussianBlur.h"
#include "filters/LmGlow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace LmFontEffect;

TEST(BlurRows, SameBytesAsPlainTaps)
{
    std::mt19937 rng(7);
    for (int R : {0, 1, 2, 3, 5, 8, 13, 30, 64, 100, 300})
        for (int round = 0; round < 5; ++round) {
            // Gaussian weights of both scales, then arbitrary ones, the last with quotients past 255.
            std::vector<int> w((size_t)R + 1);
            int sum = 0;
            if (round < 2) LmGaussianBlur::computeGaussianWeights(w.data(), &sum, R, round ? 128 : 100);
            for (int& v : w) v = round < 2 ? v : (int)(rng() % (round == 3 ? 3000 : 200));
            for (int i = 0; round >= 2 && i <= R; ++i) sum += (i ? 2 : 1) * w[i] + (i ? 0 : (int)(rng() % 50));
            if (round == 4) sum = std::max(1, sum / 2);
            const int W = 2 * R + 1 + (int)(rng() % 700), H = 2 * R + 1, y = R;
            std::vector<unsigned char> src((size_t)W * H), row(W), out(W);
            for (auto& b : src) b = rng() % 3 ? (unsigned char)(rng() % 256) : 255;
            LmGaussianBlur::verticalRow(src.data(), W, y, R, W - R, w.data(), sum, R, row.data());
            LmGaussianBlur::horizontalRow(src.data() + (size_t)y * W, R, W - R, w.data(), sum, R, out.data());
            for (int x = R; x < W - R; ++x) {
                const unsigned char* c = src.data() + (size_t)y * W + x;
                int v = c[0] * w[0], h = v;
                for (int i = 1; i <= R; ++i) v += (c[i * W] + c[-i * W]) * w[i], h += (c[i] + c[-i]) * w[i];
                ASSERT_EQ(row[x], (unsigned char)(v / sum)) << R << " " << x;
                ASSERT_EQ(out[x], std::min(h / sum, 255)) << R << " " << x;
            }
        }
}

TEST(GlowSpread, SameBytesAsPlainSums)
{
    // Interior bytes: 3 x 3 sums quartered and clamped; interior rows' end columns become 0.
    std::mt19937 rng(9);
    for (int round = 0; round < 40; ++round) {
        const int W = 1 + (int)(rng() % 70), H = 1 + (int)(rng() % 12), passes = (int)(rng() % 5);
        std::vector<unsigned char> img((size_t)W * H), fast;
        for (auto& b : img) b = rng() % 2 ? 255 : (unsigned char)(rng() % 256);
        fast = img;
        LmGlow::increaseByBoxFilter(fast.data(), passes, W, H);
        for (int p = 0; p < passes; ++p) {
            const std::vector<unsigned char> old = img;
            for (int y = 1; y < H - 1; ++y)
                for (int x = 0; x < W; ++x) {
                    int s = 0;
                    for (int i = std::max(x - 1, 0); i <= std::min(x + 1, W - 1); ++i)
                        s += old[(size_t)(y - 1) * W + i] + old[(size_t)y * W + i] + old[(size_t)(y + 1) * W + i];
                    img[(size_t)y * W + x] = x == 0 || x == W - 1 ? 0 : (unsigned char)std::min(s >> 2, 255);
                }
        }
        ASSERT_EQ(fast, img) << W << "x" << H << " passes " << passes;
    }
}
