// Golden images of whole effect passes over synthetic masks: each case adds one or more of the
// stroke, outer shadow and inner shadow to an effect stack with white text, renders the mask as
// the only glyph into an image grown by the stack's margins, and compares the composited RGBA
// bytes exactly with tests/golden/<case>.png.
//
// After an intended change to the output, regenerate every golden image of this file with
//   LM_UPDATE_GOLDEN=1 ./build/tests/test_filters --gtest_filter='*FilterGolden*'
// (from the repository root, with build/ being any build folder), look at the new PNGs, and
// commit them with the change.
#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "raster/LmBitmap.h"
#include "support/GoldenImage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace LmFontEffect;
using LmTest::Mask;

namespace {

enum MaskShape { DISC, RING, DIAGONAL, GLYPH };

Mask maskOf(MaskShape shape)
{
    switch (shape) {
    case DISC: return LmTest::disc(64, 22.3);
    case RING: return LmTest::ring(80, 34, 21.5);
    case DIAGONAL: return LmTest::diagonal(72);
    case GLYPH: break;
    }
    return LmTest::glyph(64, 72);
}

enum : unsigned {
    STROKE_RED = 0xFFD02020,
    SHADOW_BLUE = 0xFF1030A0,
    INNER_GREEN = 0xFF106010,
    TEXT_WHITE = 0xFFFFFFFF,
};

struct Shadow {
    bool on;
    float angle, distance, size, opacity;
};

// Added in the order stroke, outer shadow, inner shadow; twoPass forces two-pass compositing
// through the text opacity.
struct Effects {
    bool stroke;
    float strokeSize;
    int strokePosition;
    float strokeOpacity;
    Shadow outer, inner;
    bool twoPass;
};

struct GoldenCase {
    const char* name;
    MaskShape shape;
    Effects fx;
};

const Shadow kNone = {false, 0, 0, 0, 0};

Effects stroke(float size, int position, bool twoPass = false, float opacity = 1)
{
    return {true, size, position, opacity, kNone, kNone, twoPass};
}

Effects outer(float angle, float distance, float size, bool twoPass = false, float opacity = 1)
{
    return {false, 0, 0, 0, {true, angle, distance, size, opacity}, kNone, twoPass};
}

Effects inner(float angle, float distance, float size, bool twoPass = false, float opacity = 1)
{
    return {false, 0, 0, 0, kNone, {true, angle, distance, size, opacity}, twoPass};
}

Effects all(int strokePosition, bool twoPass = false)
{
    return {true, 4, strokePosition, 1, {true, 135, 6, 5, 0.8f}, {true, 120, 3, 3, 0.7f}, twoPass};
}

const GoldenCase kCases[] = {
    {"stroke_outside_1_glyph", GLYPH, stroke(1, 1)},
    {"stroke_outside_10_ring", RING, stroke(10, 1)},
    {"stroke_outside_100_disc", DISC, stroke(100, 1)},
    {"stroke_outside_2_diagonal_twopass", DIAGONAL, stroke(2, 1, true)},
    {"stroke_centre_3_disc", DISC, stroke(3, 0)},
    {"stroke_centre_10_diagonal", DIAGONAL, stroke(10, 0, false, 0.6f)},
    {"stroke_centre_100_ring", RING, stroke(100, 0)},
    {"stroke_inside_4_glyph", GLYPH, stroke(4, 2)},
    {"stroke_inside_10_ring_twopass", RING, stroke(10, 2, true)},
    {"stroke_inside_100_glyph", GLYPH, stroke(100, 2)},
    {"outer_120_5_3_glyph", GLYPH, outer(120, 5, 3, false, 0.75f)},
    {"outer_0_10_10_ring", RING, outer(0, 10, 10)},
    {"outer_45_20_0_disc_twopass", DISC, outer(45, 20, 0, true)},
    {"outer_300_8_100_diagonal", DIAGONAL, outer(300, 8, 100)},
    {"outer_90_4_6_glyph_twopass", GLYPH, outer(90, 4, 6, true, 0.5f)},
    {"inner_120_5_3_glyph", GLYPH, inner(120, 5, 3)},
    {"inner_90_6_2_ring", RING, inner(90, 6, 2)},
    {"inner_0_0_4_disc", DISC, inner(0, 0, 4)},
    {"inner_200_30_10_glyph", GLYPH, inner(200, 30, 10)},
    {"inner_45_10_100_ring", RING, inner(45, 10, 100, false, 0.8f)},
    {"inner_270_3_6_diagonal_twopass", DIAGONAL, inner(270, 3, 6, true)},
    {"all_stroke_outside_glyph", GLYPH, all(1)},
    {"all_stroke_centre_glyph", GLYPH, all(0)},
    {"all_stroke_inside_ring_twopass", RING, all(2, true)},
};

// One pass as font drawing runs it, with the mask as the only glyph placed inside the margins.
LmBitmap renderPass(const Mask& mask, const Effects& e)
{
    LmEffect stack;
    if (e.stroke) stack.addStrokeText(e.strokeSize, STROKE_RED, e.strokeOpacity, 0, e.strokePosition);
    const Shadow& o = e.outer;
    if (o.on) stack.addOuterShadowText(o.angle, o.distance, o.size, SHADOW_BLUE, o.opacity);
    const Shadow& i = e.inner;
    if (i.on) stack.addInnerShadowText(i.angle, i.distance, i.size, INNER_GREEN, i.opacity);
    if (e.twoPass) stack.setTextOpacity(0.5f);
    stack.addText(TEXT_WHITE);

    const int left = stack.getLeftOffset(), top = stack.getTopOffset();
    const unsigned width = mask.width + left + stack.getRightOffset();
    const unsigned height = mask.height + top + stack.getBottomOffset();
    LmBitmap output(width, height, 4);
    stack.initEffect((int)width, (int)height);
    stack.setDstBitmap(&output);
    LmGlyph glyph;
    glyph.pixels = const_cast<unsigned char*>(mask.pixels.data());
    glyph.width = (uint16_t)mask.width;
    glyph.height = (uint16_t)mask.height;
    stack.renderEffectLayer(left, top, &glyph);
    stack.doEffectPostProcessing();
    stack.compositeLayers(&output);
    return output;
}

class FilterGolden : public ::testing::TestWithParam<GoldenCase> {};

std::string caseName(const ::testing::TestParamInfo<GoldenCase>& info) { return info.param.name; }

} // namespace

