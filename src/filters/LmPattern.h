#ifndef LMFONTEFFECT_FILTERS_LMPATTERN_H
#define LMFONTEFFECT_FILTERS_LMPATTERN_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmBitmap;
class LmPatternProperty;

// Kind 11: fills the glyphs with a tiled image, scaled and sampled bilinearly, anchored at the
// text box's top-left corner, at an opacity. The tile's pixels are A, R, G, B bytes in memory,
// not premultiplied. Adds no margin.
class LmPattern : public LmECoreBase {
public:
    LmPattern();
    ~LmPattern() override;

    // Copies the record and the tile's pixels.
    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    // Returns 1 when something was drawn, 0 when it gave up.
    int doPostProcessing(ParamPostProcessing* pp) override;

    // Where an output row or column falls in the tile: neighbours i0 and i1 (the tile's first
    // row or column after its last) and the weight 0..254 of i1.
    struct Tap {
        int i0, i1, weight;
    };
    // For output coordinate v, the scaled tile extent (0 when it rounds to nothing; the
    // coordinate is then wrapped into the tile) and the tile's size in pixels (above 0).
    static Tap tap(int v, int scaledSize, float scale, int size);
    // The ARGB bytes (any order) at the four neighbours, weighted to 255 per axis and divided by
    // 65536: a uniform 255 samples to 253.
    static void sample(const unsigned char* p00, const unsigned char* p10, const unsigned char* p01,
                       const unsigned char* p11, int wx, int wy, int* out);
    // Alpha-premultiplied ARGB of a sample at an opacity. An opacity above 1 keeps only the low
    // byte of its alpha; a negative or NaN one gives 0.
    static unsigned shade(const int* argb, float opacity);

private:
    LmPatternProperty* property = nullptr;
};

} // namespace LmFontEffect

#endif
