// Golden images of bevel and emboss passes over small synthetic masks (see GoldenPass.h for how
// they are made and regenerated).
#include "filters/GoldenPass.h"

#include <string>

using namespace LmFontEffect;
using LmTest::Mask;

namespace {

Mask disc() { return LmTest::disc(28, 10.3); }
Mask glyph() { return LmTest::glyph(40, 44); }

enum : unsigned { SHADOW = 0xFF101848, HIGHLIGHT = 0xFFFFF4D0 };
enum { OUTER = 0, INNER = 1, PILLOW = 3, SMOOTH = 0, CHISEL = 1, DOWN = 0, UP = 1 };

struct ReliefCase {
    const char* name;
    Mask (*mask)();
    bool emboss;
    int style, technique, direction, soften;
    float size;
    bool twoPass;
};

// Smooth bevels switch to the exact transform at width 11 (size 15), smooth embosses at size
// 26; chiselled bevels above 50 and embosses above 98 reach past the square-root table.
const ReliefCase kCases[] = {
    {"bevel_inner_smooth_1_glyph", glyph, false, INNER, SMOOTH, UP, 0, 1, false},
    {"bevel_inner_smooth_5_glyph", glyph, false, INNER, SMOOTH, UP, 0, 5, false},
    {"bevel_inner_smooth_20_glyph_soften8", glyph, false, INNER, SMOOTH, UP, 8, 20, false},
    {"bevel_outer_smooth_20_disc_down", disc, false, OUTER, SMOOTH, DOWN, 0, 20, false},
    {"bevel_outer_smooth_50_disc", disc, false, OUTER, SMOOTH, UP, 0, 50, false},
    {"bevel_outer_chisel_5_glyph_twopass", glyph, false, OUTER, CHISEL, UP, 0, 5, true},
    {"bevel_outer_chisel_20_glyph_soften8", glyph, false, OUTER, CHISEL, UP, 8, 20, false},
    {"bevel_inner_chisel_5_disc_down", disc, false, INNER, CHISEL, DOWN, 0, 5, false},
    {"bevel_inner_chisel_60_disc", disc, false, INNER, CHISEL, UP, 0, 60, false},
    {"emboss_0_smooth_5_glyph", glyph, true, 0, SMOOTH, UP, 0, 5, false},
    {"emboss_0_smooth_30_disc_soften8", disc, true, 0, SMOOTH, UP, 8, 30, false},
    {"emboss_0_chisel_20_glyph_down_twopass", glyph, true, 0, CHISEL, DOWN, 0, 20, true},
    {"emboss_1_chisel_110_disc", disc, true, 1, CHISEL, UP, 0, 110, false},
    {"emboss_3_smooth_8_glyph", glyph, true, PILLOW, SMOOTH, UP, 0, 8, false},
    {"emboss_3_smooth_30_disc_twopass", disc, true, PILLOW, SMOOTH, DOWN, 0, 30, true},
    {"emboss_3_chisel_5_glyph_soften8", glyph, true, PILLOW, CHISEL, UP, 8, 5, false},
};

class ReliefGolden : public ::testing::TestWithParam<ReliefCase> {};

} // namespace

TEST_P(ReliefGolden, MatchesTheStoredImage)
{
    const ReliefCase& c = GetParam();
    LmEffect stack;
    if (c.emboss)
        stack.addEmbossText(c.style, c.size, 3, c.direction, c.technique, c.soften, 1, 120, 30, SHADOW, 0.8f,
                            HIGHLIGHT, 0.9f);
    else
        stack.addBevelText(c.style, c.size, 3, c.direction, c.technique, c.soften, 1, 120, 30, SHADOW, 0.8f,
                           HIGHLIGHT, 0.9f);
    if (c.twoPass) stack.setTextOpacity(0.5f);
    LmTest::expectGolden(c.name, stack, c.mask());
}

INSTANTIATE_TEST_SUITE_P(Passes, ReliefGolden, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<ReliefCase>& info) { return std::string(info.param.name); });
