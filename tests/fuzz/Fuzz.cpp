// The libFuzzer targets. Each fuzz_<name> program is this file built with LM_FUZZ_TARGET set
// to one of the functions below.
#include "LmFontEffect.h"
#include "Scene.h"
#include "SceneRenderer.h"
#include "ToolError.h"
#include "text/TextTestSupport.h"

#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

using namespace LmFontEffect;

// Outside an anonymous namespace: the targets not chosen must not warn as unused.
namespace LmFuzz {

// Reads typed values off the fuzzer's bytes; past the end every value is 0.
class FuzzInput {
public:
    FuzzInput(const uint8_t* data, size_t size) : mData(data), mSize(size) {}

    template <class T>
    T take()
    {
        T value{};
        size_t n = sizeof(T) < mSize - mPos ? sizeof(T) : mSize - mPos;
        std::memcpy(&value, mData + mPos, n);
        mPos += n;
        return value;
    }
    bool done() const { return mPos >= mSize; }
    const uint8_t* rest(size_t* size) const
    {
        *size = mSize - mPos;
        return mData + mPos;
    }

private:
    const uint8_t* mData;
    size_t mSize;
    size_t mPos = 0;
};

// The text object every target renders: DejaVu Sans, a small view and one line of the text.
const uint32_t* renderSmall(LmTextObject& object, int viewW = 96, int viewH = 40)
{
    LmEffect* effect = object.GetEffect();
    LmView* view = object.GetView();
    if (!effect || !view || view->SetSize(viewW, viewH) != 1) return nullptr;
    // Margins past a few thousand pixels only make the run slow, not different.
    // Margins saturate at the int range: add them in 64 bits.
    const long long w = (long long)viewW + effect->getLeftOffset() + effect->getRightOffset();
    const long long h = (long long)viewH + effect->getTopOffset() + effect->getBottomOffset();
    if (w > 2048 || h > 2048) return nullptr;
    view->SetBitmapWidth((int)w);
    view->SetBitmapHeight((int)h);
    return object.RenderTextEffect((int)w, (int)h);
}

void setTextSize(LmTextObject& object, float size)
{
    LmPaint paint;
    paint.setTextSize(size);
    object.SetPaint(paint);
}

// Any bytes as a font handed over by a caller: refused, or drawn without harm.
int fuzzFontBytes(const uint8_t* data, size_t size)
{
    FontManager::GetInstance()->ClearFontMaps();
    LmTextObject object;
    if (object.Construct() != 1) return 0;
    char* bytes = new char[size ? size : 1];
    if (size) std::memcpy(bytes, data, size);
    object.SetFont("fuzz.ttf", bytes, (unsigned)size);
    object.SetText(L"Hello, fi \u00E9\u4E2D");
    setTextSize(object, 24.0f);
    LmTest::giveLines(object, {LmTest::newLine(0, 30, 0, 12, 1)});
    renderSmall(object);
    return 0;
}

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

// Effect records with any values (NaN, infinities, huge and negative sizes) through the
// stack's add operations, then a render.
int fuzzEffectRecords(const uint8_t* data, size_t size)
{
    FuzzInput in(data, size);
    LmTextObject object;
    if (object.Construct() != 1 || object.SetFont(LmTest::kSansPath) != 1) return 0;
    object.SetText(L"Ag");
    setTextSize(object, 20.0f);
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

// Any text (ill-formed UTF-16 included) and any line records through the text object.
int fuzzTextLines(const uint8_t* data, size_t size)
{
    FuzzInput in(data, size);
    LmTextObject object;
    if (object.Construct() != 1 || object.SetFont(LmTest::kSansPath) != 1) return 0;
    // Any size, NaN and infinities included; finite ones folded small to keep runs quick.
    float textSize = in.take<float>();
    if (std::isfinite(textSize) && std::fabs(textSize) > 256.0f) textSize = std::fmod(textSize, 256.0f);
    setTextSize(object, textSize);
    object.SetTextStyle(in.take<uint8_t>() & 1, in.take<uint8_t>() & 1);
    List lines;
    lines.Construct();
    int count = in.take<uint8_t>() % 4;
    for (int i = 0; i < count; ++i) {
        // Every field as the caller gives it, the box included.
        auto* line = new LineInfo();
        line->x = in.take<int32_t>();
        line->baseline = in.take<int32_t>();
        line->start = in.take<int16_t>();
        line->end = in.take<int16_t>();
        line->direction = in.take<int8_t>();
        line->bounds = LmRect(in.take<int32_t>(), in.take<int32_t>(), in.take<int32_t>(), in.take<int32_t>());
        lines.Add(line);
    }
    size_t left = 0;
    const uint8_t* rest = in.rest(&left);
    std::wstring text;
    for (size_t i = 0; i + 1 < left && text.size() < 256; i += 2) text.push_back((wchar_t)(rest[i] | rest[i + 1] << 8));
    object.SetText(text.c_str());
    if (object.SetLineInfo(&lines) != 1) {
        for (int i = 0; i < lines.GetCount(); ++i) delete static_cast<LineInfo*>(lines.Get(i));
    }
    lines.RemoveAll();
    renderSmall(object);
    return 0;
}

// Any bytes as a scene file: a ToolError, or a render when the scene is small enough to be quick.
int fuzzScene(const uint8_t* data, size_t size)
{
    using namespace LmTextTool;
    static const std::string path = "/tmp/lm_fuzz_scene_" + std::to_string(getpid()) + ".json";
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return 0;
    std::fwrite(data, 1, size, f);
    std::fclose(f);
    try {
        Scene scene = Scene::load(path);
        if (scene.text.size() > 64 || !(scene.size > 0 && scene.size <= 96) || scene.width > 512 ||
            scene.height > 512 || scene.effects.size() > 4)
            return 0;
        SceneRenderer::render(scene);
    } catch (const ToolError&) {
    }
    return 0;
}

} // namespace LmFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return LmFuzz::LM_FUZZ_TARGET(data, size); }
