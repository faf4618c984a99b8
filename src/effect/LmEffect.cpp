#include "effect/LmEffect.h"

#include "effect/LmBevelProperty.h"
#include "effect/LmECore.h"
#include "effect/LmECoreBase.h"
#include "effect/LmEmbossProperty.h"
#include "effect/LmGlyph.h"
#include "effect/LmInnerGlowProperty.h"
#include "effect/LmInnerShadowProperty.h"
#include "effect/LmLinearGradientProperty.h"
#include "effect/LmOuterGlowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmRadialGradientProperty.h"
#include "effect/LmStrokeProperty.h"
#include "effect/LmTextProperty.h"
#include "foundation/Error.h"
#include "foundation/LmConvert.h"
#include "foundation/LmLog.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"
#include "raster/LmRowOps.h"

#include <algorithm>
#include <memory>
#include <cstdint>
#include <cstring>
#include <vector>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmEffect";

// Memory ran out (or a library threw) while adding a layer: code 1, no layer.
int outOfMemory(int site)
{
    Error::Report(kTag, Error::LM_ERR_PLATFORM, site);
    return -1;
}


void debug(const char* format, const void* self)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, format, self);
}

// Opacity into [0, 1]; NaN and everything not above 0 give 0.
float clampOpacity(float o)
{
    if (o > 1.0f) o = 1.0f;
    if (!(o > 0.0f)) o = 0.0f;
    return o;
}

// The opacity as a byte: (unsigned)(0.5 + o * 255), saturated.
unsigned alphaByte(float o) { return std::min(lmToUnsigned(0.5 + o * 255), 255u); }

unsigned premultiplied(unsigned colour, unsigned alpha)
{
    auto channel = [alpha](unsigned c) {
        unsigned p = alpha * (c + 1);
        return p > 65535 ? 255u : p >> 8;
    };
    return (alpha << 24) | (channel((colour >> 16) & 0xFF) << 16) | (channel((colour >> 8) & 0xFF) << 8) |
           channel(colour & 0xFF);
}

unsigned alphaReplaced(unsigned colour, unsigned alpha) { return (colour & 0x00FFFFFFu) | (alpha << 24); }

// Sizes, distances: whole pixels 0..100.
float sizeLike(float v) { return (float)std::min(std::max(lmToInt(v), 0), 100); }

float reduceDegrees(float angle, int modulus)
{
    int r = lmToInt(angle) % modulus;
    if (r < 0) r += modulus;
    return (float)r;
}

// Ramp maximum; also bounds the copy made per layer.
constexpr int kMaxStops = 256;

std::vector<LmGradient> clampStops(int count, const LmGradient* stops, float opacity)
{
    if (!stops) count = 0;
    count = std::min(std::max(count, 0), kMaxStops);
    std::vector<LmGradient> out((size_t)count);
    for (int i = 0; i < count; ++i) {
        float so = clampOpacity(stops[i].opacity);
        out[i].opacity = so;
        out[i].colour = alphaReplaced(stops[i].colour, alphaByte(clampOpacity(so * opacity)));
        out[i].position = clampOpacity((float)lmToInt(stops[i].position * 100) / 100);
    }
    return out;
}

int strokePosition(LmECore* layer)
{
    auto* p = dynamic_cast<LmStrokeProperty*>(layer->getProperty());
    return p ? p->position : -1;
}

int bevelStyle(LmECore* layer)
{
    auto* p = dynamic_cast<LmLightingProperty*>(layer->getProperty());
    return p ? p->style : 0;
}

} // namespace

LmEffect::LmEffect() { debug("LmEffect(%p)", this); }

LmEffect::LmEffect(void*) {}

LmEffect::LmEffect(const LmEffect& other)
    : compositeMode(other.compositeMode), textOpacity(other.textOpacity), textColor(other.textColor),
      nextId(other.nextId), textAlpha(other.textAlpha)
{
    for (LmECore* layer : other.layers) addEffect(layer->getId(), layer->getStyle(), layer->getProperty());
}

