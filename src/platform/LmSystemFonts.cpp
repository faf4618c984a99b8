#include "platform/LmSystemFonts.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <set>

namespace LmFontEffect {

namespace {

// The locale each script run registers, the fontconfig language that finds fonts for it and a
// character every font serving the script has.
struct ScriptFallback {
    const char* locale;
    const char* fcLang;
    FcChar32 sample;
};

const ScriptFallback kScripts[] = {
    {"zh-Hans", "zh-cn", 0x4E2D}, {"zh-Hant", "zh-tw", 0x4E2D}, {"ja", "ja", 0x3042},
    {"ko", "ko", 0xAC00},         {"und-Arab", "ar", 0x0628},   {"und-Hebr", "he", 0x05D0},
    {"und-Cyrl", "ru", 0x0416},   {"und-Grek", "el", 0x03A9},   {"und-Thai", "th", 0x0E01},
    {"und-Deva", "hi", 0x0915},   {"und-Beng", "bn", 0x0995},   {"und-Taml", "ta", 0x0B95},
    {"und-Telu", "te", 0x0C15},   {"und-Knda", "kn", 0x0C95},   {"und-Mlym", "ml", 0x0D15},
    {"und-Gujr", "gu", 0x0A95},   {"und-Guru", "pa", 0x0A15},   {"und-Orya", "or", 0x0B15},
    {"und-Sinh", "si", 0x0D85},   {"und-Armn", "hy", 0x0531},   {"und-Geor", "ka", 0x10D0},
    {"und-Ethi", "am", 0x1200},   {"und-Khmr", "km", 0x1780},   {"und-Laoo", "lo", 0x0E81},
    {"und-Mymr", "my", 0x1000},   {"und-Tibt", "bo", 0x0F40},
};

FcConfig* gConfig = nullptr;

// fontconfig frees its internal tables only in FcFini; without it every process that looked
// up a font would end with a leak report under the sanitizers.
void releaseConfig()
{
    if (gConfig) FcConfigDestroy(gConfig);
    gConfig = nullptr;
    FcFini();
}

// The library's own configuration, loaded once and kept until exit (the default one would
// be shared with, and could be reloaded by, other users of fontconfig).
FcConfig* config()
{
    static std::once_flag once;
    std::call_once(once, [] {
        gConfig = FcInitLoadConfigAndFonts();
        if (gConfig) std::atexit(releaseConfig);
    });
    return gConfig;
}

bool getString(FcPattern* p, const char* object, std::string* out)
{
    FcChar8* s = nullptr;
    if (FcPatternGetString(p, object, 0, &s) != FcResultMatch || !s) return false;
    *out = reinterpret_cast<const char*>(s);
    return true;
}

int getNumber(FcPattern* p, const char* object, int fallback)
{
    int i = 0;
    if (FcPatternGetInteger(p, object, 0, &i) == FcResultMatch) return i;
    double d = 0.0;
    if (FcPatternGetDouble(p, object, 0, &d) == FcResultMatch) return (int)d;
    return fallback;
}

bool isUprightOutline(FcPattern* p)
{
    FcBool outline = FcFalse;
    if (FcPatternGetBool(p, FC_OUTLINE, 0, &outline) == FcResultMatch && !outline) return false;
    return getNumber(p, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN;
}

// Upright, normal-width outline faces of a family, lightest first.
std::vector<LmSystemFonts::Face> familyFaces(const std::string& family)
{
    std::vector<LmSystemFonts::Face> faces;
    FcPattern* pattern = FcPatternCreate();
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    FcObjectSet* objects = FcObjectSetBuild(FC_FILE, FC_INDEX, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_OUTLINE, nullptr);
    FcFontSet* set = FcFontList(config(), pattern, objects);
    if (set) {
        for (int i = 0; i < set->nfont; i++) {
            FcPattern* p = set->fonts[i];
            LmSystemFonts::Face face;
            if (!getString(p, FC_FILE, &face.path) || !isUprightOutline(p)) continue;
            if (getNumber(p, FC_WIDTH, FC_WIDTH_NORMAL) != FC_WIDTH_NORMAL) continue;
            face.index = getNumber(p, FC_INDEX, 0);
            face.weight = FcWeightToOpenType(getNumber(p, FC_WEIGHT, FC_WEIGHT_REGULAR));
            if (face.weight < 1 || face.weight > 1000) face.weight = 400;
            faces.push_back(face);
        }
        FcFontSetDestroy(set);
    }
    FcObjectSetDestroy(objects);
    FcPatternDestroy(pattern);
    std::sort(faces.begin(), faces.end(), [](const LmSystemFonts::Face& a, const LmSystemFonts::Face& b) {
        return a.weight != b.weight ? a.weight < b.weight : a.path < b.path;
    });
    return faces;
}

// Family name of the best font for a pattern that has the sample character (0: any).
bool bestFamily(const char* query, FcChar32 sample, std::string* family)
{
    FcPattern* pattern = FcNameParse(reinterpret_cast<const FcChar8*>(query));
    if (!pattern) return false;
    FcConfigSubstitute(config(), pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcFontSet* sorted = FcFontSort(config(), pattern, FcFalse, nullptr, &result);
    bool found = false;
    if (sorted) {
        for (int i = 0; i < sorted->nfont && !found; i++) {
            FcPattern* p = sorted->fonts[i];
            if (!isUprightOutline(p)) continue;
            if (sample) {
                FcCharSet* cs = nullptr;
                if (FcPatternGetCharSet(p, FC_CHARSET, 0, &cs) != FcResultMatch || !FcCharSetHasChar(cs, sample)) continue;
            }
            found = getString(p, FC_FAMILY, family);
        }
        FcFontSetDestroy(sorted);
    }
    FcPatternDestroy(pattern);
    return found;
}

} // namespace

std::vector<LmSystemFonts::Family> LmSystemFonts::ListFamilies()
{
    std::vector<Family> families;
    if (!config()) return families;
    std::set<std::string> taken;

    std::string defaultFamily;
    if (bestFamily("sans-serif", 'A', &defaultFamily)) {
        std::vector<Face> faces = familyFaces(defaultFamily);
        if (!faces.empty()) {
            families.push_back({defaultFamily, std::string(), std::move(faces)});
            taken.insert(defaultFamily);
        }
    }
    for (const ScriptFallback& script : kScripts) {
        std::string query = std::string("sans-serif:lang=") + script.fcLang;
        std::string name;
        // A script the default family covers needs no fallback of its own.
        if (!bestFamily(query.c_str(), script.sample, &name) || taken.count(name)) continue;
        std::vector<Face> faces = familyFaces(name);
        if (faces.empty()) continue;
        families.push_back({name, script.locale, std::move(faces)});
    }
    return families;
}

std::string LmSystemFonts::FindFontFile(const char* familyName, int weight, bool italic)
{
    if (!familyName || !config()) return std::string();
    FcPattern* pattern = FcPatternCreate();
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(familyName));
    FcPatternAddInteger(pattern, FC_WEIGHT, FcWeightFromOpenType(std::min(std::max(weight, 1), 1000)));
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(config(), pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(config(), pattern, &result);
    std::string file;
    if (match) {
        getString(match, FC_FILE, &file);
        FcPatternDestroy(match);
    }
    FcPatternDestroy(pattern);
    return file;
}

} // namespace LmFontEffect
