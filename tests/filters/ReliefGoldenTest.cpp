// Golden images of bevel and emboss passes over small synthetic masks (see GoldenPass.h for how
// they are made and regenerated).
#include "filters/GoldenPass.h"

using namespace LmFontEffect;
using LmTest::Mask;

namespace {

Mask disc() { return LmTest::disc(28, 10.3); }
Mask glyph() { return LmTest::glyph(40, 44); }

enum : unsigned { SHADOW = 0xFF101848, HIGHLIGHT = 0xFFFFF4D0 };
enum { OUTER = 0, INNER = 1, PILLOW = 3, SMOOTH = 0, CHISEL = 1, DOWN = 0, UP = 1 };

void relief(LmEffect& s, bool emboss, int style, int technique, int direction, int soften, float size, bool twoPass)
{
    auto add = emboss ? &LmEffect::addEmbossText : &LmEffect::addBevelText;
    (s.*add)(style, size, 3, direction, technique, soften, 1, 120, 30, SHADOW, 0.8f, HIGHLIGHT, 0.9f);
    if (twoPass) LmTest::twoPass(s);
}

// Smooth bevels switch to the exact transform at width 11 (size 15), smooth embosses at size
// 26; chiselled bevels above 50 and embosses above 98 reach past the square-root table.
const LmTest::GoldenCase kCases[] = {
    {"bevel_inner_smooth_1_glyph", glyph, [](LmEffect& s) { relief(s, false, INNER, SMOOTH, UP, 0, 1, false); }},
    {"bevel_inner_smooth_5_glyph", glyph, [](LmEffect& s) { relief(s, false, INNER, SMOOTH, UP, 0, 5, false); }},
    {"bevel_inner_smooth_20_glyph_soften8", glyph, [](LmEffect& s) { relief(s, false, INNER, SMOOTH, UP, 8, 20, false); }},
    {"bevel_outer_smooth_20_disc_down", disc, [](LmEffect& s) { relief(s, false, OUTER, SMOOTH, DOWN, 0, 20, false); }},
    {"bevel_outer_smooth_50_disc", disc, [](LmEffect& s) { relief(s, false, OUTER, SMOOTH, UP, 0, 50, false); }},
    {"bevel_outer_chisel_5_glyph_twopass", glyph, [](LmEffect& s) { relief(s, false, OUTER, CHISEL, UP, 0, 5, true); }},
    {"bevel_outer_chisel_20_glyph_soften8", glyph, [](LmEffect& s) { relief(s, false, OUTER, CHISEL, UP, 8, 20, false); }},
    {"bevel_inner_chisel_5_disc_down", disc, [](LmEffect& s) { relief(s, false, INNER, CHISEL, DOWN, 0, 5, false); }},
    {"bevel_inner_chisel_60_disc", disc, [](LmEffect& s) { relief(s, false, INNER, CHISEL, UP, 0, 60, false); }},
    {"emboss_0_smooth_5_glyph", glyph, [](LmEffect& s) { relief(s, true, 0, SMOOTH, UP, 0, 5, false); }},
    {"emboss_0_smooth_30_disc_soften8", disc, [](LmEffect& s) { relief(s, true, 0, SMOOTH, UP, 8, 30, false); }},
    {"emboss_0_chisel_20_glyph_down_twopass", glyph, [](LmEffect& s) { relief(s, true, 0, CHISEL, DOWN, 0, 20, true); }},
    {"emboss_1_chisel_110_disc", disc, [](LmEffect& s) { relief(s, true, 1, CHISEL, UP, 0, 110, false); }},
    {"emboss_3_smooth_8_glyph", glyph, [](LmEffect& s) { relief(s, true, PILLOW, SMOOTH, UP, 0, 8, false); }},
    {"emboss_3_smooth_30_disc_twopass", disc, [](LmEffect& s) { relief(s, true, PILLOW, SMOOTH, DOWN, 0, 30, true); }},
    {"emboss_3_chisel_5_glyph_soften8", glyph, [](LmEffect& s) { relief(s, true, PILLOW, CHISEL, UP, 8, 5, false); }},
};

class ReliefGolden : public ::testing::TestWithParam<LmTest::GoldenCase> {};

} // namespace

TEST_P(ReliefGolden, MatchesTheStoredImage) { LmTest::expectGoldenPass(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Passes, ReliefGolden, ::testing::ValuesIn(kCases), LmTest::goldenName);
