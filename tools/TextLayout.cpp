#include "TextLayout.h"

#include "foundation/LmConvert.h"

#include <algorithm>
#include <cmath>

using LmFontEffect::lmSaturate;
using LmFontEffect::lmToInt;

namespace LmTextTool {

namespace {

bool isSpace(char16_t c)
{
    return c == u' ' || c == u'\t' || c == 0x3000;
}

bool isLowSurrogate(char16_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

} // namespace

TextLayout::TextLayout(const std::u16string& text, const Measure& measure, float ascent, float descent,
                       const Options& options)
{
    mAscent = lmToInt(std::floor(ascent));
    mDescent = lmToInt(std::ceil(descent));
    float wrapWidth = options.wrapWidth;

    // Paragraphs end at a newline; "\r\n" counts as one.
    const int n = (int)text.size();
    int start = 0;
    for (int i = 0; i <= n; ++i) {
        if (i < n && text[(size_t)i] != u'\n' && text[(size_t)i] != u'\r') continue;
        int end = i;
        breakParagraph(text, start, end, wrapWidth, measure);
        if (i < n && text[(size_t)i] == u'\r' && i + 1 < n && text[(size_t)i + 1] == u'\n') ++i;
        start = i + 1;
    }

    for (const Line& l : mLines) mMaxWidth = std::max(mMaxWidth, l.width);
    float alignWidth = options.alignWidth < 0 ? mMaxWidth : options.alignWidth;

    // Each line is as high as the font's line; the spacing multiple adds to all but the last.
    const int fontHeight = mDescent - mAscent;
    const int pitch = std::max(1, lmToInt(std::lround((double)fontHeight * options.lineSpacing)));
    for (size_t i = 0; i < mLines.size(); ++i) {
        Line& l = mLines[i];
        // Saturated: a huge spacing pushes lines out of any view instead of wrapping round.
        l.top = lmSaturate((int64_t)i * pitch);
        l.baseline = lmSaturate((int64_t)l.top - mAscent);
        l.bottom = lmSaturate((int64_t)l.top + (i + 1 == mLines.size() ? fontHeight : pitch));
        float room = alignWidth - l.width;
        if (options.align == kCenter) l.left = room / 2;
        else if (options.align == kRight) l.left = room;
        else l.left = 0.0f;
    }
}

int TextLayout::visibleEnd(const std::u16string& text, int start, int end) const
{
    while (end > start && isSpace(text[(size_t)end - 1])) --end;
    return end;
}

void TextLayout::breakParagraph(const std::u16string& text, int start, int end, float wrapWidth,
                                const Measure& measure)
{
    auto push = [&](int s, int e) {
        Line l;
        l.start = s;
        l.visibleEnd = visibleEnd(text, s, e);
        l.width = l.visibleEnd > s ? measure(s, l.visibleEnd) : 0.0f;
        mLines.push_back(l);
    };
    if (wrapWidth <= 0.0f) {
        push(start, end);
        return;
    }

    int lineStart = start;
    while (true) {
        if (measure(lineStart, visibleEnd(text, lineStart, end)) <= wrapWidth || lineStart >= end) {
            push(lineStart, end);
            return;
        }
        // The last break after a run of spaces that still fits.
        int best = -1;
        for (int i = lineStart + 1; i < end; ++i) {
            if (!isSpace(text[(size_t)i - 1]) || isSpace(text[(size_t)i])) continue;
            if (measure(lineStart, visibleEnd(text, lineStart, i)) > wrapWidth) break;
            best = i;
        }
        // A word wider than the line is cut at the last unit that fits (at least one
        // character, never inside a surrogate pair).
        if (best < 0) {
            best = lineStart + 1;
            for (int i = lineStart + 1; i <= end; ++i) {
                if (i < end && isLowSurrogate(text[(size_t)i])) continue;
                if (measure(lineStart, i) > wrapWidth) break;
                best = i;
            }
            if (best < end && isLowSurrogate(text[(size_t)best])) ++best;
        }
        push(lineStart, best);
        lineStart = best;
    }
}

} // namespace LmTextTool
