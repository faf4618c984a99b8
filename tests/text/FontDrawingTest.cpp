#include "text/TextTestSupport.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "foundation/LmString.h"
#include "raster/LmBitmap.h"
#include "support/TestSupport.h"
#include "text/LmFontDrawing.h"
#include "text/LmView.h"

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
    for (int y = 0; y < j->height; y++) column0 = column0 || j->pixels[(size_t)y * j->width];
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
    for (int y = 0; y < g->height; y++)
        for (int x = g->width * 2 / 3; x < g->width; x++) hanInk += g->pixels[(size_t)y * g->width + x] != 0;
    EXPECT_GT(hanInk, 50);
    EXPECT_FLOAT_EQ(-0.2f, object.GetPaint().getTextSkewX());
}
