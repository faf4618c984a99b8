#ifndef LMFONTEFFECT_EFFECT_LMPATTERNPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMPATTERNPROPERTY_H

#include "effect/LmProperty.h"

namespace LmFontEffect {

class LmBitmap;

// Kind 11, tag "P": word(pattern identity), quad(scale x 100), quad(opacity x 100), 17 bytes.
// The pattern image is borrowed and identified by its address, not its pixels.
class LmPatternProperty : public LmProperty {
public:
    LmPatternProperty(LmBitmap* pattern, float scale, float opacity);
    int getSequentialCharLength() const override { return 17; }
    int toSequentialChar(char** cursor) const override;

    LmBitmap* pattern;
    float scale;
};

} // namespace LmFontEffect

#endif
