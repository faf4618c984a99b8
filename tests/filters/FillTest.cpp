// The fills: the linear and radial gradients and the colour table they share, and the pattern
// (where a pixel falls in the tile, the bilinear sample and its shading).
#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmLinearGradientProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmRadialGradientProperty.h"
#include "filters/LmGradientTable.h"
#include "filters/LmLinearGradient.h"
#include "filters/LmPattern.h"
#include "filters/LmRadialGradient.h"

using namespace LmTest;

namespace {

enum : unsigned { BLACK = 0xFF000000, BLUE = 0xFF0000FF, RED = 0xFFFF0000, GREEN = 0xFF00FF00, WHITE = 0xFFFFFFFF };
// Black to blue: a covered pixel's blue byte is its table index less one (0 for index 0).
std::vector<LmGradient> kRamp = {{BLACK, 1, 0}, {BLUE, 1, 1}};

// Blue byte at (x, y) of a fill over a full w x h box.
int blueAt(bool radial, float angle, float scale, unsigned w, unsigned h, int x, int y)
{
    const LmLinearGradientProperty p(angle, scale, 1, (int)kRamp.size(), kRamp.data());
    const auto layer = radial ? std::unique_ptr<LmECore>(layerWith<LmRadialGradient>(p)) : layerWith<LmLinearGradient>(p);
    FilterRun run(rect(w, h, 0, 0, (int)w, (int)h, 1)); // coverage 1 still paints the full colour
    return run.run(*layer) ? run.target.pixels[((size_t)y * w + x) * 4 + 2] : -1;
}

} // namespace

TEST(GradientTable, WorkedEntries)
{
    const struct {
        std::vector<LmGradient> stops;
        int entry;
        unsigned expected;
    } cases[] = {
        {{{RED, 1, 0.3f}}, 256, RED}, {{{BLACK, 1, 0}, {WHITE, 1, 1}}, 128, 0xFF7F7F7F},
        // One stop passed per entry: green is stepped over, entry 1 already ends on blue.
        {{{RED, 1, 0}, {GREEN, 1, 0.001f}, {BLUE, 1, 0.002f}, {WHITE, 1, 1}}, 1, BLUE},
        {{{RED, 1, 0}, {GREEN, 1, 0.5f}}, 200, GREEN}, // the walk stops at the last stop
    };
    std::vector<unsigned> table(LmGradientTable::kEntries);
    for (const auto& c : cases) {
        EXPECT_TRUE(LmGradientTable::build(table.data(), c.stops.data(), (int)c.stops.size()));
        EXPECT_EQ(table[c.entry], c.expected) << c.stops.size() << " stops, entry " << c.entry;
    }
    EXPECT_FALSE(LmGradientTable::build(table.data(), kRamp.data(), 0));
    EXPECT_EQ(table, std::vector<unsigned>(LmGradientTable::kEntries, 0));
}

TEST(GradientLayers, IndexAcrossTheBox)
{
    // Linear over 200 x 50: 121 and 134 degrees tell the angle rounded once from a float
    // constant (49, 237); the goldens pin the ordinary indices. Index -1: nothing drawn.
    const struct {
        bool radial;
        float angle, scale;
        unsigned h;
        int x, y, index;
    } cases[] = {{0, 121, 1, 50, 177, 0, 48}, {0, 134, 1, 50, 75, 8, 236}, {0, 0, 0.05f, 50, 0, 0, -1},
                 {1, 0, NAN, 20, 0, 0, -1},   {0, NAN, 1, 50, 0, 0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(blueAt(c.radial, c.angle, c.scale, c.radial ? 40 : 200, c.h, c.x, c.y), c.index < 0 ? -1 : std::max(c.index - 1, 0))
            << c.radial << " " << c.angle << " " << c.scale << " at " << c.x << "," << c.y;
}

TEST(GradientLayers, TheStackClampsTheStopsTheLayerCopies)
{
    LmGradient stops[] = {{RED, 0.5f, 0.456f}, {GREEN, 2, -0.3f}, {BLUE, 1, 1.7f}};
    LmEffect stack;
    stack.addLinearGradientText(-30, 5, 1, 3, stops);
    auto* p = dynamic_cast<LmGradientProperty*>(stack.getEffect(LM_EFFECT_LINEAR_GRADIENT)->getProperty());
    EXPECT_EQ(std::vector<float>({p->angle, p->scale}), std::vector<float>({330, 2}));
    // Unsorted after clamping, the ramp still starts on the first stop, premultiplied.
    FilterRun run(rect(20, 4, 0, 0, 20, 4));
    EXPECT_EQ(run.run(*stack.getEffect(LM_EFFECT_LINEAR_GRADIENT)), 1);
    EXPECT_EQ(std::vector<int>(run.target.pixels, run.target.pixels + 4), std::vector<int>({128, 0, 0, 128}));
    std::vector<LmGradient> many(300, {RED, 1, 0.5f});
    stack.addRadialGradientText(1, 1, 300, many.data());
    EXPECT_EQ(dynamic_cast<LmGradientProperty*>(stack.getEffect(LM_EFFECT_RADIAL_GRADIENT)->getProperty())->stopCount, 256);
    stack.addRadialGradientText(1, 1, -4, many.data()); // no stops: nothing drawn
    EXPECT_EQ(run.run(*stack.getEffect(LM_EFFECT_RADIAL_GRADIENT)), 0);
}

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
    } shades[] = {{{255, 9, 9, 9}, NAN, 0}, {{255, 9, 9, 9}, -1, 0}, {{253, 253, 0, 0}, 2, 0xFAFF0101}};
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
    for (const auto& c : cases)
        EXPECT_EQ(FilterRun(disc(40, 18)).run(*layerWith<LmPattern>(LmPatternProperty(c.tile, c.scale, 1))), c.drawn)
            << c.scale;
}
