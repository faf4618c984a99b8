#ifndef LMFONTEFFECT_FILTERS_LMINNERGLOW_H
#define LMFONTEFFECT_FILTERS_LMINNERGLOW_H

#include "filters/LmGlow.h"

namespace LmFontEffect {

// Kind 4: light from the glyph edges inward, the outer glow run on the inverse mask. Its
// output is not clipped to the glyphs and carries an opaque white frame; the stack's
// compositing is left to deal with both.
class LmInnerGlow : public LmGlow {
public:
    LmInnerGlow();

    // Copies any glow record and its stops.
    void setProperty(LmProperty* p) override;
    // Returns 1 when something was drawn (possibly fully clipped), 0 when it gave up.
    int doPostProcessing(ParamPostProcessing* pp) override;
};

} // namespace LmFontEffect

#endif
