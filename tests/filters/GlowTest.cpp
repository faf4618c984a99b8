// The outer and inner glow: colour table, spread, layer records, worked passes and goldens.
#include "filters/GoldenPass.h"

#include "effect/LmGlowProperty.h"
#include "effect/LmStrokeProperty.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

enum { OUTER = 3, INNER = 4 };
enum : unsigned { BLACK = 0xFF000000, WHITE = 0xFFFFFFFF, RED = 0xFFFF0000, BLUE = 0xFF0000FF };

LmGradient stop(unsigned colour, float position, float opacity = 1)
{
    LmGradient g;
    g.colour = colour;
    g.opacity = opacity;
    g.position = position;
    return g;
}

std::vector<unsigned> tableOf(const LmGlow& layer, int curve = 0)
{
    std::vector<unsigned> t(LmGlow::kTableSize, 0xDEADBEEF);
    layer.makeColorLUT(t.data(), 0.3f, curve);
    return t;
}

// ARGB of a target pixel (bytes R, G, B, A).
unsigned argb(const FilterRun& run, int x, int y)
{
    const unsigned char* p = run.target.pixels + ((size_t)y * run.target.width + x) * 4;
    return ((unsigned)p[3] << 24) | ((unsigned)p[0] << 16) | ((unsigned)p[1] << 8) | p[2];
}

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
        const std::vector<unsigned> t = tableOf(*glowOf(OUTER, c.size, c.colour, c.stops), c.curve);
        for (const auto& e : c.entries) EXPECT_EQ(t[(size_t)e.first], e.second) << c.size << " " << e.first;
    }
}

TEST(GlowSpread, SumsOfNineOverFour)
{
    // A dot: 3 x 3 of 63 after one pass; sums of four, six and nine 63s after two.
    std::vector<unsigned char> image(25, 0), image2;
    image[12] = 255;
    LmGlow::increaseByBoxFilter(image.data(), 2, 5, 5);
    EXPECT_EQ(image, std::vector<unsigned char>({0, 0, 0,  0,   0,  0, 63, 94, 63, 0, 0, 94, 141,
                                                 94, 0, 0, 63, 94, 63, 0, 0, 0, 0,  0,  0}));
    // Two columns: the inner rows are cleared, the outer rows kept.
    image2.assign(8, 9);
    LmGlow::increaseByBoxFilter(image2.data(), 1, 2, 4);
    EXPECT_EQ(image2, std::vector<unsigned char>({9, 9, 0, 0, 0, 0, 9, 9}));
}

TEST(GlowLayer, OffsetsAndOwnCopyOfTheRecord)
{
    EXPECT_EQ(LmInnerGlow().getStyle() * 10 + LmOuterGlow().getStyle(), 43);
    const struct {
        float size;
        int offset;
    } offsets[] = {{10.4f, 10}, {10.5f, 11}, {-7, -6}, {NAN, 0}, {1e30f, INT_MAX}};
    for (const auto& o : offsets) EXPECT_EQ(glowOf(INNER, o.size)->getOffset(), o.offset) << o.size;

    // Given its own record back, or the caller's stops changed: the layer keeps its copy.
    std::vector<LmGradient> stops = {stop(RED, 0), stop(BLUE, 1)};
    auto layer = glowOf(OUTER, 5, WHITE, stops);
    stops[0].colour = BLACK;
    layer->setProperty(layer->getProperty());
    LmStrokeProperty stroke(3, RED, 1, 0, 1);
    layer->setProperty(&stroke); // another kind's record: ignored
    auto* held = dynamic_cast<LmGlowProperty*>(layer->getProperty());
    ASSERT_TRUE(held && held->stopCount == 2);
    EXPECT_EQ(held->stops[0].colour, RED);
    LmInnerGlowProperty dangling(5, WHITE, 1, 7, nullptr);
    layer->setProperty(&dangling);
    EXPECT_EQ(dynamic_cast<LmGlowProperty*>(layer->getProperty())->stopCount, 0);
}

TEST(GlowPass, OneDotAtSizeHalf)
{
    // G = 1, M = 2, one spread pass, no blur. Outer: 3 x 3 of 63, entry 193, alpha
    // (int)(63 * 256 / 180) * 255 >> 8 = 88. Inner: the 255 around drowns the dot, and the
    // spread clears columns 0 and W - 1 of the inner rows of the 5 x 5 output drawn at (3, 3).
    const Mask dot = rect(11, 11, 5, 5, 6, 6);
    FilterRun outer(dot), inner(dot);
    outer.run(*glowOf(OUTER, 0.5f));
    inner.run(*glowOf(INNER, 0.5f));
    std::vector<unsigned char> outerAlpha(121, 0), innerAlpha(121, 0);
    for (int y = 3; y <= 7; ++y)
        for (int x = 3; x <= 7; ++x) {
            const bool ring = x == 3 || x == 7 || y == 3 || y == 7;
            outerAlpha[(size_t)y * 11 + x] = ring ? 0 : 88;
            innerAlpha[(size_t)y * 11 + x] = (ring && y != 3 && y != 7) ? 0 : 255;
        }
    EXPECT_EQ(outer.alphaPlane(), outerAlpha);
    EXPECT_EQ(inner.alphaPlane(), innerAlpha);
}

