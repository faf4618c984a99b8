#ifndef LMFONTEFFECT_EFFECT_LMGLOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMGLOWPROPERTY_H

#include "effect/LmGradient.h"
#include "effect/LmProperty.h"

namespace LmFontEffect {

// Shared shape of the two glow records: tag, small(size), word(colour), then per stop
// word(stop colour) and small(stop position x 100); 10 + 10 x stop count bytes. The record
// never owns its stops.
class LmGlowProperty : public LmProperty {
public:
    LmGlowProperty(float size, unsigned colour, float opacity, int stopCount, LmGradient* stops)
        : LmProperty(colour, opacity), size(size), stopCount(stopCount), stops(stops) {}
    int getSequentialCharLength() const override;
    int toSequentialChar(char** cursor) const override;

    float size;
    int stopCount;
    LmGradient* stops;

protected:
    virtual char tag() const = 0;
};

} // namespace LmFontEffect

#endif
