#ifndef LMFONTEFFECT_TESTS_FUZZ_FUZZINPUT_H
#define LMFONTEFFECT_TESTS_FUZZ_FUZZINPUT_H

#include "LmFontEffect.h"
#include "text/TextTestSupport.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

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
inline const uint32_t* renderSmall(LmFontEffect::LmTextObject& object, int viewW = 96, int viewH = 40)
{
    LmFontEffect::LmEffect* effect = object.GetEffect();
    LmFontEffect::LmView* view = object.GetView();
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


#endif
