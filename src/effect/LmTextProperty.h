#ifndef LMFONTEFFECT_EFFECT_LMTEXTPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMTEXTPROPERTY_H

#include "effect/LmProperty.h"

namespace LmFontEffect {

// Kind 12: the plain text colour. Serial form "T" + word(colour).
class LmTextProperty : public LmProperty {
public:
    LmTextProperty(unsigned colour, float opacity) : LmProperty(colour, opacity) {}
    int getSequentialCharLength() const override { return 9; }
    int toSequentialChar(char** cursor) const override;
};

} // namespace LmFontEffect

#endif
