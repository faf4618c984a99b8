#include "raster/LmBlender.h"

#include "foundation/LmLog.h"
#include "raster/LmBitmap.h"
#include "raster/LmRowOps.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace LmFontEffect {

namespace {

const char* const kTag = "Blender";

inline unsigned sat(unsigned v) { return v > 255 ? 255 : v; }

struct Rgba {
    unsigned r, g, b, a;
};

inline Rgba unpackArgb(unsigned c) { return {(c >> 16) & 0xFF, (c >> 8) & 0xFF, c & 0xFF, c >> 24}; }

// The part of the destination a w x h source at (x, y) covers; empty when nothing is drawn.
struct Clip {
    int x0, x1, y0, y1;
    bool empty() const { return x0 >= x1 || y0 >= y1; }
};

Clip clipTo(const LmBitmap* dst, int x, int y, int w, int h)
{
    int64_t x0 = std::max<int64_t>(x, 0), y0 = std::max<int64_t>(y, 0);
    int64_t x1 = std::min<int64_t>((int64_t)x + w, dst->width);
    int64_t y1 = std::min<int64_t>((int64_t)y + h, dst->height);
    if (x0 >= x1 || y0 >= y1) return {0, 0, 0, 0};
    return {(int)x0, (int)x1, (int)y0, (int)y1};
}

bool usable(const LmBitmap* dst, const void* src, int w, int h, int stride, unsigned bytesPerPixel)
{
    return dst && src && dst->pixels && dst->bytesPerPixel == bytesPerPixel && w > 0 && h > 0 && stride >= 0;
}

// Runs rowOp(destination, coverage, pixel count) over each row of the clipped area of an 8-bit
// source.
template <class RowOp>
void rows8(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h, int stride,
           unsigned dstBytes, RowOp rowOp)
{
    if (!usable(dst, src, w, h, stride, dstBytes)) return;
    Clip c = clipTo(dst, x, y, w, h);
    if (c.empty()) return;
    for (int Y = c.y0; Y < c.y1; ++Y) {
        unsigned char* d = dst->pixels + ((size_t)Y * dst->width + c.x0) * dstBytes;
        const unsigned char* s = src + (size_t)(Y - y) * (size_t)stride + (size_t)(c.x0 - x);
        rowOp(d, s, (size_t)(c.x1 - c.x0));
    }
}

// Runs op(destination pixel bytes, coverage) over n pixels of a row; with skipClear, op must
// leave the pixel alone for coverage 0, and clear runs (mostly around text) are stepped over whole.
template <class Op>
void span8(unsigned char* d, const unsigned char* s, size_t n, unsigned dstBytes, Op op, bool skipClear)
{
    for (size_t i = 0; i < n;) {
        if (skipClear && s[i] == 0) {
            i += LmRowOps::zeroBytes(s + i, n - i);
            continue;
        }
        op(d + i * dstBytes, (unsigned)s[i]);
        ++i;
    }
}

template <class Op>
void each8(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h, int stride,
           unsigned dstBytes, Op op, bool skipClear = false)
{
    rows8(x, y, dst, src, w, h, stride, dstBytes, [&](unsigned char* d, const unsigned char* s, size_t n) {
        span8(d, s, n, dstBytes, op, skipClear);
    });
}

// The same over a 32-bit source; fetch(row pointer, column) yields its RGBA channels. op must
// leave the pixel alone for a source of four zero bytes: such runs (the clear surroundings of
// every layer) are stepped over whole. bulk(destination, source index, count), when given, does
// the leading pixels of a row its own faster way and returns how many.
template <class Src, class Fetch, class Op>
void each32(int x, int y, const LmBitmap* dst, const Src* src, int w, int h, int stride, Fetch fetch, Op op,
            size_t (*bulk)(unsigned char*, const Src*, size_t) = nullptr)
{
    if (!usable(dst, src, w, h, stride, 4)) return;
    Clip c = clipTo(dst, x, y, w, h);
    if (c.empty()) return;
    const size_t n = (size_t)(c.x1 - c.x0);
    for (int Y = c.y0; Y < c.y1; ++Y) {
        unsigned char* d = dst->pixels + ((size_t)Y * dst->width + c.x0) * 4;
        const size_t row = (size_t)(Y - y) * (size_t)stride + (size_t)(c.x0 - x);
        const unsigned char* s = reinterpret_cast<const unsigned char*>(src) + row * 4;
        for (size_t i = bulk ? bulk(d, src + row, n) : 0; i < n;) {
            uint32_t word;
            std::memcpy(&word, s + i * 4, 4);
            if (word == 0) {
                i += LmRowOps::zeroBytes(s + i * 4, (n - i) * 4) / 4;
                continue;
            }
            op(d + i * 4, fetch(src, row + i));
            ++i;
        }
    }
}

inline Rgba fetchWord(const unsigned int* src, size_t i) { return unpackArgb(src[i]); }

inline Rgba fetchBytes(const unsigned char* src, size_t i)
{
    const unsigned char* p = src + i * 4;
    return {p[0], p[1], p[2], p[3]};
}

inline void put(unsigned char* d, unsigned r, unsigned g, unsigned b, unsigned a)
{
    d[0] = (unsigned char)r;
    d[1] = (unsigned char)g;
    d[2] = (unsigned char)b;
    d[3] = (unsigned char)a;
}

// Premultiplied source-over of a 32-bit pixel.
inline void srcOver32(unsigned char* d, Rgba s)
{
    if (s.a == 255) {
        put(d, s.r, s.g, s.b, s.a);
        return;
    }
    unsigned k = 255 - s.a;
    put(d, sat(((k * (d[0] + 1u)) >> 8) + s.r), sat(((k * (d[1] + 1u)) >> 8) + s.g),
        sat(((k * (d[2] + 1u)) >> 8) + s.b), sat(s.a + ((k * (d[3] + 1u)) >> 8)));
}

// A premultiplied source under the pixel: copied onto a transparent pixel, otherwise each byte
// b' = sat(b + ((255 - d) * (s + 1) >> 8)). Modes 2, 3 and 7 and the 32-bit destination-over share it.
inline void under(unsigned char* d, Rgba s)
{
    const unsigned da = d[3];
    if (da == 0) {
        put(d, s.r, s.g, s.b, s.a);
        return;
    }
    const unsigned k = 255 - da;
    put(d, sat(d[0] + ((k * (s.r + 1)) >> 8)), sat(d[1] + ((k * (s.g + 1)) >> 8)),
        sat(d[2] + ((k * (s.b + 1)) >> 8)), sat(da + ((k * (s.a + 1)) >> 8)));
}

// Destination-over of a 32-bit pixel: opaque pixels and transparent sources are left alone.
inline void dstOver32(unsigned char* d, Rgba s)
{
    if (d[3] >= 255 || s.a == 0) return;
    under(d, s);
}

} // namespace

