// The pattern fill: where a pixel falls in the tile, the bilinear sample and its shading.
#include "filters/MaskFixtures.h"

#include "effect/LmPatternProperty.h"
#include "filters/LmPattern.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace LmFontEffect;
using namespace LmTest;

TEST(PatternLayer, TapsAndShading)
{
    // A tile scaled to nothing leaves the coordinate unreduced; it is then wrapped into the tile.
    const struct {
        int v, scaled;
        float scale;
        int size;
        std::vector<int> tap;
    } taps[] = {{3, 4, 2, 2, {1, 0, 127}}, {3, 1, 0.5f, 2, {0, 1, 0}}, {5, 0, 0.1f, 3, {2, 0, 0}}, {7, 0, 0.3f, 2, {1, 0, 84}}};
    for (const auto& c : taps) {
        const LmPattern::Tap t = LmPattern::tap(c.v, c.scaled, c.scale, c.size);
        EXPECT_EQ(std::vector<int>({t.i0, t.i1, t.weight}), c.tap) << c.v << " " << c.scale;
    }
    // Opacity: NaN and negative give 0, above 1 keeps the low byte of the alpha.
    const struct {
        std::vector<int> argb;
        float opacity;
        unsigned expected;
    } shades[] = {{{127, 253, 0, 0}, 1, 0x7F7E0000}, {{255, 10, 20, 30}, 0.5f, 0x7F050A0F}, {{255, 9, 9, 9}, NAN, 0},
                  {{255, 9, 9, 9}, -1, 0}, {{253, 253, 0, 0}, 2, 0xFAFF0101}};
    for (const auto& c : shades) EXPECT_EQ(LmPattern::shade(c.argb.data(), c.opacity), c.expected) << c.opacity;
}

TEST(PatternLayer, BadTilesAndScales)
{
    LmBitmap empty(0, 0, 4), coverage(3, 3, 1), dot(1, 1, 4), small(3, 3, 4);
    const struct {
        LmBitmap* tile;
        float scale;
        int drawn;
    } cases[] = {{nullptr, 1, 0}, {&empty, 1, 0}, {&coverage, 1, 0}, {&small, 0.05f, 0}, {&dot, 0.1f, 1}, {&small, 0.1f, 1}};
    for (const auto& c : cases) {
        FilterRun run(disc(40, 18));
        EXPECT_EQ(run.run(*layerWith<LmPattern>(LmPatternProperty(c.tile, c.scale, 1))), c.drawn) << c.scale;
    }
}
