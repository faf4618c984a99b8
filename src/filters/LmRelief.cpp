#include "filters/LmRelief.h"

#include "effect/LmLightingProperty.h"
#include "filters/LmGaussianBlur.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"
#include "raster/LmRowOps.h"
#include "raster/LmSqrt.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace LmFontEffect {

namespace {

// Blur rows with weights and a cleared work row of stride bytes already at hand.
void blurRows(const LmRelief::BlurArgs& a, const int* weights, int total, unsigned char* row)
{
    const int r = a.radius;
    const unsigned char* src = a.src;
    for (int y = a.rowBegin; y < a.rowEnd; ++y) {
        LmGaussianBlur::verticalRow(src, a.stride, y, a.colBegin, a.colEnd, weights, total, r, row);
        LmGaussianBlur::horizontalRow(row, a.colBegin, a.colEnd, weights, total, r, a.dst + (int64_t)y * a.stride);
    }
}

bool blurWithBuffers(const LmRelief::BlurArgs& a)
{
    if (a.radius < 0 || a.stride < 1 || a.rowBegin >= a.rowEnd) return true;
    LmMaskBox::Block<int> weights = LmMaskBox::allocate<int>((int64_t)a.radius + 1, false);
    // Zeroed: the row's first and last r bytes are read as 0.
    LmMaskBox::Block<unsigned char> row = LmMaskBox::allocate<unsigned char>(a.stride, true);
    if (!weights || !row) return false;
    int total = 0;
    LmRelief::blurWeights(weights.get(), &total, a.radius);
    blurRows(a, weights.get(), total, row.get());
    return true;
}

// The square root of an integer squared distance: the table, sqrtf beyond it.
inline float root(int64_t n) { return n < LM_INT_SQRT_TABLE_SIZE ? LM_INT_SQRT_TABLE[n] : sqrtf((float)n); }

// A line all 0 or all 1e20 (the fills' two values) is its own transform: each point is its own
// nearest parabola, or 1e20 swallows the squares. The squares stay exact up to this length.
const int kPlainLineLimit = 4096;

bool keepsItself(const float* line, int n)
{
    if (n < 1 || n > kPlainLineLimit || (line[0] != 0.0f && line[0] != 1e20f)) return false;
    // Every value has the bits of the first when each has those of the next.
    return std::memcmp(line, line + 1, sizeof(float) * (size_t)(n - 1)) == 0;
}

// Whether the least value of the line (by <, from the first: a NaN first stays the least) is
// at most limit; checked in blocks a vector wide, leaving at the first block that has one.
bool leastAtMost(const float* line, int n, float limit)
{
    if (!(line[0] > limit)) return true;
    for (int i = 1; i < n; i += 16) {
        bool any = false;
        for (int j = i; j < std::min(n, i + 16); ++j) any |= line[j] <= limit;
        if (any) return true;
    }
    return false;
}

// Half-open window [centre - reach, centre + reach + 1) clipped to 0..limit.
inline void window(int centre, int reach, int limit, int* begin, int* end)
{
    *begin = (int)std::max<int64_t>((int64_t)centre - reach, 0);
    *end = (int)std::min<int64_t>((int64_t)centre + reach + 1, limit);
}

// Columns first..last of each row holding a value below 1 (first > last when none). Such
// values never change during the searches that read them, so the spans hold for a whole pass.
bool sourceSpans(const LmRelief::SearchArgs& a, LmMaskBox::Block<int>* first, LmMaskBox::Block<int>* last)
{
    *first = LmMaskBox::allocate<int>(a.height, false);
    *last = LmMaskBox::allocate<int>(a.height, false);
    if (!*first || !*last) return false;
    for (int y = 0; y < a.height; ++y) {
        const float* m = a.map + (int64_t)y * a.width;
        int f = a.width, l = -1;
        for (int x = 0; x < a.width; ++x)
            if (m[x] < 1.0f) {
                f = std::min(f, x);
                l = x;
            }
        (*first)[y] = f;
        (*last)[y] = l;
    }
    return true;
}

// The bevel's and the emboss's outer search: cells accepted by `takes` move down to the
// smallest candidate(n, d) over neighbours n < 1 within the reach. Every candidate is at least
// d, and d at least the row and column distances, so the window is walked outward from the
// cell and left as soon as those pass c: the minimum, and so the result, is the same.
template <class Takes, class Candidate> int outwardSearch(void* args, Takes takes, Candidate candidate)
{
    const LmRelief::SearchArgs* a = static_cast<const LmRelief::SearchArgs*>(args);
    if (!a || !a->map || a->width < 1 || a->height < 1 || a->reach < 0) return 0;
    LmMaskBox::Block<int> first, last;
    if (!sourceSpans(*a, &first, &last)) return 0;
    const int64_t W = a->width;
    for (int y = std::max(a->rowBegin, 0); y < std::min(a->rowEnd, a->height); ++y) {
        int y0, y1;
        window(y, a->reach, a->height, &y0, &y1);
        for (int x = 0; x < a->width; ++x) {
            float& c = a->map[y * W + x];
            if (!takes(c)) continue;
            int x0, x1;
            window(x, a->reach, a->width, &x0, &x1);
            auto visit = [&](int yy) {
                const float* row = a->map + yy * W;
                const int64_t dy2 = (int64_t)(yy - y) * (yy - y);
                auto take = [&](int xx) {
                    const float n = row[xx];
                    if (!(n < 1.0f)) return;
                    const float k = candidate(n, root(dy2 + (int64_t)(xx - x) * (xx - x)));
                    if (k < c) c = k;
                };
                for (int xx = std::max(x, first[yy]); xx <= std::min(x1 - 1, last[yy]) && (float)(xx - x) < c; ++xx)
                    take(xx);
                for (int xx = std::min(x - 1, last[yy]); xx >= std::max(x0, first[yy]) && (float)(x - xx) < c; --xx)
                    take(xx);
            };
            for (int dy = 0; (float)dy < c && (y + dy < y1 || y - dy >= y0); ++dy) {
                if (y + dy < y1) visit(y + dy);
                if (dy > 0 && y - dy >= y0) visit(y - dy);
            }
        }
    }
    return 0;
}

inline unsigned char saturatedByte(int64_t v) { return (unsigned char)(v < 0 ? 0 : v > 255 ? 255 : v); }

template <LmRelief::LightRule rule> void lightRows(const LmRelief::LightArgs& a)
{
    const int64_t W = a.stride;
    const float level = (float)a.level;
    const float nzlz = a.nz * a.lz, nz2 = a.nz * a.nz;
    // The normal's dot product with the light goes first over a stretch of the row, every pixel
    // alike, so that the loop vectorises; the pixels to skip are dropped after.
    const int kStretch = 256;
    float dots[kStretch];
    // The sides depend on h and the dot product alone: flat areas repeat the last pixel's
    // (compared by bits: -0.0 and +0.0 may light differently).
    uint64_t lastKey = 0;
    bool lit = false; // whether lastKey holds a pixel's key yet
    unsigned char lastLit = 0, lastShadow = 0;
    for (int y = a.rowBegin; y < a.rowEnd; ++y) {
        for (int x0 = a.colBegin; x0 < a.colEnd; x0 += kStretch) {
            const int n = std::min(kStretch, a.colEnd - x0);
            const float* row = a.map + y * W + x0;
            for (int j = 0; j < n; ++j) {
                const float* p = row + j;
                float gx = (p[-1] - p[1]) * 0.5f;
                float gy = (p[-W] - p[W]) * 0.5f;
                if (rule == LmRelief::EMBOSS_SOFT_LIGHT) {
                    gx *= a.gradientFactor;
                    gy *= a.gradientFactor;
                }
                dots[j] = (nzlz - a.lx * gx - a.ly * gy) / fsqrt(nz2 + gx * gx + gy * gy);
            }
            for (int j = 0; j < n; ++j) {
                const int64_t i = y * W + x0 + j;
                const float h = row[j];
                if (rule == LmRelief::EMBOSS_SOFT_LIGHT) {
                    if (h == 0.0f || h >= level) continue;
                } else if (h == level) {
                    continue;
                }
                uint32_t hBits, dotBits;
                std::memcpy(&hBits, &h, 4);
                std::memcpy(&dotBits, dots + j, 4);
                const uint64_t key = (uint64_t)hBits << 32 | dotBits;
                if (lit && key == lastKey) {
                    a.lit[i] = lastLit;
                    a.shadow[i] = lastShadow;
                    continue;
                }
                float shade = dots[j] * 255.0f;
                if (shade > 255.0f) shade = 255.0f;
                if (!(shade >= 0.0f)) shade = 0.0f; // NaN too
                if (rule == LmRelief::BEVEL_LIGHT && !a.keepShade) shade = (float)(255 - (int)shade);

                float t = rule == LmRelief::BEVEL_LIGHT || h > 0.0f ? level - h : h + (float)a.innerReach - 1.0f;
                if (t > 1.0f) t = 1.0f;
                if (!(t >= 0.0f)) t = 0.0f;
                const int64_t ramp = (int)(0.5f + t * 255.0f);

                // The bevel lights its lit side from shade + 1 and its shadow from 256 - shade; the
                // emboss the other way round.
                const int64_t rising = (int)(shade + 1.0f), falling = 256 - (int)shade;
                const int64_t litTerm = rule == LmRelief::BEVEL_LIGHT ? rising : falling;
                const int64_t shadowTerm = rule == LmRelief::BEVEL_LIGHT ? falling : rising;
                a.lit[i] = lastLit = saturatedByte((ramp * (1 + ((litTerm * a.litOpacity) >> 8))) >> 8);
                a.shadow[i] = lastShadow = saturatedByte((ramp * (1 + ((shadowTerm * a.shadowOpacity) >> 8))) >> 8);
                lastKey = key;
                lit = true;
            }
        }
    }
}

// The line transform with integers of type I (wide enough for n^2) for the squares and gaps.
template <class I> void lineTransform(float* out, const float* in, int n, int* v, float* z, float* f)
{
    if (n < 1) return;
    // Each parabola's value at its own root, in[q] + q^2, formed once.
    for (int q = 0; q < n; ++q) f[q] = in[q] + (float)((I)q * q);
    auto cross = [&](int q, int p) { return (f[q] - f[p]) / (float)(2 * (I)q - 2 * (I)p); };
    int k = 0;
    v[0] = 0;
    z[0] = -1e20f;
    z[1] = 1e20f;
    for (int q = 1; q < n; ++q) {
        float s = cross(q, v[k]);
        while (s <= z[k] && k > 0) {
            --k;
            s = cross(q, v[k]);
        }
        ++k;
        v[k] = q;
        z[k] = s;
        z[k + 1] = 1e20f;
    }
    k = 0;
    for (int q = 0; q < n; ++q) {
        while (z[k + 1] < (float)q) ++k;
        const I d = (I)q - v[k];
        out[q] = in[v[k]] + (float)(d * d);
    }
}

inline unsigned channel(unsigned colour, int shift, int64_t alpha)
{
    return (unsigned)std::min<int64_t>(((int64_t)((colour >> shift) & 0xFF) + 1) * alpha >> 8, 255) << shift;
}

inline unsigned pack(unsigned colour, int64_t alpha)
{
    return (unsigned)alpha << 24 | channel(colour, 16, alpha) | channel(colour, 8, alpha) | channel(colour, 0, alpha);
}

} // namespace

