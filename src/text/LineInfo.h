#ifndef LMFONTEFFECT_TEXT_LINEINFO_H
#define LMFONTEFFECT_TEXT_LINEINFO_H

#include "raster/LmRect.h"

#include <cstdint>

namespace LmFontEffect {

// Placement of one drawn line in view pixels. `bounds` stays as the caller gave it; each render
// derives `renderBounds` from it (moved by the effect offsets), so renders never accumulate.
class LineInfo {
public:
    int32_t x = 0;          // pen x of the line start: (int)(line left) + paddingLeft
    int32_t baseline = 0;
    int32_t start = 0;      // first UTF-16 index of the line
    int32_t end = 0;        // exclusive visible end
    int32_t direction = 1;  // negative: right to left
    LmRect bounds;          // x .. x + width, baseline + ascent .. baseline + descent
    LmRect renderBounds;    // the box the last render painted the line's background in
};

} // namespace LmFontEffect

#endif
