// Built once per instruction set by Highway's foreach_target when available.

// The plain loops of the pixel-row scans serve the vectors' tails and builds without Highway;
// defined once however often the file is included.
#ifndef LMFONTEFFECT_ROW_SCANS_PLAIN
#define LMFONTEFFECT_ROW_SCANS_PLAIN
#include <cstddef>
#include <cstdint>

namespace LmFontEffect {
namespace {

size_t zeroBytesFrom(const unsigned char* p, size_t i, size_t count)
{
    while (i < count && p[i] == 0) ++i;
    return i;
}

size_t alphaRunFrom(const unsigned char* pixels, size_t i, size_t count, unsigned char alpha)
{
    while (i < count && pixels[4 * i + 3] == alpha) ++i;
    return i;
}

void swapVisibleFrom(unsigned char* pixels, size_t i, size_t count)
{
    for (unsigned char* p = pixels + 4 * i; p < pixels + 4 * count; p += 4) {
        const unsigned char r = p[0];
        p[0] = p[3] ? p[2] : 0;
        p[1] = p[3] ? p[1] : 0;
        p[2] = p[3] ? r : 0;
    }
}

} // namespace
} // namespace LmFontEffect
#endif

#if defined(LM_HAVE_HWY)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "raster/LmRowOps.cpp"
#include <hwy/foreach_target.h> // IWYU pragma: keep
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace LmFontEffect {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

template <class T> void MaxOfRows(T* out, const T* a, const T* b, size_t count)
{
    const hn::ScalableTag<T> d;
    const size_t lanes = hn::Lanes(d);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) hn::StoreU(hn::Max(hn::LoadU(d, a + i), hn::LoadU(d, b + i)), d, out + i);
    for (; i < count; ++i) out[i] = a[i] > b[i] ? a[i] : b[i];
}

void MaxOf(unsigned char* out, const unsigned char* a, const unsigned char* b, size_t count)
{
    MaxOfRows(out, a, b, count);
}

void MaxOfFloats(float* out, const float* a, const float* b, size_t count) { MaxOfRows(out, a, b, count); }

void Raise(unsigned char* out, const unsigned char* m, size_t count, unsigned char t)
{
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    const auto vt = hn::Set(d, t);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        hn::StoreU(hn::Max(hn::LoadU(d, out + i), hn::SaturatedSub(hn::LoadU(d, m + i), vt)), d, out + i);
    for (; i < count; ++i) {
        const unsigned char v = m[i] > t ? (unsigned char)(m[i] - t) : 0;
        if (v > out[i]) out[i] = v;
    }
}

void Widen(unsigned char* out, const unsigned char* in, size_t count, bool withCentre)
{
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        auto v = hn::Max(hn::LoadU(d, in + i - 1), hn::LoadU(d, in + i + 1));
        if (withCentre) v = hn::Max(v, hn::LoadU(d, in + i));
        hn::StoreU(v, d, out + i);
    }
    for (; i < count; ++i) {
        const unsigned char* p = in + i; // p[-1] stays a signed offset
        unsigned char v = p[-1] > p[1] ? p[-1] : p[1];
        if (withCentre && p[0] > v) v = p[0];
        out[i] = v;
    }
}

void SumTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights, int R)
{
    const hn::ScalableTag<int32_t> d;
    const hn::Rebind<uint8_t, decltype(d)> bytes;
    const size_t lanes = hn::Lanes(d);
    size_t i = 0;
    // The sums of a vector of pixels stay in a register over all the taps.
    for (; i + lanes <= count; i += lanes) {
        auto sum = hn::Mul(hn::PromoteTo(d, hn::LoadU(bytes, c + i)), hn::Set(d, weights[0]));
        for (int t = 1; t <= R; ++t) {
            const auto pair = hn::Add(hn::PromoteTo(d, hn::LoadU(bytes, c + i + t * step)),
                                      hn::PromoteTo(d, hn::LoadU(bytes, c + i - t * step)));
            sum = hn::Add(sum, hn::Mul(pair, hn::Set(d, weights[t])));
        }
        hn::StoreU(sum, d, acc + i);
    }
    for (; i < count; ++i) {
        // Offsets stay signed: a tap above the row is a negative step from the pixel.
        const unsigned char* p = c + i;
        int sum = p[0] * weights[0];
        for (int t = 1; t <= R; ++t) sum += (p[t * step] + p[-t * step]) * weights[t];
        acc[i] = sum;
    }
}

void SumSmallTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights, int R)
{
    size_t i = 0;
#if HWY_TARGET != HWY_SCALAR // one lane cannot hold two pixels
    const hn::ScalableTag<uint16_t> d;
    const hn::Rebind<uint8_t, decltype(d)> bytes;
    const hn::Repartition<uint32_t, decltype(d)> wide;
    const hn::RebindToSigned<decltype(wide)> out;
    const size_t lanes = hn::Lanes(d);
    // Products of 16 bits; each 32-bit lane holds an even pixel's (low half) and an odd
    // pixel's. Summed as 32 bits (wrapping), the lanes give even + 65536 x odd; the high
    // halves summed apart give odd, and with it even, exactly (both stay below 2^31).
    auto block = [&](size_t at) {
        auto all = hn::BitCast(wide, hn::Mul(hn::PromoteTo(d, hn::LoadU(bytes, c + at)), hn::Set(d, (uint16_t)weights[0])));
        auto odd = hn::ShiftRight<16>(all);
        for (int t = 1; t <= R; ++t) {
            const auto pair = hn::Add(hn::PromoteTo(d, hn::LoadU(bytes, c + at + t * step)),
                                      hn::PromoteTo(d, hn::LoadU(bytes, c + at - t * step)));
            const auto product = hn::BitCast(wide, hn::Mul(pair, hn::Set(d, (uint16_t)weights[t])));
            all = hn::Add(all, product);
            odd = hn::Add(odd, hn::ShiftRight<16>(product));
        }
        const auto even = hn::Sub(all, hn::ShiftLeft<16>(odd));
        hn::StoreInterleaved2(hn::BitCast(out, even), hn::BitCast(out, odd), out, acc + at);
    };
    for (; i + lanes <= count; i += lanes) block(i);
    // The last pixels as one more vector ending at the row's end, overlapping the one before.
    if (i < count && count >= lanes) block(count - lanes), i = count;
#endif
    for (; i < count; ++i) {
        const unsigned char* p = c + i; // taps above are negative offsets
        int sum = p[0] * weights[0];
        for (int t = 1; t <= R; ++t) sum += (p[t * step] + p[-t * step]) * weights[t];
        acc[i] = sum;
    }
}

void Quotients(unsigned char* out, const int* acc, size_t count, int sum, bool inverse)
{
    size_t i = 0;
    const int top = inverse ? 255 * sum : 0, sign = inverse ? -1 : 1;
#if !HWY_ARCH_ARM_V7 // its division is an estimate, not correctly rounded
    const hn::ScalableTag<int32_t> d;
    const hn::Rebind<float, decltype(d)> real;
    const hn::Rebind<uint8_t, decltype(d)> bytes;
    const size_t lanes = hn::Lanes(d);
    const auto divisor = hn::Set(real, (float)sum);
    for (; i + lanes <= count; i += lanes) {
        auto n = hn::LoadU(d, acc + i);
        if (inverse) n = hn::Sub(hn::Set(d, top), n);
        // Non-negative, so the conversion's truncation is the floor.
        const auto q = hn::ConvertTo(d, hn::Div(hn::ConvertTo(real, n), divisor));
        hn::StoreU(hn::DemoteTo(bytes, q), bytes, out + i);
    }
#endif
    for (; i < count; ++i) out[i] = (unsigned char)((top + sign * acc[i]) / sum);
}

