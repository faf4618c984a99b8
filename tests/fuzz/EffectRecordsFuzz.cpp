#include "FuzzInput.h"

using namespace LmFontEffect;

namespace {

// A few gradient stops from the input; the count itself is fuzzed too (negative, too many).
void stopsOf(FuzzInput& in, int* count, LmGradient stops[8])
{
    *count = (int)in.take<int8_t>();
    for (int i = 0; i < 8; ++i) {
        stops[i].colour = in.take<uint32_t>();
        stops[i].opacity = in.take<float>();
        stops[i].position = in.take<float>();
    }
    if (*count > 8) *count = 8;
}

} // namespace

// Effect records with any values (NaN, infinities, huge and negative sizes) through the
// stack's add operations, then a render.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput in(data, size);
    LmTextObject object;
    if (object.Construct() != 1 || object.SetFont(LmTest::kSansPath) != 1) return 0;
    object.SetText(L"Ag");
    LmPaint paint;
    paint.setTextSize(20.0f);
    object.SetPaint(paint);
    LmTest::giveLines(object, {LmTest::newLine(4, 28, 0, 2, 1)});
    LmEffect* stack = object.GetEffect();
    for (int n = 0; n < 6 && !in.done(); ++n) {
        int kind = in.take<uint8_t>() % 12;
        float a = in.take<float>(), b = in.take<float>(), c = in.take<float>(), o = in.take<float>();
        unsigned colour = in.take<uint32_t>();
        int count = 0;
        LmGradient stops[8];
        switch (kind) {
        case 0: stack->addOuterShadowText(a, b, c, colour, o); break;
        case 1: stack->addInnerShadowText(a, b, c, colour, o); break;
        case 2: stopsOf(in, &count, stops); stack->addOuterGlowText(a, colour, o, count, stops); break;
        case 3: stopsOf(in, &count, stops); stack->addInnerGlowText(a, colour, o, count, stops); break;
        case 4:
        case 5: {
            int style = in.take<int8_t>(), direction = in.take<int8_t>(), technique = in.take<int8_t>();
            int soften = in.take<int16_t>();
            float altitude = in.take<float>(), so = in.take<float>(), ho = in.take<float>();
            unsigned highlight = in.take<uint32_t>();
            if (kind == 4)
                stack->addBevelText(style, a, b, direction, technique, soften, o, c, altitude, colour, so, highlight, ho);
            else
                stack->addEmbossText(style, a, b, direction, technique, soften, o, c, altitude, colour, so, highlight, ho);
            break;
        }
        case 6: stopsOf(in, &count, stops); stack->addLinearGradientText(a, b, o, count, stops); break;
        case 7: stopsOf(in, &count, stops); stack->addRadialGradientText(b, o, count, stops); break;
        case 8: stack->addStrokeText(a, colour, o, in.take<int8_t>(), in.take<int8_t>()); break;
        case 9: {
            LmBitmap tile(in.take<uint8_t>() % 9, in.take<uint8_t>() % 9, 4);
            stack->addPatternText(&tile, b, o);
            break;
        }
        case 10: stack->addText(colour, o); break;
        default: stack->removeEffect(in.take<int8_t>()); break;
        }
    }
    renderSmall(object);
    return 0;
}
