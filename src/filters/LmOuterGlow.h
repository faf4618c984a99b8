#ifndef LMFONTEFFECT_FILTERS_LMOUTERGLOW_H
#define LMFONTEFFECT_FILTERS_LMOUTERGLOW_H

#include "filters/LmGlow.h"

namespace LmFontEffect {

// Kind 3: a soft halo around the glyphs, its colour running through the stops as it fades
// outward, drawn behind what the target already holds.
class LmOuterGlow : public LmGlow {
public:
    LmOuterGlow();

    // Copies any glow record and its stops.
    void setProperty(LmProperty* p) override;
    // Returns 1 when something was drawn (possibly fully clipped), 0 when it gave up.
    int doPostProcessing(ParamPostProcessing* pp) override;

    // The scale-128 blur weights: weights[0] = 128, R = 1 gives 128, 1 (sum 130).
    static void computeGaussianWeights(int* weights, int* sum, int R);
};

} // namespace LmFontEffect

#endif
