#include "FuzzInput.h"

#include <cmath>
#include <string>

using namespace LmFontEffect;

// Any text (ill-formed UTF-16 included) and any line records through the text object.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput in(data, size);
    LmTextObject object;
    if (object.Construct() != 1 || object.SetFont(LmTest::kSansPath) != 1) return 0;
    LmPaint paint;
    // Any size, NaN and infinities included; finite ones folded small to keep runs quick.
    float textSize = in.take<float>();
    if (std::isfinite(textSize) && std::fabs(textSize) > 256.0f) textSize = std::fmod(textSize, 256.0f);
    paint.setTextSize(textSize);
    object.SetPaint(paint);
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
