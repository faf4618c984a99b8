#include "text/PlatformTestFonts.h"

#include "platform/LmAlphaCanvas.h"
#include "platform/LmLocaleListRegistry.h"
#include "platform/LmPaint.h"
#include "platform/LmSystemFonts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

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

LmGlyphStyle styleOf(float size)
{
    LmGlyphStyle s;
    s.size = size;
    return s;
}

} // namespace

TEST(PlatformFont, LoadsFaceWithStyleAndMetrics)
{
    auto sans = loadFont(kSansPath);
    auto bold = loadFont(kSansBoldPath);
    auto oblique = loadFont(kSansObliquePath);
    ASSERT_TRUE(sans && bold && oblique);
    EXPECT_EQ(400, sans->GetNaturalWeight());
    EXPECT_FALSE(sans->IsNaturalItalic());
    EXPECT_EQ(700, bold->GetNaturalWeight());
    EXPECT_TRUE(oblique->IsNaturalItalic());
    EXPECT_EQ(2048, sans->GetUnitsPerEm());

    EXPECT_TRUE(sans->HasGlyph('A'));
    EXPECT_TRUE(sans->HasGlyph(0x05D0));   // Hebrew alef
    EXPECT_TRUE(sans->HasGlyph(0x0628));   // Arabic beh
    EXPECT_FALSE(sans->HasGlyph(0x4E2D));  // a Han ideograph lives in the fallback font
    EXPECT_TRUE(loadFont(kCjkPath)->HasGlyph(0x4E2D));

    // DejaVu Sans: ascender 1901, descender -483 of 2048 units.
    EXPECT_FLOAT_EQ(-1901.0f * 48.0f / 2048.0f, sans->GetAscent(48.0f));
    EXPECT_FLOAT_EQ(483.0f * 48.0f / 2048.0f, sans->GetDescent(48.0f));
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

    std::mt19937 rng(7);
    std::vector<unsigned char> noise(20000);
    for (auto& b : noise) b = (unsigned char)rng();
    EXPECT_EQ(nullptr, LmPlatformFont::MakeFromData(noise.data(), noise.size(), 0));

    // Truncated or damaged fonts may open (tables are read lazily) but must never crash
    // when measured or drawn.
    std::vector<unsigned char> mask;
    for (size_t cut : {good.size() / 2, good.size() / 8, (size_t)2048}) {
        std::vector<unsigned char> part(good.begin(), good.begin() + cut);
        auto font = LmPlatformFont::MakeFromData(part.data(), part.size(), 0);
        if (!font) continue;
        LmGlyphBox box;
        for (uint32_t g = 0; g < 200; g += 7) {
            font->GetGlyphBounds(g, styleOf(40.0f), &box);
            inkOf(*font, g, styleOf(40.0f), &mask);
        }
    }
    std::vector<unsigned char> damaged = good;
    for (size_t i = 600; i < damaged.size(); i += 97) damaged[i] ^= (unsigned char)rng();
    auto font = LmPlatformFont::MakeFromData(damaged.data(), damaged.size(), 0);
    if (font) {
        for (uint32_t g = 0; g < 400; g += 3) inkOf(*font, g, styleOf(40.0f), &mask);
    }
}

TEST(PlatformFont, GlyphBoundsHoldTheDrawnInk)
{
    auto sans = loadFont(kSansPath);
    const uint32_t g = sans->GetGlyphId('g');
    LmGlyphBox box;
    ASSERT_TRUE(sans->GetGlyphBounds(g, styleOf(40.0f), &box));
    EXPECT_LT(box.top, 0.0f);     // rises above the baseline
    EXPECT_GT(box.bottom, 0.0f);  // and descends below it

    std::vector<unsigned char> mask;
    const float x = 8.0f, y = 48.0f;
    ASSERT_GT(inkOf(*sans, g, styleOf(40.0f), &mask, 64, 64, x, y), 0);
    for (int row = 0; row < 64; row++) {
        for (int col = 0; col < 64; col++) {
            if (!mask[row * 64 + col]) continue;
            EXPECT_GE(col + 1, x + box.left);
            EXPECT_LE(col, x + box.right);
            EXPECT_GE(row + 1, y + box.top);
            EXPECT_LE(row, y + box.bottom);
        }
    }
    // A space has no outline and no box.
    EXPECT_FALSE(sans->GetGlyphBounds(sans->GetGlyphId(' '), styleOf(40.0f), &box));
    EXPECT_TRUE(box.empty());
    // Sizes that are not positive and finite draw and measure nothing.
    for (float bad : {0.0f, -3.0f, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 1e9f}) {
        EXPECT_FALSE(sans->GetGlyphBounds(g, styleOf(bad), &box));
        EXPECT_EQ(0, inkOf(*sans, g, styleOf(bad), &mask));
    }
}

