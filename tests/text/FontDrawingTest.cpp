#include "text/TextTestSupport.h"

#include "effect/LmGlyph.h"
#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "raster/LmBitmap.h"
#include "support/TestSupport.h"
#include "text/LmFontDrawing.h"

#include <climits>
#include <tuple>

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

class FontDrawing : public ::testing::Test {
protected:
    void SetUp() override { freshFontManager(false); }
    void TearDown() override { freshFontManager(false); }

    // Draws one line of `text` at pen x and returns the object's last line mask.
    const LmGlyph* drawLine(LmTextObject& object, const wchar_t* text, int end, LmPaint paint, int x = 4)
    {
        prepareText(object, text, paint, 200, 80);
        giveLines(object, {newLine(x, 50, 0, end)});
        object.RenderTextEffect(200, 80);
        List* glyphs = object.GetFont()->GetGlyphList();
        return glyphs->GetCount() == 1 ? static_cast<const LmGlyph*>(glyphs->Get(0)) : nullptr;
    }
};

} // namespace

TEST(FontDrawingContext, StartsAtTheNewlineBeforeTheLine)
{
    const char16_t text[] = u"ab\ncd\r\nef";
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
        for (int y = 9; y < 12; y++) EXPECT_EQ(rows[direction < 0][y - 9], inkRow(mask->pixels, mask->width, y)) << direction;
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
    EXPECT_EQ("....", inkRow(effect.getSrcBitmap()->pixels, 4, 1));
}

TEST_F(FontDrawing, MissingTextLeavesTheTargetAlone)
{
    LmTextObject object;
    ASSERT_EQ(1, object.Construct());
    LmBitmap dst(8, 8, 4);
    std::fill(dst.pixels, dst.pixels + 8 * 8 * 4, 0x77);
    object.GetFont()->DrawTextEffect(&object, &dst);
    for (int i = 0; i < 8 * 8 * 4; i++) ASSERT_EQ(0x77, dst.pixels[i]);
    object.GetFont()->DrawTextEffect(nullptr, &dst);
    object.GetFont()->DrawTextEffect(&object, nullptr);
}

TEST_F(FontDrawing, LineBoxesSaturateAndARepeatedRenderRepeatsItsPixels)
{
    // A pen x near INT_MAX, or an advance saturated by a huge letter spacing, must not wrap;
    // the render box is the given box moved once by the shadow's margins, however often drawn.
    for (auto c : {std::make_pair(10, 0.0f), std::make_pair(INT_MAX - 5, 0.0f), std::make_pair(10, 1e30f)}) {
        LmTextObject object;
        LmPaint paint = paintOf(30.0f);
        paint.setLetterSpacing(c.second);
        drawLine(object, L"Hi", 2, paint, c.first);
        object.SetBackgroundColor(0xFF204080u, true);
        ASSERT_GE(object.GetEffect()->addOuterShadowText(270.0f, 6.0f, 4.0f, 0xFF000000u, 1.0f), 0);
        const uint32_t* px = object.RenderTextEffect(200, 80);
        const std::vector<uint32_t> first(px, px + 200 * 80);
        EXPECT_TRUE(std::equal(first.begin(), first.end(), object.RenderTextEffect(200, 80)));
        const LmRect& box = static_cast<const LineInfo*>(object.GetLineInfo()->Get(0))->renderBounds;
        EXPECT_EQ(10 + object.GetEffect()->getTopOffset(), box.top);
        EXPECT_EQ((int)std::min<int64_t>((int64_t)c.first + object.GetEffect()->getLeftOffset(), INT_MAX), box.left);
    }
}

TEST_F(FontDrawing, RefusalsAtTheLimitsWarnAndSetError3)
{
    // The line mask past the bitmap cap, the text size past its cap, the bitmap past its cap.
    for (auto c : {std::make_tuple(16384.0f, 80, "passes the bitmap cap"), std::make_tuple(20000.0f, 80, "size 20000"),
                   std::make_tuple(12.0f, 32770, "passes the cap")}) {
        LmTextObject object;
        drawLine(object, L"WW", 2, paintOf(std::get<0>(c)));
        LogCapture log;
        Error::SetError(0);
        EXPECT_EQ(std::get<1>(c) == 80, object.RenderTextEffect(std::get<1>(c), std::get<1>(c)) != nullptr);
        EXPECT_EQ((unsigned long)Error::LM_ERR_OUT_OF_RANGE, Error::GetError());
        EXPECT_TRUE(std::any_of(log.lines().begin(), log.lines().end(), [&](const LogLine& l) {
            return l.priority == LmLog::LM_PRIO_WARN && l.message.find(std::get<2>(c)) != std::string::npos;
        })) << std::get<2>(c);
    }
}

TEST_F(FontDrawing, ALineWiderThan16BitsIsDrawnWhole)
{
    // Spaced 30,000 px apart, the fourth 'i' lies past 65,535 (the old mask width) and 32,767
    // (the rasteriser's span x): it has as much ink as the first.
    LmTextObject object;
    LmPaint paint = paintOf(20.0f);
    paint.setLetterSpacing(1500.0f);
    const LmGlyph* g = drawLine(object, L"iiii", 4, paint);
    ASSERT_GT(g->width, 4 * 29000u);
    int64_t ink[4] = {};
    for (size_t i = 0; i < (size_t)g->width * g->height; i++) ink[i % g->width * 4 / g->width] += g->pixels[i];
    EXPECT_GT(ink[0], 1000);
    EXPECT_NEAR(ink[0], ink[3], ink[0] / 20);
}
