#ifndef LMFONTEFFECT_EFFECT_LMBEVELPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMBEVELPROPERTY_H

#include "effect/LmLightingProperty.h"

namespace LmFontEffect {

// Kind 5, tag "B". style 1 is the inside bevel, drawn over the text.
class LmBevelProperty : public LmLightingProperty {
public:
    using LmLightingProperty::LmLightingProperty;

protected:
    char tag() const override { return 'B'; }
};

} // namespace LmFontEffect

#endif
