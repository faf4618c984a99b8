#ifndef LMFONTEFFECT_PLATFORM_LMSYSTEMFONTS_H
#define LMFONTEFFECT_PLATFORM_LMSYSTEMFONTS_H

#include <string>
#include <vector>

namespace LmFontEffect {

// The machine's fonts through fontconfig. This only discovers them; the text layer turns
// the list into its font families.
class LmSystemFonts {
public:
    struct Face {
        std::string path;
        int index = 0;     // face index inside a collection
        int weight = 400;  // 1..1000
    };
    struct Family {
        std::string name;
        std::string locale;  // empty for the default family
        std::vector<Face> faces;
    };

    // The installed families text is drawn with: first the default sans-serif family (no
    // locale), then one family per script the default does not cover and the machine has a
    // font for, with the locale the text object registers for that script ("zh-Hans",
    // "zh-Hant", "ja", "ko", "und-Arab", ...). Only upright, normal-width outline faces are
    // listed, lightest first. Empty when fontconfig finds nothing.
    static std::vector<Family> ListFamilies();

    // Path of the installed font file fontconfig matches best for a family name (or a generic
    // name such as "sans-serif") at a weight (100..900) and slant, after its usual
    // substitutions; empty when it finds no file or the name is null.
    static std::string FindFontFile(const char* familyName, int weight, bool italic);
};

} // namespace LmFontEffect

#endif
