#ifdef __ANDROID__

#include "jni/LmAssetReader.h"

#include <android/asset_manager.h>
#include <android/asset_manager_jni.h>

#include <cstdint>
#include <new>

namespace LmFontEffect {

char* LmAssetReader::Read(JNIEnv* env, jobject assetManager, const char* name, unsigned* size)
{
    *size = 0;
    AAssetManager* manager = AAssetManager_fromJava(env, assetManager);
    AAsset* asset = manager ? AAssetManager_open(manager, name, AASSET_MODE_BUFFER) : nullptr;
    if (!asset) return nullptr;
    off64_t length = AAsset_getLength64(asset);
    char* buffer = nullptr;
    if (length >= 0 && length <= (off64_t)INT32_MAX) buffer = new (std::nothrow) char[(size_t)length + 1];
    if (buffer && AAsset_read(asset, buffer, (size_t)length) != (int)length) {
        delete[] buffer;
        buffer = nullptr;
    }
    AAsset_close(asset);
    if (buffer) *size = (unsigned)length;
    return buffer;
}

} // namespace LmFontEffect

#endif
