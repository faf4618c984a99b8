#include "text/LmFontDrawing.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmConvert.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "platform/LmGlyphRun.h"
#include "platform/LmLayoutUtils.h"
#include "platform/LmPlatformFamily.h"
#include "platform/LmTypeface.h"
#include "raster/LmBitmap.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmTextObject.h"

#include <climits>
#include <memory>
#include <new>
#include <vector>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmFontDrawing";

// A 26.6 fixed-point value of a pixel position, saturated to the int range.
int toFixed26_6(long long pixels)
{
    const long long v = pixels * 64;
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return (int)v;
}

// A glyph and its pixels, which it does not own itself.
void deleteGlyph(LmGlyph* glyph)
{
    if (!glyph) return;
    delete[] glyph->pixels;
    delete glyph;
}

void deleteGlyphs(List* list)
{
    if (!list) return;
    const int n = list->GetCount();
    for (int i = 0; i < n; i++) deleteGlyph(static_cast<LmGlyph*>(list->Get(i)));
    list->RemoveAll();
}

// The mask of one line, cleared, the baseline topOffset rows below its top: as high as the ink
// and as wide as the advance (the ink's left edge at column 0), or with `wholeInk` as wide as
// the ink, leftBearing columns right of the pen. No pixels when empty; a mask past the bitmap
// cap is refused with a warning and error 3.
LmGlyph* newLineGlyph(const LmLayout& layout, bool wholeInk)
{
    LmGlyph* glyph = new LmGlyph();
    const LmGlyphBox& bounds = layout.getBounds();
    glyph->width = lmToUnsigned(wholeInk ? (double)bounds.right - bounds.left : (double)layout.getAdvance());
    glyph->height = lmToUnsigned((double)bounds.bottom - bounds.top);
    glyph->topOffset = lmToInt(-bounds.top);
    glyph->leftBearing = wholeInk ? lmToInt(bounds.left) : 0;
    const uint64_t bytes = LmBitmap::byteSize(glyph->width, glyph->height, 1);
    if (!bytes && (uint64_t)glyph->width * glyph->height != 0) {
        LmLog::Print(LmLog::LM_PRIO_WARN, kTag, "line mask %u x %u passes the bitmap cap of %llu pixels", glyph->width,
                     glyph->height, (unsigned long long)LmBitmap::kMaxPixels);
        Error::Report(kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__);
    }
    glyph->pixels = bytes ? new (std::nothrow) unsigned char[bytes] : nullptr;
    if (!glyph->pixels) {
        if (bytes) Error::SetError(Error::LM_ERR_PLATFORM); // out of memory: the render fails
        glyph->width = 0;
        glyph->height = 0;
    }
    return glyph;
}

} // namespace

void LmFontDrawing::DrawTextFunctor::operator()(unsigned start, unsigned end)
{
    if (end <= start || !canvas) return;
    LmGlyphRun run(paint, end - start);
    uint32_t* ids = run.glyphs();
    float* pos = run.positions();
    for (unsigned i = start; i < end; i++) {
        const unsigned k = i - start;
        ids[k] = layout.getGlyphId(i);
        pos[2 * k] = layout.getX(i);
        pos[2 * k + 1] = layout.getY(i);
    }
    // The top-left corner of the ink bounds lands on the mask's (0, 0).
    canvas->drawGlyphRun(run, -bounds->left, -bounds->top);
}

LmFontDrawing::LmFontDrawing()
{
    glyphList = new List();
    glyphList->Construct();
}

LmFontDrawing::~LmFontDrawing()
{
    delete fontPath;
    delete familyName;
    deleteGlyphs(glyphList);
    delete glyphList;
}

void LmFontDrawing::SetFontPath(const char* path)
{
    if (!path) return;
    if (!fontPath) {
        fontPath = new LmString();
        fontPath->Construct(path);
        return;
    }
    LmString candidate;
    candidate.Construct(path);
    if (fontPath->CompareTo(&candidate) != 0) fontPath->Set(path);
}

void LmFontDrawing::SetFontFamilyName(const char* name)
{
    if (!familyName) {
        familyName = new LmString();
        familyName->Construct(name);
    } else {
        familyName->Set(name);
    }
}

void LmFontDrawing::ClearGlyphList() { deleteGlyphs(glyphList); }

int LmFontDrawing::FindContextStart(const char16_t* text, int start)
{
    if (!text) return 0;
    for (int i = start; i >= 1; i--) {
        if (text[i] == 0x0A || text[i] == 0x0D) return i;
    }
    return 0;
}

