#include "text/LmTextObject.h"

#include "effect/LmEffect.h"
#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "platform/LmCanvas.h"
#include "platform/LmLocaleListRegistry.h"
#include "raster/LmBitmap.h"
#include "raster/LmBlender.h"
#include "raster/LmRowOps.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmFontDrawing.h"
#include "text/LmScriptLocales.h"
#include "text/LmTextInstanceManager.h"
#include "text/LmTextObjectImpl.h"
#include "text/LmView.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmTextObject";

// Fixed site of the missing-impl check of a render, which callers look for in the log.
const int kRenderSite = 248;

// Memory ran out (or a library threw) inside a call: code 1 and the call's failure value.
int caught(int site)
{
    Error::Report(kTag, Error::LM_ERR_PLATFORM, site);
    return 0;
}

// The finish of a render onto a clear output, in place and row by row while the row is in
// cache: inside the clip each pixel is un-premultiplied with the text alpha, then each pixel
// with alpha trades bytes 0 and 2 (the order Java reads); every other pixel becomes 0.
void finishInPlace(LmBitmap* image, unsigned char textAlpha, int left, int top, int right, int bottom)
{
    const size_t width = image->width;
    if (width == 0) return; // a zero-width image may still claim billions of rows
    for (size_t y = 0; y < image->height; ++y) {
        unsigned char* row = image->pixels + y * width * 4;
        if ((int64_t)y < top || (int64_t)y >= bottom || left >= right) {
            std::memset(row, 0, width * 4);
            continue;
        }
        std::memset(row, 0, (size_t)left * 4);
        std::memset(row + (size_t)right * 4, 0, (width - (size_t)right) * 4);
        LmEffect::unpremultiplyRow(row + (size_t)left * 4, (size_t)(right - left), textAlpha);
        LmRowOps::swapVisible(row + (size_t)left * 4, (size_t)(right - left));
    }
}

enum TextStyleBits : uint32_t { kBoldBit = 1u << 0, kItalicBit = 1u << 1 };

} // namespace

LmTextObjectImpl::LmTextObjectImpl(LmTextObject* owner)
    : owner(owner), fontDrawing(nullptr), effect(nullptr), lineInfo(nullptr), view(nullptr)
{
    // A part that fails to allocate stays null: Construct refuses the object and the
    // destructor frees the parts made.
    try {
        fontDrawing = new LmFontDrawing();
        effect = new LmEffect();
        lineInfo = new List();
        view = new LmView();
    } catch (const std::bad_alloc&) {
    }
    if (lineInfo) lineInfo->Construct();
}

bool LmTextObjectImpl::IsComplete() const
{
    return fontDrawing && fontDrawing->GetGlyphList()->GetCount() >= 0 && effect && view && lineInfo &&
           lineInfo->GetCount() >= 0;
}

LmTextObjectImpl::~LmTextObjectImpl()
{
    delete text;
    ClearLines();
    delete lineInfo;
    delete fontDrawing;
    delete effect;
    delete resultBitmap;
    delete view;
}

void LmTextObjectImpl::ClearLines()
{
    if (!lineInfo) return;
    int count = lineInfo->GetCount();
    for (int i = 0; i < count; ++i) delete static_cast<LineInfo*>(lineInfo->Get(i));
    lineInfo->RemoveAll();
}

void releaseTextObjectCallback(LmTextObject* object)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Delete LmTextObject by InstanceManager : %p", (void*)object);
    delete object;
}

bool LmTextObject::NoImpl(int site) const
{
    if (impl) return false;
    Error::Report(kTag, Error::LM_ERR_NOT_CONSTRUCTED, site);
    return true;
}

LmTextObject::LmTextObject() : impl(nullptr)
{
    // Once per process; static initialisation keeps threads constructing at once apart.
    static const bool callbackSet = (LmTextInstanceManager::SetCallBack(releaseTextObjectCallback), true);
    (void)callbackSet;
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmTextObject(%p)", (void*)this);
}

LmTextObject::~LmTextObject()
{
    int handle = impl ? impl->runtimeHandle : -1;
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "~LmTextObject(%p / %d)", (void*)this, handle);
    if (NoImpl(__LINE__)) return;
    LmTextInstanceManager::Unregister(handle);
    delete impl;
}

