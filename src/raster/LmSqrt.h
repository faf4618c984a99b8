#ifndef LMFONTEFFECT_RASTER_LMSQRT_H
#define LMFONTEFFECT_RASTER_LMSQRT_H

#include <cstdint>
#include <cstring>

namespace LmFontEffect {

// Square root by one Newton step on the inverse-square-root estimate; keeps sqrtf out of the
// bevel and emboss inner loops. No special handling of 0, negative or non-finite input. Inline
// so that those loops can run it a vector at a time.
inline float fsqrt(float x)
{
    int32_t i;
    std::memcpy(&i, &x, sizeof i);
    int32_t bits = 0x5F3759DF - (i >> 1);
    float y;
    std::memcpy(&y, &bits, sizeof y);
    y = y * (1.5f - 0.5f * x * y * y);
    return x * y;
}

constexpr int LM_INT_SQRT_TABLE_SIZE = 5490;

// Entry n: sqrt(n) rounded to three decimals, for integer squared distances n = dx*dx + dy*dy.
extern const float* const LM_INT_SQRT_TABLE;

} // namespace LmFontEffect

#endif
