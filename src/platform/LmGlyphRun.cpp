#include "platform/LmGlyphRun.h"

#include "platform/LmPaint.h"

namespace LmFontEffect {

LmGlyphRun::LmGlyphRun(const LmPaint& paint, size_t count)
    : mFont(paint.getRunFont()), mStyle(paint.glyphStyle()), mGlyphs(count, 0), mPositions(count * 2, 0.0f)
{
}

} // namespace LmFontEffect
