// Degenerate input for the three mask filters: every case either draws what the arithmetic
// gives or nothing, and never touches memory outside a buffer (the sanitizer build checks the
// latter).
#include "filters/MaskFixtures.h"

#include "effect/LmInnerShadowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmStrokeProperty.h"
#include "filters/LmInnerShadow.h"
#include "filters/LmOuterShadow.h"
#include "filters/LmStroke.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <memory>
#include <string>

using namespace LmFontEffect;
using LmTest::FilterRun;
using LmTest::Mask;

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();

struct Setting {
    const char* name;
    int kind; // 1 outer shadow, 2 inner shadow, 10 stroke
    float angle;
    float distance;
    float size;
    int position;
};

std::unique_ptr<LmECore> layerOf(const Setting& s)
{
    std::unique_ptr<LmECore> layer;
    if (s.kind == 1) {
        layer = std::make_unique<LmOuterShadow>();
        LmOuterShadowProperty p(s.angle, s.distance, s.size, 0xFFFFFFFF, 1.0f);
        layer->setProperty(&p);
    } else if (s.kind == 2) {
        layer = std::make_unique<LmInnerShadow>();
        LmInnerShadowProperty p(s.angle, s.distance, s.size, 0xFFFFFFFF, 1.0f);
        layer->setProperty(&p);
    } else {
        layer = std::make_unique<LmStroke>();
        LmStrokeProperty p(s.size, 0xFFFFFFFF, 1.0f, 0, s.position);
        layer->setProperty(&p);
    }
    return layer;
}

const Setting kSettings[] = {
    {"outer_plain", 1, 120, 5, 3, 0},
    {"outer_size_nan", 1, 120, 5, kNaN, 0},
    {"outer_size_negative", 1, 120, 5, -7, 0},
    {"outer_size_huge", 1, 120, 5, 1e9f, 0},
    {"outer_size_inf", 1, 120, 5, kInf, 0},
    {"outer_size_max", 1, 45, 100, 100, 0},
    {"outer_angle_far", 1, -1e30f, 5, 3, 0},
    {"outer_angle_nan", 1, kNaN, 5, 3, 0},
    {"outer_distance_huge", 1, 30, 1e9f, 3, 0},
    {"outer_distance_negative", 1, 30, -12, 3, 0},
    {"inner_plain", 2, 120, 5, 3, 0},
    {"inner_size_nan", 2, 120, 5, kNaN, 0},
    {"inner_size_negative", 2, 120, 5, -7, 0},
    {"inner_size_huge", 2, 120, 5, 1e9f, 0},
    {"inner_size_max", 2, 200, 100, 100, 0},
    {"inner_angle_far", 2, 1e30f, 5, 3, 0},
    {"inner_distance_huge", 2, 30, -1e9f, 3, 0},
    {"inner_distance_nan", 2, 30, kNaN, 3, 0},
    {"stroke_centre", 10, 0, 0, 5, 0},
    {"stroke_outside_max", 10, 0, 0, 100, 1},
    {"stroke_inside_max", 10, 0, 0, 100, 2},
    {"stroke_size_nan", 10, 0, 0, kNaN, 1},
    {"stroke_size_negative", 10, 0, 0, -7, 1},
    {"stroke_size_huge", 10, 0, 0, 1e9f, 0},
    {"stroke_size_inf", 10, 0, 0, kInf, 2},
    {"stroke_position_odd", 10, 0, 0, 3, -5},
};

class FilterBadInput : public ::testing::TestWithParam<Setting> {};

std::string settingName(const ::testing::TestParamInfo<Setting>& info) { return info.param.name; }

} // namespace

TEST_P(FilterBadInput, MissingInputsDrawNothing)
{
    auto layer = layerOf(GetParam());
    FilterRun run(LmTest::disc(16, 5));
    EXPECT_EQ(layer->doPostProcessing(nullptr), 0);
    LmECore::ParamPostProcessing pp{&run.target, &run.mask, nullptr, 0, nullptr};
    EXPECT_EQ(layer->doPostProcessing(&pp), 0);
    pp = {nullptr, &run.mask, &run.textRect, 0, nullptr};
    EXPECT_EQ(layer->doPostProcessing(&pp), 0);
    pp = {&run.target, nullptr, &run.textRect, 0, nullptr};
    EXPECT_EQ(layer->doPostProcessing(&pp), 0);
    LmBitmap noPixels;
    pp = {&run.target, &noPixels, &run.textRect, 0, nullptr};
    EXPECT_EQ(layer->doPostProcessing(&pp), 0);
    EXPECT_TRUE(run.untouched());
}