int LmTextObject::Construct()
{
    if (impl) {
        Error::Report(kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__);
        return 0;
    }
    try {
        impl = new LmTextObjectImpl(this);
        if (impl->IsComplete()) impl->runtimeHandle = LmTextInstanceManager::Register(this);
    } catch (const std::bad_alloc&) {
    }
    if (!impl || impl->runtimeHandle < 0) {
        delete impl;
        impl = nullptr;
        return caught(__LINE__);
    }
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Construct(%p / %d)", (void*)this, impl->runtimeHandle);
    return 1;
}

int LmTextObject::GetRuntimeHandle()
{
    if (NoImpl(__LINE__)) return -1;
    return impl->runtimeHandle;
}

LmEffect* LmTextObject::GetEffect()
{
    if (NoImpl(__LINE__)) return nullptr;
    return impl->effect;
}

LmString* LmTextObject::GetText()
{
    if (NoImpl(__LINE__)) return nullptr;
    return impl->text;
}

LmFontDrawing* LmTextObject::GetFont()
{
    if (NoImpl(__LINE__)) return nullptr;
    return impl->fontDrawing;
}

List* LmTextObject::GetLineInfo()
{
    if (NoImpl(__LINE__)) return nullptr;
    return impl->lineInfo;
}

LmView* LmTextObject::GetView()
{
    if (NoImpl(__LINE__)) return nullptr;
    return impl->view;
}

template <typename T> int LmTextObject::StoreText(const T* text)
{
    if (!text) {
        delete impl->text;
        impl->text = nullptr;
        return 1;
    }
    if (!impl->text) {
        std::unique_ptr<LmString> made(new LmString());
        if (!made->Construct()) return caught(__LINE__);
        impl->text = made.release();
    }
    if (!impl->text->Set(text)) return 0;
    return SetTextLocaleListId() ? 1 : 0;
}

int LmTextObject::SetText(const LmString* text)
try {
    if (NoImpl(__LINE__)) return 0;
    if (LmLog::IsAllLogEnable())
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "SetText() - %p [%s] strLen=%d", (void*)this,
                     LmLog::ConvertLog(text), text ? text->GetLength() : 0);
    return StoreText(text);
} catch (...) {
    return caught(__LINE__);
}

int LmTextObject::SetText(const wchar_t* text)
try {
    if (NoImpl(__LINE__)) return 0;
    return StoreText(text);
} catch (...) {
    return caught(__LINE__);
}

bool LmTextObject::SetTextLocaleListId()
{
    if (NoImpl(__LINE__)) return false;
    if (!impl->text) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "SetTextLocaleListId - text is null.");
        return true;
    }
    int size = impl->text->GetUTF16Size();
    if (size == -1) return true;
    std::unique_ptr<char16_t[]> utf16(impl->text->GetUTF16());
    if (!utf16) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "SetTextLocaleListId - textString is null.");
        return Error::GetError() != Error::LM_ERR_PLATFORM;
    }
    if (size < 1) return true;
    // The size counts the terminator, which is common script and changes no run.
    for (const std::string& tag : LmScriptLocales::Collect(utf16.get(), size)) {
        uint32_t id = LmLocaleListRegistry::registerLocaleList(tag.c_str());
        Error::SetError(Error::LM_ERR_NONE);
        if (id != 0 && !FontManager::GetInstance()->LoadMinikinFontFamily(id) &&
            Error::GetError() == Error::LM_ERR_PLATFORM)
            return false;
    }
    return true;
}

int LmTextObject::SetFontFamilyName(const char* familyName)
try {
    if (NoImpl(__LINE__)) return 0;
    if (!familyName) {
        Error::Report(kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__);
        return 0;
    }
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "SetFontFamilyName(%p) - familyName[%s]", (void*)this, familyName);
    if (!impl->fontDrawing) impl->fontDrawing = new LmFontDrawing();
    impl->fontDrawing->SetFontFamilyName(familyName);
    return 1;
} catch (...) {
    return caught(__LINE__);
}

int LmTextObject::SetFont(const char* path)
try {
    if (NoImpl(__LINE__)) return 0;
    if (!path) {
        Error::Report(kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__);
        return 0;
    }
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "SetFont(%p) - path[%s]", (void*)this, path);
    if (!impl->fontDrawing) impl->fontDrawing = new LmFontDrawing();
    if (!FontManager::GetInstance()->AddMinikinFont(path, nullptr, 0, 0, true)) return 0;
    impl->fontDrawing->SetFontPath(path);
    return 1;
} catch (...) {
    return caught(__LINE__);
}

