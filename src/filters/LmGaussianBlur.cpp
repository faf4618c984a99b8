#include "filters/LmGaussianBlur.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace LmFontEffect {

void LmGaussianBlur::computeGaussianWeights(int* weights, int* sum, int R, int scale)
{
    if (!weights || !sum) return;
    weights[0] = scale;
    *sum = scale;
    if (R < 1) return;
    // ln 100 = 4.60517: exp(-R^2 / d) = 1/100.
    const float d = (float)R * (float)R / 4.60517;
    for (int i = 1; i <= R; ++i) {
        const float e = expf((float)(-(i * i)) / d);
        const float w = e * (float)scale;
        weights[i] = (int)((double)w + 0.5);
        *sum += 2 * weights[i];
    }
}

void LmGaussianBlur::verticalRow(const unsigned char* src, long stride, int y, int x0, int x1,
                                 const int* weights, int sum, int R, unsigned char* row)
{
    const unsigned char* centre = src + (long)y * stride;
    for (int x = x0; x < x1; ++x) {
        int acc = centre[x] * weights[0];
        for (int i = 1; i <= R; ++i) acc += (centre[x + i * stride] + centre[x - i * stride]) * weights[i];
        // The weights sum to `sum`, so the quotient stays within a byte.
        row[x] = (unsigned char)(acc / sum);
    }
}

void LmGaussianBlur::horizontalRow(const unsigned char* row, int x0, int x1, const int* weights, int sum, int R,
                                   unsigned char* out)
{
    for (int x = x0; x < x1; ++x) {
        int acc = row[x] * weights[0];
        for (int i = 1; i <= R; ++i) acc += (row[x + i] + row[x - i]) * weights[i];
        out[x] = (unsigned char)std::min(acc / sum, 255);
    }
}

void LmGaussianBlur::blur(const unsigned char* src, unsigned char* dst, unsigned char* tmp, int W, int H, int R,
                          const int* weights, int sum)
{
    if (W <= 0 || H <= 0) return;
    const long stride = W;
    if (W <= 2 * R || H <= 2 * R) {
        // All frame, nothing to blur.
        std::memset(dst, 0, (size_t)stride * (size_t)H);
        return;
    }
    std::memset(tmp, 0, (size_t)R);
    std::memset(tmp + W - R, 0, (size_t)R);
    std::memset(dst, 0, (size_t)stride * (size_t)R);
    for (int y = R; y < H - R; ++y) {
        unsigned char* out = dst + (long)y * stride;
        verticalRow(src, stride, y, R, W - R, weights, sum, R, tmp);
        std::memset(out, 0, (size_t)R);
        horizontalRow(tmp, R, W - R, weights, sum, R, out);
        std::memset(out + W - R, 0, (size_t)R);
    }
    std::memset(dst + (long)(H - R) * stride, 0, (size_t)stride * (size_t)R);
}

} // namespace LmFontEffect
