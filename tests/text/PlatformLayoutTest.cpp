#include "text/PlatformTestFonts.h"

#include "platform/LmAlphaCanvas.h"
#include "platform/LmLayoutUtils.h"
#include "platform/LmPaint.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

LmPaint paintOf(float size)
{
    LmPaint paint;
    paint.setTextSize(size);
    return paint;
}

LmLayout layoutOf(const std::u16string& s, const LmPaint& paint, int bidi = LmLayoutUtils::kBidiDefaultLTR,
                  const LmTypeface* tf = nullptr)
{
    static auto typeface = sansWithCjk();
    std::vector<uint16_t> text = utf16(s);
    return LmLayoutUtils::doLayout(paint, bidi, tf ? tf : typeface.get(), text.data(), text.size(), 0, text.size(), 0,
                                   text.size());
}

// Records the runs forFontRun hands out, with the paint state seen inside each.
struct RunRecorder {
    explicit RunRecorder(LmPaint* p) : paint(p) {}
    LmPaint* paint;
    std::vector<std::pair<unsigned, unsigned>> runs;
    std::vector<LmPlatformFont*> fonts;
    std::vector<float> skews;
    std::vector<bool> embolden;
    void operator()(unsigned start, unsigned end)
    {
        runs.emplace_back(start, end);
        fonts.push_back(paint->getRunFont().get());
        skews.push_back(paint->getTextSkewX());
        embolden.push_back(paint->isEmbolden());
    }
};

} // namespace

TEST(PlatformLayout, LatinLineHasAdvancePositionsAndInkBounds)
{
    LmPaint paint = paintOf(48.0f);
    LmLayout hello = layoutOf(u"Hello", paint);
    ASSERT_EQ(5u, hello.nGlyphs());
    auto sans = loadFont(kSansPath);
    EXPECT_EQ(sans->GetGlyphId('H'), hello.getGlyphId(0));
    EXPECT_EQ(sans->GetGlyphId('o'), hello.getGlyphId(4));
    EXPECT_EQ(0.0f, hello.getX(0));
    for (size_t i = 1; i < 5; i++) EXPECT_GT(hello.getX(i), hello.getX(i - 1));
    EXPECT_GT(hello.getAdvance(), hello.getX(4));
    const LmGlyphBox& b = hello.getBounds();
    // Whole pixels; the cap height of 'H' and 'l' rises about 0.73 em above the baseline.
    EXPECT_EQ(std::floor(b.top), b.top);
    EXPECT_EQ(std::ceil(b.right), b.right);
    EXPECT_NEAR(-0.76f * 48.0f, b.top, 2.0f);
    EXPECT_GE(b.bottom, 0.0f);
    EXPECT_LE(b.right, std::ceil(hello.getAdvance()) + 1.0f);

    // The advance scales with size and with scale X; letter spacing adds size x spacing per
    // character, half before and half after each.
    EXPECT_NEAR(2.0f * hello.getAdvance(), layoutOf(u"Hello", paintOf(96.0f)).getAdvance(), 0.01f);
    LmPaint wide = paintOf(48.0f);
    wide.setTextScaleX(1.5f);
    EXPECT_NEAR(1.5f * hello.getAdvance(), layoutOf(u"Hello", wide).getAdvance(), 0.01f);
    LmPaint spaced = paintOf(48.0f);
    spaced.setLetterSpacing(0.25f);
    LmLayout sp = layoutOf(u"Hello", spaced);
    EXPECT_NEAR(hello.getAdvance() + 5 * 12.0f, sp.getAdvance(), 0.01f);
    EXPECT_NEAR(6.0f, sp.getX(0), 0.001f);
}

