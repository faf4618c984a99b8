#include "effect/LmEffect.h"
#include "raster/LmBitmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace LmFontEffect;

namespace {

// The straightforward pass the stack's output finish is held to: a = k(A + 1) >> 8,
// c' = min(255, (k(c + 1) & 0xFF00) / a), colour 0 when a is 0, clear pixels untouched.
void referenceUnpremultiply(unsigned char* p, size_t n, unsigned k)
{
    for (size_t i = 0; i < n; ++i, p += 4) {
        if ((p[0] | p[1] | p[2] | p[3]) == 0) continue;
        unsigned ka = k * (p[3] + 1u);
        unsigned a = ka >> 8;
        p[3] = (unsigned char)a;
        if (ka <= 255) {
            p[0] = p[1] = p[2] = 0;
            continue;
        }
        for (int c = 0; c < 3; ++c) p[c] = (unsigned char)std::min(((k * (p[c] + 1u)) & 0xFF00u) / a, 255u);
    }
}

} // namespace

// Every text alpha k against every (alpha, channel) pair, each channel seeing every value; clear
// and opaque pixels come in runs and alone, as the word-wise skips see them.
TEST(LmEffectFinish, UnpremultiplyMatchesTheDividingPassOnEveryInput)
{
    LmBitmap start(256, 256 + 3, 4);
    ASSERT_NE(nullptr, start.pixels);
    for (unsigned A = 0; A < 256; ++A) {
        for (unsigned c = 0; c < 256; ++c) {
            unsigned char* p = start.pixels + (A * 256 + c) * 4;
            const unsigned char px[4] = {(unsigned char)c, (unsigned char)(255 - c), (unsigned char)(c ^ 0x5A),
                                         (unsigned char)A};
            std::memcpy(p, px, 4);
        }
    }
    // Tail rows: opaque runs broken by one clear pixel, and a lone opaque pixel among clear ones.
    unsigned char* tail = start.pixels + 256 * 256 * 4;
    for (unsigned i = 0; i < 3 * 256; ++i) {
        const bool opaque = (i % 7 != 3) != (i >= 512);
        const unsigned char px[4] = {opaque ? (unsigned char)i : (unsigned char)0, 9, 0, (unsigned char)(opaque ? 255 : 0)};
        std::memcpy(tail + i * 4, px, 4);
    }

    for (unsigned k = 0; k < 256; ++k) {
        LmBitmap fast(start);
        LmBitmap expected(start);
        referenceUnpremultiply(expected.pixels, (size_t)256 * 259, k);
        LmEffect effect;
        effect.addText((k << 24) | 0x123456u);
        effect.compositeLayers(&fast);
        ASSERT_EQ(0, std::memcmp(expected.pixels, fast.pixels, (size_t)256 * 259 * 4)) << "text alpha " << k;
    }
}
