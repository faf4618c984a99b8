#ifndef LMFONTEFFECT_TESTS_TEXT_PLATFORMTESTFONTS_H
#define LMFONTEFFECT_TESTS_TEXT_PLATFORMTESTFONTS_H

#include "platform/LmPlatformFamily.h"
#include "platform/LmPlatformFont.h"
#include "platform/LmTypeface.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace LmTest {

inline const char* const kSansPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
inline const char* const kSansBoldPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
inline const char* const kSansObliquePath = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Oblique.ttf";
inline const char* const kCjkPath = "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf";

inline std::vector<unsigned char> readFileBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Fonts borrow their bytes: the bytes of every file loaded here live for the whole test run.
inline std::shared_ptr<LmFontEffect::LmPlatformFont> loadFont(const std::string& path)
{
    static std::map<std::string, std::vector<unsigned char>> files;
    static std::map<std::string, std::shared_ptr<LmFontEffect::LmPlatformFont>> fonts;
    auto it = fonts.find(path);
    if (it != fonts.end()) return it->second;
    std::vector<unsigned char>& bytes = files[path];
    bytes = readFileBytes(path);
    auto font = LmFontEffect::LmPlatformFont::MakeFromData(bytes.data(), bytes.size(), 0);
    fonts[path] = font;
    return font;
}

inline std::shared_ptr<LmFontEffect::LmPlatformFamily> familyOf(const std::string& path, int weight = 400,
                                                                 bool italic = false, uint32_t localeListId = 0)
{
    std::vector<LmFontEffect::LmStyledFont> fonts{LmFontEffect::LmStyledFont(loadFont(path), weight, italic)};
    return std::make_shared<LmFontEffect::LmPlatformFamily>(localeListId, 0, fonts, false);
}

// Sans (Latin, Greek, Cyrillic, Arabic, Hebrew) first, the CJK font as fallback.
inline std::shared_ptr<LmFontEffect::LmTypeface> sansWithCjk(int weight = 400, bool italic = false)
{
    std::vector<std::shared_ptr<LmFontEffect::LmPlatformFamily>> families{familyOf(kSansPath), familyOf(kCjkPath)};
    return LmFontEffect::LmTypeface::createFromFamilies(std::move(families), weight, italic);
}

inline std::vector<uint16_t> utf16(const std::u16string& s) { return std::vector<uint16_t>(s.begin(), s.end()); }

} // namespace LmTest

#endif
