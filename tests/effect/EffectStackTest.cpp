#include "effect/LmECore.h"
#include "effect/LmECoreBase.h"
#include "effect/LmEffect.h"
#include "effect/LmGlyph.h"
#include "effect/LmGradient.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmStrokeProperty.h"
#include "effect/LmText.h"
#include "effect/LmTextProperty.h"
#include "raster/LmBitmap.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

using namespace LmFontEffect;

TEST(LmEffect, AddingAKindTwiceReplacesItsParametersInPlace)
{
    LmEffect e;
    int first = e.addStrokeText(4, 0xFF000000u, 1, 0, 1);
    ASSERT_GE(first, 0);
    e.addOuterShadowText(0, 0, 3, 0xFF000000u, 1);
    int again = e.addStrokeText(7, 0xFFFF0000u, 1, 0, 1);
    EXPECT_EQ(first, again);
    ASSERT_EQ(2u, e.getLayers().size());
    EXPECT_EQ(LM_EFFECT_STROKE, e.getLayers()[0]->getStyle());
    auto* p = dynamic_cast<LmStrokeProperty*>(e.getEffect(LM_EFFECT_STROKE)->getProperty());
    ASSERT_NE(nullptr, p);
    EXPECT_EQ(7.0f, p->size);
    EXPECT_EQ(0xFFFF0000u, p->colour);
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
    std::unique_ptr<LmECore> text(e.createEffect(42, LM_EFFECT_TEXT));
    ASSERT_NE(nullptr, text);
    EXPECT_EQ(42, text->getId());
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
        EXPECT_EQ(c.wantSize, stroke()->size) << c.size;
        EXPECT_EQ(c.wantOpacity, stroke()->opacity) << c.size;
        EXPECT_EQ(c.wantColour, stroke()->colour) << std::hex << c.colour;
    }

    auto shadow = [&] { return dynamic_cast<LmOuterShadowProperty*>(e.getEffect(LM_EFFECT_OUTER_SHADOW)->getProperty()); };
    const struct { float angle, distance, size, opacity, wantAngle, wantDistance, wantSize, wantOpacity; } shadows[] = {
        {-30, 5, 3, 1, 330, 5, 3, 1}, {725.9f, 5, 3, 1, 5, 5, 3, 1}, {NAN, -1e30f, 1e30f, 2, 0, 0, 100, 1}};
    for (const auto& c : shadows) {
        e.addOuterShadowText(c.angle, c.distance, c.size, 0, c.opacity);
        EXPECT_EQ(c.wantAngle, shadow()->angle) << c.angle;
        EXPECT_EQ(c.wantDistance, shadow()->distance) << c.angle;
        EXPECT_EQ(c.wantSize, shadow()->size) << c.angle;
        EXPECT_EQ(c.wantOpacity, shadow()->opacity) << c.angle;
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
    LmGlyph g;
    g.pixels = cov;
    g.width = 2;
    g.height = 2;

    // Masks too large to allocate are among the failed allocations of the fault tests.
    // Negative sizes become empty images; a glyph without pixels only grows the text box.
    LmBitmap out(4, 4, 4);
    e.initEffect(-5, -5);
    e.setDstBitmap(&out);
    LmGlyph empty;
    empty.width = 3;
    empty.height = 3;
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
