#ifndef __ANDROID__

#include "jni/LmAssetReader.h"

#include "jni/LmJni.h"
#include "jni/LmJniLocalFrame.h"

#include <cstring>
#include <new>

namespace LmFontEffect {

char* LmAssetReader::Read(JNIEnv* env, jobject assetManager, const char* name, unsigned* size)
{
    *size = 0;
    LmJniLocalFrame frame(env, 8);
    jclass managerClass = env->GetObjectClass(assetManager);
    jmethodID open = LmJni::Method(env, managerClass, "open", "(Ljava/lang/String;)Ljava/io/InputStream;");
    jstring jname = env->NewStringUTF(name);
    if (LmJni::ClearException(env) || !open) return nullptr;
    jobject stream = LmJni::CallObject(env, assetManager, open, jname);
    if (!stream) return nullptr;  // not found, or the manager is closed

    jclass streamClass = env->GetObjectClass(stream);
    jmethodID readAll = LmJni::Method(env, streamClass, "readAllBytes", "()[B");
    jmethodID close = LmJni::Method(env, streamClass, "close", "()V");
    auto bytes = static_cast<jbyteArray>(LmJni::CallObject(env, stream, readAll));
    if (close) {
        env->CallVoidMethod(stream, close);
        LmJni::ClearException(env);
    }
    if (!bytes) return nullptr;
    const jsize n = env->GetArrayLength(bytes);
    // An empty asset still gives a buffer: the font manager reports it as no font.
    char* buffer = new (std::nothrow) char[(size_t)n + 1];
    if (!buffer) return nullptr;
    if (n > 0) env->GetByteArrayRegion(bytes, 0, n, reinterpret_cast<jbyte*>(buffer));
    *size = (unsigned)n;
    return buffer;
}

} // namespace LmFontEffect

#endif
