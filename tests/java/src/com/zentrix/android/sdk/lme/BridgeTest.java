package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import android.content.res.AssetManager;
import com.zentrix.android.sdk.lme.font.FontManager;
import com.zentrix.android.sdk.lme.util.LmError;
import java.io.File;
import java.util.function.BooleanSupplier;
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

    // A call on an unbound object gives its failure value and error 19, and leaves the handle.
    static void unbound(LmText t, Object expected, Supplier<Object> call) {
        int handle = t.mHandle;
        NativeProbe.clearError();
        assertEquals(expected, call.get());
        assertEquals(19, LmError.Error_GetError());
        assertEquals(handle, t.mHandle);
    }

    // A call refused (false), with its message in the log.
    static void refused(String message, BooleanSupplier call) {
        boolean result = call.getAsBoolean();
        String log = NativeProbe.takeLog();
        assertFalse(message, result);
        assertTrue(message + " not in " + log, log.contains(message));
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
            unbound(t, -1, () -> t.LmText_AddInnerShadowTextEffect(1, 1, 1, 0, 1));
            unbound(t, -1, () -> t.LmText_AddLinearGradientTextEffect(0, 1, new int[1], new float[1], new float[1], 1));
            unbound(t, -1, () -> t.LmText_AddOuterGlowTextEffect(1, 0, 1));
            unbound(t, -1, () -> t.LmText_AddOuterShadowTextEffect(1, 1, 1, 0, 1));
            unbound(t, -1, () -> t.LmText_AddStrokeTextEffect(1, 0, 1, 0, 0));
            unbound(t, null, () -> { t.LmText_ClearAllTextEffect(); return null; });
            unbound(t, null, t::LmText_RenderTextEffect);
            unbound(t, false, () -> t.LmText_SetFont(NativeProbe.SANS));
            unbound(t, false, () -> t.LmText_SetFont2("x", new byte[1]));
            unbound(t, false, () -> t.LmText_SetFont3(new AssetManager(new File(".")), "x"));
            unbound(t, false, () -> t.LmText_SetPaint(new android.graphics.Paint()));
            unbound(t, false, () -> t.LmText_SetLayout(NativeProbe.layout()));
            unbound(t, false, () -> t.LmText_SetLine(1));
            unbound(t, false, () -> t.LmText_SetView(NativeProbe.view(1)));
            unbound(t, null, t::LmText_GetDrawingBitmapSize);
            unbound(t, 0, t::LmText_GetEffectLeftOffset);
            unbound(t, 0, t::LmText_GetEffectTopOffset);
            unbound(t, 0, t::LmText_GetEffectRightOffset);
            unbound(t, 0, t::LmText_GetEffectBottomOffset);
            unbound(t, false, () -> t.LmText_SetFontFamilyName("sans"));
            t.LmText_finalize();  // again: nothing to release
        }
    }

    @Test
    public void badInputIsRefusedWithItsMessage() {
        LmText t = new LmText();
        AssetManager closed = new AssetManager(new File(NativeProbe.FONTS));
        closed.close();
        refused("LmText_SetFont() - Fail to get fontFile string", () -> t.LmText_SetFont(null));
        refused("Fail to get font", () -> t.LmText_SetFont("/nonexistent.ttf"));
        refused("LmText_SetFont2() - fontName is NULL", () -> t.LmText_SetFont2(null, new byte[4]));
        refused("LmText_SetFont2() - buffer is NULL", () -> t.LmText_SetFont2("x", null));
        refused("Fail to create typeface", () -> t.LmText_SetFont2("corrupt", new byte[] {0, 1, 0, 0, 9}));
        refused("Fail to get font", () -> t.LmText_SetFont2("empty", new byte[0]));
        refused("LmText_SetFont3() - assetManager is NULL", () -> t.LmText_SetFont3(null, "x"));
        refused("LmText_SetFont3() - fontName is NULL", () -> t.LmText_SetFont3(closed, null));
        refused("LmText_SetFont3() - _ASSET_NOT_FOUND_", () -> t.LmText_SetFont3(closed, "DejaVuSans.ttf"));
        refused("Fail to get familyName string", () -> t.LmText_SetFontFamilyName(null));
        refused(") null", () -> t.LmText_SetLayout(null));
        refused("paint is NULL", () -> t.LmText_SetPaint(null));
        refused("textView is NULL", () -> t.LmText_SetView(null));
        refused("fontName is NULL", () -> FontManager.LmFontManager_InsertFontData(null, new byte[4]));
        refused("buffer is NULL", () -> FontManager.LmFontManager_InsertFontData("x", null));
        refused("Fail to create typeface", () -> FontManager.LmFontManager_InsertFontData("bad", new byte[3]));
        assertEquals(-1, t.LmText_AddLinearGradientTextEffect(0, 1, null, new float[0], new float[0], 1));
        assertEquals(-1, t.LmText_AddLinearGradientTextEffect(0, 1, new int[2], new float[2], new float[1], 1));
    }

    @Test
    public void withoutALineLimitNothingIsDrawnNotEvenTheBackground() {
        LmText t = NativeProbe.configured(0, 0xFFFF0000);
        t.LmText_SetFont(NativeProbe.SANS);
        int[] pixels = t.LmText_RenderTextEffect();
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
