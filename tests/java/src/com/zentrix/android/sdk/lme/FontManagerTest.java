package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import android.text.FontConfig;
import android.text.FontConfig.Family;
import android.text.FontConfig.Font;
import com.zentrix.android.sdk.lme.font.FontManager;
import java.io.File;
import java.nio.file.Files;
import java.nio.file.Paths;
import org.junit.Before;
import org.junit.Test;

// The system font configuration, and loading the library in a child JVM whose class path lacks
// the font manager, or one of its natives.
public class FontManagerTest {
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

    static String child(String classPath, String mode) throws Exception {
        String java = Paths.get(System.getProperty("java.home"), "bin", "java").toString();
        Process p = new ProcessBuilder(java, "-Djava.library.path=" + System.getProperty("java.library.path"),
                                       "-cp", classPath, FontManagerTest.class.getName(), mode)
                        .redirectErrorStream(true).start();
        String out = new String(p.getInputStream().readAllBytes());
        assertEquals(out, 0, p.waitFor());
        return out;
    }

    static String path(String... jarProperties) {
        StringBuilder b = new StringBuilder();
        for (String property : jarProperties) b.append(System.getProperty(property)).append(File.pathSeparator);
        return b.toString();
    }

    @Test
    public void aMissingClassIsLoggedAndTheOthersStillWork() throws Exception {
        String out = child(path("lm.partial.jar", "lm.doubles.jar", "lm.test.jar"), "text");
        assertTrue(out, out.contains("LmFontManager OnLoad Fail!"));
        assertTrue(out, out.contains("NoClassDefFoundError"));
        assertTrue(out, out.contains("rendered 36400 error 0"));
    }

    @Test
    public void aClassLackingOneNativeKeepsTheOther() throws Exception {
        String out = child(path("lm.variant.jar", "lm.jar", "lm.doubles.jar", "lm.test.jar"), "fonts");
        assertTrue(out, out.contains("LmFontManager OnLoad Fail!"));
        assertFalse(out, out.contains("NoSuchMethodError"));
        assertTrue(out, out.contains("inserted true, config unlinked"));
    }

    public static void main(String[] args) throws Exception {
        if (args[0].equals("text")) {
            LmText t = NativeProbe.configured(5);
            t.LmText_SetFont(NativeProbe.SANS);
            System.out.println("rendered " + t.LmText_RenderTextEffect().length + " error "
                               + com.zentrix.android.sdk.lme.util.LmError.Error_GetError());
            return;
        }
        boolean inserted = FontManager.LmFontManager_InsertFontData("child", Files.readAllBytes(Paths.get(NativeProbe.SANS)));
        try {
            FontManager.LmFontManager_SetFontConfig(null);
            System.out.println("inserted " + inserted + ", config linked");
        } catch (LinkageError e) {
            System.out.println("inserted " + inserted + ", config unlinked");
        }
    }
}
