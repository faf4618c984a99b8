// Degenerate input for the mask filters: each case draws what the arithmetic gives or
// nothing, and never touches memory outside a buffer (the sanitizer build checks that).
#include "filters/MaskFixtures.h"

#include "effect/LmBevelProperty.h"
#include "effect/LmEffect.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <memory>

using namespace LmFontEffect;
using LmTest::FilterRun;

namespace {

const float kNaN = std::nanf(""), kInf = INFINITY;

struct Setting {
    const char* name;
    int kind; // 1 outer shadow, 2 inner shadow, 3 outer glow, 4 inner glow, 5 bevel, 6 emboss, 10 stroke
    float angle, distance, size;
    int position; // the stroke's position, the relief's style
    bool givesUp; // the size is absurd: nothing is drawn
};

std::unique_ptr<LmECore> layerOf(const Setting& s)
{
    if (s.kind == 1) return LmTest::outerOf(s.angle, s.distance, s.size);
    if (s.kind == 2) return LmTest::innerOf(s.angle, s.distance, s.size);
    if (s.kind == 3 || s.kind == 4) return LmTest::glowOf(s.kind, s.size);
    // The relief's technique rides in the distance.
    const LmBevelProperty relief(s.position, s.size, 3, 1, (int)s.distance, 2, 1, s.angle, 30, 0xFF000000, 1,
                                 0xFFFFFFFF, 1);
    if (s.kind == 5) return LmTest::layerWith<LmBevel>(relief);
    if (s.kind == 6) return LmTest::layerWith<LmEmboss>(relief);
    return LmTest::strokeOf(s.size, s.position);
}

class FilterBadInput : public ::testing::TestWithParam<Setting> {};

} // namespace

// Every layer kind, text included, straight from the factory.
TEST(EveryLayer, WithoutARecordDrawsNothingAndIgnoresNull)
{
    LmEffect stack;
    for (int kind = LM_EFFECT_OUTER_SHADOW; kind <= LM_EFFECT_TEXT; ++kind) {
        if (kind == LM_EFFECT_STROKE_ALIAS) continue;
        std::unique_ptr<LmECore> layer(stack.createEffect(-1, kind));
        ASSERT_NE(layer, nullptr) << kind;
        EXPECT_EQ(layer->getStyle(), kind);
        layer->setProperty(nullptr);
        EXPECT_EQ(layer->getProperty(), nullptr) << kind;
        FilterRun run(LmTest::disc(16, 5));
        EXPECT_EQ(run.run(*layer), 0) << kind;
        EXPECT_TRUE(run.untouched()) << kind;
    }
}

TEST_P(FilterBadInput, DrawsWhatTheArithmeticGivesOrNothing)
{
    auto layer = layerOf(GetParam());
    FilterRun run(LmTest::disc(16, 5));
    LmBitmap noPixels, overCap(1u << 20, 1u << 20, 4);
    const LmECore::ParamPostProcessing missing[] = {
        {&run.target, &run.mask, nullptr, 0, nullptr},
        {nullptr, &run.mask, &run.textRect, 0, nullptr},
        {&run.target, nullptr, &run.textRect, 0, nullptr},
        {&run.target, &noPixels, &run.textRect, 0, nullptr},
    };
    EXPECT_EQ(layer->doPostProcessing(nullptr), 0);
    for (LmECore::ParamPostProcessing pp : missing) EXPECT_EQ(layer->doPostProcessing(&pp), 0);
    EXPECT_TRUE(run.untouched());
    // Targets without pixels or past the cap: nothing to check but the buffers.
    for (LmBitmap* target : {&noPixels, &overCap}) {
        LmECore::ParamPostProcessing pp{target, &run.mask, &run.textRect, 0, nullptr};
        layer->doPostProcessing(&pp);
    }
    // An absurd size gives up; the rest draw.
    EXPECT_EQ(run.run(*layer) == 0, GetParam().givesUp);
    if (GetParam().givesUp) {
        EXPECT_TRUE(run.untouched());
    }
    // Masks of one row or column, boxes touching every edge, targets smaller than the mask.
    for (unsigned w : {1, 9, 12})
        for (unsigned h : {1, 9, 10}) {
            const LmTest::Mask m = LmTest::rect(w, h, 0, 0, (int)w, (int)h, 200);
            FilterRun same(m), bigger(m, 15, 15), smaller(m, 1, 2);
            same.run(*layer);
            bigger.run(*layer);
            smaller.run(*layer);
        }
    const LmRect boxes[] = {LmRect(9, 9, 3, 3), LmRect(-50, -50, 500, 500), LmRect(30, 30, 40, 40),
                            LmRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX)};
    for (const LmRect& box : boxes) {
        FilterRun odd(LmTest::disc(16, 5));
        odd.textRect = box;
        odd.run(*layer);
    }
    // An empty box has no edge to draw.
    FilterRun empty(LmTest::disc(16, 5));
    empty.textRect = LmRect(4, 4, 4, 9);
    empty.run(*layer);
    EXPECT_TRUE(empty.untouched());
}

