#ifndef LMFONTEFFECT_EFFECT_LMINNERSHADOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMINNERSHADOWPROPERTY_H

#include "effect/LmShadowProperty.h"

namespace LmFontEffect {

// Kind 2, tag "I"; the angle is stored as the remainder of its integer part by 360 (may be
// negative).
class LmInnerShadowProperty : public LmShadowProperty {
public:
    LmInnerShadowProperty(float angle, float distance, float size, unsigned colour, float opacity);

protected:
    char tag() const override { return 'I'; }
};

} // namespace LmFontEffect

#endif
