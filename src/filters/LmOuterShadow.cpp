#include "filters/LmOuterShadow.h"

#include "effect/LmOuterShadowProperty.h"
#include "filters/LmGaussianBlur.h"
#include "filters/LmMaskBox.h"
#include "foundation/LmConvert.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>

namespace LmFontEffect {

namespace {

int saturate(int64_t v) { return (int)std::min<int64_t>(std::max<int64_t>(v, INT_MIN), INT_MAX); }

int roundAway(float v) { return v > 0 ? lmToInt(v + 0.5) : lmToInt(v + -0.5); }

} // namespace

LmOuterShadow::LmOuterShadow() { style = LM_EFFECT_OUTER_SHADOW; }

LmOuterShadow::~LmOuterShadow()
{
    delete property;
    property = nullptr;
}

void LmOuterShadow::computeShift(float angle, float distance, int* x, int* y)
{
    float s = 0, c = 0;
    // The light's angle in radians, with 3.14159 for pi.
    sincosf(angle * 3.14159f / 180.0, &s, &c);
    const float fx = -(c * distance);
    const float fy = s * distance;
    *x = roundAway(fx);
    *y = roundAway(fy);
}

void LmOuterShadow::setProperty(LmProperty* p)
{
    const LmShadowProperty* s = dynamic_cast<const LmShadowProperty*>(p);
    if (!s) return;
    replaceRecord(property,
                  new (std::nothrow) LmOuterShadowProperty(s->angle, s->distance, s->size, s->colour, s->opacity));
    // From the copy: s may have been the record just replaced.
    shiftX = shiftY = 0;
    if (property) computeShift(property->angle, property->distance, &shiftX, &shiftY);
}

LmProperty* LmOuterShadow::getProperty() { return property; }

int LmOuterShadow::blurReach() const { return property ? lmToInt(property->size + 0.5f) : 0; }

int LmOuterShadow::trailingOffset(int shift) const
{
    const int64_t v = (int64_t)blurReach() - shift;
    return saturate(shift < 0 ? v : std::max<int64_t>(v, 0));
}

int LmOuterShadow::leadingOffset(int shift) const
{
    const int64_t v = (int64_t)blurReach() + shift;
    return saturate(shift < 0 ? std::max<int64_t>(v, 0) : v);
}

int LmOuterShadow::getLeftOffset() { return trailingOffset(shiftX); }

int LmOuterShadow::getRightOffset() { return leadingOffset(shiftX); }

int LmOuterShadow::getTopOffset() { return trailingOffset(shiftY); }

int LmOuterShadow::getBottomOffset() { return leadingOffset(shiftY); }

void LmOuterShadow::computeGaussianWeights(int* weights, int* sum, int R)
{
    LmGaussianBlur::computeGaussianWeights(weights, sum, R);
}

int LmOuterShadow::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || !box.take(pp)) return 0;
    const int R = std::max(lmToInt((double)property->size + 0.5), 0);
    if (R > LmGaussianBlur::kMaxRadius) return 0;
    // The blur needs R pixels of frame to run into and R more that stay empty.
    const int64_t M = 2 * (int64_t)R;

    const int64_t dstW = box.target->width, dstH = box.target->height;
    if (box.right + M + shiftX < 0 || box.left - M + shiftX >= dstW) return 0;
    if (box.bottom + M + shiftY < 0 || box.top - M + shiftY >= dstH) return 0;

    const int64_t W = box.width() + 2 * M, H = box.height() + 2 * M;
    if (!LmMaskBox::affordable(W * H, R + 1, "outer shadow")) return 0;
    LmMaskBox::Block<unsigned char> out = LmMaskBox::allocate<unsigned char>(W * H, false);
    LmMaskBox::Block<unsigned char> src = LmMaskBox::allocate<unsigned char>(W * H, true);
    LmMaskBox::Block<int> weights = LmMaskBox::allocate<int>(R + 1, false);
    LmMaskBox::Block<unsigned char> tmp = LmMaskBox::allocate<unsigned char>(W, false);
    if (!out || !src || !weights || !tmp) return 0;

    int sum = 0;
    computeGaussianWeights(weights.get(), &sum, R);
    box.copyTo(src.get(), W, M, M);
    LmGaussianBlur::blur(src.get(), out.get(), tmp.get(), (int)W, (int)H, R, weights.get(), sum);

    LmBlender::drawBitmapBlend8((int)(box.left - M + shiftX), (int)(box.top - M + shiftY), box.target, out.get(),
                                (int)W, (int)H, (int)W, property->colour, LME_BLEND_DST_OVER);
    return 1;
}

} // namespace LmFontEffect
