#include "text/TextTestSupport.h"

#include <climits>
#include <cstdlib>

using namespace LmTest;

namespace {

constexpr uint32_t kTextColour = 0xFFC03010u;

class EndToEnd : public FreshFonts {
protected:
    void prepare(LmTextObject& object, const wchar_t* text, float size, int viewW, int viewH, int gravity,
                 const std::vector<LineInfo*>& lines, int padding = 10, const char* font = kSansPath)
    {
        prepareText(object, text, paintOf(size), viewW, viewH, font);
        giveLines(object, lines);
        object.SetTextColor(kTextColour);
        object.GetView()->SetPadding(padding, padding, padding, padding);
        object.GetView()->gravity = gravity;
    }

    const uint32_t* render(LmTextObject& object) { return renderWithMargins(object, &bw, &bh); }

    // Every pixel against the masks: the text colour where fully covered, transparency where not
    // covered, and edge alpha following coverage (the colour loses precision when the stack
    // un-premultiplies a faint pixel). Line backgrounds and effect margins are in the lmtext goldens.
    void expectLines(const uint32_t* px, const std::vector<LineMask>& lines)
    {
        std::vector<int> cover((size_t)bw * bh, -1);
        for (const LineMask& m : lines) {
            for (int y = 0; y < m.height; y++) {
                for (int x = 0; x < m.width; x++) {
                    const int ox = m.x + x, oy = m.baseline + m.top + y;
                    if (ox >= 0 && oy >= 0 && ox < bw && oy < bh) cover[(size_t)oy * bw + ox] = m.at(x, y);
                }
            }
        }
        int mismatches = 0;
        for (int y = 0; y < bh; y++) {
            for (int x = 0; x < bw; x++) {
                const int c = cover[(size_t)y * bw + x];
                const uint32_t p = px[(size_t)y * bw + x];  // ARGB
                const bool ok = c == 255 ? p == kTextColour : c <= 0 ? p == 0 : std::abs((int)(p >> 24) - c) <= 2;
                if (!ok && ++mismatches <= 5) ADD_FAILURE() << "pixel (" << x << ", " << y << ") = " << std::hex << p
                                                            << " coverage " << std::dec << c;
            }
        }
        EXPECT_EQ(0, mismatches);
    }

    int bw = 0;
    int bh = 0;
};

LmGlyph* solidGlyph(uint32_t w, uint32_t h, int top, int bearing, unsigned char value)
{
    auto* pixels = new unsigned char[(size_t)w * h];
    std::fill(pixels, pixels + (size_t)w * h, value);
    return new LmGlyph{pixels, w, h, top, bearing};
}

// Draws one line of `text` at pen x and returns the object's line mask.
const LmGlyph* drawLine(LmTextObject& object, const wchar_t* text, int end, LmPaint paint, int x = 4)
{
    prepareText(object, text, paint, 200, 80);
    giveLines(object, {newLine(x, 50, 0, end)});
    object.RenderTextEffect(200, 80);
    List* glyphs = object.GetFont()->GetGlyphList();
    return glyphs->GetCount() == 1 ? static_cast<const LmGlyph*>(glyphs->Get(0)) : nullptr;
}

using FontDrawing = FreshFonts;

} // namespace

// Each line is drawn as the layout shapes it alone: Latin, Latin then Han through the system
// family that registering the text's scripts loaded, and Hebrew and Arabic (the layout tests
// pin their right-to-left glyph order).
TEST_F(EndToEnd, LinesDrawTheirGlyphPixelsInTheTextColourAndNothingElse)
{
    struct Line {
        int start, end, baseline, direction, bidi;
    };
    const int ltr = LmLayoutUtils::kBidiDefaultLTR;
    const struct {
        std::u16string text;
        float size;
        bool systemFonts;
        std::vector<Line> lines;
    } cases[] = {
        {u"Hello", 48.0f, false, {{0, 5, 55, 1, ltr}}},
        {u"Hi \u4E2D\u6587", 40.0f, true, {{0, 5, 45, 1, ltr}}},
        {u"\u05E9\u05DC\u05D5\u05DD\n\u0645\u0631\u062D\u0628\u0627", 36.0f, false,
         {{0, 4, 40, -1, LmLayoutUtils::kBidiDefaultRTL}, {5, 10, 90, 1, ltr}}},
    };
    const auto withCjk = sansWithCjk();
    for (const auto& c : cases) {
        freshFontManager(c.systemFonts);
        std::vector<LineInfo*> lines;
        std::vector<LineMask> placed;
        for (const Line& l : c.lines) {
            lines.push_back(newLine(10, l.baseline, l.start, l.end, l.direction));
            const LmTypeface* typeface = c.systemFonts ? withCjk.get() : sansOnly();
            placed.push_back(expectedLineMask(c.text, l.start, l.end, c.size, 10, l.baseline, l.bidi, typeface));
            ASSERT_GT(placed.back().width, 40);
        }
        LmTextObject object;
        prepare(object, std::wstring(c.text.begin(), c.text.end()).c_str(), c.size, 260, 110, 0x33, lines, 0);
        const uint32_t* px = render(object);
        ASSERT_NE(nullptr, px);
        expectLines(px, placed);
    }
}

