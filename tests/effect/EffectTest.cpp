// The effect stack and its records: ids, replacement, clamping, the key bytes of every kind,
// degenerate sizes, and the un-premultiplying finish.
#include "effect/LmBevelProperty.h"
#include "effect/LmECore.h"
#include "effect/LmECoreBase.h"
#include "effect/LmEffect.h"
#include "effect/LmEmbossProperty.h"
#include "effect/LmGlyph.h"
#include "effect/LmGradient.h"
#include "effect/LmInnerShadowProperty.h"
#include "effect/LmLinearGradientProperty.h"
#include "effect/LmOuterGlowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmStrokeProperty.h"
#include "effect/LmText.h"
#include "effect/LmTextProperty.h"
#include "raster/LmBitmap.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

using namespace LmFontEffect;

namespace {

TEST(LmEffect, AddingAKindTwiceReplacesItsParametersInPlace)
{
    LmEffect e;
    int first = e.addStrokeText(4, 0xFF000000u, 1, 0, 1);
    e.addOuterShadowText(0, 0, 3, 0xFF000000u, 1);
    int again = e.addStrokeText(7, 0xFFFF0000u, 1, 0, 1);
    EXPECT_EQ(first, again);
    ASSERT_EQ(2u, e.getLayers().size());
    EXPECT_EQ(LM_EFFECT_STROKE, e.getLayers()[0]->getStyle());
}

TEST(LmEffect, EveryLayerTakesItsOwnRecordBackAndIgnoresForeignOnes)
{
    // Each layer builds its copy before the old record goes; the sanitizer build reports the
    // read of freed memory otherwise. Only the pattern layer takes a pattern record (and the
    // text layer any record).
    LmGradient stops[] = {{0xFFFF0000u, 1, 0}, {0xFF0000FFu, 1, 1}};
    LmEffect e; // not the pattern: its key names the image, which a new copy moves
    e.addOuterShadowText(120, 5, 3, 0xFF000000u, 1);
    e.addInnerShadowText(45, 4, 2, 0xFF000000u, 1);
    e.addOuterGlowText(5, 0xFF00FF00u, 1, 2, stops);
    e.addInnerGlowText(3, 0, 1, 2, stops);
    e.addBevelText(0, 5, 1, 0, 0, 2, 1, 120, 30, 0xFF000000u, 1, 0xFFFFFFFFu, 1);
    e.addEmbossText(1, 5, 1, 1, 1, 0, 1, 120, 30, 0xFF000000u, 1, 0xFFFFFFFFu, 1);
    e.addLinearGradientText(30, 1, 1, 2, stops);
    e.addRadialGradientText(1, 1, 2, stops);
    e.addStrokeText(3, 0xFF000000u, 1, 0, 1);
    e.addText(0xFF000000u);
    std::unique_ptr<char[]> before(e.getMapKey());
    const std::vector<int> offsets = {e.getLeftOffset(), e.getRightOffset(), e.getTopOffset(), e.getBottomOffset()};
    LmPatternProperty foreign(nullptr, 1, 1);
    for (LmECore* layer : e.getLayers()) {
        layer->setProperty(layer->getProperty());
        if (layer->getStyle() != LM_EFFECT_TEXT) layer->setProperty(&foreign);
    }
    std::unique_ptr<char[]> after(e.getMapKey());
    EXPECT_STREQ(before.get(), after.get());
    EXPECT_EQ(offsets, (std::vector<int>{e.getLeftOffset(), e.getRightOffset(), e.getTopOffset(), e.getBottomOffset()}));
}

TEST(LmEffect, IdsCountUpAndAreNotReusedUntilRelease)
{
    LmEffect e;
    EXPECT_EQ(0, e.addText(0xFF000000u));
    EXPECT_EQ(1, e.addStrokeText(1, 0, 1, 0, 1));
    EXPECT_EQ(2, e.addOuterShadowText(0, 0, 0, 0, 1));
    EXPECT_TRUE(e.removeEffect(1));
    EXPECT_FALSE(e.removeEffect(1));
    EXPECT_EQ(3, e.addStrokeText(1, 0, 1, 0, 1));
    e.releaseEffect();
    EXPECT_TRUE(e.getLayers().empty());
    EXPECT_STREQ("", std::unique_ptr<char[]>(e.getMapKey()).get());
    EXPECT_EQ(0, e.addText(0xFF000000u));

    // Copies keep the ids and parameters of the original.
    LmEffect copy(e);
    ASSERT_EQ(1u, copy.getLayers().size());
    EXPECT_EQ(0, copy.getLayers()[0]->getId());
    EXPECT_EQ(1, copy.addStrokeText(1, 0, 1, 0, 1));
}

TEST(LmEffect, FactoryKnowsOnlyKindsWithALayerClass)
{
    LmEffect e;
    for (int kind : {0, 9, 13, 14, -1, 1000}) EXPECT_EQ(nullptr, e.createEffect(-1, kind)) << kind;
    EXPECT_EQ(-1, e.addEffect(9, nullptr));
}

TEST(LmEffect, AddOperationsClampTheirArguments)
{
    LmEffect e;
    auto stroke = [&] { return dynamic_cast<LmStrokeProperty*>(e.getEffect(LM_EFFECT_STROKE)->getProperty()); };
    // size, colour, opacity in; size, opacity and premultiplied colour out.
    const struct { float size; unsigned colour; float opacity; float wantSize, wantOpacity; unsigned wantColour; } strokes[] = {
        {250, 0xFF102030u, 1, 100, 1, 0xFF102030u}, {-3, 0, 1, 0, 1, 0xFF000000u}, {NAN, 0, NAN, 0, 0, 0u},
        {INFINITY, 0, 1, 100, 1, 0xFF000000u}, {2, 0x00FF8040u, 0.7f, 2, 0.7f, 0xB3B35A2Du}};
    for (const auto& c : strokes) {
        e.addStrokeText(c.size, c.colour, c.opacity, 0, 1);
        EXPECT_EQ(std::make_tuple(c.wantSize, c.wantOpacity, c.wantColour),
                  std::make_tuple(stroke()->size, stroke()->opacity, stroke()->colour)) << c.size;
    }

    auto shadow = [&] { return dynamic_cast<LmOuterShadowProperty*>(e.getEffect(LM_EFFECT_OUTER_SHADOW)->getProperty()); };
    const struct { float angle, distance, size, opacity, wantAngle, wantDistance, wantSize, wantOpacity; } shadows[] = {
        {-30, 5, 3, 1, 330, 5, 3, 1}, {725.9f, 5, 3, 1, 5, 5, 3, 1}, {NAN, -1e30f, 1e30f, 2, 0, 0, 100, 1}};
    for (const auto& c : shadows) {
        e.addOuterShadowText(c.angle, c.distance, c.size, 0, c.opacity);
        const LmOuterShadowProperty* s = shadow();
        EXPECT_EQ(std::make_tuple(c.wantAngle, c.wantDistance, c.wantSize, c.wantOpacity),
                  std::make_tuple(s->angle, s->distance, s->size, s->opacity)) << c.angle;
    }
}

TEST(LmEffect, TextOpacityAndColourAlpha)
{
    LmEffect t;
    t.setTextOpacity(0.5f);
    EXPECT_TRUE(t.hasEffects());
    t.clearTextOpacity();
    EXPECT_FALSE(t.hasEffects());
    t.setTextOpacity(NAN);
    EXPECT_EQ(0.0f, t.getTextOpacity());
    t.addText(0x80FFFFFFu, 0.5f); // the colour's own alpha, kept for the un-premultiply
    EXPECT_EQ(0x80, t.getTextAlpha());
}

TEST(LmTextLayer, TakesColourAndOpacityFromAnyRecord)
{
    LmText t;
    LmStrokeProperty stroke(4, 0xFF00FF00u, 0.25f, 0, 1);
    t.setProperty(&stroke);
    auto* copy = dynamic_cast<LmTextProperty*>(t.getProperty());
    ASSERT_NE(nullptr, copy);
    EXPECT_EQ(0xFF00FF00u, copy->colour);
    EXPECT_EQ(0.25f, copy->opacity);
}

TEST(LmEffect, AbsurdSizesAndMissingPixelsDrawNothing)
{
    LmEffect e;
    e.addText(0xFF000000u);
    e.addStrokeText(10, 0xFF000000u, 1, 0, 0);
    e.addOuterShadowText(45, 10, 10, 0xFF000000u, 1);
    e.addInnerShadowText(45, 10, 10, 0xFF000000u, 1);
    unsigned char cov[4] = {255, 255, 255, 255};
    LmGlyph g{cov, 2, 2};

    // Masks too large to allocate are among the failed allocations of the fault tests.
    // Negative sizes become empty images; a glyph without pixels only grows the text box.
    LmBitmap out(4, 4, 4);
    e.initEffect(-5, -5);
    e.setDstBitmap(&out);
    LmGlyph empty{nullptr, 3, 3};
    e.renderEffectLayer(0, 0, nullptr);
    e.renderEffectLayer(0, 0, &empty);
    LmTest::LogCapture log;
    e.doEffectPostProcessing();
    char self[48];
    snprintf(self, sizeof self, "DoEffectPostProcessing(%p) - end", (void*)&e);
    EXPECT_TRUE(log.contains("LmEffect", self)); // a pass with nothing to post-process still ends
    e.compositeLayers(&out);
    for (int i = 0; i < 64; ++i) ASSERT_EQ(0, out.pixels[i]);

    // A glyph placed far outside the output at extreme coordinates.
    e.initEffect(4, 4);
    e.setDstBitmap(&out);
    e.renderEffectLayer(2147483000, -2147483000, &g);
    e.doEffectPostProcessing();
    e.compositeLayers(nullptr);
    for (int i = 0; i < 64; ++i) ASSERT_EQ(0, out.pixels[i]);
}

std::string serial(const LmProperty& p)
{
    std::string out((size_t)p.getSequentialCharLength(), '\0');
    char* cursor = &out[0];
    EXPECT_EQ(1, p.toSequentialChar(&cursor));
    return out;
}

std::string hex(const std::string& bytes)
{
    std::string out;
    char digits[3];
    for (unsigned char b : bytes) std::snprintf(digits, sizeof digits, "%02x", b), out += digits;
    return out;
}

// The key bytes of every record kind, pinned here once. The values are ones the records clamp
// or wrap (angle 400 to 40, -30 to 330, depth 12 to 10, soften -1 to 0 and 99 to 16, altitude
// 100 to 10, scale 2.5 to 2 and NaN or -1 to 0, fields above 127 to their low 7 bits, no stops
// for a count of 0 or less or a missing array), and values nothing should survive (NaN, 1e30).
TEST(LmProperty, KeyBytesOfEveryKind)
{
    LmGradient stops[3] = {{0xFF0000FFu, 1.0f, 0.0f}, {0x80FF0000u, 0.5f, 0.5f}, {0xFF00FF00u, 1.0f, 1.0f}};
    const float nan = std::nanf("");
    const struct {
        std::string key, hex;
    } cases[] = {
        {serial(LmTextProperty(0xFF336699u, 1.0f)), "548f8f838386868989"},
        {serial(LmOuterShadowProperty(400, 5, 3, 0x80000000u, 0.5f)), "5380a885838880808080808080"},
        {serial(LmOuterShadowProperty(-30, 0, 0, 0, 1)), "5382ca80808080808080808080"},
        {serial(LmInnerShadowProperty(-30, 0, 0, 0, 1)), "4982ca80808080808080808080"},
        {serial(LmStrokeProperty(130, 0xFF000000u, 1, 3, 1)), "4b828f8f8080808080808381"},
        {serial(LmBevelProperty(1, 5, 12, 0, 0, -1, 1, 400, 100, 0xFF000000u, 1, 0xFFFFFFFFu, 1)),
         "4281808580838e8880808080a88a8f8f8080808080808f8f8f8f8f8f8f8f"},
        {serial(LmEmbossProperty(0, 0, -3, 0, 0, 99, 0, 0, 0, 0, 0, 0, 0)),
         "458080808080808080809080808080808080808080808080808080808080"},
        {serial(LmLinearGradientProperty(30, 2.5f, 1, 3, stops)),
         "4c809e8c888f8f808080808f8fe48088808f8f80808080b2b28f8f80808f8f8080e4e4"},
        {serial(LmLinearGradientProperty(0, nan, 1, -4, stops)), "4c80808080"},
        {serial(LmLinearGradientProperty(0, -1, 1, 0, nullptr)), "4c80808080"},
        {serial(LmOuterGlowProperty(5, 0, 1, 7, nullptr)), "47858080808080808080"},
        {serial(LmOuterGlowProperty(1e9f, 0u, 1, 1, stops)), "478080808080808080808f8f808080808f8fe480"},
        {serial(LmOuterShadowProperty(nan, 1e30f, -1e30f, 0xFFFFFFFFu, 1)), "538080ff808f8f8f8f8f8f8f8f"},
        {serial(LmStrokeProperty(nan, 0x41414141u, 1, -1, 0x41)), "4b808481848184818481ffc1"},
        {serial(LmBevelProperty(0x5A, 1e10f, nan, -7, 255, 3, 1, nan, -45, 0u, 0, 0x5A5A5A5Au, 1)),
         "42da8f8f80808080f9ff838080d38080808080808080858a858a858a858a"},
    };
    for (const auto& c : cases) EXPECT_EQ(hex(c.key), c.hex);
    // The inner shadow keeps the negative remainder it writes as 330.
    EXPECT_EQ(-30.0f, LmInnerShadowProperty(-30, 0, 0, 0, 1).angle);
}

TEST(LmProperty, PatternIsIdentifiedByItsImage)
{
    LmBitmap a(2, 2, 4), b(2, 2, 4);
    const std::string s = serial(LmPatternProperty(&a, 12, 0.5f));
    EXPECT_EQ(s, serial(LmPatternProperty(&a, 12, 0.5f)));
    EXPECT_NE(s, serial(LmPatternProperty(&b, 12, 0.5f)));
    EXPECT_EQ(hex(s.substr(9)), "80838e8880808382"); // scale clamped to 10 (1000), opacity 50
    EXPECT_EQ(0.0f, LmPatternProperty(&a, -2, 1).scale);
}

// Every text alpha against every (alpha, channel) pair, each channel seeing every value, with an
// opaque row running into a clear one, against the dividing pass.
TEST(LmEffectFinish, UnpremultiplyMatchesTheDividingPassOnEveryInput)
{
    LmBitmap start(256, 257, 4); // the last row stays clear
    for (unsigned i = 0; i < 256 * 256; ++i) {
        const unsigned char px[4] = {(unsigned char)i, (unsigned char)(255 - i), (unsigned char)(i ^ 0x5A),
                                     (unsigned char)(i >> 8)};
        std::memcpy(start.pixels + 4 * i, px, 4);
    }
    for (unsigned k = 0; k < 256; ++k) {
        LmBitmap fast(start), expected(start);
        unsigned char* p = expected.pixels;
        for (unsigned i = 0; i < 256 * 257; ++i, p += 4) {
            if ((p[0] | p[1] | p[2] | p[3]) == 0) continue;
            const unsigned ka = k * (p[3] + 1u), a = ka >> 8;
            p[3] = (unsigned char)a;
            for (int c = 0; c < 3; ++c)
                p[c] = ka <= 255 ? 0 : (unsigned char)std::min(((k * (p[c] + 1u)) & 0xFF00u) / a, 255u);
        }
        LmEffect effect;
        effect.addText((k << 24) | 0x123456u);
        effect.compositeLayers(&fast);
        ASSERT_EQ(0, std::memcmp(expected.pixels, fast.pixels, 256 * 257 * 4)) << "text alpha " << k;
    }
}

} // namespace
