// The emboss's distance searches give the bytes of the straightforward definition: every cell
// visits its whole window in raster order and keeps the best candidate at once.
#include "filters/LmRelief.h"
#include "raster/LmSqrt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

using namespace LmFontEffect;

namespace {

struct Map {
    int width, height;
    std::vector<float> cells;
};

// Cells taken by `takes` move to the best candidate(n, d) over window neighbours n accepted by
// `source`, the window clipped to the map.
template <class Takes, class Source, class Candidate, class Better>
void plainSearch(Map& m, int reach, Takes takes, Source source, Candidate candidate, Better better)
{
    for (int y = 0; y < m.height; ++y)
        for (int x = 0; x < m.width; ++x) {
            float& c = m.cells[(size_t)y * m.width + x];
            if (!takes(c)) continue;
            for (int yy = std::max(y - reach, 0); yy < std::min(y + reach + 1, m.height); ++yy)
                for (int xx = std::max(x - reach, 0); xx < std::min(x + reach + 1, m.width); ++xx) {
                    const float n = m.cells[(size_t)yy * m.width + xx];
                    if (!source(n)) continue;
                    const float k = candidate(n, LmRelief::rootOf((int64_t)(yy - y) * (yy - y) + (int64_t)(xx - x) * (xx - x)));
                    if (better(k, c)) c = k;
                }
        }
}

void plainOutDT(Map& m, int reach)
{
    plainSearch(
        m, reach, [](float c) { return c > 0.0f; }, [](float n) { return n < 1.0f; },
        [](float n, float d) { return n > 0.0f ? n + d : d; }, [](float k, float c) { return k < c; });
}

void plainInDT(Map& m, int innerReach)
{
    plainSearch(
        m, innerReach, [](float c) { return c < 0.0f; }, [](float n) { return n > 1.0f; },
        [](float n, float d) { return n - d; }, [](float k, float c) { return k > c; });
}

// Coverage shapes: empty, full, partial only, one pixel, thin lines, text-like strokes.
std::vector<int> coverage(std::mt19937& rng, int w, int h, int kind)
{
    std::vector<int> b((size_t)w * h, 0);
    std::uniform_int_distribution<int> any(0, 1 << 20);
    auto set = [&](int x, int y, int v) {
        if (x >= 0 && y >= 0 && x < w && y < h) b[(size_t)y * w + x] = v;
    };
    switch (kind) {
    case 0: break;
    case 1: std::fill(b.begin(), b.end(), 255); break;
    case 2:
        for (int& v : b) v = any(rng) % 255;
        break;
    case 3: set(any(rng) % std::max(w, 1), any(rng) % std::max(h, 1), 255); break;
    case 4:
        for (int x = 0; x < w; ++x) set(x, h / 2, 255), set(x, h / 2 + 1, 128);
        for (int y = 0; y < h; ++y) set(w / 3, y, 200);
        break;
    default:
        // Strokes a few pixels wide with anti-aliased sides.
        for (int s = 0; s < 4; ++s) {
            const int x0 = any(rng) % std::max(w, 1), y0 = any(rng) % std::max(h, 1), len = 3 + any(rng) % 20;
            const bool across = any(rng) % 2;
            const int width = 1 + any(rng) % 5;
            for (int t = 0; t < len; ++t)
                for (int k = -1; k <= width; ++k) {
                    const int v = k < 0 || k == width ? 1 + any(rng) % 254 : 255;
                    across ? set(x0 + t, y0 + k, v) : set(x0 + k, y0 + t, v);
                }
        }
    }
    return b;
}

// The emboss's local start: reach outside, 1 - v on partial coverage, 1 - inner reach on full,
// the box framed by `frame` cells of reach.
Map startMap(const std::vector<int>& b, int w, int h, int frame, int reach, int innerReach)
{
    Map m{w + 2 * frame, h + 2 * frame, {}};
    m.cells.assign((size_t)m.width * m.height, (float)reach);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const float v = (float)b[(size_t)y * w + x] / 254.999f;
            m.cells[(size_t)(y + frame) * m.width + x + frame] =
                v < 0.001f ? (float)reach : v < 1.0f ? 1.0f - v : 1.0f - (float)innerReach;
        }
    return m;
}

void expectSameBits(const Map& a, const Map& b, const char* what, int round)
{
    ASSERT_EQ(a.cells.size(), b.cells.size());
    EXPECT_EQ(std::memcmp(a.cells.data(), b.cells.data(), a.cells.size() * sizeof(float)), 0)
        << what << " differs in round " << round << " (" << a.width << " x " << a.height << ")";
}

void runBoth(Map& fast, int reach, int innerReach, bool outer)
{
    LmRelief::SearchArgs args{fast.cells.data(), fast.height, fast.width, reach, innerReach, 0, fast.height};
    outer ? LmRelief::partialOutDT(&args) : LmRelief::partialInDT(&args);
}

} // namespace

TEST(ReliefSearch, EmbossSearchesMatchTheFullWindowOnMasks)
{
    std::mt19937 rng(5);
    for (int round = 0; round < 400; ++round) {
        // Mostly small boxes and reaches, a spread of larger ones.
        const bool large = round % 10 == 9;
        const int w = (int)(rng() % (large ? 200 : 24)), h = (int)(rng() % (large ? 80 : 24));
        const int reach = 1 + (int)(rng() % (large ? 30 : 12)), innerReach = 1 + (int)(rng() % (large ? 28 : 12));
        // Frames narrower than the reach make boxes touch the map's edges.
        const int frame = (int)(rng() % (reach + 2));
        const std::vector<int> b = coverage(rng, w, h, round % 6);
        Map plain = startMap(b, w, h, frame, reach, innerReach);
        if (plain.cells.empty()) continue;
        Map fast = plain;
        plainOutDT(plain, reach);
        runBoth(fast, reach, innerReach, true);
        expectSameBits(plain, fast, "outer search", round);
        plainInDT(plain, innerReach);
        runBoth(fast, reach, innerReach, false);
        expectSameBits(plain, fast, "inner search", round);
    }
}

TEST(ReliefSearch, EmbossSearchesMatchTheFullWindowOnAnyValues)
{
    // Values no fill makes: negative, above the reach, infinite, NaN; the inner search may lift
    // a cell above 1, and that cell then counts as a source for the cells after it.
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    const float oddValues[] = {0.0f, -0.0f, 1.0f, 0.5f, -3.0f, 40.0f, 2.5f, inf, -inf, nan};
    std::mt19937 rng(8);
    std::uniform_real_distribution<float> value(-12.0f, 12.0f);
    for (int round = 0; round < 200; ++round) {
        Map plain{1 + (int)(rng() % 20), 1 + (int)(rng() % 20), {}};
        for (int i = 0; i < plain.width * plain.height; ++i)
            plain.cells.push_back(rng() % 4 == 0 ? oddValues[rng() % 10] : value(rng));
        const int reach = (int)(rng() % 8), innerReach = (int)(rng() % 8);
        Map fast = plain;
        const bool outer = round % 2 == 0;
        outer ? plainOutDT(plain, reach) : plainInDT(plain, innerReach);
        runBoth(fast, reach, innerReach, outer);
        expectSameBits(plain, fast, outer ? "outer search" : "inner search", round);
    }
}

TEST(ReliefSearch, RootsNeverFallAsTheSquaredDistanceGrows)
{
    // The searches stop where the root reaches the value they hold, table and sqrtf alike.
    for (int64_t n = 0; n < 3 * LM_INT_SQRT_TABLE_SIZE; ++n)
        ASSERT_LE(LmRelief::rootOf(n), LmRelief::rootOf(n + 1)) << n;
}
