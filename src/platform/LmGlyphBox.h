#ifndef LMFONTEFFECT_PLATFORM_LMGLYPHBOX_H
#define LMFONTEFFECT_PLATFORM_LMGLYPHBOX_H

namespace LmFontEffect {

// Ink box in pixels relative to an origin on the baseline, y down (left, top, right, bottom).
struct LmGlyphBox {
    float left = 0.0f;
    float top = 0.0f;
    float right = 0.0f;
    float bottom = 0.0f;
    bool empty() const { return !(right > left && bottom > top); }
};

} // namespace LmFontEffect

#endif
