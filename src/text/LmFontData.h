#ifndef LMFONTEFFECT_TEXT_LMFONTDATA_H
#define LMFONTEFFECT_TEXT_LMFONTDATA_H

#include <cstdint>

namespace LmFontEffect {

// The bytes of one font file, kept for the life of the process because the fonts built over
// them borrow them. A file is mapped read-only; a buffer handed in by a caller is heap memory.
class LmFontData {
public:
    LmFontData() = default;
    LmFontData(char* buffer, uint32_t size, bool mapped) : buffer(buffer), size(size), mapped(mapped) {}
    ~LmFontData();
    LmFontData(const LmFontData&) = delete;
    LmFontData& operator=(const LmFontData&) = delete;

    char* buffer = nullptr;           // null when the file could not be opened or mapped
    uint32_t size = 0;
    bool mapped = false;              // unmapped rather than array-deleted
};

} // namespace LmFontEffect

#endif
