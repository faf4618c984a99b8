#include "support/GoldenImage.h"

#include "support/TestSupport.h"

#include "RgbaImage.h"
#include "ToolError.h"

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace LmTest {

::testing::AssertionResult GoldenImage::matches(const std::string& name, unsigned width, unsigned height,
                                                const unsigned char* rgba)
{
    using LmTextTool::RgbaImage;
    const std::string path = sourceDir() + "/golden/" + name + ".png";
    const RgbaImage image = RgbaImage::fromRgba(rgba, width, height);
    const char* update = std::getenv("LM_UPDATE_GOLDEN");
    RgbaImage golden;
    try {
        if (update && std::strcmp(update, "1") == 0) {
            image.writePng(path);
            return ::testing::AssertionSuccess() << "updated " << path;
        }
        golden = RgbaImage::readPng(path);
    } catch (const LmTextTool::ToolError& e) {
        return ::testing::AssertionFailure() << e.what() << " (LM_UPDATE_GOLDEN=1 writes a missing golden)";
    }
    const unsigned w = golden.width(), h = golden.height();
    const std::vector<uint8_t>& expected = golden.bytes();
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
    try {
        image.writePng(actual);
    } catch (const LmTextTool::ToolError&) {
    }
    return ::testing::AssertionFailure() << name << ": " << why << "; actual image written to " << actual;
}

} // namespace LmTest
