#include "FuzzInput.h"

using namespace LmFontEffect;

// Any bytes as a font handed over by a caller: refused, or drawn without harm.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FontManager::GetInstance()->ClearFontMaps();
    LmTextObject object;
    if (object.Construct() != 1) return 0;
    char* bytes = new char[size ? size : 1];
    if (size) std::memcpy(bytes, data, size);
    object.SetFont("fuzz.ttf", bytes, (unsigned)size);
    object.SetText(L"Hello, fi \u00E9\u4E2D");
    LmPaint paint;
    paint.setTextSize(24.0f);
    object.SetPaint(paint);
    LmTest::giveLines(object, {LmTest::newLine(0, 30, 0, 12, 1)});
    renderSmall(object);
    return 0;
}
