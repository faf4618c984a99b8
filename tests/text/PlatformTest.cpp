#include "text/TextTestSupport.h"

#include <limits>
#include <numeric>

using namespace LmTest;

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN(), kInf = std::numeric_limits<float>::infinity();

// An RGBA raster (R, G, B, A in memory) with its canvas.
struct Raster {
    Raster(int w, int h) : w(w), px((size_t)w * h * 4, 0), canvas(px.data(), w, h) {}
    std::string row(int y) const { return inkRow(px.data(), w, y, 4); }
    bool blank() const { return std::all_of(px.begin(), px.end(), [](unsigned char c) { return c == 0; }); }
    int w;
    std::vector<unsigned char> px;
    LmCanvas canvas;
};

// Total coverage of one glyph drawn at (x, y) into a w x h mask.
long inkOf(const LmPlatformFont& font, uint32_t glyph, const LmGlyphStyle& style, std::vector<unsigned char>* mask,
           int w = 64, int h = 64, float x = 8.0f, float y = 48.0f)
{
    mask->assign((size_t)w * h, 0);
    LmAlphaCanvas canvas(mask->data(), w, h);
    font.DrawGlyph(glyph, style, x, y, &canvas);
    return std::accumulate(mask->begin(), mask->end(), 0L);
}

LmGlyphStyle styleOf(float size) { return paintOf(size).glyphStyle(); }

std::vector<uint32_t> glyphIds(const LmLayout& layout)
{
    std::vector<uint32_t> ids;
    for (size_t i = 0; i < layout.nGlyphs(); i++) ids.push_back(layout.getGlyphId(i));
    return ids;
}

// The sans font's glyphs for the characters, in the order given.
std::vector<uint32_t> sansIds(const std::u16string& chars)
{
    std::vector<uint32_t> ids;
    for (char16_t c : chars) ids.push_back(loadFont(kSansPath)->GetGlyphId(c));
    return ids;
}

} // namespace

// The render draws its composite image whole at (0, 0); other offsets must only stay inside.
TEST(PlatformCanvas, RectanglesFillPixelCentresInsideTheClipAndImagesAreClipped)
{
    Raster r(8, 6);
    std::fill(r.px.begin(), r.px.end(), 0x5A);
    r.canvas.clear();
    EXPECT_TRUE(r.blank());
    // Fractional edges: a pixel is filled when its centre lies inside (the render's boxes are whole).
    r.canvas.drawRect(4.4f, 0.0f, 6.6f, 1.0f, 0xFF102030u);
    EXPECT_EQ("....###.", r.row(0));

    r.canvas.clear();
    r.canvas.clipRect(2.0f, 3.0f, 8.0f, 9.0f);
    r.canvas.clipRect(0.0f, 0.0f, 6.0f, 100.0f);  // intersected
    r.canvas.drawRect(-100.0f, -100.0f, 100.0f, 100.0f, 0xFFFFFFFFu);
    EXPECT_EQ("..####..", r.row(3));
    EXPECT_EQ("........", r.row(2));

    // A NaN edge empties the clip; huge and infinite edges saturate; a NaN rectangle draws nothing.
    Raster n(4, 2), h(4, 2);
    n.canvas.clipRect(kNaN, 0, 4, 4);
    n.canvas.drawRect(0, 0, 4, 4, 0xFFFFFFFFu);
    EXPECT_TRUE(n.blank());
    h.canvas.clipRect(-1e30f, -1e30f, 1e30f, 1e30f);
    h.canvas.drawRect(-1e30f, 0, kInf, 1, 0xFFFFFFFFu);
    h.canvas.drawRect(0, 0, kNaN, 4, 0xFFFFFFFFu);
    EXPECT_EQ("####", h.row(0));
    EXPECT_EQ("....", h.row(1));

    const std::vector<unsigned char> img(4 * 2 * 4, 0xFF);
    Raster i(4, 4), e(4, 4);
    i.canvas.drawImage(img.data(), 4, 2, 1, 3);  // hangs off the right and bottom edges
    EXPECT_EQ(".###", i.row(3));
    e.canvas.drawImage(nullptr, 4, 2, 0, 0);
    e.canvas.drawImage(img.data(), -3, 2, 0, 0);
    e.canvas.drawImage(img.data(), 4, 2, 2147483647, 0);
    e.canvas.drawImage(img.data(), 4, 2, -2147483647 - 1, 0);
    EXPECT_TRUE(e.blank());
    LmCanvas none(nullptr, 5, 5);
    none.clear();
    none.drawRect(0, 0, 5, 5, 0xFFFFFFFFu);
    EXPECT_EQ(0, none.width());
}

