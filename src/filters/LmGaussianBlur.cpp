#include "filters/LmGaussianBlur.h"

#include "raster/LmRowOps.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
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

namespace {

// Pixels summed at a time: the sums stay in the first-level cache.
constexpr int kChunk = 512;

// Division by a fixed positive divisor as a multiply and a shift, exact for every numerator in
// 0..2^31-1 (round-up multiplier of 32 + ceil(log2 d) bits).
struct Divider {
    uint64_t multiplier;
    int shift;
    explicit Divider(int d)
    {
        int l = 0;
        while (l < 31 && ((int64_t)1 << l) < d) ++l;
        shift = 32 + l;
        multiplier = (((uint64_t)1 << shift) / (uint64_t)d) + 1;
    }
    unsigned operator()(int n) const { return (unsigned)(((uint64_t)(uint32_t)n * multiplier) >> shift); }
};

// How a row's taps are summed and divided: 16-bit products where every weight allows them,
// single-precision quotients where the weights add up to no more than the divisor.
struct RowPlan {
    bool small = true, quick = false;
    RowPlan(const int* weights, int sum, int R)
    {
        int64_t total = 0;
        for (int t = 0; t <= R; ++t) {
            small = small && weights[t] >= 0 && weights[t] <= LmRowOps::kSmallWeight;
            total += (t ? 2 : 1) * (int64_t)weights[t];
        }
        quick = sum > 0 && sum < LmRowOps::kMaxQuotientDivisor && total <= sum;
    }
    void taps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights, int R) const
    {
        (small ? LmRowOps::sumSmallTaps : LmRowOps::sumTaps)(acc, c, step, count, weights, R);
    }
};

} // namespace

void LmGaussianBlur::verticalRow(const unsigned char* src, ptrdiff_t stride, int y, int x0, int x1,
                                 const int* weights, int sum, int R, unsigned char* row, bool inverse)
{
    const int top = inverse ? 255 * sum : 0, sign = inverse ? -1 : 1;
    const unsigned char* centre = src + (int64_t)y * stride;
    const Divider divide(sum);
    const RowPlan plan(weights, sum, R);
    int acc[kChunk];
    for (int from = x0; from < x1; from += kChunk) {
        const int to = std::min(x1, from + kChunk);
        plan.taps(acc, centre + from, stride, (size_t)(to - from), weights, R);
        if (plan.quick) {
            LmRowOps::quotients(row + from, acc, (size_t)(to - from), sum, inverse);
            continue;
        }
        // The weights sum to `sum`, so the quotient stays within a byte.
        for (int x = from; x < to; ++x) row[x] = (unsigned char)divide(top + sign * acc[x - from]);
    }
}

void LmGaussianBlur::horizontalRow(const unsigned char* row, int x0, int x1, const int* weights, int sum, int R,
                                   unsigned char* out, bool inverse)
{
    const int top = inverse ? 255 * sum : 0, sign = inverse ? -1 : 1;
    const Divider divide(sum);
    const RowPlan plan(weights, sum, R);
    int acc[kChunk];
    for (int from = x0; from < x1; from += kChunk) {
        const int to = std::min(x1, from + kChunk);
        plan.taps(acc, row + from, 1, (size_t)(to - from), weights, R);
        if (plan.quick) {
            LmRowOps::quotients(out + from, acc, (size_t)(to - from), sum, inverse);
            continue;
        }
        for (int x = from; x < to; ++x) out[x] = (unsigned char)std::min(divide(top + sign * acc[x - from]), 255u);
    }
}

void LmGaussianBlur::blur(const unsigned char* src, unsigned char* dst, unsigned char* tmp, int W, int H, int R,
                          const int* weights, int sum)
{
    if (W <= 0 || H <= 0) return;
    const ptrdiff_t stride = W;
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
