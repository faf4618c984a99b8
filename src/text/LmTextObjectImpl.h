#ifndef LMFONTEFFECT_TEXT_LMTEXTOBJECTIMPL_H
#define LMFONTEFFECT_TEXT_LMTEXTOBJECTIMPL_H

#include "platform/LmPaint.h"

#include <cstdint>

namespace LmFontEffect {

class List;
class LmBitmap;
class LmEffect;
class LmFontDrawing;
class LmString;
class LmTextObject;
class LmView;

// State of a text object; it owns everything it points to.
class LmTextObjectImpl {
public:
    explicit LmTextObjectImpl(LmTextObject* owner);
    virtual ~LmTextObjectImpl();
    LmTextObjectImpl(const LmTextObjectImpl&) = delete;
    LmTextObjectImpl& operator=(const LmTextObjectImpl&) = delete;

    // Whether every part was made (memory may run out while constructing).
    bool IsComplete() const;
    // Deletes every LineInfo record and empties the list.
    void ClearLines();

    LmTextObject* owner;
    LmString* text = nullptr;
    LmFontDrawing* fontDrawing;
    LmEffect* effect;
    List* lineInfo;  // of LineInfo*
    int32_t runtimeHandle = -1;
    uint32_t textStyle = 0;  // bit 0 bold, bit 1 italic
    LmBitmap* resultBitmap = nullptr;
    LmView* view;
    LmPaint paint;
    uint32_t backgroundColor = 0;
    bool backgroundEnabled = false;
    bool keepWholeInk = false;
    uint32_t textColor = 0xFF000000u;
};

} // namespace LmFontEffect

#endif
