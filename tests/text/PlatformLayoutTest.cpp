#include "text/TextTestSupport.h"

#include <limits>
#include <utility>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

LmLayout layoutOf(const std::u16string& s, const LmPaint& paint, int bidi = LmLayoutUtils::kBidiDefaultLTR,
                  const LmTypeface* tf = nullptr)
{
    static auto typeface = sansWithCjk();
    std::vector<uint16_t> text = utf16(s);
    return LmLayoutUtils::doLayout(paint, bidi, tf ? tf : typeface.get(), text.data(), text.size(), 0, text.size(), 0,
                                   text.size());
}

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

// Plain advances, positions and whole-pixel bounds are pinned by the goldens.
TEST(PlatformLayout, ScaleXAndLetterSpacingWidenTheAdvance)
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
}

TEST(PlatformLayout, ContextRangeFeaturesAndSurrogates)
{
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
TEST(PlatformLayout, AMarkStaysWithItsBase)
{
    // e + combining acute in the Latin font, a Han character and its variation selector in the
    // fallback font.
    LmLayout l = layoutOf(u"e\u0301\u4E2D\uFE00", paintOf(30.0f));
    ASSERT_GE(l.nGlyphs(), 2u);
    EXPECT_EQ(loadFont(kSansPath).get(), l.getFont(0));
    EXPECT_EQ(loadFont(kCjkPath).get(), l.getFont(l.nGlyphs() - 1));
}

TEST(PlatformLayout, RightToLeftTextIsShapedRightToLeft)
{
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
    EXPECT_EQ(3u, layoutOf(u"1 2", paintOf(30.0f), LmLayoutUtils::kBidiDefaultRTL).nGlyphs());
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
    std::vector<std::pair<unsigned, unsigned>> runs;
    std::vector<LmPlatformFont*> fonts;
    std::vector<float> skews;
    std::vector<bool> embolden;
    auto record = [&](unsigned start, unsigned end) {
        runs.emplace_back(start, end);
        fonts.push_back(paint.getRunFont().get());
        skews.push_back(paint.getTextSkewX());
        embolden.push_back(paint.isEmbolden());
    };
    LmLayoutUtils::forFontRun(l, &paint, record);
    EXPECT_EQ((std::vector<std::pair<unsigned, unsigned>>{{0, 1}, {1, 2}, {2, 3}}), runs);
    EXPECT_EQ((std::vector<LmPlatformFont*>{loadFont(kSansPath).get(), loadFont(kCjkPath).get(),
                                            loadFont(kSansPath).get()}),
              fonts);
    for (float skew : skews) EXPECT_FLOAT_EQ(-0.35f, skew);
    EXPECT_EQ(std::vector<bool>(3, true), embolden);
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