TEST(PlatformFont, EmboldenSkewScaleAndAliasingChangeCoverage)
{
    auto sans = loadFont(kSansPath);
    const uint32_t g = sans->GetGlyphId('H');
    std::vector<unsigned char> plain, other;
    const long base = inkOf(*sans, g, styleOf(40.0f), &plain);

    LmGlyphStyle bold = styleOf(40.0f);
    bold.embolden = true;
    EXPECT_GT(inkOf(*sans, g, bold, &other), base + base / 10);

    // Skew keeps the area of the glyph but leans it: the top row moves right.
    LmGlyphStyle skew = styleOf(40.0f);
    skew.skewX = -0.25f;
    LmGlyphBox upright, leaning;
    sans->GetGlyphBounds(g, styleOf(40.0f), &upright);
    sans->GetGlyphBounds(g, skew, &leaning);
    EXPECT_NEAR(upright.right - upright.top * 0.25f, leaning.right, 0.05f);
    EXPECT_NEAR(upright.left, leaning.left, 0.05f);  // the bottom sits on the baseline

    LmGlyphStyle wide = styleOf(40.0f);
    wide.scaleX = 2.0f;
    sans->GetGlyphBounds(g, wide, &leaning);
    EXPECT_NEAR(2.0f * (upright.right - upright.left), leaning.right - leaning.left, 0.05f);

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
    // Half of the glyph hangs off every edge in turn; only the part inside is drawn.
    EXPECT_GT(inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, -20.0f, 40.0f), 0);
    EXPECT_GT(inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, 10.0f, 10.0f), 0);
    EXPECT_EQ(0, inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, 500.0f, 40.0f));
    EXPECT_EQ(0, inkOf(*sans, sans->GetGlyphId('W'), styleOf(60.0f), &mask, 32, 32, 1e30f, 40.0f));
    EXPECT_EQ(0, inkOf(*sans, 0xFFFFFFu, styleOf(60.0f), &mask));  // no such glyph
    LmAlphaCanvas empty(nullptr, 10, 10);
    sans->DrawGlyph(sans->GetGlyphId('W'), styleOf(60.0f), 0.0f, 0.0f, &empty);
    sans->DrawGlyph(sans->GetGlyphId('W'), styleOf(60.0f), 0.0f, 0.0f, nullptr);
}

TEST(PlatformTypeface, ChoosesStyleAndSynthesisesWhatIsMissing)
{
    auto sans = loadFont(kSansPath);
    auto bold = loadFont(kSansBoldPath);
    auto oblique = loadFont(kSansObliquePath);
    std::vector<LmStyledFont> members{LmStyledFont(sans, 400, false), LmStyledFont(bold, 700, false),
                                      LmStyledFont(oblique, 400, true)};
    auto full = std::make_shared<LmPlatformFamily>(0, 0, members, false);

    auto tf = LmTypeface::createFromFamilies({full}, 700, false);
    LmTypeface::FontChoice c = tf->chooseFont('A', 0);
    EXPECT_EQ(bold, c.font);
    EXPECT_FALSE(c.fakery.fakeBold);

    tf = LmTypeface::createFromFamilies({full}, 400, true);
    c = tf->chooseFont('A', 0);
    EXPECT_EQ(oblique, c.font);
    EXPECT_FALSE(c.fakery.fakeItalic);

    // A family with only the regular face: bold and italic are synthesised.
    tf = LmTypeface::createFromFamilies({familyOf(kSansPath)}, 700, true);
    c = tf->chooseFont('A', 0);
    EXPECT_EQ(sans, c.font);
    EXPECT_TRUE(c.fakery.fakeBold);
    EXPECT_TRUE(c.fakery.fakeItalic);

    // Bold is synthesised only for a bold request at least 300 heavier than the face.
    EXPECT_FALSE(LmTypeface::createFromFamilies({familyOf(kSansPath)}, 500, false)->chooseFont('A', 0).fakery.fakeBold);
    EXPECT_FALSE(LmTypeface::createFromFamilies({familyOf(kSansPath, 500)}, 700, false)->chooseFont('A', 0).fakery.fakeBold);
    EXPECT_TRUE(LmTypeface::createFromFamilies({familyOf(kSansPath, 300)}, 600, false)->chooseFont('A', 0).fakery.fakeBold);
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
    auto elegantOnly = std::make_shared<LmPlatformFamily>(0, 2, cjk, false);
    auto compactOnly = std::make_shared<LmPlatformFamily>(0, 1, cjk, false);
    tf = LmTypeface::createFromFamilies({familyOf(kSansPath), compactOnly}, 400, false);
    EXPECT_EQ(loadFont(kSansPath), tf->chooseFont(0x4E2D, 2).font);
    EXPECT_EQ(loadFont(kCjkPath), tf->chooseFont(0x4E2D, 1).font);
    tf = LmTypeface::createFromFamilies({familyOf(kSansPath), elegantOnly}, 400, false);
    EXPECT_EQ(loadFont(kCjkPath), tf->chooseFont(0x4E2D, 0).font);

    // Nothing usable: no typeface.
    EXPECT_EQ(nullptr, LmTypeface::createFromFamilies({}, 400, false));
    EXPECT_EQ(nullptr, LmTypeface::createFromFamilies({nullptr}, 400, false));
    EXPECT_EQ(nullptr,
              LmTypeface::createFromFamilies({std::make_shared<LmPlatformFamily>(0, 0, std::vector<LmStyledFont>{}, false)},
                                             400, false));
}