TEST_P(FilterGolden, MatchesTheStoredImage)
{
    const GoldenCase& c = GetParam();
    LmBitmap image = renderPass(maskOf(c.shape), c.fx);
    ASSERT_NE(image.pixels, nullptr);
    EXPECT_TRUE(LmTest::GoldenImage::matches(c.name, image.width, image.height, image.pixels));
}

INSTANTIATE_TEST_SUITE_P(Passes, FilterGolden, ::testing::ValuesIn(kCases), caseName);

TEST(FilterGoldenSupport, PngRoundTripKeepsEveryByte)
{
    // Colour under zero alpha and partial alpha must survive as they are: no premultiplication
    // or gamma on the way through the file.
    const unsigned w = 16, h = 4;
    std::vector<unsigned char> rgba(w * h * 4);
    for (size_t i = 0; i < rgba.size(); ++i) rgba[i] = (unsigned char)(i * 37 + 11);
    rgba[3] = 0;
    rgba[7] = 1;
    const std::string path = ::testing::TempDir() + "lm_golden_roundtrip.png";
    ASSERT_TRUE(LmTest::GoldenImage::writePng(path, w, h, rgba.data()));
    unsigned rw = 0, rh = 0;
    std::vector<unsigned char> back;
    ASSERT_TRUE(LmTest::GoldenImage::readPng(path, &rw, &rh, &back));
    EXPECT_EQ(rw, w);
    EXPECT_EQ(rh, h);
    EXPECT_EQ(back, rgba);
    std::remove(path.c_str());
}