bool LmRelief::Pass::allocate(int pairCount)
{
    pairs = pairCount;
    const int64_t n = size();
    map = LmMaskBox::allocate<float>(n, false);
    out = LmMaskBox::allocate<unsigned>(n, true);
    if (!map || !out) return false;
    for (int i = 0; i < 2 * pairs + 1; ++i) {
        blocks[i] = LmMaskBox::allocate<unsigned char>(n, true);
        if (!blocks[i]) return false;
    }
    for (int i = 0; i < pairs; ++i) {
        lit[i] = blocks[2 * i].get();
        shadow[i] = blocks[2 * i + 1].get();
    }
    spare = blocks[2 * pairs].get();
    return true;
}

LmRelief::LightArgs LmRelief::Pass::lightArgs(int pair, const Light& l, int level, int innerReach,
                                              const LmLightingProperty& p) const
{
    const int highlightAlpha = (int)(p.highlightColour >> 24), shadowAlpha = (int)(p.shadowColour >> 24);
    return LightArgs{lit[pair], shadow[pair], map.get(), canvas.width, level, innerReach, l.nz, l.lx, l.ly, l.lz,
                     highlightAlpha, shadowAlpha, true, 1.0f, 1, canvas.width - 1, 1, canvas.height - 1};
}

bool LmRelief::Pass::blur(int r)
{
    if (r <= 0) return true;
    for (int i = 0; i < pairs; ++i)
        if (!blurPair(&lit[i], &shadow[i], &spare, canvas.width, canvas.height, r)) return false;
    return true;
}

