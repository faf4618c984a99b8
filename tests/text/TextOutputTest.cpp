#include "text/TextTestSupport.h"

#include <cstring>

using namespace LmTest;

// A transparent background sends a render through the general finish (clear output, swap,
// source-over), no background through the in-place one: the bytes must not differ.
TEST(RenderFinish, InPlaceFinishGivesTheBytesOfTheGeneralOne)
{
    freshFontManager(false);
    const int gravities[] = {0x33, 0x55, 0x11, 0x53, 0x35};
    for (int c = 0; c < 5; ++c) {
        std::vector<uint32_t> images[2];
        for (int general = 0; general < 2; ++general) {
            LmTextObject object;
            prepareText(object, L"Hello", paintOf(40.0f), 200, 80);
            object.SetTextColor(c < 3 ? 0xFFC03010u : 0x60C03010u); // translucent text: alpha below 255
            object.GetView()->SetPadding(20 * c, 10, 5, 30 * c);
            object.GetView()->gravity = gravities[c];
            if (c % 2) object.GetEffect()->addOuterShadowText(120.0f, 6.0f, 8.0f, 0xFF2040A0u, 0.6f);
            giveLines(object, {newLine(-12, 45, 0, 5)});
            if (general) object.SetBackgroundColor(0x00FFFFFFu, true);
            const uint32_t* px = object.RenderTextEffect(200, 80);
            ASSERT_NE(nullptr, px);
            images[general].assign(px, px + 200 * 80);
        }
        ASSERT_EQ(images[1], images[0]) << "case " << c;
    }
}

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
