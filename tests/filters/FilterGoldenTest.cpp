// Golden images of whole effect passes over synthetic masks: each case adds filter layers to a
// stack with white text, renders the mask as the only glyph into an image grown by the stack's
// margins, and compares the composited RGBA bytes exactly with tests/golden/<case>.png.
//
// After an intended change to the output, regenerate every golden image of this file with
//   LM_UPDATE_GOLDEN=1 ./build/tests/test_filters --gtest_filter='*FilterGolden*'
// (from the repository root, with build/ being any build folder), look at the new PNGs, and
// commit them with the change.
#include "filters/GoldenPass.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace LmFontEffect;
using LmTest::GoldenCase;
using LmTest::twoPass;

namespace {

using namespace LmTest::GoldenMasks;

enum : unsigned { RED = 0xFFD02020, BLUE = 0xFF1030A0, GREEN = 0xFF106010 };

void all(LmEffect& s, int strokePosition)
{
    s.addStrokeText(4, RED, 1, 0, strokePosition);
    s.addOuterShadowText(135, 6, 5, BLUE, 0.8f);
    s.addInnerShadowText(120, 3, 3, GREEN, 0.7f);
}

// Stroke positions: 0 centre, 1 outside, 2 inside.
const GoldenCase kCases[] = {
    {"stroke_outside_1_glyph", glyph, [](LmEffect& s) { s.addStrokeText(1, RED, 1, 0, 1); }},
    {"stroke_outside_10_ring", ring, [](LmEffect& s) { s.addStrokeText(10, RED, 1, 0, 1); }},
    {"stroke_outside_100_disc", disc, [](LmEffect& s) { s.addStrokeText(100, RED, 1, 0, 1); }},
    {"stroke_outside_2_diagonal_twopass", diagonal, [](LmEffect& s) { s.addStrokeText(2, RED, 1, 0, 1); twoPass(s); }},
    {"stroke_centre_3_disc", disc, [](LmEffect& s) { s.addStrokeText(3, RED, 1, 0, 0); }},
    {"stroke_centre_10_diagonal", diagonal, [](LmEffect& s) { s.addStrokeText(10, RED, 0.6f, 0, 0); }},
    {"stroke_centre_100_ring", ring, [](LmEffect& s) { s.addStrokeText(100, RED, 1, 0, 0); }},
    {"stroke_inside_4_glyph", glyph, [](LmEffect& s) { s.addStrokeText(4, RED, 1, 0, 2); }},
    {"stroke_inside_10_ring_twopass", ring, [](LmEffect& s) { s.addStrokeText(10, RED, 1, 0, 2); twoPass(s); }},
    {"stroke_inside_100_glyph", glyph, [](LmEffect& s) { s.addStrokeText(100, RED, 1, 0, 2); }},
    {"outer_120_5_3_glyph", glyph, [](LmEffect& s) { s.addOuterShadowText(120, 5, 3, BLUE, 0.75f); }},
    {"outer_0_10_10_ring", ring, [](LmEffect& s) { s.addOuterShadowText(0, 10, 10, BLUE, 1); }},
    {"outer_45_20_0_disc_twopass", disc, [](LmEffect& s) { s.addOuterShadowText(45, 20, 0, BLUE, 1); twoPass(s); }},
    {"outer_300_8_100_diagonal", diagonal, [](LmEffect& s) { s.addOuterShadowText(300, 8, 100, BLUE, 1); }},
    {"outer_90_4_6_glyph_twopass", glyph, [](LmEffect& s) { s.addOuterShadowText(90, 4, 6, BLUE, 0.5f); twoPass(s); }},
    {"inner_120_5_3_glyph", glyph, [](LmEffect& s) { s.addInnerShadowText(120, 5, 3, GREEN, 1); }},
    {"inner_90_6_2_ring", ring, [](LmEffect& s) { s.addInnerShadowText(90, 6, 2, GREEN, 1); }},
    {"inner_0_0_4_disc", disc, [](LmEffect& s) { s.addInnerShadowText(0, 0, 4, GREEN, 1); }},
    {"inner_200_30_10_glyph", glyph, [](LmEffect& s) { s.addInnerShadowText(200, 30, 10, GREEN, 1); }},
    {"inner_45_10_100_ring", ring, [](LmEffect& s) { s.addInnerShadowText(45, 10, 100, GREEN, 0.8f); }},
    {"inner_270_3_6_diagonal_twopass", diagonal, [](LmEffect& s) { s.addInnerShadowText(270, 3, 6, GREEN, 1); twoPass(s); }},
    {"all_stroke_outside_glyph", glyph, [](LmEffect& s) { all(s, 1); }},
    {"all_stroke_centre_glyph", glyph, [](LmEffect& s) { all(s, 0); }},
    {"all_stroke_inside_ring_twopass", ring, [](LmEffect& s) { all(s, 2); twoPass(s); }},
};

class FilterGolden : public ::testing::TestWithParam<GoldenCase> {};

} // namespace

TEST_P(FilterGolden, MatchesTheStoredImage) { EXPECT_TRUE(LmTest::matchesGolden(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Passes, FilterGolden, ::testing::ValuesIn(kCases), LmTest::goldenName);

TEST(FilterGoldenSupport, PngRoundTripKeepsEveryByte)
{
    // Colour under zero alpha and partial alpha must survive as they are: no premultiplication
    // or gamma on the way through the file.
    std::vector<unsigned char> rgba(16 * 4 * 4);
    for (size_t i = 0; i < rgba.size(); ++i) rgba[i] = (unsigned char)(i * 37 + 11);
    rgba[3] = 0;
    rgba[7] = 1;
    const std::string path = ::testing::TempDir() + "lm_golden_roundtrip.png";
    ASSERT_TRUE(LmTest::GoldenImage::writePng(path, 16, 4, rgba.data()));
    unsigned w = 0, h = 0;
    std::vector<unsigned char> back;
    ASSERT_TRUE(LmTest::GoldenImage::readPng(path, &w, &h, &back));
    EXPECT_EQ(w, 16u);
    EXPECT_EQ(h, 4u);
    EXPECT_EQ(back, rgba);
    std::remove(path.c_str());
}
