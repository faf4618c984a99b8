#ifndef LMFONTEFFECT_EFFECT_LMINNERGLOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMINNERGLOWPROPERTY_H

#include "effect/LmGlowProperty.h"

namespace LmFontEffect {

// Kind 4, tag "N".
class LmInnerGlowProperty : public LmGlowProperty {
public:
    using LmGlowProperty::LmGlowProperty;

protected:
    char tag() const override { return 'N'; }
};

} // namespace LmFontEffect

#endif
