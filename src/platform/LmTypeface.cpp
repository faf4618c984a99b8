#include "platform/LmTypeface.h"

#include "foundation/Error.h"

#include <new>

namespace LmFontEffect {

LmTypeface::LmTypeface(std::vector<std::shared_ptr<LmPlatformFamily>>&& families, int weight, bool italic)
    : mFamilies(std::move(families)), mWeight(weight), mItalic(italic)
{
}

std::shared_ptr<LmTypeface> LmTypeface::createFromFamilies(std::vector<std::shared_ptr<LmPlatformFamily>>&& families,
                                                           int weight, bool italic)
{
    std::vector<std::shared_ptr<LmPlatformFamily>> usable;
    for (auto& family : families) {
        if (family && family->getNumFonts() > 0) usable.push_back(std::move(family));
    }
    families.clear();
    if (usable.empty()) return nullptr;
    std::shared_ptr<LmTypeface> typeface(new (std::nothrow) LmTypeface(std::move(usable), weight, italic));
    if (!typeface) Error::SetError(Error::LM_ERR_PLATFORM);
    return typeface;
}

LmTypeface::FontChoice LmTypeface::styleFont(const LmPlatformFamily& family) const
{
    FontChoice choice;
    const LmStyledFont* match = family.getClosestMatch(mWeight, mItalic);
    if (!match) return choice;
    choice.font = match->font;
    choice.fakery.fakeBold = mWeight >= 600 && mWeight - match->weight >= 300;
    choice.fakery.fakeItalic = mItalic && !match->italic;
    return choice;
}

LmTypeface::FontChoice LmTypeface::chooseFont(uint32_t codePoint, int variant) const
{
    for (const auto& family : mFamilies) {
        const int fv = family->getVariant();
        if (variant != 0 && fv != 0 && fv != variant) continue;
        if (family->hasGlyph(codePoint)) return styleFont(*family);
    }
    return styleFont(*mFamilies.front());
}

} // namespace LmFontEffect
