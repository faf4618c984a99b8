#include "text/TextTestSupport.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "raster/LmBitmap.h"
#include "support/TestSupport.h"
#include "text/LmFontDrawing.h"
#include "text/LmView.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cwchar>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

LmGlyph* solidGlyph(uint16_t w, uint16_t h, int top, int bearing, unsigned char value)
{
    LmGlyph* g = new LmGlyph();
    g->width = w;
    g->height = h;
    g->topOffset = top;
    g->leftBearing = bearing;
    g->pixels = new unsigned char[(size_t)w * h];
    std::fill(g->pixels, g->pixels + (size_t)w * h, value);
    return g;
}

// Row y of the mask as '#' for ink and '.' for none.
std::string row(const LmBitmap* mask, int y, int width)
{
    std::string s;
    for (int x = 0; x < width; x++) s += mask->pixels[(size_t)y * mask->width + x] ? '#' : '.';
    return s;
}

LmLayout layoutOf(const std::u16string& text, const LmPaint& paint, const LmTypeface* typeface = sansOnly())
{
    std::vector<uint16_t> units = utf16(text);
    return LmLayoutUtils::doLayout(paint, 2, typeface, units.data(), units.size(), 0, units.size(), 0, units.size());
}

class FontDrawing : public ::testing::Test {
protected:
    void SetUp() override { freshFontManager(false); }
    void TearDown() override { freshFontManager(false); }

    // Draws one line of `text` and returns the object's last line mask.
    const LmGlyph* drawLine(LmTextObject& object, const wchar_t* text, int end, LmPaint paint)
    {
        object.Construct();
        object.SetText(text);
        object.SetFont(kSansPath);
        object.SetPaint(paint);
        object.GetView()->SetSize(200, 80);
        giveLines(object, {newLine(4, 50, 0, end)});
        object.RenderTextEffect(200, 80);
        List* glyphs = object.GetFont()->GetGlyphList();
        return glyphs->GetCount() == 1 ? static_cast<const LmGlyph*>(glyphs->Get(0)) : nullptr;
    }
};

} // namespace

TEST(FontDrawingContext, StartsAtTheNewlineBeforeTheLine)
{
    const char16_t text[] = u"ab\ncd\r\nef";
    EXPECT_EQ(0, LmFontDrawing::FindContextStart(text, 0));
    EXPECT_EQ(0, LmFontDrawing::FindContextStart(text, 1));
    EXPECT_EQ(2, LmFontDrawing::FindContextStart(text, 3));  // right after the newline
    EXPECT_EQ(2, LmFontDrawing::FindContextStart(text, 2));  // the newline itself
    EXPECT_EQ(6, LmFontDrawing::FindContextStart(text, 7));  // nearest of CR LF going down
    EXPECT_EQ(5, LmFontDrawing::FindContextStart(text, 5));
    // Index 0 is never tested.
    EXPECT_EQ(0, LmFontDrawing::FindContextStart(u"\nab", 1));
    EXPECT_EQ(0, LmFontDrawing::FindContextStart(u"\nab", 0));
    EXPECT_EQ(0, LmFontDrawing::FindContextStart(nullptr, 3));
    EXPECT_EQ(0, LmFontDrawing::FindContextStart(text, -4));
}

TEST(FontDrawingPlacement, GlyphsGoToTheirPlaceInListOrderOrBackwards)
{
    for (int direction : {1, -1}) {
        LmEffect effect;
        effect.initEffect(20, 12);
        LmFontDrawing drawing;
        List* list = drawing.GetGlyphList();
        list->Add(solidGlyph(3, 2, 1, 0, 0xFF));  // A: 3 wide, baseline one row below its top
        list->Add(solidGlyph(2, 2, 0, 1, 0x80));  // B: 2 wide, left bearing 1
        // Pen at (5, 10) in 26.6.
        drawing._DoRender(99, 5 * 64, 10 * 64, list, &effect, direction);
        const LmBitmap* mask = effect.getSrcBitmap();
        // Forwards A at (5, 9), then B at (5 + 3 + 1, 10); backwards B at (5 + 1, 10), then A at (5 + 2, 9).
        const char* const rows[2][3] = {{".....###............", ".....###.##.........", ".........##........."},
                                        {".......###..........", "......####..........", "......##............"}};
        for (int y = 9; y < 12; y++) EXPECT_EQ(rows[direction < 0][y - 9], row(mask, y, 20)) << direction;
        EXPECT_EQ(9, effect.getTextRect()->top);
        EXPECT_EQ(12, effect.getTextRect()->bottom);
        drawing._DoRender(0, 0, 0, nullptr, &effect, 1);
        drawing._DoRender(0, 0, 0, list, nullptr, 1);
    }
    // An empty list places nothing.
    LmEffect effect;
    effect.initEffect(4, 4);
    LmFontDrawing drawing;
    drawing._DoRender(0, 64, 64, drawing.GetGlyphList(), &effect, 1);
    EXPECT_EQ("....", row(effect.getSrcBitmap(), 1, 4));
}

