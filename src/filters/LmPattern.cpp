#include "filters/LmPattern.h"

#include "effect/LmPatternProperty.h"
#include "filters/LmMaskBox.h"
#include "foundation/LmConvert.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace LmFontEffect {

LmPattern::LmPattern() { style = LM_EFFECT_PATTERN; }

LmPattern::~LmPattern()
{
    if (property) delete property->pattern;
    delete property;
    property = nullptr;
}

void LmPattern::setProperty(LmProperty* p)
{
    const LmPatternProperty* src = dynamic_cast<const LmPatternProperty*>(p);
    if (!src) return;
    // Built before the old record goes, so that a layer can be given its own record.
    LmPatternProperty* copy = new (std::nothrow) LmPatternProperty(src->pattern, src->scale, src->opacity);
    if (copy && src->pattern) copy->pattern = new (std::nothrow) LmBitmap(*src->pattern);
    if (property) delete property->pattern;
    delete property;
    property = copy;
}

LmProperty* LmPattern::getProperty() { return property; }

LmPattern::Tap LmPattern::tap(int v, int scaledSize, float scale, int size)
{
    const int r = scaledSize > 0 ? v % scaledSize : v;
    const float f = (float)r / scale;
    Tap t;
    t.i0 = lmToInt(std::floor(f));
    // Already 0..254 unless the coordinate passes the int range.
    t.weight = std::min(std::max(lmToInt((f - (float)t.i0) * 255.0), 0), 254);
    // Only a tile scaled to nothing (or float rounding at a huge tile's end) lands outside it.
    if (t.i0 >= size) t.i0 %= size;
    t.i1 = t.i0 + 1 < size ? t.i0 + 1 : 0;
    return t;
}

void LmPattern::sample(const unsigned char* p00, const unsigned char* p10, const unsigned char* p01,
                       const unsigned char* p11, int wx, int wy, int* out)
{
    for (int k = 0; k < 4; ++k) {
        const int top = wx * p10[k] + (255 - wx) * p00[k];
        const int bottom = wx * p11[k] + (255 - wx) * p01[k];
        out[k] = ((bottom * wy + top * (255 - wy)) >> 16) & 255;
    }
}

unsigned LmPattern::shade(const int* argb, float opacity)
{
    const unsigned A = lmToUnsigned(opacity * (float)argb[0]);
    unsigned channel[3];
    for (int k = 0; k < 3; ++k) {
        const uint64_t v = (uint64_t)A * (uint64_t)(1 + argb[k + 1]);
        channel[k] = v > 65535 ? 255u : (unsigned)(v >> 8);
    }
    return A << 24 | channel[0] << 16 | channel[1] << 8 | channel[2];
}

int LmPattern::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || property->scale < 0.1 || !box.take(pp)) return 0;
    const LmBitmap* tile = property->pattern;
    if (!tile || !tile->pixels || tile->bytesPerPixel != 4 || tile->width == 0 || tile->height == 0) return 0;
    if (tile->width > 0x7FFFFFFF || tile->height > 0x7FFFFFFF) return 0;
    const int pw = (int)tile->width, ph = (int)tile->height;
    const int w = box.width(), h = box.height();
    if (w == 0 || h == 0) return 0;
    const float scale = property->scale;
    const int th = lmToInt(scale * (float)ph), tw = lmToInt(scale * (float)pw);

    LmMaskBox::Block<unsigned> out = LmMaskBox::allocate<unsigned>((int64_t)w * h, true);
    LmMaskBox::Block<Tap> columns = LmMaskBox::allocate<Tap>(w, false);
    if (!out || !columns) return 0;
    for (int x = 0; x < w; ++x) columns[x] = tap(x, tw, scale, pw);

    for (int y = 0; y < h; ++y) {
        const Tap row = tap(y, th, scale, ph);
        const unsigned char* r0 = tile->pixels + (int64_t)row.i0 * pw * 4;
        const unsigned char* r1 = tile->pixels + (int64_t)row.i1 * pw * 4;
        const unsigned char* m = box.row(y);
        unsigned* o = out.get() + (int64_t)y * w;
        for (int x = 0; x < w; ++x) {
            if (!m[x]) continue;
            const Tap& col = columns[x];
            const int64_t x0 = (int64_t)col.i0 * 4, x1 = (int64_t)col.i1 * 4;
            int argb[4];
            sample(r0 + x0, r0 + x1, r1 + x0, r1 + x1, col.weight, row.weight, argb);
            o[x] = shade(argb, property->opacity);
        }
    }
    LmBlender::drawBitmapBlend32(box.left, box.top, box.target, out.get(), w, h, w, LME_BLEND_DST_OVER);
    return 1;
}

} // namespace LmFontEffect
