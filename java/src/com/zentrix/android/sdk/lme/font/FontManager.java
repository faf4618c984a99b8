package com.zentrix.android.sdk.lme.font;

/**
 * The process-wide font registry of the renderer. Register a font's bytes under a name before
 * {@code LmText} uses that name, and hand over the platform's font configuration once so that
 * text falls back to the system families.
 */
public final class FontManager {
    static {
        System.loadLibrary("lmeffect");
    }

    private FontManager() {}

    public static native boolean LmFontManager_InsertFontData(String name, byte[] data);
    /** Later calls return true and change nothing. */
    public static native boolean LmFontManager_SetFontConfig(android.text.FontConfig config);
}
