#ifndef LMFONTEFFECT_EFFECT_LMSHADOWPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMSHADOWPROPERTY_H

#include "effect/LmProperty.h"

namespace LmFontEffect {

// Shared shape of the two shadow records: tag, angle(angle), small(distance), small(size),
// word(colour), 13 bytes.
class LmShadowProperty : public LmProperty {
public:
    LmShadowProperty(float angle, float distance, float size, unsigned colour, float opacity)
        : LmProperty(colour, opacity), angle(angle), distance(distance), size(size) {}
    int getSequentialCharLength() const override { return 13; }
    int toSequentialChar(char** cursor) const override;

    float angle;
    float distance;
    float size;

protected:
    virtual char tag() const = 0;
};

} // namespace LmFontEffect

#endif
