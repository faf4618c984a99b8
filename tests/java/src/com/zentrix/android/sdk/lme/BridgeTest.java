package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import android.content.res.AssetManager;
import com.zentrix.android.sdk.lme.font.FontManager;
import com.zentrix.android.sdk.lme.util.LmError;
import java.io.File;
import java.util.function.Supplier;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;

public class BridgeTest {
    @Before
    public void capture() {
        NativeProbe.captureLog(true);
        NativeProbe.takeLog();
    }

    @After
    public void stopCapture() {
        NativeProbe.captureLog(false);
    }

    // Handle 0 is never issued and is not created; a finalized object's handle is gone.
    @Test
    public void unboundObjectsGiveFailureValuesAndError19() {
        LmText zero = new LmText();
        zero.mHandle = 0;
        LmText released = new LmText();
        released.LmText_SetLine(1);
        released.LmText_finalize();
        for (LmText t : new LmText[] {zero, released}) {
            int handle = t.mHandle;
            Object[][] cases = {
                {-1, (Supplier<Object>) () -> t.LmText_AddInnerShadowTextEffect(1, 1, 1, 0, 1)},
                {-1, (Supplier<Object>) () -> t.LmText_AddLinearGradientTextEffect(0, 1, new int[1], new float[1], new float[1], 1)},
                {-1, (Supplier<Object>) () -> t.LmText_AddOuterGlowTextEffect(1, 0, 1)},
                {-1, (Supplier<Object>) () -> t.LmText_AddOuterShadowTextEffect(1, 1, 1, 0, 1)},
                {-1, (Supplier<Object>) () -> t.LmText_AddStrokeTextEffect(1, 0, 1, 0, 0)},
                {null, (Supplier<Object>) () -> { t.LmText_ClearAllTextEffect(); return null; }},
                {null, (Supplier<Object>) t::LmText_RenderTextEffect},
                {false, (Supplier<Object>) () -> t.LmText_SetFont(NativeProbe.SANS)},
                {false, (Supplier<Object>) () -> t.LmText_SetFont2("x", new byte[1])},
                {false, (Supplier<Object>) () -> t.LmText_SetFont3(new AssetManager(new File(".")), "x")},
                {false, (Supplier<Object>) () -> t.LmText_SetPaint(new android.graphics.Paint())},
                {false, (Supplier<Object>) () -> t.LmText_SetLayout(NativeProbe.layout())},
                {false, (Supplier<Object>) () -> t.LmText_SetLine(1)},
                {false, (Supplier<Object>) () -> t.LmText_SetView(NativeProbe.view(1))},
                {null, (Supplier<Object>) t::LmText_GetDrawingBitmapSize},
                {0, (Supplier<Object>) t::LmText_GetEffectLeftOffset},
                {0, (Supplier<Object>) t::LmText_GetEffectTopOffset},
                {0, (Supplier<Object>) t::LmText_GetEffectRightOffset},
                {0, (Supplier<Object>) t::LmText_GetEffectBottomOffset},
                {false, (Supplier<Object>) () -> t.LmText_SetFontFamilyName("sans")},
            };
            for (Object[] c : cases) {
                NativeProbe.clearError();
                @SuppressWarnings("unchecked") Object result = ((Supplier<Object>) c[1]).get();
                assertEquals(c[0], result);
                assertEquals(19, LmError.Error_GetError());
                assertEquals(handle, t.mHandle);
            }
            t.LmText_finalize();  // again: nothing to release
        }
    }

    @Test
    public void badInputIsRefusedWithItsMessage() {
        LmText t = new LmText();
        AssetManager closed = new AssetManager(new File(NativeProbe.FONTS));
        closed.close();
        Object[][] cases = {
            {(Supplier<Boolean>) () -> t.LmText_SetFont(null), "LmText_SetFont() - Fail to get fontFile string"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont("/nonexistent.ttf"), "Fail to get font"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont2(null, new byte[4]), "LmText_SetFont2() - fontName is NULL"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont2("x", null), "LmText_SetFont2() - buffer is NULL"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont2("corrupt", new byte[] {0, 1, 0, 0, 9}), "Fail to create typeface"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont2("empty", new byte[0]), "Fail to get font"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont3(null, "x"), "LmText_SetFont3() - assetManager is NULL"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont3(closed, null), "LmText_SetFont3() - fontName is NULL"},
            {(Supplier<Boolean>) () -> t.LmText_SetFont3(closed, "DejaVuSans.ttf"), "LmText_SetFont3() - _ASSET_NOT_FOUND_"},
            {(Supplier<Boolean>) () -> t.LmText_SetFontFamilyName(null), "Fail to get familyName string"},
            {(Supplier<Boolean>) () -> t.LmText_SetLayout(null), ") null"},
            {(Supplier<Boolean>) () -> t.LmText_SetPaint(null), "paint is NULL"},
            {(Supplier<Boolean>) () -> t.LmText_SetView(null), "textView is NULL"},
            {(Supplier<Boolean>) () -> FontManager.LmFontManager_InsertFontData(null, new byte[4]), "fontName is NULL"},
            {(Supplier<Boolean>) () -> FontManager.LmFontManager_InsertFontData("x", null), "buffer is NULL"},
            {(Supplier<Boolean>) () -> FontManager.LmFontManager_InsertFontData("bad", new byte[3]), "Fail to create typeface"},
        };
        for (Object[] c : cases) {
            @SuppressWarnings("unchecked") boolean result = ((Supplier<Boolean>) c[0]).get();
            String log = NativeProbe.takeLog();
            assertFalse((String) c[1], result);
            assertTrue(c[1] + " not in " + log, log.contains((String) c[1]));
        }
        assertEquals(-1, t.LmText_AddLinearGradientTextEffect(0, 1, null, new float[0], new float[0], 1));
        assertEquals(-1, t.LmText_AddLinearGradientTextEffect(0, 1, new int[2], new float[2], new float[1], 1));
    }

    @Test
    public void withoutALineLimitNothingIsDrawnNotEvenTheBackground() {
        LmText t = NativeProbe.configured(0, 0xFFFF0000);
        t.LmText_SetFont(NativeProbe.SANS);
        int[] pixels = t.LmText_RenderTextEffect();
        assertEquals(260 * 140, pixels.length);
        for (int p : pixels) assertEquals(0, p);
    }

    @Test
    public void theLaterBackgroundSpanWins() {
        LmText t = NativeProbe.configured(5, 0xFFFF0000, 0xFF0000FF);
        t.LmText_SetFont(NativeProbe.SANS);
        int[] pixels = t.LmText_RenderTextEffect();
        assertEquals(0xFF0000FF, pixels[22 * 260 + 13]);  // inside the first line's box, above the glyphs
    }
}
