// The pattern fill: where a pixel falls in the tile, the bilinear sample and its shading.
#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmPatternProperty.h"
#include "filters/LmPattern.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

TEST(PatternLayer, TapsWrapIntoTheTile)
{
    // A tile scaled to nothing leaves the coordinate unreduced; it is wrapped into the tile.
    const struct {
        int v, scaled;
        float scale;
        int size, i0, i1, weight;
    } cases[] = {{3, 4, 2, 2, 1, 0, 127}, {3, 1, 0.5f, 2, 0, 1, 0}, {5, 0, 0.1f, 3, 2, 0, 0},
                 {7, 0, 0.3f, 2, 1, 0, 84}, {10, 7, 1.5f, 5, 2, 3, 0}, {13, 7, 1.5f, 5, 4, 0, 0}};
    for (const auto& c : cases) {
        const LmPattern::Tap t = LmPattern::tap(c.v, c.scaled, c.scale, c.size);
        EXPECT_EQ(std::vector<int>({t.i0, t.i1, t.weight}), std::vector<int>({c.i0, c.i1, c.weight})) << c.v << " " << c.scale;
    }
}

TEST(PatternLayer, SampleAndShade)
{
    const unsigned char full[4] = {255, 255, 255, 255}, none[4] = {0, 0, 0, 0};
    int s[4];
    LmPattern::sample(full, full, full, full, 0, 0, s);
    EXPECT_EQ(s[0], 253); // 255 * 255 * 255 >> 16
    LmPattern::sample(none, full, none, full, 127, 200, s);
    EXPECT_EQ(s[1], 126);
    const float kNaN = std::nanf("");
    const struct {
        std::vector<int> argb;
        float opacity;
        unsigned expected;
    } cases[] = {{{253, 253, 253, 253}, 1, 0xFDFBFBFB}, {{127, 253, 0, 0}, 1, 0x7F7E0000}, {{255, 10, 20, 30}, 0.5f, 0x7F050A0F},
                 {{255, 9, 9, 9}, kNaN, 0}, {{255, 9, 9, 9}, -1, 0}, {{253, 253, 0, 0}, 2, 0xFAFF0101}, {{255, 1, 1, 1}, 0, 0}};
    for (const auto& c : cases) EXPECT_EQ(LmPattern::shade(c.argb.data(), c.opacity), c.expected) << c.opacity;
}

TEST(PatternLayer, TilesFromTheBoxCorner)
{
    // A 2 x 2 tile: opaque red, half-transparent green, clear, opaque white (A, R, G, B bytes).
    unsigned char bytes[] = {255, 255, 0, 0, 128, 0, 255, 0, 0, 0, 0, 0, 255, 255, 255, 255};
    LmBitmap tile(2, 2, bytes, 4);
    LmEffect stack;
    stack.addPatternText(&tile, 1, 1);
    tile.pixels[0] = 0; // the layer keeps its own copy
    FilterRun run(rect(8, 6, 3, 1, 8, 6));
    EXPECT_EQ(run.run(*stack.getEffect(LM_EFFECT_PATTERN)), 1);
    auto pixel = [&](int x, int y) { return std::vector<int>(run.target.pixels + (y * 8 + x) * 4, run.target.pixels + (y * 8 + x) * 4 + 4); };
    EXPECT_EQ(pixel(3, 1), std::vector<int>({251, 0, 0, 253})); // tile (0, 0), darkened by the sample
    EXPECT_EQ(pixel(4, 1), std::vector<int>({0, 126, 0, 127}));
    EXPECT_EQ(pixel(3, 2), std::vector<int>({0, 0, 0, 0}));
    EXPECT_EQ(pixel(6, 4), pixel(4, 2));
    EXPECT_EQ(pixel(2, 1), std::vector<int>({0, 0, 0, 0})); // outside the box
}

TEST(PatternLayer, BadTilesAndScales)
{
    // Absent, empty, 8-bit or 1 x 1 tiles; scales below 0.1 or shrinking the tile to nothing.
    LmBitmap empty(0, 0, 4), coverage(3, 3, 1), dot(1, 1, 4), small(3, 3, 4);
    dot.pixels[0] = 255;
    const struct {
        LmBitmap* tile;
        float scale, opacity;
        int drawn;
    } cases[] = {{nullptr, 1, 1, 0}, {&empty, 1, 1, 0}, {&coverage, 1, 1, 0}, {&small, 0.05f, 1, 0},
                 {&dot, 1, 1, 1}, {&dot, 0.1f, 1, 1}, {&small, 0.1f, 1, 1}, {&small, 10, std::nanf(""), 1}};
    for (const auto& c : cases) {
        FilterRun run(disc(40, 18));
        EXPECT_EQ(run.run(*layerWith<LmPattern>(LmPatternProperty(c.tile, c.scale, c.opacity))), c.drawn) << c.scale;
        EXPECT_TRUE(c.drawn || run.untouched());
    }
    LmPattern bare;
    FilterRun run(disc(10, 4));
    EXPECT_EQ(run.run(bare), 0);
}
