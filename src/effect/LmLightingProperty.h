#ifndef LMFONTEFFECT_EFFECT_LMLIGHTINGPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMLIGHTINGPROPERTY_H

#include "effect/LmProperty.h"

#include <new>

namespace LmFontEffect {

// Shared shape of bevel and emboss: colour 0; depth in [0, 10]; soften in 0..16; angle the
// remainder of its integer part by 360; altitude the remainder of its integer part by 90.
// Serial form, 30 bytes: tag, small(style), pair(size), quad(depth x 100), small(direction),
// small(technique), small(soften), angle(angle), small(altitude), word(shadow colour),
// word(highlight colour).
class LmLightingProperty : public LmProperty {
public:
    LmLightingProperty(int style, float size, float depth, int direction, int technique, int soften,
                       float opacity, float angle, float altitude, unsigned shadowColour, float shadowOpacity,
                       unsigned highlightColour, float highlightOpacity);
    int getSequentialCharLength() const override { return 30; }

    // A new record of another lighting kind from all thirteen values of `from`, clamped again by
    // that kind's constructor; null when out of memory.
    template <class Record> static Record* copyAs(const LmLightingProperty& from)
    {
        return new (std::nothrow) Record(from.style, from.size, from.depth, from.direction, from.technique,
                                         from.soften, from.opacity, from.angle, from.altitude, from.shadowColour,
                                         from.shadowOpacity, from.highlightColour, from.highlightOpacity);
    }
    int toSequentialChar(char** cursor) const override;

    int style;
    float size;
    float depth;
    int direction;
    int technique;
    int soften;
    float angle;
    float altitude;
    unsigned shadowColour;
    float shadowOpacity;
    unsigned highlightColour;
    float highlightOpacity;

protected:
    virtual char tag() const = 0;
};

} // namespace LmFontEffect

#endif
