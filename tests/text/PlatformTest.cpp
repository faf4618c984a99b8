#include "text/TextTestSupport.h"

#include "platform/LmCanvas.h"
#include "platform/LmLocaleListRegistry.h"
#include "platform/LmSystemFonts.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

// An RGBA raster with its canvas; pixels read back as 0xRRGGBBAA (R, G, B, A in memory).
struct Raster {
    Raster(int w, int h) : w(w), px((size_t)w * h * 4, 0), canvas(px.data(), w, h) {}
    uint32_t rgba(int x, int y) const
    {
        const unsigned char* p = &px[((size_t)y * w + x) * 4];
        return (uint32_t)p[0] << 24 | p[1] << 16 | p[2] << 8 | p[3];
    }
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
    long sum = 0;
    for (unsigned char c : *mask) sum += c;
    return sum;
}

LmGlyphStyle styleOf(float size) { return paintOf(size).glyphStyle(); }

} // namespace

TEST(PlatformCanvas, RectanglesFillThePixelsWhoseCentresLieInsideTheClip)
{
    Raster r(8, 6);
    std::fill(r.px.begin(), r.px.end(), 0x5A);
    r.canvas.clear();
    EXPECT_TRUE(r.blank());
    // Fractional edges: a pixel is filled when its centre lies inside (the render's boxes are whole).
    r.canvas.drawRect(4.4f, 0.0f, 6.6f, 1.0f, 0xFF102030u);
    EXPECT_EQ("....###.", r.row(0));
    EXPECT_EQ(0x102030FFu, r.rgba(4, 0));

    r.canvas.clear();
    r.canvas.clipRect(2.0f, 3.0f, 8.0f, 9.0f);
    r.canvas.clipRect(0.0f, 0.0f, 6.0f, 100.0f);  // intersected
    r.canvas.drawRect(-100.0f, -100.0f, 100.0f, 100.0f, 0xFFFFFFFFu);
    EXPECT_EQ("..####..", r.row(3));
    EXPECT_EQ("........", r.row(2));

    // A NaN edge empties the clip; huge and infinite edges saturate; a NaN rectangle draws nothing.
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    Raster n(4, 2), h(4, 2);
    n.canvas.clipRect(nan, 0, 4, 4);
    n.canvas.drawRect(0, 0, 4, 4, 0xFFFFFFFFu);
    EXPECT_TRUE(n.blank());
    h.canvas.clipRect(-1e30f, -1e30f, 1e30f, 1e30f);
    h.canvas.drawRect(-1e30f, 0, inf, 1, 0xFFFFFFFFu);
    h.canvas.drawRect(0, 0, nan, 4, 0xFFFFFFFFu);
    EXPECT_EQ("####", h.row(0));
    EXPECT_EQ("....", h.row(1));
}

// The render draws its composite whole at (0, 0); other offsets must only stay inside.
TEST(PlatformCanvas, ImagesAreClippedAndDegenerateOnesDrawNothing)
{
    const std::vector<unsigned char> img(3 * 2 * 4, 0xFF);
    Raster r(4, 4), e(4, 4);
    r.canvas.drawImage(img.data(), 3, 2, 2, 3);  // hangs off the right and bottom edges
    EXPECT_EQ("..##", r.row(3));
    e.canvas.drawImage(nullptr, 3, 2, 0, 0);
    e.canvas.drawImage(img.data(), -3, 2, 0, 0);
    e.canvas.drawImage(img.data(), 3, 2, 2147483647, 0);
    e.canvas.drawImage(img.data(), 3, 2, -2147483647 - 1, 0);
    EXPECT_TRUE(e.blank());
    LmCanvas none(nullptr, 5, 5);
    none.clear();
    none.drawRect(0, 0, 5, 5, 0xFFFFFFFFu);
    EXPECT_EQ(0, none.width());
}

