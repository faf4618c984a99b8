package android.text;

import java.util.ArrayList;
import java.util.List;

/** Host stand-in: spans in the order they were set, copied by the copy constructor. */
public class SpannableString implements CharSequence {
    private final String text;
    private final List<Object> spans = new ArrayList<>();

    public SpannableString(CharSequence source) {
        text = source.toString();
        if (source instanceof SpannableString) spans.addAll(((SpannableString) source).spans);
    }

    public void setSpan(Object what, int start, int end, int flags) { spans.add(what); }

    public Object[] getSpans(int start, int end, Class<?> kind) {
        return spans.stream().filter(s -> s == null || kind.isInstance(s)).toArray();
    }

    @Override public int length() { return text.length(); }
    @Override public char charAt(int i) { return text.charAt(i); }
    @Override public CharSequence subSequence(int s, int e) { return text.subSequence(s, e); }
    @Override public String toString() { return text; }
}
