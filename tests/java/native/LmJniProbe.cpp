// Test-only natives of com.zentrix.android.sdk.lme.NativeProbe: the log, the handle table and
// the font registry seen from C++, and the C++ path of a render to compare the bridge with.
#include "LmFontEffect.h"

#include <jni.h>

#include <mutex>
#include <string>
#include <vector>

using namespace LmFontEffect;

namespace {

std::mutex gLogMutex;
std::string gLog;

void Capture(int, const char* tag, const char* message, void*)
{
    std::lock_guard<std::mutex> lock(gLogMutex);
    gLog.append(tag).append(": ").append(message).append("\n");
}

std::string Chars(JNIEnv* env, jstring s)
{
    const char* chars = env->GetStringUTFChars(s, nullptr);
    std::string out(chars);
    env->ReleaseStringUTFChars(s, chars);
    return out;
}

std::vector<jint> Ints(JNIEnv* env, jintArray a)
{
    std::vector<jint> v((size_t)env->GetArrayLength(a));
    env->GetIntArrayRegion(a, 0, (jsize)v.size(), v.data());
    return v;
}

// One effect record: kind, then the arguments of the matching LmText_Add*TextEffect call.
void AddEffect(LmEffect& effect, const std::vector<double>& e)
{
    auto c = [&](size_t i) { return (unsigned)(jint)e[i]; };
    auto f = [&](size_t i) { return (float)e[i]; };
    switch ((int)e[0]) {
    case 10: effect.addStrokeText(f(1), c(2), f(3), (int)e[4], (int)e[5]); break;
    case 1: effect.addOuterShadowText(f(1), f(2), f(3), c(4), f(5)); break;
    case 2: effect.addInnerShadowText(f(1), f(2), f(3), c(4), f(5)); break;
    case 3: effect.addOuterGlowText(f(1), c(2), f(3), 0, nullptr); break;
    case 7: {
        std::vector<LmGradient> stops((e.size() - 4) / 3 + 1);
        for (size_t i = 4, s = 0; i + 2 < e.size(); i += 3, ++s) stops[s] = {c(i), f(i + 1), f(i + 2)};
        effect.addLinearGradientText(f(1), f(2), f(3), (int)((e.size() - 4) / 3), stops.data());
        break;
    }
    }
}

} // namespace

extern "C" {

JNIEXPORT void JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_captureLog(JNIEnv*, jclass, jboolean on)
{
    LmLog::SetSink(on ? Capture : nullptr, nullptr);
}

JNIEXPORT jstring JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_takeLog(JNIEnv* env, jclass)
{
    std::lock_guard<std::mutex> lock(gLogMutex);
    jstring log = env->NewStringUTF(gLog.c_str());
    gLog.clear();
    return log;
}

JNIEXPORT void JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_clearError(JNIEnv*, jclass)
{
    Error::SetError(0);
}

JNIEXPORT jint JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_liveObjects(JNIEnv*, jclass, jint lastHandle)
{
    int live = 0;
    for (int h = 1; h <= lastHandle; ++h) live += LmTextInstanceManager::FindLmTextObject(h) != nullptr;
    return live;
}

JNIEXPORT jboolean JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_hasEffect(JNIEnv*, jclass, jint handle,
                                                                                  jint kind)
{
    LmTextObject* object = LmTextInstanceManager::FindLmTextObject(handle);
    return object && object->GetEffect()->hasEffect(kind);
}

// "loaded/locale list id/font count" per system family, or "unset".
JNIEXPORT jstring JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_systemFamilies(JNIEnv* env, jclass)
{
    FontManager* manager = FontManager::GetInstance();
    List* list = manager->GetSystemFontFamilies();
    std::string out = manager->IsSystemFontFamiliesAlreadySet() ? "" : "unset";
    for (int i = 0; list && i < list->GetCount(); ++i) {
        auto* family = static_cast<LmFontFamily*>(list->Get(i));
        out += std::to_string(family->loaded) + "/" + std::to_string(family->localeListId) + "/" +
               std::to_string(family->fonts->GetCount()) + " ";
    }
    return env->NewStringUTF(out.c_str());
}

JNIEXPORT void JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_resetFamilies(JNIEnv*, jclass)
{
    FontManager::GetInstance()->ClearFontFamilies();
}

// view: width, height, padding left, top, right, bottom, gravity; lines: x, baseline, start,
// end and the bounds' four sides per line.
JNIEXPORT jintArray JNICALL Java_com_zentrix_android_sdk_lme_NativeProbe_renderDirect(
    JNIEnv* env, jclass, jstring jtext, jstring jfont, jfloat size, jint colour, jint background, jintArray jview,
    jintArray jlines, jobjectArray effects)
{
    LmTextObject object;
    object.Construct();
    LmString text;
    text.Construct(Chars(env, jtext).c_str());
    object.SetText(&text);
    object.SetFont(Chars(env, jfont).c_str());
    LmPaint paint;
    paint.setTextSize(size);
    object.SetPaint(paint);
    object.SetTextColor((unsigned)colour);
    object.SetBackgroundColor((unsigned)background, background != 0);

    std::vector<jint> v = Ints(env, jview), l = Ints(env, jlines);
    LmView* view = object.GetView();
    view->SetSize(v[0], v[1]);
    view->SetPadding(v[2], v[3], v[4], v[5]);
    view->gravity = v[6];
    List lines;
    lines.Construct();
    for (size_t i = 0; i + 7 < l.size(); i += 8) {
        auto* info = new LineInfo();
        *info = LineInfo{l[i], l[i + 1], l[i + 2], l[i + 3], 1, LmRect(l[i + 4], l[i + 5], l[i + 6], l[i + 7]), LmRect()};
        lines.Add(info);
    }
    object.SetLineInfo(&lines);
    lines.RemoveAll();

    LmEffect* effect = object.GetEffect();
    for (jsize i = 0; i < env->GetArrayLength(effects); ++i) {
        auto record = static_cast<jdoubleArray>(env->GetObjectArrayElement(effects, i));
        std::vector<double> e((size_t)env->GetArrayLength(record));
        env->GetDoubleArrayRegion(record, 0, (jsize)e.size(), e.data());
        AddEffect(*effect, e);
        env->DeleteLocalRef(record);
    }
    int w = v[0] + effect->getLeftOffset() + effect->getRightOffset();
    int h = v[1] + effect->getTopOffset() + effect->getBottomOffset();
    const uint32_t* pixels = object.RenderTextEffect(w, h);
    jintArray out = env->NewIntArray(w * h);
    env->SetIntArrayRegion(out, 0, w * h, reinterpret_cast<const jint*>(pixels));
    return out;
}

} // extern "C"
