#ifndef LMFONTEFFECT_TEXT_LMFONTDRAWING_H
#define LMFONTEFFECT_TEXT_LMFONTDRAWING_H

#include "platform/LmAlphaCanvas.h"
#include "platform/LmGlyphBox.h"
#include "platform/LmLayout.h"
#include "platform/LmPaint.h"

namespace LmFontEffect {

class LmBitmap;
class LmEffect;
class LmString;
class LmTextObject;
class LmTypeface;
class LineInfo;
class List;

// Draws a text object's lines: one 8-bit coverage mask per line, placed through the effect
// stack, which then post-processes and composites every layer into the destination.
class LmFontDrawing {
public:
    // Draws glyphs [start, end) of a layout into a line mask: the top-left corner of the
    // layout's ink bounds lands on the mask's pixel (0, 0).
    class DrawTextFunctor {
    public:
        DrawTextFunctor(const LmLayout& layout, LmAlphaCanvas* canvas, const LmPaint& paint, const LmGlyphBox* bounds)
            : layout(layout), canvas(canvas), paint(paint), bounds(bounds) {}
        void operator()(unsigned start, unsigned end);

        const LmLayout& layout;
        LmAlphaCanvas* canvas;
        const LmPaint& paint;
        const LmGlyphBox* bounds;
    };

    LmFontDrawing();
    virtual ~LmFontDrawing();
    LmFontDrawing(const LmFontDrawing&) = delete;
    LmFontDrawing& operator=(const LmFontDrawing&) = delete;

    void SetFontPath(const char* path);
    void SetFontFamilyName(const char* familyName);
    void ClearGlyphList();
    // With `leavePremultiplied` the stack's final un-premultiply is left to the caller
    // (LmEffect::unpremultiplyRow with the stack's text alpha).
    void DrawTextEffect(LmTextObject* textObject, LmBitmap* dst, bool leavePremultiplied = false);
    // x and y in 26.6 fixed point.
    void _DoRender(int leftOffset, int x, int y, List* glyphs, LmEffect* effect, int direction);

    LmString* GetFontPath() const { return fontPath; }
    LmString* GetFontFamilyName() const { return familyName; }
    List* GetGlyphList() const { return glyphList; }

    // Start of the context of a line beginning at `start`: the index of the nearest 0x0A or
    // 0x0D at or before start (index 0 itself is never tested), else 0.
    static int FindContextStart(const char16_t* text, int start);

private:
    // Shapes one line, draws it into its mask, places the mask through the stack and sets the
    // line's render box: its given box moved by the stack's margins, as wide as the advance.
    void DrawLine(LineInfo* line, const char16_t* utf16, int textLength, LmPaint& paint,
                  const LmTypeface* typeface, LmEffect* effect, bool wholeInk);

    LmString* familyName = nullptr;
    LmString* fontPath = nullptr;
    List* glyphList = nullptr;
};

} // namespace LmFontEffect

#endif
