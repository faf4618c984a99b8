#ifndef LMFONTEFFECT_FILTERS_LMRADIALGRADIENT_H
#define LMFONTEFFECT_FILTERS_LMRADIALGRADIENT_H

#include "filters/LmGradientFill.h"

namespace LmFontEffect {

// Kind 8: fills the glyphs with rings of colour around the text box's centre. The radius is
// measured against the box width on both axes, so the rings stay circles on any box; at scale 1
// the ramp ends half a box width out. Holds an LmRadialGradientProperty (its angle is unused).
class LmRadialGradient : public LmGradientFill {
public:
    LmRadialGradient();

protected:
    LmGradientProperty* makeRecord(const LmGradientProperty& from) const override;
    int paintRamp(const LmMaskBox& box, const unsigned* table) override;
};

} // namespace LmFontEffect

#endif