// The largest values[i] - subtrahends[i] over `rows` rows for K (1, 2, 4 or 8) cells side by side,
// cell k reading values + k: each subtrahend vector serves K value vectors. Named accumulators,
// not an array: scalable vectors cannot be array elements.
template <size_t K>
void MaxDifferencesOf(const float* values, ptrdiff_t valueStride, const float* subtrahends, ptrdiff_t subtrahendStride,
                      size_t rows, size_t count, float* maxima)
{
    const hn::ScalableTag<float> d;
    const size_t lanes = hn::Lanes(d);
    auto b0 = hn::Set(d, maxima[0]), b1 = b0, b2 = b0, b3 = b0, b4 = b0, b5 = b0, b6 = b0, b7 = b0;
    if (K > 1) b1 = hn::Set(d, maxima[1]);
    if (K > 2) b2 = hn::Set(d, maxima[2]), b3 = hn::Set(d, maxima[3]);
    if (K > 4) b4 = hn::Set(d, maxima[4]), b5 = hn::Set(d, maxima[5]), b6 = hn::Set(d, maxima[6]), b7 = hn::Set(d, maxima[7]);
    float m[K];
    for (size_t k = 0; k < K; ++k) m[k] = maxima[k];
    for (size_t y = 0; y < rows; ++y) {
        const float* v = values + (ptrdiff_t)y * valueStride;
        const float* s = subtrahends + (ptrdiff_t)y * subtrahendStride;
        if (count < lanes) {
            for (size_t k = 0; k < K; ++k)
                for (size_t i = 0; i < count; ++i) m[k] = v[i + k] - s[i] > m[k] ? v[i + k] - s[i] : m[k];
            continue;
        }
        // The last vector overlaps the one before it: a maximum may see a lane twice.
        for (size_t i = 0;; i += lanes) {
            if (i + lanes > count) i = count - lanes;
            const auto t = hn::LoadU(d, s + i);
            auto step = [&](decltype(b0)& b, size_t k) { b = hn::Max(b, hn::Sub(hn::LoadU(d, v + i + k), t)); };
            step(b0, 0);
            if (K > 1) step(b1, 1);
            if (K > 2) step(b2, 2), step(b3, 3);
            if (K > 4) step(b4, 4), step(b5, 5), step(b6, 6), step(b7, 7);
            if (i + lanes == count) break;
        }
    }
    const decltype(b0)* best[8] = {&b0, &b1, &b2, &b3, &b4, &b5, &b6, &b7};
    for (size_t k = 0; k < K; ++k) {
        const float vm = hn::GetLane(hn::MaxOfLanes(d, *best[k]));
        maxima[k] = vm > m[k] ? vm : m[k];
    }
}

float MaxDifference(const float* values, ptrdiff_t valueStride, const float* subtrahends, ptrdiff_t subtrahendStride,
                    size_t rows, size_t count, float start)
{
    MaxDifferencesOf<1>(values, valueStride, subtrahends, subtrahendStride, rows, count, &start);
    return start;
}

void MaxDifferences(const float* values, ptrdiff_t valueStride, const float* subtrahends, ptrdiff_t subtrahendStride,
                    size_t rows, size_t count, float* maxima, size_t cells)
{
    if (cells == 8)
        MaxDifferencesOf<8>(values, valueStride, subtrahends, subtrahendStride, rows, count, maxima);
    else if (cells == 4)
        MaxDifferencesOf<4>(values, valueStride, subtrahends, subtrahendStride, rows, count, maxima);
    else if (cells == 2)
        MaxDifferencesOf<2>(values, valueStride, subtrahends, subtrahendStride, rows, count, maxima);
    else
        for (size_t k = 0; k < cells; ++k)
            MaxDifferencesOf<1>(values + k, valueStride, subtrahends, subtrahendStride, rows, count, maxima + k);
}

// 0..63 to load: an iota built lane by lane on the stack stalls the load that follows it.
alignas(64) const int32_t kSteps[64 + 64] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                                             16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31,
                                             32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47,
                                             48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63};

