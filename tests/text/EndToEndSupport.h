#ifndef LMFONTEFFECT_TESTS_TEXT_ENDTOENDSUPPORT_H
#define LMFONTEFFECT_TESTS_TEXT_ENDTOENDSUPPORT_H

#include "text/PlatformTestFonts.h"

#include "foundation/List.h"
#include "platform/LmAlphaCanvas.h"
#include "platform/LmLayoutUtils.h"
#include "platform/LmPaint.h"
#include "platform/LmSystemFonts.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmTextObject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace LmTest {

// Starts from an empty font registry, with or without the machine's fonts.
inline void freshFontManager(bool systemFonts)
{
    LmFontEffect::FontManager* fm = LmFontEffect::FontManager::GetInstance();
    fm->ClearFontMaps();
    fm->ClearFontFamilies();
    if (systemFonts) {
        ASSERT_TRUE(LmFontEffect::LmSystemFonts::InstallSystemFonts());
    }
}

// One line of `count` units from `start`, with a line box of the font's ascent and descent
// at the paint's size, as the bridge builds it.
inline LmFontEffect::LineInfo* newLine(int x, int baseline, int start, int end, int direction = 1, int width = 0)
{
    auto* line = new LmFontEffect::LineInfo();
    line->x = x;
    line->baseline = baseline;
    line->start = start;
    line->end = end;
    line->direction = direction;
    line->bounds = LmFontEffect::LmRect(x, baseline - 40, x + width, baseline + 12);
    return line;
}

inline void giveLines(LmFontEffect::LmTextObject& object, const std::vector<LmFontEffect::LineInfo*>& lines)
{
    LmFontEffect::List list;
    list.Construct();
    for (auto* line : lines) list.Add(line);
    ASSERT_EQ(1, object.SetLineInfo(&list));
    list.RemoveAll();
}

// The coverage of one line as font drawing should cut it: as wide as the advance, as high as
// the ink, the ink's top-left corner at (0, 0). Drawn glyph by glyph, straight from the
// layout, without the glyph-run machinery.
struct LineMask {
    int width = 0;
    int height = 0;
    int top = 0;  // ink top relative to the baseline
    std::vector<unsigned char> pixels;
    unsigned char at(int x, int y) const { return pixels[(size_t)y * width + x]; }
};

inline LineMask expectedLineMask(const std::u16string& text, size_t start, size_t end,
                                 const LmFontEffect::LmPaint& paint, const LmFontEffect::LmTypeface& typeface,
                                 int bidi = LmFontEffect::LmLayoutUtils::kBidiDefaultLTR)
{
    std::vector<uint16_t> units = utf16(text);
    LmFontEffect::LmLayout layout =
        LmFontEffect::LmLayoutUtils::doLayout(paint, bidi, &typeface, units.data(), units.size(), start, end - start,
                                              0, units.size());
    LineMask m;
    const LmFontEffect::LmGlyphBox& b = layout.getBounds();
    m.width = (int)layout.getAdvance();
    m.height = (int)(b.bottom - b.top);
    m.top = (int)b.top;
    m.pixels.assign((size_t)m.width * m.height, 0);
    LmFontEffect::LmAlphaCanvas canvas(m.pixels.data(), m.width, m.height);
    for (size_t i = 0; i < layout.nGlyphs(); i++) {
        LmFontEffect::LmGlyphStyle style = paint.glyphStyle();
        if (layout.getFakery(i).fakeBold) style.embolden = true;
        if (layout.getFakery(i).fakeItalic) style.skewX -= 0.25f;
        layout.getFont(i)->DrawGlyph(layout.getGlyphId(i), style, -b.left + layout.getX(i), -b.top + layout.getY(i),
                                     &canvas);
    }
    return m;
}

// ARGB of an output pixel (the output is handed to Java as ARGB ints).
inline uint32_t pixelAt(const uint32_t* pixels, int width, int x, int y) { return pixels[(size_t)y * width + x]; }

} // namespace LmTest

#endif
