#ifndef LMFONTEFFECT_TESTS_GOLDENIMAGE_H
#define LMFONTEFFECT_TESTS_GOLDENIMAGE_H

#include <gtest/gtest.h>

#include <string>

namespace LmTest {

// 8-bit RGBA images kept as PNG files under tests/golden/, compared byte for byte. With the
// environment variable LM_UPDATE_GOLDEN=1 a comparison writes the image as the new golden
// file instead (and passes), for regenerating after an intended change.
class GoldenImage {
public:
    // Compares the image (bytes R, G, B, A per pixel, rows packed) with tests/golden/<name>.png.
    // On a mismatch the image is written as golden-actual/<name>.png below the working folder,
    // and the message says where.
    static ::testing::AssertionResult matches(const std::string& name, unsigned width, unsigned height,
                                              const unsigned char* rgba);
};

} // namespace LmTest

#endif
