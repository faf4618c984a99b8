#include "platform/LmPlatformFamily.h"

#include <cstdlib>

namespace LmFontEffect {

LmPlatformFamily::LmPlatformFamily(uint32_t localeListId, int variant, std::vector<LmStyledFont> fonts)
    : mLocaleListId(localeListId), mVariant(variant)
{
    for (LmStyledFont& f : fonts) {
        if (f.font) mFonts.push_back(std::move(f));
    }
}

bool LmPlatformFamily::hasGlyph(uint32_t codePoint) const
{
    for (const LmStyledFont& f : mFonts) {
        if (f.font->HasGlyph(codePoint)) return true;
    }
    return false;
}

const LmStyledFont* LmPlatformFamily::getClosestMatch(int weight, bool italic) const
{
    const LmStyledFont* best = nullptr;
    long bestScore = 0;
    for (const LmStyledFont& f : mFonts) {
        // A wrong slant costs more than any weight distance (weights span 1..1000).
        long score = (f.italic != italic ? 10000L : 0L) + 2L * std::labs((long)f.weight - weight);
        // Equal distance on both sides: bold requests lean heavier, others lighter.
        if (f.weight != weight) {
            const bool heavier = f.weight > weight;
            if (heavier != (weight >= 600)) score += 1;
        }
        if (!best || score < bestScore) {
            best = &f;
            bestScore = score;
        }
    }
    return best;
}

} // namespace LmFontEffect
