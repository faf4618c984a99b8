#ifndef LMFONTEFFECT_EFFECT_LMOUTERGLOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMOUTERGLOWPROPERTY_H

#include "effect/LmGlowProperty.h"

namespace LmFontEffect {

// Kind 3, tag "G".
class LmOuterGlowProperty : public LmGlowProperty {
public:
    using LmGlowProperty::LmGlowProperty;

protected:
    char tag() const override { return 'G'; }
};

} // namespace LmFontEffect

#endif
