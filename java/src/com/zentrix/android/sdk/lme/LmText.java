package com.zentrix.android.sdk.lme;

/**
 * A piece of styled text rendered natively with layer effects. Give it a font
 * ({@code LmText_SetFont*}), the view's paint, the view and its layout, add effects, then call
 * {@link #LmText_RenderTextEffect()} for the pixels (0xAARRGGBB, row by row) of a bitmap the size
 * of the view plus the effect margins ({@link #LmText_GetDrawingBitmapSize()}). Use one object
 * from one thread at a time; the native object is released when this one is finalized.
 */
public class LmText {
    static {
        System.loadLibrary("lmeffect");
    }

    /** Handle of the native text object; negative until the first native call creates it. */
    int mHandle = -1;

    @Override
    @SuppressWarnings("deprecation")
    protected void finalize() throws Throwable {
        try {
            LmText_finalize();
        } finally {
            super.finalize();
        }
    }

    public native void LmText_finalize();
    public native int LmText_AddInnerShadowTextEffect(float angle, float distance, float size, int color, float opacity);
    /** Stops: colours, opacities and positions, all of one length; -1 otherwise. */
    public native int LmText_AddLinearGradientTextEffect(float angle, float scale, int[] colors, float[] opacities,
                                                         float[] positions, float opacity);
    public native int LmText_AddOuterGlowTextEffect(float size, int color, float opacity);
    public native int LmText_AddOuterShadowTextEffect(float angle, float distance, float size, int color, float opacity);
    public native int LmText_AddStrokeTextEffect(float size, int color, float opacity, int extra, int position);
    public native void LmText_ClearAllTextEffect();
    public native int[] LmText_RenderTextEffect();
    public native boolean LmText_SetFont(String path);
    public native boolean LmText_SetFont2(String name, byte[] data);
    public native boolean LmText_SetFont3(android.content.res.AssetManager assets, String name);
    public native boolean LmText_SetPaint(android.graphics.Paint paint);
    /** Stores the text, its background span and the lines to draw; call SetView and SetLine first. */
    public native boolean LmText_SetLayout(android.text.Layout layout);
    public native boolean LmText_SetLine(int lines);
    public native boolean LmText_SetView(android.widget.TextView view);
    public native int[] LmText_GetDrawingBitmapSize();
    public native int LmText_GetEffectLeftOffset();
    public native int LmText_GetEffectTopOffset();
    public native int LmText_GetEffectRightOffset();
    public native int LmText_GetEffectBottomOffset();
    public native boolean LmText_SetFontFamilyName(String name);
}
