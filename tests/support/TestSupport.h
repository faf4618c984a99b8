#ifndef LMFONTEFFECT_TESTS_TESTSUPPORT_H
#define LMFONTEFFECT_TESTS_TESTSUPPORT_H

#include <string>
#include <vector>

namespace LmTest {

struct LogLine {
    int priority;
    std::string tag;
    std::string message;
};

// Collects every log line written while it lives.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<LogLine>& lines() const { return mLines; }
    bool contains(const std::string& tag, const std::string& message) const;
    bool containsMessage(const std::string& message) const;
    void clear() { mLines.clear(); }

private:
    static void sink(int priority, const char* tag, const char* message, void* user);
    std::vector<LogLine> mLines;
};

// Folder of the test sources (golden images live below it).
std::string sourceDir();

} // namespace LmTest

#endif
