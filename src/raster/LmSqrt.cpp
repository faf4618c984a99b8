#include "raster/LmSqrt.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace LmFontEffect {

float fsqrt(float x)
{
    int32_t i;
    std::memcpy(&i, &x, sizeof i);
    int32_t bits = 0x5F3759DF - (i >> 1);
    float y;
    std::memcpy(&y, &bits, sizeof y);
    y = y * (1.5f - 0.5f * x * y * y);
    return x * y;
}

namespace {

float gSqrtTable[LM_INT_SQRT_TABLE_SIZE];

// Filled once during start-up, never written afterwards.
struct SqrtTableInit {
    SqrtTableInit()
    {
        for (int i = 0; i < LM_INT_SQRT_TABLE_SIZE; ++i)
            gSqrtTable[i] = (float)(std::round(std::sqrt((double)i) * 1000.0) / 1000.0);
    }
} gSqrtTableInit;

} // namespace

const float* const LM_INT_SQRT_TABLE = gSqrtTable;

} // namespace LmFontEffect
