#ifndef LMFONTEFFECT_TEXT_LMTEXTOBJECT_H
#define LMFONTEFFECT_TEXT_LMTEXTOBJECT_H

#include "platform/LmPaint.h"

#include <cstdint>

namespace LmFontEffect {

class List;
class LmEffect;
class LmFontDrawing;
class LmString;
class LmTextObjectImpl;
class LmView;

// Native counterpart of one Java text object: text, font choice, paint, view geometry, line
// placement and the effect stack, rendered into 32-bit pixels. Two-phase: construct, then
// Construct(), which registers the object with the handle table. Every operation fails
// (error 8) on an object whose Construct has not succeeded. Not locked: one thread at a time.
class LmTextObject {
public:
    LmTextObject();
    virtual ~LmTextObject();
    LmTextObject(const LmTextObject&) = delete;
    LmTextObject& operator=(const LmTextObject&) = delete;

    int Construct();
    int GetRuntimeHandle();

    // The owned parts, not copies.
    LmEffect* GetEffect();
    LmString* GetText();
    LmFontDrawing* GetFont();
    List* GetLineInfo();
    LmView* GetView();

    // Null clears the text. Otherwise stores it and registers the locales of its scripts so
    // that fallback fonts are loaded before drawing.
    int SetText(const LmString* text);
    int SetText(const wchar_t* text);
    int SetFontFamilyName(const char* familyName);
    // Registers the font file (or the bytes, which must come from new[] and become the font
    // manager's) and makes it the text's font.
    int SetFont(const char* path);
    int SetFont(const char* path, char* data, unsigned size);
    // Takes the LineInfo records of `lines` (the caller empties its list without deleting
    // them); the previous records are deleted.
    int SetLineInfo(const List* lines);
    int SetTextStyle(bool bold, bool italic);
    bool isBoldTextStyle();
    bool isItalicTextStyle();
    // Off (the default): each line's mask is as wide as the advance, its ink's left edge at
    // the pen, so ink past either side is cut or shifted in. On: the mask covers the whole ink
    // where the font puts it.
    void SetKeepWholeInk(bool keep);
    bool isKeepWholeInk();
    void SetPaint(LmPaint& paint);
    LmPaint GetPaint();
    void SetBackgroundColor(uint32_t color, bool enabled);
    void SetTextColor(uint32_t color);
    uint32_t GetTextColor();

    // Draws into a width x height bitmap (view size plus effect margins); returns its
    // width x height pixels, owned by the object and valid until the next render.
    uint32_t* RenderTextEffect(int width, int height);

    static LmTextObject* FindLmTextObject(int handle);

private:
    // Reports error 8 at the site when the object has no state.
    bool NoImpl(int site) const;
    template <typename T> int StoreText(const T* text);
    // False with code 1 when memory ran out while loading the fallback fonts.
    bool SetTextLocaleListId();

    LmTextObjectImpl* impl;
};

// Deletes a text object for the handle table.
void releaseTextObjectCallback(LmTextObject* object);

} // namespace LmFontEffect

#endif
