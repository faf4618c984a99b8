// Golden images of the stroke and the shadows (see GoldenPass.h for how they are made).
#include "filters/GoldenPass.h"

#include <gtest/gtest.h>


using namespace LmFontEffect;
using namespace LmTest;

namespace {

enum : unsigned { RED = 0xFFD02020, BLUE = 0xFF1030A0, GREEN = 0xFF106010 };

void all(LmEffect& s, int strokePosition)
{
    s.addStrokeText(4, RED, 1, 0, strokePosition);
    s.addOuterShadowText(135, 6, 5, BLUE, 0.8f);
    s.addInnerShadowText(120, 3, 3, GREEN, 0.7f);
}

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
};

class FilterGolden : public ::testing::TestWithParam<GoldenCase> {};

} // namespace

TEST_P(FilterGolden, MatchesTheStoredImage) { expectGoldenPass(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Passes, FilterGolden, ::testing::ValuesIn(kCases), goldenName);