uint64_t RowsWithin(const unsigned char* h, size_t count, int32_t firstDy, int32_t limit)
{
    const hn::ScalableTag<int32_t> d;
    const hn::Rebind<uint8_t, decltype(d)> bytes;
    const size_t lanes = hn::Lanes(d);
    // Whole vectors only: the bytes past count are read and their bits dropped.
    const auto bound = hn::Set(d, limit);
    uint64_t bits = 0;
    for (size_t i = 0; i < count; i += lanes) {
        const auto n = hn::PromoteTo(d, hn::LoadU(bytes, h + i));
        const auto dy = hn::Add(hn::LoadU(d, kSteps + i), hn::Set(d, firstDy));
        const auto below = hn::Lt(hn::Add(hn::Mul(dy, dy), hn::Mul(n, n)), bound);
        // Read back byte by byte: a wider load than the store stalls.
        uint8_t packed[8];
        const size_t written = hn::StoreMaskBits(d, below, packed);
        uint64_t chunk = 0;
        for (size_t b = 0; b < written; ++b) chunk |= (uint64_t)packed[b] << (8 * b);
        if (lanes < 64) chunk &= (uint64_t(1) << lanes) - 1;
        bits |= chunk << i;
    }
    return count < 64 ? bits & ((uint64_t(1) << count) - 1) : bits;
}

void Spread(unsigned char* out, const unsigned char* above, const unsigned char* row, const unsigned char* below,
            unsigned short* column, size_t count)
{
    const hn::ScalableTag<uint16_t> d;
    const hn::Rebind<uint8_t, decltype(d)> bytes;
    const size_t lanes = hn::Lanes(d);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto sum = hn::Add(hn::Add(hn::PromoteTo(d, hn::LoadU(bytes, above + i)), hn::PromoteTo(d, hn::LoadU(bytes, row + i))),
                                 hn::PromoteTo(d, hn::LoadU(bytes, below + i)));
        hn::StoreU(sum, d, column + i);
    }
    for (; i < count; ++i) column[i] = (unsigned short)(above[i] + row[i] + below[i]);
    const hn::RebindToSigned<decltype(d)> signedLanes; // byte demotion starts from signed lanes
    const auto top = hn::Set(d, 255);
    for (i = 1; i + lanes + 1 <= count; i += lanes) {
        const auto sum = hn::Add(hn::Add(hn::LoadU(d, column + i - 1), hn::LoadU(d, column + i)), hn::LoadU(d, column + i + 1));
        hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(signedLanes, hn::Min(hn::ShiftRight<2>(sum), top))), bytes, out + i);
    }
    for (; i + 1 < count; ++i) {
        const int v = (column[i - 1] + column[i] + column[i + 1]) >> 2;
        out[i] = (unsigned char)(v < 255 ? v : 255);
    }
}

size_t ZeroBytes(const unsigned char* p, size_t count)
{
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto set = hn::Ne(hn::LoadU(d, p + i), hn::Zero(d));
        if (!hn::AllFalse(d, set)) return i + (size_t)hn::FindFirstTrue(d, set);
    }
    return zeroBytesFrom(p, i, count);
}

// Pixels as little-endian words: alpha in bits 24..31.
size_t AlphaRun(const unsigned char* pixels, size_t count, unsigned char alpha)
{
    const hn::ScalableTag<uint32_t> d;
    const size_t lanes = hn::Lanes(d);
    const auto mask = hn::Set(d, 0xFF000000u);
    const auto wanted = hn::Set(d, (uint32_t)alpha << 24);
    const uint32_t* words = reinterpret_cast<const uint32_t*>(pixels);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto other = hn::Ne(hn::And(hn::LoadU(d, words + i), mask), wanted);
        if (!hn::AllFalse(d, other)) return i + (size_t)hn::FindFirstTrue(d, other);
    }
    return alphaRunFrom(pixels, i, count, alpha);
}

