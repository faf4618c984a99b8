#ifndef LMFONTEFFECT_FILTERS_LMSTROKE_H
#define LMFONTEFFECT_FILTERS_LMSTROKE_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmStrokeProperty;

// Work record of the stroke's dilation workers. A source pixel (x, y) lands at
// (dstX + x, dstY + y) in dst; its kernel window is centred there. Rows rowBegin..rowEnd-1 of
// the source are processed, so the rows can be split between calls.
struct StrokeDTArgs {
    unsigned char* dst;       // output coverage: one plane, or two planes planeSize apart
    const unsigned char* src; // padded source mask
    const unsigned char* kernel;
    int srcStride;
    int srcHeight;
    int srcY;
    int srcX;
    int dstStride;
    int dstHeight;
    int dstY;
    int dstX;
    int planeSize;
    int radius; // kernel radius, carried for callers
    int kernelSize;
    int width;
    int height;
    int rowBegin;
    int rowEnd;
};

// Builds the anti-aliased disc of radius r: a k x k byte square, k = 2n + 1, n = round(r),
// each byte the coverage (r - distance + 1) clamped to 0..1 and scaled to 255. The centre byte
// carries min(r, 1), so a stroke thinner than a pixel stays faint. The buffer is malloc'ed into
// *out (left untouched when nothing is allocated, as for a negative n or a radius beyond
// LmStroke::kMaxRadius). Returns k.
int makeCircleKernel(unsigned char** out, float r);

// Grey-scale dilation with the disc: every destination byte keeps the maximum of the bounded
// products max(0, q + a - 255) of kernel byte q and source value a over the windows that cover
// it. Outside dilates the mask, inside its inverse, centre both (plane 0, plane 1). Return 0.
int partalDTStrokeOutside(void* args);
int partalDTStrokeInside(void* args);
int partalDTStrokeCenter(void* args);

// The same bytes by running maxima over rows, in time linear in the radius; the stroke layer
// draws with these.
int spanStrokeOutside(void* args);
int spanStrokeInside(void* args);
int spanStrokeCenter(void* args);

// Kind 10: an outline of the glyphs, centred on their edges (position 0), outside them (1) or
// inside them (any other position).
class LmStroke : public LmECoreBase {
public:
    // Widest kernel radius drawn; the effect stack clamps sizes to 100.
    static const int kMaxRadius = 1000;

    LmStroke();
    ~LmStroke() override;

    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    int getOffset() override;
    int doPostProcessing(ParamPostProcessing* pp) override;

private:
    LmStrokeProperty* property = nullptr;
};

} // namespace LmFontEffect

#endif
