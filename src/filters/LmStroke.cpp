#include "filters/LmStroke.h"

#include "effect/LmStrokeProperty.h"
#include "filters/LmMaskBox.h"
#include "foundation/LmConvert.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"
#include "raster/LmRowOps.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

namespace LmFontEffect {

namespace {

// Coverage 0..1 as a byte, rounded.
unsigned coverageByte(double v)
{
    if (!(v > 0.0)) v = 0.0; // NaN too
    if (v > 1.0) v = 1.0;
    double scaled = v * 255.0;
    if (scaled > 255.0) scaled = 255.0;
    return lmToUnsigned(0.5 + scaled);
}

// One source pixel's window: every destination byte below 255 takes max(itself, q - t), where
// t = 255 - a dilates the value a and t = a dilates its inverse.
inline void applyWindow(unsigned char* topLeft, long dstStride, const unsigned char* kernel, int k, int t)
{
    for (int j = 0; j < k; ++j) {
        unsigned char* d = topLeft + j * dstStride;
        const unsigned char* q = kernel + (long)j * k;
        for (int i = 0; i < k; ++i) {
            if (d[i] == 255) continue;
            const int c = q[i] - t;
            if (c > d[i]) d[i] = (unsigned char)c;
        }
    }
}

int dilate(void* argsPtr, bool outside, bool inside)
{
    const StrokeDTArgs* a = static_cast<const StrokeDTArgs*>(argsPtr);
    if (!a || !a->dst || !a->src || !a->kernel || a->kernelSize < 1) return 0;
    const int k = a->kernelSize;
    const int n = (k - 1) >> 1;
    const long dstStride = a->dstStride;
    // The centre worker keeps the inverse's dilation in the second plane.
    unsigned char* const insidePlane = a->dst + (outside ? (long)a->planeSize : 0L);
    for (int y = a->rowBegin; y < a->rowEnd; ++y) {
        const unsigned char* s = a->src + (long)(a->srcY + y) * a->srcStride + a->srcX;
        const long windowRow = (long)(a->dstY + y - n) * dstStride;
        for (int x = 0; x < a->width; ++x) {
            const int v = s[x];
            const long window = windowRow + a->dstX + x - n;
            if (outside && v != 0) applyWindow(a->dst + window, dstStride, a->kernel, k, 255 - v);
            if (inside && v != 255) applyWindow(insidePlane + window, dstStride, a->kernel, k, v);
        }
    }
    return 0;
}

// One level of the disc: the kernel rows +-dy hold bytes >= level for |dx| <= width.
struct SpanLevel {
    int width;
    int level;
    int dy;
    bool operator<(const SpanLevel& o) const
    {
        return width != o.width ? width < o.width : level != o.level ? level < o.level : dy < o.dy;
    }
};

// The disc as levels: each row of the kernel is symmetric and falls off from the centre column,
// and rows dy and -dy are equal, so max over (dx, dy) of (q + a) is max over levels of (level +
// the running maximum of a over |dx| <= width in the rows +-dy). Levels come sorted by width,
// then level. Returns false for a kernel without that shape.
bool kernelLevels(const unsigned char* kernel, int k, std::vector<SpanLevel>* levels)
{
    const int n = (k - 1) >> 1;
    for (int j = 0; j < k; ++j)
        if (std::memcmp(kernel + (int64_t)j * k, kernel + (int64_t)(k - 1 - j) * k, (size_t)k) != 0) return false;
    levels->clear();
    for (int dy = 0; dy <= n; ++dy) {
        const unsigned char* q = kernel + (int64_t)(dy + n) * k + n;
        for (int i = 1; i <= n; ++i)
            if (q[i] != q[-i] || q[i] > q[i - 1]) return false;
        for (int i = 0; i <= n && q[i] != 0; ++i)
            if (i == n || q[i + 1] != q[i]) levels->push_back({i, q[i], dy});
    }
    std::sort(levels->begin(), levels->end());
    return true;
}

// Running maxima of the source rows, one pixel wider on each side per step.
class GrownRows {
public:
    // A row: one zero column, margin columns, the source, margin columns, one zero column.
    bool reset(int rows, int width, int margin)
    {
        this->rows = rows;
        this->margin = margin;
        stride = (int64_t)width + 2 * (int64_t)margin + 2;
        this->width = width;
        grown = 0;
        try {
            now.assign((size_t)(stride * rows), 0);
            next.assign((size_t)(stride * rows), 0);
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }
    void clear()
    {
        std::fill(now.begin(), now.end(), 0);
        std::fill(next.begin(), next.end(), 0);
        grown = 0;
    }
    // Pixel x of row y, x from -margin to width + margin - 1.
    unsigned char* row(int y) { return now.data() + y * stride + 1 + margin; }
    void grow()
    {
        ++grown;
        const int64_t from = -grown, to = (int64_t)width + grown; // columns that can be non-zero
        for (int y = 0; y < rows; ++y)
            LmRowOps::widen(next.data() + y * stride + 1 + margin + from, row(y) + from, (size_t)(to - from), grown == 1);
        now.swap(next);
    }

private:
    std::vector<unsigned char> now, next;
    int64_t stride = 0;
    int rows = 0, width = 0, margin = 0, grown = 0;
};

// The same dilation as the windowed one, by running maxima: the source rows are widened one
// pixel per step and every kernel level of that width is folded into the destination rows it
// reaches. Cost: rows x (width + 2n) x (n + number of levels), against source pixels x k^2 for
// the windows. Falls back to the windows for a kernel of another shape or when the work rows
// cannot be had.
int spanDilate(void* argsPtr, bool outside, bool inside)
{
    const StrokeDTArgs* a = static_cast<const StrokeDTArgs*>(argsPtr);
    if (!a || !a->dst || !a->src || !a->kernel || a->kernelSize < 1) return 0;
    const int k = a->kernelSize;
    const int n = (k - 1) >> 1;
    const int rows = a->rowEnd - a->rowBegin;
    if (rows <= 0 || a->width <= 0) return 0;
    std::vector<SpanLevel> levels;
    GrownRows grown;
    std::vector<unsigned char> acc;
    bool ready = (k & 1) && kernelLevels(a->kernel, k, &levels);
    try {
        if (ready) acc.resize((size_t)a->width + 2 * (size_t)n);
    } catch (const std::bad_alloc&) {
        ready = false;
    }
    if (!ready || !grown.reset(rows, a->width, n)) return dilate(argsPtr, outside, inside);

    for (int plane = 0; plane < 2; ++plane) {
        const bool inverse = plane == 1;
        if (inverse ? !inside : !outside) continue;
        if (inverse && outside) grown.clear();
        unsigned char* const out = a->dst + (inverse && outside ? (int64_t)a->planeSize : 0) + a->dstX +
                                   (int64_t)(a->dstY + a->rowBegin) * a->dstStride;
        for (int y = 0; y < rows; ++y) {
            const unsigned char* s = a->src + (int64_t)(a->srcY + a->rowBegin + y) * a->srcStride + a->srcX;
            unsigned char* g = grown.row(y);
            for (int x = 0; x < a->width; ++x) g[x] = (unsigned char)(inverse ? 255 - s[x] : s[x]);
        }
        int w = 0;
        for (size_t first = 0; first < levels.size();) {
            while (w < levels[first].width) grown.grow(), ++w;
            size_t last = first;
            while (last < levels.size() && levels[last].width == w) ++last;
            const int count = a->width + 2 * w;
            // Destination row Y gathers the source rows Y - dy and Y + dy of each level.
            for (int Y = -n; Y < rows + n; ++Y) {
                unsigned char* d = out + (int64_t)Y * a->dstStride - w;
                for (size_t l = first; l < last;) {
                    size_t e = l;
                    const unsigned char* one = nullptr;
                    bool many = false;
                    for (; e < last && levels[e].level == levels[l].level; ++e) {
                        for (int side = 0; side < (levels[e].dy ? 2 : 1); ++side) {
                            const int y = side ? Y + levels[e].dy : Y - levels[e].dy;
                            if (y < 0 || y >= rows) continue;
                            const unsigned char* m = grown.row(y) - w;
                            if (!one) {
                                one = m;
                            } else {
                                LmRowOps::maxOf(acc.data(), many ? acc.data() : one, m, (size_t)count);
                                many = true;
                            }
                        }
                    }
                    if (one) LmRowOps::raise(d, many ? acc.data() : one, (size_t)count, (unsigned char)(255 - levels[l].level));
                    l = e;
                }
            }
            first = last;
        }
    }
    return 0;
}

} // namespace

int makeCircleKernel(unsigned char** out, float r)
{
    const int n = lmToInt(r + 0.5);
    const int64_t k = 2 * (int64_t)n + 1;
    if (!out || n < 0 || n > LmStroke::kMaxRadius) return (int)std::max<int64_t>(std::min<int64_t>(k, INT_MAX), 0);
    unsigned char* kernel = static_cast<unsigned char*>(std::malloc((size_t)(k * k)));
    if (!kernel) return (int)k;
    *out = kernel;
    for (int y = 0; y < k; ++y) {
        for (int x = 0; x < k; ++x) {
            const int dy = std::abs(y - n), dx = std::abs(x - n);
            const float d = sqrtf((float)(dy * dy + dx * dx));
            // Coverage of a pixel whose centre lies d from the disc's: full inside r, none
            // beyond r + 1, linear between.
            kernel[y * k + x] = (unsigned char)coverageByte(r - d + 1.0);
        }
    }
    // Below radius 1 the centre's coverage is the radius itself.
    kernel[n * k + n] = (unsigned char)coverageByte(r);
    return (int)k;
}

int partalDTStrokeOutside(void* args) { return dilate(args, true, false); }

int partalDTStrokeInside(void* args) { return dilate(args, false, true); }

int partalDTStrokeCenter(void* args) { return dilate(args, true, true); }

int spanStrokeOutside(void* args) { return spanDilate(args, true, false); }

int spanStrokeInside(void* args) { return spanDilate(args, false, true); }

int spanStrokeCenter(void* args) { return spanDilate(args, true, true); }

LmStroke::LmStroke() { style = LM_EFFECT_STROKE; }

LmStroke::~LmStroke()
{
    delete property;
    property = nullptr;
}

void LmStroke::setProperty(LmProperty* p)
{
    const LmStrokeProperty* s = dynamic_cast<const LmStrokeProperty*>(p);
    if (!s) return;
    replaceRecord(property, new (std::nothrow) LmStrokeProperty(s->size, s->colour, s->opacity, s->extra, s->position));
}

LmProperty* LmStroke::getProperty() { return property; }

int LmStroke::getOffset()
{
    if (!property) return 0;
    if (property->position == 1) return lmToInt(property->size + 0.5);
    if (property->position == 0) return lmToInt(property->size * 0.5 + 0.5);
    return 0;
}

int LmStroke::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || !box.take(pp)) return 0;
    // No glyph, no edge: without this an inside stroke would fill the inverse of nothing.
    if (box.width() == 0 || box.height() == 0) return 0;
    const bool centre = property->position == 0;
    const float r = centre ? (float)(property->size * 0.5) : property->size;

