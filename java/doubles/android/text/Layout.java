package android.text;

/**
 * Host stand-in: a text with fixed lines. Each line is {start, visibleEnd, baseline, bottom,
 * ascent, descent} plus its left and width in floats.
 */
public class Layout {
    private final CharSequence text;
    private final int[][] lines;
    private final float[][] extents;

    public Layout(CharSequence text, int[][] lines, float[][] extents) {
        this.text = text;
        this.lines = lines;
        this.extents = extents;
    }

    public int getWidth() { return 0; }
    public int getHeight() { return 0; }
    public int getTopPadding() { return 0; }
    public int getBottomPadding() { return 0; }
    public int getLineCount() { return lines.length; }
    public int getParagraphDirection(int i) { return 1; }
    public int getParagraphLeft(int i) { return 0; }
    public int getParagraphRight(int i) { return 0; }
    public int getLineBaseline(int i) { return lines[i][2]; }
    public int getLineTop(int i) { return lines[i][2] + lines[i][4]; }
    public int getLineBottom(int i) { return lines[i][3]; }
    public int getLineAscent(int i) { return lines[i][4]; }
    public int getLineDescent(int i) { return lines[i][5]; }
    public int getLineStart(int i) { return lines[i][0]; }
    public int getLineEnd(int i) { return lines[i][1]; }
    public int getLineVisibleEnd(int i) { return lines[i][1]; }
    public float getLineLeft(int i) { return extents[i][0]; }
    public float getLineRight(int i) { return extents[i][0] + extents[i][1]; }
    public float getLineMax(int i) { return extents[i][1]; }
    public float getLineWidth(int i) { return extents[i][1]; }
    public CharSequence getText() { return text; }
}