void LmBlender::drawBitmapBlend8(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                 int stride, unsigned colour, int mode)
{
    switch (mode) {
    case LME_BLEND_SRC_OVER: blendSrcOver8To32(x, y, dst, src, w, h, stride, colour); break;
    case LME_BLEND_DST_OVER: blendDstOver8To32(x, y, dst, src, w, h, stride, colour); break;
    case LME_BLEND_DST_OVER_NSA:
        blendDstOver8To32NSA(x, y, dst, src, w, h, stride, colour);
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Blender - LME_BLEND_DST_OVER_NSA");
        break;
    case LME_BLEND_OTHER:
        blendDstOverSA8To32(x, y, dst, src, w, h, stride, colour);
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Blender - LME_BLEND_OTHER");
        break;
    default: break;
    }
}

void LmBlender::drawBitmapBlend32(int x, int y, const LmBitmap* dst, const unsigned int* src, int w, int h,
                                  int stride, int mode)
{
    if (mode == LME_BLEND_SRC_OVER)
        blendSrcOver32To32(x, y, dst, src, w, h, stride);
    else if (mode == LME_BLEND_DST_OVER)
        blendDstOver32To32(x, y, dst, src, w, h, stride);
}

void LmBlender::drawBitmapBlend32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                  int stride, unsigned, int)
{
    blendDstOver32To32(x, y, dst, src, w, h, stride);
}