void SwapVisible(unsigned char* pixels, size_t count)
{
    const hn::ScalableTag<uint32_t> d;
    const size_t lanes = hn::Lanes(d);
    const auto keep = hn::Set(d, 0xFF00FF00u);
    const auto low = hn::Set(d, 0xFFu);
    const auto alpha = hn::Set(d, 0xFF000000u);
    uint32_t* words = reinterpret_cast<uint32_t*>(pixels);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto v = hn::LoadU(d, words + i);
        const auto swapped = hn::Or(hn::And(v, keep),
                                    hn::Or(hn::And(hn::ShiftRight<16>(v), low), hn::ShiftLeft<16>(hn::And(v, low))));
        hn::StoreU(hn::IfThenElseZero(hn::Ne(hn::And(v, alpha), hn::Zero(d)), swapped), d, words + i);
    }
    swapVisibleFrom(pixels, i, count);
}

// Each byte b = min(((255 - a) (b + 1) >> 8) + s, 255) with s the source word's channel and a
// its alpha; products of up to 255 x 256 fit the 16-bit lanes. The even and odd bytes of each
// lane are multiplied apart and joined again.
size_t SrcOverWords(unsigned char* dst, const unsigned int* src, size_t count)
{
#if HWY_TARGET == HWY_SCALAR // one lane cannot be split into bytes
    (void)dst, (void)src, (void)count;
    return 0;
#else
    const hn::ScalableTag<uint32_t> d32;
    const hn::Repartition<uint16_t, decltype(d32)> d16;
    const hn::Repartition<uint8_t, decltype(d32)> d8;
    const size_t lanes = hn::Lanes(d32);
    const auto keep = hn::Set(d32, 0xFF00FF00u);
    const auto low = hn::Set(d32, 0xFFu);
    const auto low16 = hn::Set(d16, 0xFF), high16 = hn::Set(d16, 0xFF00), one16 = hn::Set(d16, 1);
    const uint32_t* words = reinterpret_cast<const uint32_t*>(src);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto w = hn::LoadU(d32, words + i);
        // ARGB by bits to the destination's R, G, B, A bytes.
        const auto s = hn::Or(hn::And(w, keep), hn::Or(hn::And(hn::ShiftRight<16>(w), low), hn::ShiftLeft<16>(hn::And(w, low))));
        const auto k32 = hn::Sub(low, hn::ShiftRight<24>(w));
        const auto k = hn::BitCast(d16, hn::Or(k32, hn::ShiftLeft<16>(k32)));
        const auto b = hn::BitCast(d16, hn::LoadU(d8, dst + 4 * i));
        const auto even = hn::ShiftRight<8>(hn::Mul(k, hn::Add(hn::And(b, low16), one16)));
        const auto odd = hn::And(hn::Mul(k, hn::Add(hn::ShiftRight<8>(b), one16)), high16);
        hn::StoreU(hn::SaturatedAdd(hn::BitCast(d8, hn::Or(even, odd)), hn::BitCast(d8, s)), d8, dst + 4 * i);
    }
    return i;
#endif
}

} // namespace HWY_NAMESPACE
} // namespace LmFontEffect
HWY_AFTER_NAMESPACE();
#endif

#if !defined(LM_HAVE_HWY) || HWY_ONCE
#include "raster/LmRowOps.h"

namespace LmFontEffect {

#if defined(LM_HAVE_HWY)
HWY_EXPORT(MaxOf);
HWY_EXPORT(MaxOfFloats);
HWY_EXPORT(Raise);
HWY_EXPORT(Widen);
HWY_EXPORT(SumTaps);
HWY_EXPORT(Spread);
HWY_EXPORT(MaxDifference);
HWY_EXPORT(RowsWithin);
HWY_EXPORT(MaxDifferences);
HWY_EXPORT(SumSmallTaps);
HWY_EXPORT(Quotients);

void LmRowOps::quotients(unsigned char* out, const int* acc, size_t count, int sum, bool inverse)
{
    HWY_DYNAMIC_DISPATCH(Quotients)(out, acc, count, sum, inverse);
}

void LmRowOps::sumSmallTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights,
                            int R)
{
    HWY_DYNAMIC_DISPATCH(SumSmallTaps)(acc, c, step, count, weights, R);
}

