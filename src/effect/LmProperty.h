#ifndef LMFONTEFFECT_EFFECT_LMPROPERTY_H
#define LMFONTEFFECT_EFFECT_LMPROPERTY_H

namespace LmFontEffect {

// Parameter record of one effect kind. Each record writes itself as a short byte string: a tag
// (an ASCII capital) followed by bytes that all have their top bit set, so a key of several
// records holds no zero byte and no capital except at a record's start.
class LmProperty {
public:
    LmProperty(unsigned colour, float opacity) : colour(colour), opacity(opacity) {}
    virtual ~LmProperty() = default;

    // Exact number of bytes toSequentialChar writes.
    virtual int getSequentialCharLength() const = 0;
    // Writes the record at *cursor, advances the cursor past it and returns 1.
    virtual int toSequentialChar(char** cursor) const = 0;

    unsigned colour;
    float opacity;

protected:
    LmProperty(const LmProperty&) = default;
    LmProperty& operator=(const LmProperty&) = default;

    // The field encodings of the serial form.
    static void writeTag(char** cursor, char tag);
    static void writeWord(char** cursor, unsigned value);   // 8 bytes, 4-bit digits, high first
    static void writeSmall(char** cursor, int value);       // 1 byte, low 7 bits
    static void writeAngle(char** cursor, float angle);     // 2 bytes, degrees in [0, 360)
    static void writePair(char** cursor, int value);        // 2 bytes, low 8 bits
    static void writeQuad(char** cursor, int value);        // 4 bytes, low 16 bits
};

} // namespace LmFontEffect

#endif