LmEffect::~LmEffect()
{
    releaseEffect();
    releaseBitmap();
    debug("~LmEffect(%p)", this);
}

bool LmEffect::hasEffects() { return !layers.empty() || !(textOpacity >= 1.0f); }

bool LmEffect::hasEffect(int kind) { return getEffect(kind) != nullptr; }

LmECore* LmEffect::getEffect(int kind)
{
    for (LmECore* layer : layers)
        if (layer->getStyle() == kind) return layer;
    return nullptr;
}

int LmEffect::addEffect(int id, int kind, LmProperty* p)
try {
    if (LmECore* existing = getEffect(kind)) {
        existing->setProperty(p);
        if (p && !existing->getProperty()) return outOfMemory(__LINE__);
        return existing->getId();
    }
    std::unique_ptr<LmECore> layer(createEffect(id, kind));
    if (!layer) return -1;
    layer->setProperty(p);
    if (p && !layer->getProperty()) return outOfMemory(__LINE__);
    layers.push_back(layer.get());
    return layer.release()->getId();
} catch (...) {
    return outOfMemory(__LINE__);
}

int LmEffect::addEffect(int kind, LmProperty* p) { return addEffect(-1, kind, p); }

int LmEffect::getNewEffectId()
{
    int id = std::max(nextId, 0);
    nextId = id + 1;
    return id;
}

namespace {

// The shared clamping of the shadow, glow and gradient add operations, per record type.
template <class Record>
int addShadow(LmEffect& stack, int kind, float angle, float distance, float size, unsigned colour, float opacity)
try {
    float o = clampOpacity(opacity);
    Record record(reduceDegrees(angle, 360), sizeLike(distance), sizeLike(size), premultiplied(colour, alphaByte(o)), o);
    return stack.addEffect(-1, kind, &record);
} catch (...) {
    return outOfMemory(__LINE__);
}

template <class Record>
int addGlow(LmEffect& stack, int kind, float size, unsigned colour, float opacity, int stopCount, LmGradient* stops)
try {
    float o = clampOpacity(opacity);
    std::vector<LmGradient> ramp = clampStops(stopCount, stops, o);
    Record record(sizeLike(size), alphaReplaced(colour, alphaByte(o)), o, (int)ramp.size(),
                  ramp.empty() ? nullptr : ramp.data());
    return stack.addEffect(-1, kind, &record);
} catch (...) {
    return outOfMemory(__LINE__);
}

template <class Record>
int addGradient(LmEffect& stack, int kind, float angle, float scale, float opacity, int stopCount, LmGradient* stops)
try {
    float o = clampOpacity(opacity);
    std::vector<LmGradient> ramp = clampStops(stopCount, stops, o);
    scale = std::min(scale, 2.0f);
    Record record(reduceDegrees(angle, 360), scale > 0.0f ? scale : 0.0f, o, (int)ramp.size(),
                  ramp.empty() ? nullptr : ramp.data());
    return stack.addEffect(-1, kind, &record);
} catch (...) {
    return outOfMemory(__LINE__);
}

} // namespace

int LmEffect::addOuterShadowText(float angle, float distance, float size, unsigned colour, float opacity)
{
    return addShadow<LmOuterShadowProperty>(*this, LM_EFFECT_OUTER_SHADOW, angle, distance, size, colour, opacity);
}

int LmEffect::addInnerShadowText(float angle, float distance, float size, unsigned colour, float opacity)
{
    return addShadow<LmInnerShadowProperty>(*this, LM_EFFECT_INNER_SHADOW, angle, distance, size, colour, opacity);
}

int LmEffect::addOuterGlowText(float size, unsigned colour, float opacity, int stopCount, LmGradient* stops)
{
    return addGlow<LmOuterGlowProperty>(*this, LM_EFFECT_OUTER_GLOW, size, colour, opacity, stopCount, stops);
}

int LmEffect::addInnerGlowText(float size, unsigned colour, float opacity, int stopCount, LmGradient* stops)
{
    return addGlow<LmInnerGlowProperty>(*this, LM_EFFECT_INNER_GLOW, size, colour, opacity, stopCount, stops);
}

