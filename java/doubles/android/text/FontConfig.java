package android.text;

/** Host stand-in: families of fonts, only what the renderer reads. */
public class FontConfig {
    private final Family[] families;

    public FontConfig(Family... families) { this.families = families; }
    public Family[] getFamilies() { return families; }

    public static class Family {
        private final String name, languages;
        private final Font[] fonts;

        public Family(String name, String languages, Font... fonts) {
            this.name = name;
            this.languages = languages;
            this.fonts = fonts;
        }
        public String getName() { return name; }
        public Font[] getFonts() { return fonts; }
        public String getLanguages() { return languages; }
        public int getVariant() { return 0; }
    }

    public static class Font {
        private final String fontName, fallbackFor;
        private final boolean italic;

        public Font(String fontName, boolean italic, String fallbackFor) {
            this.fontName = fontName;
            this.italic = italic;
            this.fallbackFor = fallbackFor;
        }
        public String getFontName() { return fontName; }
        public int getTtcIndex() { return 0; }
        public int getWeight() { return 400; }
        public boolean isItalic() { return italic; }
        public String getFallbackFor() { return fallbackFor; }
    }
}
