#include "jni/LmErrorBridge.h"

#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "jni/LmJni.h"

namespace LmFontEffect {

namespace {

const char* const kTag = "LmError_JNI";

jint Error_GetError(JNIEnv*, jclass)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Error_GetError");
    return (jint)Error::GetError();
}

const JNINativeMethod kMethods[] = {
    {const_cast<char*>("Error_GetError"), const_cast<char*>("()I"), reinterpret_cast<void*>(Error_GetError)},
};

} // namespace

bool Error_OnLoad(JavaVM* vm)
{
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), 0x10002) != JNI_OK || !env) return false;
    jclass cls = nullptr;
    bool bound = LmJni::BindClass(env, "com/zentrix/android/sdk/lme/util/LmError", kMethods, 1, kTag, "Init .. Done",
                                  &cls);
    if (!cls) return false;
    if (!LmLog::IsCheckedBuildType()) {
        jmethodID engMode = env->GetStaticMethodID(cls, "isBuildTypeEngMode", "()Z");
        if (!engMode) {
            LmJni::ClearException(env);
            LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "isBuildTypeEngMode not found");
        } else {
            jboolean eng = env->CallStaticBooleanMethod(cls, engMode);
            if (!LmJni::ClearException(env)) LmLog::SetBuildType(eng == JNI_TRUE);
        }
    }
    env->DeleteGlobalRef(cls);
    return bound;
}

} // namespace LmFontEffect
