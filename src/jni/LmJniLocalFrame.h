#ifndef LMFONTEFFECT_JNI_LMJNILOCALFRAME_H
#define LMFONTEFFECT_JNI_LMJNILOCALFRAME_H

#include <jni.h>

namespace LmFontEffect {

// A frame of local references for one bridge call or one loop step: whatever it creates is
// freed at the end of the scope, so long loops never outgrow the JVM's local capacity.
class LmJniLocalFrame {
public:
    LmJniLocalFrame(JNIEnv* env, jint capacity);
    ~LmJniLocalFrame();
    LmJniLocalFrame(const LmJniLocalFrame&) = delete;
    LmJniLocalFrame& operator=(const LmJniLocalFrame&) = delete;

    // Pops the frame now, keeping `result` alive in the caller's frame.
    jobject Keep(jobject result);

private:
    JNIEnv* env;
    bool pushed;
};

} // namespace LmFontEffect

#endif
