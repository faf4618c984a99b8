#ifndef LMFONTEFFECT_TEXT_FONTENTRY_H
#define LMFONTEFFECT_TEXT_FONTENTRY_H

#include <cstdint>

namespace LmFontEffect {

class LmString;

// One font file of a system family, as the platform's font configuration describes it.
// The entry owns both strings; the family that holds the entry owns the entry.
class FontEntry {
public:
    FontEntry() = default;
    ~FontEntry();
    FontEntry(const FontEntry&) = delete;
    FontEntry& operator=(const FontEntry&) = delete;

    LmString* path = nullptr;      // the font file
    int32_t ttcIndex = 0;          // face index inside a collection
    int32_t weight = 400;
    bool italic = false;
    LmString* reserved = nullptr;  // never filled; freed if a caller sets it
};

} // namespace LmFontEffect

#endif
