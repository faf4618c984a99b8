// The outer and inner glow: colour table and layer records (the passes: goldens, same bytes).
#include "filters/MaskFixtures.h"

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
