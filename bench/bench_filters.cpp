// Times the filters over a text-like 1024 x 256 mask: each filter's doPostProcessing alone,
// and a whole effect pass with the stroke and both shadows.
#include "effect/LmBevelProperty.h"
#include "effect/LmECore.h"
#include "effect/LmEffect.h"
#include "effect/LmEmbossProperty.h"
#include "effect/LmGlyph.h"
#include "effect/LmInnerGlowProperty.h"
#include "effect/LmInnerShadowProperty.h"
#include "effect/LmLinearGradientProperty.h"
#include "effect/LmOuterGlowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmRadialGradientProperty.h"
#include "effect/LmStrokeProperty.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"
#include "filters/LmInnerGlow.h"
#include "filters/LmInnerShadow.h"
#include "filters/LmLinearGradient.h"
#include "filters/LmOuterGlow.h"
#include "filters/LmOuterShadow.h"
#include "filters/LmPattern.h"
#include "filters/LmRadialGradient.h"
#include "filters/LmStroke.h"
#include "raster/LmBitmap.h"
#include "raster/LmRect.h"

#include "TextMask.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

using namespace LmFontEffect;

namespace {

void runFilter(benchmark::State& state, LmECore& layer)
{
    LmBitmap mask(kWidth, kHeight, const_cast<unsigned char*>(textMask().data()), 1);
    LmBitmap target(kWidth, kHeight, 4);
    LmRect box = boxOf(textMask());
    for (auto _ : state) {
        state.PauseTiming();
        std::memset(target.pixels, 0, (size_t)kWidth * kHeight * 4);
        state.ResumeTiming();
        LmECore::ParamPostProcessing pp{&target, &mask, &box, 0, nullptr};
        benchmark::DoNotOptimize(layer.doPostProcessing(&pp));
    }
}

void strokeAt(benchmark::State& state, int position)
{
    LmStroke stroke;
    LmStrokeProperty p((float)state.range(0), 0xFFD02020, 1.0f, 0, position);
    stroke.setProperty(&p);
    runFilter(state, stroke);
}

void BM_StrokeCentre(benchmark::State& state) { strokeAt(state, 0); }
void BM_StrokeOutside(benchmark::State& state) { strokeAt(state, 1); }
void BM_StrokeInside(benchmark::State& state) { strokeAt(state, 2); }

void BM_OuterShadow(benchmark::State& state)
{
    LmOuterShadow shadow;
    LmOuterShadowProperty p(120, 5, (float)state.range(0), 0xFF1030A0, 1.0f);
    shadow.setProperty(&p);
    runFilter(state, shadow);
}

void BM_InnerShadow(benchmark::State& state)
{
    LmInnerShadow shadow;
    LmInnerShadowProperty p(120, 5, (float)state.range(0), 0xFF106010, 1.0f);
    shadow.setProperty(&p);
    runFilter(state, shadow);
}

// A pass as font drawing runs it: outside stroke, both shadows and the text, the mask as one
// glyph placed inside the stack's margins.
void BM_WholePass(benchmark::State& state)
{
    const float size = (float)state.range(0);
    LmEffect stack(nullptr);
    stack.addStrokeText(size, 0xFFD02020, 1.0f, 0, 1);
    stack.addOuterShadowText(120, 5, size, 0xFF1030A0, 0.8f);
    stack.addInnerShadowText(120, 5, size, 0xFF106010, 0.7f);
    stack.addText(0xFFFFFFFF);
    const int left = stack.getLeftOffset(), top = stack.getTopOffset();
    const int width = kWidth + left + stack.getRightOffset(), height = kHeight + top + stack.getBottomOffset();
    LmGlyph glyph;
    glyph.pixels = const_cast<unsigned char*>(textMask().data());
    glyph.width = kWidth;
    glyph.height = kHeight;
    for (auto _ : state) {
        LmBitmap output((unsigned)width, (unsigned)height, 4);
        stack.initEffect(width, height);
        stack.setDstBitmap(&output);
        stack.renderEffectLayer(left, top, &glyph);
        stack.doEffectPostProcessing();
        stack.compositeLayers(&output);
        benchmark::DoNotOptimize(output.pixels);
    }
}

} // namespace

#define LM_FILTER_SIZES ->Arg(2)->Arg(10)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond)
BENCHMARK(BM_StrokeCentre) LM_FILTER_SIZES->Arg(200);
BENCHMARK(BM_StrokeOutside) LM_FILTER_SIZES->Arg(200);
BENCHMARK(BM_StrokeInside) LM_FILTER_SIZES->Arg(200);
BENCHMARK(BM_OuterShadow) LM_FILTER_SIZES;
BENCHMARK(BM_InnerShadow) LM_FILTER_SIZES;
BENCHMARK(BM_WholePass) LM_FILTER_SIZES;

