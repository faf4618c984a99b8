#include "text/LmSystemFamilies.h"

#include "foundation/List.h"
#include "foundation/LmString.h"
#include "platform/LmLocaleListRegistry.h"
#include "platform/LmSystemFonts.h"
#include "text/FontEntry.h"
#include "text/FontManager.h"
#include "text/LmFontFamily.h"

namespace LmFontEffect {

namespace {

LmFontFamily* newFamily(const LmSystemFonts::Family& installed)
{
    LmFontFamily* family = new LmFontFamily();
    family->localeListId = LmLocaleListRegistry::registerLocaleList(installed.locale.c_str());
    family->fonts = new List();
    family->fonts->Construct();
    for (const LmSystemFonts::Face& face : installed.faces) {
        FontEntry* entry = new FontEntry();
        entry->path = new LmString();
        entry->path->Construct(face.path.c_str());
        entry->ttcIndex = face.index;
        entry->weight = face.weight;
        family->fonts->Add(entry);
    }
    return family;
}

} // namespace

int LmSystemFamilies::Collect(List* families)
{
    if (!families) return 0;
    int added = 0;
    for (const LmSystemFonts::Family& installed : LmSystemFonts::ListFamilies()) {
        LmFontFamily* family = newFamily(installed);
        if (!families->Add(family)) {  // a list that was never constructed
            delete family;
            break;
        }
        added++;
    }
    return added;
}

bool LmSystemFamilies::Install()
{
    FontManager* manager = FontManager::GetInstance();
    if (manager->IsSystemFontFamiliesAlreadySet()) return true;
    List* list = new List();
    list->Construct();
    Collect(list);
    const int n = list->GetCount();
    for (int i = 0; i < n; i++) {
        LmFontFamily* family = static_cast<LmFontFamily*>(list->Get(i));
        if (family->localeListId == 0) family->loaded = manager->BuildMinikinFamily(family);
    }
    if (manager->SetSystemFontFamilies(list) && manager->GetSystemFontFamilies() == list) return true;
    for (int i = 0; i < n; i++) delete static_cast<LmFontFamily*>(list->Get(i));
    delete list;
    return manager->IsSystemFontFamiliesAlreadySet();
}

} // namespace LmFontEffect
