// The blur's row passes against straightforward taps: same bytes for random images, radii,
// weights and divisors; the glows' spread passes against plain 3 x 3 sums.

#include "filters/LmGaussianBlur.h"
#include "filters/LmGlow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace LmFontEffect;

namespace {

int taps(const unsigned char* centre, long step, const std::vector<int>& w, int R)
{
    int acc = centre[0] * w[0];
    for (int i = 1; i <= R; ++i) acc += (centre[i * step] + centre[-i * step]) * w[i];
    return acc;
}

} // namespace

TEST(BlurRows, SameBytesAsPlainTaps)
{
    std::mt19937 rng(7);
    const int radii[] = {0, 1, 2, 3, 5, 8, 13, 30, 64, 100, 300};
    for (int R : radii)
        for (int round = 0; round < 6; ++round) {
            // Gaussian weights of both scales, then arbitrary weights with a larger divisor.
            std::vector<int> w((size_t)R + 1);
            int sum = 0;
            if (round < 2) {
                LmGaussianBlur::computeGaussianWeights(w.data(), &sum, R, round ? 128 : 100);
            } else {
                for (int& v : w) v = (int)(rng() % (round == 5 ? 3000 : 200));
                sum = w[0];
                for (int i = 1; i <= R; ++i) sum += 2 * w[i];
                sum = std::max(1, sum + (int)(rng() % 50) - (round == 4 ? 40 : 0)); // quotients past 255
            }
            const int W = 2 * R + 1 + (int)(rng() % 700), H = 2 * R + 1 + (int)(rng() % 3);
            std::vector<unsigned char> src((size_t)W * H);
            for (auto& b : src) b = rng() % 3 ? (unsigned char)(rng() % 256) : 255;
            const int y = R + (int)(rng() % (H - 2 * R)), x0 = R, x1 = W - R;
            std::vector<unsigned char> row(W, 1), out(W, 1);
            LmGaussianBlur::verticalRow(src.data(), W, y, x0, x1, w.data(), sum, R, row.data());
            LmGaussianBlur::horizontalRow(src.data() + (size_t)y * W, x0, x1, w.data(), sum, R, out.data());
            for (int x = x0; x < x1; ++x) {
                const unsigned char* c = src.data() + (size_t)y * W + x;
                const int v = taps(c, W, w, R), h = taps(c, 1, w, R);
                if (round != 4) {
                    ASSERT_EQ(row[x], v / sum) << R << " " << x;
                }
                ASSERT_EQ(out[x], std::min(h / sum, 255)) << R << " " << x;
            }
        }
}

TEST(GlowSpread, SameBytesAsSlidingSums)
{
    // The straightforward pass: each interior byte from the 3 x 3 sum of the bytes before the pass,
    // quartered and clamped; the first and last columns of interior rows become 0.
    auto reference = [](std::vector<unsigned char> img, int passes, int W, int H) {
        for (int p = 0; p < passes; ++p) {
            std::vector<unsigned char> old = img;
            for (int y = 1; y < H - 1; ++y)
                for (int x = 0; x < W; ++x) {
                    int s = 0;
                    for (int j = -1; j <= 1; ++j)
                        for (int i = -1; i <= 1; ++i)
                            if (x + i >= 0 && x + i < W) s += old[(size_t)(y + j) * W + x + i];
                    img[(size_t)y * W + x] = x == 0 || x == W - 1 ? 0 : (unsigned char)std::min(s >> 2, 255);
                }
        }
        return img;
    };
    std::mt19937 rng(9);
    for (int round = 0; round < 40; ++round) {
        const int W = 1 + (int)(rng() % 40), H = 1 + (int)(rng() % 12), passes = (int)(rng() % 5);
        std::vector<unsigned char> img((size_t)W * H);
        for (auto& b : img) b = rng() % 2 ? 255 : (unsigned char)(rng() % 256);
        std::vector<unsigned char> fast = img;
        LmGlow::increaseByBoxFilter(fast.data(), passes, W, H);
        ASSERT_EQ(fast, reference(img, passes, W, H)) << W << "x" << H << " passes " << passes;
    }
}