namespace {

// The glows with a three-stop ramp, so that the colour table walks its stops.
template <class Layer, class Record> void glowAt(benchmark::State& state)
{
    LmGradient stops[3];
    const unsigned colours[3] = {0xFFFFE060, 0xFFFF6020, 0xFF8010A0};
    for (int i = 0; i < 3; ++i) {
        stops[i].colour = colours[i];
        stops[i].opacity = 1.0f;
        stops[i].position = i * 0.5f;
    }
    Layer glow;
    Record p((float)state.range(0), 0xFFFFC000, 1.0f, 3, stops);
    glow.setProperty(&p);
    runFilter(state, glow);
}

void BM_OuterGlow(benchmark::State& state) { glowAt<LmOuterGlow, LmOuterGlowProperty>(state); }
void BM_InnerGlow(benchmark::State& state) { glowAt<LmInnerGlow, LmInnerGlowProperty>(state); }

} // namespace

BENCHMARK(BM_OuterGlow) LM_FILTER_SIZES;
BENCHMARK(BM_InnerGlow) LM_FILTER_SIZES;

// Bevel and emboss: the tool's default looks (inside bevel, plain emboss), light at 120 / 30.
namespace {

template <class Layer, class Record> void reliefAt(benchmark::State& state, int style, int technique)
{
    Layer layer;
    Record p(style, (float)state.range(0), 3, 1, technique, 0, 1, 120, 30, 0xBF000000, 0.75f, 0xBFFFFFFF, 0.75f);
    layer.setProperty(&p);
    runFilter(state, layer);
}

void BM_BevelChiselled(benchmark::State& state) { reliefAt<LmBevel, LmBevelProperty>(state, 1, 1); }
void BM_BevelSmooth(benchmark::State& state) { reliefAt<LmBevel, LmBevelProperty>(state, 1, 0); }
void BM_EmbossChiselled(benchmark::State& state) { reliefAt<LmEmboss, LmEmbossProperty>(state, 0, 1); }
void BM_EmbossSmooth(benchmark::State& state) { reliefAt<LmEmboss, LmEmbossProperty>(state, 0, 0); }

} // namespace

#define LM_RELIEF_SIZES ->Arg(5)->Arg(20)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond)
BENCHMARK(BM_BevelChiselled) LM_RELIEF_SIZES;
BENCHMARK(BM_BevelSmooth) LM_RELIEF_SIZES;
BENCHMARK(BM_EmbossChiselled) LM_RELIEF_SIZES;
BENCHMARK(BM_EmbossSmooth) LM_RELIEF_SIZES;

// The fills: linear gradient at an angle (the argument, degrees), radial gradient and pattern at
// a scale (the argument, percent); five stops, and a 24 x 24 tile with transparent pixels.
namespace {

LmGradient kFillStops[] = {{0xFFFF0000, 1, 0}, {0xFFFFFF00, 1, 0.25f}, {0xFF00FF00, 1, 0.5f},
                           {0xFF00FFFF, 1, 0.75f}, {0xFF0000FF, 1, 1}};

template <class Layer, class Record> void fillAt(benchmark::State& state, float angle, float scale)
{
    Layer layer;
    Record p(angle, scale, 1.0f, 5, kFillStops);
    layer.setProperty(&p);
    runFilter(state, layer);
}

void BM_LinearGradient(benchmark::State& state)
{
    fillAt<LmLinearGradient, LmLinearGradientProperty>(state, (float)state.range(0), 1);
}

void BM_RadialGradient(benchmark::State& state)
{
    fillAt<LmRadialGradient, LmRadialGradientProperty>(state, 0, (float)state.range(0) / 100);
}

void BM_Pattern(benchmark::State& state)
{
    LmBitmap tile(24, 24, 4);
    for (unsigned i = 0; i < 24 * 24 * 4; ++i) tile.pixels[i] = (unsigned char)(i * 37 % 256);
    LmPattern pattern;
    LmPatternProperty p(&tile, (float)state.range(0) / 100, 1.0f);
    pattern.setProperty(&p);
    runFilter(state, pattern);
}

} // namespace

BENCHMARK(BM_LinearGradient)->Arg(0)->Arg(45)->Arg(90)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RadialGradient)->Arg(50)->Arg(100)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pattern)->Arg(50)->Arg(100)->Arg(200)->Arg(1000)->Unit(benchmark::kMillisecond);
