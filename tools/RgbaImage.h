#ifndef LMTEXT_RGBAIMAGE_H
#define LMTEXT_RGBAIMAGE_H

#include <cstdint>
#include <string>
#include <vector>

namespace LmTextTool {

// A straight-alpha image with bytes R, G, B, A per pixel, rows packed: what a PNG holds.
class RgbaImage {
public:
    RgbaImage() = default;
    RgbaImage(unsigned width, unsigned height, uint32_t argbFill = 0);

    // The text object's result: width x height values 0xAARRGGBB, not premultiplied.
    static RgbaImage fromArgb(const uint32_t* argb, unsigned width, unsigned height);
    // width x height pixels of bytes R, G, B, A.
    static RgbaImage fromRgba(const uint8_t* rgba, unsigned width, unsigned height);

    // PNG files through libpng. Failures throw ToolError (exit 1) naming the path and reason.
    // Images read are at most this many pixels (4096 x 4096), checked from the header before
    // anything is allocated.
    static constexpr uint64_t kMaxReadPixels = uint64_t(1) << 24;

    static RgbaImage readPng(const std::string& path);
    void writePng(const std::string& path) const;

    // Source-over of `src` with its top-left corner at (x, y), clipped to this image.
    void drawOver(const RgbaImage& src, int x, int y);
    void fillRect(int x, int y, int w, int h, uint32_t argb);

    uint32_t argbAt(unsigned x, unsigned y) const;
    unsigned width() const { return mWidth; }
    unsigned height() const { return mHeight; }
    const std::vector<uint8_t>& bytes() const { return mBytes; }

private:
    unsigned mWidth = 0;
    unsigned mHeight = 0;
    std::vector<uint8_t> mBytes;
};

} // namespace LmTextTool

#endif
