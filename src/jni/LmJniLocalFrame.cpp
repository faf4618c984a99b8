#include "jni/LmJniLocalFrame.h"

#include "jni/LmJni.h"

namespace LmFontEffect {

LmJniLocalFrame::LmJniLocalFrame(JNIEnv* env, jint capacity) : env(env)
{
    pushed = env->PushLocalFrame(capacity) == 0;
    if (!pushed) LmJni::ClearException(env);
}

LmJniLocalFrame::~LmJniLocalFrame()
{
    if (pushed) env->PopLocalFrame(nullptr);
}

jobject LmJniLocalFrame::Keep(jobject result)
{
    if (!pushed) return result;
    pushed = false;
    return env->PopLocalFrame(result);
}

} // namespace LmFontEffect
