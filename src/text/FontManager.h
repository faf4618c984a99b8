#ifndef LMFONTEFFECT_TEXT_FONTMANAGER_H
#define LMFONTEFFECT_TEXT_FONTMANAGER_H

#include <memory>
#include <vector>

namespace LmFontEffect {

class List;
class LmFontFamily;
class LmFontManagerImpl;
class LmPlatformFamily;
class LmPlatformFont;
class LmString;

// The process-wide font registry: fonts registered by name (from a file path or from bytes
// a caller hands over), the system families of the font configuration, script fallback
// families loaded on demand by locale list id, and the ordered family list text is drawn
// with. Registered fonts live until ClearFontMaps or process exit; their bytes (a file is read
// whole at registration) live as long as any font, family or typeface uses them. Safe to call
// from any thread: every call holds the registry's lock.
class FontManager {
public:
    static FontManager* GetInstance();

    ~FontManager();
    FontManager(const FontManager&) = delete;
    FontManager& operator=(const FontManager&) = delete;

    // Whether (name, index) is registered.
    bool IsExisting(const char* name, int index);
    // Registers the font of (name, index). Without data, name is a file path, mapped once
    // and kept. Data, when given, must come from new[] and becomes the manager's, also when
    // the call fails or the font is already registered.
    bool AddMinikinFont(const char* name, char* data, unsigned size, int index, bool checkExisting);
    bool AddMinikinFont(LmString* name, char* data, unsigned size, int index, bool checkExisting);
    bool GetMinikinFont(std::shared_ptr<LmPlatformFont>& out, LmString* name, int index);

    // Registers every font of the family; 0 at the first failure, for null or an empty family.
    bool BuildMinikinFamily(LmFontFamily* family);
    // Builds the first unloaded system family with this locale list id; 0 when none is left,
    // or with code 1 when memory ran out building it.
    bool LoadMinikinFontFamily(unsigned localeListId);
    // Takes the list (of LmFontFamily*) with its families the first time only; later lists
    // stay the caller's.
    bool SetSystemFontFamilies(List* families);
    bool IsSystemFontFamiliesAlreadySet();
    List* GetSystemFontFamilies();

    // The families to draw with: the user font first (its weight and slant read from its
    // name, which may change weight), then every loaded system family in configuration order.
    bool GetMinikinFontFamilies(LmString* familyName, std::vector<std::shared_ptr<LmPlatformFamily>>& families,
                                LmString* userFont, int& weight);

    void ClearFontMaps();
    void ClearFontFamilies();

private:
    friend class FontManagerPeer;  // the tests' view of the registry's state

    FontManager();
    // Reports error 8 at the site when the registry has no state.
    bool NoImpl(int site) const;

    LmFontManagerImpl* impl;
};

} // namespace LmFontEffect

#endif
