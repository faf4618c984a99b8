#include "filters/LmMaskBox.h"

#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "raster/LmBitmap.h"
#include "raster/LmRect.h"

#include <algorithm>
#include <cstring>

namespace LmFontEffect {

const int64_t LmMaskBox::kMaxBytes = (int64_t)LmBitmap::kMaxPixels;
const int64_t LmMaskBox::kMaxWork = (int64_t)10000000000;

bool LmMaskBox::affordable(int64_t pixels, int64_t perPixel, const char* what)
{
    if (pixels <= 0 || perPixel <= 0 || pixels <= kMaxWork / perPixel) return true;
    LmLog::printLog(LM_LOG_WARN, "LmMaskBox", "%s refused: %lld pixels x %lld would take too long", what,
                    (long long)pixels, (long long)perPixel);
    Error::SetError(Error::LM_ERR_OUT_OF_RANGE);
    return false;
}

bool LmMaskBox::take(const LmECore::ParamPostProcessing* pp)
{
    if (!pp || !pp->textRect || !pp->target || !pp->mask || !pp->mask->pixels) return false;
    const int mw = (int)std::min<unsigned>(pp->mask->width, 0x7FFFFFFF);
    const int mh = (int)std::min<unsigned>(pp->mask->height, 0x7FFFFFFF);
    const LmRect& r = *pp->textRect;
    left = std::min(std::max(r.left, 0), mw);
    top = std::min(std::max(r.top, 0), mh);
    // A box given inside out is empty rather than negative.
    right = std::max(std::min(r.right, mw), left);
    bottom = std::max(std::min(r.bottom, mh), top);
    mask = pp->mask;
    target = pp->target;
    return true;
}

const unsigned char* LmMaskBox::row(int i) const
{
    return mask->pixels + ((int64_t)top + i) * (int64_t)mask->width + left;
}

void LmMaskBox::copyTo(unsigned char* dst, int64_t dstStride, int64_t dstX, int64_t dstY) const
{
    const int w = width();
    for (int i = 0; i < height(); ++i)
        std::memcpy(dst + (dstY + i) * dstStride + dstX, row(i), (size_t)w);
}

void* LmMaskBox::allocateBytes(int64_t count, int64_t elementSize, bool zeroed)
{
    if (count < 0 || count > kMaxBytes / elementSize) return nullptr;
    const size_t bytes = (size_t)std::max<int64_t>(count * elementSize, 1);
    return zeroed ? std::calloc(1, bytes) : std::malloc(bytes);
}

} // namespace LmFontEffect
