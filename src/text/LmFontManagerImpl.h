#ifndef LMFONTEFFECT_TEXT_LMFONTMANAGERIMPL_H
#define LMFONTEFFECT_TEXT_LMFONTMANAGERIMPL_H

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace LmFontEffect {

class FontManager;
class List;
class LmFontData;
class LmPlatformFont;

// State of the font registry. Keys keep a trailing NUL byte: a font key is the name, one
// character '0' + index and a NUL; a path key is the name and a NUL. The NUL is part of the
// key so that the two kinds never look alike.
class LmFontManagerImpl {
public:
    explicit LmFontManagerImpl(FontManager* owner) : owner(owner) {}
    virtual ~LmFontManagerImpl();
    LmFontManagerImpl(const LmFontManagerImpl&) = delete;
    LmFontManagerImpl& operator=(const LmFontManagerImpl&) = delete;

    static std::string FontKey(const char* name, int index);
    static std::string PathKey(const char* name);

    // Drops the registry's fonts and its hold on their bytes; a font still held elsewhere
    // (a family, a typeface) keeps its bytes and stays usable.
    void ClearFontMaps();
    void ClearFontFamilies();

    FontManager* owner;
    // Held by every FontManager call: threads share the registry.
    std::recursive_mutex mutex;
    // Sizes of the files read in units of 1,024,000 bytes (not 2^20), as the log shows them.
    double totalBufferMB = 0.0;
    std::map<std::string, std::shared_ptr<LmFontData>> fontDataMap;
    std::map<std::string, std::shared_ptr<LmPlatformFont>> fontMap;
    List* systemFamilies = nullptr;  // of LmFontFamily*
    bool systemFamiliesSet = false;
};

} // namespace LmFontEffect

#endif
