#ifndef LMFONTEFFECT_TESTS_FILTERS_GOLDENPASS_H
#define LMFONTEFFECT_TESTS_FILTERS_GOLDENPASS_H

// One effect pass as font drawing runs it, with a synthetic mask as the only glyph placed inside
// the stack's margins and white text, for comparing with a golden image.

#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "raster/LmBitmap.h"
#include "support/GoldenImage.h"

#include <gtest/gtest.h>

#include <string>

namespace LmTest {

struct GoldenCase {
    const char* name;
    Mask (*mask)();
    void (*addLayers)(LmFontEffect::LmEffect&);
};

// The masks every filter's golden images are drawn over.
namespace GoldenMasks {
inline Mask disc() { return LmTest::disc(64, 22.3); }
inline Mask ring() { return LmTest::ring(80, 34, 21.5); }
inline Mask diagonal() { return LmTest::diagonal(72); }
inline Mask glyph() { return LmTest::glyph(64, 72); }
} // namespace GoldenMasks

inline std::string goldenName(const ::testing::TestParamInfo<GoldenCase>& info) { return info.param.name; }

// Half text opacity forces two-pass compositing.
inline void twoPass(LmFontEffect::LmEffect& s) { s.setTextOpacity(0.5f); }

inline ::testing::AssertionResult matchesGolden(const GoldenCase& c)
{
    using namespace LmFontEffect;
    const Mask mask = c.mask();
    LmEffect stack;
    c.addLayers(stack);
    stack.addText(0xFFFFFFFF);

    const int left = stack.getLeftOffset(), top = stack.getTopOffset();
    const unsigned width = mask.width + left + stack.getRightOffset();
    const unsigned height = mask.height + top + stack.getBottomOffset();
    LmBitmap image(width, height, 4);
    stack.initEffect((int)width, (int)height);
    stack.setDstBitmap(&image);
    LmGlyph glyph;
    glyph.pixels = const_cast<unsigned char*>(mask.pixels.data());
    glyph.width = (uint16_t)mask.width;
    glyph.height = (uint16_t)mask.height;
    stack.renderEffectLayer(left, top, &glyph);
    stack.doEffectPostProcessing();
    stack.compositeLayers(&image);
    if (!image.pixels) return ::testing::AssertionFailure() << "no image";
    return GoldenImage::matches(c.name, image.width, image.height, image.pixels);
}

} // namespace LmTest

#endif
