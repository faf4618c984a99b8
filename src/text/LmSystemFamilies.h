#ifndef LMFONTEFFECT_TEXT_LMSYSTEMFAMILIES_H
#define LMFONTEFFECT_TEXT_LMSYSTEMFAMILIES_H

namespace LmFontEffect {

class List;

// The font manager's system families built from the fonts installed on the machine, the
// records the Java bridge builds from the platform's font configuration.
class LmSystemFamilies {
public:
    // Appends to `families` one new LmFontFamily (with FontEntry fonts; the caller owns them)
    // per installed family, in the order platform discovery lists them: the default family
    // first (no locale, loaded at once by the font manager), then the script families with
    // their locale list, left unloaded so the font manager loads them on demand. Returns the
    // number appended, 0 when nothing is installed or `families` is null.
    static int Collect(List* families);

    // Collects the families, hands them to FontManager::SetSystemFontFamilies and builds the
    // ones loaded at once. True when the font manager holds a system list afterwards (also
    // when one was set before, which is then kept).
    static bool Install();
};

} // namespace LmFontEffect

#endif
