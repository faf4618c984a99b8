#include "filters/LmGlow.h"

#include "filters/LmGaussianBlur.h"
#include "raster/LmRowOps.h"
#include "filters/LmMaskBox.h"
#include "foundation/LmConvert.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace LmFontEffect {

namespace {

// w/256 of c1 and (256 - w)/256 of c0, two channels at a time.
unsigned blendPair(unsigned c0, unsigned c1, unsigned w)
{
    const unsigned rb = ((w * (c1 & 0x00FF00FFu) + (256 - w) * (c0 & 0x00FF00FFu)) >> 8) & 0x00FF00FFu;
    const unsigned ag = (w * ((c1 >> 8) & 0x00FF00FFu) + (256 - w) * ((c0 >> 8) & 0x00FF00FFu)) & 0xFF00FF00u;
    return rb + ag;
}

float curveOf(float t, int curve)
{
    if (curve == 1) return sqrtf(t);
    if (curve == 2) return t * t;
    return t;
}

// Colour channels scaled by the entry's own alpha, (ch + 1) * A >> 8.
unsigned premultiplied(unsigned c)
{
    const unsigned a = c >> 24;
    auto ch = [a](unsigned v) { return (((v & 0xFF) + 1) * a) >> 8; };
    return (a << 24) | (ch(c >> 16) << 16) | (ch(c >> 8) << 8) | ch(c);
}

} // namespace

LmGlow::~LmGlow() { release(); }

void LmGlow::release()
{
    if (property) property->stops = nullptr;
    delete property;
    property = nullptr;
    stops.reset();
}

LmProperty* LmGlow::getProperty() { return property; }

int LmGlow::getOffset() { return property ? lmToInt(property->size + 0.5f) : 0; }

void LmGlow::makeColorLUT(unsigned int* table, float range, int curve) const
{
    if (!table) return;
    std::memset(table, 0, sizeof(unsigned) * kTableSize);
    if (!property || property->size == 0.0f) return;

    const int count = property->stops ? std::max(property->stopCount, 0) : 0;
    const LmGradient* s = property->stops;
    if (count < 2) {
        std::fill(table, table + kTableSize, count == 0 ? property->colour : s[0].colour);
    } else {
        table[0] = s[0].colour;
        table[256] = s[count - 1].colour;
        // The first segment starts at 0, not at the first stop's position.
        float p0 = 0.0f, p1 = s[1].position;
        float len = p1 - 0.0f;
        unsigned c0 = s[0].colour, c1 = s[1].colour;
        int at = 0;
        for (int i = 1; i < 256; ++i) {
            const float t = i * 0.00390625;
            const float u = curveOf(t, curve);
            // At most one stop per entry, even when u has passed several.
            if (p1 < u) {
                if (at + 2 < count) {
                    p0 = p1;
                    p1 = s[at + 2].position;
                    len = p1 - p0;
                    c0 = c1;
                    c1 = s[at + 2].colour;
                    ++at;
                } else {
                    c0 = c1 = s[count - 1].colour;
                }
            }
            const int w = lmToInt((u - p0) / len * 256.0);
            table[i] = w < 1 ? c0 : w > 255 ? c1 : blendPair(c0, c1, (unsigned)w);
        }
    }

    float r = range;
    if (r >= 1.0) r = 0.99f;
    if (r <= 0.0) r = 0.01f;
    const int k = lmToInt((double)r * 256.0);
    if (k > 256) return;
    for (int j = k; j <= 256; ++j) {
        const int f = lmToInt((256.0f - j) * 256.0f / (256.0f - k));
        const unsigned a = ((unsigned)f * (table[j] >> 24)) >> 8;
        table[j] = (table[j] & 0x00FFFFFFu) | (a << 24);
    }
    table[256] = 0;
}

namespace {

// Columns [lo, hi) of a row that a spread pass changed; lo >= hi when none.
struct Span {
    int lo, hi;
};

// The first and one past the last column in [from, to) where a and b differ.
Span difference(const unsigned char* a, const unsigned char* b, int from, int to)
{
    uint64_t u, v;
    int lo = from, hi = to;
    for (; lo + 8 <= to; lo += 8) {
        std::memcpy(&u, a + lo, 8);
        std::memcpy(&v, b + lo, 8);
        if (u != v) break;
    }
    while (lo < to && a[lo] == b[lo]) ++lo;
    if (lo == to) return Span{0, 0};
    for (; hi - 8 >= lo; hi -= 8) {
        std::memcpy(&u, a + hi - 8, 8);
        std::memcpy(&v, b + hi - 8, 8);
        if (u != v) break;
    }
    while (a[hi - 1] == b[hi - 1]) --hi;
    return Span{lo, hi};
}

} // namespace

