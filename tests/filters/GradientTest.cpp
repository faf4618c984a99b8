// The linear and radial gradient fills and the colour table they share.
#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "effect/LmLinearGradientProperty.h"
#include "effect/LmRadialGradientProperty.h"
#include "filters/LmGradientTable.h"
#include "filters/LmLinearGradient.h"
#include "filters/LmRadialGradient.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

enum : unsigned { BLACK = 0xFF000000, BLUE = 0xFF0000FF, RED = 0xFFFF0000, GREEN = 0xFF00FF00, WHITE = 0xFFFFFFFF };

// Black to blue: a covered pixel's blue byte is its table index less one (0 for index 0).
std::vector<LmGradient> kRamp = {{BLACK, 1, 0}, {BLUE, 1, 1}};

template <class Layer, class Record> std::unique_ptr<Layer> gradientOf(float angle, float scale, std::vector<LmGradient>& s)
{
    return layerWith<Layer>(Record(angle, scale, 1, (int)s.size(), s.empty() ? nullptr : s.data()));
}
auto linearOf = gradientOf<LmLinearGradient, LmLinearGradientProperty>;
auto radialOf = gradientOf<LmRadialGradient, LmRadialGradientProperty>;

unsigned char blueAt(const FilterRun& run, int x, int y) { return run.target.pixels[((size_t)y * run.target.width + x) * 4 + 2]; }

} // namespace

TEST(GradientTable, WorkedEntries)
{
    const struct {
        std::vector<LmGradient> stops;
        int entry;
        unsigned expected;
    } cases[] = {
        {{{RED, 1, 0.3f}}, 0, RED}, {{{RED, 1, 0.3f}}, 256, RED},
        {{{BLACK, 1, 0}, {WHITE, 1, 1}}, 1, BLACK}, {{{BLACK, 1, 0}, {WHITE, 1, 1}}, 128, 0xFF7F7F7F},
        {{{BLACK, 1, 0}, {WHITE, 1, 1}}, 256, WHITE},
        // One stop passed per entry: green is stepped over, entry 1 already ends on blue.
        {{{RED, 1, 0}, {GREEN, 1, 0.001f}, {BLUE, 1, 0.002f}, {WHITE, 1, 1}}, 1, BLUE},
        // The walk stops at the last stop.
        {{{RED, 1, 0}, {GREEN, 1, 0.5f}}, 200, GREEN},
        // Two stops at one place: the division by zero saturates to the end colour.
        {{{RED, 1, 0}, {GREEN, 1, 0.5f}, {BLUE, 1, 0.5f}, {WHITE, 1, 1}}, 128, GREEN},
        {{{RED, 1, 0}, {GREEN, 1, 0.5f}, {BLUE, 1, 0.5f}, {WHITE, 1, 1}}, 129, BLUE},
    };
    for (const auto& c : cases) {
        std::vector<unsigned> table(LmGradientTable::kEntries);
        EXPECT_TRUE(LmGradientTable::build(table.data(), c.stops.data(), (int)c.stops.size()));
        EXPECT_EQ(table[c.entry], c.expected) << c.stops.size() << " stops, entry " << c.entry;
    }
    std::vector<unsigned> table(LmGradientTable::kEntries, 7);
    EXPECT_FALSE(LmGradientTable::build(table.data(), kRamp.data(), 0));
    EXPECT_EQ(table, std::vector<unsigned>(LmGradientTable::kEntries, 0));
    EXPECT_EQ(LmGradientTable::premultiply(0x80FF4020), 0x80802010u);
}

TEST(LinearGradientLayer, IndexAcrossTheBox)
{
    // 121 and 134 degrees tell the double-rounded angle from a float constant (49, 237).
    const struct {
        float angle, scale;
        int x, y, index;
    } cases[] = {{0, 1, 0, 0, 0},       {0, 1, 199, 0, 254},   {0, 1, 100, 20, 128}, {90, 1, 0, 0, 255},
                 {90, 1, 0, 49, 6},     {45, 1, 199, 49, 255}, {200, 1, 10, 10, 255}, {0, 2, 0, 0, 64},
                 {0, 2, 199, 0, 191},   {0, 0.5f, 150, 0, 255}, {121, 1, 177, 0, 48}, {134, 1, 75, 8, 236}};
    for (const auto& c : cases) {
        FilterRun run(rect(200, 50, 0, 0, 200, 50, 1));
        EXPECT_EQ(run.run(*linearOf(c.angle, c.scale, kRamp)), 1);
        EXPECT_EQ(blueAt(run, c.x, c.y), std::max(c.index - 1, 0)) << c.angle << " " << c.scale << " " << c.x << "," << c.y;
        EXPECT_EQ(run.alpha(c.x, c.y), 255); // coverage 1 paints the full colour
    }
}