void LmFontDrawing::DrawTextEffect(LmTextObject* textObject, LmBitmap* dst, bool leavePremultiplied)
{
    if (!textObject || !dst) return;
    LmString* text = textObject->GetText();
    if (!text) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "DrawTextEffect(%p) - text is NULL", (void*)this);
        return;
    }
    if (text->GetUTF16Size() < 1) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "DrawTextEffect(%p) - textLength is 0", (void*)this);
        return;
    }
    LmEffect* effect = textObject->GetEffect();
    if (!effect) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "DrawTextEffect(%p) - Effect is NULL", (void*)this);
        return;
    }

    LmPaint paint = textObject->GetPaint();
    const float size = paint.getTextSize();
    if (!(size > 0.0f && size <= LmPaint::kMaxTextSize)) {
        LmLog::Print(LmLog::LM_PRIO_WARN, kTag, "DrawTextEffect(%p) - text size %g is outside (0, %g]", (void*)this,
                     (double)size, (double)LmPaint::kMaxTextSize);
        Error::Report(kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__);
    }
    effect->addText(textObject->GetTextColor());
    effect->initEffect(lmToInt(dst->width), lmToInt(dst->height));
    effect->setDstBitmap(dst);

    List* lines = textObject->GetLineInfo();
    if (!lines) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "DrawTextEffect(%p) - lineInfoList is NULL", (void*)this);
        Error::Report(kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__);
        return;
    }

    std::vector<std::shared_ptr<LmPlatformFamily>> families;
    int weight = 400;
    if (!FontManager::GetInstance()->GetMinikinFontFamilies(familyName, families, fontPath, weight)) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "DrawTextEffect(%p) - GetMinikinFontFamilies failed", (void*)this);
        return;
    }
    if (LmLog::IsAllLogEnable()) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "DrawTextEffect(%p) fontPath[%s] weight=%d", (void*)this,
                     LmLog::ConvertLog(fontPath), weight);
    }

    // Boldness comes from the weight the font manager chose and the paint's fake bold; the
    // text style's bold bit is not passed on.
    std::shared_ptr<LmTypeface> typeface =
        LmTypeface::createFromFamilies(std::move(families), weight, textObject->isItalicTextStyle());

    std::unique_ptr<char16_t[]> utf16(text->GetUTF16());
    const int textLength = text->GetUTF16Size();
    const int count = lines->GetCount();
    for (int i = 0; i < count; i++) {
        LineInfo* line = static_cast<LineInfo*>(lines->Get(i));
        if (line) DrawLine(line, utf16.get(), textLength, paint, typeface.get(), effect, textObject->isKeepWholeInk());
    }

    typeface.reset();
    effect->doEffectPostProcessing();
    if (leavePremultiplied)
        effect->compositeLayersPremultiplied(dst);
    else
        effect->compositeLayers(dst);
}

void LmFontDrawing::DrawLine(LineInfo* line, const char16_t* utf16, int textLength, LmPaint& paint,
                             const LmTypeface* typeface, LmEffect* effect, bool wholeInk)
{
    ClearGlyphList();
    const int leftOffset = effect->getLeftOffset();
    const int topOffset = effect->getTopOffset();
    const int start = line->start;
    const int end = line->end;
    const int bidi = line->direction < 0 ? LmLayoutUtils::kBidiDefaultRTL : LmLayoutUtils::kBidiDefaultLTR;

    // The scan reads only units inside the text.
    const int scanFrom = start < textLength ? start : textLength - 1;
    const int contextStart = utf16 ? FindContextStart(utf16, scanFrom) : 0;
    const long long contextCount = (long long)end - contextStart;

    LmLayout layout;
    if (utf16 && start >= 0 && end >= start && contextCount >= 0) {
        layout = LmLayoutUtils::doLayout(paint, bidi, typeface, reinterpret_cast<const uint16_t*>(utf16),
                                         (size_t)textLength, (size_t)start, (size_t)(end - start),
                                         (size_t)contextStart, (size_t)contextCount);
    }

    // Owned here until the glyph list takes it: memory may run out on the way.
    std::unique_ptr<LmGlyph, void (*)(LmGlyph*)> glyph(newLineGlyph(layout, wholeInk), deleteGlyph);
    LmAlphaCanvas canvas(glyph->pixels, glyph->width, glyph->height);
    canvas.clear();
    LmGlyphBox bounds = layout.getBounds();
    DrawTextFunctor functor(layout, &canvas, paint, &bounds);
    LmLayoutUtils::forFontRun(layout, &paint, functor);
    if (glyphList->Add(glyph.get())) glyph.release();

    _DoRender(leftOffset, toFixed26_6((long long)line->x + leftOffset),
              toFixed26_6((long long)line->baseline + topOffset), glyphList, effect, line->direction);

    const int64_t left = (int64_t)line->x + leftOffset;
    line->renderBounds = LmRect(lmSaturate(left), lmSaturate((int64_t)line->bounds.top + topOffset),
                                lmSaturate(left + lmToInt(layout.getAdvance())),
                                lmSaturate((int64_t)line->bounds.bottom + topOffset));
}

void LmFontDrawing::_DoRender(int leftOffset, int x, int y, List* glyphs, LmEffect* effect, int direction)
{
    if (!glyphs || !effect) return;
    const int n = glyphs->GetCount();
    if (n <= 0) return;
    long long penX = x;
    for (int k = 0; k < n; k++) {
        LmGlyph* glyph = static_cast<LmGlyph*>(glyphs->Get(direction < 0 ? n - 1 - k : k));
        if (!glyph) continue;
        const long long gx = (long long)glyph->leftBearing + (penX >> 6);
        const long long gy = (long long)(y >> 6) - glyph->topOffset;
        effect->renderEffectLayer(lmToInt((double)gx), lmToInt((double)gy), glyph);
        penX += (long long)glyph->width * 64;
    }
}

} // namespace LmFontEffect
