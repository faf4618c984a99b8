#ifndef LMFONTEFFECT_TEXT_LMFONTFAMILY_H
#define LMFONTEFFECT_TEXT_LMFONTFAMILY_H

#include <cstdint>

namespace LmFontEffect {

class List;

// A system font family: its fonts (a List of FontEntry*, owned with the entries), the locale
// list it serves and its variant. `loaded` becomes nonzero once the font manager has
// registered every font of the family; families serving a script are loaded on demand.
class LmFontFamily {
public:
    LmFontFamily() = default;
    ~LmFontFamily();
    LmFontFamily(const LmFontFamily&) = delete;
    LmFontFamily& operator=(const LmFontFamily&) = delete;

    int32_t loaded = 0;
    uint32_t localeListId = 0;  // 0: no locale
    int32_t variant = 0;        // 0 default, 1 compact, 2 elegant
    List* fonts = nullptr;
};

} // namespace LmFontEffect

#endif
