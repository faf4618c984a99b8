#ifndef LMFONTEFFECT_EFFECT_LMSTROKEPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMSTROKEPROPERTY_H

#include "effect/LmProperty.h"

namespace LmFontEffect {

// Kind 10, tag "K": small(size), word(colour), small(extra), small(position), 12 bytes.
// position: 0 centre, 1 outside, anything else inside. extra is carried but read by no layer.
class LmStrokeProperty : public LmProperty {
public:
    LmStrokeProperty(float size, unsigned colour, float opacity, int extra, int position)
        : LmProperty(colour, opacity), size(size), extra(extra), position(position) {}
    int getSequentialCharLength() const override { return 12; }
    int toSequentialChar(char** cursor) const override;

    float size;
    int extra;
    int position;
};

} // namespace LmFontEffect

#endif
