// The bevel's and the emboss's passes that skip or reuse work give the bytes of the plain ones:
// the exact fill per pixel, the transform of every line, lighting and composing pixel by pixel.
#include "filters/LmMaskBox.h"
#include "filters/LmRelief.h"
#include "raster/LmBitmap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

using namespace LmFontEffect;

namespace {

// Rows and columns from the margin through size - margin are interior; reads off the mask are 0.
std::vector<float> plainExactFill(const LmRelief::Canvas& c, const LmMaskBox& box, float inside, float outside)
{
    std::vector<float> map((size_t)c.pixels());
    const int m = c.margin, maskW = (int)box.mask->width, maskH = (int)box.mask->height;
    for (int r = 0; r < c.height; ++r)
        for (int col = 0; col < c.width; ++col) {
            const int my = box.top + r - m, mx = box.left + col - m;
            const bool interior = r >= m && r <= c.height - m && col >= m && col <= c.width - m;
            const bool on = interior && my < maskH && mx < maskW && box.mask->pixels[(size_t)my * maskW + mx] != 0;
            map[(size_t)r * c.width + col] = on ? inside : outside;
        }
    return map;
}

// The lower envelope of parabolas, each crossing formed from the inputs.
void plainDt1D(float* out, const float* in, int n)
{
    std::vector<int> v(n);
    std::vector<float> z(n + 1);
    auto cross = [&](int q, int p) {
        return ((in[q] + (float)(q * q)) - (in[p] + (float)(p * p))) / (float)(2 * q - 2 * p);
    };
    int k = 0;
    z[0] = -1e20f, z[1] = 1e20f;
    for (int q = 1; q < n; ++q) {
        float s = cross(q, v[k]);
        while (s <= z[k] && k > 0) s = cross(q, v[--k]);
        v[++k] = q, z[k] = s, z[k + 1] = 1e20f;
    }
    k = 0;
    for (int q = 0; q < n; ++q) {
        while (z[k + 1] < (float)q) ++k;
        out[q] = in[v[k]] + (float)((q - v[k]) * (q - v[k]));
    }
}

void plainDt2D(std::vector<float>& map, int w, int h)
{
    std::vector<float> line(std::max(w, h)), out(std::max(w, h));
    for (int x = 0; x < w; ++x) {
        for (int y = 0; y < h; ++y) line[y] = map[(size_t)y * w + x];
        plainDt1D(out.data(), line.data(), h);
        for (int y = 0; y < h; ++y) map[(size_t)y * w + x] = out[y];
    }
    for (int y = 0; y < h; ++y) {
        std::copy(map.begin() + (size_t)y * w, map.begin() + (size_t)(y + 1) * w, line.begin());
        plainDt1D(map.data() + (size_t)y * w, line.data(), w);
    }
}

bool sameBits(const void* a, const void* b, size_t bytes) { return std::memcmp(a, b, bytes) == 0; }

// A mask of `kind` (0 empty, 1 full, 2 partial only, 3 one pixel, else random blobs) with a box
// that may touch its edges, and a canvas around the box.
struct Scene {
    LmBitmap mask;
    LmMaskBox box;
    LmRelief::Canvas canvas;
    Scene(std::mt19937& rng, int kind) : mask(1 + rng() % 30, 1 + rng() % 30, 1)
    {
        const int w = (int)mask.width, h = (int)mask.height;
        for (int i = 0; i < w * h; ++i) {
            const int v = (int)(rng() % 256);
            mask.pixels[i] = (unsigned char)(kind == 0 ? 0 : kind == 1 ? 255 : kind == 2 ? 1 + v % 254 : kind == 3 ? 0 : v < 128 ? 0 : v);
        }
        if (kind == 3) mask.pixels[rng() % (unsigned)(w * h)] = 255;
        box.mask = &mask;
        box.left = (int)(rng() % w);
        box.top = (int)(rng() % h);
        box.right = box.left + 1 + (int)(rng() % (w - box.left));
        box.bottom = box.top + 1 + (int)(rng() % (h - box.top));
        LmRelief::canvasFor(box, rng() % 6, &canvas);
    }
};

} // namespace

TEST(ReliefPass, ExactFillAndTransformMatchThePlainOnes)
{
    std::mt19937 rng(3);
    for (int round = 0; round < 300; ++round) {
        Scene s(rng, round % 5);
        const LmRelief::Canvas& c = s.canvas;
        const bool inside = round % 2 == 0;
        std::vector<float> plain = plainExactFill(c, s.box, inside ? 1e20f : 0.0f, inside ? 0.0f : 1e20f);
        std::vector<float> fast((size_t)c.pixels());
        LmRelief::exactFill(fast.data(), c, s.box, inside ? 1e20f : 0.0f, inside ? 0.0f : 1e20f);
        ASSERT_TRUE(sameBits(plain.data(), fast.data(), plain.size() * 4)) << "fill, round " << round;
        std::vector<float> capped = fast;
        plainDt2D(plain, c.width, c.height);
        ASSERT_TRUE(LmRelief::dt2D(fast.data(), c.width, c.height));
        ASSERT_TRUE(sameBits(plain.data(), fast.data(), plain.size() * 4)) << "transform, round " << round;
        // Rows left out beyond the cap come out capped all the same.
        const int reach = 1 + (int)(rng() % 6);
        ASSERT_TRUE(LmRelief::dt2D(capped.data(), c.width, c.height, (float)(reach * reach)));
        LmRelief::capDistances(capped.data(), c.pixels(), reach);
        LmRelief::capDistances(plain.data(), c.pixels(), reach);
        ASSERT_TRUE(sameBits(plain.data(), capped.data(), plain.size() * 4)) << "capped, round " << round;
    }
}

