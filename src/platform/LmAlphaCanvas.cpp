#include "platform/LmAlphaCanvas.h"

#include "platform/LmGlyphRun.h"

#include <cstring>

namespace LmFontEffect {

LmAlphaCanvas::LmAlphaCanvas(unsigned char* pixels, int width, int height)
    : mPixels(pixels), mWidth(width > 0 ? width : 0), mHeight(height > 0 ? height : 0)
{
    if (!mPixels) mWidth = mHeight = 0;
}

void LmAlphaCanvas::clear()
{
    if (mPixels) std::memset(mPixels, 0, (size_t)mWidth * (size_t)mHeight);
}

void LmAlphaCanvas::mergeSpan(int x, int y, int length, unsigned coverage)
{
    if (y < 0 || y >= mHeight || length <= 0) return;
    long from = x < 0 ? 0 : x;
    long to = (long)x + length;
    if (to > mWidth) to = mWidth;
    const unsigned char c = coverage > 255 ? 255 : (unsigned char)coverage;
    unsigned char* row = mPixels + (size_t)y * (size_t)mWidth;
    for (long i = from; i < to; i++) {
        if (row[i] < c) row[i] = c;
    }
}

void LmAlphaCanvas::drawGlyphRun(const LmGlyphRun& run, float x, float y)
{
    if (!run.font() || !mPixels) return;
    const std::vector<uint32_t>& ids = run.glyphIds();
    const std::vector<float>& pos = run.glyphPositions();
    for (size_t i = 0; i < ids.size(); i++) {
        run.font()->DrawGlyph(ids[i], run.style(), x + pos[2 * i], y + pos[2 * i + 1], this);
    }
}

} // namespace LmFontEffect
