#include "support/TestSupport.h"

#include "support/GoldenImage.h"

#include "foundation/LmLog.h"
#include "RgbaImage.h"
#include "ToolError.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <sys/stat.h>

namespace LmTest {

LogCapture::LogCapture() { LmFontEffect::LmLog::SetSink(&LogCapture::sink, this); }

LogCapture::~LogCapture() { LmFontEffect::LmLog::SetSink(nullptr, nullptr); }

void LogCapture::sink(int priority, const char* tag, const char* message, void* user)
{
    static_cast<LogCapture*>(user)->mLines.push_back({priority, tag, message});
}

bool LogCapture::contains(const std::string& tag, const std::string& message) const
{
    return std::any_of(mLines.begin(), mLines.end(),
                       [&](const LogLine& l) { return l.tag == tag && l.message == message; });
}

bool LogCapture::containsMessage(const std::string& message) const
{
    return std::any_of(mLines.begin(), mLines.end(), [&](const LogLine& l) { return l.message == message; });
}

std::string sourceDir()
{
    const char* env = std::getenv("LM_TEST_SOURCE_DIR");
    return env && *env ? env : LM_TEST_SOURCE_DIR;  // the build defines it for every test program
}

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
    const std::vector<uint8_t>& expected = golden.bytes();
    std::ostringstream why;
    if (golden.width() != width || golden.height() != height) {
        why << "size " << width << "x" << height << ", golden " << golden.width() << "x" << golden.height();
    } else {
        const size_t n = (size_t)width * height * 4;
        size_t differing = 0, first = 0;
        for (size_t i = 0; i < n; ++i)
            if (rgba[i] != expected[i] && differing++ == 0) first = i;
        if (differing == 0) return ::testing::AssertionSuccess();
        const size_t px = first / 4;
        why << differing << " bytes differ, first at (" << px % width << ", " << px / width << ") byte " << first % 4
            << ": " << (int)rgba[first] << " vs golden " << (int)expected[first];
    }
    mkdir("golden-actual", 0755);
    const std::string actual = "golden-actual/" + name + ".png";
    try {
        image.writePng(actual);
    } catch (const LmTextTool::ToolError&) {
    }
    return ::testing::AssertionFailure() << name << ": " << why.str() << "; actual image written to " << actual;
}

} // namespace LmTest
