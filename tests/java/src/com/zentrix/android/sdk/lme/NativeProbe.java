package com.zentrix.android.sdk.lme;

import android.graphics.Paint;
import android.text.Layout;
import android.text.SpannableString;
import android.text.style.BackgroundColorSpan;
import android.widget.TextView;

/** Test-only natives seeing the library from C++, and the scene the suites share. */
final class NativeProbe {
    static final String FONTS = "/usr/share/fonts/truetype/dejavu";
    static final String SANS = FONTS + "/DejaVuSans.ttf";

    static {
        System.loadLibrary("lmeffect");
        System.loadLibrary("lmjniprobe");
    }

    static native void captureLog(boolean on);
    static native String takeLog();
    static native void clearError();
    static native int liveObjects(int lastHandle);
    static native String systemFamilies();
    static native void resetFamilies();

    // Two lines in a 260x140 view with padding 10, 6, 12, 8, centred; `spans` colour the background.
    static final String TEXT = "Effects\nTwo";

    static TextView view(int maxLines) {
        TextView v = new TextView();
        v.width = 260; v.height = 140;
        v.paddingLeft = 10; v.paddingTop = 6; v.paddingRight = 12; v.paddingBottom = 8;
        v.gravity = 0x11;
        v.maxLines = maxLines;
        v.textColor = 0xFF1060C0;
        return v;
    }

    static Layout layout(int... spans) {
        SpannableString text = new SpannableString(TEXT);
        for (int colour : spans) text.setSpan(new BackgroundColorSpan(colour), 0, 3, 0);
        return new Layout(text, new int[][] {{0, 7, 38, 48, -38, 10}, {8, 11, 86, 96, -38, 10}},
                          new float[][] {{2.7f, 150.9f}, {2.7f, 80.5f}});
    }

    static LmText configured(int maxLines, int... spans) {
        LmText t = new LmText();
        Paint paint = new Paint();
        paint.textSize = 40f;
        t.LmText_SetPaint(paint);
        t.LmText_SetView(view(maxLines));
        t.LmText_SetLayout(layout(spans));
        return t;
    }
}
