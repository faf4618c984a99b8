#ifndef LMFONTEFFECT_RASTER_LMSQRT_H
#define LMFONTEFFECT_RASTER_LMSQRT_H

namespace LmFontEffect {

// Square root by one Newton step on the inverse-square-root estimate; keeps sqrtf out of the
// bevel and emboss inner loops. No special handling of 0, negative or non-finite input.
float fsqrt(float x);

constexpr int LM_INT_SQRT_TABLE_SIZE = 5490;

// Entry n: sqrt(n) rounded to three decimals, for integer squared distances n = dx*dx + dy*dy.
extern const float* const LM_INT_SQRT_TABLE;

} // namespace LmFontEffect

#endif
