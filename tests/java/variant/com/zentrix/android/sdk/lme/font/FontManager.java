package com.zentrix.android.sdk.lme.font;

// The shipped class lacking LmFontManager_SetFontConfig, for the load test.
public final class FontManager {
    static {
        System.loadLibrary("lmeffect");
    }

    public static native boolean LmFontManager_InsertFontData(String name, byte[] data);
}
