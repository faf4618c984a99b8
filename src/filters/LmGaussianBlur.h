#ifndef LMFONTEFFECT_FILTERS_LMGAUSSIANBLUR_H
#define LMFONTEFFECT_FILTERS_LMGAUSSIANBLUR_H

#include <cstddef>

namespace LmFontEffect {

// The integer Gaussian blur of the shadow and glow filters. Weights are fixed point: weights[0]
// is the scale (100 for the shadows, 128 for the glows) and weights[i] = round(scale * exp(-i^2 / d))
// with d = R^2 / ln 100, so the curve falls to a hundredth of the centre at distance R. A tap
// sums weights[|i|] * value over -R..R and divides by sum = weights[0] + 2 * sum(weights[1..R]).
class LmGaussianBlur {
public:
    // Largest radius the filters blur with; beyond it they draw nothing (the effect stack never
    // passes more than 100).
    static const int kMaxRadius = 1000;

    // Fills weights[0..R] (weights[0] only for R <= 0) and *sum.
    static void computeGaussianWeights(int* weights, int* sum, int R, int scale = 100);

    // The row passes take non-negative weights whose taps sum below 2^31.
    // Vertical taps of column x = x0..x1-1 around row y of src (row stride `stride`), each
    // acc / sum, into row[x]. The caller keeps rows y-R..y+R inside src. `inverse` gives
    // (255 * sum - acc) / sum instead: the blur of 255 - src, for weights summing to `sum`.
    static void verticalRow(const unsigned char* src, ptrdiff_t stride, int y, int x0, int x1, const int* weights,
                            int sum, int R, unsigned char* row, bool inverse = false);
    // Horizontal taps of row around x = x0..x1-1, each min(acc / sum, 255) (or as inverse
    // above), into out[x].
    static void horizontalRow(const unsigned char* row, int x0, int x1, const int* weights, int sum, int R,
                              unsigned char* out, bool inverse = false);

    // Blurs a W x H byte image whose outer R rows and columns are a frame: every output pixel
    // outside rows and columns R..(size - R - 1) is 0. tmp is a work row of W bytes. The two
    // passes are interleaved row by row (vertical into tmp, then horizontal into dst).
    static void blur(const unsigned char* src, unsigned char* dst, unsigned char* tmp, int W, int H, int R,
                     const int* weights, int sum);
};

} // namespace LmFontEffect

#endif