TEST(PlatformFont, LoadsFacesAndRejectsUnusableBytes)
{
    auto sans = loadFont(kSansPath);
    ASSERT_TRUE(sans && loadFont(kSansObliquePath));
    // The metrics' values are pinned by the tool's goldens, which place lines by them.
    EXPECT_EQ(0.0f, sans->GetAscent(kNaN));

    // Random bytes: font manager test; damaged fonts that open: end-to-end bad-font test.
    std::vector<unsigned char> good = readFileBytes(kSansPath);
    ASSERT_GT(good.size(), 1000u);
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(nullptr, 100, 0));
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), 0, 0));
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), good.size(), 1));   // index past the file
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), good.size(), -1));  // a query, not an index
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), good.size(), 0x10000));
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), 11, 0));
}

// Where the ink lies within its box is pinned by the goldens.
TEST(PlatformFont, OutlinesMeasureAndDrawAsStyledInsideTheCanvasAtUsableSizesOnly)
{
    auto sans = loadFont(kSansPath);
    const uint32_t g = sans->GetGlyphId('g');
    LmGlyphBox box;
    ASSERT_TRUE(sans->GetGlyphBounds(g, styleOf(40.0f), &box));
    std::vector<unsigned char> mask;
    // A space has no outline and no box.
    EXPECT_FALSE(sans->GetGlyphBounds(sans->GetGlyphId(' '), styleOf(40.0f), &box));
    EXPECT_TRUE(box.empty());
    // Sizes that are not positive and finite draw and measure nothing.
    for (float bad : {0.0f, -3.0f, kNaN, kInf, 1e9f}) {
        EXPECT_FALSE(sans->GetGlyphBounds(g, styleOf(bad), &box));
        EXPECT_EQ(0, inkOf(*sans, g, styleOf(bad), &mask));
    }
    // Half of the glyph hangs off the left edge; only the part inside is drawn.
    const uint32_t w = sans->GetGlyphId('W');
    EXPECT_GT(inkOf(*sans, w, styleOf(60.0f), &mask, 32, 32, -20.0f, 40.0f), 0);
    EXPECT_EQ(0, inkOf(*sans, w, styleOf(60.0f), &mask, 32, 32, 500.0f, 40.0f));
    EXPECT_EQ(0, inkOf(*sans, w, styleOf(60.0f), &mask, 32, 32, 1e30f, 40.0f));
    EXPECT_EQ(0, inkOf(*sans, 0xFFFFFFu, styleOf(60.0f), &mask));  // no such glyph
    LmAlphaCanvas empty(nullptr, 10, 10);
    sans->DrawGlyph(w, styleOf(60.0f), 0.0f, 0.0f, &empty);
    sans->DrawGlyph(w, styleOf(60.0f), 0.0f, 0.0f, nullptr);

    // Embolden and aliasing change the coverage of a plain 'H' and 'O'.
    const uint32_t h = sans->GetGlyphId('H');
    std::vector<unsigned char> plain;
    const long base = inkOf(*sans, h, styleOf(40.0f), &plain);

    LmGlyphStyle bold = styleOf(40.0f);
    bold.embolden = true;
    EXPECT_GT(inkOf(*sans, h, bold, &mask), base + base / 10);

    LmGlyphStyle aliased = styleOf(40.0f);
    aliased.antiAlias = false;
    inkOf(*sans, sans->GetGlyphId('O'), aliased, &mask);
    EXPECT_TRUE(std::all_of(mask.begin(), mask.end(), [](unsigned char c) { return c == 0 || c == 255; }));

    // Drawing again merges by maximum: the same glyph twice changes nothing.
    std::vector<unsigned char> twice = plain;
    LmAlphaCanvas canvas(twice.data(), 64, 64);
    sans->DrawGlyph(h, styleOf(40.0f), 8.0f, 48.0f, &canvas);
    EXPECT_EQ(plain, twice);

    // The paint's flags set those styles.
    LmPaint paint;
    paint.setJavaFlags(LmPaint::kFakeBoldTextFlag);
    EXPECT_TRUE(paint.glyphStyle().embolden);
    EXPECT_FALSE(paint.glyphStyle().antiAlias);
    paint.setJavaFlags(LmPaint::kAntiAliasFlag | 0x80u);  // other bits are not acted on
    EXPECT_FALSE(paint.isEmbolden());
}