namespace {

template <class Record>
Record lightingRecord(int style, float size, float depth, int direction, int technique, int soften, float opacity,
                      float angle, float altitude, unsigned shadowColour, float shadowOpacity, unsigned highlightColour,
                      float highlightOpacity)
{
    float o = clampOpacity(opacity);
    float so = clampOpacity(shadowOpacity);
    float ho = clampOpacity(highlightOpacity);
    return Record(style, size, depth > 0.0f ? depth : 0.0f, direction, technique, std::min(std::max(soften, 0), 16),
                  o, reduceDegrees(angle, 360), reduceDegrees(altitude, 90),
                  alphaReplaced(shadowColour, alphaByte(clampOpacity(o * so))), so,
                  alphaReplaced(highlightColour, alphaByte(clampOpacity(o * ho))), ho);
}

} // namespace

int LmEffect::addBevelText(int style, float size, float depth, int direction, int technique, int soften,
                           float opacity, float angle, float altitude, unsigned shadowColour, float shadowOpacity,
                           unsigned highlightColour, float highlightOpacity)
{
    LmBevelProperty record = lightingRecord<LmBevelProperty>(style, size, depth, direction, technique, soften, opacity,
                                                             angle, altitude, shadowColour, shadowOpacity,
                                                             highlightColour, highlightOpacity);
    return addEffect(-1, LM_EFFECT_BEVEL, &record);
}

int LmEffect::addEmbossText(int style, float size, float depth, int direction, int technique, int soften,
                            float opacity, float angle, float altitude, unsigned shadowColour, float shadowOpacity,
                            unsigned highlightColour, float highlightOpacity)
{
    LmEmbossProperty record = lightingRecord<LmEmbossProperty>(style, size, depth, direction, technique, soften,
                                                               opacity, angle, altitude, shadowColour, shadowOpacity,
                                                               highlightColour, highlightOpacity);
    return addEffect(-1, LM_EFFECT_EMBOSS, &record);
}

int LmEffect::addLinearGradientText(float angle, float scale, float opacity, int stopCount, LmGradient* stops)
{
    return addGradient<LmLinearGradientProperty>(*this, LM_EFFECT_LINEAR_GRADIENT, angle, scale, opacity, stopCount,
                                                 stops);
}

int LmEffect::addRadialGradientText(float scale, float opacity, int stopCount, LmGradient* stops)
{
    return addGradient<LmRadialGradientProperty>(*this, LM_EFFECT_RADIAL_GRADIENT, 0.0f, scale, opacity, stopCount,
                                                 stops);
}

int LmEffect::addStrokeText(float size, unsigned colour, float opacity, int extra, int position)
{
    float o = clampOpacity(opacity);
    LmStrokeProperty record(sizeLike(size), premultiplied(colour, alphaByte(o)), o, extra, position);
    return addEffect(-1, LM_EFFECT_STROKE, &record);
}

int LmEffect::addPatternText(LmBitmap* pattern, float scale, float opacity)
{
    scale = std::min(scale, 10.0f);
    LmPatternProperty record(pattern, scale > 0.0f ? scale : 0.0f, clampOpacity(opacity));
    return addEffect(-1, LM_EFFECT_PATTERN, &record);
}

int LmEffect::addText(unsigned colour, float opacity)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "AddText(%p) - (color:%d/opacity:%f)", (void*)this, (int)colour,
                 (double)opacity);
    textAlpha = (unsigned char)(colour >> 24);
    float o = clampOpacity(opacity);
    LmTextProperty record(premultiplied(colour, alphaByte(o)), o);
    return addEffect(-1, LM_EFFECT_TEXT, &record);
}

int LmEffect::addText(unsigned colour)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "AddText(%p) - (color:%x)", (void*)this, colour);
    textAlpha = (unsigned char)(colour >> 24);
    LmTextProperty record(colour | 0xFF000000u, 1.0f);
    return addEffect(-1, LM_EFFECT_TEXT, &record);
}