void LmRelief::Pass::drawInto(LmBitmap* target, int mode) const
{
    LmBlender::drawBitmapBlend32(canvas.x, canvas.y, target, out.get(), canvas.width, canvas.height, canvas.width,
                                 mode);
}

LmRelief::Light LmRelief::light(const LmLightingProperty& p, float depthFloor)
{
    const float a = (180.0f - p.angle) * 3.14159f / 180.0f;
    const float e = p.altitude * 3.14159f / 180.0f;
    Light l;
    l.lx = cosf(a) * cosf(e);
    l.ly = sinf(a) * cosf(e);
    l.lz = sinf(e);
    if (p.direction == 0) {
        l.lx = -l.lx;
        l.ly = -l.ly;
    }
    l.nz = 2.4f / std::max(p.depth, depthFloor);
    return l;
}

bool LmRelief::canvasFor(const LmMaskBox& box, int64_t margin, Canvas* canvas)
{
    if (margin < 0 || margin > kMaxCanvasPixels) return false;
    const int64_t w = box.width() + 2 * margin, h = box.height() + 2 * margin;
    if (w < 1 || h < 1 || w * h > kMaxCanvasPixels) return false;
    if (!LmMaskBox::affordable(w * h, margin + 1, "bevel or emboss")) return false;
    canvas->x = (int)(box.left - margin);
    canvas->y = (int)(box.top - margin);
    canvas->width = (int)w;
    canvas->height = (int)h;
    canvas->margin = (int)margin;
    return true;
}

bool LmRelief::searchAffordable(const Canvas& canvas, int64_t reach)
{
    // Far from the glyphs a pixel walks up to `reach` window rows, each dearer than the
    // byte-taps the bound counts: about 32 of them, as measured on raw sizes of 250 to 1000.
    return LmMaskBox::affordable(canvas.pixels(), 32 * (reach + 1), "bevel or emboss search");
}

