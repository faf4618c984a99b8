#include "platform/LmLayoutUtils.h"

#include "platform/LmLocaleListRegistry.h"

#include <hb.h>
#include <unicode/ubidi.h>
#include <unicode/uchar.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace LmFontEffect {

namespace {

struct BidiRun {
    size_t start;  // absolute UTF-16 index
    size_t end;
    bool rtl;
};

struct FontRun {
    size_t start;
    size_t end;
    LmTypeface::FontChoice choice;
    hb_script_t script;
};

uint32_t decodeAt(const uint16_t* text, size_t end, size_t i, size_t* next)
{
    const uint32_t u = text[i];
    if (u >= 0xD800 && u <= 0xDBFF && i + 1 < end && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
        *next = i + 2;
        return 0x10000 + ((u - 0xD800) << 10) + (text[i + 1] - 0xDC00);
    }
    *next = i + 1;
    return (u >= 0xD800 && u <= 0xDFFF) ? 0xFFFD : u;
}

// Characters that belong to the character before them: marks, joiners, variation selectors
// and the keycap. They stay in their base's font so a cluster is never split across fonts.
bool attachesToPrevious(uint32_t cp)
{
    if (cp == 0x200C || cp == 0x200D || cp == 0x20E3) return true;
    if ((cp >= 0xFE00 && cp <= 0xFE0F) || (cp >= 0xE0100 && cp <= 0xE01EF)) return true;
    const int8_t type = u_charType((UChar32)cp);
    return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_COMBINING_SPACING_MARK;
}

bool isNeutralScript(hb_script_t s)
{
    return s == HB_SCRIPT_COMMON || s == HB_SCRIPT_INHERITED || s == HB_SCRIPT_UNKNOWN || s == HB_SCRIPT_INVALID;
}

std::vector<BidiRun> bidiRuns(int bidi, const uint16_t* text, size_t start, size_t count, size_t contextStart,
                              size_t contextCount)
{
    std::vector<BidiRun> runs;
    if (bidi == LmLayoutUtils::kBidiForceLTR || bidi == LmLayoutUtils::kBidiForceRTL) {
        runs.push_back({start, start + count, bidi == LmLayoutUtils::kBidiForceRTL});
        return runs;
    }
    UBiDiLevel level = UBIDI_DEFAULT_LTR;
    if (bidi == LmLayoutUtils::kBidiLTR) level = 0;
    else if (bidi == LmLayoutUtils::kBidiRTL) level = 1;
    else if (bidi == LmLayoutUtils::kBidiDefaultRTL) level = UBIDI_DEFAULT_RTL;

    const UChar* u = reinterpret_cast<const UChar*>(text);
    UErrorCode status = U_ZERO_ERROR;
    // Closed however the function is left (a run that cannot be stored throws).
    std::unique_ptr<UBiDi, void (*)(UBiDi*)> paraOwner(ubidi_openSized((int32_t)contextCount, 0, &status), ubidi_close);
    std::unique_ptr<UBiDi, void (*)(UBiDi*)> lineOwner(ubidi_openSized((int32_t)count, 0, &status), ubidi_close);
    UBiDi* para = paraOwner.get();
    UBiDi* line = lineOwner.get();
    if (U_SUCCESS(status)) {
        // The paragraph is the whole context; the line is cut out of it, so the context
        // decides the paragraph level while reordering stays within the line.
        ubidi_setPara(para, u + contextStart, (int32_t)contextCount, level, nullptr, &status);
        ubidi_setLine(para, (int32_t)(start - contextStart), (int32_t)(start - contextStart + count), line, &status);
        if (U_FAILURE(status)) {
            // A line across a paragraph separator: take the range as its own paragraph.
            status = U_ZERO_ERROR;
            ubidi_setPara(line, u + start, (int32_t)count, level, nullptr, &status);
        }
    }
    if (U_SUCCESS(status)) {
        const int32_t n = ubidi_countRuns(line, &status);
        for (int32_t i = 0; U_SUCCESS(status) && i < n; i++) {
            int32_t logicalStart = 0, length = 0;
            const UBiDiDirection dir = ubidi_getVisualRun(line, i, &logicalStart, &length);
            if (length <= 0) continue;
            runs.push_back({start + (size_t)logicalStart, start + (size_t)logicalStart + (size_t)length, dir == UBIDI_RTL});
        }
    }
    if (U_FAILURE(status) || runs.empty()) {
        runs.clear();
        runs.push_back({start, start + count, bidi == LmLayoutUtils::kBidiRTL || bidi == LmLayoutUtils::kBidiDefaultRTL});
    }
    return runs;
}

// Splits a bidi run into runs of one font and one script, in logical order.
std::vector<FontRun> fontRuns(const LmTypeface& typeface, int variant, const uint16_t* text, size_t start, size_t end)
{
    std::vector<FontRun> runs;
    hb_unicode_funcs_t* ufuncs = hb_unicode_funcs_get_default();
    size_t i = start;
    while (i < end) {
        size_t next;
        const uint32_t cp = decodeAt(text, end, i, &next);
        const hb_script_t script = hb_unicode_script(ufuncs, cp);
        FontRun* cur = runs.empty() ? nullptr : &runs.back();
        bool stay = false;
        if (cur) {
            if (attachesToPrevious(cp)) {
                stay = true;
            } else if (cur->choice.font->HasGlyph(cp)) {
                // Neutral characters (spaces, digits, punctuation) keep the running font;
                // so does the running script when its font covers the character.
                stay = isNeutralScript(script) || script == cur->script || isNeutralScript(cur->script);
            }
        }
        if (stay) {
            cur->end = next;
            if (isNeutralScript(cur->script) && !isNeutralScript(script)) cur->script = script;
        } else {
            LmTypeface::FontChoice choice = typeface.chooseFont(cp, variant);
            if (cur && choice.font == cur->choice.font && choice.fakery == cur->choice.fakery &&
                (isNeutralScript(script) || isNeutralScript(cur->script) || script == cur->script)) {
                cur->end = next;
                if (isNeutralScript(cur->script)) cur->script = script;
            } else {
                runs.push_back({i, next, choice, script});
            }
        }
        i = next;
    }
    return runs;
}

std::vector<hb_feature_t> parseFeatures(const std::string& settings)
{
    std::vector<hb_feature_t> features;
    size_t pos = 0;
    while (pos <= settings.size()) {
        size_t comma = settings.find(',', pos);
        if (comma == std::string::npos) comma = settings.size();
        std::string item = settings.substr(pos, comma - pos);
        const size_t a = item.find_first_not_of(" \t");
        const size_t b = item.find_last_not_of(" \t");
        if (a != std::string::npos) {
            item = item.substr(a, b - a + 1);
            hb_feature_t f;
            if (hb_feature_from_string(item.c_str(), (int)item.size(), &f)) features.push_back(f);
        }
        pos = comma + 1;
    }
    return features;
}

// False for an empty range or one outside the buffer. A context that does not hold the range,
// or passes the buffer, shrinks to the range.
bool usableRange(size_t bufSize, size_t start, size_t count, size_t* contextStart, size_t* contextCount)
{
    if (count == 0 || start > bufSize || count > bufSize - start) return false;
    if (*contextStart > start || *contextStart > bufSize || *contextCount > bufSize - *contextStart ||
        *contextStart + *contextCount < start + count) {
        *contextStart = start;
        *contextCount = count;
    }
    return *contextCount <= 0x7FFFFFFF;
}

// What every run of one layout is shaped with: the paint's features, language, size, scale
// and letter spacing, the context text and one HarfBuzz buffer.
class Shaping {
public:
    Shaping(const LmPaint& paint, const uint16_t* text, size_t contextStart, size_t contextCount)
        : text(text), contextStart(contextStart), contextCount(contextCount), size(paint.getTextSize()),
          scaleX(std::isfinite(paint.getTextScaleX()) ? paint.getTextScaleX() : 1.0f),
          features(parseFeatures(paint.getFontFeatureSettings())), baseStyle(paint.glyphStyle()),
          buffer(hb_buffer_create())
    {
        const float spacing = std::isfinite(paint.getLetterSpacing()) ? paint.getLetterSpacing() : 0.0f;
        halfSpacing = spacing * size * scaleX * 0.5f;
        const std::vector<std::string> locales = LmLocaleListRegistry::getLocales(paint.getLocaleListId());
        if (!locales.empty()) language = hb_language_from_string(locales.front().c_str(), -1);
    }
    ~Shaping() { hb_buffer_destroy(buffer); }
    Shaping(const Shaping&) = delete;
    Shaping& operator=(const Shaping&) = delete;