bool LmEffect::removeEffect(int id)
{
    for (auto it = layers.begin(); it != layers.end(); ++it) {
        if ((*it)->getId() != id) continue;
        LmECore* layer = *it;
        layers.erase(it);
        renderOrder.erase(std::remove(renderOrder.begin(), renderOrder.end(), layer), renderOrder.end());
        delete layer;
        return true;
    }
    return false;
}

void LmEffect::releaseEffect()
{
    for (LmECore* layer : layers) delete layer;
    layers.clear();
    renderOrder.clear();
    nextId = 0;
}

void LmEffect::cleanAllEffect() { releaseEffect(); }

void LmEffect::releaseEffect(LmECore* layer) { delete layer; }

void LmEffect::releaseBitmap()
{
    delete srcBitmap;
    srcBitmap = nullptr;
    delete underBitmap;
    underBitmap = nullptr;
    dstBitmap = nullptr;
}

void LmEffect::setSrcBitmap(LmBitmap* mask)
{
    if (mask != srcBitmap) delete srcBitmap;
    srcBitmap = mask;
}

namespace {

template <class Side>
int maxOffset(const std::vector<LmECore*>& layers, Side side)
{
    int m = 0;
    for (LmECore* layer : layers) m = std::max(m, side(layer));
    return m;
}

} // namespace

int LmEffect::getLeftOffset() { return maxOffset(layers, [](LmECore* l) { return l->getLeftOffset(); }); }
int LmEffect::getRightOffset() { return maxOffset(layers, [](LmECore* l) { return l->getRightOffset(); }); }
int LmEffect::getTopOffset() { return maxOffset(layers, [](LmECore* l) { return l->getTopOffset(); }); }
int LmEffect::getBottomOffset() { return maxOffset(layers, [](LmECore* l) { return l->getBottomOffset(); }); }

void LmEffect::setTextOpacity(float opacity) { textOpacity = clampOpacity(opacity); }

bool LmEffect::isUnderEffect(LmECore* layer)
{
    switch (layer->getStyle()) {
    case LM_EFFECT_BASE:
    case LM_EFFECT_OUTER_SHADOW:
    case LM_EFFECT_OUTER_GLOW: return true;
    case LM_EFFECT_EMBOSS: return compositeMode != 1;
    case LM_EFFECT_STROKE:
    case LM_EFFECT_STROKE_ALIAS: {
        int position = strokePosition(layer);
        return position == 1 || (position == 0 && compositeMode != 1);
    }
    case LM_EFFECT_BEVEL: return bevelStyle(layer) != 1;
    default: return false;
    }
}

void LmEffect::initEffect(int width, int height)
{
    debug("InitEffect(%p)", this);
    width = std::max(width, 0);
    height = std::max(height, 0);
    renderOrder = layers;

    // Two passes when the text is translucent or a layer straddles the text (emboss, centre stroke).
    compositeMode = 0;
    if (textOpacity < 1.0f) {
        compositeMode = 1;
    } else {
        for (LmECore* layer : renderOrder) {
            int kind = layer->getStyle();
            if (kind == LM_EFFECT_EMBOSS ||
                ((kind == LM_EFFECT_STROKE || kind == LM_EFFECT_STROKE_ALIAS) && strokePosition(layer) == 0)) {
                compositeMode = 1;
                break;
            }
        }
    }

    delete srcBitmap;
    srcBitmap = new LmBitmap((unsigned)width, (unsigned)height, 1);

    if (compositeMode == 1) {
        delete underBitmap;
        underBitmap = new LmBitmap((unsigned)width, (unsigned)height, 4);
        std::reverse(renderOrder.begin(), renderOrder.end());
        auto text = std::find_if(renderOrder.begin(), renderOrder.end(),
                                 [](LmECore* l) { return l->getStyle() == LM_EFFECT_TEXT; });
        if (text != renderOrder.end()) std::rotate(text, text + 1, renderOrder.end());
    } else {
        // Over-the-text effects latest first, then the text, then under-the-text effects latest first.
        std::vector<LmECore*> over, under;
        for (LmECore* layer : renderOrder) {
            if (isUnderEffect(layer))
                under.insert(under.begin(), layer);
            else if (layer->getStyle() == LM_EFFECT_TEXT)
                over.push_back(layer);
            else
                over.insert(over.begin(), layer);
        }
        renderOrder = over;
        renderOrder.insert(renderOrder.end(), under.begin(), under.end());
    }

    LmECore::ParamInit param{width, height, compositeMode};
    for (LmECore* layer : renderOrder) layer->initEffect(&param);
    dstBitmap = nullptr;
}

