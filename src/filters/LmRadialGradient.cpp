#include "filters/LmRadialGradient.h"

#include "effect/LmRadialGradientProperty.h"
#include "filters/LmGradientTable.h"
#include "filters/LmMaskBox.h"
#include "foundation/LmConvert.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace LmFontEffect {

LmRadialGradient::LmRadialGradient() { style = LM_EFFECT_RADIAL_GRADIENT; }

LmGradientProperty* LmRadialGradient::makeRecord(const LmGradientProperty& g) const
{
    return new (std::nothrow) LmRadialGradientProperty(g.angle, g.scale, g.opacity, g.stopCount, nullptr);
}

int LmRadialGradient::paintRamp(const LmMaskBox& box, const unsigned* table)
{
    const int width = box.width(), height = box.height();
    const float q = 256.0f / (float)width;
    const float f = (q + q) / property->scale;
    const float cy = (float)height * 0.5f, cx = (float)width * 0.5f;
    return LmGradientTable::paint(box, table, [=](int x, int y) {
        const float dy = (float)y - cy, dx = (float)x - cx;
        const float d = std::sqrt(dy * dy + dx * dx);
        return std::min(std::max(lmToInt(f * d), 0), 255);
    });
}

} // namespace LmFontEffect
