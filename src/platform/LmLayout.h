#ifndef LMFONTEFFECT_PLATFORM_LMLAYOUT_H
#define LMFONTEFFECT_PLATFORM_LMLAYOUT_H

#include "platform/LmFontFakery.h"
#include "platform/LmGlyphBox.h"
#include "platform/LmPlatformFont.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace LmFontEffect {

// The shaped form of a UTF-16 range: glyphs in visual order (left to right), each with its
// font, fakery, id and pen position (x to the right, y down, relative to the start of the
// line on the baseline), the total advance and the ink bounds.
class LmLayout {
public:
    struct Glyph {
        std::shared_ptr<LmPlatformFont> font;
        LmFontFakery fakery;
        uint32_t glyphId = 0;
        float x = 0.0f;
        float y = 0.0f;
    };

    size_t nGlyphs() const { return mGlyphs.size(); }
    const Glyph& getGlyph(size_t i) const { return mGlyphs[i]; }
    LmPlatformFont* getFont(size_t i) const { return mGlyphs[i].font.get(); }
    const LmFontFakery& getFakery(size_t i) const { return mGlyphs[i].fakery; }
    uint32_t getGlyphId(size_t i) const { return mGlyphs[i].glyphId; }
    float getX(size_t i) const { return mGlyphs[i].x; }
    float getY(size_t i) const { return mGlyphs[i].y; }
    // Sum of the advances, letter spacing included.
    float getAdvance() const { return mAdvance; }
    // Union of the glyphs' ink boxes (whole pixels) relative to the pen origin; all zero when
    // nothing has ink.
    const LmGlyphBox& getBounds() const { return mBounds; }

    void appendGlyph(const Glyph& glyph) { mGlyphs.push_back(glyph); }
    void setAdvance(float advance) { mAdvance = advance; }
    // Grows the bounds by a box already placed relative to the pen origin.
    void joinBounds(const LmGlyphBox& box);
    void setBounds(const LmGlyphBox& box) { mBounds = box; }

private:
    std::vector<Glyph> mGlyphs;
    float mAdvance = 0.0f;
    LmGlyphBox mBounds;
};

} // namespace LmFontEffect

#endif