TEST(PlatformLayout, ContextRangeAndFeatures)
{
    static auto tf = sansWithCjk();
    std::vector<uint16_t> text = utf16(u"ab\ncd ef");
    // Shaping "cd" out of its paragraph gives the same glyphs as shaping it alone.
    LmLayout part = LmLayoutUtils::doLayout(paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR, tf.get(), text.data(),
                                            text.size(), 3, 2, 2, 6);
    LmLayout alone = layoutOf(u"cd", paintOf(30.0f));
    ASSERT_EQ(2u, part.nGlyphs());
    EXPECT_EQ(alone.getGlyphId(0), part.getGlyphId(0));
    EXPECT_FLOAT_EQ(alone.getAdvance(), part.getAdvance());

    // Ranges outside the buffer, empty ranges and bad sizes give an empty layout.
    const size_t n = text.size();
    EXPECT_EQ(0u, LmLayoutUtils::doLayout(paintOf(30.0f), 2, tf.get(), text.data(), n, n, 1, 0, n).nGlyphs());
    EXPECT_EQ(0u, LmLayoutUtils::doLayout(paintOf(30.0f), 2, tf.get(), text.data(), n, 2, (size_t)-1, 0, n).nGlyphs());
    EXPECT_EQ(0u, LmLayoutUtils::doLayout(paintOf(30.0f), 2, tf.get(), text.data(), n, 0, 0, 0, n).nGlyphs());
    EXPECT_EQ(0u, LmLayoutUtils::doLayout(paintOf(30.0f), 2, nullptr, text.data(), n, 0, 2, 0, n).nGlyphs());
    EXPECT_EQ(0u, LmLayoutUtils::doLayout(paintOf(30.0f), 2, tf.get(), nullptr, n, 0, 2, 0, n).nGlyphs());
    // A context that does not hold the range is replaced by the range.
    EXPECT_EQ(2u, LmLayoutUtils::doLayout(paintOf(30.0f), 2, tf.get(), text.data(), n, 3, 2, 5, 100).nGlyphs());
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
}

TEST(PlatformLayout, LoneSurrogatesShapeAsReplacementCharacters)
{
    LmLayout l = layoutOf(std::u16string{(char16_t)0xD800, (char16_t)0xDC00 + 5, u'a', (char16_t)0xDBFF}, paintOf(20.0f));
    EXPECT_GE(l.nGlyphs(), 3u);
    EXPECT_GT(l.getAdvance(), 0.0f);
    // A proper pair is one character.
    EXPECT_EQ(1u, layoutOf(std::u16string{(char16_t)0xD83D, (char16_t)0xDE00}, paintOf(20.0f)).nGlyphs());
}

TEST(PlatformLayout, LatinThenHanFallsBackAndMakesTwoFontRuns)
{
    LmPaint paint = paintOf(40.0f);
    LmLayout l = layoutOf(u"Ab \u4E2D\u6587", paint);
    ASSERT_EQ(5u, l.nGlyphs());
    EXPECT_EQ(loadFont(kSansPath).get(), l.getFont(0));
    EXPECT_EQ(loadFont(kSansPath).get(), l.getFont(2));  // the space stays with the Latin run
    EXPECT_EQ(loadFont(kCjkPath).get(), l.getFont(3));
    EXPECT_EQ(loadFont(kCjkPath)->GetGlyphId(0x4E2D), l.getGlyphId(3));

    RunRecorder rec(&paint);
    LmLayoutUtils::forFontRun(l, &paint, rec);
    ASSERT_EQ(2u, rec.runs.size());
    EXPECT_EQ(std::make_pair(0u, 3u), rec.runs[0]);
    EXPECT_EQ(std::make_pair(3u, 5u), rec.runs[1]);
    EXPECT_EQ(loadFont(kSansPath).get(), rec.fonts[0]);
    EXPECT_EQ(loadFont(kCjkPath).get(), rec.fonts[1]);
}

TEST(PlatformLayout, MarksStayWithTheirBase)
{
    // e + combining acute: both in the Latin font even though the mark alone would fall back
    // nowhere else; a Han character followed by a variation selector stays in one run.
    LmLayout l = layoutOf(u"e\u0301\u4E2D\uFE00", paintOf(30.0f));
    ASSERT_GE(l.nGlyphs(), 2u);
    EXPECT_EQ(loadFont(kSansPath).get(), l.getFont(0));
    EXPECT_EQ(loadFont(kCjkPath).get(), l.getFont(l.nGlyphs() - 1));
}

