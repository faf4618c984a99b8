#ifndef LMFONTEFFECT_FILTERS_LMEMBOSS_H
#define LMFONTEFFECT_FILTERS_LMEMBOSS_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmEmbossProperty;

// Kind 6: text pressed out of the surface. Unlike the bevel the slope straddles the glyph edge,
// rising outside and falling inside, so the height map is signed. Style 3 (pillow) lights the
// surface a second time from the mirrored side and blends the two by coverage. In two-pass mode
// the same canvas lands in the under-image and in the output.
class LmEmboss : public LmECoreBase {
public:
    LmEmboss();
    ~LmEmboss() override;

    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    // ceil(1 + size / 2) + soften, saturated.
    int getOffset() override;
    int doPostProcessing(ParamPostProcessing* pp) override;

    static void dt1D(float* out, float* in, int n);
    static int partialBlur(void* args);
    static int partialOutDT(void* args);
    static int partialInDT(void* args);
    static int partialLightHardProcess(void* args);
    static int partialLightSoftProcess(void* args);

private:
    LmEmbossProperty* property = nullptr;
};

} // namespace LmFontEffect

#endif
