#ifndef LMFONTEFFECT_RASTER_LMROWOPS_H
#define LMFONTEFFECT_RASTER_LMROWOPS_H

#include <cstddef>
#include <cstdint>

namespace LmFontEffect {

// Byte-row loops of the morphological filters, vectorised for the best instruction set the CPU
// offers when the library is built with Highway (plain loops otherwise; same bytes either way).
// An output row may be one of the inputs; it must not overlap them otherwise.
class LmRowOps {
public:
    // out[i] = max(a[i], b[i]).
    static void maxOf(unsigned char* out, const unsigned char* a, const unsigned char* b, size_t count);
    // The same for floats, none of them NaN.
    static void maxOf(float* out, const float* a, const float* b, size_t count);
    // out[i] = max(out[i], m[i] - t), the difference floored at 0.
    static void raise(unsigned char* out, const unsigned char* m, size_t count, unsigned char t);
    // out[i] = max(in[i - 1], in[i + 1]), and in[i] too when withCentre: a running maximum one
    // pixel wider on each side. in[-1] and in[count] are read.
    static void widen(unsigned char* out, const unsigned char* in, size_t count, bool withCentre);
    // out[i] = min((c[i - 1] + c[i] + c[i + 1]) >> 2, 255) for i = 1..count-2, where c is the
    // column sum above + row + below (kept in `column`, count entries): one 3 x 3 spread step.
    static void spread(unsigned char* out, const unsigned char* above, const unsigned char* row,
                       const unsigned char* below, unsigned short* column, size_t count);
    // acc[i] = c[i] * weights[0] + sum over t = 1..R of (c[i + t * step] + c[i - t * step]) *
    // weights[t]: symmetric blur taps `step` bytes apart. The sums must stay below 2^31.
    static void sumTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights, int R);
    // sumTaps for weights of 0..kSmallWeight: a pair of bytes times such a weight fits 16 bits,
    // so twice the pixels go through each multiply.
    static const int kSmallWeight = 128;
    static void sumSmallTaps(int* acc, const unsigned char* c, ptrdiff_t step, size_t count, const int* weights,
                             int R);
    // out[i] = n / sum (truncating) with n = acc[i], or 255 x sum - acc[i] when inverse, for
    // 0 < sum < kMaxQuotientDivisor and every n in 0..255 x sum. Single-precision division is
    // exact there: n fits the mantissa, and a quotient below 256 lies at least 1/sum (more
    // than half its ulp) from the next integer.
    static const int kMaxQuotientDivisor = 65536;
    static void quotients(unsigned char* out, const int* acc, size_t count, int sum, bool inverse);

    // Pixel-row scans of the text output passes (32-bit pixels R, G, B, A in memory).
    // Number of leading zero bytes of p[0..count).
    static size_t zeroBytes(const unsigned char* p, size_t count);
    // Number of leading pixels whose alpha byte is `alpha`.
    static size_t alphaRun(const unsigned char* pixels, size_t count, unsigned char alpha);
    // Premultiplied source-over of ARGB words onto R, G, B, A pixels, a whole vector of pixels at
    // a time: returns how many leading pixels it did (the rest are the caller's).
    static size_t srcOverWords(unsigned char* dst, const unsigned int* src, size_t count);
    // Each pixel with a non-zero alpha trades bytes 0 and 2; every other pixel becomes 0.
    static void swapVisible(unsigned char* pixels, size_t count);

    // max(start, values[i] - subtrahends[i]) over i < count of each of `rows` rows, the rows of
    // each array `stride` floats apart. No NaN may arise; -0.0 and +0.0 are not told apart.
    static float maxDifference(const float* values, ptrdiff_t valueStride, const float* subtrahends,
                               ptrdiff_t subtrahendStride, size_t rows, size_t count, float start);
    // maxDifference for `cells` (up to 8) windows one value apart (values + k for cell k), each starting
    // from and returning its maximum in maxima[k]. Reads values up to count + cells - 1 along a row.
    static void maxDifferences(const float* values, ptrdiff_t valueStride, const float* subtrahends,
                               ptrdiff_t subtrahendStride, size_t rows, size_t count, float* maxima, size_t cells);
    // Bit i set when (firstDy + i)^2 + h[i]^2 < limit, for i < count <= 64: the rows of a window
    // whose nearest source (h columns away) may lie within a squared distance. The squares must
    // fit 31 bits; the 63 bytes after h[count - 1] must be readable too.
    static uint64_t rowsWithin(const unsigned char* h, size_t count, int32_t firstDy, int32_t limit);
};

} // namespace LmFontEffect

#endif
