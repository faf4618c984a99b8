#include "filters/LmOuterGlow.h"

#include "effect/LmOuterGlowProperty.h"
#include "filters/LmGaussianBlur.h"

namespace LmFontEffect {

LmOuterGlow::LmOuterGlow() { style = LM_EFFECT_OUTER_GLOW; }

void LmOuterGlow::setProperty(LmProperty* p) { adopt<LmOuterGlowProperty>(p); }

int LmOuterGlow::doPostProcessing(ParamPostProcessing* pp) { return drawGlow(pp, false); }

void LmOuterGlow::computeGaussianWeights(int* weights, int* sum, int R)
{
    LmGaussianBlur::computeGaussianWeights(weights, sum, R, kBlurScale);
}

} // namespace LmFontEffect
