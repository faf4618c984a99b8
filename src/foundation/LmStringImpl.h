#ifndef LMFONTEFFECT_FOUNDATION_LMSTRINGIMPL_H
#define LMFONTEFFECT_FOUNDATION_LMSTRINGIMPL_H

#include <cwchar>

namespace LmFontEffect {

// Private state of LmString: the character buffer, exactly length + 1 characters, or null.
class LmStringImpl {
public:
    wchar_t* mBuffer = nullptr;

    // Writes at most n units, the terminator included (n <= 0 writes nothing). Code points
    // from U+FFFF to U+10FFFF become a surrogate pair (U+FFFF too, matching the size
    // count); larger values become U+FFFD. Returns the units written, terminator included.
    static int UTF32To16(char16_t* dst, const wchar_t* src, int n);
};

} // namespace LmFontEffect

#endif
