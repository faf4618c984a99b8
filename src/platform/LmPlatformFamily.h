#ifndef LMFONTEFFECT_PLATFORM_LMPLATFORMFAMILY_H
#define LMFONTEFFECT_PLATFORM_LMPLATFORMFAMILY_H

#include "platform/LmStyledFont.h"

#include <cstdint>
#include <vector>

namespace LmFontEffect {

// A group of fonts of one design at several weights and slants, serving the languages of a
// locale list (0: any) in one variant (0 default, 1 compact, 2 elegant).
class LmPlatformFamily {
public:
    LmPlatformFamily(uint32_t localeListId, int variant, std::vector<LmStyledFont> fonts);

    uint32_t getLocaleListId() const { return mLocaleListId; }
    int getVariant() const { return mVariant; }
    const std::vector<LmStyledFont>& getFonts() const { return mFonts; }
    size_t getNumFonts() const { return mFonts.size(); }

    // Whether any font of the family has a glyph for the code point.
    bool hasGlyph(uint32_t codePoint) const;
    // The member closest to the requested style: same slant first, then the nearest weight
    // (ties go to the heavier one when bold is asked for, else the lighter). Null when the
    // family has no fonts.
    const LmStyledFont* getClosestMatch(int weight, bool italic) const;

private:
    uint32_t mLocaleListId;
    int mVariant;
    std::vector<LmStyledFont> mFonts;
};

} // namespace LmFontEffect

#endif