    unsigned char* kernelBytes = nullptr;
    const int k = makeCircleKernel(&kernelBytes, r);
    LmMaskBox::Block<unsigned char> kernel(kernelBytes);
    if (!kernel) return 0;
    const int n = k >> 1;

    // The glyphs with an empty pixel on every side, so that windows need no bounds checks.
    const int64_t W = (int64_t)box.width() + 2, H = (int64_t)box.height() + 2;
    LmMaskBox::Block<unsigned char> src = LmMaskBox::allocate<unsigned char>(W * H, true);
    if (!src) return 0;
    box.copyTo(src.get(), W, 1, 1);

    const int64_t Wo = W + 2 * n, Ho = H + 2 * n, planeSize = Wo * Ho;
    if (!LmMaskBox::affordable((centre ? 2 : 1) * planeSize, n + 1, "stroke")) return 0;
    LmMaskBox::Block<unsigned char> out = LmMaskBox::allocate<unsigned char>((centre ? 2 : 1) * planeSize, true);
    if (!out) return 0;

    StrokeDTArgs args;
    args.dst = out.get();
    args.src = src.get();
    args.kernel = kernel.get();
    args.srcStride = (int)W;
    args.srcHeight = (int)H;
    args.srcY = 0;
    args.srcX = 0;
    args.dstStride = (int)Wo;
    args.dstHeight = (int)Ho;
    args.dstY = n;
    args.dstX = n;
    args.planeSize = (int)planeSize;
    args.radius = lmToInt(r);
    args.kernelSize = k;
    args.width = (int)W;
    args.height = (int)H;
    args.rowBegin = 0;
    args.rowEnd = (int)H;
    if (centre)
        spanStrokeCenter(&args);
    else if (property->position == 1)
        spanStrokeOutside(&args);
    else
        spanStrokeInside(&args);

    unsigned char* plane0 = out.get();
    if (centre) {
        // The band where the grown glyph and the grown inverse overlap: half-width r on both
        // sides of every edge.
        const unsigned char* plane1 = plane0 + planeSize;
        for (int64_t i = 0; i < planeSize; ++i) plane0[i] = std::min(plane0[i], plane1[i]);
    }

    // Centre strokes follow the stack's mode; outside and inside ones always go under.
    const int mode = (!centre || pp->compositeMode == 1) ? LME_BLEND_DST_OVER : LME_BLEND_SRC_OVER;
    const int x = box.left - 1 - n, y = box.top - 1 - n;
    const unsigned colour = property->colour;
    LmBlender::drawBitmapBlend8(x, y, pp->target, plane0, (int)Wo, (int)Ho, (int)Wo, colour, mode);
    if (pp->output) LmBlender::drawBitmapBlend8(x, y, pp->output, plane0, (int)Wo, (int)Ho, (int)Wo, colour, mode);
    return 1;
}

} // namespace LmFontEffect
