// Degenerate input for the mask filters: each case draws what the arithmetic gives or
// nothing, and never touches memory outside a buffer (the sanitizer build checks that). Raw
// records past the stack's sizes are refused (warning, error 3) only when the work is huge.
#include "filters/MaskFixtures.h"

#include "effect/LmEffect.h"
#include "foundation/Error.h"
#include "support/TestSupport.h"

#include <functional>

using namespace LmTest;

namespace {

const float kNaN = std::nanf(""), kInf = INFINITY;

struct Setting {
    const char* name;
    std::function<std::unique_ptr<LmECore>()> layer;
    bool givesUp; // the size is absurd: nothing is drawn
};

std::unique_ptr<LmBevel> bevelOf(LmBevelProperty p) { return layerWith<LmBevel>(p); }
std::unique_ptr<LmEmboss> embossOf(LmBevelProperty p) { return layerWith<LmEmboss>(p); }

// Relief records: style, size, technique, soften (then depth, altitude, direction, angle).
const Setting kSettings[] = {
    {"outer_size_nan", [] { return outerOf(120, 5, kNaN); }, false},
    {"outer_size_negative", [] { return outerOf(120, 5, -7); }, false},
    {"outer_size_huge", [] { return outerOf(120, 5, 1e9f); }, true},
    {"outer_size_inf", [] { return outerOf(120, 5, kInf); }, true},
    {"outer_angle_far", [] { return outerOf(-1e30f, 5, 3); }, false},
    {"outer_distance_huge", [] { return outerOf(30, 1e9f, 3); }, true},
    {"inner_size_nan", [] { return innerOf(120, 5, kNaN); }, false},
    {"inner_size_huge", [] { return innerOf(120, 5, 1e9f); }, true},
    {"inner_angle_far", [] { return innerOf(1e30f, 5, 3); }, false},
    {"inner_distance_huge", [] { return innerOf(30, -1e9f, 3); }, false},
    {"inner_distance_nan", [] { return innerOf(30, kNaN, 3); }, false},
    {"outer_glow_size_negative", [] { return glowOf(OUTER_GLOW, -7); }, true},
    {"outer_glow_size_huge", [] { return glowOf(OUTER_GLOW, 1e9f); }, true},
    {"inner_glow_size_nan", [] { return glowOf(INNER_GLOW, kNaN); }, false},
    {"inner_glow_size_empty_path", [] { return glowOf(INNER_GLOW, -1); }, false},
    {"inner_glow_size_inf", [] { return glowOf(INNER_GLOW, kInf); }, true},
    {"bevel_inner_size_nan", [] { return bevelOf(reliefRecord(1, kNaN, 0, 2)); }, false},
    {"bevel_outer_chisel_max", [] { return bevelOf(reliefRecord(0, 100, 1, 2)); }, false},
    {"bevel_size_negative", [] { return bevelOf(reliefRecord(1, -9, 0, 2)); }, true},
    {"bevel_canvas_past_the_cap", [] { return bevelOf(reliefRecord(0, 12000, 1, 2)); }, true},
    {"emboss_canvas_past_the_cap", [] { return embossOf(reliefRecord(1, 12000, 0, 2)); }, true},
    {"emboss_pillow_chisel_huge", [] { return embossOf(reliefRecord(3, 1e30f, 1, 2, 3, 30, 1, -1e30f)); }, true},
    {"emboss_angle_nan", [] { return embossOf(reliefRecord(0, 40, 0, 2, 3, 30, 1, kNaN)); }, false},
    {"stroke_size_nan", [] { return strokeOf(kNaN, OUTSIDE); }, false},
    {"stroke_size_negative", [] { return strokeOf(-7, OUTSIDE); }, true},
    {"stroke_size_huge", [] { return strokeOf(1e9f, CENTRE); }, true},
    {"stroke_size_inf", [] { return strokeOf(kInf, INSIDE); }, true},
    {"stroke_position_odd", [] { return strokeOf(3, -5); }, false},
};

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
        FilterRun run(disc(16, 5));
        EXPECT_EQ(run.run(*layer), 0) << kind;
        EXPECT_TRUE(run.untouched()) << kind;
    }
}

TEST_P(FilterBadInput, DrawsWhatTheArithmeticGivesOrNothing)
{
    auto layer = GetParam().layer();
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

INSTANTIATE_TEST_SUITE_P(AllFilters, FilterBadInput, ::testing::ValuesIn(kSettings),
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
        {glowOf(OUTER_GLOW, 1000), large, "outer glow refused"},
        {glowOf(INNER_GLOW, 1000), large, "inner glow refused"},
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
    EXPECT_EQ(drawn.alphaPlane(), std::vector<unsigned char>(64, 255));
}
