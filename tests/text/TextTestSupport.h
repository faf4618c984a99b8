#ifndef LMFONTEFFECT_TESTS_TEXT_TEXTTESTSUPPORT_H
#define LMFONTEFFECT_TESTS_TEXT_TEXTTESTSUPPORT_H

#include "LmFontEffect.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace LmTest {

// The helpers below speak the library's types throughout.
using namespace LmFontEffect;

inline const char* const kSansPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
inline const char* const kSansBoldPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
inline const char* const kSansObliquePath = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Oblique.ttf";
inline const char* const kSerifPath = "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf";
inline const char* const kCjkPath = "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf";

inline std::vector<unsigned char> readFileBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A new[] copy of the first n bytes, as callers hand buffers over to the font code.
inline char* handOver(const std::vector<unsigned char>& bytes, size_t n)
{
    char* data = new char[n];
    std::copy(bytes.begin(), bytes.begin() + n, data);
    return data;
}

// Fonts borrow their bytes: the bytes of every file loaded here live for the whole test run.
inline std::shared_ptr<LmPlatformFont> loadFont(const std::string& path)
{
    static std::map<std::string, std::vector<unsigned char>> files;
    static std::map<std::string, std::shared_ptr<LmPlatformFont>> fonts;
    auto it = fonts.find(path);
    if (it != fonts.end()) return it->second;
    std::vector<unsigned char>& bytes = files[path];
    bytes = readFileBytes(path);
    return fonts[path] = LmPlatformFont::MakeFromData(bytes.data(), bytes.size(), 0);
}

inline std::shared_ptr<LmPlatformFamily> familyOf(const std::string& path, int weight = 400, bool italic = false)
{
    std::vector<LmStyledFont> fonts{LmStyledFont(loadFont(path), weight, italic)};
    return std::make_shared<LmPlatformFamily>(0, 0, fonts);
}

// Sans (Latin, Greek, Cyrillic, Arabic, Hebrew) first, the CJK font as fallback.
inline std::shared_ptr<LmTypeface> sansWithCjk()
{
    return LmTypeface::createFromFamilies({familyOf(kSansPath), familyOf(kCjkPath)}, 400, false);
}

inline const LmTypeface* sansOnly()
{
    static auto typeface = LmTypeface::createFromFamilies({familyOf(kSansPath)}, 400, false);
    return typeface.get();
}

inline std::vector<uint16_t> utf16(const std::u16string& s) { return std::vector<uint16_t>(s.begin(), s.end()); }

inline LmPaint paintOf(float size)
{
    LmPaint paint;
    paint.setTextSize(size);
    return paint;
}

// Shapes text[start, end) with the whole text as context; sans with the CJK fallback unless told.
inline LmLayout layoutOf(const std::u16string& text, const LmPaint& paint, int bidi = LmLayoutUtils::kBidiDefaultLTR,
                         const LmTypeface* typeface = nullptr, size_t start = 0, size_t end = std::u16string::npos)
{
    static const auto withCjk = sansWithCjk();
    std::vector<uint16_t> units = utf16(text);
    end = std::min(end, units.size());
    return LmLayoutUtils::doLayout(paint, bidi, typeface ? typeface : withCjk.get(), units.data(), units.size(), start,
                                   end - start, 0, units.size());
}

// Row y of a raster as '#' where a pixel has coverage (its last byte) and '.' where it has none.
inline std::string inkRow(const unsigned char* pixels, int width, int y, int bytesPerPixel = 1)
{
    std::string s;
    for (int x = 0; x < width; x++) s += pixels[((size_t)y * width + x) * bytesPerPixel + bytesPerPixel - 1] ? '#' : '.';
    return s;
}

// A constructed object showing `text` with the paint on a view of w x h; without a font path
// the caller registers one itself.
inline void prepareText(LmTextObject& object, const wchar_t* text, LmPaint paint, int w, int h,
                        const char* font = kSansPath)
{
    ASSERT_EQ(1, object.Construct());
    ASSERT_EQ(1, object.SetText(text));
    ASSERT_EQ(1, font ? object.SetFont(font) : 1);
    object.SetPaint(paint);
    ASSERT_EQ(1, object.GetView()->SetSize(w, h));
}

