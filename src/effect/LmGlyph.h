#ifndef LMFONTEFFECT_EFFECT_LMGLYPH_H
#define LMFONTEFFECT_EFFECT_LMGLYPH_H

#include <cstdint>

namespace LmFontEffect {

// One line's (or glyph's) 8-bit coverage rows, stride = width. topOffset and leftBearing place
// it for font drawing; the effect engine does not read them.
class LmGlyph {
public:
    unsigned char* pixels = nullptr;
    uint32_t width = 0;   // a line may be wider than 16 bits; the bitmap cap bounds both
    uint32_t height = 0;
    int32_t topOffset = 0;
    int32_t leftBearing = 0;
};

} // namespace LmFontEffect

#endif
