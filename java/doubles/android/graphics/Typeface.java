package android.graphics;

/** Host stand-in: only what the renderer reads. */
public class Typeface {
    private final boolean bold, italic;

    public Typeface(boolean bold, boolean italic) { this.bold = bold; this.italic = italic; }
    public boolean isBold() { return bold; }
    public boolean isItalic() { return italic; }
}