void LmRelief::blurWeights(int* weights, int* total, int r)
{
    weights[0] = 100;
    *total = 100;
    if (r < 1) return;
    const float d = (float)((int64_t)r * r) / 4.60517f;
    for (int k = 1; k <= r; ++k) {
        weights[k] = (int)(0.5f + expf(-(float)((int64_t)k * k) / d) * 100.0f);
        *total += 2 * weights[k];
    }
}

int LmRelief::partialBlur(void* args)
{
    if (args) blurWithBuffers(*static_cast<const BlurArgs*>(args));
    return 0;
}

bool LmRelief::blurPair(unsigned char** lit, unsigned char** shadow, unsigned char** spare, int width, int height,
                        int r)
{
    const BlurArgs litArgs{*lit, *spare, width, r, r, width - r, r, height - r};
    const BlurArgs shadowArgs{*shadow, *lit, width, r, r, width - r, r, height - r};
    if (!blurWithBuffers(litArgs) || !blurWithBuffers(shadowArgs)) return false;
    unsigned char* oldShadow = *shadow;
    *shadow = *lit;
    *lit = *spare;
    *spare = oldShadow;
    return true;
}

void LmRelief::dt1D(float* out, const float* in, int n, int* v, float* z, float* f)
{
    // Squares and doubled gaps in 32 bits where they fit: the same floats from cheaper
    // conversions, and the first loop vectorises.
    if (n <= 46340)
        lineTransform<int32_t>(out, in, n, v, z, f);
    else
        lineTransform<int64_t>(out, in, n, v, z, f);
}

void LmRelief::dt1D(float* out, const float* in, int n)
{
    if (!out || !in || n < 1) return;
    LmMaskBox::Block<int> v = LmMaskBox::allocate<int>(n, false);
    LmMaskBox::Block<float> z = LmMaskBox::allocate<float>((int64_t)n + 1, false);
    LmMaskBox::Block<float> f = LmMaskBox::allocate<float>(n, false);
    if (v && z && f) dt1D(out, in, n, v.get(), z.get(), f.get());
}

bool LmRelief::dt2D(float* map, int width, int height, float leaveAbove)
{
    const int n = std::max(width, height);
    // Columns go through in blocks, turned into lines a block at a time: each map row is then
    // read and written a cache line at once rather than a float per column.
    const int64_t block = 16, H = height;
    LmMaskBox::Block<float> lines = LmMaskBox::allocate<float>(block * H, false);
    LmMaskBox::Block<float> line = LmMaskBox::allocate<float>(n, true);
    LmMaskBox::Block<int> v = LmMaskBox::allocate<int>(n, false);
    LmMaskBox::Block<float> z = LmMaskBox::allocate<float>((int64_t)n + 1, false);
    LmMaskBox::Block<float> f = LmMaskBox::allocate<float>(n, false);
    if (!lines || !line || !v || !z || !f) return false;
    const int64_t W = width;
    for (int64_t x0 = 0; x0 < W; x0 += block) {
        const int64_t columns = std::min(block, W - x0);
        for (int64_t y = 0; y < H; ++y)
            for (int64_t j = 0; j < columns; ++j) lines[j * H + y] = map[y * W + x0 + j];
        bool changed = false;
        for (int64_t j = 0; j < columns; ++j) {
            float* column = lines.get() + j * H;
            if (keepsItself(column, height)) continue;
            std::memcpy(line.get(), column, sizeof(float) * (size_t)H);
            dt1D(column, line.get(), height, v.get(), z.get(), f.get());
            changed = true;
        }
        if (!changed) continue;
        for (int64_t y = 0; y < H; ++y)
            for (int64_t j = 0; j < columns; ++j) map[y * W + x0 + j] = lines[j * H + y];
    }
    for (int y = 0; y < height; ++y) {
        float* row = map + y * W;
        // Every value of the row stays at least the row's least.
        if (keepsItself(row, width) || !leastAtMost(row, width, leaveAbove)) continue;
        std::memcpy(line.get(), row, sizeof(float) * (size_t)width);
        dt1D(row, line.get(), width, v.get(), z.get(), f.get());
    }
    return true;
}

void LmRelief::capDistances(float* map, int64_t count, int reach)
{
    const float limit = (float)((int64_t)reach * reach);
    // The root is taken for every value and the case chosen by masks after, so the loop has no
    // branch and vectorises.
    const float capped = (float)reach;
    uint32_t cappedBits;
    std::memcpy(&cappedBits, &capped, 4);
    for (int64_t i = 0; i < count; ++i) {
        const float v = map[i], r = fsqrt(v);
        uint32_t rootBits;
        std::memcpy(&rootBits, &r, 4);
        const uint32_t above = 0u - (uint32_t)(v > limit), none = 0u - (uint32_t)(v <= 0.0f);
        const uint32_t bits = ((rootBits & ~above) | (cappedBits & above)) & ~none;
        std::memcpy(map + i, &bits, 4);
    }
}

