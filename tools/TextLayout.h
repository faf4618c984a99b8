#ifndef LMTEXT_TEXTLAYOUT_H
#define LMTEXT_TEXTLAYOUT_H

#include <functional>
#include <string>
#include <vector>

namespace LmTextTool {

// The lines of a text as a view's layout would report them: each line's UTF-16 range, its
// left edge and width after alignment, and its vertical metrics (layout pixels, y down, the
// first line's top at 0). Lines break at newlines and, when wrapping, after spaces (or inside
// a word too long for the width).
class TextLayout {
public:
    enum Align { kLeft = 0, kCenter = 1, kRight = 2 };

    struct Line {
        int start = 0;       // first UTF-16 unit
        int visibleEnd = 0;  // end without trailing spaces
        float left = 0.0f;
        float width = 0.0f;
        int top = 0;
        int baseline = 0;
        int bottom = 0;
    };

    struct Options {
        float wrapWidth = 0.0f;    // wrap lines wider than this; 0 or less: no wrapping
        float alignWidth = -1.0f;  // width the lines are aligned in; negative: the widest line
        int align = kLeft;
        float lineSpacing = 1.0f;  // multiple of the font's line height
    };

    // Width in pixels of the UTF-16 units [start, end) of the text, as drawn.
    using Measure = std::function<float(int start, int end)>;

    // ascent is negative (above the baseline), descent positive, both in pixels.
    TextLayout(const std::u16string& text, const Measure& measure, float ascent, float descent,
               const Options& options);

    int getLineCount() const { return (int)mLines.size(); }
    const Line& line(int i) const { return mLines[(size_t)i]; }
    // Whole-pixel metrics of every line: ascent rounded up in size, negative; descent positive.
    int getLineAscent() const { return mAscent; }
    int getLineDescent() const { return mDescent; }
    float getMaxWidth() const { return mMaxWidth; }
    // From the first line's top to the last line's bottom.
    int getHeight() const { return mLines.empty() ? 0 : mLines.back().bottom; }

private:
    void breakParagraph(const std::u16string& text, int start, int end, float wrapWidth, const Measure& measure);
    int visibleEnd(const std::u16string& text, int start, int end) const;

    std::vector<Line> mLines;
    int mAscent = 0;
    int mDescent = 0;
    float mMaxWidth = 0.0f;
};

} // namespace LmTextTool

#endif