void LmRowOps::maxOf(unsigned char* out, const unsigned char* a, const unsigned char* b, size_t count)
{
    HWY_DYNAMIC_DISPATCH(MaxOf)(out, a, b, count);
}

void LmRowOps::maxOf(float* out, const float* a, const float* b, size_t count)
{
    HWY_DYNAMIC_DISPATCH(MaxOfFloats)(out, a, b, count);
}

void LmRowOps::raise(unsigned char* out, const unsigned char* m, size_t count, unsigned char t)
{
    HWY_DYNAMIC_DISPATCH(Raise)(out, m, count, t);
}

void LmRowOps::widen(unsigned char* out, const unsigned char* in, size_t count, bool withCentre)
{
    HWY_DYNAMIC_DISPATCH(Widen)(out, in, count, withCentre);
}

void LmRowOps::sumTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights, int R)
{
    HWY_DYNAMIC_DISPATCH(SumTaps)(acc, c, step, count, weights, R);
}

void LmRowOps::spread(unsigned char* out, const unsigned char* above, const unsigned char* row,
                      const unsigned char* below, unsigned short* column, size_t count)
{
    HWY_DYNAMIC_DISPATCH(Spread)(out, above, row, below, column, count);
}

float LmRowOps::maxDifference(const float* values, ptrdiff_t valueStride, const float* subtrahends,
                              ptrdiff_t subtrahendStride, size_t rows, size_t count, float start)
{
    return HWY_DYNAMIC_DISPATCH(MaxDifference)(values, valueStride, subtrahends, subtrahendStride, rows, count, start);
}

uint64_t LmRowOps::rowsWithin(const unsigned char* h, size_t count, int32_t firstDy, int32_t limit)
{
    return HWY_DYNAMIC_DISPATCH(RowsWithin)(h, count, firstDy, limit);
}

void LmRowOps::maxDifferences(const float* values, ptrdiff_t valueStride, const float* subtrahends,
                              ptrdiff_t subtrahendStride, size_t rows, size_t count, float* maxima, size_t cells)
{
    HWY_DYNAMIC_DISPATCH(MaxDifferences)(values, valueStride, subtrahends, subtrahendStride, rows, count, maxima, cells);
}

HWY_EXPORT(SrcOverWords);
size_t LmRowOps::srcOverWords(unsigned char* dst, const unsigned int* src, size_t count)
{
    return HWY_DYNAMIC_DISPATCH(SrcOverWords)(dst, src, count);
}

HWY_EXPORT(ZeroBytes);
HWY_EXPORT(AlphaRun);
HWY_EXPORT(SwapVisible);

size_t LmRowOps::zeroBytes(const unsigned char* p, size_t count) { return HWY_DYNAMIC_DISPATCH(ZeroBytes)(p, count); }

size_t LmRowOps::alphaRun(const unsigned char* pixels, size_t count, unsigned char alpha)
{
    return HWY_DYNAMIC_DISPATCH(AlphaRun)(pixels, count, alpha);
}

void LmRowOps::swapVisible(unsigned char* pixels, size_t count) { HWY_DYNAMIC_DISPATCH(SwapVisible)(pixels, count); }
#else
void LmRowOps::maxOf(unsigned char* out, const unsigned char* a, const unsigned char* b, size_t count)
{
    for (size_t i = 0; i < count; ++i) out[i] = a[i] > b[i] ? a[i] : b[i];
}

void LmRowOps::maxOf(float* out, const float* a, const float* b, size_t count)
{
    for (size_t i = 0; i < count; ++i) out[i] = a[i] > b[i] ? a[i] : b[i];
}

