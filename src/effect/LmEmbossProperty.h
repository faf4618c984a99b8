#ifndef LMFONTEFFECT_EFFECT_LMEMBOSSPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMEMBOSSPROPERTY_H

#include "effect/LmLightingProperty.h"

namespace LmFontEffect {

// Kind 6, tag "E".
class LmEmbossProperty : public LmLightingProperty {
public:
    using LmLightingProperty::LmLightingProperty;

protected:
    char tag() const override { return 'E'; }
};

} // namespace LmFontEffect

#endif
