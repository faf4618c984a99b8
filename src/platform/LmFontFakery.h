#ifndef LMFONTEFFECT_PLATFORM_LMFONTFAKERY_H
#define LMFONTEFFECT_PLATFORM_LMFONTFAKERY_H

namespace LmFontEffect {

// Synthetic styling a font needs to look like the requested style.
class LmFontFakery {
public:
    LmFontFakery() = default;
    LmFontFakery(bool bold, bool italic) : fakeBold(bold), fakeItalic(italic) {}
    bool operator==(const LmFontFakery& o) const { return fakeBold == o.fakeBold && fakeItalic == o.fakeItalic; }
    bool operator!=(const LmFontFakery& o) const { return !(*this == o); }

    bool fakeBold = false;
    bool fakeItalic = false;
};

} // namespace LmFontEffect

#endif
