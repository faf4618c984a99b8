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
#include "effect/LmGradient.h"
#include "support/GoldenImage.h"

#include <string>

using namespace LmTest;

namespace {

const Mask goldenDisc = disc(64, 22.3), goldenRing = ring(80, 34, 21.5), goldenDiagonal = diagonal(72);
const Mask goldenGlyph = glyph(64, 72);
// Bevel and emboss run over smaller masks.
const Mask reliefDisc = disc(28, 10.3), reliefGlyph = glyph(40, 44), noInk = rect(4, 4, 0, 0, 0, 0);

// Half text opacity forces two-pass compositing.
void twoPass(LmEffect& s) { s.setTextOpacity(0.5f); }

enum : unsigned { RED = 0xFFD02020, BLUE = 0xFF1030A0, GREEN = 0xFF106010, SHADOW = 0xFF101848, HIGHLIGHT = 0xFFFFF4D0 };

void all(LmEffect& s, int strokePosition)
{
    s.addStrokeText(4, RED, 1, 0, strokePosition);
    s.addOuterShadowText(135, 6, 5, BLUE, 0.8f);
    s.addInnerShadowText(120, 3, 3, GREEN, 0.7f);
}

// Two, three and five stops (the five with partly transparent ones, two the others skip over).
LmGradient kTwoStops[] = {{0xFFD02020, 1, 0}, {0xFF1030A0, 1, 1}};
LmGradient kThreeStops[] = {{0xFFFFD000, 1, 0.1f}, {0xFFE03000, 1, 0.5f}, {0xFF6000A0, 1, 0.9f}};
LmGradient kFiveStops[] = {{0xFFFF0000, 1, 0}, {0xFFFFFF00, 0.5f, 0.3f}, {0xFF00FF00, 1, 0.301f},
                           {0xFF00FFFF, 0.3f, 0.75f}, {0xFF0000FF, 1, 1}};

// 6 x 5 tile of A, R, G, B bytes: a clear column, a half-transparent row, colour ramps.
void addPattern(LmEffect& s, float scale, float opacity)
{
    LmBitmap tile(6, 5, 4);
    for (unsigned i = 0; i < 120; ++i) {
        const unsigned x = i / 4 % 6, y = i / 24;
        const unsigned argb[4] = {x == 5 ? 0u : y == 2 ? 128u : 255u, x * 50, y * 60, 255 - x * 40};
        tile.pixels[i] = (unsigned char)argb[i % 4];
    }
    s.addPatternText(&tile, scale, opacity);
}

enum { OUTER = 0, INNER = 1, PILLOW = 3, SMOOTH = 0, CHISEL = 1, DOWN = 0, UP = 1 };

void relief(LmEffect& s, bool emboss, int style, int technique, int direction, int soften, float size, bool twoPass)
{
    auto add = emboss ? &LmEffect::addEmbossText : &LmEffect::addBevelText;
    (s.*add)(style, size, 3, direction, technique, soften, 1, 120, 30, SHADOW, 0.8f, HIGHLIGHT, 0.9f);
    if (twoPass) ::twoPass(s);
}

const std::vector<LmGradient> kSunset = {{0xFFFFE060, 1, 0}, {0xFFFF6020, 1, 0.4f}, {0xFF8010A0, 1, 1}};
const std::vector<LmGradient> kTwo = {{0xFF20C0FF, 1, 0.1f}, {0xFF2040A0, 0.6f, 0.9f}};
// For the stack to clamp: positions outside 0..1 and unsorted, opacities above 1 and NaN.
const std::vector<LmGradient> kWild = {{0xFF20C0FF, 2, -0.5f}, {0xFFFF6020, 1, 1.5f}, {0xFF8010A0, NAN, 0.3f}};

void glow(LmEffect& s, int kind, float size, unsigned colour, const std::vector<LmGradient>& stops = {})
{
    auto add = kind == OUTER_GLOW ? &LmEffect::addOuterGlowText : &LmEffect::addInnerGlowText;
    (s.*add)(size, colour, 1, (int)stops.size(), const_cast<LmGradient*>(stops.data()));
}

struct GoldenCase {
    const char* name;
    const Mask& mask;
    void (*addLayers)(LmEffect&);
};

// Stroke positions: 0 centre, 1 outside, 2 inside.
const GoldenCase kCases[] = {
    {"stroke_outside_1_glyph", goldenGlyph, [](LmEffect& s) { s.addStrokeText(1, RED, 1, 0, 1); }},
    {"stroke_outside_10_ring", goldenRing, [](LmEffect& s) { s.addStrokeText(10, RED, 1, 0, 1); }},
    {"stroke_outside_100_disc", goldenDisc, [](LmEffect& s) { s.addStrokeText(100, RED, 1, 0, 1); }},
    {"stroke_outside_2_diagonal_twopass", goldenDiagonal, [](LmEffect& s) { s.addStrokeText(2, RED, 1, 0, 1); twoPass(s); }},
    {"stroke_centre_3_disc", goldenDisc, [](LmEffect& s) { s.addStrokeText(3, RED, 1, 0, 0); }},
    {"stroke_centre_10_diagonal", goldenDiagonal, [](LmEffect& s) { s.addStrokeText(10, RED, 0.6f, 0, 0); }},
    {"stroke_centre_100_ring", goldenRing, [](LmEffect& s) { s.addStrokeText(100, RED, 1, 0, 0); }},
    {"stroke_inside_4_glyph", goldenGlyph, [](LmEffect& s) { s.addStrokeText(4, RED, 1, 0, 2); }},
    {"stroke_inside_10_ring_twopass", goldenRing, [](LmEffect& s) { s.addStrokeText(10, RED, 1, 0, 2); twoPass(s); }},
    {"stroke_inside_100_glyph", goldenGlyph, [](LmEffect& s) { s.addStrokeText(100, RED, 1, 0, 2); }},
    {"outer_120_5_3_glyph", goldenGlyph, [](LmEffect& s) { s.addOuterShadowText(120, 5, 3, BLUE, 0.75f); }},
    {"outer_0_10_10_ring", goldenRing, [](LmEffect& s) { s.addOuterShadowText(0, 10, 10, BLUE, 1); }},
    {"outer_45_20_0_disc_twopass", goldenDisc, [](LmEffect& s) { s.addOuterShadowText(45, 20, 0, BLUE, 1); twoPass(s); }},
    {"outer_300_8_100_diagonal", goldenDiagonal, [](LmEffect& s) { s.addOuterShadowText(300, 8, 100, BLUE, 1); }},
    {"outer_90_4_6_glyph_twopass", goldenGlyph, [](LmEffect& s) { s.addOuterShadowText(90, 4, 6, BLUE, 0.5f); twoPass(s); }},
    {"inner_120_5_3_glyph", goldenGlyph, [](LmEffect& s) { s.addInnerShadowText(120, 5, 3, GREEN, 1); }},
    {"inner_90_6_2_ring", goldenRing, [](LmEffect& s) { s.addInnerShadowText(90, 6, 2, GREEN, 1); }},
    {"inner_0_0_4_disc", goldenDisc, [](LmEffect& s) { s.addInnerShadowText(0, 0, 4, GREEN, 1); }},
    {"inner_200_30_10_glyph", goldenGlyph, [](LmEffect& s) { s.addInnerShadowText(200, 30, 10, GREEN, 1); }},
    {"inner_45_10_100_ring", goldenRing, [](LmEffect& s) { s.addInnerShadowText(45, 10, 100, GREEN, 0.8f); }},
    {"inner_270_3_6_diagonal_twopass", goldenDiagonal, [](LmEffect& s) { s.addInnerShadowText(270, 3, 6, GREEN, 1); twoPass(s); }},
    {"all_stroke_outside_glyph", goldenGlyph, [](LmEffect& s) { all(s, 1); }},
    {"all_stroke_centre_glyph", goldenGlyph, [](LmEffect& s) { all(s, 0); }},
    {"all_stroke_inside_ring_twopass", goldenRing, [](LmEffect& s) { all(s, 2); twoPass(s); }},
    // Fills.
    {"linear_0_1_glyph", goldenGlyph, [](LmEffect& s) { s.addLinearGradientText(0, 1, 1, 3, kThreeStops); }},
    {"linear_45_2_ring", goldenRing, [](LmEffect& s) { s.addLinearGradientText(45, 2, 1, 2, kTwoStops); }},
    {"linear_90_05_disc_twopass", goldenDisc, [](LmEffect& s) { s.addLinearGradientText(90, 0.5f, 1, 5, kFiveStops); twoPass(s); }},
    {"linear_200_1_diagonal", goldenDiagonal, [](LmEffect& s) { s.addLinearGradientText(200, 1, 0.8f, 5, kFiveStops); }},
    {"radial_1_disc", goldenDisc, [](LmEffect& s) { s.addRadialGradientText(1, 1, 5, kFiveStops); }},
    {"radial_2_glyph_twopass", goldenGlyph, [](LmEffect& s) { s.addRadialGradientText(2, 1, 3, kThreeStops); twoPass(s); }},
    {"radial_05_ring", goldenRing, [](LmEffect& s) { s.addRadialGradientText(0.5f, 1, 5, kFiveStops); }},
    {"pattern_1_glyph", goldenGlyph, [](LmEffect& s) { addPattern(s, 1, 1); }},
    {"pattern_05_ring_twopass", goldenRing, [](LmEffect& s) { addPattern(s, 0.5f, 1); twoPass(s); }},
    {"pattern_2_disc", goldenDisc, [](LmEffect& s) { addPattern(s, 2, 1); }},
    {"pattern_3_diagonal", goldenDiagonal, [](LmEffect& s) { addPattern(s, 3, 0.6f); }},
    {"linear_stroke_shadow_glyph", goldenGlyph, [](LmEffect& s) {
         s.addStrokeText(3, 0xFF000000, 1, 0, 1);
         s.addOuterShadowText(135, 5, 4, 0xFF1030A0, 0.8f);
         s.addLinearGradientText(90, 1, 1, 3, kThreeStops);
     }},
    // Smooth bevels switch to the exact transform at width 11 (size 15), smooth embosses at size
    // 26; chiselled bevels above 50 and embosses above 98 reach past the square-root table.
    {"bevel_inner_smooth_1_glyph", reliefGlyph, [](LmEffect& s) { relief(s, false, INNER, SMOOTH, UP, 0, 1, false); }},
    {"bevel_inner_smooth_5_glyph", reliefGlyph, [](LmEffect& s) { relief(s, false, INNER, SMOOTH, UP, 0, 5, false); }},
    {"bevel_inner_smooth_20_glyph_soften8", reliefGlyph, [](LmEffect& s) { relief(s, false, INNER, SMOOTH, UP, 8, 20, false); }},
    {"bevel_outer_smooth_20_disc_down", reliefDisc, [](LmEffect& s) { relief(s, false, OUTER, SMOOTH, DOWN, 0, 20, false); }},
    {"bevel_outer_smooth_50_disc", reliefDisc, [](LmEffect& s) { relief(s, false, OUTER, SMOOTH, UP, 0, 50, false); }},
    {"bevel_outer_chisel_5_glyph_twopass", reliefGlyph, [](LmEffect& s) { relief(s, false, OUTER, CHISEL, UP, 0, 5, true); }},
    {"bevel_outer_chisel_20_glyph_soften8", reliefGlyph, [](LmEffect& s) { relief(s, false, OUTER, CHISEL, UP, 8, 20, false); }},
    {"bevel_inner_chisel_5_disc_down", reliefDisc, [](LmEffect& s) { relief(s, false, INNER, CHISEL, DOWN, 0, 5, false); }},
    {"bevel_inner_chisel_60_disc", reliefDisc, [](LmEffect& s) { relief(s, false, INNER, CHISEL, UP, 0, 60, false); }},
    {"emboss_0_smooth_5_glyph", reliefGlyph, [](LmEffect& s) { relief(s, true, 0, SMOOTH, UP, 0, 5, false); }},
    {"emboss_0_smooth_30_disc_soften8", reliefDisc, [](LmEffect& s) { relief(s, true, 0, SMOOTH, UP, 8, 30, false); }},
    {"emboss_0_chisel_20_glyph_down_twopass", reliefGlyph, [](LmEffect& s) { relief(s, true, 0, CHISEL, DOWN, 0, 20, true); }},
    {"emboss_1_chisel_110_disc", reliefDisc, [](LmEffect& s) { relief(s, true, 1, CHISEL, UP, 0, 110, false); }},
    {"emboss_3_smooth_8_glyph", reliefGlyph, [](LmEffect& s) { relief(s, true, PILLOW, SMOOTH, UP, 0, 8, false); }},
    {"emboss_3_smooth_30_disc_twopass", reliefDisc, [](LmEffect& s) { relief(s, true, PILLOW, SMOOTH, DOWN, 0, 30, true); }},
    {"emboss_3_chisel_5_glyph_soften8", reliefGlyph, [](LmEffect& s) { relief(s, true, PILLOW, CHISEL, UP, 8, 5, false); }},
    // The text colour of the pass is white: dark glow colours show on it.
    {"outer_glow_1_glyph", goldenGlyph, [](LmEffect& s) { glow(s, OUTER_GLOW, 1, 0xFFD08000); }},
    {"outer_glow_10_ring_stops", goldenRing, [](LmEffect& s) { glow(s, OUTER_GLOW, 10, 0, kSunset); }},
    {"outer_glow_100_disc", goldenDisc, [](LmEffect& s) { glow(s, OUTER_GLOW, 100, 0xFF2060D0); }},
    {"outer_glow_6_diagonal_twopass", goldenDiagonal, [](LmEffect& s) { glow(s, OUTER_GLOW, 6, 0xFFC02040); twoPass(s); }},
    {"outer_glow_4_glyph_clamped_stops", goldenGlyph, [](LmEffect& s) { glow(s, OUTER_GLOW, 4, 0, kWild); }},
    // No ink: the stack still grows the box by the glyph. The blur's 255 row ends dim the
    // pixels near the frame (beyond the image) and near the image's edges instead of entry 1.
    {"inner_glow_100_no_ink", noInk, [](LmEffect& s) { glow(s, INNER_GLOW, 100, 0xFF2040C0); }},
    {"inner_glow_3_glyph", goldenGlyph, [](LmEffect& s) { glow(s, INNER_GLOW, 3, 0xFF2040C0); }},
    {"inner_glow_8_ring_stops_twopass", goldenRing, [](LmEffect& s) { glow(s, INNER_GLOW, 8, 0, kSunset); twoPass(s); }},
    {"inner_glow_100_disc_twopass", goldenDisc, [](LmEffect& s) { glow(s, INNER_GLOW, 100, 0xFFC02040, kTwo); twoPass(s); }},
    {"glows_both_glyph_twopass", goldenGlyph, [](LmEffect& s) {
         glow(s, OUTER_GLOW, 5, 0xFF2060D0);
         glow(s, INNER_GLOW, 4, 0xFFD08000, kWild);
         twoPass(s);
     }},
};

class FilterGolden : public ::testing::TestWithParam<GoldenCase> {};

} // namespace

// One pass as font drawing runs it: white text added, the mask as the only glyph, placed inside
// an image grown by the stack's margins, composited; then compared with the golden image.
TEST_P(FilterGolden, MatchesTheStoredImage)
{
    const GoldenCase& c = GetParam();
    LmEffect stack;
    c.addLayers(stack);
    const Mask& mask = c.mask;
    stack.addText(0xFFFFFFFF);
    const int left = stack.getLeftOffset(), top = stack.getTopOffset();
    const unsigned width = mask.width + left + stack.getRightOffset();
    const unsigned height = mask.height + top + stack.getBottomOffset();
    LmBitmap image(width, height, 4);
    stack.initEffect((int)width, (int)height);
    stack.setDstBitmap(&image);
    LmGlyph glyph{const_cast<unsigned char*>(mask.pixels.data()), mask.width, mask.height};
    stack.renderEffectLayer(left, top, &glyph);
    stack.doEffectPostProcessing();
    stack.compositeLayers(&image);
    ASSERT_NE(image.pixels, nullptr);
    EXPECT_TRUE(GoldenImage::matches(c.name, width, height, image.pixels));
}

INSTANTIATE_TEST_SUITE_P(Passes, FilterGolden, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<GoldenCase>& info) { return std::string(info.param.name); });
