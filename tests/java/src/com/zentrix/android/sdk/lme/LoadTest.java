package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import com.zentrix.android.sdk.lme.font.FontManager;
import java.io.File;
import java.nio.file.Files;
import java.nio.file.Paths;
import org.junit.Test;

// Loads the library in a child JVM whose class path lacks a class, or a native of one.
public class LoadTest {
    static String child(String classPath, String mode) throws Exception {
        String java = Paths.get(System.getProperty("java.home"), "bin", "java").toString();
        Process p = new ProcessBuilder(java, "-Djava.library.path=" + System.getProperty("java.library.path"),
                                       "-cp", classPath, LoadTest.class.getName(), mode)
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
