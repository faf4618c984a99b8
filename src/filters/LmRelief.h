#ifndef LMFONTEFFECT_FILTERS_LMRELIEF_H
#define LMFONTEFFECT_FILTERS_LMRELIEF_H

#include "filters/LmMaskBox.h"

#include <cmath>
#include <cstdint>

namespace LmFontEffect {

class LmBitmap;
class LmLightingProperty;

// The machinery the bevel and the emboss share: a float height map over a canvas (the text box
// grown by a margin), grown from the glyph edges by a windowed search or an exact distance
// transform, lit by a directional light into two byte maps (the side facing the light and the
// side facing away), blurred, and composed into premultiplied ARGB. Everything is single
// precision on purpose: the results are fixed to the byte.
class LmRelief {
public:
    // Largest canvas in pixels; a bigger one draws nothing.
    static const int64_t kMaxCanvasPixels = int64_t(1) << 26;

    // Separable blur of rows rowBegin..rowEnd-1 and columns colBegin..colEnd-1; destination
    // pixels outside that range are left as they are.
    struct BlurArgs {
        const unsigned char* src;
        unsigned char* dst;
        int stride;
        int radius;
        int colBegin;
        int colEnd;
        int rowBegin;
        int rowEnd;
    };

    // Distance searches over rows rowBegin..rowEnd-1 of a height x width map, in place.
    struct SearchArgs {
        float* map;
        int height;
        int width;
        int reach;      // outer reach (the bevel's only one)
        int innerReach; // the emboss's search into the glyphs
        int rowBegin;
        int rowEnd;
    };

    // A lighting pass: lit is the side facing the light, shadow the side facing away.
    struct LightArgs {
        unsigned char* lit;
        unsigned char* shadow;
        const float* map;
        int stride;
        int level;      // the outer reach: heights equal to it are flat and unlit
        int innerReach; // emboss only
        float nz;
        float lx;
        float ly;
        float lz;
        int litOpacity;
        int shadowOpacity;
        bool keepShade;       // bevel: false turns the shade over (255 - shade)
        float gradientFactor; // emboss exact path
        int colBegin;
        int colEnd;
        int rowBegin;
        int rowEnd;
    };

    enum LightRule {
        BEVEL_LIGHT,        // heights 0..level; lit side from shade + 1
        EMBOSS_HARD_LIGHT,  // signed heights; lit side from 256 - shade
        EMBOSS_SOFT_LIGHT,  // as hard, skipping 0 and heights at or above the level
    };

    struct Light {
        float lx, ly, lz, nz;
    };

    // The canvas: the text box grown by margin on every side, at (x, y) in the target.
    struct Canvas {
        int x = 0, y = 0;
        int width = 0, height = 0;
        int margin = 0;
        int64_t pixels() const { return (int64_t)width * height; }
    };

    // The buffers of one pass over a canvas: the height map, one or two pairs of side maps
    // (cleared), a cleared spare side map for the blurs' rotation, and the cleared output.
    struct Pass {
        Canvas canvas;
        LmMaskBox::Block<float> map;
        int pairs = 0;
        unsigned char* lit[2] = {nullptr, nullptr};
        unsigned char* shadow[2] = {nullptr, nullptr};
        unsigned char* spare = nullptr;
        LmMaskBox::Block<unsigned> out;

        bool allocate(int pairCount);
        int64_t size() const { return canvas.pixels(); }
        // The light pass over the canvas without its outermost ring.
        LightArgs lightArgs(int pair, const Light& l, int level, int innerReach, const LmLightingProperty& p) const;
        // Every pair with radius r; nothing for r <= 0.
        bool blur(int r);
        // The output at the canvas position in target.
        void drawInto(LmBitmap* target, int mode) const;

    private:
        LmMaskBox::Block<unsigned char> blocks[5];
    };

    // Light from the record's angle and altitude; depth is floored at depthFloor. Direction 0
    // mirrors the light's x and y.
    static Light light(const LmLightingProperty& p, float depthFloor);
    // False when the grown box passes kMaxCanvasPixels or the margin is negative.
    static bool canvasFor(const LmMaskBox& box, int64_t margin, Canvas* canvas);
    // False (with the warning and error of the work bound) when the windowed searches over the
    // canvas would pass the bound. Large raw sizes on small text would otherwise run for minutes.
    static bool searchAffordable(const Canvas& canvas, int64_t reach);

    // weights[0..r] and their total, all in single precision.
    static void blurWeights(int* weights, int* total, int r);
    static int partialBlur(void* args);
    // Blurs lit and shadow with radius r: lit into *spare, shadow into lit's old buffer, the
    // shadow's old buffer becoming the spare. Unwritten borders keep what the buffer held.
    static bool blurPair(unsigned char** lit, unsigned char** shadow, unsigned char** spare, int width, int height,
                         int r);

    // One-dimensional squared distance transform (lower envelope of parabolas). v holds n ints,
    // z n + 1 floats, f n floats.
    static void dt1D(float* out, const float* in, int n, int* v, float* z, float* f);
    // Allocating form; does nothing when the work buffers cannot be had.
    static void dt1D(float* out, const float* in, int n);
    // Columns then rows; false when the work buffers cannot be had. Rows whose every value is
    // above leaveAbove after the columns are left as they are (they would stay above it): for
    // callers that cap there.
    static bool dt2D(float* map, int width, int height, float leaveAbove = INFINITY);
    // Squared distances to distances capped at reach: 0 if <= 0, reach above reach^2.
    static void capDistances(float* map, int64_t count, int reach);

    // Exact-path fill: inside where the canvas pixel lies on a non-zero mask byte. Rows and
    // columns from the margin up to and including size - margin count as interior (one more at
    // the trailing side, on purpose); interior reads outside the mask count as 0.
    static void exactFill(float* map, const Canvas& c, const LmMaskBox& box, float inside, float outside);
    // Local-path fill: fillValue everywhere, then per box pixel b (inverted when asked),
    // v = b / divisor: reach if v < 0.001, 1 - v if v < 1, else fullValue.
    static void localFill(float* map, const Canvas& c, const LmMaskBox& box, float fillValue, int reach,
                          float divisor, float fullValue, bool invert);

    // The searches. Bevel: pixels other than 0 take the nearest n + d over neighbours n < 1.
    // Emboss outer: pixels above 0 take the nearest (n > 0 ? n + d : d) over neighbours n < 1.
    // Emboss inner: pixels below 0 take the largest n - d over neighbours n > 1.
    static int partialDT(void* args);
    static int partialOutDT(void* args);
    static int partialInDT(void* args);
    // Square root of an integer squared distance: the table, sqrtf beyond it.
    static float rootOf(int64_t n);

    static int partialLight(void* args, LightRule rule);

    // One canvas pixel from its two sides: alpha min(|B - A|, 255), the shadow colour when
    // B > A, else the highlight colour.
    static unsigned composePixel(int lit, int shadow, float gain, unsigned shadowColour, unsigned highlightColour);
    // composePixel over count pixels.
    static void composeAll(const unsigned char* lit, const unsigned char* shadow, unsigned* out, int64_t count,
                           float gain, unsigned shadowColour, unsigned highlightColour);
    // The pillow style's weighted pixel: alpha ((|B - A| + 1) * weight) >> 8.
    static unsigned composeWeighted(int lit, int shadow, float gain, int weight, unsigned shadowColour,
                                    unsigned highlightColour);
    // Byte-wise saturated sum.
    static unsigned addSaturated(unsigned a, unsigned b);
};

} // namespace LmFontEffect

#endif