TEST_F(FontDrawing, MissingTextIsLoggedAndLeavesTheTargetAlone)
{
    LmTextObject object;
    ASSERT_EQ(1, object.Construct());
    LmBitmap dst(8, 8, 4);
    std::fill(dst.pixels, dst.pixels + 8 * 8 * 4, 0x77);
    LogCapture log;
    object.GetFont()->DrawTextEffect(&object, &dst);
    EXPECT_TRUE(log.contains("LmFontDrawing", "DrawTextEffect(" + ptr(object.GetFont()) + ") - text is NULL"));
    for (int i = 0; i < 8 * 8 * 4; i++) ASSERT_EQ(0x77, dst.pixels[i]);
    object.GetFont()->DrawTextEffect(nullptr, &dst);
    object.GetFont()->DrawTextEffect(&object, nullptr);
}

TEST_F(FontDrawing, InkLeftOfTheOriginShiftsInAndInkPastTheAdvanceIsCut)
{
    // A strong right lean pushes the top of the last 'l' past the advance.
    LmTextObject lean;
    LmPaint paint = paintOf(40.0f);
    paint.setTextSkewX(-0.6f);
    const LmGlyph* g = drawLine(lean, L"ll", 2, paint);
    ASSERT_NE(nullptr, g);
    LmLayout layout = layoutOf(u"ll", paint);
    EXPECT_GT(layout.getBounds().right, layout.getAdvance() + 5.0f);
    EXPECT_EQ((unsigned)layout.getAdvance(), g->width);

    // The hook of 'j' reaches left of the origin; its leftmost ink lands in column 0.
    LmTextObject back;
    const LmGlyph* j = drawLine(back, L"j", 1, paintOf(40.0f));
    ASSERT_NE(nullptr, j);
    ASSERT_LT(layoutOf(u"j", paintOf(40.0f)).getBounds().left, 0.0f);
    bool column0 = false;
    for (uint32_t y = 0; y < j->height; y++) column0 = column0 || j->pixels[(size_t)y * j->width];
    EXPECT_TRUE(column0);
}

TEST_F(FontDrawing, TwoFontRunsShareOneMaskAndLeaveThePaintAlone)
{
    // The Han glyph, drawn by the second run, inks the right third of the line's one mask; the
    // object's paint keeps what the per-run settings changed.
    freshFontManager(true);
    LmTextObject object;
    LmPaint paint = paintOf(40.0f);
    paint.setTextSkewX(-0.2f);
    const LmGlyph* g = drawLine(object, L"ab\u4E2D", 3, paint);
    ASSERT_NE(nullptr, g);
    int hanInk = 0;
    for (uint32_t y = 0; y < g->height; y++)
        for (uint32_t x = g->width * 2 / 3; x < g->width; x++) hanInk += g->pixels[(size_t)y * g->width + x] != 0;
    EXPECT_GT(hanInk, 50);
    EXPECT_FLOAT_EQ(-0.2f, object.GetPaint().getTextSkewX());
}