INSTANTIATE_TEST_SUITE_P(AllFilters, FilterBadInput,
                         ::testing::Values(Setting{"outer_size_nan", 1, 120, 5, kNaN, 0, false},
                                           Setting{"outer_size_negative", 1, 120, 5, -7, 0, false},
                                           Setting{"outer_size_huge", 1, 120, 5, 1e9f, 0, true},
                                           Setting{"outer_size_inf", 1, 120, 5, kInf, 0, true},
                                           Setting{"outer_angle_far", 1, -1e30f, 5, 3, 0, false},
                                           Setting{"outer_distance_huge", 1, 30, 1e9f, 3, 0, true},
                                           Setting{"inner_size_nan", 2, 120, 5, kNaN, 0, false},
                                           Setting{"inner_size_huge", 2, 120, 5, 1e9f, 0, true},
                                           Setting{"inner_angle_far", 2, 1e30f, 5, 3, 0, false},
                                           Setting{"inner_distance_huge", 2, 30, -1e9f, 3, 0, false},
                                           Setting{"inner_distance_nan", 2, 30, kNaN, 3, 0, false},
                                           Setting{"outer_glow_size_negative", 3, 0, 0, -7, 0, true},
                                           Setting{"outer_glow_size_huge", 3, 0, 0, 1e9f, 0, true},
                                           Setting{"inner_glow_size_nan", 4, 0, 0, kNaN, 0, false},
                                           Setting{"inner_glow_size_empty_path", 4, 0, 0, -1, 0, false},
                                           Setting{"inner_glow_size_inf", 4, 0, 0, kInf, 0, true},
                                           Setting{"bevel_inner_size_nan", 5, 120, 0, kNaN, 1, false},
                                           Setting{"bevel_outer_chisel_max", 5, 120, 1, 100, 0, false},
                                           Setting{"bevel_size_negative", 5, 120, 0, -9, 1, true},
                                           Setting{"bevel_canvas_past_the_cap", 5, 120, 1, 12000, 0, true},
                                           Setting{"emboss_canvas_past_the_cap", 6, 120, 0, 12000, 1, true},
                                           Setting{"emboss_pillow_chisel_huge", 6, -1e30f, 1, 1e30f, 3, true},
                                           Setting{"emboss_angle_nan", 6, kNaN, 0, 40, 0, false},
                                           Setting{"stroke_size_nan", 10, 0, 0, kNaN, 1, false},
                                           Setting{"stroke_size_negative", 10, 0, 0, -7, 1, true},
                                           Setting{"stroke_size_huge", 10, 0, 0, 1e9f, 0, true},
                                           Setting{"stroke_size_inf", 10, 0, 0, kInf, 2, true},
                                           Setting{"stroke_position_odd", 10, 0, 0, 3, -5, false}),
                         [](const ::testing::TestParamInfo<Setting>& info) { return std::string(info.param.name); });
