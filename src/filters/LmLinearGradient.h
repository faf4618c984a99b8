#ifndef LMFONTEFFECT_FILTERS_LMLINEARGRADIENT_H
#define LMFONTEFFECT_FILTERS_LMLINEARGRADIENT_H

#include "filters/LmGradientFill.h"

namespace LmFontEffect {

// Kind 7: fills the glyphs with a colour ramp running across the text box at an angle (0 left
// to right, 90 bottom to top), stretched by the scale. Holds an LmLinearGradientProperty.
class LmLinearGradient : public LmGradientFill {
public:
    LmLinearGradient();

protected:
    LmGradientProperty* makeRecord(const LmGradientProperty& from) const override;
    int paintRamp(const LmMaskBox& box, const unsigned* table) override;
};

} // namespace LmFontEffect

#endif