void LmRelief::exactFill(float* map, const Canvas& c, const LmMaskBox& box, float inside, float outside)
{
    const int64_t m = c.margin, W = c.width;
    const int64_t maskW = box.mask->width, maskH = box.mask->height;
    std::fill(map, map + c.pixels(), outside);
    // Interior columns m..W-m (rows likewise) that lie on the mask.
    const int64_t colEnd = std::min(std::min<int64_t>(W - m + 1, W), m + maskW - box.left);
    const int64_t rowEnd = std::min(std::min<int64_t>(c.height - m + 1, c.height), m + maskH - box.top);
    for (int64_t r = m; r < rowEnd; ++r) {
        const unsigned char* src = box.mask->pixels + ((int64_t)box.top + (r - m)) * maskW + box.left;
        float* row = map + r * W;
        // Every pixel written, the value chosen without a branch: the loop vectorises.
        for (int64_t col = m; col < colEnd; ++col) row[col] = src[col - m] != 0 ? inside : outside;
    }
}

void LmRelief::localFill(float* map, const Canvas& c, const LmMaskBox& box, float fillValue, int reach,
                         float divisor, float fullValue, bool invert)
{
    std::fill(map, map + c.pixels(), fillValue);
    const int m = c.margin;
    const unsigned flip = invert ? 255u : 0u;
    for (int j = 0; j < box.height(); ++j) {
        const unsigned char* src = box.row(j);
        float* dst = map + (int64_t)(j + m) * c.width + m;
        for (int i = 0; i < box.width(); ++i) {
            const float v = (float)(src[i] ^ flip) / divisor;
            dst[i] = v < 0.001f ? (float)reach : v < 1.0f ? 1.0f - v : fullValue;
        }
    }
}

float LmRelief::rootOf(int64_t n)
{
    return root(n);
}

int LmRelief::partialDT(void* args)
{
    return outwardSearch(args, [](float c) { return c != 0.0f; }, [](float n, float d) { return n + d; });
}

