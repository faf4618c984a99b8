#ifndef LMFONTEFFECT_FILTERS_LMGRADIENTTABLE_H
#define LMFONTEFFECT_FILTERS_LMGRADIENTTABLE_H

#include "filters/LmMaskBox.h"
#include "raster/LmBlender.h"

#include <memory>

namespace LmFontEffect {

class LmGradient;
class LmStopsProperty;

// The ramp of the two gradient fills reduced to a 257-entry ARGB table, and the painting of the
// covered pixels of the text box with table entries, premultiplied, behind what the target holds.
class LmGradientTable {
public:
    static const int kEntries = 257;

    // A layer's own copy of a record's stops: null with *count 0 when it has none, null with
    // *count -1 when the copy is refused (too large or out of memory).
    static std::unique_ptr<LmGradient[]> copyStops(const LmStopsProperty& record, int* count);

    // Fills table[0..256]. The stop walk passes at most one stop per entry, so stops closer than
    // 1/256 are stepped over one at a time, and it never goes past the last stop. False, with an
    // all-zero table, when there are no stops.
    static bool build(unsigned* table, const LmGradient* stops, int count);
    // w of c1 and 256 - w of c0, two channels at a time.
    static unsigned blend(unsigned c0, unsigned c1, int w);
    // ARGB premultiplied by its own alpha: each channel v becomes ((v + 1) * A) >> 8.
    static unsigned premultiply(unsigned colour);

    // Paints box.width() x box.height() pixels: 0 where the mask is 0, else the premultiplied
    // table[index(x, y)] (index in 0..255; partial coverage does not scale the colour), then
    // composites them at the box's corner. False when the buffer is refused.
    template <class Index> static bool paint(const LmMaskBox& box, const unsigned* table, Index index)
    {
        const int w = box.width(), h = box.height();
        LmMaskBox::Block<unsigned> out = LmMaskBox::allocate<unsigned>((int64_t)w * h, false);
        if (!out) return false;
        for (int y = 0; y < h; ++y) {
            const unsigned char* m = box.row(y);
            unsigned* o = out.get() + (int64_t)y * w;
            for (int x = 0; x < w; ++x) o[x] = m[x] ? premultiply(table[index(x, y)]) : 0u;
        }
        LmBlender::drawBitmapBlend32(box.left, box.top, box.target, out.get(), w, h, w, LME_BLEND_DST_OVER);
        return true;
    }
};

} // namespace LmFontEffect

#endif
