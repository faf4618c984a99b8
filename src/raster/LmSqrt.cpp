#include "raster/LmSqrt.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace LmFontEffect {

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
