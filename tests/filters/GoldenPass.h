#ifndef LMFONTEFFECT_TESTS_FILTERS_GOLDENPASS_H
#define LMFONTEFFECT_TESTS_FILTERS_GOLDENPASS_H

// Golden images of whole effect passes over the synthetic masks: a case adds filter layers to
// a stack with white text, renders the mask as the only glyph into an image grown by the
// stack's margins, and compares the composited RGBA bytes exactly with tests/golden/<case>.png.
//
// After an intended change to the output, regenerate the golden images with
//   LM_UPDATE_GOLDEN=1 ./build/dev/tests/test_filters --gtest_filter='*Golden*'
// (from the repository root, with build/dev being any build folder), look at the new PNGs, and
// commit them with the change.

#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "raster/LmBitmap.h"
#include "support/GoldenImage.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace LmTest {

inline Mask goldenDisc() { return disc(64, 22.3); }
inline Mask goldenRing() { return ring(80, 34, 21.5); }
inline Mask goldenDiagonal() { return diagonal(72); }
inline Mask goldenGlyph() { return glyph(64, 72); }

// Half text opacity forces two-pass compositing.
inline void twoPass(LmEffect& s) { s.setTextOpacity(0.5f); }

struct GoldenCase {
    const char* name;
    Mask (*mask)();
    void (*addLayers)(LmEffect&);
};

inline std::string goldenName(const ::testing::TestParamInfo<GoldenCase>& info) { return info.param.name; }

// One pass as font drawing runs it: white text added, the mask as the only glyph, placed inside
// an image grown by the stack's margins, composited; then compared with the golden image.
inline void expectGoldenPass(const GoldenCase& c)
{
    LmEffect stack;
    c.addLayers(stack);
    const Mask mask = c.mask();
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
    ASSERT_NE(image->pixels, nullptr);
    EXPECT_TRUE(GoldenImage::matches(c.name, image->width, image->height, image->pixels));
}

} // namespace LmTest

#endif
