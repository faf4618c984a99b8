#include "text/FontEntry.h"

#include "foundation/LmString.h"

namespace LmFontEffect {

FontEntry::~FontEntry()
{
    delete path;
    delete reserved;
}

} // namespace LmFontEffect
