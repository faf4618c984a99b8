#include "support/GoldenImage.h"

#include "support/TestSupport.h"

#include <png.h>

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace LmTest {

bool GoldenImage::writePng(const std::string& path, unsigned width, unsigned height, const unsigned char* rgba)
{
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGBA;
    const int ok = png_image_write_to_file(&image, path.c_str(), 0, rgba, 0, nullptr);
    png_image_free(&image);
    return ok != 0;
}

bool GoldenImage::readPng(const std::string& path, unsigned* width, unsigned* height,
                          std::vector<unsigned char>* rgba)
{
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return false;
    image.format = PNG_FORMAT_RGBA;
    rgba->assign(PNG_IMAGE_SIZE(image), 0);
    if (!png_image_finish_read(&image, nullptr, rgba->data(), 0, nullptr)) {
        png_image_free(&image);
        return false;
    }
    *width = image.width;
    *height = image.height;
    return true;
}

::testing::AssertionResult GoldenImage::matches(const std::string& name, unsigned width, unsigned height,
                                                const unsigned char* rgba)
{
    const std::string path = sourceDir() + "/golden/" + name + ".png";
    const char* update = std::getenv("LM_UPDATE_GOLDEN");
    if (update && std::strcmp(update, "1") == 0) {
        if (!writePng(path, width, height, rgba)) return ::testing::AssertionFailure() << "cannot write " << path;
        return ::testing::AssertionSuccess() << "updated " << path;
    }
    unsigned w = 0, h = 0;
    std::vector<unsigned char> expected;
    if (!readPng(path, &w, &h, &expected))
        return ::testing::AssertionFailure() << "no golden image " << path << " (LM_UPDATE_GOLDEN=1 writes it)";
    std::string why;
    if (w != width || h != height) {
        why = "size " + std::to_string(width) + "x" + std::to_string(height) + ", golden " + std::to_string(w) +
              "x" + std::to_string(h);
    } else {
        const size_t n = (size_t)width * height * 4;
        size_t differing = 0, first = 0;
        for (size_t i = 0; i < n; ++i)
            if (rgba[i] != expected[i] && differing++ == 0) first = i;
        if (differing == 0) return ::testing::AssertionSuccess();
        const size_t px = first / 4;
        why = std::to_string(differing) + " bytes differ, first at (" + std::to_string(px % width) + ", " +
              std::to_string(px / width) + ") byte " + std::to_string(first % 4) + ": " +
              std::to_string(rgba[first]) + " vs golden " + std::to_string(expected[first]);
    }
    mkdir("golden-actual", 0755);
    const std::string actual = "golden-actual/" + name + ".png";
    writePng(actual, width, height, rgba);
    return ::testing::AssertionFailure() << name << ": " << why << "; actual image written to " << actual;
}

} // namespace LmTest
