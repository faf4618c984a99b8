// The glows give the bytes of the straightforward passes (plain spread, plain taps, plain table)
// for random masks, boxes and sizes.
#include "filters/MaskFixtures.h"

#include "filters/LmGaussianBlur.h"
#include "raster/LmBlender.h"
#include "raster/LmRowOps.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

void plainSpread(std::vector<unsigned char>& P, int passes, int W, int H)
{
    std::vector<unsigned char> prev(W), next(W, 0);
    for (int pass = 0; pass < passes; ++pass) {
        std::copy_n(P.begin(), W, prev.begin());
        for (int y = 1; y < H - 1; ++y) {
            unsigned char* row = &P[(size_t)y * W];
            for (int x = 1; x < W - 1; ++x) {
                int s = 0;
                for (int i = -1; i <= 1; ++i) s += prev[x + i] + row[x + i] + row[x + i + W];
                next[x] = (unsigned char)std::min(s >> 2, 255);
            }
            std::copy_n(row, W, prev.begin());
            std::copy_n(next.begin(), W, row);
        }
    }
}

// The whole post-processing written out pass by pass: the reference for the skipping one.
std::vector<unsigned> plainGlow(const Mask& m, const LmRect& box, int n, bool inner, const unsigned* table)
{
    const int G = n + 1, M = 2 * G, W = box.width() + 4 * G, H = box.height() + 4 * G;
    std::vector<unsigned char> P((size_t)W * H, inner ? 255 : 0);
    for (int y = 0; y < box.height(); ++y)
        for (int x = 0; x < box.width(); ++x) {
            const unsigned char v = m.pixels[(size_t)(box.top + y) * m.width + box.left + x];
            P[(size_t)(M + y) * W + M + x] = inner ? (unsigned char)(255 - v) : v;
        }
    plainSpread(P, std::max((int)((double)G * 0.4750000089406967), 1), W, H);
    const int R = std::max((int)((float)G * 0.9f), 0);
    std::vector<int> w(R + 1);
    int sum = 0;
    LmGaussianBlur::computeGaussianWeights(w.data(), &sum, R, 128);
    const int frame = inner ? 255 : 0, top = inner ? 255 * sum : 0, sign = inner ? -1 : 1;
    std::vector<unsigned> out((size_t)W * H, inner ? 0xFFFFFFFFu : 0);
    std::vector<int> tmp(W, frame);
    for (int y = R; y < H - R; ++y) {
        for (int x = R; x < W - R; ++x) {
            int acc = P[(size_t)y * W + x] * w[0];
            for (int i = 1; i <= R; ++i) acc += (P[(size_t)(y - i) * W + x] + P[(size_t)(y + i) * W + x]) * w[i];
            tmp[x] = (top + sign * acc) / sum;
        }
        for (int x = R; x < W - R; ++x) {
            int acc = tmp[x] * w[0];
            for (int i = 1; i <= R; ++i) acc += (tmp[x - i] + tmp[x + i]) * w[i];
            const int v = (top + sign * acc) / sum;
            out[(size_t)y * W + x] = table[v < 256 ? 256 - v : 0];
        }
    }
    return out;
}

std::vector<unsigned> premultipliedTable(const LmGlow& layer)
{
    std::vector<unsigned> t(LmGlow::kTableSize);
    layer.makeColorLUT(t.data(), 0.3f, 0);
    for (unsigned& c : t) {
        const unsigned a = c >> 24;
        auto ch = [a](unsigned v) { return (((v & 0xFF) + 1) * a) >> 8; };
        c = (a << 24) | (ch(c >> 16) << 16) | (ch(c >> 8) << 8) | ch(c);
    }
    return t;
}

enum Shape { EMPTY, FULL, FAINT, DOT, LINES, TEXT, NOISE, SHAPES };

