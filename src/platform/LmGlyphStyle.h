#ifndef LMFONTEFFECT_PLATFORM_LMGLYPHSTYLE_H
#define LMFONTEFFECT_PLATFORM_LMGLYPHSTYLE_H

namespace LmFontEffect {

// How a glyph is drawn: pixel size and the run's font settings. skewX follows the y-down
// convention (x' = x + skewX * y), so a negative skew leans the glyph to the right.
struct LmGlyphStyle {
    float size = 0.0f;
    float scaleX = 1.0f;
    float skewX = 0.0f;
    bool embolden = false;
    bool antiAlias = true;
};

} // namespace LmFontEffect

#endif
