#ifndef LMFONTEFFECT_JNI_LMFONTMANAGERBRIDGE_H
#define LMFONTEFFECT_JNI_LMFONTMANAGERBRIDGE_H

#include <jni.h>

namespace LmFontEffect {

// Binds com/zentrix/android/sdk/lme/font/FontManager: fonts from bytes, and the platform font
// configuration turned into the system family list once per process. False leaves the
// failure's exception pending for the load hook.
bool LmFontManager_OnLoad(JavaVM* vm, JNIEnv* env);

} // namespace LmFontEffect

#endif
