#ifndef LMFONTEFFECT_EFFECT_LMGRADIENTPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMGRADIENTPROPERTY_H

#include "effect/LmStopsProperty.h"

namespace LmFontEffect {

// Shared shape of the two gradient fills: colour 0, angle reduced to the remainder of its
// integer part by 360, scale in [0, 2]. Serial form: tag, angle(angle), pair(scale x 100), then
// the stops; 5 + 10 x stop count bytes.
class LmGradientProperty : public LmStopsProperty {
public:
    LmGradientProperty(float angle, float scale, float opacity, int stopCount, LmGradient* stops);
    int getSequentialCharLength() const override;
    int toSequentialChar(char** cursor) const override;

    float angle;
    float scale;

protected:
    virtual char tag() const = 0;
};

} // namespace LmFontEffect

#endif
