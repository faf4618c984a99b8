#ifndef LMFONTEFFECT_TEXT_LMSCRIPTLOCALES_H
#define LMFONTEFFECT_TEXT_LMSCRIPTLOCALES_H

#include <string>
#include <vector>

namespace LmFontEffect {

// The locales whose fallback fonts a text needs: one entry per script run, in text order,
// repeats kept. Common and inherited characters (digits, spaces, punctuation, combining
// marks) join the run around them; Latin needs nothing; Han asks for both Chinese
// variants; kana Japanese; Hangul Korean; any other script "und-" and its four-letter code.
class LmScriptLocales {
public:
    LmScriptLocales() = delete;

    // `count` UTF-16 units; lone surrogates count as U+FFFD.
    static std::vector<std::string> Collect(const char16_t* text, int count);
};

} // namespace LmFontEffect

#endif