TEST(RadialGradientLayer, IndexGrowsWithTheRadiusOverTheBoxWidth)
{
    // Scale 2 halves the factor: the last entry is reached a full width from the centre.
    const struct {
        float scale;
        int height, x, y, index;
    } cases[] = {{1, 20, 20, 10, 0}, {1, 20, 0, 10, 255}, {1, 20, 39, 10, 243}, {1, 20, 20, 0, 128},
                 {2, 20, 0, 10, 128}, {2, 20, 39, 10, 121}, {2, 100, 20, 99, 255}, {0.5f, 20, 33, 7, 255}};
    for (const auto& c : cases) {
        FilterRun run(rect(40, (unsigned)c.height, 0, 0, 40, c.height));
        EXPECT_EQ(run.run(*radialOf(0, c.scale, kRamp)), 1);
        EXPECT_EQ(blueAt(run, c.x, c.y), std::max(c.index - 1, 0)) << c.scale << " " << c.x << "," << c.y;
    }
}

TEST(GradientLayers, TheStackClampsTheStopsTheLayerCopies)
{
    LmGradient stops[] = {{RED, 0.5f, 0.456f}, {GREEN, 2, -0.3f}, {BLUE, 1, 1.7f}};
    LmEffect stack;
    stack.addLinearGradientText(-30, 5, 1, 3, stops);
    auto* p = dynamic_cast<LmGradientProperty*>(stack.getEffect(LM_EFFECT_LINEAR_GRADIENT)->getProperty());
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::vector<float>({p->angle, p->scale, p->stops[0].position, p->stops[1].position, p->stops[2].position}),
              std::vector<float>({330, 2, 0.45f, 0, 1}));
    EXPECT_EQ(std::vector<unsigned>({p->stops[0].colour, p->stops[1].colour}), std::vector<unsigned>({0x80FF0000, GREEN}));
    // Unsorted after clamping, the ramp still starts on the first stop, premultiplied.
    FilterRun run(rect(20, 4, 0, 0, 20, 4));
    stack.addLinearGradientText(0, 1, 1, 3, stops);
    EXPECT_EQ(run.run(*stack.getEffect(LM_EFFECT_LINEAR_GRADIENT)), 1);
    EXPECT_EQ(std::vector<unsigned char>(run.target.pixels, run.target.pixels + 4), std::vector<unsigned char>({128, 0, 0, 128}));
    // Counts beyond 256 are cut, negative ones give no stops and nothing drawn.
    std::vector<LmGradient> many(300, {RED, 1, 0.5f});
    stack.addRadialGradientText(1, 1, 300, many.data());
    LmECore* radial = stack.getEffect(LM_EFFECT_RADIAL_GRADIENT);
    EXPECT_EQ(dynamic_cast<LmGradientProperty*>(radial->getProperty())->stopCount, 256);
    stack.addRadialGradientText(1, 1, -4, many.data());
    FilterRun none(rect(20, 4, 0, 0, 20, 4));
    EXPECT_EQ(none.run(*radial), 0);
    EXPECT_TRUE(none.untouched());
}

TEST(GradientLayers, BadInputDrawsNothingOrStaysInside)
{
    const float kNaN = std::nanf("");
    std::vector<LmGradient> none, three = {{RED, 1, 0.9f}, {GREEN, 1, 0.1f}, {BLUE, 1, kNaN}};
    const struct {
        float angle, scale;
        std::vector<LmGradient>* stops;
        int drawn;
    } cases[] = {{0, 1, &none, 0}, {0, 0.05f, &kRamp, 0}, {0, kNaN, &kRamp, 0}, {kNaN, 1, &three, 1},
                 {-1e30f, 2, &three, 1}, {1e30f, 0.1f, &kRamp, 1}};
    for (const auto& c : cases)
        for (int radial = 0; radial < 2; ++radial) {
            std::unique_ptr<LmECore> layer = radial ? std::unique_ptr<LmECore>(radialOf(c.angle, c.scale, *c.stops))
                                                    : linearOf(c.angle, c.scale, *c.stops);
            FilterRun run(disc(16, 5));
            EXPECT_EQ(run.run(*layer), c.drawn) << c.angle << " " << c.scale << " " << radial;
            EXPECT_TRUE(c.drawn || run.untouched());
            // Missing pieces, empty and outlandish boxes.
            LmBitmap noPixels;
            const LmECore::ParamPostProcessing missing[] = {{&run.target, &run.mask, nullptr, 0, nullptr},
                                                            {nullptr, &run.mask, &run.textRect, 0, nullptr},
                                                            {&run.target, &noPixels, &run.textRect, 0, nullptr}};
            for (LmECore::ParamPostProcessing pp : missing) EXPECT_EQ(layer->doPostProcessing(&pp), 0);
            EXPECT_EQ(layer->doPostProcessing(nullptr), 0);
            for (const LmRect& box : {LmRect(4, 4, 4, 9), LmRect(30, 30, 40, 40), LmRect(9, 9, 3, 3)}) {
                run.textRect = box;
                EXPECT_EQ(run.run(*layer), 0);
            }
            run.textRect = LmRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
            EXPECT_EQ(run.run(*layer), c.drawn);
        }
    // A stop array given with a count of 0, or a count without an array.
    LmLinearGradientProperty noArray(0, 1, 1, 3, nullptr), zero(0, 1, 1, 0, kRamp.data());
    for (LmLinearGradientProperty* p : {&noArray, &zero}) {
        FilterRun run(disc(16, 5));
        EXPECT_EQ(run.run(*layerWith<LmLinearGradient>(*p)), 0);
    }
}
