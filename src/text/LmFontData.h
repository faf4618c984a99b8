#ifndef LMFONTEFFECT_TEXT_LMFONTDATA_H
#define LMFONTEFFECT_TEXT_LMFONTDATA_H

#include <cstdint>

namespace LmFontEffect {

// The bytes of one font, on the heap: a file's contents read at registration, or a buffer
// handed in by a caller. Shared by the registry and every font built over them, so the bytes
// go with the last of these, whatever the registry does, and a file changing on disk
// afterwards cannot reach them.
class LmFontData {
public:
    LmFontData() = default;
    LmFontData(char* buffer, uint32_t size) : buffer(buffer), size(size) {}
    ~LmFontData() { delete[] buffer; }
    LmFontData(const LmFontData&) = delete;
    LmFontData& operator=(const LmFontData&) = delete;

    char* buffer = nullptr;           // owned; null when the file could not be opened or read
    uint32_t size = 0;
};

} // namespace LmFontEffect

#endif
