// The outer and inner glow: colour table and offsets (the passes: goldens), and the glows
// and their row routines against the bytes of the straightforward passes.
#include "filters/MaskFixtures.h"

#include "filters/LmGaussianBlur.h"
#include "raster/LmBlender.h"

using namespace LmTest;

namespace {

enum : unsigned { BLACK = 0xFF000000, WHITE = 0xFFFFFFFF, RED = 0xFFFF0000, BLUE = 0xFF0000FF };

LmGradient stop(unsigned colour, float position, float opacity = 1) { return LmGradient{colour, opacity, position}; }

// Spread, blur and table pass by pass over the padded mask P (W x H, grown by G).
std::vector<unsigned> plainGlow(std::vector<unsigned char> P, int W, int H, int G, bool inner, const unsigned* table)
{
    std::vector<unsigned char> prev(W), next(W, 0);
    for (int pass = std::max((int)((double)G * 0.4750000089406967), 1); pass > 0; --pass)
        for (int y = 1; y < H - 1; ++y) {
            unsigned char* row = &P[(size_t)y * W];
            if (y == 1) std::copy_n(row - W, W, prev.begin());
            for (int x = 1; x < W - 1; ++x) {
                int s = 0;
                for (int i = x - 1; i <= x + 1; ++i) s += prev[i] + row[i] + row[i + W];
                next[x] = (unsigned char)std::min(s >> 2, 255);
            }
            std::copy_n(row, W, prev.begin());
            std::copy_n(next.begin(), W, row);
        }
    const int R = (int)((float)G * 0.9f);
    std::vector<int> w(R + 1), tmp(W, inner ? 255 : 0);
    int sum = 0;
    LmGaussianBlur::computeGaussianWeights(w.data(), &sum, R, 128);
    const int top = inner ? 255 * sum : 0, sign = inner ? -1 : 1;
    std::vector<unsigned> out((size_t)W * H, inner ? 0xFFFFFFFFu : 0);
    for (int y = R; y < H - R; ++y) {
        for (int x = R; x < W - R; ++x)
            tmp[x] = (top + sign * symmetricTaps(w, [&](int i) { return (int)P[(size_t)(y + i) * W + x]; })) / sum;
        for (int x = R; x < W - R; ++x)
            out[(size_t)y * W + x] =
                table[256 - (top + sign * symmetricTaps(w, [&](int i) { return tmp[x + i]; })) / sum];
    }
    return out;
}

void expectSameBytes(const Mask& m, const LmRect& box, float size, bool inner, const std::vector<LmGradient>& stops)
{
    auto layer = glowOf(inner ? INNER_GLOW : OUTER_GLOW, size, 0xFF40C0E0, stops);
    FilterRun run(m);
    run.textRect = box;
    ASSERT_EQ(run.run(*layer), 1);
    const int G = (int)size + 1, W = box.width() + 4 * G, H = box.height() + 4 * G;
    std::vector<unsigned char> P((size_t)W * H, inner ? 255 : 0);
    for (int y = 0; y < box.height(); ++y)
        for (int x = 0; x < box.width(); ++x) {
            const unsigned char v = m.pixels[(size_t)(box.top + y) * m.width + box.left + x];
            P[(size_t)(2 * G + y) * W + 2 * G + x] = inner ? (unsigned char)(255 - v) : v;
        }
    std::vector<unsigned> t(LmGlow::kTableSize);
    layer->makeColorLUT(t.data(), 0.3f, 0);
    for (unsigned& c : t) // premultiplied, (ch + 1) * A >> 8
        for (int s = 0, a = (int)(c >> 24); s < 24; s += 8) c = (c & ~(255u << s)) | ((((c >> s & 255) + 1) * a >> 8) << s);
    LmBitmap expected(m.width, m.height, 4);
    LmBlender::drawBitmapBlend32(box.left - 2 * G, box.top - 2 * G, &expected, plainGlow(P, W, H, G, inner, t.data()).data(),
                                 W, H, W, LME_BLEND_DST_OVER);
    ASSERT_EQ(0, std::memcmp(expected.pixels, run.target.pixels, (size_t)m.width * m.height * 4))
        << (inner ? "inner" : "outer") << " size " << size << " box at " << box.left << "," << box.top;
}

} // namespace