Mask randomMask(std::mt19937& rng, unsigned w, unsigned h, Shape shape)
{
    Mask m{w, h, std::vector<unsigned char>((size_t)w * h, shape == FULL ? 255 : 0)};
    auto put = [&](int x, int y, unsigned char v) {
        if (x >= 0 && y >= 0 && x < (int)w && y < (int)h) m.pixels[(size_t)y * w + x] = v;
    };
    if (shape == DOT) put(rng() % w, rng() % h, (unsigned char)(1 + rng() % 255));
    if (shape == LINES) // one pixel thick, across the whole box
        for (int k = 0; k < 3; ++k) {
            const int at = (int)(rng() % std::max(w, h));
            for (unsigned i = 0; i < std::max(w, h); ++i) rng() % 2 ? put(at, (int)i, 255) : put((int)i, at, 200);
        }
    if (shape == FAINT || shape == NOISE)
        for (auto& b : m.pixels) b = (unsigned char)(shape == FAINT ? rng() % 255 : (rng() % 3 ? 0 : 255));
    if (shape == TEXT) {
        // Anti-aliased strokes of a few pixels between random points.
        const Mask strokes = rasterize(w, h, [&, a = std::vector<double>{(double)(rng() % w), (double)(rng() % h),
                                                                       (double)(rng() % w), (double)(rng() % h),
                                                                       (double)(rng() % w), (double)(rng() % h)}](double x, double y) {
            return segmentDistance(x, y, a[0], a[1], a[2], a[3]) <= 2.2 || segmentDistance(x, y, a[2], a[3], a[4], a[5]) <= 1.6;
        });
        m = strokes;
    }
    if (shape == SHAPES) m = rng() % 2 ? glyph(w, h) : ring(std::min(w, h), std::min(w, h) * 0.45, std::min(w, h) * 0.2);
    return m;
}

// The mask inside a clear margin, so that the whole output lands on the target.
Mask withMargin(const Mask& m, unsigned pad)
{
    Mask out{m.width + 2 * pad, m.height + 2 * pad, std::vector<unsigned char>((size_t)(m.width + 2 * pad) * (m.height + 2 * pad))};
    for (unsigned y = 0; y < m.height; ++y)
        std::copy_n(&m.pixels[(size_t)y * m.width], m.width, &out.pixels[(size_t)(y + pad) * out.width + pad]);
    return out;
}

void expectSameBytes(const Mask& m, LmRect box, float size, int kind, const std::vector<LmGradient>& stops)
{
    auto layer = glowOf(kind, size, 0xFF40C0E0, stops);
    FilterRun run(m);
    run.textRect = box;
    box = LmRect(box.left, box.top, std::min(box.right, (int)m.width), std::min(box.bottom, (int)m.height));
    ASSERT_EQ(run.run(*layer), box.width() > 0 && box.height() > 0 ? 1 : 0);
    const int n = (int)size, G = n + 1;
    const std::vector<unsigned> table = premultipliedTable(*layer);
    const std::vector<unsigned> out = plainGlow(m, box, n, kind == 4, table.data());
    LmBitmap expected(m.width, m.height, 4);
    LmBlender::drawBitmapBlend32(box.left - 2 * G, box.top - 2 * G, &expected, out.data(), box.width() + 4 * G,
                                 box.height() + 4 * G, box.width() + 4 * G, LME_BLEND_DST_OVER);
    ASSERT_EQ(0, std::memcmp(expected.pixels, run.target.pixels, (size_t)m.width * m.height * 4))
        << (kind == 3 ? "outer" : "inner") << " size " << size << " mask " << m.width << "x" << m.height << " box "
        << box.left << "," << box.top << "," << box.right << "," << box.bottom;
}

const std::vector<LmGradient> kRamps[] = {
    {},
    {{0xFF2080FF, 1, 0.3f}},
    {{0xFFFFE060, 1, 0}, {0xFFFF6020, 1, 0.4f}, {0xFF8010A0, 0.5f, 1}},
};

} // namespace

TEST(GlowSameBytes, SpreadUntilSettled)
{
    // Sparse dots and blocks of 0 and 255 that settle after a few passes, next to noise that
    // keeps changing: the passes that skip settled rows give the plain passes' bytes.
    std::mt19937 rng(5);
    for (int round = 0; round < 300; ++round) {
        const int W = 1 + (int)(rng() % 50), H = 1 + (int)(rng() % 30), passes = (int)(rng() % 40);
        std::vector<unsigned char> img((size_t)W * H, rng() % 2 ? 255 : 0), plain;
        for (int k = (int)(rng() % 6); k > 0; --k) {
            const int x = (int)(rng() % W), y = (int)(rng() % H), v = (int)(rng() % 256), s = 1 + (int)(rng() % 8);
            for (int i = y; i < std::min(H, y + s); ++i)
                for (int j = x; j < std::min(W, x + (rng() % 3 ? s : 1)); ++j) img[(size_t)i * W + j] = (unsigned char)(k % 2 ? v : rng());
        }
        plain = img;
        LmGlow::increaseByBoxFilter(img.data(), passes, W, H);
        plainSpread(plain, passes, W, H);
        ASSERT_EQ(img, plain) << W << "x" << H << " passes " << passes << " round " << round;
    }
}