    // Shapes one run and appends its glyphs at the pen, which it advances; each cluster gets
    // half the letter spacing on either side.
    void shapeRun(const FontRun& run, bool rtl, float* pen, LmLayout* layout) const
    {
        const std::shared_ptr<LmPlatformFont>& font = run.choice.font;
        hb_buffer_clear_contents(buffer);
        hb_buffer_add_utf16(buffer, text + contextStart, (int)contextCount, (unsigned)(run.start - contextStart),
                            (int)(run.end - run.start));
        hb_buffer_set_direction(buffer, rtl ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
        if (!isNeutralScript(run.script)) hb_buffer_set_script(buffer, run.script);
        if (language) hb_buffer_set_language(buffer, language);
        hb_buffer_guess_segment_properties(buffer);
        hb_font_t* hbFont = hb_font_create(font->GetHbFace());
        hb_shape(hbFont, buffer, features.empty() ? nullptr : features.data(), (unsigned)features.size());
        hb_font_destroy(hbFont);

        unsigned n = 0;
        const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer, &n);
        const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(buffer, nullptr);
        // Shaped in font units; one unit is size / unitsPerEm pixels, widened by scale X.
        const float unit = size / (float)font->GetUnitsPerEm();
        const float unitX = unit * scaleX;
        LmGlyphStyle style = baseStyle;
        if (run.choice.fakery.fakeBold) style.embolden = true;
        if (run.choice.fakery.fakeItalic) style.skewX -= 0.25f;
        for (unsigned g = 0; g < n; g++) {
            const bool clusterStart = g == 0 || info[g].cluster != info[g - 1].cluster;
            if (clusterStart) *pen += g == 0 ? halfSpacing : 2.0f * halfSpacing;
            LmLayout::Glyph glyph;
            glyph.font = font;
            glyph.fakery = run.choice.fakery;
            glyph.glyphId = info[g].codepoint;
            glyph.x = *pen + (float)pos[g].x_offset * unitX;
            glyph.y = -(float)pos[g].y_offset * unit;
            layout->appendGlyph(glyph);
            LmGlyphBox box;
            if (font->GetGlyphBounds(glyph.glyphId, style, &box)) {
                box.left += glyph.x;
                box.right += glyph.x;
                box.top += glyph.y;
                box.bottom += glyph.y;
                layout->joinBounds(box);
            }
            *pen += (float)pos[g].x_advance * unitX;
        }
        if (n > 0) *pen += halfSpacing;
    }

private:
    const uint16_t* text;
    size_t contextStart;
    size_t contextCount;
    float size;
    float scaleX;
    float halfSpacing = 0.0f;
    std::vector<hb_feature_t> features;
    hb_language_t language = nullptr;
    LmGlyphStyle baseStyle;
    hb_buffer_t* buffer;
};

// Whole pixels, rounded outward, so a mask cut to the bounds loses no ink.
void roundBoundsOutward(LmLayout* layout)
{
    LmGlyphBox b = layout->getBounds();
    if (b.empty()) return;
    b.left = std::floor(b.left);
    b.top = std::floor(b.top);
    b.right = std::ceil(b.right);
    b.bottom = std::ceil(b.bottom);
    layout->setBounds(b);
}

} // namespace

