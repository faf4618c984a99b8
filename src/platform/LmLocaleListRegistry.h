#ifndef LMFONTEFFECT_PLATFORM_LMLOCALELISTREGISTRY_H
#define LMFONTEFFECT_PLATFORM_LMLOCALELISTREGISTRY_H

#include <cstdint>
#include <string>
#include <vector>

namespace LmFontEffect {

// Process-wide table of locale lists. A list of BCP-47 tags separated by commas or spaces
// gets a stable non-zero id; the same tags in the same order give the same id. Thread-safe.
class LmLocaleListRegistry {
public:
    // 0 for null, empty or blank input.
    static uint32_t registerLocaleList(const char* tags);
    // The tags of an id, in order; empty for 0 or an unknown id.
    static std::vector<std::string> getLocales(uint32_t id);
};

} // namespace LmFontEffect

#endif