TEST(ReliefPass, LinesOfOneFillValueTransformToThemselves)
{
    // The transform passes such lines over, up to 4096 long.
    for (float value : {0.0f, 1e20f}) {
        std::vector<float> in(4096, value), out(4096);
        for (int n = 1; n <= 4096; n += n < 300 ? 1 : 97) {
            plainDt1D(out.data(), in.data(), n);
            ASSERT_TRUE(sameBits(in.data(), out.data(), (size_t)n * 4)) << value << " x " << n;
        }
    }
}

TEST(ReliefPass, LightingAndComposingMatchPixelByPixel)
{
    // Flat stretches (reused results), -0.0 beside +0.0, the level itself, NaN.
    const float values[] = {0.0f, -0.0f, 0.0f, 3.0f, 3.0f, 3.0f, 1.5f, 0.25f, -2.0f, 7.0f, NAN};
    std::mt19937 rng(4);
    for (int round = 0; round < 120; ++round) {
        const int w = 3 + (int)(rng() % 20), h = 3 + (int)(rng() % 12);
        std::vector<float> map((size_t)w * h);
        for (float& v : map) v = rng() % 3 ? values[rng() % 4] : values[rng() % 11];
        std::vector<unsigned char> lit((size_t)w * h, 9), shadow((size_t)w * h, 9);
        std::vector<unsigned char> litOne = lit, shadowOne = shadow;
        LmRelief::LightArgs args{lit.data(), shadow.data(), map.data(), w, 3, 2, 1.2f, 0.4f, -0.3f, 0.5f,
                                 (int)(rng() % 256), (int)(rng() % 256), round % 2 == 0, 1.5f, 1, w - 1, 1, h - 1};
        const auto rule = (LmRelief::LightRule)(round % 3);
        LmRelief::partialLight(&args, rule);
        for (int y = 1; y < h - 1; ++y)
            for (int x = 1; x < w - 1; ++x) {
                LmRelief::LightArgs one = args;
                one.lit = litOne.data();
                one.shadow = shadowOne.data();
                one.colBegin = x, one.colEnd = x + 1, one.rowBegin = y, one.rowEnd = y + 1;
                LmRelief::partialLight(&one, rule);
            }
        ASSERT_EQ(lit, litOne) << "round " << round;
        ASSERT_EQ(shadow, shadowOne) << "round " << round;

        std::vector<unsigned> out(lit.size());
        LmRelief::composeAll(lit.data(), shadow.data(), out.data(), (int64_t)out.size(), 2.03f, 0xFF102030, 0x80FFEEDD);
        for (size_t i = 0; i < out.size(); ++i)
            ASSERT_EQ(out[i], LmRelief::composePixel(lit[i], shadow[i], 2.03f, 0xFF102030, 0x80FFEEDD)) << i;
    }
}

TEST(ReliefPass, BlurMatchesThePlainTaps)
{
    // Flat patches (copied through), noise, and ranges that keep every tap on the image.
    std::mt19937 rng(6);
    for (int round = 0; round < 150; ++round) {
        const int r = (int)(rng() % 9), w = 2 * r + 1 + (int)(rng() % 40), h = 2 * r + 1 + (int)(rng() % 30);
        std::vector<unsigned char> src((size_t)w * h), plain((size_t)w * h, 7), fast;
        const int flat = (int)(rng() % 256);
        for (auto& v : src) v = rng() % 4 ? (unsigned char)flat : (unsigned char)(rng() % 256);
        if (round % 3 == 0) std::fill(src.begin(), src.begin() + src.size() / 2, (unsigned char)0);
        fast = plain;
        std::vector<int> wt((size_t)r + 1);
        int total = 0;
        LmRelief::blurWeights(wt.data(), &total, r);
        std::vector<int> column(w, 0);
        const int c0 = r + (int)(rng() % (w - 2 * r)), c1 = c0 + (int)(rng() % (w - r - c0 + 1));
        const int r0 = r + (int)(rng() % (h - 2 * r)), r1 = r0 + (int)(rng() % (h - r - r0 + 1));
        for (int y = r0; y < r1; ++y) {
            for (int x = c0; x < c1; ++x) {
                int acc = 0;
                for (int k = -r; k <= r; ++k) acc += src[(size_t)(y + k) * w + x] * wt[std::abs(k)];
                column[x] = acc / total;
            }
            for (int x = c0; x < c1; ++x) {
                int acc = 0;
                for (int k = -r; k <= r; ++k) acc += column[x + k] * wt[std::abs(k)];
                plain[(size_t)y * w + x] = (unsigned char)std::min(acc / total, 255);
            }
        }
        LmRelief::BlurArgs args{src.data(), fast.data(), w, r, c0, c1, r0, r1};
        LmRelief::partialBlur(&args);
        ASSERT_EQ(plain, fast) << "round " << round << " r " << r;
    }
}