// A font file registered by path is read whole: truncating or zeroing it later, or the
// registry dropping its fonts, leaves the text drawn as before.
TEST_F(EndToEnd, FontFileChangingOrRegistryClearedAfterRegistrationStillDraws)
{
    const std::vector<unsigned char> good = readFileBytes(kSansPath);
    const std::string path = ::testing::TempDir() + "/lm_changing_font.ttf";
    const std::vector<std::pair<const char*, std::vector<unsigned char>>> cases{
        {"truncated", {}},
        {"zeroed", std::vector<unsigned char>(good.size(), 0)},
        {"cleared", good},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        freshFontManager(false);
        std::ofstream(path, std::ios::binary | std::ios::trunc).write((const char*)good.data(), (long)good.size());
        LmTextObject object;
        prepare(object, L"Hello", 48.0f, 260, 90, 0x33, {newLine(10, 55, 0, 5)}, 10, path.c_str());
        std::ofstream(path, std::ios::binary | std::ios::trunc).write((const char*)c.second.data(), (long)c.second.size());
        if (c.second.size() == good.size() && c.second[0]) FontManager::GetInstance()->ClearFontMaps();
        const uint32_t* px = render(object);
        ASSERT_NE(nullptr, px);
        expectLines(px, {expectedLineMask(u"Hello", 0, 5, 48.0f, 10, 55)});
    }
    std::remove(path.c_str());
}

TEST_F(EndToEnd, EachGravityClipsToItsRectangle)
{
    struct Case {
        int gravity;
        int l, t, r, b;  // expected clip, from the padded view of 120 x 60 with padding 10
    };
    for (const Case& c : {Case{0x33, 0, 0, 110, 50}, Case{0x55, 10, 10, 120, 60}, Case{0x11, 10, 10, 110, 50},
                          Case{0x53, 0, 10, 110, 60}, Case{0x35, 10, 0, 120, 50}}) {
        // A line box over the whole bitmap paints the clip rectangle with the background.
        LineInfo* line = newLine(0, 45, 0, 5);
        line->bounds = LmRect(0, -1000, 1000, 1000);
        LmTextObject object;
        prepare(object, L"Hello", 48.0f, 120, 60, c.gravity, {line});
        object.SetBackgroundColor(0xFF00FF00u, true);
        const uint32_t* px = render(object);
        ASSERT_NE(nullptr, px);
        for (int y = 0; y < bh; y++) {
            for (int x = 0; x < bw; x++) {
                const bool inside = x >= c.l && x < c.r && y >= c.t && y < c.b;
                ASSERT_EQ(inside, (px[(size_t)y * bw + x] >> 24) != 0)
                    << "gravity " << std::hex << c.gravity << std::dec << " at (" << x << ", " << y << ")";
            }
        }
    }
}

TEST_F(EndToEnd, BadFontsTextsAndBitmapSizesFailOrDrawNothingAndNeverCrash)
{
    // Missing files and random bytes are refused before any drawing (font manager and text
    // object tests).
    std::mt19937 rng(3);
    // Truncated copies and copies with a few hundred bytes spoilt past the table directory
    // (outlines, metrics, cmap) may be accepted, tables being read lazily; drawing is safe.
    std::vector<unsigned char> good = readFileBytes(kSansPath);
    std::vector<std::vector<unsigned char>> broken{{good.begin(), good.begin() + good.size() / 3},
                                                   {good.begin(), good.begin() + 64}};
    for (int round = 0; round < 6; ++round) {
        broken.push_back(good);
        for (int i = 0; i < 300; ++i) broken.back()[256 + rng() % (good.size() - 256)] = (unsigned char)rng();
    }
    for (size_t i = 0; i < broken.size(); i++) {
        LmTextObject user;
        prepareText(user, L"Hello, world \u4E2D", paintOf(32.0f), 200, 60, nullptr);
        const std::string name = "broken-" + std::to_string(i) + ".ttf";
        user.SetFont(name.c_str(), handOver(broken[i], broken[i].size()), (unsigned)broken[i].size());
        giveLines(user, {newLine(0, 40, 0, 14)});
        EXPECT_NE(nullptr, user.RenderTextEffect(200, 60)) << name;
    }

    LmTextObject object;
    prepareText(object, L"Hello", paintOf(32.0f), 60, 50, nullptr);
    EXPECT_EQ(0, object.SetFont("/no/such/font.ttf"));
    giveLines(object, {newLine(0, 40, 0, 5)});
    const uint32_t* px = object.RenderTextEffect(60, 50);
    ASSERT_NE(nullptr, px);
    for (int i = 0; i < 60 * 50; i++) ASSERT_EQ(0u, px[i]);

    const wchar_t lone[] = {0xD800, 'a', 0xDC00, 0xDBFF, 0};
    for (const wchar_t* text : {L"", lone}) {
        LmTextObject degenerate;
        prepare(degenerate, text, 30.0f, 80, 40, 0x33,
                {newLine(0, 30, 0, (int)wcslen(text)), newLine(0, 30, -5, 99), newLine(0, 30, 3, 1)});
        px = render(degenerate);
        ASSERT_NE(nullptr, px);
        if (text[0] == 0) {
            for (int i = 0; i < bw * bh; i++) ASSERT_EQ(0u, px[i]);
        }
    }
    LmTextObject sized;
    prepare(sized, L"Hello", 30.0f, 80, 40, 0x33, {newLine(0, 30, 0, 5)});
    sized.RenderTextEffect(0, 0);
    sized.RenderTextEffect(0, 40);
    sized.RenderTextEffect(-5, -7);
}

