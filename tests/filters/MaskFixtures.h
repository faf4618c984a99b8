#ifndef LMFONTEFFECT_TESTS_FILTERS_MASKFIXTURES_H
#define LMFONTEFFECT_TESTS_FILTERS_MASKFIXTURES_H

// Synthetic 8-bit coverage masks and a way to run one layer's post-processing over them.

#include "effect/LmECore.h"
#include "raster/LmBitmap.h"
#include "raster/LmRect.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace LmTest {

struct Mask {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<unsigned char> pixels;

    unsigned char at(int x, int y) const
    {
        if (x < 0 || y < 0 || x >= (int)width || y >= (int)height) return 0;
        return pixels[(size_t)y * width + x];
    }
    // Bounding box of the non-zero pixels (empty when there are none).
    LmFontEffect::LmRect box() const
    {
        int l = (int)width, t = (int)height, r = 0, b = 0;
        for (unsigned y = 0; y < height; ++y)
            for (unsigned x = 0; x < width; ++x)
                if (pixels[(size_t)y * width + x]) {
                    l = std::min(l, (int)x), t = std::min(t, (int)y);
                    r = std::max(r, (int)x + 1), b = std::max(b, (int)y + 1);
                }
        return r > l ? LmFontEffect::LmRect(l, t, r, b) : LmFontEffect::LmRect(0, 0, 0, 0);
    }
};

// Coverage by 4 x 4 supersampling of an inside test on pixel-space points.
inline Mask rasterize(unsigned w, unsigned h, const std::function<bool(double, double)>& inside)
{
    Mask m;
    m.width = w;
    m.height = h;
    m.pixels.assign((size_t)w * h, 0);
    for (unsigned y = 0; y < h; ++y)
        for (unsigned x = 0; x < w; ++x) {
            int hits = 0;
            for (int j = 0; j < 4; ++j)
                for (int i = 0; i < 4; ++i) hits += inside(x + (i + 0.5) / 4, y + (j + 0.5) / 4);
            m.pixels[(size_t)y * w + x] = (unsigned char)((hits * 255 + 8) / 16);
        }
    return m;
}

inline double segmentDistance(double px, double py, double ax, double ay, double bx, double by)
{
    const double vx = bx - ax, vy = by - ay;
    double t = ((px - ax) * vx + (py - ay) * vy) / (vx * vx + vy * vy);
    t = std::min(1.0, std::max(0.0, t));
    const double dx = px - (ax + t * vx), dy = py - (ay + t * vy);
    return std::sqrt(dx * dx + dy * dy);
}

inline Mask disc(unsigned size, double radius)
{
    const double c = size / 2.0;
    return rasterize(size, size, [=](double x, double y) { return (x - c) * (x - c) + (y - c) * (y - c) <= radius * radius; });
}

inline Mask ring(unsigned size, double outer, double inner)
{
    const double c = size / 2.0;
    return rasterize(size, size, [=](double x, double y) {
        const double d2 = (x - c) * (x - c) + (y - c) * (y - c);
        return d2 <= outer * outer && d2 >= inner * inner;
    });
}

// A line about 1.5 pixels thick from corner to corner, leaving a margin.
inline Mask diagonal(unsigned size)
{
    const double a = 6, b = size - 6.0;
    return rasterize(size, size, [=](double x, double y) { return segmentDistance(x, y, a, a, b, b) <= 0.75; });
}

// A capital A of three thick strokes, with slanted (anti-aliased) sides and a counter.
inline Mask glyph(unsigned w, unsigned h)
{
    const double top = 4, base = h - 5.0, mid = w / 2.0, half = 3.5;
    return rasterize(w, h, [=](double x, double y) {
        return segmentDistance(x, y, 6, base, mid, top) <= half || segmentDistance(x, y, mid, top, w - 6.0, base) <= half ||
               segmentDistance(x, y, mid - 12, h * 0.62, mid + 12, h * 0.62) <= 2.5;
    });
}

// A solid rectangle of coverage v inside an otherwise empty mask.
inline Mask rect(unsigned w, unsigned h, int l, int t, int r, int b, unsigned char v = 255)
{
    Mask m;
    m.width = w;
    m.height = h;
    m.pixels.assign((size_t)w * h, 0);
    for (int y = t; y < b; ++y)
        for (int x = l; x < r; ++x) m.pixels[(size_t)y * w + x] = v;
    return m;
}

// Runs a layer's post-processing of a mask into a cleared 32-bit target of the given size
// (the mask's own size by default). With the colour opaque white the target's alpha byte is the
// layer's coverage, whichever blend mode the layer picks.
struct FilterRun {
    LmFontEffect::LmBitmap mask;
    LmFontEffect::LmBitmap target;
    LmFontEffect::LmRect textRect;
    int result = -1;

    FilterRun(const Mask& m, unsigned targetW = 0, unsigned targetH = 0)
        : mask(m.width, m.height, const_cast<unsigned char*>(m.pixels.data()), 1),
          target(targetW ? targetW : m.width, targetH ? targetH : m.height, 4), textRect(m.box())
    {
    }

    int run(LmFontEffect::LmECore& layer, int compositeMode = 0, LmFontEffect::LmBitmap* output = nullptr)
    {
        LmFontEffect::LmECore::ParamPostProcessing pp{&target, &mask, &textRect, compositeMode, output};
        result = layer.doPostProcessing(&pp);
        return result;
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
        const size_t n = (size_t)target.width * target.height * 4;
        return std::all_of(target.pixels, target.pixels + n, [](unsigned char b) { return b == 0; });
    }
};

} // namespace LmTest

#endif
