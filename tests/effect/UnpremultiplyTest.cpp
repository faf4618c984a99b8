#include "effect/LmEffect.h"
#include "raster/LmBitmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace LmFontEffect;

// Every text alpha against every (alpha, channel) pair, each channel seeing every value, with an
// opaque row running into a clear one, against the dividing pass.
TEST(LmEffectFinish, UnpremultiplyMatchesTheDividingPassOnEveryInput)
{
    LmBitmap start(256, 257, 4); // the last row stays clear
    for (unsigned i = 0; i < 256 * 256; ++i) {
        const unsigned char px[4] = {(unsigned char)i, (unsigned char)(255 - i), (unsigned char)(i ^ 0x5A),
                                     (unsigned char)(i >> 8)};
        std::memcpy(start.pixels + 4 * i, px, 4);
    }
    for (unsigned k = 0; k < 256; ++k) {
        LmBitmap fast(start), expected(start);
        unsigned char* p = expected.pixels;
        for (unsigned i = 0; i < 256 * 257; ++i, p += 4) {
            if ((p[0] | p[1] | p[2] | p[3]) == 0) continue;
            const unsigned ka = k * (p[3] + 1u), a = ka >> 8;
            p[3] = (unsigned char)a;
            for (int c = 0; c < 3; ++c)
                p[c] = ka <= 255 ? 0 : (unsigned char)std::min(((k * (p[c] + 1u)) & 0xFF00u) / a, 255u);
        }
        LmEffect effect;
        effect.addText((k << 24) | 0x123456u);
        effect.compositeLayers(&fast);
        ASSERT_EQ(0, std::memcmp(expected.pixels, fast.pixels, 256 * 257 * 4)) << "text alpha " << k;
    }
}
