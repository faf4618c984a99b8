// Raw records past the stack's sizes: refused (warning, error 3) only when the work is huge.

#include "filters/MaskFixtures.h"

#include "effect/LmBevelProperty.h"
#include "effect/LmEmbossProperty.h"
#include "filters/LmBevel.h"
#include "filters/LmEmboss.h"
#include "foundation/Error.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace LmFontEffect;
using namespace LmTest;

// The windowed searches of an outside chiselled bevel or emboss cost about their reach per pixel
// of a canvas that grows with it: raw sizes of a few hundred on small text are refused too.
TEST(WorkBound, HugeWorkIsRefusedWithAWarning)
{
    const Mask large = rect(2000, 1000, 0, 0, 2000, 1000), small = rect(40, 20, 5, 5, 35, 15);
    const LmBevelProperty bevel(0, 1000.0f, 3, 1, 0, 0, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    const LmBevelProperty wideBevel(2, 514.0f, 3, 1, 1, 16, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    const LmEmbossProperty wideEmboss(2, 1000.0f, 3, 1, 1, 0, 1, 120, 30, 0xFF000080, 1, 0xFFFFFFFF, 1);
    const struct {
        std::unique_ptr<LmECore> layer;
        const Mask& mask;
        const char* message;
    } cases[] = {
        {strokeOf(1000, OUTSIDE), large, "stroke refused"},
        {strokeOf(1000, INSIDE), large, "stroke refused"},
        {outerOf(120, 5, 1000), large, "outer shadow refused"},
        {glowOf(3, 1000), large, "outer glow refused"},
        {glowOf(4, 1000), large, "inner glow refused"},
        {layerWith<LmBevel>(bevel), large, "bevel or emboss refused"},
        {layerWith<LmBevel>(wideBevel), small, "bevel or emboss search refused"},
        {layerWith<LmEmboss>(wideEmboss), small, "bevel or emboss search refused"},
    };
    for (const auto& c : cases) {
        FilterRun run(c.mask, &c.mask == &small ? 64 : 0, &c.mask == &small ? 64 : 0);
        LogCapture log;
        Error::SetError(0);
        EXPECT_TRUE(run.run(*c.layer) == 0 && Error::GetError() == 3 && run.untouched()) << c.message;
        ASSERT_EQ(log.lines().size(), 1u) << c.message;
        EXPECT_NE(log.lines()[0].message.find(c.message), std::string::npos);
    }
    // The same stroke on a small box is drawn.
    FilterRun drawn(rect(8, 8, 3, 3, 5, 5), 8, 8);
    Error::SetError(0);
    EXPECT_TRUE(drawn.run(*strokeOf(1000, OUTSIDE)) == 1 && Error::GetError() == 0);
    drawn.expectAlphas({{0, 0, 255}, {7, 7, 255}});
}