void LmLayoutUtils::populateRunFont(LmPaint* paint, const std::shared_ptr<LmPlatformFont>& font,
                                    const LmFontFakery& fakery)
{
    paint->setRunFont(font);
    if (fakery.fakeBold) paint->setEmbolden(true);
    // A quarter of the height leans to the right (y down: x' = x - y/4).
    if (fakery.fakeItalic) paint->setTextSkewX(paint->getTextSkewX() - 0.25f);
}

LmLayout LmLayoutUtils::doLayout(const LmPaint& paint, int bidi, const LmTypeface* typeface, const uint16_t* text,
                                 size_t bufSize, size_t start, size_t count, size_t contextStart, size_t contextCount)
{
    LmLayout layout;
    if (!typeface || !text || !usableRange(bufSize, start, count, &contextStart, &contextCount)) return layout;
    const float size = paint.getTextSize();
    if (!std::isfinite(size) || size <= 0.0f || size > LmPaint::kMaxTextSize) return layout;

    const Shaping shaping(paint, text, contextStart, contextCount);
    float pen = 0.0f;
    for (const BidiRun& br : bidiRuns(bidi, text, start, count, contextStart, contextCount)) {
        std::vector<FontRun> runs = fontRuns(*typeface, paint.getFamilyVariant(), text, br.start, br.end);
        for (size_t k = 0; k < runs.size(); k++) {
            const FontRun& run = runs[br.rtl ? runs.size() - 1 - k : k];
            if (run.choice.font) shaping.shapeRun(run, br.rtl, &pen, &layout);
        }
    }
    layout.setAdvance(pen);
    roundBoundsOutward(&layout);
    return layout;
}

} // namespace LmFontEffect