int LmTextObject::SetFont(const char* path, char* data, unsigned size)
try {
    if (NoImpl(__LINE__)) {
        delete[] data;
        return 0;
    }
    if (!path) {
        Error::Report(kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__);
        delete[] data;
        return 0;
    }
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "SetFont2(%p) - path[%s] - size: %d", (void*)this, path, (int)size);
    if (!impl->fontDrawing) impl->fontDrawing = new LmFontDrawing();
    if (!FontManager::GetInstance()->AddMinikinFont(path, data, size, 0, true)) return 0;
    impl->fontDrawing->SetFontPath(path);
    return 1;
} catch (...) {
    return caught(__LINE__);
}

int LmTextObject::SetLineInfo(const List* lines)
try {
    if (NoImpl(__LINE__)) return 0;
    if (!lines) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "SetLineInfo - lineInfo is NULL");
        Error::Report(kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__);
        return 0;
    }
    if (!impl->lineInfo) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "SetLineInfo - M->lineInfo is NULL");
        Error::Report(kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__);
        return 0;
    }
    impl->ClearLines();
    // All or none: records not taken stay the caller's.
    if (lines->GetCount() > 0 && !impl->lineInfo->Add(lines)) {
        impl->lineInfo->RemoveAll();
        return 0;
    }
    return 1;
} catch (...) {
    return caught(__LINE__);
}

int LmTextObject::SetTextStyle(bool bold, bool italic)
{
    if (NoImpl(__LINE__)) return 0;
    uint32_t style = impl->textStyle & ~(uint32_t)(kBoldBit | kItalicBit);
    if (bold) style |= kBoldBit;
    if (italic) style |= kItalicBit;
    impl->textStyle = style;
    return 1;
}

bool LmTextObject::isBoldTextStyle()
{
    if (NoImpl(__LINE__)) return false;
    return (impl->textStyle & kBoldBit) != 0;
}

void LmTextObject::SetKeepWholeInk(bool keep)
{
    if (NoImpl(__LINE__)) return;
    impl->keepWholeInk = keep;
}

bool LmTextObject::isKeepWholeInk()
{
    if (NoImpl(__LINE__)) return false;
    return impl->keepWholeInk;
}

bool LmTextObject::isItalicTextStyle()
{
    if (NoImpl(__LINE__)) return false;
    return (impl->textStyle & kItalicBit) != 0;
}

void LmTextObject::SetPaint(LmPaint& paint)
{
    if (NoImpl(__LINE__)) return;
    impl->paint = paint;
}

LmPaint LmTextObject::GetPaint()
{
    if (NoImpl(__LINE__)) return LmPaint();
    return impl->paint;
}

void LmTextObject::SetBackgroundColor(uint32_t color, bool enabled)
{
    if (NoImpl(__LINE__)) return;
    impl->backgroundColor = color;
    impl->backgroundEnabled = enabled;
}

void LmTextObject::SetTextColor(uint32_t color)
{
    if (NoImpl(__LINE__)) return;
    impl->textColor = color;
}

uint32_t LmTextObject::GetTextColor()
{
    if (NoImpl(__LINE__)) return 0xFF000000u;
    return impl->textColor;
}

