#ifndef LMFONTEFFECT_JNI_LMTEXTBRIDGE_H
#define LMFONTEFFECT_JNI_LMTEXTBRIDGE_H

#include <jni.h>

namespace LmFontEffect {

// Binds com/zentrix/android/sdk/lme/LmText: its 21 natives configure, render and release the
// text object named by the Java object's mHandle. False leaves the failure's exception
// pending for the load hook.
bool LmText_OnLoad(JavaVM* vm, JNIEnv* env);

} // namespace LmFontEffect

#endif
