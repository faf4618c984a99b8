#ifndef LMFONTEFFECT_PLATFORM_LMALPHACANVAS_H
#define LMFONTEFFECT_PLATFORM_LMALPHACANVAS_H

#include <cstdint>

namespace LmFontEffect {

class LmGlyphRun;
class LmPaint;

// An 8-bit coverage raster over caller memory (rows of `width` bytes). Glyphs drawn into it
// merge by maximum with what is there, so overlapping glyphs never darken each other's
// edges beyond full coverage of either.
class LmAlphaCanvas {
public:
    LmAlphaCanvas(unsigned char* pixels, int width, int height);

    int width() const { return mWidth; }
    int height() const { return mHeight; }
    unsigned char* pixels() const { return mPixels; }

    // Sets every byte to 0.
    void clear();
    // Draws a positioned run with its origin at (x, y): glyph i lands at
    // (x + run x_i, y + run y_i). The run carries its own font and style.
    void drawGlyphRun(const LmGlyphRun& run, float x, float y);
    // One horizontal span of coverage at row y (clipped); the raster's write door.
    void mergeSpan(int x, int y, int length, unsigned coverage);

private:
    unsigned char* mPixels;
    int mWidth;
    int mHeight;
};

} // namespace LmFontEffect

#endif
