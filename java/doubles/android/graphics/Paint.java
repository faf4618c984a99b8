package android.graphics;

/** Host stand-in: only what the renderer reads. */
public class Paint {
    public enum Align { LEFT, CENTER, RIGHT }

    public float textSize = 12f, scaleX = 1f, skewX, letterSpacing;
    public boolean elegant, fakeBold;
    public int flags = 1, color = 0xFF000000;
    public String features;
    public android.os.LocaleList locales;
    public Align align = Align.LEFT;

    public float getTextScaleX() { return scaleX; }
    public float getTextSkewX() { return skewX; }
    public float getLetterSpacing() { return letterSpacing; }
    public boolean isElegantTextHeight() { return elegant; }
    public int getFlags() { return flags; }
    public String getFontFeatureSettings() { return features; }
    public android.os.LocaleList getTextLocales() { return locales; }
    public Align getTextAlign() { return align; }
    public int getColor() { return color; }
    public float getTextSize() { return textSize; }
    public boolean isFakeBoldText() { return fakeBold; }
}
