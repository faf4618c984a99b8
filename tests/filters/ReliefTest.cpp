// Bevel and emboss: the worked numbers of the shared machinery, the layers' margins, and what
// bad input must not do.
#include "filters/MaskFixtures.h"

#include "effect/LmBevelProperty.h"
#include "effect/LmEmbossProperty.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"
#include "filters/LmRelief.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

using namespace LmFontEffect;
using LmTest::FilterRun;

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

LmBevelProperty bevelRecord(int style, float size, int technique, int soften = 0, float depth = 3,
                            float altitude = 30, int direction = 1, float angle = 120)
{
    return LmBevelProperty(style, size, depth, direction, technique, soften, 1, angle, altitude, 0xFF000080, 1,
                           0xFFFFFFFF, 1);
}

LmEmbossProperty embossRecord(int style, float size, int technique, int soften = 0)
{
    return LmEmbossProperty(style, size, 3, 1, technique, soften, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
}

} // namespace

TEST(Relief, BlurLeavesItsBorderAsTheDestinationHeldIt)
{
    std::vector<unsigned char> src(7 * 7, 0), dst(7 * 7, 9);
    src[3 * 7 + 3] = 255;
    LmBevel::blur(src.data(), dst.data(), 1, 7, 7);
    // The weights inside are pinned by the relief goldens.
    EXPECT_EQ(dst[0], 9);
    EXPECT_EQ(dst[6 * 7 + 6], 9);
}

// The mirrored light of direction 0 is pinned by the relief goldens.
TEST(Relief, LightFloorsTheDepth)
{
    const LmBevelProperty flat = bevelRecord(1, 5, 0, 0, 0);
    EXPECT_EQ(LmRelief::light(flat, 0.1f).nz, 2.4f / 0.1f);
    EXPECT_EQ(LmRelief::light(flat, 0.2f).nz, 2.4f / 0.2f);
}

TEST(Relief, OffsetsAreTheWidthPlusSoftenSaturated)
{
    const struct {
        float size;
        int soften, bevel, emboss;
    } cases[] = {{5.5f, 3, 9, 7}, {10, 2, 12, 8}, {9, 0, 9, 6}, {0, 0, 0, 1}, {kNaN, 4, 4, 4}, {1e30f, 16, INT_MAX, INT_MAX}};
    for (const auto& c : cases) {
        LmBevel bevel;
        LmEmboss emboss;
        LmBevelProperty b = bevelRecord(1, c.size, 0, c.soften);
        LmEmbossProperty e = embossRecord(0, c.size, 0, c.soften);
        bevel.setProperty(&b);
        emboss.setProperty(&e);
        EXPECT_EQ(bevel.getOffset(), c.bevel) << "size " << c.size;
        EXPECT_EQ(emboss.getOffset(), c.emboss) << "size " << c.size;
    }
}

// The all-filters bad-input table gives the relief layers a sane depth and light; here those are
// NaN or far out of range, for every style and technique, and must run inside the buffers.
TEST(Relief, LightingOutOfRangeRunsInsideTheBuffers)
{
    for (float bad : {kNaN, 1e9f, -1e9f})
        for (int style : {0, 1, 3})
            for (int technique : {0, 1}) {
                LmBevelProperty b(style, 4, bad, 1, technique, 99, 1, bad, bad, 0xFF000000, 1, 0xFFFFFFFF, 1);
                LmBevel bevel;
                LmEmboss emboss;
                for (LmECore* layer : {(LmECore*)&bevel, (LmECore*)&emboss}) {
                    layer->setProperty(&b); // either layer reads any lighting record
                    FilterRun run(LmTest::disc(16, 5));
                    run.run(*layer);
                }
            }
}