int LmRelief::partialOutDT(void* args)
{
    const SearchArgs* a = static_cast<const SearchArgs*>(args);
    if (!a || !a->map || a->width < 1 || a->height < 1 || a->reach < 0) return 0;
    const int64_t W = a->width, H = a->height;
    // Sources (values below 1) never change here: every candidate from another cell is at least
    // 1. So the source layout is read once: the distance from every cell to its row's nearest
    // source at or right of it and at or left of it, saturated at 255 (still lower bounds).
    LmMaskBox::Block<unsigned char> right = LmMaskBox::allocate<unsigned char>(W * H, false);
    LmMaskBox::Block<unsigned char> left = LmMaskBox::allocate<unsigned char>(W * H, false);
    // The nearer of the two by columns (x H + y): a cell's rows are tested one after another.
    // Padded for the row test's whole vectors.
    LmMaskBox::Block<unsigned char> nearest = LmMaskBox::allocate<unsigned char>(W * H + 64, false);
    auto emboss = [](float n, float d) { return n > 0.0f ? n + d : d; };
    if (!right || !left || !nearest) return outwardSearch(args, [](float c) { return c > 0.0f; }, emboss);
    std::memset(nearest.get() + W * H, 0, 64);
    for (int64_t y = 0; y < H; ++y) {
        const float* m = a->map + y * W;
        for (int64_t x = 0, since = 255; x < W; ++x) {
            since = m[x] < 1.0f ? 0 : std::min<int64_t>(since + 1, 255);
            left[y * W + x] = (unsigned char)since;
        }
        for (int64_t x = W - 1, until = 255; x >= 0; --x) {
            until = m[x] < 1.0f ? 0 : std::min<int64_t>(until + 1, 255);
            right[y * W + x] = (unsigned char)until;
            nearest[x * H + y] = std::min(left[y * W + x], right[y * W + x]);
        }
    }
    // Squared distances are at most this within any window; past it no test is needed.
    const int64_t reach = std::min<int64_t>(a->reach, std::max(W, H));
    const int64_t largest = 2 * reach * reach + 2;
    // A squared distance from which on every root is at least c: a root errs from the square root
    // by at most 0.0005 and a float's rounding. It may pass the least such by a step or two,
    // which only lets a few more candidates be tried and rejected, and costs no table lookups.
    auto limits = [&](float c) -> int64_t {
        const double r = (double)c + 0.001 + 1e-6 * (double)c;
        if (!(r * r < (double)largest)) return largest + 1;
        return (int64_t)std::ceil(r * r);
    };

    // The vector row test's squares fit its 31 bits.
    const bool masked = largest < (int64_t(1) << 30);

    // Where each cell of the row above found its value (x, then y; -1 when it kept its own).
    LmMaskBox::Block<int> found = LmMaskBox::allocate<int>(2 * W, false);
    if (!found) return outwardSearch(args, [](float c) { return c > 0.0f; }, emboss);
    std::fill(found.get(), found.get() + 2 * W, -1);

    // Candidates are at least their root, and roots grow with the squared distance: a row is
    // passed over when its nearest source is already too far, and each run starts at the row's
    // nearest source on its side and stops where the root reaches the value. From `limit` on
    // every squared distance has a root that reaches c. The sources that served the cells to the
    // left and above are tried first: neighbours mostly share their nearest source, and a value
    // found early keeps the limit small.
    for (int y = std::max(a->rowBegin, 0); y < std::min(a->rowEnd, a->height); ++y) {
        int y0, y1;
        window(y, a->reach, a->height, &y0, &y1);
        int64_t leftX = -1, leftY = -1;
        for (int x = 0; x < a->width; ++x) {
            float c = a->map[y * W + x];
            int64_t bestX = -1, bestY = -1;
            // A cell below 1 keeps its value: any other candidate is at least root(1) = 1.
            if (!(c >= 1.0f)) {
                found[2 * x] = found[2 * x + 1] = -1;
                leftX = leftY = -1;
                continue;
            }
            int x0, x1;
            window(x, a->reach, a->width, &x0, &x1);
            auto take = [&](int64_t xx, int64_t yy, int64_t d2) {
                const float n = a->map[yy * W + xx];
                if (!(n < 1.0f)) return true;
                const float k = emboss(n, root(d2));
                if (k < c) c = k, bestX = xx, bestY = yy;
                return n > 0.0f;
            };
            const int64_t hints[2][2] = {{leftX, leftY}, {found[2 * x], found[2 * x + 1]}};
            for (const auto& hint : hints)
                if (hint[0] >= x0 && hint[0] < x1 && hint[1] >= y0 && hint[1] < y1)
                    take(hint[0], hint[1], (hint[0] - x) * (hint[0] - x) + (hint[1] - y) * (hint[1] - y));
            int64_t limit = limits(c);
            const unsigned char* toRight = right.get() + x;
            const unsigned char* toLeft = left.get() + x;
            const unsigned char* column = nearest.get() + x * H;
            auto visit = [&](int64_t yy, int64_t dy2) {
                const int64_t h = column[yy];
                if (dy2 + h * h >= limit) return;
                const float before = c;
                // The candidate of a source at 0 or below is its root: none further along the run
                // can beat it, so the run ends there.
                for (int64_t xx = x + toRight[yy * W], d2 = dy2 + (xx - x) * (xx - x); xx < x1 && d2 < limit && take(xx, yy, d2);
                     ++xx, d2 = dy2 + (xx - x) * (xx - x)) {
                }
                // A source under the cell itself was taken by the run to the right.
                for (int64_t xx = x - std::max<int64_t>(toLeft[yy * W], 1), d2 = dy2 + (xx - x) * (xx - x);
                     xx >= x0 && d2 < limit && take(xx, yy, d2); --xx, d2 = dy2 + (xx - x) * (xx - x)) {
                }
                if (c != before) limit = limits(c);
            };
            if (!masked) {
                for (int64_t dy = 0; dy * dy < limit && (y + dy < y1 || y - dy >= y0); ++dy) {
                    if (y + dy < y1) visit(y + dy, dy * dy);
                    if (dy > 0 && y - dy >= y0) visit(y - dy, dy * dy);
                }
            } else {
                // The rows that pass the first limit, found a vector at a time (a row rejected now
                // stays rejected as the limit falls), among those within c + 1: roots of rows
                // further away are at least c, as roots err by less than 1.
                const int64_t reachNow = c < (float)a->reach ? (int64_t)c + 1 : a->reach;
                const int64_t lo = std::max<int64_t>(y0, y - reachNow), hi = std::min<int64_t>(y1, y + reachNow + 1);
                for (int64_t k = lo; k < hi; k += 64) {
                    const size_t count = (size_t)std::min<int64_t>(64, hi - k);
                    uint64_t bits = LmRowOps::rowsWithin(column + k, count, (int32_t)(k - y), (int32_t)limit);
                    for (; bits; bits &= bits - 1) {
                        const int64_t yy = k + __builtin_ctzll(bits);
                        visit(yy, (yy - y) * (yy - y));
                    }
                }
            }
            // The cell is no source (at least 1 once changed), so no search above has read it.
            a->map[y * W + x] = c;
            found[2 * x] = leftX = bestX;
            found[2 * x + 1] = leftY = bestY;
        }
    }
    return 0;
}