TEST(GlowPass, InnerGlowOverABoxWithoutInk)
{
    // Size 10, box 20 x 20: a 64 x 64 output drawn 22 up and left, its frame R = 9 deep opaque
    // white. The temporary row's 255 ends keep the column by the frame off entry 1: v = 144,
    // entry 112, alpha 203.
    FilterRun run(rect(64, 64, 0, 0, 0, 0));
    run.textRect = LmRect(22, 22, 42, 42);
    run.run(*glowOf(INNER, 10, RED));
    EXPECT_EQ(std::vector<unsigned>({argb(run, 0, 0), argb(run, 8, 40), argb(run, 63, 54), argb(run, 32, 32),
                                     argb(run, 32, 9), argb(run, 9, 32) >> 24}),
              std::vector<unsigned>({WHITE, WHITE, WHITE, RED, RED, 203}));
}

TEST(GlowStack, StopClampingReachesTheLayers)
{
    // Positions truncated to hundredths and clamped, opacities clamped and multiplied by the
    // effect's, at most 256 stops, sizes whole and at most 100.
    std::vector<LmGradient> stops(300, stop(BLUE, 0.5f));
    stops[0] = stop(0x00FF0000, -0.3f, 2);
    stops[1] = stop(BLUE, 1.759f, NAN);
    LmEffect stack;
    stack.addOuterGlowText(250, WHITE, 0.5f, (int)stops.size(), stops.data());
    stack.addInnerGlowText(-3, WHITE, 0.5f, 2, stops.data() + 1);
    for (int kind : {OUTER, INNER}) {
        auto* layer = dynamic_cast<LmGlow*>(stack.getEffect(kind));
        auto* p = dynamic_cast<LmGlowProperty*>(layer->getProperty());
        EXPECT_EQ(layer->getOffset() + p->stopCount, kind == OUTER ? 356 : 2);
        EXPECT_EQ(p->stops[kind == OUTER ? 1 : 0].position, 1.0f);
        EXPECT_EQ(tableOf(*layer)[1], kind == OUTER ? 0x7FFE0000u : 0u);
    }
}

namespace {

const std::vector<LmGradient> kSunset = {stop(0xFFFFE060, 0), stop(0xFFFF6020, 0.4f), stop(0xFF8010A0, 1)};
const std::vector<LmGradient> kTwo = {stop(0xFF20C0FF, 0.1f), stop(0xFF2040A0, 0.9f, 0.6f)};

void outer(LmEffect& s, float size, unsigned colour, const std::vector<LmGradient>& stops = {})
{
    s.addOuterGlowText(size, colour, 1, (int)stops.size(), const_cast<LmGradient*>(stops.data()));
}

void inner(LmEffect& s, float size, unsigned colour, const std::vector<LmGradient>& stops = {})
{
    s.addInnerGlowText(size, colour, 1, (int)stops.size(), const_cast<LmGradient*>(stops.data()));
}

// The text colour of the pass is white: dark glow colours show on it.
const GoldenCase kGlowCases[] = {
    {"outer_glow_1_glyph", goldenGlyph, [](LmEffect& s) { outer(s, 1, 0xFFD08000); }},
    {"outer_glow_10_ring_stops", goldenRing, [](LmEffect& s) { outer(s, 10, 0, kSunset); }},
    {"outer_glow_100_disc", goldenDisc, [](LmEffect& s) { outer(s, 100, 0xFF2060D0); }},
    {"outer_glow_6_diagonal_twopass", goldenDiagonal, [](LmEffect& s) { outer(s, 6, 0xFFC02040); twoPass(s); }},
    {"inner_glow_3_glyph", goldenGlyph, [](LmEffect& s) { inner(s, 3, 0xFF2040C0); }},
    {"inner_glow_8_ring_stops_twopass", goldenRing, [](LmEffect& s) { inner(s, 8, 0, kSunset); twoPass(s); }},
    {"inner_glow_100_disc_twopass", goldenDisc, [](LmEffect& s) { inner(s, 100, 0xFFC02040, kTwo); twoPass(s); }},
    {"glows_both_glyph_twopass", goldenGlyph, [](LmEffect& s) {
         outer(s, 5, 0xFF2060D0);
         inner(s, 4, 0xFFD08000);
         twoPass(s);
     }},
};

class GlowGolden : public ::testing::TestWithParam<GoldenCase> {};

} // namespace

TEST_P(GlowGolden, MatchesTheStoredImage) { expectGoldenPass(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Passes, GlowGolden, ::testing::ValuesIn(kGlowCases), goldenName);
