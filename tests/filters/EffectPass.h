#ifndef LMFONTEFFECT_TESTS_FILTERS_EFFECTPASS_H
#define LMFONTEFFECT_TESTS_FILTERS_EFFECTPASS_H

#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"

#include <memory>

namespace LmTest {

// One pass as font drawing runs it: white text added, the mask as the only glyph, placed inside
// an image grown by the stack's margins, composited.
inline std::unique_ptr<LmBitmap> renderPass(LmEffect& stack, const Mask& mask)
{
    stack.addText(0xFFFFFFFF);
    const int left = stack.getLeftOffset(), top = stack.getTopOffset();
    const unsigned width = mask.width + left + stack.getRightOffset();
    const unsigned height = mask.height + top + stack.getBottomOffset();
    auto image = std::make_unique<LmBitmap>(width, height, 4u);
    stack.initEffect((int)width, (int)height);
    stack.setDstBitmap(image.get());
    LmGlyph glyph;
    glyph.pixels = const_cast<unsigned char*>(mask.pixels.data());
    glyph.width = (uint16_t)mask.width;
    glyph.height = (uint16_t)mask.height;
    stack.renderEffectLayer(left, top, &glyph);
    stack.doEffectPostProcessing();
    stack.compositeLayers(image.get());
    return image;
}

} // namespace LmTest

#endif
