#ifndef LMFONTEFFECT_EFFECT_LMSTOPSPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMSTOPSPROPERTY_H

#include "effect/LmGradient.h"
#include "effect/LmProperty.h"

namespace LmFontEffect {

// A record that carries a colour ramp: the glows and the gradient fills. The record never owns
// its stops. Serial form of the ramp: per stop word(colour), small(opacity x 100) and
// small(position x 100), 10 bytes a stop.
class LmStopsProperty : public LmProperty {
public:
    LmStopsProperty(unsigned colour, float opacity, int stopCount, LmGradient* stops)
        : LmProperty(colour, opacity), stopCount(stopCount), stops(stops) {}

    int stopCount;
    LmGradient* stops;

protected:
    // The stops the record writes: none for a negative count or a missing array.
    int usableStops() const { return (stopCount > 0 && stops) ? stopCount : 0; }
    void writeStops(char** cursor) const;
};

} // namespace LmFontEffect

#endif