int LmRelief::partialInDT(void* args)
{
    const SearchArgs* a = static_cast<const SearchArgs*>(args);
    if (!a || !a->map || a->width < 1 || a->height < 1 || a->innerReach < 0) return 0;
    const int ir = a->innerReach;
    const int64_t W = a->width, T = 2 * (int64_t)ir + 1;
    // The sources (values above 1) with every other cell at -inf, so that a row of the window is
    // one vectorised running maximum of source - root, and each row's first and last source.
    LmMaskBox::Block<float> sources = LmMaskBox::allocate<float>(W * a->height, false);
    LmMaskBox::Block<int> first = LmMaskBox::allocate<int>(a->height, false);
    LmMaskBox::Block<int> last = LmMaskBox::allocate<int>(a->height, false);
    LmMaskBox::Block<float> rowRoots = LmMaskBox::allocate<float>(T, false);
    if (!sources || !first || !last || !rowRoots) return 0;
    for (int y = 0; y < a->height; ++y) {
        first[y] = a->width;
        last[y] = -1;
        for (int x = 0; x < a->width; ++x) {
            const float n = a->map[y * W + x];
            sources[y * W + x] = n > 1.0f ? n : -INFINITY;
            if (n > 1.0f) first[y] = std::min(first[y], x), last[y] = x;
        }
    }
    // Roots of dy^2 + dx^2 for the whole window, dx = -ir..ir along a row; computed row by row
    // on demand when the table is too large to have.
    LmMaskBox::Block<float> table = T * T <= (int64_t(1) << 24) ? LmMaskBox::allocate<float>(T * T, false)
                                                                  : LmMaskBox::Block<float>();
    auto fillRoots = [&](float* out, int64_t dy) {
        for (int64_t j = 0; j < T; ++j) out[j] = root(dy * dy + (j - ir) * (j - ir));
    };
    if (table)
        for (int64_t dy = -ir; dy <= ir; ++dy) fillRoots(table.get() + (dy + ir) * T, dy);

    // Rows y - dy and y + dy share the roots of dy, and v - t never falls as v grows: the larger of
    // the two values gives the larger difference. So each row folds its pairs into one row per dy
    // before its cells are searched, and a cell reads half the rows. Rows before y are final by
    // then and rows after it not yet searched; row y itself is read live (a cell lifted into a
    // source serves the cells after it).
    const int64_t H = a->height;
    // No pair reaches further than the canvas is high, so the folds take no more room than the map.
    const int64_t folded = std::min<int64_t>(ir, H - 1);
    LmMaskBox::Block<float> folds =
        table ? LmMaskBox::allocate<float>((folded + 1) * W, false) : LmMaskBox::Block<float>();
    LmMaskBox::Block<int> foldFirst = LmMaskBox::allocate<int>(folded + 1, false);
    LmMaskBox::Block<int> foldLast = LmMaskBox::allocate<int>(folded + 1, false);
    if ((table && !folds) || !foldFirst || !foldLast) return 0;
    for (int y = std::max(a->rowBegin, 0); y < std::min(a->rowEnd, a->height); ++y) {
        int y0, y1;
        window(y, ir, a->height, &y0, &y1);
        const float* row = a->map + y * W;
        int searchedFirst = a->width, searchedLast = -1;
        for (int x = 0; x < a->width; ++x)
            if (row[x] < 0.0f) searchedFirst = std::min(searchedFirst, x), searchedLast = x;
        if (searchedLast < 0) continue;
        const int64_t spanBegin = std::max<int64_t>((int64_t)searchedFirst - ir, 0);
        const int64_t spanEnd = std::min<int64_t>((int64_t)searchedLast + ir + 1, W);
        for (int64_t dy = 1; folds && dy <= folded; ++dy) {
            const float* above = y - dy >= 0 ? sources.get() + (y - dy) * W : nullptr;
            const float* below = y + dy < H ? sources.get() + (y + dy) * W : nullptr;
            int f = a->width, l = -1;
            for (const int64_t yy : {y - dy, y + dy})
                if (yy >= 0 && yy < H) f = std::min(f, first[yy]), l = std::max(l, last[yy]);
            foldFirst[dy] = f, foldLast[dy] = l;
            float* out = folds.get() + dy * W;
            // Rows between the first and last to hold a source are still read.
            if (l < spanBegin || f >= spanEnd) {
                std::fill(out + spanBegin, out + spanEnd, -INFINITY);
                continue;
            }
            if (!above || !below) {
                const float* only = above ? above : below;
                std::copy(only + spanBegin, only + spanEnd, out + spanBegin);
                continue;
            }
            LmRowOps::maxOf(out + spanBegin, above + spanBegin, below + spanBegin, (size_t)(spanEnd - spanBegin));
        }
        // Lifted above 1 a cell becomes a source for the cells after it.
        auto store = [&](int x, float c) {
            a->map[y * W + x] = c;
            if (c > 1.0f) {
                sources[y * W + x] = c;
                first[y] = std::min(first[y], x);
                last[y] = std::max(last[y], x);
            }
        };
        // A folded cell's own row, read live.
        auto finish = [&](int x, float c) {
            int x0, x1;
            window(x, ir, a->width, &x0, &x1);
            if (first[y] < x1 && last[y] >= x0)
                c = LmRowOps::maxDifference(sources.get() + y * W + x0, W, table.get() + ir * T + (x0 - x + ir), T, 1,
                                            (size_t)(x1 - x0), c);
            store(x, c);
        };
        for (int x = searchedFirst; x <= searchedLast;) {
            float& c = a->map[y * W + x];
            if (!(c < 0.0f)) {
                ++x;
                continue;
            }
            // The cell is no source while it is searched, so the maximum is over a fixed set and
            // the order of the visit does not matter.
            int x0, x1;
            window(x, ir, a->width, &x0, &x1);
            const int64_t dx0 = x0 - x + ir;
            if (folds) {
                // Up to eight neighbours whose whole windows lie on the canvas share the folded
                // rows' loads; a row without a source in a cell's window only adds -inf to it.
                int cells = 1;
                if (x - ir >= 0)
                    while (cells < 8 && x + cells <= searchedLast && a->map[y * W + x + cells] < 0.0f &&
                           (int64_t)x + cells + ir < W)
                        ++cells;
                cells = cells >= 8 ? 8 : cells >= 4 ? 4 : cells >= 2 ? 2 : 1;
                const int right = cells > 1 ? x + cells + ir : x1;
                int64_t low = 1, high = folded;
                auto holds = [&](int64_t dy) { return foldFirst[dy] < right && foldLast[dy] >= x0; };
                while (low <= high && !holds(low)) ++low;
                while (high >= low && !holds(high)) --high;
                float maxima[8];
                for (int k = 0; k < cells; ++k) maxima[k] = a->map[y * W + x + k];
                if (low <= high)
                    LmRowOps::maxDifferences(folds.get() + low * W + x0, W, table.get() + (low + ir) * T + dx0, T,
                                             (size_t)(high - low + 1), (size_t)(x1 - x0), maxima, (size_t)cells);
                for (int k = 0; k < cells; ++k) finish(x + k, maxima[k]);
                x += cells;
                continue;
            }
            auto holdsSource = [&](int yy) { return first[yy] < x1 && last[yy] >= x0; };
            int top = y0, bottom = y1;
            while (top < bottom && !holdsSource(top)) ++top;
            while (bottom > top && !holdsSource(bottom - 1)) --bottom;
            for (int yy = top; yy < bottom; ++yy) {
                const float* roots = rowRoots.get() + dx0;
                if (table) roots = table.get() + (yy - y + ir) * T + dx0;
                else fillRoots(rowRoots.get(), yy - y);
                c = LmRowOps::maxDifference(sources.get() + yy * W + x0, W, roots, T, 1, (size_t)(x1 - x0), c);
            }
            store(x, c);
            ++x;
        }
    }
    return 0;
}

