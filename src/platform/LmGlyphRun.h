#ifndef LMFONTEFFECT_PLATFORM_LMGLYPHRUN_H
#define LMFONTEFFECT_PLATFORM_LMGLYPHRUN_H

#include "platform/LmGlyphStyle.h"
#include "platform/LmPlatformFont.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace LmFontEffect {

class LmPaint;

// A positioned glyph run of one font: glyph ids with one (x, y) each, and the font settings
// (size, scale, skew, embolden) taken from a paint when the run is allocated.
class LmGlyphRun {
public:
    // Takes the paint's run font and glyph style; `count` glyphs, all id 0 at (0, 0).
    LmGlyphRun(const LmPaint& paint, size_t count);

    size_t size() const { return mGlyphs.size(); }
    uint32_t* glyphs() { return mGlyphs.data(); }
    // Interleaved x, y per glyph.
    float* positions() { return mPositions.data(); }
    const std::vector<uint32_t>& glyphIds() const { return mGlyphs; }
    const std::vector<float>& glyphPositions() const { return mPositions; }
    const std::shared_ptr<LmPlatformFont>& font() const { return mFont; }
    const LmGlyphStyle& style() const { return mStyle; }

private:
    std::shared_ptr<LmPlatformFont> mFont;
    LmGlyphStyle mStyle;
    std::vector<uint32_t> mGlyphs;
    std::vector<float> mPositions;
};

} // namespace LmFontEffect

#endif
