#ifndef LMFONTEFFECT_RASTER_LMRECT_H
#define LMFONTEFFECT_RASTER_LMRECT_H

namespace LmFontEffect {

// Integer rectangle: columns left..right-1, rows top..bottom-1.
class LmRect {
public:
    LmRect() = default;
    LmRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}
    virtual ~LmRect() = default;
    LmRect(const LmRect&) = default;
    LmRect& operator=(const LmRect&) = default;

    int width() const { return right > left ? right - left : left - right; }
    int height() const { return bottom > top ? bottom - top : top - bottom; }

    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

} // namespace LmFontEffect

#endif
