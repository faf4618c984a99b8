// Our exact blur and stroke beside the routines a user might reach for instead, on the same mask
// in the same process: OpenCV's GaussianBlur at the radius where our kernel falls to 1/100, and
// a stroke built from OpenCV's Euclidean distance transform. One thread each.
#include "TextMask.h"

#include "effect/LmStrokeProperty.h"
#include "filters/LmGaussianBlur.h"
#include "filters/LmStroke.h"
#include "raster/LmBitmap.h"

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstring>
#include <vector>

using namespace LmFontEffect;

namespace {

// The mask's box copied into a zero frame of `frame` pixels on every side, as the filters do.
cv::Mat framedMask(int frame)
{
    const LmRect box = boxOf(textMask());
    cv::Mat framed = cv::Mat::zeros(box.height() + 2 * frame, box.width() + 2 * frame, CV_8UC1);
    for (int y = 0; y < box.height(); ++y)
        std::memcpy(framed.ptr<unsigned char>(y + frame) + frame, &textMask()[(size_t)(y + box.top) * kWidth + box.left],
                    (size_t)box.width());
    return framed;
}

// The outer shadow's blur: radius R, a frame of 2R.
void BM_BlurOurs(benchmark::State& state)
{
    const int R = (int)state.range(0);
    const cv::Mat src = framedMask(2 * R);
    cv::Mat dst(src.size(), CV_8UC1);
    std::vector<unsigned char> tmp((size_t)src.cols);
    std::vector<int> weights((size_t)R + 1);
    for (auto _ : state) {
        int sum = 0;
        LmGaussianBlur::computeGaussianWeights(weights.data(), &sum, R);
        LmGaussianBlur::blur(src.data, dst.data, tmp.data(), src.cols, src.rows, R, weights.data(), sum);
        benchmark::DoNotOptimize(dst.data);
    }
}

void BM_BlurOpenCV(benchmark::State& state)
{
    const int R = (int)state.range(0);
    const cv::Mat src = framedMask(2 * R);
    cv::Mat dst;
    const double sigma = R / std::sqrt(2 * std::log(100.0));
    for (auto _ : state) {
        cv::GaussianBlur(src, dst, cv::Size(2 * R + 1, 2 * R + 1), sigma, sigma, cv::BORDER_CONSTANT);
        benchmark::DoNotOptimize(dst.data);
    }
}

// Our outside stroke, one doPostProcessing into the full-size target.
void BM_StrokeOurs(benchmark::State& state)
{
    LmStroke stroke;
    LmStrokeProperty p((float)state.range(0), 0xFFD02020, 1.0f, 0, 1);
    stroke.setProperty(&p);
    LmBitmap mask(kWidth, kHeight, const_cast<unsigned char*>(textMask().data()), 1);
    LmBitmap target(kWidth, kHeight, 4);
    LmRect box = boxOf(textMask());
    for (auto _ : state) {
        LmECore::ParamPostProcessing pp{&target, &mask, &box, 0, nullptr};
        benchmark::DoNotOptimize(stroke.doPostProcessing(&pp));
    }
}

// The same width from a distance transform: distance of every pixel of the framed box to the
// nearest covered one, then coverage falling off over one pixel at the stroke's edge.
void BM_StrokeDistance(benchmark::State& state)
{
    const float size = (float)state.range(0);
    const cv::Mat src = framedMask((int)size + 1);
    cv::Mat outside, distance, coverage(src.size(), CV_8UC1);
    for (auto _ : state) {
        cv::threshold(src, outside, 0, 255, cv::THRESH_BINARY_INV);
        cv::distanceTransform(outside, distance, cv::DIST_L2, cv::DIST_MASK_PRECISE, CV_32F);
        for (int y = 0; y < distance.rows; ++y) {
            const float* d = distance.ptr<float>(y);
            unsigned char* c = coverage.ptr<unsigned char>(y);
            for (int x = 0; x < distance.cols; ++x) {
                const float v = size + 0.5f - d[x];
                c[x] = (unsigned char)(v <= 0.0f ? 0 : v >= 1.0f ? 255 : (int)(v * 255.0f + 0.5f));
            }
        }
        benchmark::DoNotOptimize(coverage.data);
    }
}

struct SingleThreaded {
    SingleThreaded() { cv::setNumThreads(0); }
} singleThreaded;

} // namespace

BENCHMARK(BM_BlurOurs)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BlurOpenCV)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StrokeOurs)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StrokeDistance)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
