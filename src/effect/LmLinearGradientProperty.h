#ifndef LMFONTEFFECT_EFFECT_LMLINEARGRADIENTPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMLINEARGRADIENTPROPERTY_H

#include "effect/LmGradientProperty.h"

namespace LmFontEffect {

// Kind 7, tag "L".
class LmLinearGradientProperty : public LmGradientProperty {
public:
    using LmGradientProperty::LmGradientProperty;

protected:
    char tag() const override { return 'L'; }
};

} // namespace LmFontEffect

#endif
