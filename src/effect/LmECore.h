#ifndef LMFONTEFFECT_EFFECT_LMECORE_H
#define LMFONTEFFECT_EFFECT_LMECORE_H

namespace LmFontEffect {

class LmBitmap;
class LmGlyph;
class LmProperty;
class LmRect;

// The layer type the effect stack holds and drives: initEffect once per pass, render once per
// placed glyph, doPostProcessing once after every glyph is in the text mask.
class LmECore {
public:
    struct ParamInit {
        int width;
        int height;
        int compositeMode; // 1 in two-pass mode
    };
    struct ParamRender {
        int x;
        int y;
        LmGlyph* glyph;
        LmBitmap* output;
    };
    struct ParamPostProcessing {
        LmBitmap* target;   // 32-bit image the layer draws into
        LmBitmap* mask;     // 8-bit text mask
        LmRect* textRect;   // union of the glyph boxes, clamped to the mask
        int compositeMode;
        LmBitmap* output;   // second target for layers that straddle both images, else null
    };

    LmECore() = default;
    LmECore(const LmECore&) = delete;
    LmECore& operator=(const LmECore&) = delete;
    virtual ~LmECore() = default;

    virtual int initEffect(ParamInit* param) = 0;
    virtual int render(ParamRender* param) = 0;
    virtual int doPostProcessing(ParamPostProcessing* param) = 0;
    virtual void setProperty(LmProperty* property) = 0;
    virtual LmProperty* getProperty() = 0;
    virtual float getOpacity() = 0;
    virtual int getStyle() = 0;
    virtual int getLeftOffset() = 0;
    virtual int getRightOffset() = 0;
    virtual int getTopOffset() = 0;
    virtual int getBottomOffset() = 0;
    virtual void setId(int id) = 0;
    virtual int getId() = 0;
    virtual int getOffset() = 0;
};

} // namespace LmFontEffect

#endif
