#include "filters/LmInnerShadow.h"

#include "effect/LmInnerShadowProperty.h"
#include "filters/LmGaussianBlur.h"
#include "filters/LmMaskBox.h"
#include "filters/LmOuterShadow.h"
#include "foundation/LmConvert.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"
#include "raster/LmRowOps.h"

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

// The light offset and the blur's reach.
struct Shift {
    int64_t dx, dy;
    int R;
};

struct Kernel {
    int* weights;
    int sum;
    int R;
};

// The shifted inverse covers the whole box: the glyphs in the shadow colour.
int drawGlyphsFlat(LmMaskBox& box, unsigned colour)
{
    const int w = box.width(), h = box.height();
    LmMaskBox::Block<unsigned char> copy = LmMaskBox::allocate<unsigned char>((int64_t)w * h, false);
    if (!copy) return 0;
    box.copyTo(copy.get(), w, 0, 0);
    LmBlender::drawBitmapBlend8(box.left, box.top, box.target, copy.get(), w, h, w, colour, LME_BLEND_DST_OVER);
    return 1;
}

// Horizontal blur of the inverse of B into C, only where the shifted vertical pass will read;
// taps beyond the row count as fully outside the glyph: c = (255 * sum - taps of b) / sum, the
// taps summed over a copy of the row framed by R empty bytes (pad, Wp + 2R bytes; acc, Wp ints).
void blurInverseRows(const unsigned char* B, unsigned char* C, int64_t Wp, int h, const Shift& s, const Kernel& k,
                     unsigned char* pad, int* acc)
{
    const Span rows = readSpan(s.dy, s.R, h);
    const Span cols = readSpan(s.dx, s.R, Wp);
    if (cols.end <= cols.begin) return;
    const int64_t R = k.R;
    std::memset(pad, 0, (size_t)(Wp + 2 * R));
    for (int64_t y = rows.begin; y < rows.end; ++y) {
        std::memcpy(pad + R, B + y * Wp, (size_t)Wp);
        LmRowOps::sumTaps(acc, pad + R + cols.begin, 1, (size_t)(cols.end - cols.begin), k.weights, k.R);
        unsigned char* c = C + y * Wp;
        for (int64_t x = cols.begin; x < cols.end; ++x) c[x] = (unsigned char)((255 * k.sum - acc[x - cols.begin]) / k.sum);
    }
}

// Rows, then columns, whose shifted source lies wholly beyond the blur's reach are full shadow,
// glyph or not. Leaves in *rows and *cols the part still to blur.
void fillBeyondReach(unsigned char* A, int w, int h, const Shift& s, Span* rows, Span* cols)
{
    const int64_t dx = s.dx, dy = s.dy, R = s.R;
    if (dy > R) *rows = Span(dy - R, h, h);
    if (dy < -R) *rows = Span(0, R + dy + h, h);
    if (dx > R) *cols = Span(dx - R, w, w);
    if (dx < -R) *cols = Span(0, R + dx + w, w);
    for (int64_t y = 0; y < h; ++y) {
        unsigned char* a = A + y * w;
        if (y < rows->begin || y >= rows->end) {
            std::memset(a, 255, (size_t)w);
            continue;
        }
        if (cols->begin > 0) std::memset(a, 255, (size_t)cols->begin);
        if (cols->end < w) std::memset(a + cols->end, 255, (size_t)(w - cols->end));
    }
}

// Vertical blur of C with the shift into A, kept where B has coverage. F is C framed by 2R rows
// of full inverse above and below ((h + 4R) x Wp); output row y taps around row y - dy of C.
void blurColumnsShifted(const unsigned char* B, const unsigned char* C, unsigned char* F, int* acc, unsigned char* A,
                        int w, int h, const Shift& s, const Kernel& k, const Span& rows, const Span& cols)
{
    const int R = k.R;
    const int64_t Wp = w + 2 * (int64_t)R, R2 = 2 * (int64_t)R;
    std::memset(F, 255, (size_t)(R2 * Wp));
    std::memcpy(F + R2 * Wp, C, (size_t)(h * Wp));
    std::memset(F + (R2 + h) * Wp, 255, (size_t)(R2 * Wp));
    if (cols.end <= cols.begin) return;
    const size_t n = (size_t)(cols.end - cols.begin);
    for (int64_t y = rows.begin; y < rows.end; ++y) {
        const unsigned char* centre = F + (R2 + y - s.dy) * Wp + (R - s.dx) + cols.begin;
        LmRowOps::sumTaps(acc, centre, (ptrdiff_t)Wp, n, k.weights, R);
        const unsigned char* b = B + y * Wp + R;
        unsigned char* a = A + y * w;
        for (int64_t x = cols.begin; x < cols.end; ++x)
            // Only a zero test: partial coverage at the edge does not scale the shadow.
            a[x] = b[x] == 0 ? 0 : (unsigned char)(acc[x - cols.begin] / k.sum);
    }
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
    const int R = std::max(lmToInt((double)property->size + 0.5), 0);
    if (R > LmGaussianBlur::kMaxRadius) return 0;
    const int w = box.width(), h = box.height();
    if (w == 0 || h == 0) return 0;
    const Shift shift{sx, sy, R};

    const bool inReach = box.right + R + shift.dx >= box.left && box.left - R + shift.dx < box.right &&
                         box.top + shift.dy < box.bottom + R && box.bottom + shift.dy >= box.top - R;
    if (!inReach) return drawGlyphsFlat(box, property->colour);

    const int64_t Wp = w + 2 * (int64_t)R;
    LmMaskBox::Block<unsigned char> A = LmMaskBox::allocate<unsigned char>((int64_t)w * h, true);
    LmMaskBox::Block<unsigned char> B = LmMaskBox::allocate<unsigned char>(Wp * h, true);
    LmMaskBox::Block<int> weights = LmMaskBox::allocate<int>(R + 1, false);
    LmMaskBox::Block<unsigned char> C = LmMaskBox::allocate<unsigned char>(Wp * h, true);
    LmMaskBox::Block<unsigned char> F = LmMaskBox::allocate<unsigned char>(Wp * (h + 4 * (int64_t)R), false);
    LmMaskBox::Block<unsigned char> pad = LmMaskBox::allocate<unsigned char>(Wp + 2 * (int64_t)R, false);
    LmMaskBox::Block<int> acc = LmMaskBox::allocate<int>(Wp, false);
    if (!A || !B || !weights || !C || !F || !pad || !acc) return 0;
    Kernel kernel{weights.get(), 0, R};
    computeGaussianWeights(kernel.weights, &kernel.sum, R);
    // B: each text row with R empty pixels either side, no extra rows.
    box.copyTo(B.get(), Wp, R, 0);

    blurInverseRows(B.get(), C.get(), Wp, h, shift, kernel, pad.get(), acc.get());
    Span rows(0, h, h), cols(0, w, w);
    fillBeyondReach(A.get(), w, h, shift, &rows, &cols);
    blurColumnsShifted(B.get(), C.get(), F.get(), acc.get(), A.get(), w, h, shift, kernel, rows, cols);

    LmBlender::drawBitmapBlend8(box.left, box.top, box.target, A.get(), w, h, w, property->colour, LME_BLEND_DST_OVER);
    return 1;
}

} // namespace LmFontEffect