// A system family record as the bridge builds it, every font weight 500 and italic.
inline LmFontFamily* makeFamily(uint32_t localeListId, int variant, std::vector<const char*> paths)
{
    auto* family = new LmFontFamily{0, localeListId, variant, new List()};
    family->fonts->Construct();
    for (const char* path : paths) {
        auto* entry = new FontEntry{new LmString(), 0, 500, true, nullptr};
        entry->path->Construct(path);
        family->fonts->Add(entry);
    }
    return family;
}

// Starts from an empty font registry, with or without the machine's fonts.
inline void freshFontManager(bool systemFonts)
{
    FontManager* fm = FontManager::GetInstance();
    fm->ClearFontMaps();
    fm->ClearFontFamilies();
    if (systemFonts) {
        ASSERT_TRUE(LmSystemFamilies::Install());
    }
}

// Each test starts and ends with an empty font registry.
class FreshFonts : public ::testing::Test {
protected:
    void SetUp() override { freshFontManager(false); }
    void TearDown() override { freshFontManager(false); }
};

// One line with a box of the font's ascent and descent at the paint's size, as the bridge builds it.
inline LineInfo* newLine(int x, int baseline, int start, int end, int direction = 1)
{
    return new LineInfo{x, baseline, start, end, direction, LmRect(x, baseline - 40, x, baseline + 12), {}};
}

// As the bridge does: the caller's list is emptied without deleting what it held.
inline void giveLines(LmTextObject& object, const std::vector<LineInfo*>& lines)
{
    List list;
    list.Construct();
    for (auto* line : lines) list.Add(line);
    ASSERT_EQ(1, object.SetLineInfo(&list));
    list.RemoveAll();
}

// The coverage of one line as font drawing should cut it: as wide as the advance, as high as
// the ink, the ink's top-left corner at (0, 0). Drawn glyph by glyph, straight from the
// layout, without the glyph-run machinery, for a line whose pen starts at (x, baseline).
struct LineMask {
    int x = 0;
    int baseline = 0;
    int width = 0;
    int height = 0;
    int top = 0;  // ink top relative to the baseline
    std::vector<unsigned char> pixels;
    unsigned char at(int x, int y) const { return pixels[(size_t)y * width + x]; }
};

inline LineMask expectedLineMask(const std::u16string& text, size_t start, size_t end, float size, int x, int baseline,
                                 int bidi = LmLayoutUtils::kBidiDefaultLTR, const LmTypeface* typeface = sansOnly())
{
    const LmPaint paint = paintOf(size);
    LmLayout layout = layoutOf(text, paint, bidi, typeface, start, end);
    LineMask m{x, baseline, 0, 0, 0, {}};
    const LmGlyphBox& b = layout.getBounds();
    m.width = (int)layout.getAdvance();
    m.height = (int)(b.bottom - b.top);
    m.top = (int)b.top;
    m.pixels.assign((size_t)m.width * m.height, 0);
    LmAlphaCanvas canvas(m.pixels.data(), m.width, m.height);
    for (size_t i = 0; i < layout.nGlyphs(); i++) {
        LmGlyphStyle style = paint.glyphStyle();
        if (layout.getFakery(i).fakeBold) style.embolden = true;
        if (layout.getFakery(i).fakeItalic) style.skewX -= 0.25f;
        layout.getFont(i)->DrawGlyph(layout.getGlyphId(i), style, -b.left + layout.getX(i), -b.top + layout.getY(i),
                                     &canvas);
    }
    return m;
}

// Renders as the bridge does: the bitmap is the view plus the effect's margins, its size
// returned through w and h.
inline const uint32_t* renderWithMargins(LmTextObject& object, int* w, int* h)
{
    LmView* view = object.GetView();
    LmEffect* effect = object.GetEffect();
    *w = view->GetWidth() + effect->getLeftOffset() + effect->getRightOffset();
    *h = view->GetHeight() + effect->getTopOffset() + effect->getBottomOffset();
    view->SetBitmapWidth(*w);
    view->SetBitmapHeight(*h);
    return object.RenderTextEffect(*w, *h);
}

} // namespace LmTest

#endif
