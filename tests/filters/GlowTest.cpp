// The outer and inner glow: colour table, layer records, worked passes and goldens.
#include "filters/GoldenPass.h"

#include "effect/LmGlowProperty.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

enum { OUTER = 3, INNER = 4 };
enum : unsigned { BLACK = 0xFF000000, WHITE = 0xFFFFFFFF, RED = 0xFFFF0000, BLUE = 0xFF0000FF };

LmGradient stop(unsigned colour, float position, float opacity = 1) { return LmGradient{colour, opacity, position}; }

} // namespace

TEST(GlowColorTable, WorkedEntries)
{
    const struct {
        float size;
        unsigned colour;
        std::vector<LmGradient> stops;
        int curve;
        std::vector<std::pair<int, unsigned>> entries;
    } cases[] = {
        // Full alpha to entry 75, then (int)((256 - j) * 256 / 180) * alpha >> 8; size 0 clears.
        {10, 0xFF00FF00, {}, 0, {{75, 0xFF00FF00}, {128, 0xB500FF00}, {255, 0x0000FF00}, {256, 0}}},
        {0, 0xFF00FF00, {}, 0, {{0, 0}, {128, 0}}},
        // The first segment runs from 0 whatever the first stop's position; curves 1 and 2.
        {3, 0, {stop(BLACK, 0.5f), stop(WHITE, 1)}, 0, {{64, 0xFF3F3F3F}}},
        {3, 0, {stop(BLACK, 0), stop(WHITE, 1)}, 1, {{64, 0xFF7F7F7F}}},
        {3, 0, {stop(BLACK, 0), stop(WHITE, 1)}, 2, {{64, 0xFF0F0F0F}}},
        // Two stops at one position: the division by 0 saturates and the end colour wins.
        {3, 0, {stop(BLACK, 0), stop(RED, 0.5f), stop(BLUE, 0.5f)}, 0, {{128, 0xB5FF0000}, {129, 0xB30000FF}}},
        // Unsorted: a step back gives w < 1 (c0), then the advance finds no stop left.
        {3, 0, {stop(BLACK, 0), stop(RED, 0.5f), stop(BLUE, 0.2f)}, 0, {{129, 0xB3FF0000}, {200, 0x4E0000FF}}},
    };
    for (const auto& c : cases) {
        std::vector<unsigned> t(LmGlow::kTableSize, 0xDEADBEEF);
        glowOf(OUTER, c.size, c.colour, c.stops)->makeColorLUT(t.data(), 0.3f, c.curve);
        for (const auto& e : c.entries) EXPECT_EQ(t[(size_t)e.first], e.second) << c.size << " " << e.first;
    }
}

TEST(GlowLayer, OffsetsAndOwnCopyOfTheRecord)
{
    const std::pair<float, int> offsets[] = {{10.4f, 10}, {10.5f, 11}, {NAN, 0}, {1e30f, INT_MAX}};
    for (const auto& o : offsets) EXPECT_EQ(glowOf(INNER, o.first)->getOffset(), o.second) << o.first;
    // The caller's stops changed: the layer keeps its copy.
    std::vector<LmGradient> stops = {stop(RED, 0), stop(BLUE, 1)};
    auto layer = glowOf(OUTER, 5, WHITE, stops);
    stops[0].colour = BLACK;
    EXPECT_EQ(dynamic_cast<LmGlowProperty&>(*layer->getProperty()).stops[0].colour, RED);
}

namespace {

const std::vector<LmGradient> kSunset = {stop(0xFFFFE060, 0), stop(0xFFFF6020, 0.4f), stop(0xFF8010A0, 1)};
const std::vector<LmGradient> kTwo = {stop(0xFF20C0FF, 0.1f), stop(0xFF2040A0, 0.9f, 0.6f)};
// For the stack to clamp: positions outside 0..1 and unsorted, opacities above 1 and NaN.
const std::vector<LmGradient> kWild = {stop(0xFF20C0FF, -0.5f, 2), stop(0xFFFF6020, 1.5f), stop(0xFF8010A0, 0.3f, NAN)};

void add(LmEffect& s, int kind, float size, unsigned colour, const std::vector<LmGradient>& stops = {})
{
    auto add = kind == OUTER ? &LmEffect::addOuterGlowText : &LmEffect::addInnerGlowText;
    (s.*add)(size, colour, 1, (int)stops.size(), const_cast<LmGradient*>(stops.data()));
}

// The text colour of the pass is white: dark glow colours show on it.
const GoldenCase kGlowCases[] = {
    {"outer_glow_1_glyph", goldenGlyph, [](LmEffect& s) { add(s, OUTER, 1, 0xFFD08000); }},
    {"outer_glow_10_ring_stops", goldenRing, [](LmEffect& s) { add(s, OUTER, 10, 0, kSunset); }},
    {"outer_glow_100_disc", goldenDisc, [](LmEffect& s) { add(s, OUTER, 100, 0xFF2060D0); }},
    {"outer_glow_6_diagonal_twopass", goldenDiagonal, [](LmEffect& s) { add(s, OUTER, 6, 0xFFC02040); twoPass(s); }},
    {"outer_glow_4_glyph_clamped_stops", goldenGlyph, [](LmEffect& s) { add(s, OUTER, 4, 0, kWild); }},
    // No ink: the stack still grows the box by the glyph. The blur's 255 row ends dim the
    // pixels near the frame (beyond the image) and near the image's edges instead of entry 1.
    {"inner_glow_100_no_ink", [] { return rect(4, 4, 0, 0, 0, 0); }, [](LmEffect& s) { add(s, INNER, 100, 0xFF2040C0); }},
    {"inner_glow_3_glyph", goldenGlyph, [](LmEffect& s) { add(s, INNER, 3, 0xFF2040C0); }},
    {"inner_glow_8_ring_stops_twopass", goldenRing, [](LmEffect& s) { add(s, INNER, 8, 0, kSunset); twoPass(s); }},
    {"inner_glow_100_disc_twopass", goldenDisc, [](LmEffect& s) { add(s, INNER, 100, 0xFFC02040, kTwo); twoPass(s); }},
    {"glows_both_glyph_twopass", goldenGlyph, [](LmEffect& s) {
         add(s, OUTER, 5, 0xFF2060D0);
         add(s, INNER, 4, 0xFFD08000, kWild);
         twoPass(s);
     }},
};

class GlowGolden : public ::testing::TestWithParam<GoldenCase> {};

} // namespace

TEST_P(GlowGolden, MatchesTheStoredImage) { expectGoldenPass(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Passes, GlowGolden, ::testing::ValuesIn(kGlowCases), goldenName);
