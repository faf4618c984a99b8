#ifndef LMFONTEFFECT_EFFECT_LMEFFECT_H
#define LMFONTEFFECT_EFFECT_LMEFFECT_H

#include "raster/LmRect.h"

#include <cstddef>
#include <vector>

namespace LmFontEffect {

class LmBitmap;
class LmECore;
class LmGlyph;
class LmGradient;
class LmProperty;

// The effect stack of one text object: at most one layer of each kind, the text colour and
// opacity, and the working images of one rendering pass. A pass is
//   addText(colour); initEffect(w, h); setDstBitmap(out);
//   renderEffectLayer(x, y, glyph) per line mask; doEffectPostProcessing(); compositeLayers(out).
// Failures are silent: a null input or failed allocation leaves the target untouched.
class LmEffect {
public:
    LmEffect();
    explicit LmEffect(void*);
    LmEffect(const LmEffect& other);
    LmEffect& operator=(const LmEffect&) = delete;
    virtual ~LmEffect();

    virtual bool hasEffects();
    virtual bool hasEffect(int kind);

    // Adds a layer of the kind, or, when one exists, gives it the new parameters in place.
    // Returns the layer's id, or -1 for a kind without a layer class.
    int addEffect(int id, int kind, LmProperty* p);
    int addEffect(int kind, LmProperty* p);
    LmECore* createEffect(int id, int kind);
    int getNewEffectId();

    // The add operations clamp their arguments as the Java side expects and return the id.
    int addOuterShadowText(float angle, float distance, float size, unsigned colour, float opacity);
    int addInnerShadowText(float angle, float distance, float size, unsigned colour, float opacity);
    int addOuterGlowText(float size, unsigned colour, float opacity, int stopCount, LmGradient* stops);
    int addInnerGlowText(float size, unsigned colour, float opacity, int stopCount, LmGradient* stops);
    int addBevelText(int style, float size, float depth, int direction, int technique, int soften, float opacity,
                     float angle, float altitude, unsigned shadowColour, float shadowOpacity,
                     unsigned highlightColour, float highlightOpacity);
    int addEmbossText(int style, float size, float depth, int direction, int technique, int soften, float opacity,
                      float angle, float altitude, unsigned shadowColour, float shadowOpacity,
                      unsigned highlightColour, float highlightOpacity);
    int addLinearGradientText(float angle, float scale, float opacity, int stopCount, LmGradient* stops);
    int addRadialGradientText(float scale, float opacity, int stopCount, LmGradient* stops);
    int addStrokeText(float size, unsigned colour, float opacity, int extra, int position);
    int addPatternText(LmBitmap* pattern, float scale, float opacity);
    int addText(unsigned colour, float opacity);
    int addText(unsigned colour);

    bool removeEffect(int id);
    void releaseEffect();
    void cleanAllEffect();
    void releaseEffect(LmECore* layer);
    void releaseBitmap();
    LmECore* getEffect(int kind);

    int getLeftOffset();
    int getRightOffset();
    int getTopOffset();
    int getBottomOffset();

    void setTextOpacity(float opacity);
    float getTextOpacity() const { return textOpacity; }
    void clearTextOpacity() { textOpacity = 1.0f; }

    LmBitmap* getSrcBitmap() { return srcBitmap; }
    void setSrcBitmap(LmBitmap* mask);
    LmBitmap* getDstBitmap() { return dstBitmap; }
    void setDstBitmap(LmBitmap* output) { dstBitmap = output; }
    LmRect* getTextRect() { return &textRect; }

    void initEffect(int width, int height);
    void renderEffectLayer(int x, int y, LmGlyph* glyph);
    void doEffectPostProcessing();
    void compositeLayers(LmBitmap* output);
    // compositeLayers without the final un-premultiply: the caller runs unpremultiplyRow over
    // the output with getTextAlpha(), fused with its own pass over the pixels.
    void compositeLayersPremultiplied(LmBitmap* output);
    // The output finish over `count` packed pixels: applies the overall alpha and leaves the
    // colour unpremultiplied.
    static void unpremultiplyRow(unsigned char* pixels, size_t count, unsigned char alpha);

    // Concatenated serial forms of every layer's record, in insertion order, zero-terminated.
    // The caller frees it with delete[]. A layer without a record adds nothing.
    char* getMapKey();
    char* getMapKey(unsigned colour);

    // Read access for callers and tests.
    const std::vector<LmECore*>& getLayers() const { return layers; }
    const std::vector<LmECore*>& getRenderOrder() const { return renderOrder; }
    int getCompositeMode() const { return compositeMode; }
    unsigned getTextColor() const { return textColor; }
    unsigned char getTextAlpha() const { return textAlpha; }
    LmBitmap* getUnderBitmap() { return underBitmap; }

    // Whether a layer is drawn under the text under the current composite mode.
    bool isUnderEffect(LmECore* layer);

private:
    void compositeUnder(LmBitmap* output);
    void composite(LmBitmap* output, bool unpremultiplyToo);

    std::vector<LmECore*> layers;
    std::vector<LmECore*> renderOrder;
    LmBitmap* srcBitmap = nullptr;
    LmBitmap* dstBitmap = nullptr;
    LmBitmap* underBitmap = nullptr;
    LmRect textRect;
    bool firstGlyph = true;
    int compositeMode = 0;
    float textOpacity = 1.0f;
    unsigned textColor = 0xFF000000u;
    int nextId = 0;
    unsigned char textAlpha = 255;
};

} // namespace LmFontEffect

#endif
