#include "platform/LmPaint.h"

namespace LmFontEffect {

void LmPaint::setJavaFlags(uint32_t flags)
{
    mJavaFlags = flags;
    mEmbolden = (flags & kFakeBoldTextFlag) != 0;
}

LmGlyphStyle LmPaint::glyphStyle() const
{
    LmGlyphStyle style;
    style.size = mTextSize;
    style.scaleX = mScaleX;
    style.skewX = mSkewX;
    style.embolden = mEmbolden;
    style.antiAlias = isAntiAlias();
    return style;
}

} // namespace LmFontEffect
