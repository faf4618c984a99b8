#ifndef LMFONTEFFECT_PLATFORM_LMLAYOUTUTILS_H
#define LMFONTEFFECT_PLATFORM_LMLAYOUTUTILS_H

#include "platform/LmLayout.h"
#include "platform/LmPaint.h"
#include "platform/LmTypeface.h"

#include <cstddef>
#include <cstdint>

namespace LmFontEffect {

// Shaping of UTF-16 text with a typeface and a paint (HarfBuzz, with ICU for the bidi
// runs), and the walk over the font runs of a shaped layout.
class LmLayoutUtils {
public:
    // Bidi requests: forced directions, or a paragraph direction found from the text with a
    // default for text without strong characters.
    enum Bidi { kBidiLTR = 0, kBidiRTL = 1, kBidiDefaultLTR = 2, kBidiDefaultRTL = 3, kBidiForceLTR = 4, kBidiForceRTL = 5 };

    // Shapes `count` units from `start` of `text` (bufSize units long) within the context
    // range [contextStart, contextStart + contextCount), which must hold the range; the
    // context decides the paragraph direction and joins across the range's edges. Each
    // character takes the font the typeface chooses for it (marks and joiners stay with the
    // font of their base). A range out of bounds, a null text or typeface, or a size that is
    // not positive and finite gives an empty layout.
    //
    // The advance of the result is what a line breaker needs to measure text.
    static LmLayout doLayout(const LmPaint& paint, int bidi, const LmTypeface* typeface, const uint16_t* text,
                             size_t bufSize, size_t start, size_t count, size_t contextStart, size_t contextCount);

    // Walks the layout's glyphs; a run ends wherever the font changes. For each run the
    // paint's run font becomes the run's font, fake bold sets embolden and fake italic adds a
    // skew of -1/4, f(start, end) is called, and the paint's skew and embolden are then put
    // back to their values on entry.
    template <typename F>
    static void forFontRun(const LmLayout& layout, LmPaint* paint, F& f)
    {
        const float saveSkewX = paint->getTextSkewX();
        const bool savedEmbolden = paint->isEmbolden();
        const size_t n = layout.nGlyphs();
        size_t start = 0;
        for (size_t i = 0; i < n; i++) {
            if (i + 1 == n || layout.getFont(i + 1) != layout.getFont(start)) {
                populateRunFont(paint, layout.getGlyph(start).font, layout.getFakery(start));
                f(start, i + 1);
                paint->setTextSkewX(saveSkewX);
                paint->setEmbolden(savedEmbolden);
                start = i + 1;
            }
        }
    }

    // The per-run paint settings: run font, embolden for fake bold, skew - 1/4 for fake italic.
    static void populateRunFont(LmPaint* paint, const std::shared_ptr<LmPlatformFont>& font, const LmFontFakery& fakery);
};

} // namespace LmFontEffect

#endif
