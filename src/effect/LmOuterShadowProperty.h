#ifndef LMFONTEFFECT_EFFECT_LMOUTERSHADOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMOUTERSHADOWPROPERTY_H

#include "effect/LmShadowProperty.h"

namespace LmFontEffect {

// Kind 1, tag "S"; stored without clamping.
class LmOuterShadowProperty : public LmShadowProperty {
public:
    LmOuterShadowProperty(float angle, float distance, float size, unsigned colour, float opacity)
        : LmShadowProperty(angle, distance, size, colour, opacity) {}

protected:
    char tag() const override { return 'S'; }
};

} // namespace LmFontEffect

#endif