int LmRelief::partialLight(void* args, LightRule rule)
{
    const LightArgs* a = static_cast<const LightArgs*>(args);
    if (!a || !a->lit || !a->shadow || !a->map) return 0;
    switch (rule) {
    case BEVEL_LIGHT: lightRows<BEVEL_LIGHT>(*a); break;
    case EMBOSS_HARD_LIGHT: lightRows<EMBOSS_HARD_LIGHT>(*a); break;
    case EMBOSS_SOFT_LIGHT: lightRows<EMBOSS_SOFT_LIGHT>(*a); break;
    }
    return 0;
}

unsigned LmRelief::composePixel(int lit, int shadow, float gain, unsigned shadowColour, unsigned highlightColour)
{
    const int d = (int)(gain * (float)shadow) - (int)(gain * (float)lit);
    return pack(d > 0 ? shadowColour : highlightColour, std::min(std::abs(d), 255));
}

void LmRelief::composeAll(const unsigned char* lit, const unsigned char* shadow, unsigned* out, int64_t count,
                          float gain, unsigned shadowColour, unsigned highlightColour)
{
    // Large areas share one pair of sides: the last pixel is reused.
    int lastLit = -1, lastShadow = -1;
    unsigned lastOut = 0;
    // A pixel depends on (int)(gain x side) of each side and, past +-255, only on the sign of
    // their difference: both go through tables where the products are small.
    const bool tabled = std::fabs(gain) <= 64.0f;
    int scaled[256];
    unsigned byDifference[511];
    for (int v = 0; tabled && v < 256; ++v) scaled[v] = (int)(gain * (float)v);
    for (int d = -255; tabled && d <= 255; ++d)
        byDifference[d + 255] = pack(d > 0 ? shadowColour : highlightColour, std::abs(d));
    for (int64_t i = 0; i < count; ++i) {
        if (lit[i] != lastLit || shadow[i] != lastShadow) {
            lastLit = lit[i];
            lastShadow = shadow[i];
            lastOut = tabled ? byDifference[std::min(std::max(scaled[lastShadow] - scaled[lastLit], -255), 255) + 255]
                             : composePixel(lastLit, lastShadow, gain, shadowColour, highlightColour);
        }
        out[i] = lastOut;
    }
}

unsigned LmRelief::composeWeighted(int lit, int shadow, float gain, int weight, unsigned shadowColour,
                                   unsigned highlightColour)
{
    const int d = (int)(gain * (float)shadow) - (int)(gain * (float)lit);
    const int64_t product = ((int64_t)std::abs(d) + 1) * weight;
    return pack(d > 0 ? shadowColour : highlightColour, product >= 65536 ? 255 : product >> 8);
}

unsigned LmRelief::addSaturated(unsigned a, unsigned b)
{
    unsigned out = 0;
    for (int shift = 0; shift < 32; shift += 8)
        out |= (unsigned)std::min(((a >> shift) & 0xFFu) + ((b >> shift) & 0xFFu), 255u) << shift;
    return out;
}

} // namespace LmFontEffect