void LmGlow::increaseByBoxFilter(unsigned char* image, int passes, int width, int height)
{
    if (!image || width < 1 || height < 3 || passes < 1) return;
    const size_t stride = (size_t)width;
    LmMaskBox::Block<unsigned char> rows = LmMaskBox::allocate<unsigned char>(2 * (int64_t)width, true);
    LmMaskBox::Block<unsigned short> columnRow = LmMaskBox::allocate<unsigned short>(width, false);
    LmMaskBox::Block<Span> spans = LmMaskBox::allocate<Span>(2 * (int64_t)height, false);
    if (!rows || !columnRow || !spans) return;
    if (width < 3) {
        // Every written row is all end columns.
        std::memset(image + stride, 0, stride * (size_t)(height - 2));
        return;
    }
    // A pixel changes only when its 3 x 3 neighbourhood changed in the pass before, so each pass
    // recomputes the columns around the last pass's changes: regions that stay clear, saturate
    // or settle cost nothing more.
    Span* was = spans.get();
    Span* now = was + height;
    std::fill(was, was + height, Span{0, width});
    unsigned char* buffer[2] = {rows.get(), rows.get() + stride}; // end bytes stay 0
    for (int pass = 0; pass < passes; ++pass) {
        // A new row is written back once the row below it has read the old one.
        int pending = -1, from = 0, to = 0, spare = 0;
        auto flush = [&] {
            if (pending < 0) return;
            std::memcpy(image + (size_t)pending * stride + from, buffer[spare ^ 1] + from, (size_t)(to - from));
            pending = -1;
        };
        bool changed = false;
        now[0] = now[height - 1] = Span{0, 0}; // never written
        for (int y = 1; y < height - 1; ++y) {
            int lo = width, hi = 0;
            for (int k = y - 1; k <= y + 1; ++k)
                if (was[k].lo < was[k].hi) lo = std::min(lo, was[k].lo), hi = std::max(hi, was[k].hi);
            const int a = std::max(lo - 1, 1), b = std::min(hi + 1, width - 1);
            if (a >= b) {
                now[y] = Span{0, 0};
                continue;
            }
            unsigned char* row = image + (size_t)y * stride;
            unsigned char* next = buffer[spare];
            LmRowOps::spread(next + a - 1, row - stride + a - 1, row + a - 1, row + stride + a - 1, columnRow.get(),
                             (size_t)(b - a + 2));
            // The end columns take the buffer's 0 whenever the run reaches them.
            const int l = a == 1 ? 0 : a, r = b == width - 1 ? width : b;
            now[y] = difference(next, row, l, r);
            changed = changed || now[y].lo < now[y].hi;
            flush();
            pending = y, from = l, to = r, spare ^= 1;
        }
        flush();
        std::swap(was, now);
        if (!changed) break;
    }
}