TEST(PlatformTypeface, ChoosesStyleSynthesisesWhatIsMissingAndFallsBackPerCharacter)
{
    // Which member serves a request is the family's closest match (PlatformFamily below).
    auto sans = loadFont(kSansPath);
    struct Case {
        std::shared_ptr<LmPlatformFamily> family;
        int weight;
        bool italic;
        std::shared_ptr<LmPlatformFont> font;
        bool fakeBold, fakeItalic;
    };
    const Case cases[] = {
        {familyOf(kSansPath), 700, true, sans, true, true},  // only the regular face: both synthesised
        // Bold is synthesised only for a bold request at least 300 heavier than the face.
        {familyOf(kSansPath), 500, false, sans, false, false},
        {familyOf(kSansPath, 500), 700, false, sans, false, false},
        {familyOf(kSansPath, 300), 600, false, sans, true, false},
    };
    for (const Case& c : cases) {
        LmTypeface::FontChoice choice = LmTypeface::createFromFamilies({c.family}, c.weight, c.italic)->chooseFont('A', 0);
        EXPECT_EQ(c.font, choice.font) << c.weight << c.italic;
        EXPECT_EQ(c.fakeBold, choice.fakery.fakeBold) << c.weight << c.italic;
        EXPECT_EQ(c.fakeItalic, choice.fakery.fakeItalic) << c.weight << c.italic;
    }

    auto tf = sansWithCjk();
    ASSERT_TRUE(tf);
    // A character goes to the first family having it (font-run test); if none has it, to the first
    // family (with its missing-glyph box).
    EXPECT_EQ(loadFont(kSansPath), tf->chooseFont(0xE000F, 0).font);

    // A family of another variant is skipped; variant 0 serves every request.
    std::vector<LmStyledFont> cjk{LmStyledFont(loadFont(kCjkPath), 400, false)};
    auto elegantOnly = std::make_shared<LmPlatformFamily>(0, 2, cjk);
    auto compactOnly = std::make_shared<LmPlatformFamily>(0, 1, cjk);
    tf = LmTypeface::createFromFamilies({familyOf(kSansPath), compactOnly}, 400, false);
    EXPECT_EQ(loadFont(kSansPath), tf->chooseFont(0x4E2D, 2).font);
    EXPECT_EQ(loadFont(kCjkPath), tf->chooseFont(0x4E2D, 1).font);
    tf = LmTypeface::createFromFamilies({familyOf(kSansPath), elegantOnly}, 400, false);
    EXPECT_EQ(loadFont(kCjkPath), tf->chooseFont(0x4E2D, 0).font);

    EXPECT_EQ(nullptr, LmTypeface::createFromFamilies({}, 400, false));
    EXPECT_EQ(nullptr, LmTypeface::createFromFamilies({nullptr}, 400, false));
    EXPECT_EQ(nullptr,
              LmTypeface::createFromFamilies({std::make_shared<LmPlatformFamily>(0, 0, std::vector<LmStyledFont>{})},
                                             400, false));
}

