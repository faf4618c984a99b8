#ifndef LMFONTEFFECT_TEXT_LMVIEW_H
#define LMFONTEFFECT_TEXT_LMVIEW_H

#include <cstdint>

namespace LmFontEffect {

// Geometry of the Java view a text object draws for: size, padding, gravity, line limits,
// and the size of the bitmap of the last render (view size plus the effect margins).
class LmView {
public:
    // Android gravity bits.
    static constexpr int kHorizontalMask = 0x07;
    static constexpr int kVerticalMask = 0x70;
    static constexpr int kLeft = 3;
    static constexpr int kRight = 5;
    static constexpr int kCenterVertical = 0x10;
    static constexpr int kTop = 0x30;
    static constexpr int kBottom = 0x50;
    static constexpr int kFillVertical = 0x70;

    LmView();
    ~LmView();
    LmView(const LmView&) = delete;
    LmView& operator=(const LmView&) = delete;

    // Negative sizes are refused (0) and leave the values unchanged; zero is accepted.
    int SetSize(int w, int h);
    int GetWidth() const { return width; }
    int GetHeight() const { return height; }

    int SetBitmapWidth(int w);
    int SetBitmapHeight(int h);
    int GetBitmapWidth() const { return bitmapSize[0]; }
    int GetBitmapHeight() const { return bitmapSize[1]; }
    // The two ints (bitmap width, bitmap height); both 0 before the first render.
    int32_t* GetDrawingBitmapSize() { return bitmapSize; }

    int SetPadding(int left, int top, int right, int bottom);
    int GetPaddingLeft() const { return paddingLeft; }
    int GetPaddingTop() const { return paddingTop; }
    int GetPaddingRight() const { return paddingRight; }
    int GetPaddingBottom() const { return paddingBottom; }

    // Written directly by the Java bridge.
    int32_t gravity = kLeft;
    int32_t lineLimit = 0;  // below 1: not set
    int32_t maxLines = 0;

private:
    int32_t width = 0;
    int32_t height = 0;
    int32_t* bitmapSize;
    int32_t paddingLeft = 0;
    int32_t paddingTop = 0;
    int32_t paddingRight = 0;
    int32_t paddingBottom = 0;
};

} // namespace LmFontEffect

#endif
