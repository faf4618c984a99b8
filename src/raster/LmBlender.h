#ifndef LMFONTEFFECT_RASTER_LMBLENDER_H
#define LMFONTEFFECT_RASTER_LMBLENDER_H

#include <cstddef>

namespace LmFontEffect {

class LmBitmap;

enum LmBlendMode {
    LME_BLEND_SRC_OVER = 1,
    LME_BLEND_DST_OVER = 2,
    LME_BLEND_DST_OVER_NSA = 3,
    LME_BLEND_OTHER = 7,
};

// Every routine that puts pixels into a bitmap. A destination is R, G, B, A bytes in memory,
// premultiplied. A colour argument, and a 32-bit source given as words, is ARGB by bits
// (A 24..31, R 16..23, G 8..15, B 0..7); each channel lands in the destination byte of the
// same channel, whatever the byte order. A 32-bit source given as bytes has the destination's
// byte layout. (x, y) is where the source's top-left pixel lands; everything is clipped to
// the destination, nothing is drawn for null bitmaps, null pixels or unknown modes.
class LmBlender {
public:
    static void drawBitmapBlend8(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                 int stride, unsigned colour, int mode);
    static void drawBitmapBlend32(int x, int y, const LmBitmap* dst, const unsigned int* src, int w, int h,
                                  int stride, int mode);
    // Always destination-over of RGBA bytes; colour and mode are ignored.
    static void drawBitmapBlend32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                  int stride, unsigned colour, int mode);
    static void drawBitmap(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                           unsigned colour);
    static void drawBitmap(int x, int y, const LmBitmap* dst, const LmBitmap* src, unsigned colour);
    // Swaps bytes 0 and 2 of every pixel in place.
    static void convertBGRAToARGB(LmBitmap* bitmap);
    // The same over `count` packed pixels.
    static void swapRedBlue(unsigned char* pixels, size_t count);

    static void blendSrcOver8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                  int stride, unsigned colour);
    static void blendDstOver8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                  int stride, unsigned colour);
    static void blendDstOver8To32NSA(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                     int stride, unsigned colour);
    static void blendDstOverSA8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                    int stride, unsigned colour);
    static void blendSrcOver32To32(int x, int y, const LmBitmap* dst, const unsigned int* src, int w, int h,
                                   int stride);
    static void blendDstOver32To32(int x, int y, const LmBitmap* dst, const unsigned int* src, int w, int h,
                                   int stride);
    static void blendDstOver32To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                   int stride);
    static void drawBitmap8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                unsigned colour);
    static void drawBitmap8To8(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h);
};

} // namespace LmFontEffect

#endif