TEST(PlatformFamily, ClosestMatchPrefersSlantThenNearestWeight)
{
    std::vector<LmStyledFont> members{LmStyledFont(loadFont(kSansPath), 300, false),
                                      LmStyledFont(loadFont(kSansBoldPath), 500, false),
                                      LmStyledFont(loadFont(kSansObliquePath), 900, true)};
    LmPlatformFamily family(0, 0, members);
    EXPECT_EQ(900, family.getClosestMatch(400, true)->weight);  // slant outranks weight
    EXPECT_EQ(300, family.getClosestMatch(400, false)->weight); // tie: a regular request leans lighter
    EXPECT_EQ(500, family.getClosestMatch(700, false)->weight);
    std::vector<LmStyledFont> tie{LmStyledFont(loadFont(kSansPath), 500, false),
                                  LmStyledFont(loadFont(kSansBoldPath), 700, false)};
    EXPECT_EQ(700, LmPlatformFamily(0, 0, tie).getClosestMatch(600, false)->weight);
    EXPECT_EQ(nullptr, LmPlatformFamily(0, 0, {}).getClosestMatch(400, false));
    EXPECT_EQ(0u, LmPlatformFamily(0, 0, {LmStyledFont(nullptr, 400, false)}).getNumFonts());
}

// Fontconfig's files and families, and the locale lists the families are registered under.
TEST(PlatformSystemFonts, FindsFilesAndFamiliesAndTheirLocaleListsAreTheSameAcrossSeparators)
{
    std::string sans = LmSystemFonts::FindFontFile("DejaVu Sans", 400, false);
    EXPECT_NE(std::string::npos, sans.find("DejaVuSans.ttf")) << sans;
    EXPECT_NE(std::string::npos, LmSystemFonts::FindFontFile("DejaVu Sans", 700, false).find("DejaVuSans-Bold.ttf"));
    EXPECT_NE(std::string::npos, LmSystemFonts::FindFontFile("DejaVu Sans", 400, true).find("Oblique"));
    EXPECT_FALSE(LmSystemFonts::FindFontFile("sans-serif", 400, false).empty());
    EXPECT_TRUE(LmSystemFonts::FindFontFile(nullptr, 400, false).empty());
    EXPECT_EQ(0, LmSystemFamilies::Collect(nullptr));

    const uint32_t list = LmLocaleListRegistry::registerLocaleList("en-US,fr-FR");
    EXPECT_EQ(list, LmLocaleListRegistry::registerLocaleList(" en-US , fr-FR "));
    EXPECT_EQ(list, LmLocaleListRegistry::registerLocaleList("en-US fr-FR"));
    EXPECT_NE(list, LmLocaleListRegistry::registerLocaleList("fr-FR,en-US"));  // order counts
    EXPECT_EQ((std::vector<std::string>{"en-US", "fr-FR"}), LmLocaleListRegistry::getLocales(list));

    for (const char* none : {(const char*)nullptr, "", " , ,"})
        EXPECT_EQ(0u, LmLocaleListRegistry::registerLocaleList(none));
    EXPECT_TRUE(LmLocaleListRegistry::getLocales(0).empty());
    EXPECT_TRUE(LmLocaleListRegistry::getLocales(0xFFFFFFF0u).empty());
}

