#ifndef LMFONTEFFECT_PLATFORM_LMPLATFORMFONT_H
#define LMFONTEFFECT_PLATFORM_LMPLATFORMFONT_H

#include "platform/LmGlyphBox.h"
#include "platform/LmGlyphStyle.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

// Library types kept out of the header (declared here as the libraries declare them).
struct FT_LibraryRec_;
struct FT_FaceRec_;
struct hb_face_t;
struct hb_font_t;

namespace LmFontEffect {

class LmAlphaCanvas;

// An immutable font made from bytes and a collection index: a FreeType face for outlines and
// coverage, a HarfBuzz face for shaping. The font holds `owner`, which keeps the bytes alive;
// without one the bytes are borrowed and must outlive the font.
// Safe to share between threads: the FreeType face, which holds per-size state, is used
// under a mutex inside.
class LmPlatformFont {
public:
    // Null for bytes FreeType cannot open (random, truncated, index out of range), for null
    // data or a size of 0. Never crashes on corrupt input.
    static std::shared_ptr<LmPlatformFont> MakeFromData(const unsigned char* data, size_t size, int index,
                                                        std::shared_ptr<const void> owner = nullptr);

    ~LmPlatformFont();
    LmPlatformFont(const LmPlatformFont&) = delete;
    LmPlatformFont& operator=(const LmPlatformFont&) = delete;

    bool HasGlyph(uint32_t codePoint) const;
    uint32_t GetGlyphId(uint32_t codePoint) const;
    int GetUnitsPerEm() const { return mUnitsPerEm; }

    // Typographic ascent at a pixel size: negative (above the baseline, y down).
    float GetAscent(float size) const;
    // Typographic descent at a pixel size: positive (below the baseline).
    float GetDescent(float size) const;

    // Exact ink box of one glyph drawn with the style, relative to its origin (y down);
    // false, with an all-zero box, when the glyph has no outline (space, bitmap-only glyph,
    // bad id) or the style's size is not positive and finite.
    bool GetGlyphBounds(uint32_t glyphId, const LmGlyphStyle& style, LmGlyphBox* box) const;
    // Renders one glyph with its origin at (x, y) (pixels, y down, fractions kept) into the
    // coverage canvas, merging by maximum with what is already there.
    void DrawGlyph(uint32_t glyphId, const LmGlyphStyle& style, float x, float y, LmAlphaCanvas* canvas) const;

    // HarfBuzz face of the font (owned by the font, valid while it lives), for shaping.
    hb_face_t* GetHbFace() const { return mHbFace; }

private:
    LmPlatformFont() = default;
    // Loads the glyph outline scaled, emboldened and transformed as the style says; returns
    // false when there is none. Caller holds mMutex.
    bool LoadOutline(uint32_t glyphId, const LmGlyphStyle& style) const;

    // Declared first so it goes last, after the faces that read the bytes.
    std::shared_ptr<const void> mOwner;
    FT_LibraryRec_* mLibrary = nullptr;
    FT_FaceRec_* mFace = nullptr;
    hb_face_t* mHbFace = nullptr;
    hb_font_t* mHbFont = nullptr;  // immutable, font units: glyph look-ups
    int mUnitsPerEm = 1000;
    int mAscender = 0;   // font units, y up
    int mDescender = 0;  // font units, y up (negative below the baseline)
    mutable std::mutex mMutex;
};

} // namespace LmFontEffect

#endif
