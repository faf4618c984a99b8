#ifndef LMFONTEFFECT_FILTERS_LMMASKBOX_H
#define LMFONTEFFECT_FILTERS_LMMASKBOX_H

#include "effect/LmECore.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace LmFontEffect {

class LmBitmap;

// What every mask filter starts from: the text box of a post-processing call, made safe to read
// (clamped to the mask the way the effect stack clamps it, never inverted), plus the work-buffer
// allocation the filters share. Work buffers are plain heap blocks, sized in 64 bits and refused
// beyond the bitmap cap, so that an absurd effect size gives up instead of exhausting memory.
class LmMaskBox {
public:
    struct FreeDeleter {
        void operator()(void* p) const { std::free(p); }
    };
    template <class T> using Block = std::unique_ptr<T[], FreeDeleter>;

    // Largest work buffer in bytes.
    static const int64_t kMaxBytes;

    // False when the call lacks its text box, target or mask (or the mask's pixels).
    bool take(const LmECore::ParamPostProcessing* pp);

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    // Mask row top + i, from column left.
    const unsigned char* row(int i) const;
    // Copies the box into dst (row stride dstStride) with its top-left corner at (dstX, dstY).
    void copyTo(unsigned char* dst, int64_t dstStride, int64_t dstX, int64_t dstY) const;

    // count elements of T, zeroed on request; null when count is negative, the byte size passes
    // kMaxBytes or the system refuses. A count of 0 still gives a unique block.
    template <class T> static Block<T> allocate(int64_t count, bool zeroed)
    {
        return Block<T>(static_cast<T*>(allocateBytes(count, (int64_t)sizeof(T), zeroed)));
    }

    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    const LmBitmap* mask = nullptr;
    LmBitmap* target = nullptr;

    // Work bound: about 10^10 byte-taps, a second or so on a current core. Sizes past 100 only
    // come from raw records; one that would need more is refused rather than left to run for
    // minutes.
    static const int64_t kMaxWork;

    // True when pixels x perPixel stays within kMaxWork; otherwise logs a warning naming `what`,
    // sets error 3 (out of range) and returns false. Negative counts pass (nothing to do).
    static bool affordable(int64_t pixels, int64_t perPixel, const char* what);

private:
    static void* allocateBytes(int64_t count, int64_t elementSize, bool zeroed);
};

} // namespace LmFontEffect

#endif
