#include "jni/LmJniString.h"

#include "jni/LmJni.h"

namespace LmFontEffect {

LmJniString::LmJniString(JNIEnv* env, jstring s) : env(env), string(s), chars(nullptr)
{
    if (!s) return;
    chars = env->GetStringUTFChars(s, nullptr);
    if (LmJni::ClearException(env)) chars = nullptr;
}

LmJniString::~LmJniString()
{
    if (chars) env->ReleaseStringUTFChars(string, chars);
}

} // namespace LmFontEffect
