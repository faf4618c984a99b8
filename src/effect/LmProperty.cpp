#include "effect/LmProperty.h"

#include "effect/LmGlowProperty.h"
#include "effect/LmGradientProperty.h"
#include "effect/LmInnerShadowProperty.h"
#include "effect/LmLightingProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmShadowProperty.h"
#include "effect/LmStopsProperty.h"
#include "effect/LmStrokeProperty.h"
#include "effect/LmTextProperty.h"
#include "foundation/LmConvert.h"

#include <algorithm>
#include <cstdint>

namespace LmFontEffect {

namespace {

inline void put(char** cursor, unsigned byte) { *(*cursor)++ = (char)(unsigned char)byte; }

inline float remainderDegrees(float angle, int modulus) { return (float)(lmToInt(angle) % modulus); }

} // namespace

// ---- encodings ----

void LmProperty::writeTag(char** cursor, char tag) { put(cursor, (unsigned char)tag); }

void LmProperty::writeWord(char** cursor, unsigned value)
{
    for (int shift = 28; shift >= 0; shift -= 4) put(cursor, 0x80u + ((value >> shift) & 0xFu));
}

void LmProperty::writeSmall(char** cursor, int value) { put(cursor, 0x80u | ((unsigned)value & 0x7Fu)); }

void LmProperty::writeAngle(char** cursor, float angle)
{
    int r = lmToInt(angle) % 360;
    if (r < 0) r += 360;
    put(cursor, 0x80u | ((unsigned)r >> 7));
    put(cursor, 0x80u | ((unsigned)r & 0x7Fu));
}

void LmProperty::writePair(char** cursor, int value)
{
    put(cursor, 0x80u | (((unsigned)value >> 4) & 0xFu));
    put(cursor, 0x80u | ((unsigned)value & 0xFu));
}

void LmProperty::writeQuad(char** cursor, int value)
{
    for (int shift = 12; shift >= 0; shift -= 4) put(cursor, 0x80u | (((unsigned)value >> shift) & 0xFu));
}

// ---- records ----

int LmTextProperty::toSequentialChar(char** cursor) const
{
    writeTag(cursor, 'T');
    writeWord(cursor, colour);
    return 1;
}

int LmShadowProperty::toSequentialChar(char** cursor) const
{
    writeTag(cursor, tag());
    writeAngle(cursor, angle);
    writeSmall(cursor, lmToInt(distance));
    writeSmall(cursor, lmToInt(size));
    writeWord(cursor, colour);
    return 1;
}

LmInnerShadowProperty::LmInnerShadowProperty(float angle, float distance, float size, unsigned colour, float opacity)
    : LmShadowProperty(remainderDegrees(angle, 360), distance, size, colour, opacity)
{
}

int LmStrokeProperty::toSequentialChar(char** cursor) const
{
    writeTag(cursor, 'K');
    writeSmall(cursor, lmToInt(size));
    writeWord(cursor, colour);
    writeSmall(cursor, extra);
    writeSmall(cursor, position);
    return 1;
}

void LmStopsProperty::writeStops(char** cursor) const
{
    for (int i = 0, n = usableStops(); i < n; ++i) {
        writeWord(cursor, stops[i].colour);
        writeSmall(cursor, lmToInt(stops[i].opacity * 100));
        writeSmall(cursor, lmToInt(stops[i].position * 100));
    }
}

int LmGlowProperty::getSequentialCharLength() const { return 10 + 10 * usableStops(); }

int LmGlowProperty::toSequentialChar(char** cursor) const
{
    writeTag(cursor, tag());
    writeSmall(cursor, lmToInt(size));
    writeWord(cursor, colour);
    writeStops(cursor);
    return 1;
}

LmGradientProperty::LmGradientProperty(float angle, float scale, float opacity, int stopCount, LmGradient* stops)
    : LmStopsProperty(0, opacity, stopCount, stops), angle(remainderDegrees(angle, 360)),
      scale(scale > 0.0f ? std::min(scale, 2.0f) : 0.0f)
{
}

int LmGradientProperty::getSequentialCharLength() const { return 5 + 10 * usableStops(); }

int LmGradientProperty::toSequentialChar(char** cursor) const
{
    writeTag(cursor, tag());
    writeAngle(cursor, angle);
    writePair(cursor, lmToInt(scale * 100));
    writeStops(cursor);
    return 1;
}

LmLightingProperty::LmLightingProperty(int style, float size, float depth, int direction, int technique, int soften,
                                       float opacity, float angle, float altitude, unsigned shadowColour,
                                       float shadowOpacity, unsigned highlightColour, float highlightOpacity)
    : LmProperty(0, opacity), style(style), size(size), depth(depth > 0.0f ? std::min(depth, 10.0f) : 0.0f),
      direction(direction), technique(technique), soften(std::min(std::max(soften, 0), 16)),
      angle(remainderDegrees(angle, 360)), altitude(remainderDegrees(altitude, 90)), shadowColour(shadowColour),
      shadowOpacity(shadowOpacity), highlightColour(highlightColour), highlightOpacity(highlightOpacity)
{
}

int LmLightingProperty::toSequentialChar(char** cursor) const
{
    writeTag(cursor, tag());
    writeSmall(cursor, style);
    writePair(cursor, lmToInt(size));
    writeQuad(cursor, lmToInt(depth * 100));
    writeSmall(cursor, direction);
    writeSmall(cursor, technique);
    writeSmall(cursor, soften);
    writeAngle(cursor, angle);
    writeSmall(cursor, lmToInt(altitude));
    writeWord(cursor, shadowColour);
    writeWord(cursor, highlightColour);
    return 1;
}

LmPatternProperty::LmPatternProperty(LmBitmap* pattern, float scale, float opacity)
    : LmProperty(0, opacity), pattern(pattern), scale(scale > 0.0f ? std::min(scale, 10.0f) : 0.0f)
{
}

int LmPatternProperty::toSequentialChar(char** cursor) const
{
    // The image is identified by its address; on 64-bit both halves are folded into the word so
    // that images a multiple of 4 GiB apart still differ.
    uint64_t address = (uint64_t)(uintptr_t)pattern;
    writeTag(cursor, 'P');
    writeWord(cursor, (unsigned)(address ^ (address >> 32)));
    writeQuad(cursor, lmToInt(scale * 100));
    writeQuad(cursor, lmToInt(opacity * 100));
    return 1;
}

} // namespace LmFontEffect
