#include "RgbaImage.h"

#include "ToolError.h"

#include <png.h>

#include <algorithm>
#include <cstring>

namespace LmTextTool {

RgbaImage::RgbaImage(unsigned width, unsigned height, uint32_t argbFill)
    : mWidth(width), mHeight(height), mBytes((size_t)width * height * 4)
{
    fillRect(0, 0, (int)width, (int)height, argbFill);
}

RgbaImage RgbaImage::fromArgb(const uint32_t* argb, unsigned width, unsigned height)
{
    RgbaImage image(width, height);
    if (!argb) return image;
    for (size_t i = 0, n = (size_t)width * height; i < n; ++i) {
        uint32_t v = argb[i];
        uint8_t* p = &image.mBytes[i * 4];
        p[0] = (uint8_t)(v >> 16);
        p[1] = (uint8_t)(v >> 8);
        p[2] = (uint8_t)v;
        p[3] = (uint8_t)(v >> 24);
    }
    return image;
}

RgbaImage RgbaImage::fromRgba(const uint8_t* rgba, unsigned width, unsigned height)
{
    RgbaImage image(width, height);
    if (rgba) std::copy(rgba, rgba + image.mBytes.size(), image.mBytes.begin());
    return image;
}

RgbaImage RgbaImage::readPng(const std::string& path)
{
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str()))
        throw ToolError::failure("cannot read image '" + path + "': " + png.message);
    if ((uint64_t)png.width * png.height > kMaxReadPixels) {
        png_image_free(&png);
        throw ToolError::failure("cannot read image '" + path + "': " + std::to_string(png.width) + "x" +
                                 std::to_string(png.height) + " is over the limit of " +
                                 std::to_string(kMaxReadPixels) + " pixels");
    }
    png.format = PNG_FORMAT_RGBA;
    RgbaImage image;
    image.mWidth = png.width;
    image.mHeight = png.height;
    image.mBytes.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, image.mBytes.data(), 0, nullptr)) {
        std::string reason = png.message;
        png_image_free(&png);
        throw ToolError::failure("cannot read image '" + path + "': " + reason);
    }
    return image;
}

void RgbaImage::writePng(const std::string& path) const
{
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = mWidth;
    png.height = mHeight;
    png.format = PNG_FORMAT_RGBA;
    if (mWidth == 0 || mHeight == 0)
        throw ToolError::failure("cannot write '" + path + "': the image is empty (" + std::to_string(mWidth) +
                                 "x" + std::to_string(mHeight) + ")");
    if (!png_image_write_to_file(&png, path.c_str(), 0, mBytes.data(), 0, nullptr))
        throw ToolError::failure("cannot write '" + path + "': " + png.message);
}

void RgbaImage::drawOver(const RgbaImage& src, int x, int y)
{
    for (unsigned sy = 0; sy < src.mHeight; ++sy) {
        long dy = (long)y + sy;
        if (dy < 0 || dy >= (long)mHeight) continue;
        for (unsigned sx = 0; sx < src.mWidth; ++sx) {
            long dx = (long)x + sx;
            if (dx < 0 || dx >= (long)mWidth) continue;
            const uint8_t* s = &src.mBytes[((size_t)sy * src.mWidth + sx) * 4];
            uint8_t* d = &mBytes[((size_t)dy * mWidth + dx) * 4];
            unsigned sa = s[3];
            if (sa == 0) continue;
            // Straight-alpha source-over: out = s*sa + d*da*(1-sa), divided by the new alpha.
            unsigned da = d[3];
            unsigned dw = da * (255 - sa);             // destination weight, scale 255^2
            unsigned oa = sa * 255 + dw;               // new alpha, scale 255^2
            for (int k = 0; k < 3; ++k)
                d[k] = (uint8_t)((s[k] * sa * 255 + d[k] * dw + oa / 2) / oa);
            d[3] = (uint8_t)((oa + 127) / 255);
        }
    }
}

void RgbaImage::fillRect(int x, int y, int w, int h, uint32_t argb)
{
    int x0 = std::max(x, 0), y0 = std::max(y, 0);
    long x1 = std::min((long)x + w, (long)mWidth), y1 = std::min((long)y + h, (long)mHeight);
    for (long py = y0; py < y1; ++py)
        for (long px = x0; px < x1; ++px) {
            uint8_t* d = &mBytes[((size_t)py * mWidth + px) * 4];
            d[0] = (uint8_t)(argb >> 16);
            d[1] = (uint8_t)(argb >> 8);
            d[2] = (uint8_t)argb;
            d[3] = (uint8_t)(argb >> 24);
        }
}

uint32_t RgbaImage::argbAt(unsigned x, unsigned y) const
{
    if (x >= mWidth || y >= mHeight) return 0;
    const uint8_t* p = &mBytes[((size_t)y * mWidth + x) * 4];
    return ((uint32_t)p[3] << 24) | ((uint32_t)p[0] << 16) | ((uint32_t)p[1] << 8) | p[2];
}

} // namespace LmTextTool
