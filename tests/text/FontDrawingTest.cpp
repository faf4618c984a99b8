#include "text/EndToEndSupport.h"

#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "foundation/LmString.h"
#include "raster/LmBitmap.h"
#include "support/TestSupport.h"
#include "text/LmFontDrawing.h"
#include "text/LmView.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

std::string hexPointer(const void* p)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%p", p);
    return buf;
}

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

// Columns of the mask at row y that hold `value`, as a string of '#' and '.'.
std::string row(const LmBitmap* mask, int y, int from, int to)
{
    std::string s;
    for (int x = from; x < to; x++) s += mask->pixels[(size_t)y * mask->width + x] ? '#' : '.';
    return s;
}

class FontDrawing : public ::testing::Test {
protected:
    void SetUp() override { freshFontManager(false); }
    void TearDown() override { freshFontManager(false); }

    // Draws one line of `text` at 40 px and returns the object's last line mask.
    const LmGlyph* drawLine(LmTextObject& object, const wchar_t* text, int end, const LmPaint& paint)
    {
        object.Construct();
        object.SetText(text);
        object.SetFont(kSansPath);
        object.SetPaint(const_cast<LmPaint&>(paint));
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

TEST(FontDrawingNames, PathAndFamilyAreKeptAndReplaced)
{
    LmFontDrawing drawing;
    EXPECT_EQ(nullptr, drawing.GetFontPath());
    drawing.SetFontPath(nullptr);
    EXPECT_EQ(nullptr, drawing.GetFontPath());
    drawing.SetFontPath("/a.ttf");
    LmString* first = drawing.GetFontPath();
    ASSERT_NE(nullptr, first);
    drawing.SetFontPath("/a.ttf");
    drawing.SetFontPath("/b.ttf");
    drawing.SetFontPath(nullptr);
    EXPECT_EQ(first, drawing.GetFontPath());
    EXPECT_EQ(0, drawing.GetFontPath()->CompareTo("/b.ttf"));
    drawing.SetFontFamilyName("sans");
    drawing.SetFontFamilyName("serif");
    EXPECT_EQ(0, drawing.GetFontFamilyName()->CompareTo("serif"));
    EXPECT_EQ(0, drawing.GetGlyphList()->GetCount());
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
        if (direction > 0) {
            // A at (5, 9), then B at (5 + 3 + 1, 10).
            EXPECT_EQ(".....###............", row(mask, 9, 0, 20));
            EXPECT_EQ(".....###.##.........", row(mask, 10, 0, 20));
            EXPECT_EQ(".........##.........", row(mask, 11, 0, 20));
        } else {
            // B first at (5 + 1, 10), then A at (5 + 2, 9).
            EXPECT_EQ(".......###..........", row(mask, 9, 0, 20));
            EXPECT_EQ("......####..........", row(mask, 10, 0, 20));
            EXPECT_EQ("......##............", row(mask, 11, 0, 20));
        }
        const LmRect* r = effect.getTextRect();
        EXPECT_EQ(9, r->top);
        EXPECT_EQ(12, r->bottom);
        drawing._DoRender(0, 0, 0, nullptr, &effect, 1);
        drawing._DoRender(0, 0, 0, list, nullptr, 1);
    }
    // An empty list places nothing.
    LmEffect effect;
    effect.initEffect(4, 4);
    LmFontDrawing drawing;
    drawing._DoRender(0, 64, 64, drawing.GetGlyphList(), &effect, 1);
    EXPECT_EQ("....", row(effect.getSrcBitmap(), 1, 0, 4));
}

TEST_F(FontDrawing, MissingTextIsLoggedAndLeavesTheTargetAlone)
{
    LmTextObject object;
    ASSERT_EQ(1, object.Construct());
    LmBitmap dst(8, 8, 4);
    std::fill(dst.pixels, dst.pixels + 8 * 8 * 4, 0x77);
    LogCapture log;
    object.GetFont()->DrawTextEffect(&object, &dst);
    EXPECT_TRUE(log.contains("LmFontDrawing", "DrawTextEffect(" + hexPointer(object.GetFont()) + ") - text is NULL"));
    for (int i = 0; i < 8 * 8 * 4; i++) ASSERT_EQ(0x77, dst.pixels[i]);
    object.GetFont()->DrawTextEffect(nullptr, &dst);
    object.GetFont()->DrawTextEffect(&object, nullptr);
}

TEST_F(FontDrawing, LineMaskIsAdvanceWideAndInkHigh)
{
    LmTextObject object;
    LmPaint paint;
    paint.setTextSize(40.0f);
    const LmGlyph* glyph = drawLine(object, L"Hxg", 3, paint);
    ASSERT_NE(nullptr, glyph);

    auto tf = LmTypeface::createFromFamilies({familyOf(kSansPath)}, 400, false);
    std::vector<uint16_t> units = utf16(u"Hxg");
    LmLayout layout = LmLayoutUtils::doLayout(paint, 2, tf.get(), units.data(), 3, 0, 3, 0, 3);
    EXPECT_EQ((unsigned)layout.getAdvance(), glyph->width);
    EXPECT_EQ((unsigned)(layout.getBounds().bottom - layout.getBounds().top), glyph->height);
    EXPECT_EQ((int)-layout.getBounds().top, glyph->topOffset);
    EXPECT_EQ(0, glyph->leftBearing);
    // 'H' is as high as the ink above the baseline, 'g' reaches the bottom row.
    bool topRow = false, bottomRow = false;
    for (int x = 0; x < glyph->width; x++) {
        topRow = topRow || glyph->pixels[x];
        bottomRow = bottomRow || glyph->pixels[(size_t)(glyph->height - 1) * glyph->width + x];
    }
    EXPECT_TRUE(topRow);
    EXPECT_TRUE(bottomRow);
}

TEST_F(FontDrawing, InkLeftOfTheOriginShiftsInAndInkPastTheAdvanceIsCut)
{
    // A strong right lean pushes the top of the last 'l' past the advance and a left lean
    // pushes the bottom of 'j' left of the origin.
    LmTextObject lean;
    LmPaint paint;
    paint.setTextSize(40.0f);
    paint.setTextSkewX(-0.6f);
    const LmGlyph* g = drawLine(lean, L"ll", 2, paint);
    ASSERT_NE(nullptr, g);
    auto tf = LmTypeface::createFromFamilies({familyOf(kSansPath)}, 400, false);
    std::vector<uint16_t> ll = utf16(u"ll");
    LmLayout layout = LmLayoutUtils::doLayout(paint, 2, tf.get(), ll.data(), 2, 0, 2, 0, 2);
    EXPECT_GT(layout.getBounds().right, layout.getAdvance() + 5.0f);
    EXPECT_EQ((unsigned)layout.getAdvance(), g->width);

    LmTextObject back;
    paint.setTextSkewX(0.0f);
    const LmGlyph* j = drawLine(back, L"j", 1, paint);
    ASSERT_NE(nullptr, j);
    std::vector<uint16_t> ju = utf16(u"j");
    LmLayout jl = LmLayoutUtils::doLayout(paint, 2, tf.get(), ju.data(), 1, 0, 1, 0, 1);
    ASSERT_LT(jl.getBounds().left, 0.0f);
    // The hook's leftmost ink lands in column 0.
    bool column0 = false;
    for (int y = 0; y < j->height; y++) column0 = column0 || j->pixels[(size_t)y * j->width];
    EXPECT_TRUE(column0);
}

TEST_F(FontDrawing, TwoFontRunsShareOneMask)
{
    freshFontManager(true);
    LmTextObject object;
    LmPaint paint;
    paint.setTextSize(40.0f);
    paint.setTextSkewX(-0.2f);
    const LmGlyph* glyph = drawLine(object, L"ab\u4E2D", 3, paint);
    ASSERT_NE(nullptr, glyph);
    EXPECT_EQ(1, object.GetFont()->GetGlyphList()->GetCount());

    std::vector<uint16_t> units = utf16(u"ab\u4E2D");
    LmLayout layout = LmLayoutUtils::doLayout(paint, 2, sansWithCjk().get(), units.data(), 3, 0, 3, 0, 3);
    const int split = (int)(layout.getX(2) - layout.getBounds().left);
    long latin = 0, han = 0;
    for (int y = 0; y < glyph->height; y++) {
        for (int x = 0; x < glyph->width; x++) (x < split ? latin : han) += glyph->pixels[(size_t)y * glyph->width + x];
    }
    EXPECT_GT(latin, 255 * 50);
    EXPECT_GT(han, 255 * 100);
    // The paint of the text object is untouched by the per-run settings.
    EXPECT_FLOAT_EQ(-0.2f, object.GetPaint().getTextSkewX());
}

TEST_F(FontDrawing, EmptyLineRendersNothing)
{
    LmTextObject object;
    LmPaint paint;
    paint.setTextSize(40.0f);
    const LmGlyph* glyph = drawLine(object, L"  ", 2, paint);  // spaces: advance but no ink
    ASSERT_NE(nullptr, glyph);
    EXPECT_EQ(0, glyph->height);
    LmTextObject none;
    glyph = drawLine(none, L"abc", 0, paint);
    ASSERT_NE(nullptr, glyph);
    EXPECT_EQ(0, glyph->width);
}
