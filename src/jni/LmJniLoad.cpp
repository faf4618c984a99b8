#include "jni/LmJniLoad.h"

#include "foundation/LmLog.h"
#include "jni/LmErrorBridge.h"
#include "jni/LmFontManagerBridge.h"
#include "jni/LmJni.h"
#include "jni/LmJniString.h"
#include "jni/LmTextBridge.h"

namespace LmFontEffect {

namespace {

const char* const kTag = "LmText_Common_JNI";

} // namespace

void HandleException(JNIEnv* env)
{
    if (!env->ExceptionCheck()) return;
    jthrowable thrown = env->ExceptionOccurred();
    env->ExceptionClear();
    jclass noSuchMethod = LmJni::FindClass(env, "java/lang/NoSuchMethodError");
    bool swallowed = noSuchMethod && env->IsInstanceOf(thrown, noSuchMethod);
    if (!swallowed) {
        jclass thrownClass = env->GetObjectClass(thrown);
        jstring className = LmJni::CallStringGetter(env, thrownClass, "getName");
        jstring message = LmJni::CallStringGetter(env, thrown, "getMessage");
        LmJniString name(env, className), text(env, message);
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "%s: %s", name.get() ? name.get() : "?",
                     text.get() ? text.get() : "");
        env->DeleteLocalRef(message);
        env->DeleteLocalRef(className);
        env->DeleteLocalRef(thrownClass);
    }
    env->DeleteLocalRef(noSuchMethod);
    env->DeleteLocalRef(thrown);
}

} // namespace LmFontEffect

using namespace LmFontEffect;

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* reserved)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmText_JNI_OnLoad");
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), 0x10002) != JNI_OK || !env) return 0;
    if (!Error_OnLoad(vm)) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmError Onload Fail!");
        HandleException(env);
    }
    if (!LmFontManager_OnLoad(vm, env)) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmFontManager OnLoad Fail!");
        HandleException(env);
    }
    if (!LmText_OnLoad(vm, env)) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmText OnLoad Fail!");
        HandleException(env);
    }
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmText_JNI_OnLoad .... done");
    return 0x10002;
}
