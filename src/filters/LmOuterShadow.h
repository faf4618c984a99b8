#ifndef LMFONTEFFECT_FILTERS_LMOUTERSHADOW_H
#define LMFONTEFFECT_FILTERS_LMOUTERSHADOW_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmOuterShadowProperty;

// Kind 1: the glyph mask blurred once and offset away from the light, drawn in one colour
// behind what the target already holds. The light angle runs so that 0 puts the shadow to the
// left and 90 below; the offset makes its margins differ per side.
class LmOuterShadow : public LmECoreBase {
public:
    LmOuterShadow();
    ~LmOuterShadow() override;

    // Copies the record (any shadow record) and recomputes the shift.
    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    int getLeftOffset() override;
    int getRightOffset() override;
    int getTopOffset() override;
    int getBottomOffset() override;
    // Returns 1 when something was drawn (possibly fully clipped), 0 when it gave up.
    int doPostProcessing(ParamPostProcessing* pp) override;

    static void computeGaussianWeights(int* weights, int* sum, int R);

    int getShiftX() const { return shiftX; }
    int getShiftY() const { return shiftY; }

    // The light offset for an angle in degrees and a distance: (-cos, sin) * distance, each
    // rounded half away from zero, saturated.
    static void computeShift(float angle, float distance, int* x, int* y);

private:
    // Margin toward the side the shadow moves away from, and toward the side it moves to.
    int trailingOffset(int shift) const;
    int leadingOffset(int shift) const;
    int blurReach() const;

    LmOuterShadowProperty* property = nullptr;
    int shiftX = 0;
    int shiftY = 0;
};

} // namespace LmFontEffect

#endif
