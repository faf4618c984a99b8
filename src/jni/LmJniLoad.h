#ifndef LMFONTEFFECT_JNI_LMJNILOAD_H
#define LMFONTEFFECT_JNI_LMJNILOAD_H

#include <jni.h>

// The library's load hook: binds the error, font manager and text classes in that order. A
// step that fails is logged with its exception and the next steps still run.
extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* reserved);

namespace LmFontEffect {

// Clears a pending exception. A NoSuchMethodError (a class lacking one of its natives) is
// dropped quietly; any other is logged with its class and message. Nothing stays pending:
// the next load step makes JNI calls, and HotSpot fails the whole load on an exception left
// pending when JNI_OnLoad returns.
void HandleException(JNIEnv* env);

} // namespace LmFontEffect

#endif
