#ifndef LMFONTEFFECT_EFFECT_LMRADIALGRADIENTPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMRADIALGRADIENTPROPERTY_H

#include "effect/LmGradientProperty.h"

namespace LmFontEffect {

// Kind 8, tag "D".
class LmRadialGradientProperty : public LmGradientProperty {
public:
    using LmGradientProperty::LmGradientProperty;

protected:
    char tag() const override { return 'D'; }
};

} // namespace LmFontEffect

#endif