TEST_P(FilterBadInput, TinyMasks)
{
    for (auto size : {std::make_pair(1u, 1u), std::make_pair(1u, 9u), std::make_pair(9u, 1u)}) {
        Mask m = LmTest::rect(size.first, size.second, 0, 0, (int)size.first, (int)size.second, 200);
        FilterRun run(m);
        auto layer = layerOf(GetParam());
        run.run(*layer);
        FilterRun bigTarget(m, 5, 5);
        bigTarget.run(*layer);
    }
}

TEST_P(FilterBadInput, BoxTouchingTheMaskEdges)
{
    Mask m = LmTest::rect(12, 10, 0, 0, 12, 10, 255);
    m.pixels[5 * 12 + 6] = 0;
    FilterRun run(m);
    auto layer = layerOf(GetParam());
    run.run(*layer);
    // A target smaller than the mask, and one offset by a single pixel.
    FilterRun small(m, 3, 2);
    small.run(*layer);
}

TEST_P(FilterBadInput, OddTextBoxes)
{
    auto layer = layerOf(GetParam());
    const LmRect boxes[] = {
        LmRect(4, 4, 4, 9),         // empty width
        LmRect(4, 4, 9, 4),         // empty height
        LmRect(9, 9, 3, 3),         // inside out
        LmRect(-50, -50, 500, 500), // far beyond the mask
        LmRect(30, 30, 40, 40),     // wholly outside
        LmRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX),
    };
    for (const LmRect& box : boxes) {
        FilterRun run(LmTest::disc(16, 5));
        run.textRect = box;
        run.run(*layer);
    }
    // An empty box draws nothing visible.
    FilterRun empty(LmTest::disc(16, 5));
    empty.textRect = LmRect(4, 4, 4, 9);
    empty.run(*layer);
    EXPECT_TRUE(empty.untouched());
}

TEST_P(FilterBadInput, TargetWithoutPixels)
{
    auto layer = layerOf(GetParam());
    FilterRun run(LmTest::disc(16, 5));
    LmBitmap none;
    LmBitmap tooBig(1u << 20, 1u << 20, 4); // over the cap: no pixels
    for (LmBitmap* target : {&none, &tooBig}) {
        LmECore::ParamPostProcessing pp{target, &run.mask, &run.textRect, 0, nullptr};
        layer->doPostProcessing(&pp);
    }
}

INSTANTIATE_TEST_SUITE_P(AllFilters, FilterBadInput, ::testing::ValuesIn(kSettings), settingName);

TEST(FilterBadInputResults, AbsurdSizesGiveUp)
{
    for (const Setting& s : kSettings) {
        const std::string name = s.name;
        if (name.find("huge") == std::string::npos && name.find("inf") == std::string::npos) continue;
        if (name.find("size") == std::string::npos) continue;
        FilterRun run(LmTest::disc(16, 5));
        auto layer = layerOf(s);
        EXPECT_EQ(run.run(*layer), 0) << name;
        EXPECT_TRUE(run.untouched()) << name;
    }
}

TEST(FilterBadInputResults, NegativeSizesActAsZero)
{
    // Shadows clamp the blur radius at 0; a negative stroke has no kernel at all.
    const Mask m = LmTest::disc(16, 5);
    for (int kind : {1, 2}) {
        FilterRun neg(m), zero(m);
        auto a = layerOf({"", kind, 0, 0, -7, 0});
        auto b = layerOf({"", kind, 0, 0, 0, 0});
        neg.run(*a);
        zero.run(*b);
        EXPECT_EQ(neg.alphaPlane(), zero.alphaPlane()) << kind;
    }
    FilterRun stroke(m);
    auto s = layerOf({"", 10, 0, 0, -7, 1});
    EXPECT_EQ(stroke.run(*s), 0);
    EXPECT_TRUE(stroke.untouched());
}
