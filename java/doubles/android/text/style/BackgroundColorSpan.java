package android.text.style;

/** Host stand-in: only what the renderer reads. */
public class BackgroundColorSpan {
    private final int color;

    public BackgroundColorSpan(int color) { this.color = color; }
    public int getBackgroundColor() { return color; }
}