void LmRowOps::raise(unsigned char* out, const unsigned char* m, size_t count, unsigned char t)
{
    for (size_t i = 0; i < count; ++i) {
        const unsigned char v = m[i] > t ? (unsigned char)(m[i] - t) : 0;
        out[i] = out[i] > v ? out[i] : v;
    }
}

void LmRowOps::widen(unsigned char* out, const unsigned char* in, size_t count, bool withCentre)
{
    for (size_t i = 0; i < count; ++i) {
        const unsigned char* p = in + i; // p[-1] stays a signed offset
        unsigned char v = p[-1] > p[1] ? p[-1] : p[1];
        if (withCentre && p[0] > v) v = p[0];
        out[i] = v;
    }
}

void LmRowOps::sumTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights, int R)
{
    for (size_t i = 0; i < count; ++i) acc[i] = c[i] * weights[0];
    for (int t = 1; t <= R; ++t)
        for (size_t i = 0; i < count; ++i) {
            const unsigned char* p = c + i; // taps above are negative offsets
            acc[i] += (p[t * step] + p[-t * step]) * weights[t];
        }
}

void LmRowOps::sumSmallTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights,
                            int R)
{
    sumTaps(acc, c, step, count, weights, R);
}

void LmRowOps::quotients(unsigned char* out, const int* acc, size_t count, int sum, bool inverse)
{
    const int top = inverse ? 255 * sum : 0, sign = inverse ? -1 : 1;
    for (size_t i = 0; i < count; ++i) out[i] = (unsigned char)((top + sign * acc[i]) / sum);
}

void LmRowOps::spread(unsigned char* out, const unsigned char* above, const unsigned char* row,
                      const unsigned char* below, unsigned short* column, size_t count)
{
    for (size_t i = 0; i < count; ++i) column[i] = (unsigned short)(above[i] + row[i] + below[i]);
    for (size_t i = 1; i + 1 < count; ++i) {
        const int v = (column[i - 1] + column[i] + column[i + 1]) >> 2;
        out[i] = (unsigned char)(v < 255 ? v : 255);
    }
}

float LmRowOps::maxDifference(const float* values, ptrdiff_t valueStride, const float* subtrahends,
                              ptrdiff_t subtrahendStride, size_t rows, size_t count, float start)
{
    float m = start;
    for (size_t y = 0; y < rows; ++y)
        for (size_t i = 0; i < count; ++i) {
            const float k = values[(ptrdiff_t)y * valueStride + i] - subtrahends[(ptrdiff_t)y * subtrahendStride + i];
            if (k > m) m = k;
        }
    return m;
}

void LmRowOps::maxDifferences(const float* values, ptrdiff_t valueStride, const float* subtrahends,
                              ptrdiff_t subtrahendStride, size_t rows, size_t count, float* maxima, size_t cells)
{
    for (size_t k = 0; k < cells; ++k)
        maxima[k] = maxDifference(values + k, valueStride, subtrahends, subtrahendStride, rows, count, maxima[k]);
}

uint64_t LmRowOps::rowsWithin(const unsigned char* h, size_t count, int32_t firstDy, int32_t limit)
{
    uint64_t bits = 0;
    for (size_t i = 0; i < count; ++i) {
        const int32_t dy = firstDy + (int32_t)i, n = h[i];
        if (dy * dy + n * n < limit) bits |= uint64_t(1) << i;
    }
    return bits;
}

size_t LmRowOps::srcOverWords(unsigned char*, const unsigned int*, size_t) { return 0; }

size_t LmRowOps::zeroBytes(const unsigned char* p, size_t count) { return zeroBytesFrom(p, 0, count); }

size_t LmRowOps::alphaRun(const unsigned char* pixels, size_t count, unsigned char alpha)
{
    return alphaRunFrom(pixels, 0, count, alpha);
}

void LmRowOps::swapVisible(unsigned char* pixels, size_t count) { swapVisibleFrom(pixels, 0, count); }
#endif

} // namespace LmFontEffect
#endif
