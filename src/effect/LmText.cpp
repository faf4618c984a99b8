#include "effect/LmText.h"

#include "effect/LmTextProperty.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <new>

namespace LmFontEffect {

LmText::LmText() { style = LM_EFFECT_TEXT; }

LmText::~LmText() { delete property; }

void LmText::setProperty(LmProperty* p)
{
    if (!p) return;
    replaceRecord(property, new (std::nothrow) LmTextProperty(p->colour, p->opacity));
}

LmProperty* LmText::getProperty() { return property; }

int LmText::doPostProcessing(ParamPostProcessing* p)
{
    if (!p || !property || !p->target || !p->mask) return 0;
    const int mode = p->compositeMode == 1 ? LME_BLEND_DST_OVER_NSA : LME_BLEND_OTHER;
    LmBlender::drawBitmapBlend8(0, 0, p->target, p->mask->pixels, (int)p->mask->width, (int)p->mask->height,
                                (int)p->mask->width, property->colour, mode);
    return 1;
}

} // namespace LmFontEffect