TEST(PlatformFont, LoadsFaceWithStyleAndMetrics)
{
    auto sans = loadFont(kSansPath);
    auto oblique = loadFont(kSansObliquePath);
    ASSERT_TRUE(sans && oblique);
    EXPECT_FALSE(sans->IsNaturalItalic());
    EXPECT_TRUE(oblique->IsNaturalItalic());
    // The metrics' values are pinned by the tool's goldens, which place lines by them.
    EXPECT_EQ(0.0f, sans->GetAscent(std::numeric_limits<float>::quiet_NaN()));
}

TEST(PlatformFont, RejectsUnusableBytesWithoutCrashing)
{
    std::vector<unsigned char> good = readFileBytes(kSansPath);
    ASSERT_GT(good.size(), 1000u);
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(nullptr, 100, 0));
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), 0, 0));
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), good.size(), 1));   // index past the file
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), good.size(), -1));  // a query, not an index
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), good.size(), 0x10000));
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(good.data(), 11, 0));
    // Random bytes: font manager test; damaged fonts that open: end-to-end bad-font test.
}

// Where the ink lies within its box is pinned by the goldens.
TEST(PlatformFont, GlyphBoundsOnlyForOutlinesAtUsableSizes)
{
    auto sans = loadFont(kSansPath);
    const uint32_t g = sans->GetGlyphId('g');
    LmGlyphBox box;
    ASSERT_TRUE(sans->GetGlyphBounds(g, styleOf(40.0f), &box));
    EXPECT_LT(box.top, 0.0f);     // rises above the baseline
    EXPECT_GT(box.bottom, 0.0f);  // and descends below it
    std::vector<unsigned char> mask;
    // A space has no outline and no box.
    EXPECT_FALSE(sans->GetGlyphBounds(sans->GetGlyphId(' '), styleOf(40.0f), &box));
    EXPECT_TRUE(box.empty());
    // Sizes that are not positive and finite draw and measure nothing.
    for (float bad : {0.0f, -3.0f, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 1e9f}) {
        EXPECT_FALSE(sans->GetGlyphBounds(g, styleOf(bad), &box));
        EXPECT_EQ(0, inkOf(*sans, g, styleOf(bad), &mask));
    }
}

TEST(PlatformFont, EmboldenAndAliasingChangeCoverage)
{
    auto sans = loadFont(kSansPath);
    const uint32_t g = sans->GetGlyphId('H');
    std::vector<unsigned char> plain, other;
    const long base = inkOf(*sans, g, styleOf(40.0f), &plain);

    LmGlyphStyle bold = styleOf(40.0f);
    bold.embolden = true;
    EXPECT_GT(inkOf(*sans, g, bold, &other), base + base / 10);

    LmGlyphStyle aliased = styleOf(40.0f);
    aliased.antiAlias = false;
    inkOf(*sans, sans->GetGlyphId('O'), aliased, &other);
    EXPECT_TRUE(std::all_of(other.begin(), other.end(), [](unsigned char c) { return c == 0 || c == 255; }));

    // Drawing again merges by maximum: the same glyph twice changes nothing.
    std::vector<unsigned char> twice = plain;
    LmAlphaCanvas canvas(twice.data(), 64, 64);
    sans->DrawGlyph(g, styleOf(40.0f), 8.0f, 48.0f, &canvas);
    EXPECT_EQ(plain, twice);
}

TEST(PlatformFont, DrawingClipsToTheCanvas)
{
    auto sans = loadFont(kSansPath);
    std::vector<unsigned char> mask;
    // Half of the glyph hangs off the left edge; only the part inside is drawn.
    EXPECT_GT(inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, -20.0f, 40.0f), 0);
    EXPECT_EQ(0, inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, 500.0f, 40.0f));
    EXPECT_EQ(0, inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, 1e30f, 40.0f));
    EXPECT_EQ(0, inkOf(*sans, 0xFFFFFFu, styleOf(60.0f), &mask));  // no such glyph
    LmAlphaCanvas empty(nullptr, 10, 10);
    sans->DrawGlyph(sans->GetGlyphId('W'), styleOf(60.0f), 0.0f, 0.0f, &empty);
    sans->DrawGlyph(sans->GetGlyphId('W'), styleOf(60.0f), 0.0f, 0.0f, nullptr);
}

