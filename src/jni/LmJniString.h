#ifndef LMFONTEFFECT_JNI_LMJNISTRING_H
#define LMFONTEFFECT_JNI_LMJNISTRING_H

#include <jni.h>

namespace LmFontEffect {

// The (modified) UTF-8 chars of a Java string for the length of a scope. get() is null
// when the string is null or cannot be read (the exception of a failed read is cleared).
class LmJniString {
public:
    LmJniString(JNIEnv* env, jstring s);
    ~LmJniString();
    LmJniString(const LmJniString&) = delete;
    LmJniString& operator=(const LmJniString&) = delete;

    const char* get() const { return chars; }

private:
    JNIEnv* env;
    jstring string;
    const char* chars;
};

} // namespace LmFontEffect

#endif
