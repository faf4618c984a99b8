// Test-only natives of com.zentrix.android.sdk.lme.NativeProbe: the log, the handle table and
// the font registry seen from C++.
#include "LmFontEffect.h"

#include <jni.h>

#include <mutex>
#include <string>

using namespace LmFontEffect;

namespace {

std::mutex gLogMutex;
std::string gLog;

void Capture(int, const char* tag, const char* message, void*)
{
    std::lock_guard<std::mutex> lock(gLogMutex);
    gLog.append(tag).append(": ").append(message).append("\n");
}

} // namespace

extern "C" {

JNIEXPORT void JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_captureLog(JNIEnv*, jclass, jboolean on)
{
    LmLog::SetSink(on ? Capture : nullptr, nullptr);
}

JNIEXPORT jstring JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_takeLog(JNIEnv* env, jclass)
{
    std::lock_guard<std::mutex> lock(gLogMutex);
    jstring log = env->NewStringUTF(gLog.c_str());
    gLog.clear();
    return log;
}

JNIEXPORT void JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_clearError(JNIEnv*, jclass)
{
    Error::SetError(0);
}

JNIEXPORT jint JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_liveObjects(JNIEnv*, jclass, jint lastHandle)
{
    int live = 0;
    for (int h = 1; h <= lastHandle; ++h) live += LmTextInstanceManager::FindLmTextObject(h) != nullptr;
    return live;
}

// "loaded/locale list id/font count" per system family, or "unset".
JNIEXPORT jstring JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_systemFamilies(JNIEnv* env, jclass)
{
    FontManager* manager = FontManager::GetInstance();
    List* list = manager->GetSystemFontFamilies();
    std::string out = manager->IsSystemFontFamiliesAlreadySet() ? "" : "unset";
    for (int i = 0; list && i < list->GetCount(); ++i) {
        auto* family = static_cast<LmFontFamily*>(list->Get(i));
        out += std::to_string(family->loaded) + "/" + std::to_string(family->localeListId) + "/" +
               std::to_string(family->fonts->GetCount()) + " ";
    }
    return env->NewStringUTF(out.c_str());
}

JNIEXPORT void JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_resetFamilies(JNIEnv*, jclass)
{
    FontManager::GetInstance()->ClearFontFamilies();
}

} // extern "C"
