#ifndef LMFONTEFFECT_RASTER_LMBITMAP_H
#define LMFONTEFFECT_RASTER_LMBITMAP_H

#include <cstdint>

namespace LmFontEffect {

class LmRect;

// The one raster buffer: 8-bit coverage (bytesPerPixel 1) or 32-bit colour (4 bytes per pixel,
// R, G, B, A in memory, premultiplied while effects draw). Rows are packed: width is the stride.
// A buffer that cannot be allocated, or whose size passes kMaxPixels, leaves pixels null.
class LmBitmap {
public:
    // Largest pixel count a bitmap may hold; beyond it the allocation fails on purpose, so that
    // an absurd size from a caller cannot exhaust memory.
    static constexpr uint64_t kMaxPixels = uint64_t(1) << 28;

    LmBitmap();
    LmBitmap(unsigned width, unsigned height, unsigned bytesPerPixel);
    LmBitmap(unsigned width, unsigned height, unsigned char* source, unsigned bytesPerPixel);
    LmBitmap(const LmBitmap& other);
    // Cut-out, byte-wise with the pixel width as stride: exact for 8-bit bitmaps only.
    LmBitmap(const LmBitmap& other, LmRect* rect);
    LmBitmap& operator=(const LmBitmap& other);
    virtual ~LmBitmap();

    // Byte size of a buffer, or 0 when it is empty or over the cap.
    static uint64_t byteSize(unsigned width, unsigned height, unsigned bytesPerPixel);

    unsigned width;
    unsigned height;
    unsigned char* pixels;
    unsigned format;
    unsigned bytesPerPixel;
};

} // namespace LmFontEffect

#endif