TEST(PlatformTypeface, ChoosesStyleAndSynthesisesWhatIsMissing)
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
}

TEST(PlatformTypeface, FallsBackPerCharacterThroughTheFamilyList)
{
    auto tf = sansWithCjk();
    ASSERT_TRUE(tf);
    EXPECT_EQ(loadFont(kSansPath), tf->chooseFont('A', 0).font);
    EXPECT_EQ(loadFont(kCjkPath), tf->chooseFont(0x4E2D, 0).font);
    // Nobody has it: the first family answers (with its missing-glyph box).
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

    // Nothing usable: no typeface.
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
    // Members without a font are dropped.
    EXPECT_EQ(0u, LmPlatformFamily(0, 0, {LmStyledFont(nullptr, 400, false)}).getNumFonts());
}

TEST(PlatformLocaleList, SameListSameIdAcrossSeparators)
{
    const uint32_t list = LmLocaleListRegistry::registerLocaleList("en-US,fr-FR");
    EXPECT_NE(0u, list);
    EXPECT_EQ(list, LmLocaleListRegistry::registerLocaleList(" en-US , fr-FR "));
    EXPECT_EQ(list, LmLocaleListRegistry::registerLocaleList("en-US fr-FR"));
    EXPECT_NE(list, LmLocaleListRegistry::registerLocaleList("fr-FR,en-US"));  // order counts
    EXPECT_EQ((std::vector<std::string>{"en-US", "fr-FR"}), LmLocaleListRegistry::getLocales(list));

    EXPECT_EQ(0u, LmLocaleListRegistry::registerLocaleList(nullptr));
    EXPECT_EQ(0u, LmLocaleListRegistry::registerLocaleList(""));
    EXPECT_EQ(0u, LmLocaleListRegistry::registerLocaleList(" , ,"));
    EXPECT_TRUE(LmLocaleListRegistry::getLocales(0).empty());
    EXPECT_TRUE(LmLocaleListRegistry::getLocales(0xFFFFFFF0u).empty());
}

TEST(PlatformPaint, FlagsDriveEmboldenAndAntiAlias)
{
    LmPaint paint;
    paint.setJavaFlags(LmPaint::kFakeBoldTextFlag);
    EXPECT_TRUE(paint.glyphStyle().embolden);
    EXPECT_FALSE(paint.glyphStyle().antiAlias);
    paint.setJavaFlags(LmPaint::kAntiAliasFlag | 0x80u);  // other bits are not acted on
    EXPECT_FALSE(paint.isEmbolden());
    EXPECT_TRUE(paint.glyphStyle().antiAlias);
}

TEST(PlatformSystemFonts, FindsFilesAndFamiliesThroughFontconfig)
{
    std::string sans = LmSystemFonts::FindFontFile("DejaVu Sans", 400, false);
    EXPECT_NE(std::string::npos, sans.find("DejaVuSans.ttf")) << sans;
    EXPECT_NE(std::string::npos, LmSystemFonts::FindFontFile("DejaVu Sans", 700, false).find("DejaVuSans-Bold.ttf"));
    EXPECT_NE(std::string::npos, LmSystemFonts::FindFontFile("DejaVu Sans", 400, true).find("Oblique"));
    EXPECT_FALSE(LmSystemFonts::FindFontFile("sans-serif", 400, false).empty());
    EXPECT_TRUE(LmSystemFonts::FindFontFile(nullptr, 400, false).empty());
    EXPECT_EQ(0, LmSystemFamilies::Collect(nullptr));
}
