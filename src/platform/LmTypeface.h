#ifndef LMFONTEFFECT_PLATFORM_LMTYPEFACE_H
#define LMFONTEFFECT_PLATFORM_LMTYPEFACE_H

#include "platform/LmFontFakery.h"
#include "platform/LmPlatformFamily.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace LmFontEffect {

// An ordered family list with a requested weight and slant. The first family is preferred;
// later families serve the characters it lacks.
class LmTypeface {
public:
    // The chosen font of one character, with the fakery it needs.
    struct FontChoice {
        std::shared_ptr<LmPlatformFont> font;
        LmFontFakery fakery;
    };

    // Null when the list holds no family with a font.
    static std::shared_ptr<LmTypeface> createFromFamilies(std::vector<std::shared_ptr<LmPlatformFamily>>&& families,
                                                          int weight, bool italic);

    int getWeight() const { return mWeight; }
    bool isItalic() const { return mItalic; }
    const std::vector<std::shared_ptr<LmPlatformFamily>>& getFamilies() const { return mFamilies; }

    // Font for a code point: the first family (of a matching variant: 0 matches every variant)
    // that has a glyph for it, else the first family (which shows its missing-glyph box).
    // Synthetic bold when the requested weight is at least 600 and the chosen member is at
    // least 300 lighter; synthetic italic when italic is asked for and the member is upright.
    FontChoice chooseFont(uint32_t codePoint, int variant) const;
    // The style choice alone for a member of a family.
    FontChoice styleFont(const LmPlatformFamily& family) const;

private:
    LmTypeface(std::vector<std::shared_ptr<LmPlatformFamily>>&& families, int weight, bool italic);

    std::vector<std::shared_ptr<LmPlatformFamily>> mFamilies;
    int mWeight;
    bool mItalic;
};

} // namespace LmFontEffect

#endif
