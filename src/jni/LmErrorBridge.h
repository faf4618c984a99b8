#ifndef LMFONTEFFECT_JNI_LMERRORBRIDGE_H
#define LMFONTEFFECT_JNI_LMERRORBRIDGE_H

#include <jni.h>

namespace LmFontEffect {

// Binds com/zentrix/android/sdk/lme/util/LmError: its build-type switch decides whether
// everything is logged, and its one native reads the calling thread's last error code.
// False leaves the failure's exception pending for the load hook.
bool Error_OnLoad(JavaVM* vm);

} // namespace LmFontEffect

#endif
