#include "jni/LmJni.h"

#include "foundation/LmLog.h"
#include "foundation/LmString.h"

#include <cstdarg>
#include <cstdint>
#include <new>
#include <vector>

namespace LmFontEffect {

bool LmJni::ClearException(JNIEnv* env)
{
    if (!env->ExceptionCheck()) return false;
    env->ExceptionClear();
    return true;
}

jclass LmJni::FindClass(JNIEnv* env, const char* name)
{
    jclass cls = env->FindClass(name);
    ClearException(env);
    return cls;
}

jmethodID LmJni::Method(JNIEnv* env, jclass cls, const char* name, const char* signature)
{
    if (!cls) return nullptr;
    jmethodID id = env->GetMethodID(cls, name, signature);
    ClearException(env);
    return id;
}

bool LmJni::Methods(JNIEnv* env, jclass cls, const MethodLookup* lookups, int count, const char* tag, const char* format)
{
    for (int i = 0; i < count; ++i) {
        *lookups[i].out = Method(env, cls, lookups[i].name, lookups[i].signature);
        if (!*lookups[i].out) {
            LmLog::Print(LmLog::LM_PRIO_ERROR, tag, format, lookups[i].name);
            return false;
        }
    }
    return true;
}

bool LmJni::BindClass(JNIEnv* env, const char* name, const JNINativeMethod* methods, int count, const char* tag,
                      const char* done, jclass* keep)
{
    jclass cls = env->FindClass(name);
    if (!cls) return false;
    if (keep && !*keep) *keep = static_cast<jclass>(env->NewGlobalRef(cls));
    bool registered = RegisterNatives(env, cls, methods, count, tag);
    env->DeleteLocalRef(cls);
    if (registered) LmLog::Print(LmLog::LM_PRIO_DEBUG, tag, "%s", done);
    return registered;
}

bool LmJni::RegisterNatives(JNIEnv* env, jclass cls, const JNINativeMethod* methods, int count, const char* tag)
{
    bool all = true;
    for (int i = 0; i < count; ++i) {
        if (env->RegisterNatives(cls, &methods[i], 1) >= 0) continue;
        ClearException(env);
        LmLog::Print(LmLog::LM_PRIO_ERROR, tag, "cannot register %s %s", methods[i].name, methods[i].signature);
        all = false;
    }
    return all;
}

#define LM_JNI_CALL(Type, Kind, zero)                                                                                  \
    Type LmJni::Call##Kind(JNIEnv* env, jobject obj, jmethodID method, ...)                                           \
    {                                                                                                                  \
        if (!obj || !method) return zero;                                                                              \
        va_list args;                                                                                                  \
        va_start(args, method);                                                                                        \
        Type value = env->Call##Kind##MethodV(obj, method, args);                                                      \
        va_end(args);                                                                                                  \
        return ClearException(env) ? zero : value;                                                                     \
    }

LM_JNI_CALL(jint, Int, 0)
LM_JNI_CALL(jfloat, Float, 0.0f)
LM_JNI_CALL(jboolean, Boolean, JNI_FALSE)
LM_JNI_CALL(jobject, Object, nullptr)

#undef LM_JNI_CALL

jstring LmJni::CallStringGetter(JNIEnv* env, jobject obj, const char* name)
{
    if (!obj) return nullptr;
    jclass cls = env->GetObjectClass(obj);
    jmethodID method = Method(env, cls, name, "()Ljava/lang/String;");
    env->DeleteLocalRef(cls);
    return static_cast<jstring>(CallObject(env, obj, method));
}

bool LmJni::ToLmString(JNIEnv* env, jstring s, LmString& out)
{
    if (!s) return false;
    const jsize n = env->GetStringLength(s);
    std::vector<jchar> units((size_t)n);
    if (n > 0) env->GetStringRegion(s, 0, n, units.data());
    if (ClearException(env)) return false;
    std::vector<wchar_t> points;
    points.reserve((size_t)n + 1);
    for (jsize i = 0; i < n; ++i) {
        uint32_t u = units[(size_t)i];
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < n && units[(size_t)i + 1] >= 0xDC00 && units[(size_t)i + 1] <= 0xDFFF) {
            u = 0x10000 + ((u - 0xD800) << 10) + (units[(size_t)++i] - 0xDC00);
        } else if (u >= 0xD800 && u <= 0xDFFF) {
            u = 0xFFFD;
        }
        points.push_back((wchar_t)u);
    }
    points.push_back(L'\0');
    return out.Set(points.data());
}

char* LmJni::CopyBytes(JNIEnv* env, jbyteArray bytes, unsigned* size)
{
    *size = 0;
    if (!bytes) return nullptr;
    const jsize n = env->GetArrayLength(bytes);
    // An empty array still gives a buffer, so that it reads as no font rather than a path.
    char* buffer = new (std::nothrow) char[(size_t)n + 1];
    if (!buffer) return nullptr;
    if (n > 0) env->GetByteArrayRegion(bytes, 0, n, reinterpret_cast<jbyte*>(buffer));
    if (ClearException(env)) {
        delete[] buffer;
        return nullptr;
    }
    *size = (unsigned)n;
    return buffer;
}

} // namespace LmFontEffect
