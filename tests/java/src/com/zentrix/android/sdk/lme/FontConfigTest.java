package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import android.text.FontConfig;
import android.text.FontConfig.Family;
import android.text.FontConfig.Font;
import com.zentrix.android.sdk.lme.font.FontManager;
import org.junit.Before;
import org.junit.Test;

public class FontConfigTest {
    static final String SERIF = NativeProbe.FONTS + "/DejaVuSerif.ttf";

    @Before
    public void forgetTheSystemFamilies() {
        NativeProbe.resetFamilies();
    }

    @Test
    public void onlyTheFirstConfigurationCounts() {
        assertFalse(FontManager.LmFontManager_SetFontConfig(null));
        assertEquals("unset", NativeProbe.systemFamilies());
        assertTrue(FontManager.LmFontManager_SetFontConfig(new FontConfig(new Family(null, "", new Font(SERIF, false, null)))));
        assertEquals("1/0/1 ", NativeProbe.systemFamilies());
        assertTrue(FontManager.LmFontManager_SetFontConfig(new FontConfig(new Family(null, "", new Font(NativeProbe.SANS, false, null)))));
        assertTrue(FontManager.LmFontManager_SetFontConfig(null));
        assertEquals("1/0/1 ", NativeProbe.systemFamilies());
    }

    @Test
    public void italicUnreadableAndFallbackFontsLeaveAnEmptyList() {
        assertTrue(FontManager.LmFontManager_SetFontConfig(new FontConfig(
            new Family("sans", null, new Font(NativeProbe.SANS, true, null), new Font("/nonexistent.ttf", false, null)),
            new Family(null, "", new Font(SERIF, false, "serif")), null)));
        assertEquals("", NativeProbe.systemFamilies());
    }

    // The first named family and the emoji one load at once; a script family waits for its text.
    @Test
    public void laterNamedFamiliesAreDroppedAndScriptFamiliesWait() {
        assertTrue(FontManager.LmFontManager_SetFontConfig(new FontConfig(
            new Family("sans", null, new Font(NativeProbe.SANS, false, null)),
            new Family(null, "und-Arab", new Font(SERIF, false, null)),
            new Family("serif", null, new Font(SERIF, false, null)),
            new Family(null, "und-Zsye", new Font(SERIF, false, ""), null))));
        String[] families = NativeProbe.systemFamilies().split(" ");
        assertEquals(3, families.length);
        assertEquals("1/0/1", families[0]);
        assertTrue(families[1], families[1].matches("0/[1-9][0-9]*/1"));
        assertTrue(families[2], families[2].matches("1/[1-9][0-9]*/1"));
    }
}
