#include "effect/LmEffect.h"

#include "effect/LmText.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"
#include "filters/LmInnerGlow.h"
#include "filters/LmInnerShadow.h"
#include "filters/LmLinearGradient.h"
#include "filters/LmOuterGlow.h"
#include "filters/LmOuterShadow.h"
#include "filters/LmPattern.h"
#include "filters/LmRadialGradient.h"
#include "filters/LmStroke.h"

// The effect stack's factory lives with the filters so that the stack never includes them: one
// layer class per kind. Kinds without a class (9, 13 and anything unknown) give null.
namespace LmFontEffect {

LmECore* LmEffect::createEffect(int id, int kind)
{
    LmECore* layer = nullptr;
    switch (kind) {
    case LM_EFFECT_OUTER_SHADOW: layer = new LmOuterShadow(); break;
    case LM_EFFECT_INNER_SHADOW: layer = new LmInnerShadow(); break;
    case LM_EFFECT_OUTER_GLOW: layer = new LmOuterGlow(); break;
    case LM_EFFECT_INNER_GLOW: layer = new LmInnerGlow(); break;
    case LM_EFFECT_BEVEL: layer = new LmBevel(); break;
    case LM_EFFECT_EMBOSS: layer = new LmEmboss(); break;
    case LM_EFFECT_LINEAR_GRADIENT: layer = new LmLinearGradient(); break;
    case LM_EFFECT_RADIAL_GRADIENT: layer = new LmRadialGradient(); break;
    case LM_EFFECT_STROKE: layer = new LmStroke(); break;
    case LM_EFFECT_PATTERN: layer = new LmPattern(); break;
    case LM_EFFECT_TEXT: layer = new LmText(); break;
    default: return nullptr;
    }
    if (id < 0) id = getNewEffectId();
    layer->setId(id);
    return layer;
}

} // namespace LmFontEffect