int LmGlow::drawGlow(ParamPostProcessing* pp, bool inner)
{
    LmMaskBox box;
    if (!property || !box.take(pp) || box.width() == 0 || box.height() == 0) return 0;
    const int n = lmToInt(property->size);
    if (n > kMaxSize || n < -1) return 0;
    const int64_t G = (int64_t)n + 1;
    const int64_t M = 2 * G, W = box.width() + 4 * G, H = box.height() + 4 * G;
    // The spread passes cost about as much per pixel as the blur's taps.
    if (!LmMaskBox::affordable(W * H, 2 * G + 1, inner ? "inner glow" : "outer glow")) return 0;
    LmMaskBox::Block<unsigned> out = LmMaskBox::allocate<unsigned>(W * H, true);
    if (!out) return 0;
    if (G == 0) {
        // A size in (-2, -1]: an empty image, drawn all the same.
        LmBlender::drawBitmapBlend32(box.left, box.top, box.target, out.get(), (int)W, (int)H, (int)W,
                                     LME_BLEND_DST_OVER);
        return 1;
    }
    unsigned table[kTableSize];
    makeColorLUT(table, 0.3f, 0);
    for (unsigned& c : table) c = premultiplied(c);

    // The padded mask: the inner glow works on its inverse, 255 wherever there is no ink.
    LmMaskBox::Block<unsigned char> padded = LmMaskBox::allocate<unsigned char>(W * H, !inner);
    if (!padded) return 0;
    unsigned char* P = padded.get();
    if (inner) {
        std::memset(P, 255, (size_t)(W * H));
        for (int i = 0; i < box.height(); ++i) {
            const unsigned char* m = box.row(i);
            unsigned char* d = P + (M + i) * W + M;
            for (int x = 0; x < box.width(); ++x) d[x] = (unsigned char)(255 - m[x]);
        }
    } else {
        box.copyTo(P, W, M, M);
    }
    increaseByBoxFilter(P, std::max(lmToInt((double)G * 0.4750000089406967), 1), (int)W, (int)H);

    const int R = std::max(lmToInt((double)(float)G * 0.9), 0);
    const int w = (int)W, h = (int)H;
    LmMaskBox::Block<int> weights = LmMaskBox::allocate<int>(R + 1, false);
    LmMaskBox::Block<unsigned char> tmp = LmMaskBox::allocate<unsigned char>(W, false);
    LmMaskBox::Block<unsigned char> values = LmMaskBox::allocate<unsigned char>(W, false);
    LmMaskBox::Block<Span> inked = LmMaskBox::allocate<Span>(H, false);
    if (!weights || !tmp || !values || !inked) return 0;
    int sum = 0;
    LmGaussianBlur::computeGaussianWeights(weights.get(), &sum, R, kBlurScale);

    // Both passes work on P as it is; the inner glow's taps are of 255 - P, so it divides
    // 255 * sum - taps. Where every tap is P's background (0 outer, 255 inner) the vertical
    // pass gives 0, and the horizontal one the background again: only the columns near the
    // grown ink are blurred. The vertical pass reads columns R..w-R-1 only.
    const unsigned char background = inner ? 255 : 0;
    std::memset(values.get(), background, (size_t)w);
    for (int y = 0; y < h; ++y) inked[y] = difference(P + (int64_t)y * W, values.get(), R, std::max(R, w - R));
    // tmp's frame is the inverse pass's 255 (inner) or 0; inside it, 0 until blurred.
    std::memset(tmp.get(), inner ? 255 : 0, (size_t)w);
    if (w > 2 * R) std::memset(tmp.get() + R, 0, (size_t)(w - 2 * R));
    const unsigned plain = table[inner ? 1 : 256];
    if (inner) std::fill(out.get(), out.get() + W * H, 0xFFFFFFFFu); // the frame, R pixels deep
    int tmpFrom = R, tmpTo = R; // columns of tmp holding blurred values
    int64_t uninked = -1;       // an inner row blurred from its frame alone
    for (int y = R; y < h - R; ++y) {
        unsigned* o = out.get() + (int64_t)y * W;
        int lo = w, hi = 0;
        for (int k = y - R; k <= y + R; ++k)
            if (inked[k].lo < inked[k].hi) lo = std::min(lo, inked[k].lo), hi = std::max(hi, inked[k].hi);
        if (lo >= hi && !inner) continue; // table[256] is clear, as out already is
        if (lo >= hi && uninked >= 0) {
            std::memcpy(o, out.get() + uninked * W, sizeof(unsigned) * (size_t)W);
            continue;
        }
        if (lo >= hi) lo = hi = R, uninked = y;
        std::memset(tmp.get() + tmpFrom, 0, (size_t)(tmpTo - tmpFrom));
        LmGaussianBlur::verticalRow(P, w, y, lo, hi, weights.get(), sum, R, tmp.get(), inner);
        tmpFrom = lo, tmpTo = hi;
        // Output columns whose taps reach a blurred column or tmp's 255 frame.
        Span runs[3] = {{lo - R, hi + R}, {R, inner ? 2 * R : R}, {w - 2 * R, inner ? w - R : w - 2 * R}};
        int x = R;
        while (x < w - R) {
            int next = w - R, end = x;
            for (const Span& s : runs)
                if (s.lo < s.hi && s.hi > x) {
                    if (s.lo <= x) end = std::max(end, std::min(s.hi, w - R));
                    else next = std::min(next, s.lo);
                }
            if (end > x) {
                LmGaussianBlur::horizontalRow(tmp.get(), x, end, weights.get(), sum, R, values.get(), inner);
                for (int i = x; i < end; ++i) o[i] = table[256 - values[i]];
                x = end;
            } else {
                if (inner || plain) std::fill(o + x, o + next, plain); // out holds 0 or the frame's white
                x = next;
            }
        }
    }
    LmBlender::drawBitmapBlend32((int)(box.left - M), (int)(box.top - M), box.target, out.get(), w, (int)H, w,
                                 LME_BLEND_DST_OVER);
    return 1;
}

} // namespace LmFontEffect
