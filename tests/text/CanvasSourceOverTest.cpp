#include "platform/LmCanvas.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace LmFontEffect;

// Every pair of alphas; each channel sees 64 (source, destination) pairs per pair, a different
// spread for each. (The whole 2^32 domain was checked once offline.)
TEST(LmCanvasSourceOver, IntegerBlendGivesTheBytesOfTheDoubles)
{
    for (unsigned sa = 0; sa < 256; ++sa) {
        for (unsigned da = 0; da < 256; ++da) {
            for (unsigned s = (sa + da) & 3; s < 256; s += 4) {
                const unsigned d = (s * 97 + sa * 31 + da * 7) & 255;
                const unsigned char src[4] = {(unsigned char)s, (unsigned char)(255 - s), (unsigned char)(s ^ 0x33),
                                              (unsigned char)sa};
                unsigned char fast[4] = {(unsigned char)d, (unsigned char)(d ^ 0xA5), (unsigned char)(255 - d),
                                         (unsigned char)da};
                unsigned char expected[4];
                std::memcpy(expected, fast, 4);
                LmCanvas::blendPixelInDoubles(expected, src);
                LmCanvas::blendPixel(fast, src);
                ASSERT_EQ(0, std::memcmp(expected, fast, 4)) << "sa " << sa << " da " << da << " s " << s << " d " << d;
            }
        }
    }
}
