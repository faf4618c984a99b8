#include "filters/LmLinearGradient.h"

#include "effect/LmLinearGradientProperty.h"
#include "filters/LmGradientTable.h"
#include "filters/LmMaskBox.h"
#include "foundation/LmConvert.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace LmFontEffect {

LmLinearGradient::LmLinearGradient() { style = LM_EFFECT_LINEAR_GRADIENT; }

LmGradientProperty* LmLinearGradient::makeRecord(const LmGradientProperty& g) const
{
    return new (std::nothrow) LmLinearGradientProperty(g.angle, g.scale, g.opacity, g.stopCount, nullptr);
}

int LmLinearGradient::paintRamp(const LmMaskBox& box, const unsigned* table)
{
    const int width = box.width(), height = box.height();
    // The constant is a little under pi / 180; the product is rounded to float once.
    const float a = (float)((double)property->angle * -0.01745328);
    float s = 0, c = 0;
    sincosf(a, &s, &c);
    const float L = std::fabs(tanf(a)) < (float)height / (float)width ? (float)width / std::fabs(c)
                                                                         : (float)height / std::fabs(s);
    const float k = (256 / property->scale) / L;
    const float ky = s * k, kx = c * k;
    const float cy = (float)height * 0.5f, cx = (float)width * 0.5f;
    return LmGradientTable::paint(box, table, [=](int x, int y) {
        const float v = ky * ((float)y - cy) + kx * ((float)x - cx);
        return std::min(std::max(lmToInt(v), -128), 127) + 128;
    });
}

} // namespace LmFontEffect
