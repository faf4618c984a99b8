// The text-like mask every filter benchmark runs over: a line of about fifteen letter shapes of
// 9-pixel anti-aliased strokes in a 1024 x 256 byte image, and its covered box.
#ifndef LMFONTEFFECT_BENCH_TEXTMASK_H
#define LMFONTEFFECT_BENCH_TEXTMASK_H

#include "raster/LmRect.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using LmFontEffect::LmRect;

const int kWidth = 1024, kHeight = 256;

struct Segment {
    float ax, ay, bx, by;
};

float segmentDistance(float px, float py, const Segment& s)
{
    const float vx = s.bx - s.ax, vy = s.by - s.ay;
    float t = ((px - s.ax) * vx + (py - s.ay) * vy) / (vx * vx + vy * vy);
    t = std::min(1.0f, std::max(0.0f, t));
    const float dx = px - (s.ax + t * vx), dy = py - (s.ay + t * vy);
    return std::sqrt(dx * dx + dy * dy);
}

// A line of about fifteen letter-like shapes of anti-aliased strokes, 9 pixels thick, with
// slants, bowls and counters, filling the mask the way a large line of text would.
const std::vector<unsigned char>& textMask()
{
    static std::vector<unsigned char> mask = [] {
        std::vector<unsigned char> m((size_t)kWidth * kHeight, 0);
        std::vector<Segment> strokes;
        const float top = 40, base = 216, mid = 128;
        for (int letter = 0; letter < 15; ++letter) {
            const float x0 = 20 + letter * 66.0f, x1 = x0 + 48;
            switch (letter % 5) {
            case 0: // A
                strokes.push_back({x0, base, (x0 + x1) / 2, top});
                strokes.push_back({(x0 + x1) / 2, top, x1, base});
                strokes.push_back({x0 + 10, mid + 20, x1 - 10, mid + 20});
                break;
            case 1: // H
                strokes.push_back({x0, top, x0, base});
                strokes.push_back({x1, top, x1, base});
                strokes.push_back({x0, mid, x1, mid});
                break;
            case 2: // o, as an octagon of strokes
                for (int k = 0; k < 8; ++k) {
                    const float a0 = k * 0.785398f, a1 = (k + 1) * 0.785398f;
                    const float cx = (x0 + x1) / 2, cy = (mid + base) / 2 + 10, r = 34;
                    strokes.push_back({cx + r * std::cos(a0), cy + r * std::sin(a0), cx + r * std::cos(a1),
                                       cy + r * std::sin(a1)});
                }
                break;
            case 3: // v
                strokes.push_back({x0, mid - 10, (x0 + x1) / 2, base});
                strokes.push_back({(x0 + x1) / 2, base, x1, mid - 10});
                break;
            default: // l
                strokes.push_back({(x0 + x1) / 2, top, (x0 + x1) / 2, base});
                break;
            }
        }
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                float d = 1e9f;
                for (const Segment& s : strokes) d = std::min(d, segmentDistance(x + 0.5f, y + 0.5f, s));
                const float coverage = std::min(1.0f, std::max(0.0f, 4.5f + 0.5f - d));
                m[(size_t)y * kWidth + x] = (unsigned char)(coverage * 255 + 0.5f);
            }
        return m;
    }();
    return mask;
}

LmRect boxOf(const std::vector<unsigned char>& m)
{
    int l = kWidth, t = kHeight, r = 0, b = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            if (m[(size_t)y * kWidth + x]) l = std::min(l, x), t = std::min(t, y), r = std::max(r, x + 1), b = std::max(b, y + 1);
    return LmRect(l, t, r, b);
}

} // namespace

#endif