uint32_t* LmTextObject::RenderTextEffect(int width, int height)
try {
    if (NoImpl(kRenderSite)) return nullptr;
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "RenderTextEffect(%p / %d) >>> Start! - (w=%d,h=%d)", (void*)this,
                 impl->runtimeHandle, width, height);
    // A negative size draws nothing rather than becoming a huge unsigned one.
    unsigned w = width > 0 ? (unsigned)width : 0;
    unsigned h = height > 0 ? (unsigned)height : 0;
    // Parts that run out of memory on the way leave code 1 behind them.
    Error::SetError(Error::LM_ERR_NONE);

    if (LmBitmap::byteSize(w, h, 4) == 0 && (uint64_t)w * h != 0) {
        LmLog::Print(LmLog::LM_PRIO_WARN, kTag, "RenderTextEffect(%p) - bitmap %u x %u passes the cap of %llu pixels",
                     (void*)this, w, h, (unsigned long long)LmBitmap::kMaxPixels);
        Error::Report(kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__);
        return nullptr;
    }
    // Each render derives the line boxes from the records as given.
    const int lineCount = impl->lineInfo ? impl->lineInfo->GetCount() : 0;
    for (int i = 0; i < lineCount; ++i) {
        LineInfo* line = static_cast<LineInfo*>(impl->lineInfo->Get(i));
        if (line) line->renderBounds = line->bounds;
    }

    std::unique_ptr<LmBitmap> composite(new LmBitmap(w, h, 4));
    if (!impl->fontDrawing) {
        Error::Report(kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__);
        return impl->resultBitmap ? reinterpret_cast<uint32_t*>(impl->resultBitmap->pixels) : nullptr;
    }
    impl->fontDrawing->DrawTextEffect(this, composite.get(), true);
    const unsigned char textAlpha = impl->effect ? impl->effect->getTextAlpha() : 255;

    // The side the text is pulled toward keeps no padding; the other sides are inset.
    LmView* view = impl->view;
    int horizontal = view->gravity & LmView::kHorizontalMask;
    int vertical = view->gravity & LmView::kVerticalMask;
    float left = horizontal == LmView::kLeft ? 0.0f : (float)view->GetPaddingLeft();
    float right = horizontal == LmView::kRight ? (float)w : (float)w - (float)view->GetPaddingRight();
    float top = vertical == LmView::kTop ? 0.0f : (float)view->GetPaddingTop();
    float bottom = vertical == LmView::kBottom ? (float)h : (float)h - (float)view->GetPaddingBottom();

    std::unique_ptr<LmBitmap> owned;
    const bool inPlace = !impl->backgroundEnabled && composite->pixels;
    if (inPlace) {
        // Without a background the output would stay clear until the composite is drawn, and
        // source-over onto a clear pixel yields the source (or nothing where its alpha is 0):
        // the composite becomes the output in place, saving a buffer and three passes.
        LmCanvas canvas(composite->pixels, (int)w, (int)h);
        canvas.clipRect(left, top, right, bottom);
        int l = 0, t = 0, r = 0, b = 0;
        canvas.getClip(&l, &t, &r, &b);
        finishInPlace(composite.get(), textAlpha, l, t, r, b);
        owned = std::move(composite);
    } else {
        // A new bitmap is already clear.
        owned.reset(new LmBitmap(w, h, 4));
    }
    LmBitmap* output = owned.get();
    if (!inPlace && output->pixels) {
        LmCanvas canvas(output->pixels, (int)w, (int)h);
        canvas.clipRect(left, top, right, bottom);

        if (impl->backgroundEnabled) {
            for (int i = 0; i < lineCount; ++i) {
                const LineInfo* line = static_cast<const LineInfo*>(impl->lineInfo->Get(i));
                if (!line) continue;
                const LmRect& box = line->renderBounds;
                canvas.drawRect((float)box.left, (float)box.top, (float)box.right, (float)box.bottom,
                                impl->backgroundColor);
            }
        }

        // The stack leaves R, G, B, A bytes; Java reads each pixel as one ARGB int, which is
        // B, G, R, A in little-endian memory. Both images are swapped and the composite drawn
        // row by row, while the rows are in cache.
        for (unsigned y = 0; w > 0 && y < h; ++y) {
            LmBlender::swapRedBlue(output->pixels + (size_t)y * w * 4, w);
            if (!composite->pixels) continue;
            unsigned char* row = composite->pixels + (size_t)y * w * 4;
            LmEffect::unpremultiplyRow(row, w, textAlpha);
            LmBlender::swapRedBlue(row, w);
            canvas.drawImage(row, (int)w, 1, 0, (int)y);
        }
    }

    if (Error::GetError() == Error::LM_ERR_PLATFORM) {
        LmLog::Print(LmLog::LM_PRIO_WARN, kTag, "RenderTextEffect(%p) - out of memory", (void*)this);
        return nullptr;
    }
    delete impl->resultBitmap;
    impl->resultBitmap = owned.release();
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "RenderTextEffect(%p / %d) <<< End.", (void*)this, impl->runtimeHandle);
    return reinterpret_cast<uint32_t*>(output->pixels);
} catch (...) {
    caught(__LINE__);
    return nullptr;
}

LmTextObject* LmTextObject::FindLmTextObject(int handle) { return LmTextInstanceManager::FindLmTextObject(handle); }

} // namespace LmFontEffect