TEST(PlatformFamily, ClosestMatchPrefersSlantThenNearestWeight)
{
    std::vector<LmStyledFont> members{LmStyledFont(loadFont(kSansPath), 300, false),
                                      LmStyledFont(loadFont(kSansBoldPath), 500, false),
                                      LmStyledFont(loadFont(kSansObliquePath), 900, true)};
    LmPlatformFamily family(0, 0, members, false);
    EXPECT_EQ(900, family.getClosestMatch(400, true)->weight);  // slant outranks weight
    EXPECT_EQ(300, family.getClosestMatch(400, false)->weight); // tie: a regular request leans lighter
    EXPECT_EQ(500, family.getClosestMatch(700, false)->weight);
    std::vector<LmStyledFont> tie{LmStyledFont(loadFont(kSansPath), 500, false),
                                  LmStyledFont(loadFont(kSansBoldPath), 700, false)};
    EXPECT_EQ(700, LmPlatformFamily(0, 0, tie, false).getClosestMatch(600, false)->weight);
    EXPECT_EQ(nullptr, LmPlatformFamily(0, 0, {}, false).getClosestMatch(400, false));
    // Members without a font are dropped.
    EXPECT_EQ(0u, LmPlatformFamily(0, 0, {LmStyledFont(nullptr, 400, false)}, false).getNumFonts());
}

TEST(PlatformLocaleList, SameListSameIdAcrossSeparators)
{
    const uint32_t ja = LmLocaleListRegistry::registerLocaleList("ja");
    EXPECT_NE(0u, ja);
    EXPECT_EQ(ja, LmLocaleListRegistry::registerLocaleList("ja"));
    EXPECT_NE(ja, LmLocaleListRegistry::registerLocaleList("ko"));
    const uint32_t list = LmLocaleListRegistry::registerLocaleList("en-US,fr-FR");
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
    EXPECT_TRUE(paint.isAntiAlias());
    EXPECT_FALSE(paint.isEmbolden());
    paint.setJavaFlags(LmPaint::kFakeBoldTextFlag);
    EXPECT_TRUE(paint.isEmbolden());
    EXPECT_FALSE(paint.isAntiAlias());
    EXPECT_FALSE(paint.glyphStyle().antiAlias);
    paint.setJavaFlags(LmPaint::kAntiAliasFlag | LmPaint::kSubpixelTextFlag);
    EXPECT_FALSE(paint.isEmbolden());
    EXPECT_EQ(0x81u, paint.getJavaFlags());
}

TEST(PlatformSystemFonts, FindsFilesAndFamiliesThroughFontconfig)
{
    std::string sans = LmSystemFonts::FindFontFile("DejaVu Sans", 400, false);
    EXPECT_NE(std::string::npos, sans.find("DejaVuSans.ttf")) << sans;
    EXPECT_NE(std::string::npos, LmSystemFonts::FindFontFile("DejaVu Sans", 700, false).find("DejaVuSans-Bold.ttf"));
    EXPECT_NE(std::string::npos, LmSystemFonts::FindFontFile("DejaVu Sans", 400, true).find("Oblique"));
    EXPECT_FALSE(LmSystemFonts::FindFontFile("sans-serif", 400, false).empty());
    EXPECT_TRUE(LmSystemFonts::FindFontFile(nullptr, 400, false).empty());
    EXPECT_EQ(0, LmSystemFonts::CollectFamilies(nullptr));
}
