package android.os;

/** Host stand-in: only what the renderer reads. */
public class LocaleList {
    private final String tags;

    public LocaleList(String tags) { this.tags = tags; }
    public String toLanguageTags() { return tags; }
}