void LmBlender::drawBitmap(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                           unsigned colour)
{
    if (!dst) return;
    if (dst->bytesPerPixel != 4)
        drawBitmap8To8(x, y, dst, src, w, h);
    else
        drawBitmap8To32(x, y, dst, src, w, h, colour);
}

void LmBlender::drawBitmap(int x, int y, const LmBitmap* dst, const LmBitmap* src, unsigned colour)
{
    if (!src) return;
    drawBitmap(x, y, dst, src->pixels, (int)src->width, (int)src->height, colour);
}

void LmBlender::convertBGRAToARGB(LmBitmap* bitmap)
{
    if (!bitmap || !bitmap->pixels || bitmap->height < 1 || bitmap->bytesPerPixel != 4) return;
    swapRedBlue(bitmap->pixels, (size_t)bitmap->width * bitmap->height);
}

void LmBlender::swapRedBlue(unsigned char* p, size_t n)
{
    // Bytes 0 and 2 of each pixel trade places; as whole words the loop vectorises.
    for (size_t i = 0; i < n; ++i, p += 4) {
        uint32_t v;
        std::memcpy(&v, p, 4);
        v = (v & 0xFF00FF00u) | ((v >> 16) & 0xFFu) | ((v & 0xFFu) << 16);
        std::memcpy(p, &v, 4);
    }
}

// Mode 1: ordinary source-over with the coverage-scaled, premultiplied colour.
void LmBlender::blendSrcOver8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                  int stride, unsigned colour)
{
    const Rgba c = unpackArgb(colour);
    each8(x, y, dst, src, w, h, stride, 4, [&](unsigned char* d, unsigned m) {
        unsigned s = ((c.a + 1) * m) >> 8;
        if (s == 0) return;
        if (s >= 255) {
            put(d, c.r, c.g, c.b, s);
            return;
        }
        unsigned k = 255 - s;
        put(d, sat(((k * (d[0] + 1u)) >> 8) + (((c.r + 1) * m) >> 8)),
            sat(((k * (d[1] + 1u)) >> 8) + (((c.g + 1) * m) >> 8)),
            sat(((k * (d[2] + 1u)) >> 8) + (((c.b + 1) * m) >> 8)), sat(s + ((k * (d[3] + 1u)) >> 8)));
    }, true);
}

// Mode 2: the coloured coverage goes under the pixel.
void LmBlender::blendDstOver8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                  int stride, unsigned colour)
{
    const Rgba c = unpackArgb(colour);
    each8(x, y, dst, src, w, h, stride, 4, [&](unsigned char* d, unsigned m) {
        if (d[3] >= 255 || m == 0) return;
        under(d, {((c.r + 1) * m) >> 8, ((c.g + 1) * m) >> 8, ((c.b + 1) * m) >> 8, ((c.a + 1) * m) >> 8});
    }, true);
}

// Mode 3: coverage as on/off; the glyph's anti-aliased edge is dropped on purpose.
void LmBlender::blendDstOver8To32NSA(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                     int stride, unsigned colour)
{
    const Rgba c = unpackArgb(colour);
    each8(x, y, dst, src, w, h, stride, 4, [&](unsigned char* d, unsigned m) {
        if (d[3] >= 255 || m == 0) return;
        under(d, c);
    }, true);
}

