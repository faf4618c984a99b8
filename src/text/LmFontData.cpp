#include "text/LmFontData.h"

#include <sys/mman.h>

namespace LmFontEffect {

LmFontData::~LmFontData()
{
    if (!buffer) return;
    if (mapped)
        munmap(buffer, size);
    else
        delete[] buffer;
}

} // namespace LmFontEffect
