#ifndef LMFONTEFFECT_PLATFORM_LMPAINT_H
#define LMFONTEFFECT_PLATFORM_LMPAINT_H

#include "platform/LmGlyphStyle.h"
#include "platform/LmPlatformFont.h"

#include <cstdint>
#include <memory>
#include <string>

namespace LmFontEffect {

// Text paint: the values the Java bridge copies from a platform paint, plus the font of the
// glyph run being drawn (set per run while a layout is walked). A plain value type.
class LmPaint {
public:
    // Bits of the platform paint's flag word that change drawing; the others are kept but
    // ignored.
    enum JavaFlags : uint32_t {
        kAntiAliasFlag = 0x01,
        kFakeBoldTextFlag = 0x20,
    };
    enum FamilyVariant { kVariantDefault = 0, kVariantCompact = 1, kVariantElegant = 2 };

    // Largest text size drawn: beyond it outlines leave the rasteriser's coordinate range.
    static constexpr float kMaxTextSize = 16384.0f;

    // Defaults: 12 px, no scale or skew, anti-aliased.
    LmPaint() = default;

    void setTextSize(float size) { mTextSize = size; }
    float getTextSize() const { return mTextSize; }
    void setTextScaleX(float scaleX) { mScaleX = scaleX; }
    float getTextScaleX() const { return mScaleX; }
    void setTextSkewX(float skewX) { mSkewX = skewX; }
    float getTextSkewX() const { return mSkewX; }
    // Extra space per character in em (a fraction of the text size), half on each side.
    void setLetterSpacing(float spacing) { mLetterSpacing = spacing; }
    float getLetterSpacing() const { return mLetterSpacing; }
    void setEmbolden(bool embolden) { mEmbolden = embolden; }
    bool isEmbolden() const { return mEmbolden; }
    void setFamilyVariant(int variant) { mFamilyVariant = variant; }
    int getFamilyVariant() const { return mFamilyVariant; }
    // Stores the flag word; the fake-bold bit also sets embolden, as on the platform.
    void setJavaFlags(uint32_t flags);
    uint32_t getJavaFlags() const { return mJavaFlags; }
    bool isAntiAlias() const { return (mJavaFlags & kAntiAliasFlag) != 0; }
    // CSS-like list, e.g. "'liga' 0, 'smcp'"; shaped with these features.
    void setFontFeatureSettings(const std::string& settings) { mFontFeatureSettings = settings; }
    const std::string& getFontFeatureSettings() const { return mFontFeatureSettings; }
    // Id from LmLocaleListRegistry; its first locale is the shaping language.
    void setLocaleListId(uint32_t id) { mLocaleListId = id; }
    uint32_t getLocaleListId() const { return mLocaleListId; }

    // The font of the glyph run being drawn.
    void setRunFont(std::shared_ptr<LmPlatformFont> font) { mRunFont = std::move(font); }
    const std::shared_ptr<LmPlatformFont>& getRunFont() const { return mRunFont; }

    // The glyph style of this paint for drawing (size, scale, skew, embolden, anti-alias).
    LmGlyphStyle glyphStyle() const;

private:
    float mTextSize = 12.0f;
    float mScaleX = 1.0f;
    float mSkewX = 0.0f;
    float mLetterSpacing = 0.0f;
    bool mEmbolden = false;
    int mFamilyVariant = kVariantDefault;
    uint32_t mJavaFlags = kAntiAliasFlag;
    std::string mFontFeatureSettings;
    uint32_t mLocaleListId = 0;
    std::shared_ptr<LmPlatformFont> mRunFont;
};

} // namespace LmFontEffect

#endif
