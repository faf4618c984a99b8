// Degenerate input for the mask filters: each case draws what the arithmetic gives or
// nothing, and never touches memory outside a buffer (the sanitizer build checks that). Raw
// records past the stack's sizes are refused (warning, error 3) only when the work is huge.
#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "foundation/Error.h"
#include "support/TestSupport.h"

#include <climits>

using namespace LmFontEffect;
using namespace LmTest;

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
    if (s.kind == 1) return outerOf(s.angle, s.distance, s.size);
    if (s.kind == 2) return innerOf(s.angle, s.distance, s.size);
    if (s.kind == 3 || s.kind == 4) return glowOf(s.kind, s.size);
    // The relief's technique rides in the distance.
    const LmBevelProperty relief = reliefRecord(s.position, s.size, (int)s.distance, 2, 3, 30, 1, s.angle);
    if (s.kind == 5) return layerWith<LmBevel>(relief);
    if (s.kind == 6) return layerWith<LmEmboss>(relief);
    return strokeOf(s.size, s.position);
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
        FilterRun run(disc(16, 5));
        EXPECT_EQ(run.run(*layer), 0) << kind;
        EXPECT_TRUE(run.untouched()) << kind;
    }
}

TEST_P(FilterBadInput, DrawsWhatTheArithmeticGivesOrNothing)
{
    auto layer = layerOf(GetParam());
    FilterRun run(disc(16, 5));
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
    EXPECT_TRUE(!GetParam().givesUp || run.untouched());
    // Masks of one row or column, boxes touching every edge, targets smaller than the mask.
    for (unsigned w : {1, 9, 12})
        for (unsigned h : {1, 9, 10}) {
            const Mask m = rect(w, h, 0, 0, (int)w, (int)h, 200);
            FilterRun same(m), bigger(m, 15, 15), smaller(m, 1, 2);
            for (FilterRun* r : {&same, &bigger, &smaller}) r->run(*layer);
        }
    // The last box is empty: it has no edge to draw.
    const LmRect boxes[] = {LmRect(9, 9, 3, 3), LmRect(-50, -50, 500, 500), LmRect(30, 30, 40, 40),
                            LmRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), LmRect(4, 4, 4, 9)};
    for (const LmRect& box : boxes) {
        FilterRun odd(disc(16, 5));
        odd.textRect = box;
        odd.run(*layer);
        EXPECT_TRUE(&box != &boxes[4] || odd.untouched());
    }
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

// The windowed searches of an outside chiselled bevel or emboss cost about their reach per pixel
// of a canvas that grows with it: raw sizes of a few hundred on small text are refused too.
TEST(WorkBound, HugeWorkIsRefusedWithAWarning)
{
    const Mask large = rect(2000, 1000, 0, 0, 2000, 1000), small = rect(40, 20, 5, 5, 35, 15);
    const struct {
        std::unique_ptr<LmECore> layer;
        const Mask& mask;
        const char* message;
    } cases[] = {
        {strokeOf(1000, OUTSIDE), large, "stroke refused"},
        {strokeOf(1000, INSIDE), large, "stroke refused"},
        {outerOf(120, 5, 1000), large, "outer shadow refused"},
        {glowOf(3, 1000), large, "outer glow refused"},
        {glowOf(4, 1000), large, "inner glow refused"},
        {layerWith<LmBevel>(reliefRecord(0, 1000, 0)), large, "bevel or emboss refused"},
        {layerWith<LmBevel>(reliefRecord(2, 514, 1, 16)), small, "bevel or emboss search refused"},
        {layerWith<LmEmboss>(reliefRecord(2, 1000, 1)), small, "bevel or emboss search refused"},
    };
    for (const auto& c : cases) {
        FilterRun run(c.mask, &c.mask == &small ? 64 : 0, &c.mask == &small ? 64 : 0);
        LogCapture log;
        Error::SetError(0);
        EXPECT_TRUE(run.run(*c.layer) == 0 && Error::GetError() == 3 && run.untouched()) << c.message;
        ASSERT_EQ(log.lines().size(), 1u) << c.message;
        EXPECT_NE(log.lines()[0].message.find(c.message), std::string::npos);
    }
    // The same stroke on a small box is drawn.
    FilterRun drawn(rect(8, 8, 3, 3, 5, 5), 8, 8);
    Error::SetError(0);
    EXPECT_TRUE(drawn.run(*strokeOf(1000, OUTSIDE)) == 1 && Error::GetError() == 0);
    drawn.expectAlphas({{0, 0, 255}, {7, 7, 255}});
}
