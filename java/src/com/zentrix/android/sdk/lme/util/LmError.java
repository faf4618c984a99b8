package com.zentrix.android.sdk.lme.util;

/** The renderer's last error code on the calling thread (0 none, 19 no native object bound). */
public final class LmError {
    static {
        System.loadLibrary("lmeffect");
    }

    private LmError() {}

    public static native int Error_GetError();

    /** Whether this is an engineering build of the platform, which turns on every native log line. */
    public static boolean isBuildTypeEngMode() {
        try {
            return "eng".equals(Class.forName("android.os.Build").getField("TYPE").get(null));
        } catch (ReflectiveOperationException | RuntimeException e) {
            return false;
        }
    }
}