// Plain advances, positions and whole-pixel bounds are pinned by the goldens.
TEST(PlatformLayout, ScaleXSpacingContextRangeFeaturesAndSurrogates)
{
    LmLayout hello = layoutOf(u"Hello", paintOf(48.0f));
    // The advance scales with scale X; letter spacing adds size x spacing per character, half
    // before and half after each.
    LmPaint wide = paintOf(48.0f);
    wide.setTextScaleX(1.5f);
    EXPECT_NEAR(1.5f * hello.getAdvance(), layoutOf(u"Hello", wide).getAdvance(), 0.01f);
    LmPaint spaced = paintOf(48.0f);
    spaced.setLetterSpacing(0.25f);
    LmLayout sp = layoutOf(u"Hello", spaced);
    EXPECT_NEAR(hello.getAdvance() + 5 * 12.0f, sp.getAdvance(), 0.01f);
    EXPECT_NEAR(6.0f, sp.getX(0), 0.001f);

    auto tf = sansWithCjk();
    std::vector<uint16_t> text = utf16(u"ab\ncd ef");
    const size_t n = text.size();
    auto layout = [&](size_t start, size_t count, size_t contextStart, size_t contextCount,
                      const LmTypeface* typeface, const uint16_t* units) {
        return LmLayoutUtils::doLayout(paintOf(30.0f), 2, typeface, units, n, start, count, contextStart, contextCount);
    };
    // Shaping "cd" out of its paragraph gives the same glyphs as shaping it alone.
    LmLayout part = layout(3, 2, 2, 6, tf.get(), text.data());
    LmLayout alone = layoutOf(u"cd", paintOf(30.0f));
    EXPECT_EQ(glyphIds(alone), glyphIds(part));
    EXPECT_FLOAT_EQ(alone.getAdvance(), part.getAdvance());

    // Ranges outside the buffer, empty ranges and bad sizes give an empty layout.
    EXPECT_EQ(0u, layout(n, 1, 0, n, tf.get(), text.data()).nGlyphs());
    EXPECT_EQ(0u, layout(2, (size_t)-1, 0, n, tf.get(), text.data()).nGlyphs());
    EXPECT_EQ(0u, layout(0, 0, 0, n, tf.get(), text.data()).nGlyphs());
    EXPECT_EQ(0u, layout(0, 2, 0, n, nullptr, text.data()).nGlyphs());
    EXPECT_EQ(0u, layout(0, 2, 0, n, tf.get(), nullptr).nGlyphs());
    // A context that does not hold the range is replaced by the range.
    EXPECT_EQ(2u, layout(3, 2, 5, 100, tf.get(), text.data()).nGlyphs());
    for (float bad : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN(), 1e30f}) {
        LmLayout l = layoutOf(u"abc", paintOf(bad));
        EXPECT_EQ(0u, l.nGlyphs());
        EXPECT_EQ(0.0f, l.getAdvance());
    }

    // "fi" is one ligature glyph by default and two glyphs with the feature off.
    EXPECT_EQ(1u, layoutOf(u"fi", paintOf(30.0f)).nGlyphs());
    LmPaint noLiga = paintOf(30.0f);
    noLiga.setFontFeatureSettings("'liga' 0, 'kern' 1,, bogus feature");
    EXPECT_EQ(2u, layoutOf(u"fi", noLiga).nGlyphs());

    // Lone surrogates shape as replacement characters; a proper pair is one character.
    LmLayout l = layoutOf(std::u16string{(char16_t)0xDC05, (char16_t)0xD800, u'a', (char16_t)0xDBFF}, paintOf(20.0f));
    EXPECT_EQ(4u, l.nGlyphs());
    EXPECT_GT(l.getAdvance(), 0.0f);
    EXPECT_EQ(1u, layoutOf(std::u16string{(char16_t)0xD83D, (char16_t)0xDE00}, paintOf(20.0f)).nGlyphs());
}

