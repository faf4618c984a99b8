#include "text/TextTestSupport.h"

#include "effect/LmEffect.h"
#include "text/LmView.h"

#include <vector>

using namespace LmFontEffect;
using namespace LmTest;

namespace {

// One render of "Hello" into a 200 x 80 view; a transparent background sends the render through
// the general finish (clear output, swap, source-over), no background through the in-place one.
std::vector<uint32_t> renderHello(int gravity, int padding, uint32_t textColour, bool shadow, bool transparentBackground)
{
    LmTextObject object;
    EXPECT_EQ(1, object.Construct());
    object.SetText(L"Hello");
    object.SetFont(kSansPath);
    LmPaint paint = paintOf(40.0f);
    object.SetPaint(paint);
    object.SetTextColor(textColour);
    object.GetView()->SetSize(200, 80);
    object.GetView()->SetPadding(padding, padding, padding, padding);
    object.GetView()->gravity = gravity;
    if (shadow) object.GetEffect()->addOuterShadowText(120.0f, 6.0f, 8.0f, 0xFF2040A0u, 0.6f);
    LineInfo* line = newLine(-12, 45, 0, 5);
    line->bounds = LmRect(-12, 0, 200, 80);
    giveLines(object, {line});
    if (transparentBackground) object.SetBackgroundColor(0x00FFFFFFu, true);
    const uint32_t* px = object.RenderTextEffect(200, 80);
    if (!px) return {};
    return std::vector<uint32_t>(px, px + 200 * 80);
}

} // namespace

TEST(RenderFinish, InPlaceFinishGivesTheBytesOfTheGeneralOne)
{
    freshFontManager(false);
    struct Case {
        int gravity, padding;
        uint32_t colour;
        bool shadow;
    };
    for (const Case& c : {Case{0x33, 0, 0xFFC03010u, false}, Case{0x55, 10, 0xFFC03010u, true},
                          Case{0x11, 25, 0x80C03010u, false}, Case{0x53, 10, 0x40FFFFFFu, true},
                          Case{0x35, 90, 0xFF000000u, true}}) {
        const std::vector<uint32_t> inPlace = renderHello(c.gravity, c.padding, c.colour, c.shadow, false);
        const std::vector<uint32_t> general = renderHello(c.gravity, c.padding, c.colour, c.shadow, true);
        ASSERT_EQ((size_t)200 * 80, inPlace.size());
        ASSERT_EQ(general, inPlace) << "gravity " << std::hex << c.gravity << " colour " << c.colour;
    }
}
