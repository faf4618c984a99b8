#ifndef LMFONTEFFECT_FILTERS_LMINNERSHADOW_H
#define LMFONTEFFECT_FILTERS_LMINNERSHADOW_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmInnerShadowProperty;

// Kind 2: darkens the inside of the glyphs along the edges that face away from the light, as if
// cut into the surface. The inverse of the mask is blurred, shifted by the light offset (the
// outer shadow's convention) and kept only where the glyphs have coverage; it never leaves the
// text box, so the layer needs no margin.
class LmInnerShadow : public LmECoreBase {
public:
    LmInnerShadow();
    ~LmInnerShadow() override;

    // Copies the record (any shadow record) as an inner-shadow record.
    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    int getOffset() override { return 0; }
    // Returns 1 when something was drawn, 0 when it gave up.
    int doPostProcessing(ParamPostProcessing* pp) override;

    static void computeGaussianWeights(int* weights, int* sum, int R);

private:
    LmInnerShadowProperty* property = nullptr;
};

} // namespace LmFontEffect

#endif