TEST_F(FontDrawing, LineBoxesSaturateAndARepeatedRenderGivesTheSamePixels)
{
    // Each case renders twice with a shadow's margins; the render box is the given box moved
    // once by them, saturated where it would leave the int range, and the pixels repeat.
    struct Case {
        int x;
        float letterSpacing;
    };
    for (const Case& c : {Case{10, 0.0f}, Case{INT_MAX - 5, 0.0f}, Case{10, 1e30f}}) {
        LmTextObject object;
        ASSERT_EQ(1, object.Construct());
        object.SetText(L"Hi");
        object.SetFont(kSansPath);
        LmPaint paint = paintOf(30.0f);
        paint.setLetterSpacing(c.letterSpacing);
        object.SetPaint(paint);
        object.SetBackgroundColor(0xFF204080u, true);
        ASSERT_GE(object.GetEffect()->addOuterShadowText(270.0f, 6.0f, 4.0f, 0xFF000000u, 1.0f), 0);
        const int left = object.GetEffect()->getLeftOffset(), top = object.GetEffect()->getTopOffset();
        ASSERT_GT(top, 0);
        giveLines(object, {newLine(c.x, 40, 0, 2)});
        const LineInfo* line = static_cast<const LineInfo*>(object.GetLineInfo()->Get(0));
        const LmRect given = line->bounds;
        std::vector<uint32_t> first;
        for (int pass = 0; pass < 2; pass++) {
            const uint32_t* px = object.RenderTextEffect(120, 90);
            ASSERT_NE(nullptr, px);
            if (pass == 0) first.assign(px, px + 120 * 90);
            else EXPECT_TRUE(std::equal(first.begin(), first.end(), px)) << c.x;
            EXPECT_EQ(given.top, line->bounds.top);
            EXPECT_EQ(given.top + top, line->renderBounds.top);
            EXPECT_EQ(given.bottom + top, line->renderBounds.bottom);
            EXPECT_EQ((int)std::min<int64_t>((int64_t)c.x + left, INT_MAX), line->renderBounds.left);
            EXPECT_GE(line->renderBounds.right, line->renderBounds.left);
        }
    }
}

TEST_F(FontDrawing, RefusalsAtTheLimitsWarnAndSetError3)
{
    struct Case {
        const wchar_t* text;
        float size;
        int bitmapSide;
        bool pixels;            // whether the render still returns pixels
        const char* warning;    // part of the warning line
    };
    const Case cases[] = {
        {L"WW", 16384.0f, 64, true, "passes the bitmap cap"},     // the line mask
        {L"W", 20000.0f, 64, true, "text size 20000 is outside"},  // the text size cap
        {L"W", 12.0f, 16385 + 16385, false, "passes the cap"},     // the bitmap itself
    };
    for (const Case& c : cases) {
        LmTextObject object;
        ASSERT_EQ(1, object.Construct());
        object.SetText(c.text);
        object.SetFont(kSansPath);
        LmPaint paint = paintOf(c.size);
        object.SetPaint(paint);
        giveLines(object, {newLine(0, 40, 0, (int)wcslen(c.text))});
        LogCapture log;
        Error::SetError(0);
        const uint32_t* px = object.RenderTextEffect(c.bitmapSide, c.bitmapSide);
        EXPECT_EQ(c.pixels, px != nullptr) << c.warning;
        EXPECT_EQ((unsigned long)Error::LM_ERR_OUT_OF_RANGE, Error::GetError()) << c.warning;
        bool warned = false;
        for (const LogLine& l : log.lines())
            warned = warned || (l.priority == LmLog::LM_PRIO_WARN && l.message.find(c.warning) != std::string::npos);
        EXPECT_TRUE(warned) << c.warning;
    }
}

TEST_F(FontDrawing, ALineWiderThan16BitsIsDrawnWhole)
{
    // Letter spacing stretches "iiii" to about 120,000 px; the last 'i' is inked far past both
    // 65,535 (the old mask width) and 32,767 (the rasteriser's span x).
    LmTextObject object;
    ASSERT_EQ(1, object.Construct());
    object.SetText(L"iiii");
    object.SetFont(kSansPath);
    LmPaint paint = paintOf(20.0f);
    paint.setLetterSpacing(1500.0f);
    object.SetPaint(paint);
    giveLines(object, {newLine(0, 30, 0, 4)});
    ASSERT_NE(nullptr, object.RenderTextEffect(100, 40));
    const LmGlyph* g = static_cast<const LmGlyph*>(object.GetFont()->GetGlyphList()->Get(0));
    ASSERT_NE(nullptr, g);
    ASSERT_GT(g->width, 110000u);
    // The first inked column of each letter: evenly spaced, the fourth beyond 65,535.
    std::vector<int64_t> letters;
    int64_t lastInk = -1000;
    for (uint32_t x = 0; x < g->width; x++) {
        bool ink = false;
        for (uint32_t y = 0; y < g->height; y++) ink = ink || g->pixels[(size_t)y * g->width + x];
        if (!ink) continue;
        if (x - lastInk > 100) letters.push_back(x);
        lastInk = x;
    }
    ASSERT_EQ(4u, letters.size());
    EXPECT_GT(letters[3], 65535);
    EXPECT_NEAR(letters[3] - letters[2], letters[1] - letters[0], 1);
}

