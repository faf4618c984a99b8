// Golden images of the gradient and pattern fills over the synthetic masks (see GoldenPass.h
// for how to regenerate them).
#include "filters/GoldenPass.h"

#include "effect/LmGradient.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

// Two, three and five stops (the five with partly transparent ones, two the others skip over).
LmGradient kTwo[] = {{0xFFD02020, 1, 0}, {0xFF1030A0, 1, 1}};
LmGradient kThree[] = {{0xFFFFD000, 1, 0.1f}, {0xFFE03000, 1, 0.5f}, {0xFF6000A0, 1, 0.9f}};
LmGradient kFive[] = {{0xFFFF0000, 1, 0}, {0xFFFFFF00, 0.5f, 0.3f}, {0xFF00FF00, 1, 0.301f},
                      {0xFF00FFFF, 0.3f, 0.75f}, {0xFF0000FF, 1, 1}};

// 6 x 5 tile of A, R, G, B bytes: a clear column, a half-transparent row, colour ramps.
void addPattern(LmEffect& s, float scale, float opacity)
{
    LmBitmap tile(6, 5, 4);
    for (unsigned i = 0; i < 30; ++i) {
        const unsigned x = i % 6, y = i / 6;
        const unsigned char p[4] = {(unsigned char)(x == 5 ? 0 : y == 2 ? 128 : 255), (unsigned char)(x * 50),
                                    (unsigned char)(y * 60), (unsigned char)(255 - x * 40)};
        std::copy(p, p + 4, tile.pixels + i * 4);
    }
    s.addPatternText(&tile, scale, opacity);
}

const GoldenCase kCases[] = {
    {"linear_0_1_glyph", goldenGlyph, [](LmEffect& s) { s.addLinearGradientText(0, 1, 1, 3, kThree); }},
    {"linear_45_2_ring", goldenRing, [](LmEffect& s) { s.addLinearGradientText(45, 2, 1, 2, kTwo); }},
    {"linear_90_05_disc_twopass", goldenDisc, [](LmEffect& s) { s.addLinearGradientText(90, 0.5f, 1, 5, kFive); twoPass(s); }},
    {"linear_200_1_diagonal", goldenDiagonal, [](LmEffect& s) { s.addLinearGradientText(200, 1, 0.8f, 5, kFive); }},
    {"radial_1_disc", goldenDisc, [](LmEffect& s) { s.addRadialGradientText(1, 1, 5, kFive); }},
    {"radial_2_glyph_twopass", goldenGlyph, [](LmEffect& s) { s.addRadialGradientText(2, 1, 3, kThree); twoPass(s); }},
    {"radial_05_ring", goldenRing, [](LmEffect& s) { s.addRadialGradientText(0.5f, 1, 5, kFive); }},
    {"pattern_1_glyph", goldenGlyph, [](LmEffect& s) { addPattern(s, 1, 1); }},
    {"pattern_05_ring_twopass", goldenRing, [](LmEffect& s) { addPattern(s, 0.5f, 1); twoPass(s); }},
    {"pattern_2_disc", goldenDisc, [](LmEffect& s) { addPattern(s, 2, 1); }},
    {"pattern_3_diagonal", goldenDiagonal, [](LmEffect& s) { addPattern(s, 3, 0.6f); }},
    {"linear_stroke_shadow_glyph", goldenGlyph, [](LmEffect& s) {
         s.addStrokeText(3, 0xFF000000, 1, 0, 1);
         s.addOuterShadowText(135, 5, 4, 0xFF1030A0, 0.8f);
         s.addLinearGradientText(90, 1, 1, 3, kThree);
     }},
};

class FillGolden : public ::testing::TestWithParam<GoldenCase> {};

} // namespace

TEST_P(FillGolden, MatchesTheStoredImage) { expectGoldenPass(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Passes, FillGolden, ::testing::ValuesIn(kCases), goldenName);
