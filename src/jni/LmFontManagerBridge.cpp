#include "jni/LmFontManagerBridge.h"

#include "foundation/File.h"
#include "foundation/List.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "jni/LmJni.h"
#include "jni/LmJniGuard.h"
#include "jni/LmJniLocalFrame.h"
#include "jni/LmJniString.h"
#include "platform/LmLocaleListRegistry.h"
#include "text/FontEntry.h"
#include "text/FontManager.h"
#include "text/LmFontFamily.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace LmFontEffect {

namespace {

const char* const kTag = "Init_LmFontManager_JNI";

JavaVM* gVm = nullptr;
jclass gClass = nullptr;

jboolean LmFontManager_InsertFontData(JNIEnv* env, jclass, jstring jname, jbyteArray jbuffer)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmFontManager_InsertFontData");
    if (!jname) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmFontManager_InsertFontData() - fontName is NULL");
        return JNI_FALSE;
    }
    if (!jbuffer) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmFontManager_InsertFontData() - buffer is NULL");
        return JNI_FALSE;
    }
    LmJniString name(env, jname);
    if (!name.get()) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmFontManager_InsertFontData() - Fail to get fontFile string");
        return JNI_FALSE;
    }
    unsigned size = 0;
    char* buffer = LmJni::CopyBytes(env, jbuffer, &size);
    return FontManager::GetInstance()->AddMinikinFont(name.get(), buffer, size, 0, true) ? JNI_TRUE : JNI_FALSE;
}

struct FamilyMethods {
    jmethodID getName, getFonts, getLanguages, getVariant;
    jmethodID getFontName, getTtcIndex, getWeight, isItalic, getFallbackFor;
};

bool LookUpFamilyMethods(JNIEnv* env, FamilyMethods& m)
{
    jclass family = LmJni::FindClass(env, "android/text/FontConfig$Family");
    jclass font = LmJni::FindClass(env, "android/text/FontConfig$Font");
    const LmJni::MethodLookup familyLookups[] = {
        {"getName", "()Ljava/lang/String;", &m.getName},
        {"getFonts", "()[Landroid/text/FontConfig$Font;", &m.getFonts},
        {"getLanguages", "()Ljava/lang/String;", &m.getLanguages},
        {"getVariant", "()I", &m.getVariant},
    };
    const LmJni::MethodLookup fontLookups[] = {
        {"getFontName", "()Ljava/lang/String;", &m.getFontName},
        {"getTtcIndex", "()I", &m.getTtcIndex},
        {"getWeight", "()I", &m.getWeight},
        {"isItalic", "()Z", &m.isItalic},
        {"getFallbackFor", "()Ljava/lang/String;", &m.getFallbackFor},
    };
    const char* format = "Java function %s not found";
    bool ok = LmJni::Methods(env, family, familyLookups, 4, kTag, format) &&
              LmJni::Methods(env, font, fontLookups, 5, kTag, format);
    env->DeleteLocalRef(font);
    env->DeleteLocalRef(family);
    return ok;
}

// The fonts of one family element that can be drawn: readable, upright, not a fallback for
// another family.
void AddFonts(JNIEnv* env, jobject jfamily, const FamilyMethods& m, LmFontFamily& family)
{
    auto fonts = static_cast<jobjectArray>(LmJni::CallObject(env, jfamily, m.getFonts));
    const jsize count = fonts ? env->GetArrayLength(fonts) : 0;
    for (jsize i = 0; i < count; ++i) {
        LmJniLocalFrame frame(env, 8);
        jobject font = env->GetObjectArrayElement(fonts, i);
        if (!font) continue;
        LmJniString name(env, static_cast<jstring>(LmJni::CallObject(env, font, m.getFontName)));
        char path[1024];
        std::snprintf(path, sizeof path, "%s", name.get() ? name.get() : "");
        if (File::IsAccessible(path, R_OK) != 0) continue;
        if (LmJni::CallBoolean(env, font, m.isItalic)) continue;
        LmJniString fallbackFor(env, static_cast<jstring>(LmJni::CallObject(env, font, m.getFallbackFor)));
        if (fallbackFor.get() && fallbackFor.get()[0]) continue;
        auto* entry = new FontEntry();
        entry->path = new LmString();
        entry->path->Construct(path);
        entry->ttcIndex = LmJni::CallInt(env, font, m.getTtcIndex);
        entry->weight = LmJni::CallInt(env, font, m.getWeight);
        family.fonts->Add(entry);
    }
    if (fonts) env->DeleteLocalRef(fonts);
}

