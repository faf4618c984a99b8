#ifndef LMFONTEFFECT_JNI_LMASSETREADER_H
#define LMFONTEFFECT_JNI_LMASSETREADER_H

#include <jni.h>

namespace LmFontEffect {

// Reads one application asset whole. The only piece of the bridge that differs by platform:
// on Android through the NDK asset manager, elsewhere through the Java AssetManager's
// open(String) stream (which a host stand-in serves from a folder).
class LmAssetReader {
public:
    LmAssetReader() = delete;

    // A new[] buffer with the asset's bytes and its size, or null when the asset cannot be
    // opened or read. The caller owns the buffer.
    static char* Read(JNIEnv* env, jobject assetManager, const char* name, unsigned* size);
};

} // namespace LmFontEffect

#endif
