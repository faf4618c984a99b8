#ifndef LMFONTEFFECT_PLATFORM_LMCANVAS_H
#define LMFONTEFFECT_PLATFORM_LMCANVAS_H

#include <cstdint>

namespace LmFontEffect {

// An RGBA raster over caller memory: R, G, B, A bytes per pixel, rows packed, colours not
// premultiplied. Drawing is clipped to the clip rectangle (initially the whole raster).
// Rectangle edges in float select the pixels whose centres lie inside.
class LmCanvas {
public:
    LmCanvas(unsigned char* pixels, int width, int height);

    int width() const { return mWidth; }
    int height() const { return mHeight; }

    // Every pixel of the raster (the clip is ignored) becomes transparent black.
    void clear();
    // Intersects the clip with the rectangle; a NaN edge empties the clip.
    void clipRect(float left, float top, float right, float bottom);
    // Current clip in whole pixels, right and bottom exclusive.
    void getClip(int* left, int* top, int* right, int* bottom) const;
    // Source-over of an ARGB colour (alpha in bits 24..31) over the rectangle.
    void drawRect(float left, float top, float right, float bottom, uint32_t argb);
    // Source-over of an RGBA image (same byte layout, unpremultiplied) with its top-left
    // pixel at (x, y).
    void drawImage(const unsigned char* rgba, int width, int height, int x, int y);

    // One pixel of source-over between unpremultiplied RGBA values, rounded to nearest.
    static void blendPixel(unsigned char* dst, const unsigned char* src);
    // The same in doubles, the platform raster's own arithmetic: blendPixel gives its bytes for
    // every input and falls back on it for exact halves.
    static void blendPixelInDoubles(unsigned char* dst, const unsigned char* src);

private:
    unsigned char* mPixels;
    int mWidth;
    int mHeight;
    int mClipLeft;
    int mClipTop;
    int mClipRight;
    int mClipBottom;
};

} // namespace LmFontEffect

#endif
