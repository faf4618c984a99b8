#include "text/LmFontFamily.h"

#include "foundation/List.h"
#include "text/FontEntry.h"

namespace LmFontEffect {

LmFontFamily::~LmFontFamily()
{
    if (!fonts) return;
    int count = fonts->GetCount();
    for (int i = 0; i < count; ++i) delete static_cast<FontEntry*>(fonts->Get(i));
    delete fonts;
}

} // namespace LmFontEffect
