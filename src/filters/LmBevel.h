#ifndef LMFONTEFFECT_FILTERS_LMBEVEL_H
#define LMFONTEFFECT_FILTERS_LMBEVEL_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmBevelProperty;

// Kind 5: raised edges. A height map grows from the glyph edges (outside the glyphs, or inside
// them for style 1) up to the bevel width, a directional light turns its slopes into a lit and
// a shadowed side, and the layer paints their difference in the colour of the side that wins.
// The work routines take one argument record each (LmRelief's) and run over any range of rows.
class LmBevel : public LmECoreBase {
public:
    LmBevel();
    ~LmBevel() override;

    // Copies any bevel or emboss record as a bevel record (its clamping applies again).
    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    // round(size) + soften, saturated; the margin the stack keeps on every side.
    int getOffset() override;
    // Returns 1 when something was drawn, 0 when it gave up.
    int doPostProcessing(ParamPostProcessing* pp) override;

    // Blurs columns and rows r..size - r of src into dst.
    static void blur(unsigned char* src, unsigned char* dst, int r, int height, int width);
    static void dt1D(float* out, float* in, int n);
    static int partialBlur(void* args);
    static int partialDT(void* args);
    static int partialLightProcess(void* args);

private:
    LmBevelProperty* property = nullptr;
};

} // namespace LmFontEffect

#endif
