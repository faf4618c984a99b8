#include "filters/LmInnerShadow.h"

#include "effect/LmInnerShadowProperty.h"
#include "filters/LmGaussianBlur.h"
#include "filters/LmMaskBox.h"
#include "filters/LmOuterShadow.h"
#include "foundation/LmConvert.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace LmFontEffect {

namespace {

// Half-open range, clamped to 0..limit.
struct Span {
    int64_t begin;
    int64_t end;
    Span(int64_t b, int64_t e, int64_t limit) : begin(std::max<int64_t>(b, 0)), end(std::min<int64_t>(e, limit)) {}
};

// The part of 0..size that a shift by d reads from a blur of reach R: beyond R the shift pulls
// in pixels from outside, which are known in advance.
Span readSpan(int64_t d, int64_t R, int64_t padded)
{
    if (d > R) return Span(0, R + padded - d, padded);
    if (d < -R) return Span(-(R + d), padded, padded);
    return Span(0, padded, padded);
}

} // namespace

LmInnerShadow::LmInnerShadow() { style = LM_EFFECT_INNER_SHADOW; }

LmInnerShadow::~LmInnerShadow()
{
    delete property;
    property = nullptr;
}

void LmInnerShadow::setProperty(LmProperty* p)
{
    const LmShadowProperty* s = dynamic_cast<const LmShadowProperty*>(p);
    if (!s) return;
    replaceRecord(property,
                  new (std::nothrow) LmInnerShadowProperty(s->angle, s->distance, s->size, s->colour, s->opacity));
}

LmProperty* LmInnerShadow::getProperty() { return property; }

void LmInnerShadow::computeGaussianWeights(int* weights, int* sum, int R)
{
    LmGaussianBlur::computeGaussianWeights(weights, sum, R);
}

int LmInnerShadow::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || !box.take(pp)) return 0;
    int sx = 0, sy = 0;
    LmOuterShadow::computeShift(property->angle, property->distance, &sx, &sy);
    const int64_t dx = sx, dy = sy;
    const int R = std::max(lmToInt((double)property->size + 0.5), 0);
    if (R > LmGaussianBlur::kMaxRadius) return 0;
    const int w = box.width(), h = box.height();
    if (w == 0 || h == 0) return 0;
    const int64_t Wp = w + 2 * (int64_t)R;
    const unsigned colour = property->colour;

    const bool inReach = box.right + R + dx >= box.left && box.left - R + dx < box.right &&
                         box.top + dy < box.bottom + R && box.bottom + dy >= box.top - R;
    if (!inReach) {
        // The shifted inverse covers the whole box: the glyphs in the shadow colour.
        LmMaskBox::Block<unsigned char> copy = LmMaskBox::allocate<unsigned char>((int64_t)w * h, false);
        if (!copy) return 0;
        box.copyTo(copy.get(), w, 0, 0);
        LmBlender::drawBitmapBlend8(box.left, box.top, box.target, copy.get(), w, h, w, colour, LME_BLEND_DST_OVER);
        return 1;
    }

    LmMaskBox::Block<unsigned char> A = LmMaskBox::allocate<unsigned char>((int64_t)w * h, true);
    LmMaskBox::Block<unsigned char> B = LmMaskBox::allocate<unsigned char>(Wp * h, true);
    LmMaskBox::Block<int> weights = LmMaskBox::allocate<int>(R + 1, false);
    LmMaskBox::Block<unsigned char> C = LmMaskBox::allocate<unsigned char>(Wp * h, true);
    LmMaskBox::Block<unsigned char> D = LmMaskBox::allocate<unsigned char>(4 * (int64_t)R + h + 2, false);
    if (!A || !B || !weights || !C || !D) return 0;
    int sum = 0;
    computeGaussianWeights(weights.get(), &sum, R);
    // B: each text row with R empty pixels either side, no extra rows.
    box.copyTo(B.get(), Wp, R, 0);

    // Horizontal blur of the inverse into C, only where the shifted vertical pass will read;
    // taps beyond the row count as fully outside the glyph.
    const Span cRows = readSpan(dy, R, h);
    const Span cCols = readSpan(dx, R, Wp);
    for (int64_t y = cRows.begin; y < cRows.end; ++y) {
        const unsigned char* b = B.get() + y * Wp;
        unsigned char* c = C.get() + y * Wp;
        for (int64_t x = cCols.begin; x < cCols.end; ++x) {
            int acc = 255 * sum;
            const int64_t i0 = std::max<int64_t>(-R, -x), i1 = std::min<int64_t>(R, Wp - 1 - x);
            for (int64_t i = i0; i <= i1; ++i) acc -= weights[i < 0 ? -i : i] * b[x + i];
            c[x] = (unsigned char)(acc / sum);
        }
    }

    // Rows, then columns, whose shifted source lies wholly beyond the blur's reach are full
    // shadow, glyph or not.
    Span aRows(0, h, h), aCols(0, w, w);
    if (dy > R) aRows = Span(dy - R, h, h);
    if (dy < -R) aRows = Span(0, R + dy + h, h);
    if (dx > R) aCols = Span(dx - R, w, w);
    if (dx < -R) aCols = Span(0, R + dx + w, w);
    for (int64_t y = 0; y < h; ++y) {
        unsigned char* a = A.get() + y * w;
        if (y < aRows.begin || y >= aRows.end) {
            std::memset(a, 255, (size_t)w);
            continue;
        }
        if (aCols.begin > 0) std::memset(a, 255, (size_t)aCols.begin);
        if (aCols.end < w) std::memset(a + aCols.end, 255, (size_t)(w - aCols.end));
    }

    // Vertical blur with the shift, one column at a time: D is the column of C framed by 2R
    // bytes of full inverse, read around row y - dy.
    unsigned char* d = D.get();
    const int64_t R2 = 2 * (int64_t)R;
    for (int64_t x = aCols.begin; x < aCols.end; ++x) {
        std::memset(d, 255, (size_t)R2);
        std::memset(d + R2 + h, 255, (size_t)R2);
        const unsigned char* c = C.get() + (R + x - dx);
        for (int64_t y = 0; y < h; ++y) d[R2 + y] = c[y * Wp];
        for (int64_t y = aRows.begin; y < aRows.end; ++y) {
            unsigned char& a = A[y * w + x];
            // Only a zero test: partial coverage at the edge does not scale the shadow.
            if (B[y * Wp + R + x] == 0) {
                a = 0;
                continue;
            }
            const unsigned char* t = d + R2 + y - dy;
            int acc = t[0] * weights[0];
            for (int i = 1; i <= R; ++i) acc += (t[i] + t[-i]) * weights[i];
            a = (unsigned char)(acc / sum);
        }
    }

    LmBlender::drawBitmapBlend8(box.left, box.top, box.target, A.get(), w, h, w, colour, LME_BLEND_DST_OVER);
    return 1;
}

} // namespace LmFontEffect
