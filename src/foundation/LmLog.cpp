#include "foundation/LmLog.h"

#include "foundation/LmString.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#ifdef __ANDROID__
#include <android/log.h>
#endif

namespace LmFontEffect {

unsigned char LmLog::mCurrentLogLevel = 255;
bool LmLog::isCheckedBuildType = false;
bool LmLog::isBuildTypeEngMode = true;
bool LmLog::DEBUG_ENABLE = false;

namespace {

// Android priority of a level value v (1..8); everything else logs at info.
const int kLevelPriority[8] = {3, 4, 4, 5, 4, 4, 4, 6};

int priorityOf(unsigned level)
{
    return (level >= 1 && level <= 8) ? kLevelPriority[level - 1] : 4;
}

// Per thread, so that threads logging at once each keep their own text.
thread_local char gConvertBuffer[512];

#ifndef __ANDROID__
LmLog::Sink gSink = nullptr;
void* gSinkUser = nullptr;
int gThreshold = -1; // read from the environment on first use
std::mutex gLogMutex;

int thresholdFromEnv()
{
    const char* v = std::getenv("LMEFFECT_LOG");
    if (!v || !*v) return LmLog::LM_PRIO_WARN;
    switch (v[0]) {
    case 'D': case 'd': return LmLog::LM_PRIO_DEBUG;
    case 'I': case 'i': return LmLog::LM_PRIO_INFO;
    case 'W': case 'w': return LmLog::LM_PRIO_WARN;
    case 'E': case 'e': return LmLog::LM_PRIO_ERROR;
    case 'N': case 'n': return 99; // none
    default: return LmLog::LM_PRIO_WARN;
    }
}

char priorityLetter(int p)
{
    switch (p) {
    case 2: return 'V';
    case 3: return 'D';
    case 4: return 'I';
    case 5: return 'W';
    case 6: return 'E';
    case 7: return 'F';
    default: return '?';
    }
}
#endif

} // namespace

void LmLog::VPrint(int priority, const char* tag, const char* format, va_list args)
{
    if (!format) return;
#ifdef __ANDROID__
    __android_log_vprint(priority, tag ? tag : "", format, args);
#else
    std::lock_guard<std::mutex> lock(gLogMutex);
    if (gThreshold < 0) gThreshold = thresholdFromEnv();
    // Debug lines sit in per-pixel-row paths: skip the formatting when nobody reads them.
    if (!gSink && priority < gThreshold) return;
    char message[1024];
    vsnprintf(message, sizeof message, format, args);
    if (gSink) gSink(priority, tag ? tag : "", message, gSinkUser);
    if (priority >= gThreshold)
        fprintf(stderr, "%c/%s: %s\n", priorityLetter(priority), tag ? tag : "", message);
#endif
}

void LmLog::Print(int priority, const char* tag, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    VPrint(priority, tag, format, args);
    va_end(args);
}

void LmLog::SetSink(Sink sink, void* user)
{
#ifndef __ANDROID__
    std::lock_guard<std::mutex> lock(gLogMutex);
    gSink = sink;
    gSinkUser = user;
#else
    (void)sink;
    (void)user;
#endif
}

void LmLog::SetStderrThreshold(int priority)
{
#ifndef __ANDROID__
    std::lock_guard<std::mutex> lock(gLogMutex);
    gThreshold = priority;
#else
    (void)priority;
#endif
}

void LmLog::printLog(LmLogLevel level, char const* file, char const* format, ...)
{
    if (!format || !(mCurrentLogLevel & level)) return;
    if (!file) file = "";
    if (strlen(file) >= 256) return;
    char name[256];
    strcpy(name, file);
    // Drop the extension; a name without any point is kept whole.
    if (char* dot = strrchr(name, '.')) *dot = '\0';
    char message[1024];
    va_list args;
    va_start(args, format);
    vsnprintf(message, sizeof message, format, args);
    va_end(args);
    Print(priorityOf(level), "lmeffect", "[%s] %s \n", name, message);
}

void LmLog::printTime(char const* file, char const* label, long ms)
{
    if (!(mCurrentLogLevel & LM_LOG_TIME)) return;
    printLog(LM_LOG_INFO, file, "[Time] %s %.3fms", label ? label : "", (double)((float)ms / 1000.0f));
}

void LmLog::printTime(char const* file, char const* label, long ms, char const* format, ...)
{
    if (!(mCurrentLogLevel & LM_LOG_TIME)) return;
    char text[1024] = "";
    if (format) {
        va_list args;
        va_start(args, format);
        vsnprintf(text, sizeof text, format, args);
        va_end(args);
    }
    printLog(LM_LOG_INFO, file, "[Time] %s %.3fms %s", label ? label : "", (double)((float)ms / 1000.0f), text);
}

void LmLog::setPrintLogLevel(unsigned char mask) { mCurrentLogLevel = mask; }

unsigned char LmLog::getPrintLogLevel() { return mCurrentLogLevel; }

const char* LmLog::ConvertLog(LmString const* s)
{
    if (!s) return "[### null ###]";
    int size = s->GetUTF8Size();
    if (size > 512) return "[### string is too long ###]";
    if (size < 1) {
        gConvertBuffer[0] = '\0';
        return gConvertBuffer;
    }
    s->GetUTF8(gConvertBuffer, size);
    return gConvertBuffer;
}

void LmLog::SetBuildType(bool eng)
{
    if (isCheckedBuildType) return;
    isCheckedBuildType = true;
    isBuildTypeEngMode = eng;
}

bool LmLog::IsCheckedBuildType() { return isCheckedBuildType; }

bool LmLog::IsBuildTypeEngMode() { return isBuildTypeEngMode; }

bool LmLog::IsAllLogEnable() { return DEBUG_ENABLE && isBuildTypeEngMode; }

void LmLog::SetDebugEnable(bool enable) { DEBUG_ENABLE = enable; }

} // namespace LmFontEffect