void LmEffect::renderEffectLayer(int x, int y, LmGlyph* glyph)
{
    if (glyph && srcBitmap) {
        const int w = glyph->width, h = glyph->height;
        auto far = [](int a, int b) { return (int)std::min<int64_t>((int64_t)a + b, INT32_MAX); };
        if (firstGlyph) {
            textRect = LmRect(x, y, far(x, w), far(y, h));
            firstGlyph = false;
        } else {
            textRect.left = std::min(textRect.left, x);
            textRect.top = std::min(textRect.top, y);
            textRect.right = std::max(textRect.right, far(x, w));
            textRect.bottom = std::max(textRect.bottom, far(y, h));
        }
        LmBlender::drawBitmap(x, y, srcBitmap, glyph->pixels, w, h, 0xFF000000u);
    }
    LmECore::ParamRender param{x, y, glyph, dstBitmap};
    for (LmECore* layer : renderOrder) layer->render(&param);
}

void LmEffect::doEffectPostProcessing()
{
    debug("DoEffectPostProcessing(%p) - start", this);
    const int mw = srcBitmap ? (int)std::min<unsigned>(srcBitmap->width, INT32_MAX) : 0;
    const int mh = srcBitmap ? (int)std::min<unsigned>(srcBitmap->height, INT32_MAX) : 0;
    textRect.left = std::min(std::max(textRect.left, 0), mw);
    textRect.right = std::max(std::min(textRect.right, mw), 0);
    textRect.top = std::min(std::max(textRect.top, 0), mh);
    textRect.bottom = std::max(std::min(textRect.bottom, mh), 0);

    if (textRect.right > textRect.left && textRect.bottom > textRect.top) {
        for (LmECore* layer : renderOrder) {
            LmECore::ParamPostProcessing param{dstBitmap, srcBitmap, &textRect, compositeMode, nullptr};
            if (compositeMode == 1) {
                LmBitmap* under = underBitmap;
                switch (layer->getStyle()) {
                case LM_EFFECT_OUTER_SHADOW:
                case LM_EFFECT_OUTER_GLOW:
                case LM_EFFECT_BASE: param.target = under; break;
                case LM_EFFECT_BEVEL:
                    if (bevelStyle(layer) != 1) param.target = under;
                    break;
                case LM_EFFECT_EMBOSS:
                    param.target = under;
                    param.output = dstBitmap;
                    break;
                case LM_EFFECT_STROKE:
                case LM_EFFECT_STROKE_ALIAS: {
                    int position = strokePosition(layer);
                    if (position == 0) {
                        param.target = under;
                        param.output = dstBitmap;
                    } else if (position != 2) {
                        param.target = under;
                    }
                    break;
                }
                default: break;
                }
            }
            layer->doPostProcessing(&param);
        }
    }
    firstGlyph = true;
    debug("DoEffectPostProcessing(%p) - end", this);
}

// Under-image shows where the text does not cover, the output where it does:
// o' = min(255, ((255 - m) * (u + 1) >> 8) + (m * (o + 1) >> 8)), all four bytes.
void LmEffect::compositeUnder(LmBitmap* output)
{
    if (!srcBitmap || !srcBitmap->pixels || !underBitmap || !underBitmap->pixels) return;
    if (srcBitmap->width != output->width || srcBitmap->height != output->height ||
        underBitmap->width != output->width || underBitmap->height != output->height)
        return;
    const size_t n = (size_t)output->width * output->height;
    const unsigned char* mask = srcBitmap->pixels;
    const unsigned char* u = underBitmap->pixels;
    unsigned char* o = output->pixels;
    for (size_t i = 0; i < n; ++i) {
        unsigned m = mask[i];
        for (int c = 0; c < 4; ++c) {
            unsigned v = (((255 - m) * (u[4 * i + c] + 1u)) >> 8) + ((m * (o[4 * i + c] + 1u)) >> 8);
            o[4 * i + c] = (unsigned char)std::min(v, 255u);
        }
    }
}

