#include "raster/LmBitmap.h"

#include "foundation/Error.h"
#include "raster/LmRect.h"

#include <cstdlib>
#include <cstring>

namespace LmFontEffect {

namespace {

unsigned formatFor(unsigned bytesPerPixel) { return bytesPerPixel == 4 ? 1u : 2u; }

// Zeroed buffer of the given size, or null when it is over the cap or the system refuses.
unsigned char* allocate(unsigned width, unsigned height, unsigned bpp, bool clear)
{
    uint64_t bytes = LmBitmap::byteSize(width, height, bpp);
    if (bytes == 0) {
        // Zero pixels: a unique pointer that is never read.
        if ((uint64_t)width * height * bpp == 0) return static_cast<unsigned char*>(std::malloc(1));
        return nullptr;
    }
    void* p = clear ? std::calloc(1, (size_t)bytes) : std::malloc((size_t)bytes);
    if (!p) Error::SetError(Error::LM_ERR_PLATFORM);
    return static_cast<unsigned char*>(p);
}

} // namespace

uint64_t LmBitmap::byteSize(unsigned width, unsigned height, unsigned bytesPerPixel)
{
    uint64_t pixelCount = (uint64_t)width * (uint64_t)height;
    if (pixelCount == 0 || bytesPerPixel == 0) return 0;
    if (pixelCount > kMaxPixels || bytesPerPixel > 16) return 0;
    return pixelCount * bytesPerPixel;
}

LmBitmap::LmBitmap() : width(0), height(0), pixels(nullptr), format(4), bytesPerPixel(0) {}

LmBitmap::LmBitmap(unsigned w, unsigned h, unsigned bpp)
    : width(w), height(h), pixels(nullptr), format(formatFor(bpp)), bytesPerPixel(bpp)
{
    pixels = allocate(w, h, bpp, true);
}

LmBitmap::LmBitmap(unsigned w, unsigned h, unsigned char* source, unsigned bpp)
    : width(w), height(h), pixels(nullptr), format(formatFor(bpp)), bytesPerPixel(bpp)
{
    pixels = allocate(w, h, bpp, source == nullptr);
    uint64_t bytes = byteSize(w, h, bpp);
    if (pixels && source && bytes) std::memcpy(pixels, source, (size_t)bytes);
}

LmBitmap::LmBitmap(const LmBitmap& other)
    : width(other.width), height(other.height), pixels(nullptr), format(other.format),
      bytesPerPixel(other.bytesPerPixel)
{
    if (!other.pixels) return; // a default or failed bitmap stays without a buffer
    pixels = allocate(width, height, bytesPerPixel, false);
    uint64_t bytes = byteSize(width, height, bytesPerPixel);
    if (pixels && bytes) std::memcpy(pixels, other.pixels, (size_t)bytes);
}

LmBitmap::LmBitmap(const LmBitmap& other, LmRect* rect)
    : width(0), height(0), pixels(nullptr), format(other.format), bytesPerPixel(other.bytesPerPixel)
{
    if (!rect) return;
    width = (unsigned)rect->width();
    height = (unsigned)rect->height();
    pixels = allocate(width, height, bytesPerPixel, true);
    if (!pixels || !other.pixels) return;
    // Byte grid with the pixel width as stride; bytes outside the source buffer stay zero.
    const int64_t srcBytes = (int64_t)byteSize(other.width, other.height, other.bytesPerPixel);
    for (int64_t y = rect->top; y < rect->bottom; ++y) {
        for (int64_t x = rect->left; x < rect->right; ++x) {
            if (x < 0 || y < 0) continue;
            int64_t s = y * (int64_t)other.width + x;
            if (s >= srcBytes) continue;
            pixels[(y - rect->top) * (int64_t)width + (x - rect->left)] = other.pixels[s];
        }
    }
}

LmBitmap& LmBitmap::operator=(const LmBitmap& other)
{
    if (this == &other) return *this;
    width = other.width;
    height = other.height;
    format = other.format;
    bytesPerPixel = other.bytesPerPixel;
    std::free(pixels);
    pixels = nullptr;
    if (!other.pixels) return *this;
    pixels = allocate(width, height, bytesPerPixel, false);
    uint64_t bytes = byteSize(width, height, bytesPerPixel);
    if (pixels && bytes) std::memcpy(pixels, other.pixels, (size_t)bytes);
    return *this;
}

LmBitmap::~LmBitmap()
{
    std::free(pixels);
    pixels = nullptr;
}

} // namespace LmFontEffect
