// The blur's row passes give the bytes of plain sums (the glows' spread passes: GlowSameBytes).

#include "filters/LmGaussianBlur.h"

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
