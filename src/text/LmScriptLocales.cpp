#include "text/LmScriptLocales.h"

#include <hb.h>

#include <cstdio>

namespace LmFontEffect {

namespace {

bool isWeak(hb_script_t script) { return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED; }

void addRunLocales(hb_script_t script, std::vector<std::string>& out)
{
    if (script == HB_SCRIPT_INHERITED) script = HB_SCRIPT_COMMON;
    switch (script) {
    case HB_SCRIPT_INVALID:
    case HB_SCRIPT_COMMON:
    case HB_SCRIPT_UNKNOWN:
    case HB_SCRIPT_LATIN:
        return;
    case HB_SCRIPT_KATAKANA:
    case HB_SCRIPT_HIRAGANA:
        out.emplace_back("ja");
        return;
    case HB_SCRIPT_HANGUL:
        out.emplace_back("ko");
        return;
    case HB_SCRIPT_HAN:
        out.emplace_back("zh-Hans");
        out.emplace_back("zh-Hant");
        return;
    default: {
        // The ISO 15924 tag is packed big-endian: the first letter is the high byte.
        char tag[16];
        std::snprintf(tag, sizeof tag, "und-%c%c%c%c", (char)((script >> 24) & 0xFF), (char)((script >> 16) & 0xFF),
                      (char)((script >> 8) & 0xFF), (char)(script & 0xFF));
        out.emplace_back(tag);
        return;
    }
    }
}

} // namespace

std::vector<std::string> LmScriptLocales::Collect(const char16_t* text, int count)
{
    std::vector<std::string> out;
    if (!text || count < 1) return out;
    hb_unicode_funcs_t* funcs = hb_unicode_funcs_get_default();

    bool inRun = false;
    hb_script_t runScript = HB_SCRIPT_INVALID;
    for (int i = 0; i < count;) {
        uint32_t cp = text[i++];
        if (cp >= 0xD800 && cp <= 0xDBFF && i < count && text[i] >= 0xDC00 && text[i] <= 0xDFFF) {
            // (high - 0xD800) * 0x400 + (low - 0xDC00) + 0x10000, folded into one constant.
            cp = (cp << 10) + text[i++] - 0x35FDC00u;
        } else if ((cp & ~0x7FFu) == 0xD800) {
            cp = 0xFFFD;
        }
        hb_script_t script = hb_unicode_script(funcs, cp);
        if (!inRun) {
            inRun = true;
            runScript = script;
        } else if (script == runScript) {
            continue;
        } else if (isWeak(runScript)) {
            runScript = script;
        } else if (isWeak(script)) {
            continue;
        } else {
            addRunLocales(runScript, out);
            runScript = script;
        }
    }
    if (inRun) addRunLocales(runScript, out);
    return out;
}

} // namespace LmFontEffect
