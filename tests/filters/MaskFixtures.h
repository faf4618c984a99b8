#ifndef LMFONTEFFECT_TESTS_FILTERS_MASKFIXTURES_H
#define LMFONTEFFECT_TESTS_FILTERS_MASKFIXTURES_H

// Synthetic 8-bit coverage masks, filter layers in opaque white, and one layer's post-processing
// run over a mask; the tests of this folder take their common includes and names from here.

#include "effect/LmBevelProperty.h"
#include "effect/LmECore.h"
#include "effect/LmInnerShadowProperty.h"
#include "effect/LmOuterGlowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmStrokeProperty.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"
#include "filters/LmInnerGlow.h"
#include "filters/LmInnerShadow.h"
#include "filters/LmOuterGlow.h"
#include "filters/LmOuterShadow.h"
#include "filters/LmStroke.h"
#include "raster/LmBitmap.h"
#include "raster/LmRect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <vector>

namespace LmTest {

using namespace LmFontEffect;

struct Mask {
    unsigned width = 0, height = 0;
    std::vector<unsigned char> pixels;

    unsigned char at(int x, int y) const
    {
        return x < 0 || y < 0 || x >= (int)width || y >= (int)height ? 0 : pixels[(size_t)y * width + x];
    }
    LmRect box() const // of the non-zero pixels
    {
        int l = (int)width, t = (int)height, r = 0, b = 0;
        for (int y = 0; y < (int)height; ++y)
            for (int x = 0; x < (int)width; ++x)
                if (at(x, y)) l = std::min(l, x), t = std::min(t, y), r = std::max(r, x + 1), b = std::max(b, y + 1);
        return r > l ? LmRect(l, t, r, b) : LmRect();
    }
};

// Coverage by 4 x 4 supersampling of an inside test.
inline Mask rasterize(unsigned w, unsigned h, const std::function<bool(double, double)>& inside)
{
    Mask m{w, h, std::vector<unsigned char>((size_t)w * h)};
    for (unsigned y = 0; y < h; ++y)
        for (unsigned x = 0; x < w; ++x) {
            int hits = 0;
            for (int s = 0; s < 16; ++s) hits += inside(x + (s % 4 + 0.5) / 4, y + (s / 4 + 0.5) / 4);
            m.pixels[(size_t)y * w + x] = (unsigned char)((hits * 255 + 8) / 16);
        }
    return m;
}

inline double segmentDistance(double px, double py, double ax, double ay, double bx, double by)
{
    const double vx = bx - ax, vy = by - ay;
    const double t = std::min(1.0, std::max(0.0, ((px - ax) * vx + (py - ay) * vy) / (vx * vx + vy * vy)));
    const double dx = px - (ax + t * vx), dy = py - (ay + t * vy);
    return std::sqrt(dx * dx + dy * dy);
}

inline Mask ring(unsigned size, double outer, double inner)
{
    const double c = size / 2.0;
    return rasterize(size, size, [=](double x, double y) {
        const double d2 = (x - c) * (x - c) + (y - c) * (y - c);
        return d2 <= outer * outer && d2 >= inner * inner;
    });
}

inline Mask disc(unsigned size, double radius) { return ring(size, radius, 0); }

// A line about 1.5 pixels thick from corner to corner.
inline Mask diagonal(unsigned size)
{
    return rasterize(size, size, [=](double x, double y) { return segmentDistance(x, y, 6, 6, size - 6.0, size - 6.0) <= 0.75; });
}

// A capital A of three thick strokes: slanted sides and a counter.
inline Mask glyph(unsigned w, unsigned h)
{
    const double base = h - 5.0, mid = w / 2.0;
    return rasterize(w, h, [=](double x, double y) {
        return segmentDistance(x, y, 6, base, mid, 4) <= 3.5 || segmentDistance(x, y, mid, 4, w - 6.0, base) <= 3.5 ||
               segmentDistance(x, y, mid - 12, h * 0.62, mid + 12, h * 0.62) <= 2.5;
    });
}

// Columns l..r-1 and rows t..b-1 of coverage v.
inline Mask rect(unsigned w, unsigned h, int l, int t, int r, int b, unsigned char v = 255)
{
    Mask m{w, h, std::vector<unsigned char>((size_t)w * h)};
    for (int y = t; y < b; ++y) std::fill_n(&m.pixels[(size_t)y * w + l], r - l, v);
    return m;
}

// Random masks for the same-bytes tests, kinds 0 to 6: empty, full, no pixel fully covered, one
// pixel, noise, hairlines, glyph-like bars.
inline Mask randomMask(int kind, unsigned w, unsigned h, std::mt19937& rng)
{
    auto pick = [&](double hi) { return std::uniform_real_distribution<double>(0, hi)(rng); };
    Mask m{w, h, std::vector<unsigned char>((size_t)w * h, kind == 1 ? 255 : 0)};
    for (auto& p : m.pixels)
        if (kind == 2 || (kind == 4 && rng() % 2)) p = (unsigned char)(rng() % (kind == 2 ? 255 : 256));
    if (kind == 3) m.pixels[rng() % m.pixels.size()] = (unsigned char)(1 + rng() % 255);
    if (kind < 5) return m;
    const double half = kind == 5 ? 0.1 + pick(0.5) : 1 + pick(2), ax = pick(w), ay = pick(h), bx = pick(w);
    return rasterize(w, h, [=](double x, double y) { return segmentDistance(x, y, ax, ay, bx, (double)h) <= half; });
}

// A symmetric kernel's taps around a centre: the sum of at(i) * w[|i|] for |i| < w.size().
template <class At> int symmetricTaps(const std::vector<int>& w, At at)
{
    int acc = at(0) * w[0];
    for (int i = 1; i < (int)w.size(); ++i) acc += (at(-i) + at(i)) * w[i];
    return acc;
}

// A layer's post-processing of a mask into a cleared 32-bit target (the mask's size unless
// given). With an opaque white layer the target's alpha byte is its coverage, whichever blend
// mode it picks.
struct FilterRun {
    LmBitmap mask, target;
    LmRect textRect;