TEST_F(FontDrawing, WholeInkMasksMatchTheOutlinesOwnBounds)
{
    // Oblique and synthetic italic lean past the advance at large sizes; 'j' reaches left of
    // the pen. With the whole ink kept, the mask spans the outlines' union where the font puts
    // it; by default it is the advance wide.
    struct Case {
        const char* font;
        const wchar_t* text;
        bool italicStyle;
        float size;
    };
    const Case cases[] = {{kSansObliquePath, L"fff", false, 200.0f},
                          {kSansPath, L"jf", true, 300.0f},
                          {kSansObliquePath, L"jf", false, 96.0f}};
    for (const Case& c : cases) {
        for (bool whole : {false, true}) {
            freshFontManager(false);
            LmTextObject object;
            ASSERT_EQ(1, object.Construct());
            object.SetText(c.text);
            object.SetFont(c.font);
            object.SetTextStyle(false, c.italicStyle);
            object.SetKeepWholeInk(whole);
            LmPaint paint = paintOf(c.size);
            object.SetPaint(paint);
            const int n = (int)wcslen(c.text);
            giveLines(object, {newLine(40, 400, 0, n)});
            ASSERT_NE(nullptr, object.RenderTextEffect(1200, 600));
            const LmGlyph* g = static_cast<const LmGlyph*>(object.GetFont()->GetGlyphList()->Get(0));
            ASSERT_NE(nullptr, g);

            // The union of each glyph's outline box, placed as the layout places it.
            std::vector<uint16_t> units(c.text, c.text + n);
            auto typeface = LmTypeface::createFromFamilies({familyOf(c.font)}, 400, c.italicStyle);
            LmLayout layout = LmLayoutUtils::doLayout(paint, 2, typeface.get(), units.data(), units.size(), 0,
                                                      units.size(), 0, units.size());
            float l = 1e9f, r = -1e9f;
            for (size_t i = 0; i < layout.nGlyphs(); i++) {
                LmGlyphStyle style = paint.glyphStyle();
                if (layout.getFakery(i).fakeItalic) style.skewX -= 0.25f;
                LmGlyphBox box;
                ASSERT_TRUE(layout.getFont(i)->GetGlyphBounds(layout.getGlyphId(i), style, &box));
                l = std::min(l, layout.getX(i) + box.left);
                r = std::max(r, layout.getX(i) + box.right);
            }
            ASSERT_GT(r, layout.getAdvance() + 3.0f) << c.font << c.size;
            if (!whole) {
                EXPECT_EQ((uint32_t)layout.getAdvance(), g->width);
                EXPECT_EQ(0, g->leftBearing);
                continue;
            }
            EXPECT_EQ((int)std::floor(l), g->leftBearing) << c.font << c.size;
            EXPECT_EQ((uint32_t)(std::ceil(r) - std::floor(l)), g->width) << c.font << c.size;
            // Ink reaches the mask's edges (a sliver of the outermost column may cover nothing).
            bool firstColumns = false, lastColumns = false;
            for (uint32_t y = 0; y < g->height; y++) {
                const unsigned char* rowPixels = g->pixels + (size_t)y * g->width;
                firstColumns = firstColumns || rowPixels[0] || rowPixels[1];
                lastColumns = lastColumns || rowPixels[g->width - 1] || rowPixels[g->width - 2];
            }
            EXPECT_TRUE(firstColumns && lastColumns) << c.font << c.size;
        }
    }
}
