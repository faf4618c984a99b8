#include "filters/LmGradientTable.h"

#include "effect/LmGradient.h"
#include "effect/LmStopsProperty.h"
#include "foundation/LmConvert.h"

#include <algorithm>
#include <new>

namespace LmFontEffect {

std::unique_ptr<LmGradient[]> LmGradientTable::copyStops(const LmStopsProperty& g, int* count)
{
    *count = 0;
    if (!g.stops || g.stopCount <= 0) return nullptr;
    if ((int64_t)g.stopCount > LmMaskBox::kMaxBytes / (int64_t)sizeof(LmGradient)) {
        *count = -1;
        return nullptr;
    }
    std::unique_ptr<LmGradient[]> copy(new (std::nothrow) LmGradient[(size_t)g.stopCount]);
    if (!copy) {
        *count = -1;
        return nullptr;
    }
    std::copy(g.stops, g.stops + g.stopCount, copy.get());
    *count = g.stopCount;
    return copy;
}

bool LmGradientTable::build(unsigned* table, const LmGradient* stops, int count)
{
    std::fill_n(table, kEntries, 0u);
    if (!stops || count <= 0) return false;
    if (count == 1) {
        std::fill_n(table, kEntries, stops[0].colour);
        return true;
    }
    table[0] = stops[0].colour;
    table[256] = stops[count - 1].colour;
    float p0 = stops[0].position, p1 = stops[1].position;
    unsigned c0 = stops[0].colour, c1 = stops[1].colour;
    int s = 0;
    for (int i = 1; i < 256; ++i) {
        const float t = i * 0.00390625;
        if (p1 < t && s + 2 < count) {
            p0 = p1;
            p1 = stops[s + 2].position;
            c0 = c1;
            c1 = stops[s + 2].colour;
            ++s;
        }
        // Two stops at one position divide by zero: the conversion saturates.
        const int w = lmToInt((t - p0) / (p1 - p0) * 256.0);
        table[i] = w < 1 ? c0 : w >= 256 ? c1 : blend(c0, c1, w);
    }
    return true;
}

unsigned LmGradientTable::blend(unsigned c0, unsigned c1, int w)
{
    const unsigned a = (unsigned)w, b = 256u - a;
    const unsigned low = ((a * (c1 & 0x00FF00FFu) + b * (c0 & 0x00FF00FFu)) >> 8) & 0x00FF00FFu;
    const unsigned high = (a * ((c1 >> 8) & 0x00FF00FFu) + b * ((c0 >> 8) & 0x00FF00FFu)) & 0xFF00FF00u;
    return low + high;
}

unsigned LmGradientTable::premultiply(unsigned colour)
{
    const unsigned A = colour >> 24;
    const unsigned r = std::min((((colour >> 16) & 0xFFu) + 1) * A >> 8, 255u);
    const unsigned g = std::min((((colour >> 8) & 0xFFu) + 1) * A >> 8, 255u);
    const unsigned b = std::min(((colour & 0xFFu) + 1) * A >> 8, 255u);
    return A << 24 | r << 16 | g << 8 | b;
}

} // namespace LmFontEffect