TEST(GlowColorTable, WorkedEntries)
{
    const struct {
        float size;
        unsigned colour;
        std::vector<LmGradient> stops;
        int curve;
        std::vector<std::pair<int, unsigned>> entries;
    } cases[] = {
        // Full alpha to entry 75, then (int)((256 - j) * 256 / 180) * alpha >> 8; size 0 clears.
        {10, 0xFF00FF00, {}, 0, {{75, 0xFF00FF00}, {128, 0xB500FF00}, {255, 0x0000FF00}, {256, 0}}},
        {0, 0xFF00FF00, {}, 0, {{0, 0}, {128, 0}}},
        // Curves 1 and 2.
        {3, 0, {stop(BLACK, 0), stop(WHITE, 1)}, 1, {{64, 0xFF7F7F7F}}},
        {3, 0, {stop(BLACK, 0), stop(WHITE, 1)}, 2, {{64, 0xFF0F0F0F}}},
        // Two stops at one position: the division by 0 saturates and the end colour wins.
        {3, 0, {stop(BLACK, 0), stop(RED, 0.5f), stop(BLUE, 0.5f)}, 0, {{128, 0xB5FF0000}, {129, 0xB30000FF}}},
        // Unsorted: a step back gives w < 1 (c0), then the advance finds no stop left.
        {3, 0, {stop(BLACK, 0), stop(RED, 0.5f), stop(BLUE, 0.2f)}, 0, {{129, 0xB3FF0000}, {200, 0x4E0000FF}}},
    };
    for (const auto& c : cases) {
        std::vector<unsigned> t(LmGlow::kTableSize, 0xDEADBEEF);
        glowOf(OUTER_GLOW, c.size, c.colour, c.stops)->makeColorLUT(t.data(), 0.3f, c.curve);
        for (const auto& e : c.entries) EXPECT_EQ(t[(size_t)e.first], e.second) << c.size << " " << e.first;
    }
}

TEST(GlowLayer, Offsets)
{
    const std::pair<float, int> offsets[] = {{10.4f, 10}, {10.5f, 11}, {NAN, 0}, {1e30f, INT_MAX}};
    for (const auto& o : offsets) EXPECT_EQ(glowOf(INNER_GLOW, o.first)->getOffset(), o.second) << o.first;
}

TEST(GlowSameBytes, RandomMasksBoxesAndSizes)
{
    const std::vector<LmGradient> ramps[] = {{}, {{0xFF2080FF, 1, 0.3f}}, {{0xFFFFE060, 1, 0}, {0xFFFF6020, 1, 0.4f}, {0xFF8010A0, 0.5f, 1}}};
    std::mt19937 rng(12);
    std::vector<int> sizes = {47, 100};
    for (int s = 0; s <= 30; ++s) sizes.push_back(s);
    for (int size : sizes)
        for (int shape = 0; shape < 7; ++shape) {
            const unsigned w = size > 30 ? 60 + rng() % 200 : 1 + rng() % 40, h = size > 30 ? 20 + rng() % 60 : 1 + rng() % 30;
            // The ink inside a clear margin, or a random box that may touch the mask's edges.
            const unsigned pad = size <= 30 && rng() % 2 ? 2 * size + 3 : 0, mw = w + 2 * pad, mh = h + 2 * pad;
            const Mask ink = randomMask(shape, w, h, rng);
            Mask m = rect(mw, mh, 0, 0, 0, 0);
            for (unsigned y = 0; y < h; ++y) std::copy_n(&ink.pixels[(size_t)y * w], w, &m.pixels[(size_t)(y + pad) * mw + pad]);
            LmRect box((int)pad, (int)pad, (int)(pad + w), (int)(pad + h));
            if (!pad && rng() % 2) {
                // One declaration per draw: the order of function arguments is not fixed.
                const int l = (int)(rng() % w), t = (int)(rng() % h);
                const int r = l + 1 + (int)(rng() % (w - l)), b = t + 1 + (int)(rng() % (h - t));
                box = LmRect(l, t, r, b);
            }
            for (bool inner : {false, true}) expectSameBytes(m, box, size + (rng() % 2 ? 0.5f : 0), inner, ramps[rng() % 3]);
        }
}
