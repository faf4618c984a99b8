package android.widget;

/** Host stand-in: only what the renderer reads; fields in getter order. */
public class TextView {
    public float textSize = 12f;
    public int textColor = 0xFF000000;
    public android.graphics.Typeface typeface;
    public int width, height, paddingLeft, paddingRight, paddingTop, paddingBottom, gravity = 0x33, maxLines;

    public float getTextSize() { return textSize; }
    public int getCurrentTextColor() { return textColor; }
    public android.graphics.Typeface getTypeface() { return typeface; }
    public int getTextDirection() { return 0; }
    public int getLayoutDirection() { return 0; }
    public int getWidth() { return width; }
    public int getHeight() { return height; }
    public int getPaddingLeft() { return paddingLeft; }
    public int getPaddingRight() { return paddingRight; }
    public int getPaddingTop() { return paddingTop; }
    public int getPaddingBottom() { return paddingBottom; }
    public int getGravity() { return gravity; }
    public int getMaxLines() { return maxLines; }
}
