#ifndef LMFONTEFFECT_FOUNDATION_LMCONVERT_H
#define LMFONTEFFECT_FOUNDATION_LMCONVERT_H

#include <climits>
#include <cmath>
#include <cstdint>

namespace LmFontEffect {

// Float-to-integer conversions that C leaves undefined for NaN and out-of-range values:
// truncation toward zero that saturates, NaN giving 0. Used wherever a caller's float
// becomes an integer.
inline int lmToInt(double v)
{
    if (std::isnan(v)) return 0;
    if (v >= 2147483647.0) return INT_MAX;
    if (v <= -2147483648.0) return INT_MIN;
    return (int)v;
}

inline unsigned lmToUnsigned(double v)
{
    if (std::isnan(v) || v <= 0.0) return 0;
    if (v >= 4294967295.0) return UINT_MAX;
    return (unsigned)v;
}

// A 64-bit sum or product brought back into the int range by saturation, never wrapping.
inline int32_t lmSaturate(int64_t v)
{
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return (int32_t)v;
}

} // namespace LmFontEffect

#endif
