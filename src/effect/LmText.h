#ifndef LMFONTEFFECT_EFFECT_LMTEXT_H
#define LMFONTEFFECT_EFFECT_LMTEXT_H

#include "effect/LmECoreBase.h"

namespace LmFontEffect {

class LmTextProperty;

// Kind 12: paints the text mask itself in the (premultiplied) text colour. In two-pass mode
// the coverage is used as on/off (blend mode 3), otherwise the glyph edge keeps its
// anti-aliasing and clips what lies over it (blend mode 7).
class LmText : public LmECoreBase {
public:
    LmText();
    ~LmText() override;

    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    int getOffset() override { return 0; }
    int doPostProcessing(ParamPostProcessing* p) override;

private:
    LmTextProperty* property = nullptr;
};

} // namespace LmFontEffect

#endif