TEST_F(EndToEnd, SystemFamiliesCoverTheCommonScriptsWithoutMissingGlyphs)
{
    List families;
    families.Construct();
    ASSERT_GE(LmSystemFamilies::Collect(&families), 2);
    // The default family comes first and serves any language.
    EXPECT_EQ(0u, static_cast<const LmFontFamily*>(families.Get(0))->localeListId);
    for (int i = 0; i < families.GetCount(); i++) delete static_cast<const LmFontFamily*>(families.Get(i));
    families.RemoveAll();

    // Every script of the text reaches a font with real glyphs once its locales are loaded.
    freshFontManager(true);
    const std::u16string text = u"Hello \u041F\u0440\u0438\u0432\u0435\u0442 \u0393\u03B5\u03B9\u03AC "
                                u"\u0645\u0631\u062D\u0628\u0627 \u05E9\u05DC\u05D5\u05DD \u4F60\u597D "
                                u"\u3053\u3093\u306B\u3061\u306F \uAC00";  // the stock CJK font has only some Hangul
    LmTextObject object;
    prepareText(object, std::wstring(text.begin(), text.end()).c_str(), paintOf(24.0f), 400, 40, nullptr);
    std::vector<std::shared_ptr<LmPlatformFamily>> list;
    int weight = 400;
    ASSERT_TRUE(FontManager::GetInstance()->GetMinikinFontFamilies(nullptr, list, nullptr, weight));
    auto typeface = LmTypeface::createFromFamilies(std::move(list), weight, false);
    ASSERT_TRUE(typeface);
    LmLayout layout = layoutOf(text, paintOf(24.0f), LmLayoutUtils::kBidiDefaultLTR, typeface.get());
    ASSERT_GT(layout.nGlyphs(), 30u);
    for (size_t i = 0; i < layout.nGlyphs(); i++) EXPECT_NE(0u, layout.getGlyphId(i)) << "glyph " << i;
}

// A line's shaping context starts at the newline before it; its glyphs go to their place; without
// text nothing is drawn.
TEST(FontDrawingLine, ContextStartsAtTheNewlineGlyphsGoInListOrderOrBackwardsAndNoTextDrawsNothing)
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
        EXPECT_EQ(12, effect.getTextRect()->bottom);
        drawing._DoRender(0, 0, 0, nullptr, &effect, 1);
        drawing._DoRender(0, 0, 0, list, nullptr, 1);
    }
    LmEffect effect;
    effect.initEffect(4, 4);
    LmFontDrawing drawing;
    drawing._DoRender(0, 64, 64, drawing.GetGlyphList(), &effect, 1);
    EXPECT_EQ("....", inkRow(effect.getSrcBitmap()->pixels, 4, 1));

    LmTextObject object;
    ASSERT_EQ(1, object.Construct());
    LmBitmap dst(8, 8, 4);
    std::fill(dst.pixels, dst.pixels + 8 * 8 * 4, 0x77);
    object.GetFont()->DrawTextEffect(&object, &dst);
    for (int i = 0; i < 8 * 8 * 4; i++) ASSERT_EQ(0x77, dst.pixels[i]);
    object.GetFont()->DrawTextEffect(nullptr, &dst);
    object.GetFont()->DrawTextEffect(&object, nullptr);
}

TEST_F(FontDrawing, HugeLinesSaturateOrDrawWholeAndARepeatedRenderRepeatsItsPixels)
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
        EXPECT_EQ((int)std::min<int64_t>((int64_t)c.first + object.GetEffect()->getLeftOffset(), INT_MAX), box.left);
    }

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
