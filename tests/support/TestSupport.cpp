#include "support/TestSupport.h"

#include "foundation/LmLog.h"

#include <cstdlib>

namespace LmTest {

LogCapture::LogCapture() { LmFontEffect::LmLog::SetSink(&LogCapture::sink, this); }

LogCapture::~LogCapture() { LmFontEffect::LmLog::SetSink(nullptr, nullptr); }

void LogCapture::sink(int priority, const char* tag, const char* message, void* user)
{
    static_cast<LogCapture*>(user)->mLines.push_back({priority, tag, message});
}

bool LogCapture::contains(const std::string& tag, const std::string& message) const
{
    for (const LogLine& l : mLines)
        if (l.tag == tag && l.message == message) return true;
    return false;
}

bool LogCapture::containsMessage(const std::string& message) const
{
    for (const LogLine& l : mLines)
        if (l.message == message) return true;
    return false;
}

std::string sourceDir()
{
    const char* env = std::getenv("LM_TEST_SOURCE_DIR");
    return env && *env ? env : LM_TEST_SOURCE_DIR;  // the build defines it for every test program
}

} // namespace LmTest
