#include "filters/LmInnerGlow.h"

#include "effect/LmInnerGlowProperty.h"

namespace LmFontEffect {

LmInnerGlow::LmInnerGlow() { style = LM_EFFECT_INNER_GLOW; }

void LmInnerGlow::setProperty(LmProperty* p) { adopt<LmInnerGlowProperty>(p); }

int LmInnerGlow::doPostProcessing(ParamPostProcessing* pp) { return drawGlow(pp, true); }

} // namespace LmFontEffect