    FilterRun(const Mask& m, unsigned targetW = 0, unsigned targetH = 0)
        : mask(m.width, m.height, const_cast<unsigned char*>(m.pixels.data()), 1),
          target(targetW ? targetW : m.width, targetH ? targetH : m.height, 4), textRect(m.box())
    {
    }
    int run(LmECore& layer, int compositeMode = 0, LmBitmap* output = nullptr)
    {
        LmECore::ParamPostProcessing pp{&target, &mask, &textRect, compositeMode, output};
        return layer.doPostProcessing(&pp);
    }
    std::vector<unsigned char> alphaPlane() const
    {
        std::vector<unsigned char> a((size_t)target.width * target.height);
        for (size_t i = 0; i < a.size(); ++i) a[i] = target.pixels[i * 4 + 3];
        return a;
    }
    bool untouched() const
    {
        return std::all_of(target.pixels, target.pixels + (size_t)target.width * target.height * 4,
                           [](unsigned char b) { return b == 0; });
    }
};

enum { CENTRE = 0, OUTSIDE = 1, INSIDE = 2 }; // stroke positions

template <class Layer, class Property> std::unique_ptr<Layer> layerWith(Property p)
{
    auto layer = std::make_unique<Layer>();
    layer->setProperty(&p);
    return layer;
}
inline std::unique_ptr<LmStroke> strokeOf(float size, int position)
{
    return layerWith<LmStroke>(LmStrokeProperty(size, 0xFFFFFFFF, 1, 0, position));
}
inline std::unique_ptr<LmOuterShadow> outerOf(float angle, float distance, float size)
{
    return layerWith<LmOuterShadow>(LmOuterShadowProperty(angle, distance, size, 0xFFFFFFFF, 1));
}
inline std::unique_ptr<LmInnerShadow> innerOf(float angle, float distance, float size)
{
    return layerWith<LmInnerShadow>(LmInnerShadowProperty(angle, distance, size, 0xFFFFFFFF, 1));
}
// A lighting record, which the bevel and the emboss layer alike read.
inline LmBevelProperty reliefRecord(int style, float size, int technique, int soften = 0, float depth = 3,
                                    float altitude = 30, int direction = 1, float angle = 120)
{
    return LmBevelProperty(style, size, depth, direction, technique, soften, 1, angle, altitude, 0xFF000080, 1,
                           0xFFFFFFFF, 1);
}
// A glow layer of either kind with a copy of the stops.
enum { OUTER_GLOW = 3, INNER_GLOW = 4 };
inline std::unique_ptr<LmGlow> glowOf(int kind, float size, unsigned colour = 0xFFFFFFFF, std::vector<LmGradient> stops = {})
{
    std::unique_ptr<LmGlow> layer(kind == OUTER_GLOW ? (LmGlow*)new LmOuterGlow() : new LmInnerGlow());
    LmOuterGlowProperty p(size, colour, 1, (int)stops.size(), stops.empty() ? nullptr : stops.data());
    layer->setProperty(&p);
    return layer;
}

} // namespace LmTest

#endif
