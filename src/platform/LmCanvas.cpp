#include "platform/LmCanvas.h"

#include "foundation/LmConvert.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace LmFontEffect {

namespace {

// Pixel edge of a float rectangle edge: pixels whose centre lies at or right of a left edge
// and left of a right edge, i.e. the edge rounded half up.
int pixelEdge(float v) { return lmToInt(std::floor((double)v + 0.5)); }

// Kept local so the per-pixel loops inline it; mostly transparent images make the two
// early exits the common case.
inline void sourceOver(unsigned char* dst, const unsigned char* src)
{
    const uint32_t sa = src[3];
    const uint32_t da = dst[3];
    if (sa == 0) return;
    // Onto a clear pixel the doubles give the source itself: s * a / a rounds back to s.
    if (sa == 255 || da == 0) {
        std::memcpy(dst, src, 4);
        return;
    }
    // Scaled by 255^2: alpha D / 255 and colour N / D, D = 255 sa + da (255 - sa) and
    // N = 255 s sa + d da (255 - sa), so 2N + D stays below 2^27. Rounded to nearest, a value that is not an
    // exact half lies at least 1 / (2D) from the rounding edge, far beyond the doubles' error, so
    // both agree; an exact half goes to the doubles, which may round it either way.
    const uint32_t under = da * (255 - sa);
    const uint32_t D = 255 * sa + under;
    uint32_t out[3];
    for (int i = 0; i < 3; i++) {
        const uint32_t twiceN = 2 * (255 * src[i] * sa + dst[i] * under) + D;
        const uint32_t q = twiceN / (2 * D);
        if (q * 2 * D == twiceN) {
            LmCanvas::blendPixelInDoubles(dst, src);
            return;
        }
        out[i] = q;
    }
    // 2D + 255 is odd, so the alpha never lands on a half.
    const unsigned char px[4] = {(unsigned char)out[0], (unsigned char)out[1], (unsigned char)out[2],
                                 (unsigned char)((2 * D + 255) / 510)};
    std::memcpy(dst, px, 4);
}

} // namespace

LmCanvas::LmCanvas(unsigned char* pixels, int width, int height)
    : mPixels(pixels), mWidth(width > 0 ? width : 0), mHeight(height > 0 ? height : 0)
{
    if (!mPixels) mWidth = mHeight = 0;
    mClipLeft = 0;
    mClipTop = 0;
    mClipRight = mWidth;
    mClipBottom = mHeight;
}

void LmCanvas::clear()
{
    if (mPixels) std::memset(mPixels, 0, (size_t)mWidth * (size_t)mHeight * 4);
}

void LmCanvas::clipRect(float left, float top, float right, float bottom)
{
    if (std::isnan(left) || std::isnan(top) || std::isnan(right) || std::isnan(bottom)) {
        mClipRight = mClipLeft;
        mClipBottom = mClipTop;
        return;
    }
    mClipLeft = std::max(mClipLeft, pixelEdge(left));
    mClipTop = std::max(mClipTop, pixelEdge(top));
    mClipRight = std::min(mClipRight, pixelEdge(right));
    mClipBottom = std::min(mClipBottom, pixelEdge(bottom));
    if (mClipRight < mClipLeft) mClipRight = mClipLeft;
    if (mClipBottom < mClipTop) mClipBottom = mClipTop;
}

void LmCanvas::getClip(int* left, int* top, int* right, int* bottom) const
{
    if (left) *left = mClipLeft;
    if (top) *top = mClipTop;
    if (right) *right = mClipRight;
    if (bottom) *bottom = mClipBottom;
}

void LmCanvas::blendPixel(unsigned char* dst, const unsigned char* src) { sourceOver(dst, src); }

void LmCanvas::blendPixelInDoubles(unsigned char* dst, const unsigned char* src)
{
    const unsigned sa = src[3];
    if (sa == 0) return;
    if (sa == 255) {
        std::memcpy(dst, src, 4);
        return;
    }
    // Alpha a + b(1 - a); colour the premultiplied sum divided back by that alpha.
    const double a = sa / 255.0;
    const double b = dst[3] / 255.0;
    const double outA = a + b * (1.0 - a);
    for (int i = 0; i < 3; i++) {
        const double c = (src[i] * a + dst[i] * b * (1.0 - a)) / outA;
        dst[i] = (unsigned char)std::min(255.0, std::floor(c + 0.5));
    }
    dst[3] = (unsigned char)std::min(255.0, std::floor(outA * 255.0 + 0.5));
}

void LmCanvas::drawRect(float left, float top, float right, float bottom, uint32_t argb)
{
    if (!mPixels || std::isnan(left) || std::isnan(top) || std::isnan(right) || std::isnan(bottom)) return;
    const int l = std::max(mClipLeft, pixelEdge(left));
    const int t = std::max(mClipTop, pixelEdge(top));
    const int r = std::min(mClipRight, pixelEdge(right));
    const int b = std::min(mClipBottom, pixelEdge(bottom));
    const unsigned char src[4] = {(unsigned char)(argb >> 16), (unsigned char)(argb >> 8), (unsigned char)argb,
                                  (unsigned char)(argb >> 24)};
    for (int y = t; y < b; y++) {
        unsigned char* p = mPixels + ((size_t)y * (size_t)mWidth + (size_t)l) * 4;
        for (int x = l; x < r; x++, p += 4) sourceOver(p, src);
    }
}

void LmCanvas::drawImage(const unsigned char* rgba, int width, int height, int x, int y)
{
    if (!mPixels || !rgba || width <= 0 || height <= 0) return;
    // 64-bit edges: x + width may pass INT_MAX.
    const long long l = std::max<long long>(mClipLeft, x);
    const long long t = std::max<long long>(mClipTop, y);
    const long long r = std::min<long long>(mClipRight, (long long)x + width);
    const long long b = std::min<long long>(mClipBottom, (long long)y + height);
    for (long long row = t; row < b; row++) {
        unsigned char* d = mPixels + ((size_t)row * (size_t)mWidth + (size_t)l) * 4;
        const unsigned char* s = rgba + ((size_t)(row - y) * (size_t)width + (size_t)(l - x)) * 4;
        for (long long col = l; col < r; col++, d += 4, s += 4) sourceOver(d, s);
    }
}

} // namespace LmFontEffect
