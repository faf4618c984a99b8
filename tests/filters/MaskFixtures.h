#ifndef LMFONTEFFECT_TESTS_FILTERS_MASKFIXTURES_H
#define LMFONTEFFECT_TESTS_FILTERS_MASKFIXTURES_H

// Synthetic 8-bit coverage masks, and one layer's post-processing run over them.

#include "effect/LmECore.h"
#include "raster/LmBitmap.h"
#include "raster/LmRect.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace LmTest {

struct Mask {
    unsigned width = 0, height = 0;
    std::vector<unsigned char> pixels;

    unsigned char at(int x, int y) const
    {
        return x < 0 || y < 0 || x >= (int)width || y >= (int)height ? 0 : pixels[(size_t)y * width + x];
    }
    LmFontEffect::LmRect box() const // of the non-zero pixels
    {
        int l = (int)width, t = (int)height, r = 0, b = 0;
        for (int y = 0; y < (int)height; ++y)
            for (int x = 0; x < (int)width; ++x)
                if (at(x, y)) l = std::min(l, x), t = std::min(t, y), r = std::max(r, x + 1), b = std::max(b, y + 1);
        return r > l ? LmFontEffect::LmRect(l, t, r, b) : LmFontEffect::LmRect();
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

// A layer's post-processing of a mask into a cleared 32-bit target (the mask's size unless
// given). With an opaque white colour the target's alpha byte is the layer's coverage, whichever
// blend mode the layer picks.
struct FilterRun {
    LmFontEffect::LmBitmap mask, target;
    LmFontEffect::LmRect textRect;

    FilterRun(const Mask& m, unsigned targetW = 0, unsigned targetH = 0)
        : mask(m.width, m.height, const_cast<unsigned char*>(m.pixels.data()), 1),
          target(targetW ? targetW : m.width, targetH ? targetH : m.height, 4), textRect(m.box())
    {
    }
    int run(LmFontEffect::LmECore& layer, int compositeMode = 0, LmFontEffect::LmBitmap* output = nullptr)
    {
        LmFontEffect::LmECore::ParamPostProcessing pp{&target, &mask, &textRect, compositeMode, output};
        return layer.doPostProcessing(&pp);
    }
    unsigned char alpha(int x, int y) const { return target.pixels[((size_t)y * target.width + x) * 4 + 3]; }
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

} // namespace LmTest

#endif