// Per-glyph fallback itself: the font-run test and the end-to-end script coverage.
TEST(PlatformLayout, AMarkStaysWithItsBaseAndRightToLeftTextIsShapedRightToLeft)
{
    // e + combining acute in the Latin font, a Han character and its variation selector in the
    // fallback font.
    LmLayout l = layoutOf(u"e\u0301\u4E2D\uFE00", paintOf(30.0f));
    ASSERT_GE(l.nGlyphs(), 2u);
    EXPECT_EQ(loadFont(kSansPath).get(), l.getFont(0));
    EXPECT_EQ(loadFont(kCjkPath).get(), l.getFont(l.nGlyphs() - 1));

    // Hebrew alef bet gimel: in visual order the last letter comes first.
    LmLayout hebrew = layoutOf(u"\u05D0\u05D1\u05D2", paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR);
    ASSERT_EQ(sansIds(u"\u05D2\u05D1\u05D0"), glyphIds(hebrew));
    EXPECT_LT(hebrew.getX(0), hebrew.getX(2));

    // Arabic beh beh beh: joined forms, not the isolated ones, laid out right to left.
    LmLayout arabic = layoutOf(u"\u0628\u0628\u0628", paintOf(30.0f), LmLayoutUtils::kBidiDefaultRTL);
    ASSERT_EQ(3u, arabic.nGlyphs());
    const uint32_t isolated = loadFont(kSansPath)->GetGlyphId(0x0628);
    EXPECT_NE(isolated, arabic.getGlyphId(0));
    EXPECT_NE(isolated, arabic.getGlyphId(1));
    EXPECT_NE(arabic.getGlyphId(0), arabic.getGlyphId(2));  // final form left, initial form right

    // Mixed: in a left-to-right paragraph the Latin word comes first, the Hebrew word is
    // reversed after it; in a right-to-left paragraph the Hebrew word comes first.
    const std::u16string mixed = u"ab \u05D0\u05D1";
    EXPECT_EQ(sansIds(u"ab \u05D1\u05D0"), glyphIds(layoutOf(mixed, paintOf(30.0f), LmLayoutUtils::kBidiLTR)));
    EXPECT_EQ(sansIds(u"\u05D1\u05D0 ab"), glyphIds(layoutOf(mixed, paintOf(30.0f), LmLayoutUtils::kBidiRTL)));
    // Forced left to right keeps logical order even for Hebrew.
    EXPECT_EQ(sansIds(u"\u05D0\u05D1"),
              glyphIds(layoutOf(u"\u05D0\u05D1", paintOf(30.0f), LmLayoutUtils::kBidiForceLTR)));
    // Neutral text in a default-RTL paragraph is right to left.
    EXPECT_EQ(sansIds(u"2 1"), glyphIds(layoutOf(u"1 2", paintOf(30.0f), LmLayoutUtils::kBidiDefaultRTL)));
}

TEST(PlatformLayout, ForFontRunSplitsByFontAppliesFakeryAndRestoresThePaint)
{
    // Regular-only families asked for bold italic: every run is faked.
    auto tf = LmTypeface::createFromFamilies({familyOf(kSansPath), familyOf(kCjkPath)}, 700, true);
    LmPaint paint = paintOf(30.0f);
    paint.setTextSkewX(-0.1f);
    LmLayout l = layoutOf(u"a\u4E2Db", paint, LmLayoutUtils::kBidiDefaultLTR, tf.get());
    ASSERT_EQ(3u, l.nGlyphs());
    EXPECT_TRUE(l.getFakery(0).fakeBold);
    EXPECT_TRUE(l.getFakery(1).fakeItalic);

    // The runs forFontRun hands out, with the paint state seen inside each.
    using Run = std::tuple<unsigned, unsigned, LmPlatformFont*, float, bool>;  // with skew and embolden
    std::vector<Run> runs;
    auto record = [&](unsigned start, unsigned end) {
        runs.emplace_back(start, end, paint.getRunFont().get(), paint.getTextSkewX(), paint.isEmbolden());
    };
    LmLayoutUtils::forFontRun(l, &paint, record);
    LmPlatformFont* const sans = loadFont(kSansPath).get();
    EXPECT_EQ((std::vector<Run>{{0, 1, sans, -0.35f, true}, {1, 2, loadFont(kCjkPath).get(), -0.35f, true},
                                {2, 3, sans, -0.35f, true}}),
              runs);
    EXPECT_FLOAT_EQ(-0.1f, paint.getTextSkewX());
    EXPECT_FALSE(paint.isEmbolden());

    // The synthetic styles widen the ink compared with the plain face; advances are not faked.
    LmLayout p = layoutOf(u"H", paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR, sansOnly());
    LmLayout f = layoutOf(u"H", paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR, tf.get());
    EXPECT_GT(f.getBounds().right - f.getBounds().left, p.getBounds().right - p.getBounds().left + 3.0f);
    EXPECT_FLOAT_EQ(p.getAdvance(), f.getAdvance());

    LmLayout empty;
    LmLayoutUtils::forFontRun(empty, &paint, record);
    EXPECT_EQ(3u, runs.size());
}