// Mode 7: the text colour goes under the pixel, then the result is clipped to the glyph's
// coverage, so the glyph edge keeps its anti-aliasing for the text and whatever lies over it.
void LmBlender::blendDstOverSA8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                    int stride, unsigned colour)
{
    const Rgba c = unpackArgb(colour);
    const unsigned C[3] = {c.r, c.g, c.b};
    // The coloured coverage of every byte value: around text the pixel is mostly still clear.
    unsigned char coloured[256][4];
    for (unsigned m = 0; m < 256; ++m)
        put(coloured[m], ((c.r + 1) * m) >> 8, ((c.g + 1) * m) >> 8, ((c.b + 1) * m) >> 8, ((c.a + 1) * m) >> 8);
    auto pixel = [&](unsigned char* d, unsigned m) {
        unsigned da = d[3];
        unsigned sa = ((c.a + 1) * m) >> 8;
        if (da == 0) {
            std::memcpy(d, coloured[m], 4);
            return;
        }
        if (m == 255) {
            under(d, {c.r, c.g, c.b, sa});
            return;
        }
        if (da == 255) {
            for (int i = 0; i < 3; ++i) d[i] = (unsigned char)(((d[i] + 1u) * m) >> 8);
            d[3] = (unsigned char)m;
            return;
        }
        unsigned k = 255 - da;
        for (int i = 0; i < 3; ++i) {
            unsigned sc = ((C[i] + 1) * m) >> 8;
            unsigned p = (d[i] + ((k * (1 + sc)) >> 8) + 1) * m;
            d[i] = (unsigned char)(p > 65535 ? 255 : p >> 8);
        }
        unsigned p = (da + (((1 + sa) * k) >> 8) + 1) * m;
        d[3] = (unsigned char)(p > 65535 ? 255 : p >> 8);
    };
    auto ontoClear = [&](unsigned char* d, unsigned m) { std::memcpy(d, coloured[m], 4); };
    rows8(x, y, dst, src, w, h, stride, 4, [&](unsigned char* d, const unsigned char* s, size_t n) {
        if (LmRowOps::zeroBytes(s, n) == n) return;
        // A row still without alpha takes the coloured coverage unread: one streamed look at
        // the row costs far less than a cache miss at every covered pixel.
        if (LmRowOps::alphaRun(d, n, 0) == n)
            span8(d, s, n, 4, ontoClear, true);
        else
            span8(d, s, n, 4, pixel, true);
    });
}

void LmBlender::blendSrcOver32To32(int x, int y, const LmBitmap* dst, const unsigned int* src, int w, int h,
                                   int stride)
{
    each32(x, y, dst, src, w, h, stride, fetchWord, srcOver32, LmRowOps::srcOverWords);
}

void LmBlender::blendDstOver32To32(int x, int y, const LmBitmap* dst, const unsigned int* src, int w, int h,
                                   int stride)
{
    each32(x, y, dst, src, w, h, stride, fetchWord, dstOver32);
}

void LmBlender::blendDstOver32To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                   int stride)
{
    each32(x, y, dst, src, w, h, stride, fetchBytes, dstOver32);
}

void LmBlender::drawBitmap8To32(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h,
                                unsigned colour)
{
    const Rgba c = unpackArgb(colour);
    each8(x, y, dst, src, w, h, w, 4,
          [&](unsigned char* d, unsigned m) { put(d, c.r, c.g, c.b, ((c.a + 1) * m) >> 8); });
}

// Overlapping glyphs merge by maximum, never add up.
void LmBlender::drawBitmap8To8(int x, int y, const LmBitmap* dst, const unsigned char* src, int w, int h)
{
    if (!usable(dst, src, w, h, w, 1)) return;
    Clip c = clipTo(dst, x, y, w, h);
    if (c.empty()) return;
    for (int Y = c.y0; Y < c.y1; ++Y) {
        unsigned char* d = dst->pixels + (size_t)Y * dst->width + c.x0;
        const unsigned char* s = src + (size_t)(Y - y) * (size_t)w + (size_t)(c.x0 - x);
        LmRowOps::maxOf(d, d, s, (size_t)(c.x1 - c.x0));
    }
}

} // namespace LmFontEffect