TEST(PlatformLayout, RightToLeftTextIsShapedRightToLeft)
{
    auto sans = loadFont(kSansPath);
    // Hebrew alef bet gimel: in visual order the last letter comes first.
    LmLayout hebrew = layoutOf(u"\u05D0\u05D1\u05D2", paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR);
    ASSERT_EQ(3u, hebrew.nGlyphs());
    EXPECT_EQ(sans->GetGlyphId(0x05D2), hebrew.getGlyphId(0));
    EXPECT_EQ(sans->GetGlyphId(0x05D0), hebrew.getGlyphId(2));
    EXPECT_LT(hebrew.getX(0), hebrew.getX(2));

    // Arabic beh beh beh: joined forms, not the isolated ones, laid out right to left.
    LmLayout arabic = layoutOf(u"\u0628\u0628\u0628", paintOf(30.0f), LmLayoutUtils::kBidiDefaultRTL);
    ASSERT_EQ(3u, arabic.nGlyphs());
    const uint32_t isolated = sans->GetGlyphId(0x0628);
    EXPECT_NE(isolated, arabic.getGlyphId(0));
    EXPECT_NE(isolated, arabic.getGlyphId(1));
    EXPECT_NE(arabic.getGlyphId(0), arabic.getGlyphId(2));  // final form left, initial form right

    // Mixed: in a left-to-right paragraph the Latin word comes first, the Hebrew word is
    // reversed after it; in a right-to-left paragraph the Hebrew word comes first.
    LmLayout ltr = layoutOf(u"ab \u05D0\u05D1", paintOf(30.0f), LmLayoutUtils::kBidiLTR);
    ASSERT_EQ(5u, ltr.nGlyphs());
    EXPECT_EQ(sans->GetGlyphId('a'), ltr.getGlyphId(0));
    EXPECT_EQ(sans->GetGlyphId(0x05D1), ltr.getGlyphId(3));
    LmLayout rtl = layoutOf(u"ab \u05D0\u05D1", paintOf(30.0f), LmLayoutUtils::kBidiRTL);
    EXPECT_EQ(sans->GetGlyphId(0x05D1), rtl.getGlyphId(0));
    EXPECT_EQ(sans->GetGlyphId('b'), rtl.getGlyphId(4));
    // Forced left to right keeps logical order even for Hebrew.
    LmLayout forced = layoutOf(u"\u05D0\u05D1", paintOf(30.0f), LmLayoutUtils::kBidiForceLTR);
    EXPECT_EQ(sans->GetGlyphId(0x05D0), forced.getGlyphId(0));
    // Neutral text in a default-RTL paragraph is right to left.
    LmLayout neutral = layoutOf(u"1 2", paintOf(30.0f), LmLayoutUtils::kBidiDefaultRTL);
    EXPECT_EQ(3u, neutral.nGlyphs());
}

TEST(PlatformLayout, ForFontRunAppliesFakeryPerRunAndRestoresThePaint)
{
    // Regular-only families asked for bold italic: every run is faked.
    auto tf = LmTypeface::createFromFamilies({familyOf(kSansPath), familyOf(kCjkPath)}, 700, true);
    LmPaint paint = paintOf(30.0f);
    paint.setTextSkewX(-0.1f);
    LmLayout l = layoutOf(u"a\u4E2Db", paint, LmLayoutUtils::kBidiDefaultLTR, tf.get());
    ASSERT_EQ(3u, l.nGlyphs());
    EXPECT_TRUE(l.getFakery(0).fakeBold);
    EXPECT_TRUE(l.getFakery(1).fakeItalic);

    RunRecorder rec(&paint);
    LmLayoutUtils::forFontRun(l, &paint, rec);
    ASSERT_EQ(3u, rec.runs.size());
    for (size_t i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(-0.35f, rec.skews[i]);
        EXPECT_TRUE(rec.embolden[i]);
    }
    EXPECT_FLOAT_EQ(-0.1f, paint.getTextSkewX());
    EXPECT_FALSE(paint.isEmbolden());

    // The synthetic styles widen the ink compared with the plain face.
    auto plain = LmTypeface::createFromFamilies({familyOf(kSansPath)}, 400, false);
    LmLayout p = layoutOf(u"H", paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR, plain.get());
    LmLayout f = layoutOf(u"H", paintOf(30.0f), LmLayoutUtils::kBidiDefaultLTR, tf.get());
    EXPECT_GT(f.getBounds().right - f.getBounds().left, p.getBounds().right - p.getBounds().left + 3.0f);
    EXPECT_FLOAT_EQ(p.getAdvance(), f.getAdvance());  // advances are not faked

    LmLayout empty;
    LmLayoutUtils::forFontRun(empty, &paint, rec);
    EXPECT_EQ(3u, rec.runs.size());
}
