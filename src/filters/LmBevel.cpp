#include "filters/LmBevel.h"

#include "effect/LmBevelProperty.h"
#include "filters/LmMaskBox.h"
#include "filters/LmRelief.h"
#include "foundation/LmConvert.h"
#include "raster/LmBlender.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace LmFontEffect {

LmBevel::LmBevel() { style = LM_EFFECT_BEVEL; }

LmBevel::~LmBevel()
{
    delete property;
    property = nullptr;
}

void LmBevel::setProperty(LmProperty* p)
{
    const LmLightingProperty* s = dynamic_cast<const LmLightingProperty*>(p);
    if (!s) return;
    replaceRecord(property, LmLightingProperty::copyAs<LmBevelProperty>(*s));
}

LmProperty* LmBevel::getProperty() { return property; }

int LmBevel::getOffset()
{
    if (!property) return 0;
    const int64_t offset = (int64_t)lmToInt(property->size + 0.5f) + property->soften;
    return (int)std::min<int64_t>(offset, INT_MAX);
}

void LmBevel::blur(unsigned char* src, unsigned char* dst, int r, int height, int width)
{
    LmRelief::BlurArgs args{src, dst, width, r, r, width - r, r, height - r};
    partialBlur(&args);
}

void LmBevel::dt1D(float* out, float* in, int n) { LmRelief::dt1D(out, in, n); }

int LmBevel::partialBlur(void* args) { return LmRelief::partialBlur(args); }

int LmBevel::partialDT(void* args) { return LmRelief::partialDT(args); }

int LmBevel::partialLightProcess(void* args) { return LmRelief::partialLight(args, LmRelief::BEVEL_LIGHT); }

int LmBevel::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || !box.take(pp) || box.width() == 0 || box.height() == 0) return 0;
    const LmBevelProperty& p = *property;
    const bool inside = p.style == 1;
    const bool smooth = p.technique == 0;
    const int64_t s = lmToInt(p.size);
    // Smooth: rounded width, blurred once more; chiselled: sharp, unblurred.
    const int64_t R = smooth ? lmToInt(ceilf((float)(2 * s) / 3.0f + 1.0f)) : s + 2;
    const int64_t b = smooth ? R : 0;
    const float gain = smooth ? 1.83f : 1.0f;
    if (R <= 0) return 0;

    LmRelief::Pass pass;
    const bool exact = smooth && R >= 11;
    if (!LmRelief::canvasFor(box, std::max(2 * (int64_t)p.soften, 2 * b) + R, &pass.canvas)) return 0;
    if (!exact && !LmRelief::searchAffordable(pass.canvas, R)) return 0;
    if (!pass.allocate(1)) return 0;
    const LmRelief::Canvas& c = pass.canvas;
    const int reach = (int)R;

    // The height is the distance to the nearest glyph pixel (to the nearest uncovered one for
    // the inside bevel), capped at the bevel width.
    if (exact) {
        LmRelief::exactFill(pass.map.get(), c, box, inside ? 1e20f : 0.0f, inside ? 0.0f : 1e20f);
        if (!LmRelief::dt2D(pass.map.get(), c.width, c.height, (float)(R * R))) return 0;
        LmRelief::capDistances(pass.map.get(), pass.size(), reach);
    } else {
        LmRelief::localFill(pass.map.get(), c, box, inside ? 0.0f : (float)R, reach, 254.99f, 0.0f, inside);
        LmRelief::SearchArgs search{pass.map.get(), c.height, c.width, reach, 0, 0, c.height};
        partialDT(&search);
    }

    LmRelief::LightArgs light = pass.lightArgs(0, LmRelief::light(p, 0.1f), reach, 0, p);
    light.keepShade = inside;
    partialLightProcess(&light);
    pass.map.reset();

    if (smooth && !pass.blur(reach)) return 0;
    if (!pass.blur(p.soften)) return 0;

    LmRelief::composeAll(pass.lit[0], pass.shadow[0], pass.out.get(), pass.size(), gain, p.shadowColour,
                         p.highlightColour);
    pass.drawInto(box.target, pp->compositeMode == 1 ? LME_BLEND_SRC_OVER : LME_BLEND_DST_OVER);
    return 1;
}

} // namespace LmFontEffect
