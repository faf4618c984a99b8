#ifndef LMFONTEFFECT_PLATFORM_LMSYSTEMFONTS_H
#define LMFONTEFFECT_PLATFORM_LMSYSTEMFONTS_H

#include <string>

namespace LmFontEffect {

class List;

// The machine's fonts through fontconfig, as the records the Java bridge builds from the
// platform's font configuration.
class LmSystemFonts {
public:
    // Appends to `families` new LmFontFamily records (with FontEntry fonts; the caller owns
    // them): first the default sans-serif family (no locale, loaded at once by the font
    // manager), then one family per script the machine has a font for, carrying the locale
    // list that the text object registers for that script ("zh-Hans", "zh-Hant", "ja", "ko",
    // "und-Arab", ...) and left unloaded so the font manager loads it on demand. Italic faces
    // are left out. Returns the number of families appended, 0 when fontconfig finds nothing
    // or `families` is null.
    static int CollectFamilies(List* families);

    // Collects the families, hands them to FontManager::SetSystemFontFamilies and builds the
    // ones loaded at once. True when the font manager holds a system list afterwards (also
    // when one was set before, which is then kept).
    static bool InstallSystemFonts();

    // Path of the installed font file fontconfig matches best for a family name (or a generic
    // name such as "sans-serif") at a weight (100..900) and slant, after its usual
    // substitutions; empty when it finds no file or the name is null.
    static std::string FindFontFile(const char* familyName, int weight, bool italic);
};

} // namespace LmFontEffect

#endif
