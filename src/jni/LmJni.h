#ifndef LMFONTEFFECT_JNI_LMJNI_H
#define LMFONTEFFECT_JNI_LMJNI_H

#include <jni.h>

namespace LmFontEffect {

class LmString;

// Small JNI helpers shared by the bridges. Every lookup or call that can leave a Java
// exception pending clears it before returning, so no later JNI call runs with one pending.
class LmJni {
public:
    struct MethodLookup {
        const char* name;
        const char* signature;
        jmethodID* out;
    };

    LmJni() = delete;

    // True when an exception was pending (it is cleared).
    static bool ClearException(JNIEnv* env);
    static jclass FindClass(JNIEnv* env, const char* name);
    static jmethodID Method(JNIEnv* env, jclass cls, const char* name, const char* signature);
    // Looks every method up in order; at the first missing one logs `format` (with the
    // method's name) under `tag` at error priority and gives false.
    static bool Methods(JNIEnv* env, jclass cls, const MethodLookup* lookups, int count, const char* tag,
                        const char* format);
    // Finds the class and registers its natives; on success logs `done` at debug priority
    // and keeps a global reference in *keep (when keep is given and still empty). A missing
    // class gives false with its exception left pending for the load hook.
    static bool BindClass(JNIEnv* env, const char* name, const JNINativeMethod* methods, int count, const char* tag,
                          const char* done, jclass* keep);
    // Registers the methods one by one, so that one the class lacks leaves the others bound;
    // false when any failed.
    static bool RegisterNatives(JNIEnv* env, jclass cls, const JNINativeMethod* methods, int count, const char* tag);

    // Calls of Java getters; a thrown exception is cleared and gives the zero value.
    static jint CallInt(JNIEnv* env, jobject obj, jmethodID method, ...);
    static jfloat CallFloat(JNIEnv* env, jobject obj, jmethodID method, ...);
    static jboolean CallBoolean(JNIEnv* env, jobject obj, jmethodID method, ...);
    static jobject CallObject(JNIEnv* env, jobject obj, jmethodID method, ...);
    // Calls a no-argument String getter named `name` on obj; null when it is missing or throws.
    static jstring CallStringGetter(JNIEnv* env, jobject obj, const char* name);

    // The whole Java string as code points (surrogate pairs joined; a lone surrogate becomes
    // U+FFFD). False for null or when the string cannot be read.
    static bool ToLmString(JNIEnv* env, jstring s, LmString& out);
    // A copy of the Java byte array in a new[] buffer; null for a null or unreadable
    // array (an empty one gives a buffer of size 0).
    static char* CopyBytes(JNIEnv* env, jbyteArray bytes, unsigned* size);
};

} // namespace LmFontEffect

#endif