namespace {

// ceil(2^24 / a): (j * r) >> 16 is floor(256 j / a) for every j, a <= 255 (the rounding error
// j * a stays below 2^16), so the un-premultiply needs no division.
struct Reciprocals {
    uint32_t of[256] = {};
    constexpr Reciprocals()
    {
        for (uint32_t a = 1; a < 256; ++a) of[a] = ((1u << 24) + a - 1) / a;
    }
};
constexpr Reciprocals kReciprocals;

// A pixel neither clear nor, at full strength, opaque.
inline void unpremultiplyPixel(unsigned char* p, unsigned k)
{
    const unsigned ka = k * (p[3] + 1u);
    const unsigned a = ka >> 8;
    p[3] = (unsigned char)a;
    if (ka <= 255) {
        p[0] = p[1] = p[2] = 0;
        return;
    }
    const uint32_t r = kReciprocals.of[a];
    for (int c = 0; c < 3; ++c) {
        const uint32_t q = (((k * (p[c] + 1u)) >> 8) * r) >> 16;
        p[c] = (unsigned char)(q < 255 ? q : 255);
    }
}

} // namespace

// Applies the overall alpha k and leaves the colour unpremultiplied:
// a = k(A + 1) >> 8; c' = min(255, (k(c + 1) & 0xFF00) / a), colour 0 when a is 0.
void LmEffect::unpremultiplyRow(unsigned char* p, size_t n, unsigned char alpha)
{
    const unsigned k = alpha;
    // Clear pixels stay clear, and at full strength opaque ones keep their bytes: most of a text
    // image is one or the other, so such runs are stepped over whole, the rest pixel by pixel.
    size_t i = 0;
    while (i < n) {
        i += LmRowOps::zeroBytes(p + 4 * i, 4 * (n - i)) / 4;
        if (k == 255) i += LmRowOps::alphaRun(p + 4 * i, n - i, 255);
        for (; i < n; ++i) {
            unsigned char* px = p + 4 * i;
            if ((px[0] | px[1] | px[2] | px[3]) == 0 || (k == 255 && px[3] == 255)) break;
            unpremultiplyPixel(px, k);
        }
    }
}

void LmEffect::compositeLayers(LmBitmap* output) { composite(output, true); }

void LmEffect::compositeLayersPremultiplied(LmBitmap* output) { composite(output, false); }

void LmEffect::composite(LmBitmap* output, bool unpremultiplyToo)
{
    debug("CompositeLayers(%p) - start", this);
    const bool usable = output && output->pixels && output->bytesPerPixel == 4;
    const uint64_t n = usable ? (uint64_t)output->width * output->height : 0;
    if (compositeMode == 1 && n == 0) {
        releaseBitmap();
        compositeMode = 0;
        debug("CompositeLayers(%p) - end", this);
        return;
    }
    if (usable) {
        if (compositeMode == 1) compositeUnder(output);
        if (unpremultiplyToo) unpremultiplyRow(output->pixels, (size_t)n, textAlpha);
    }
    releaseBitmap();
    compositeMode = 0;
    debug("CompositeLayers(%p) - end", this);
}

char* LmEffect::getMapKey()
{
    int64_t length = 0;
    for (LmECore* layer : layers)
        if (LmProperty* p = layer->getProperty()) length += p->getSequentialCharLength();
    char* key = new char[(size_t)length + 1];
    char* cursor = key;
    for (LmECore* layer : layers)
        if (LmProperty* p = layer->getProperty()) p->toSequentialChar(&cursor);
    *cursor = '\0';
    return key;
}

char* LmEffect::getMapKey(unsigned colour)
{
    textColor = colour;
    addText(colour, textOpacity);
    return getMapKey();
}

} // namespace LmFontEffect
