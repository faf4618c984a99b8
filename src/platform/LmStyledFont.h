#ifndef LMFONTEFFECT_PLATFORM_LMSTYLEDFONT_H
#define LMFONTEFFECT_PLATFORM_LMSTYLEDFONT_H

#include "platform/LmPlatformFont.h"

#include <memory>

namespace LmFontEffect {

// A font as a family member: the font with the weight and slant under which the family
// offers it (these may differ from the font's own, e.g. a user font named "-Bold").
class LmStyledFont {
public:
    LmStyledFont() = default;
    LmStyledFont(std::shared_ptr<LmPlatformFont> f, int w, bool i) : font(std::move(f)), weight(w), italic(i) {}

    std::shared_ptr<LmPlatformFont> font;
    int weight = 400;
    bool italic = false;
};

} // namespace LmFontEffect

#endif
