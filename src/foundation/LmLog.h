#ifndef LMFONTEFFECT_FOUNDATION_LMLOG_H
#define LMFONTEFFECT_FOUNDATION_LMLOG_H

#include <cstdarg>

namespace LmFontEffect {

class LmString;

enum LmLogLevel : unsigned char {
    LM_LOG_DEBUG = 1,
    LM_LOG_INFO = 2,
    LM_LOG_WARN = 4,
    LM_LOG_ERROR = 8,
    LM_LOG_TIME = 16,
};

// Level-filtered logger over the platform log. On Android every line goes to
// __android_log_print; on Linux a line goes to stderr as "<letter>/<tag>: <message>" when
// its priority reaches the threshold (LMEFFECT_LOG=D|I|W|E, default W), and to the
// capture sink, if one is installed, whatever its priority.
class LmLog {
public:
    enum Priority { LM_PRIO_DEBUG = 3, LM_PRIO_INFO = 4, LM_PRIO_WARN = 5, LM_PRIO_ERROR = 6 };

    using Sink = void (*)(int priority, const char* tag, const char* message, void* user);

    static void printLog(LmLogLevel level, char const* file, char const* format, ...)
        __attribute__((format(printf, 3, 4)));
    static void printTime(char const* file, char const* label, long ms);
    static void printTime(char const* file, char const* label, long ms, char const* format, ...)
        __attribute__((format(printf, 4, 5)));
    static void setPrintLogLevel(unsigned char mask);
    static unsigned char getPrintLogLevel();
    static const char* ConvertLog(LmString const* s);

    static void SetBuildType(bool eng);
    static bool IsCheckedBuildType();
    static bool IsBuildTypeEngMode();
    static bool IsAllLogEnable();
    // Turns the verbose traces on (nothing in the library does; native callers may).
    static void SetDebugEnable(bool enable);

    // The one door to the platform log: __android_log_print's contract.
    static void Print(int priority, const char* tag, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    static void VPrint(int priority, const char* tag, const char* format, va_list args);

    // Linux only: a sink that sees every line (tests read the exact texts through it).
    static void SetSink(Sink sink, void* user);
    // Linux only: lowest priority written to stderr.
    static void SetStderrThreshold(int priority);

private:
    static unsigned char mCurrentLogLevel;
    static bool isCheckedBuildType;
    static bool isBuildTypeEngMode;
    static bool DEBUG_ENABLE;
};

} // namespace LmFontEffect

#endif
