#include "filters/LmEmboss.h"

#include "effect/LmEmbossProperty.h"
#include "filters/LmMaskBox.h"
#include "filters/LmRelief.h"
#include "foundation/LmConvert.h"
#include "raster/LmBlender.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace LmFontEffect {

namespace {

const int kPillow = 3;

// The exact path's two distance maps folded into one signed height: the distance to the glyphs
// off them, 1 - the distance to their outside on them.
bool foldSigned(LmRelief::Pass& pass, const LmMaskBox& box, int reach, int innerReach)
{
    const LmRelief::Canvas& c = pass.canvas;
    float* outer = pass.map.get();
    LmMaskBox::Block<float> inner = LmMaskBox::allocate<float>(pass.size(), false);
    if (!inner) return false;
    LmRelief::exactFill(outer, c, box, 0.0f, 1e20f);
    LmRelief::exactFill(inner.get(), c, box, 1e20f, 0.0f);
    const float outerCap = (float)((int64_t)reach * reach), innerCap = (float)((int64_t)innerReach * innerReach);
    if (!LmRelief::dt2D(outer, c.width, c.height, outerCap) || !LmRelief::dt2D(inner.get(), c.width, c.height, innerCap))
        return false;
    LmRelief::capDistances(outer, pass.size(), reach);
    LmRelief::capDistances(inner.get(), pass.size(), innerReach);
    // Off the glyphs the outer distance is at least about 1; on them it is exactly 0.
    for (int64_t i = 0; i < pass.size(); ++i)
        if (outer[i] == 0.0f) outer[i] = 1.0f - inner[i];
    return true;
}

} // namespace

LmEmboss::LmEmboss() { style = LM_EFFECT_EMBOSS; }

LmEmboss::~LmEmboss()
{
    delete property;
    property = nullptr;
}

void LmEmboss::setProperty(LmProperty* p)
{
    const LmLightingProperty* s = dynamic_cast<const LmLightingProperty*>(p);
    if (!s) return;
    replaceRecord(property, LmLightingProperty::copyAs<LmEmbossProperty>(*s));
}

LmProperty* LmEmboss::getProperty() { return property; }

int LmEmboss::getOffset()
{
    if (!property) return 0;
    const int64_t offset = (int64_t)lmToInt(ceilf(1.0f + property->size * 0.5f)) + property->soften;
    return (int)std::min<int64_t>(offset, INT_MAX);
}

void LmEmboss::dt1D(float* out, float* in, int n) { LmRelief::dt1D(out, in, n); }

int LmEmboss::partialBlur(void* args) { return LmRelief::partialBlur(args); }

int LmEmboss::partialOutDT(void* args) { return LmRelief::partialOutDT(args); }

int LmEmboss::partialInDT(void* args) { return LmRelief::partialInDT(args); }

int LmEmboss::partialLightHardProcess(void* args)
{
    return LmRelief::partialLight(args, LmRelief::EMBOSS_HARD_LIGHT);
}

int LmEmboss::partialLightSoftProcess(void* args)
{
    return LmRelief::partialLight(args, LmRelief::EMBOSS_SOFT_LIGHT);
}

int LmEmboss::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || !box.take(pp) || box.width() == 0 || box.height() == 0) return 0;
    const LmEmbossProperty& p = *property;
    const bool smooth = p.technique == 0;
    const bool pillow = p.style == kPillow;
    const int64_t s = lmToInt(p.size);
    const float half = (float)s * 0.5f;
    // The outer reach is short for the smooth technique, whose blur rounds the slope instead.
    const int64_t R = smooth ? lmToInt(ceilf(1.0f + (float)s * 0.25f)) : lmToInt(ceilf(half + 3.0f));
    const int64_t inner = lmToInt(ceilf(half + 1.0f));
    const int64_t b = smooth ? inner : 0;
    const float gain = smooth ? 2.03f : 1.0f;
    if (R <= 0) return 0;

    LmRelief::Pass pass;
    const bool exact = smooth && s >= 26;
    if (!LmRelief::canvasFor(box, R + std::max(2 * b, 2 * (int64_t)p.soften), &pass.canvas)) return 0;
    if (!exact && !LmRelief::searchAffordable(pass.canvas, std::max(R, inner))) return 0;
    if (!pass.allocate(pillow ? 2 : 1)) return 0;
    const LmRelief::Canvas& c = pass.canvas;
    const int reach = (int)R, innerReach = (int)inner;

    if (exact) {
        if (!foldSigned(pass, box, reach, innerReach)) return 0;
    } else {
        // Outside pixels start at the reach, partly covered ones below 1, covered ones at
        // 1 - inner reach; the two searches grow the distances out of and into the glyphs.
        LmRelief::localFill(pass.map.get(), c, box, (float)R, reach, 254.999f, 1.0f - (float)innerReach, false);
        LmRelief::SearchArgs search{pass.map.get(), c.height, c.width, reach, innerReach, 0, c.height};
        partialOutDT(&search);
        partialInDT(&search);
    }
    const LmRelief::Light l = LmRelief::light(p, 0.2f);
    for (int pair = 0; pair < pass.pairs; ++pair) {
        LmRelief::LightArgs light = pass.lightArgs(pair, l, reach, innerReach, p);
        if (pair == 1) {
            // The pillow's second light comes from the mirrored side.
            light.lx = -light.lx;
            light.ly = -light.ly;
        }
        exact ? partialLightSoftProcess(&light) : partialLightHardProcess(&light);
    }
    pass.map.reset();

    if (!pass.blur((int)b) || !pass.blur(p.soften)) return 0;

    if (!pillow)
        LmRelief::composeAll(pass.lit[0], pass.shadow[0], pass.out.get(), pass.size(), gain, p.shadowColour,
                             p.highlightColour);
    const int m = c.margin;
    for (int y = 0; pillow && y < c.height; ++y) {
        const bool rowInBox = y >= m && y < m + box.height();
        const unsigned char* coverage = rowInBox ? box.row(y - m) : nullptr;
        for (int x = 0; x < c.width; ++x) {
            const int64_t i = (int64_t)y * c.width + x;
            // The first light shows off the glyphs, the mirrored one on them.
            const int w = coverage && x >= m && x < m + box.width() ? 255 - coverage[x - m] : 255;
            const unsigned first = LmRelief::composeWeighted(pass.lit[0][i], pass.shadow[0][i], gain, w,
                                                             p.shadowColour, p.highlightColour);
            const unsigned second = LmRelief::composeWeighted(pass.lit[1][i], pass.shadow[1][i], gain, 255 - w,
                                                              p.shadowColour, p.highlightColour);
            pass.out[i] = LmRelief::addSaturated(first, second);
        }
    }
    // The emboss goes under in two-pass mode and over otherwise: the bevel's rule reversed.
    const int mode = pp->compositeMode == 1 ? LME_BLEND_DST_OVER : LME_BLEND_SRC_OVER;
    pass.drawInto(box.target, mode);
    if (pp->output) pass.drawInto(pp->output, mode);
    return 1;
}

} // namespace LmFontEffect