TEST(GlowSameBytes, SmallTapsAsWideOnes)
{
    // Weights up to 128 over bytes up to 255, in rows and columns, every count around the
    // vector widths.
    std::mt19937 rng(3);
    for (int R : {0, 1, 2, 7, 31, 90, 300})
        for (int round = 0; round < 6; ++round) {
            std::vector<int> w((size_t)R + 1);
            for (int& v : w) v = round == 0 ? 128 : (int)(rng() % 129);
            const int W = 2 * R + 1 + (int)(rng() % 140), step = round % 2 ? 1 : W;
            std::vector<unsigned char> src((size_t)W * W);
            for (auto& b : src) b = round == 0 ? 255 : (unsigned char)(rng() % 4 ? rng() : 255);
            const unsigned char* c = src.data() + (size_t)R * W + R;
            const size_t count = (size_t)(W - 2 * R);
            std::vector<int> wide(count), small(count);
            LmRowOps::sumTaps(wide.data(), c, step, count, w.data(), R);
            LmRowOps::sumSmallTaps(small.data(), c, step, count, w.data(), R);
            ASSERT_EQ(wide, small) << "R " << R << " round " << round;
        }
}

TEST(GlowSameBytes, QuotientsAsIntegerDivision)
{
    // Numerators at, just below and just above every multiple of the divisor, and random ones.
    std::mt19937 rng(4);
    for (int sum : {1, 2, 3, 100, 128, 130, 9521, 32768, 65521, LmRowOps::kMaxQuotientDivisor - 1})
        for (bool inverse : {false, true}) {
            std::vector<int> acc;
            for (int q = 0; q <= 255; ++q)
                for (int d : {-1, 0, 1}) acc.push_back(std::min(std::max(q * sum + d, 0), 255 * sum));
            for (int k = 0; k < 100; ++k) acc.push_back((int)(rng() % (255u * (unsigned)sum + 1)));
            std::vector<unsigned char> out(acc.size());
            LmRowOps::quotients(out.data(), acc.data(), acc.size(), sum, inverse);
            for (size_t i = 0; i < acc.size(); ++i)
                ASSERT_EQ(out[i], ((inverse ? 255 * sum - acc[i] : acc[i]) / sum)) << sum << " " << acc[i];
        }
}

TEST(GlowSameBytes, EverySmallSizeOnSmallMasks)
{
    std::mt19937 rng(12);
    for (int size = 0; size <= 30; ++size)
        for (int shape = EMPTY; shape <= SHAPES; ++shape) {
            const Mask m = randomMask(rng, 1 + rng() % 40, 1 + rng() % 30, (Shape)shape);
            const unsigned w = m.width, h = m.height;
            // The whole mask (box on every edge) or a random box inside it.
            LmRect box(0, 0, (int)w, (int)h);
            if (rng() % 2) {
                const int l = (int)(rng() % w), t = (int)(rng() % h);
                box = LmRect(l, t, l + 1 + (int)(rng() % (w - l)), t + 1 + (int)(rng() % (h - t)));
            }
            const int pad = rng() % 2 ? 2 * size + 3 : 0;
            box = LmRect(box.left + pad, box.top + pad, box.right + pad, box.bottom + pad);
            for (int kind : {3, 4})
                expectSameBytes(withMargin(m, (unsigned)pad), box, size + (rng() % 2 ? 0.5f : 0), kind, kRamps[rng() % 3]);
        }
}

TEST(GlowSameBytes, LargeSizesOnLargerMasks)
{
    std::mt19937 rng(21);
    for (int size : {31, 47, 64, 100})
        for (int shape : {EMPTY, FULL, DOT, LINES, TEXT, SHAPES}) {
            const Mask m = randomMask(rng, 60 + rng() % 200, 20 + rng() % 60, (Shape)shape);
            const unsigned w = m.width, h = m.height;
            for (int kind : {3, 4}) expectSameBytes(m, LmRect(0, 0, (int)w, (int)h), (float)size, kind, kRamps[2]);
        }
}