bool ConvertToFontFamilies(JNIEnv* env, jobject fontConfig, List& list)
{
    jclass configClass = env->GetObjectClass(fontConfig);
    jmethodID getFamilies = LmJni::Method(env, configClass, "getFamilies", "()[Landroid/text/FontConfig$Family;");
    env->DeleteLocalRef(configClass);
    if (!getFamilies) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "Java Function %s not found", "getFamilies");
        return false;
    }
    auto families = static_cast<jobjectArray>(LmJni::CallObject(env, fontConfig, getFamilies));
    if (!families) return false;
    const jsize count = env->GetArrayLength(families);
    if (count == 0) return true;
    FamilyMethods m;
    if (!LookUpFamilyMethods(env, m)) return false;

    bool namedSeen = false;
    for (jsize i = 0; i < count; ++i) {
        LmJniLocalFrame frame(env, 8);
        jobject jfamily = env->GetObjectArrayElement(families, i);
        if (!jfamily) continue;
        // The first named family is the default one; later named ones are dropped.
        bool named = LmJni::CallObject(env, jfamily, m.getName) != nullptr;
        if (named && namedSeen) continue;
        namedSeen = namedSeen || named;

        auto* family = new LmFontFamily();
        family->fonts = new List();
        family->fonts->Construct();
        AddFonts(env, jfamily, m, *family);
        if (family->fonts->GetCount() == 0) {
            delete family;
            continue;
        }
        LmJniString languages(env, static_cast<jstring>(LmJni::CallObject(env, jfamily, m.getLanguages)));
        const char* lang = languages.get();
        const bool noLanguage = !lang || !lang[0];
        family->localeListId = noLanguage ? 0 : LmLocaleListRegistry::registerLocaleList(lang);
        family->variant = LmJni::CallInt(env, jfamily, m.getVariant);
        if (named || noLanguage || !std::strcmp(lang, "und-Zsye") || !std::strcmp(lang, "und-Zsym"))
            family->loaded = FontManager::GetInstance()->BuildMinikinFamily(family);
        list.Add(family);
        if (LmLog::IsAllLogEnable())
            LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Family lang(%s) localeListId(%d) loaded(%s)", lang ? lang : "",
                         (int)family->localeListId, family->loaded ? "TRUE" : "FALSE");
    }
    return true;
}

void DeleteFamilies(List* list)
{
    const int count = list->GetCount();
    for (int i = 0; i < count; ++i) delete static_cast<LmFontFamily*>(list->Get(i));
    delete list;
}

jboolean LmFontManager_SetFontConfig(JNIEnv* env, jclass, jobject fontConfig)
{
    const bool allLog = LmLog::IsAllLogEnable();
    if (allLog) LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmFontManager_SetFontConfig()");
    FontManager* manager = FontManager::GetInstance();
    if (manager->IsSystemFontFamiliesAlreadySet()) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmFontManager_SetFontConfig - already set");
        return JNI_TRUE;
    }
    if (!fontConfig) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmFontManager_SetFontConfig - jFontConfig is NULL");
        return JNI_FALSE;
    }
    auto* list = new List();
    list->Construct();
    if (allLog) LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmFontManager_SetFontConfig >>> ConvertToFontFamilies");
    LmJniLocalFrame frame(env, 16);
    const bool converted = ConvertToFontFamilies(env, fontConfig, *list);
    if (allLog) LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmFontManager_SetFontConfig <<<< ConvertToFontFamilies");
    if (!converted) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmFontManager_SetFontConfig - cannot convert to native families");
        DeleteFamilies(list);
        return JNI_FALSE;
    }
    const bool set = manager->SetSystemFontFamilies(list);
    if (manager->GetSystemFontFamilies() != list) DeleteFamilies(list);  // not taken
    return set ? JNI_TRUE : JNI_FALSE;
}

const JNINativeMethod kMethods[] = {
    {const_cast<char*>("LmFontManager_InsertFontData"), const_cast<char*>("(Ljava/lang/String;[B)Z"),
     reinterpret_cast<void*>(LmJniGuard<&LmFontManager_InsertFontData>::Call)},
    {const_cast<char*>("LmFontManager_SetFontConfig"), const_cast<char*>("(Landroid/text/FontConfig;)Z"),
     reinterpret_cast<void*>(LmJniGuard<&LmFontManager_SetFontConfig>::Call)},
};

} // namespace

bool LmFontManager_OnLoad(JavaVM* vm, JNIEnv* env)
{
    gVm = vm;
    return LmJni::BindClass(env, "com/zentrix/android/sdk/lme/font/FontManager", kMethods, 2, kTag,
                            "Init_LmFontManager_JNI", &gClass);
}

} // namespace LmFontEffect
