#ifndef LMFONTEFFECT_EFFECT_LMGLOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMGLOWPROPERTY_H

#include "effect/LmStopsProperty.h"

namespace LmFontEffect {

// Shared shape of the two glow records: tag, small(size), word(colour), then the stops;
// 10 + 10 x stop count bytes.
class LmGlowProperty : public LmStopsProperty {
public:
    LmGlowProperty(float size, unsigned colour, float opacity, int stopCount, LmGradient* stops)
        : LmStopsProperty(colour, opacity, stopCount, stops), size(size) {}
    int getSequentialCharLength() const override;
    int toSequentialChar(char** cursor) const override;

    float size;

protected:
    virtual char tag() const = 0;
};

} // namespace LmFontEffect

#endif
