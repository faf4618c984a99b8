// The inner shadow's vectorised passes give the bytes of the straightforward definition: the
// inverse blurred along rows (taps past the row are outside the glyph), then down the shifted
// columns with full inverse above and below, kept where the mask has coverage; full shadow where
// the shift reads only beyond the blur's reach, and the glyphs themselves when it never reaches.
#include "filters/MaskFixtures.h"

#include "filters/LmGaussianBlur.h"
#include "filters/LmOuterShadow.h"

#include <gtest/gtest.h>

#include <random>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

std::vector<unsigned char> plainInnerShadow(const Mask& m, int dx, int dy, int R)
{
    const LmRect box = m.box();
    const int w = box.right - box.left, h = box.bottom - box.top, Wp = w + 2 * R;
    std::vector<unsigned char> out((size_t)m.width * m.height);
    auto b = [&](int x, int y) { return x < 0 || x >= w ? 0 : (int)m.at(box.left + x, box.top + y); };
    const bool reaches = w + R + dx >= 0 && dx - R < w && dy < h + R && h + dy >= -R;
    std::vector<int> wt((size_t)R + 1);
    int sum = 0;
    LmGaussianBlur::computeGaussianWeights(wt.data(), &sum, R);
    // c(x, y) over the padded row: x in 0..Wp-1 stands for mask column x - R.
    auto c = [&](int x, int y) {
        int acc = 255 * sum;
        for (int i = -R; i <= R; ++i) acc -= wt[i < 0 ? -i : i] * b(x + i - R, y);
        return acc / sum;
    };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int a;
            const int cx = R + x - dx;
            if (!reaches) a = b(x, y);
            else if (cx < 0 || cx >= Wp || y - dy + R < 0 || y - dy - R >= h) a = 255;
            else if (b(x, y) == 0) a = 0;
            else {
                int acc = 0;
                for (int i = -R; i <= R; ++i) {
                    const int sy = y - dy + i;
                    acc += wt[i < 0 ? -i : i] * (sy < 0 || sy >= h ? 255 : c(cx, sy));
                }
                a = acc / sum;
            }
            out[(size_t)(box.top + y) * m.width + box.left + x] = (unsigned char)a;
        }
    return out;
}

} // namespace

TEST(InnerShadowBlur, SameBytesAsTheStraightforwardPasses)
{
    std::mt19937 rng(11);
    for (int round = 0; round < 60; ++round) {
        const unsigned W = 1 + rng() % 40, H = 1 + rng() % 30;
        Mask m{W, H, std::vector<unsigned char>((size_t)W * H)};
        const int kind = round % 3; // sparse partial bytes, mostly solid, solid blocks with edges
        for (auto& v : m.pixels)
            v = kind == 0 ? (rng() % 4 ? 0 : (unsigned char)rng()) : kind == 1 ? (rng() % 5 ? 255 : (unsigned char)rng())
                                                                                : (rng() % 2 ? 255 : 0);
        if (m.box().right <= m.box().left) continue;
        const float angle = (float)(rng() % 360), distance = (float)(rng() % 50), size = (float)(rng() % (round < 40 ? 12 : 60));
        int dx = 0, dy = 0;
        LmOuterShadow::computeShift(angle, distance, &dx, &dy);
        FilterRun run(m);
        run.run(*innerOf(angle, distance, size));
        ASSERT_EQ(run.alphaPlane(), plainInnerShadow(m, dx, dy, (int)(size + 0.5f)))
            << "round " << round << " angle " << angle << " distance " << distance << " size " << size;
    }
}
