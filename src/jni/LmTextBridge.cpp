#include "jni/LmTextBridge.h"

#include "effect/LmEffect.h"
#include "effect/LmGradient.h"
#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmConvert.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "jni/LmAssetReader.h"
#include "jni/LmJni.h"
#include "jni/LmJniGuard.h"
#include "jni/LmJniLocalFrame.h"
#include "jni/LmJniString.h"
#include "platform/LmLocaleListRegistry.h"
#include "platform/LmPaint.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmTextInstanceManager.h"
#include "text/LmTextObject.h"
#include "text/LmView.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmText_JNI";

JavaVM* gVm = nullptr;
jclass gClass = nullptr;
jfieldID gHandleField = nullptr;

void LogError(const char* message)
{
    LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "%s", message);
}

void LogDebug(const char* message)
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "%s", message);
}

LmTextObject* GetBoundTextObject(JNIEnv* env, jobject thiz)
{
    if (!gHandleField || !thiz) return nullptr;
    const jint handle = env->GetIntField(thiz, gHandleField);
    if (handle >= 0) return LmTextObject::FindLmTextObject(handle);
    LogDebug("GetBoundTextObject - hande = 0");
    auto* object = new LmTextObject();
    if (!object->Construct()) {
        delete object;
        return nullptr;
    }
    LmTextInstanceManager::Bind(object);
    env->SetIntField(thiz, gHandleField, object->GetRuntimeHandle());
    return object;
}

// The bound object, or null after error 19 at the call's site.
LmTextObject* Bound(JNIEnv* env, jobject thiz, int site)
{
    LmTextObject* object = GetBoundTextObject(env, thiz);
    if (!object) Error::Report(kTag, Error::LM_ERR_NOT_BOUND, site);
    return object;
}

// The bound object's effect stack, or null after error 19 or `missing`.
LmEffect* BoundEffect(JNIEnv* env, jobject thiz, int site, const char* missing)
{
    LmTextObject* object = Bound(env, thiz, site);
    if (!object) return nullptr;
    LmEffect* effect = object->GetEffect();
    if (!effect) LogError(missing);
    return effect;
}

void LmText_finalize(JNIEnv* env, jobject thiz)
{
    if (!gHandleField) return;
    const jint handle = env->GetIntField(thiz, gHandleField);
    if (handle < 0) return;
    LmTextObject* object = LmTextObject::FindLmTextObject(handle);
    if (!object) return;
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "finalize : RH %d", handle);
    LmTextInstanceManager::Release(object, true);
}

jint LmText_AddInnerShadowTextEffect(JNIEnv* env, jobject thiz, jfloat angle, jfloat distance, jfloat size,
                                     jint colour, jfloat opacity)
{
    LmEffect* effect = BoundEffect(env, thiz, __LINE__, "LmText_AddInnerShadowTextEffect() effect is NULL");
    return effect ? effect->addInnerShadowText(angle, distance, size, (unsigned)colour, opacity) : -1;
}

jint LmText_AddLinearGradientTextEffect(JNIEnv* env, jobject thiz, jfloat angle, jfloat scale, jintArray colours,
                                        jfloatArray opacities, jfloatArray positions, jfloat opacity)
{
    LmEffect* effect = BoundEffect(env, thiz, __LINE__, "LmText_AddLinearGradientTextEffect() effect is NULL");
    if (!effect || !colours || !opacities || !positions) return -1;
    const jsize n = env->GetArrayLength(colours);
    if (env->GetArrayLength(opacities) != n || env->GetArrayLength(positions) != n) return -1;
    std::vector<jint> c((size_t)n);
    std::vector<jfloat> o((size_t)n), p((size_t)n);
    env->GetIntArrayRegion(colours, 0, n, c.data());
    env->GetFloatArrayRegion(opacities, 0, n, o.data());
    env->GetFloatArrayRegion(positions, 0, n, p.data());
    std::unique_ptr<LmGradient[]> stops(new (std::nothrow) LmGradient[(size_t)n + 1]);
    if (!stops) return -1;
    for (jsize i = 0; i < n; ++i) {
        stops[(size_t)i].colour = (unsigned)c[(size_t)i];
        stops[(size_t)i].opacity = o[(size_t)i];
        stops[(size_t)i].position = p[(size_t)i];
    }
    return effect->addLinearGradientText(angle, scale, opacity, (int)n, stops.get());
}

jint LmText_AddOuterGlowTextEffect(JNIEnv* env, jobject thiz, jfloat size, jint colour, jfloat opacity)
{
    LmEffect* effect = BoundEffect(env, thiz, __LINE__, "LmText_AddOuterGlowTextEffect() - Effect is NULL");
    return effect ? effect->addOuterGlowText(size, (unsigned)colour, opacity, 0, nullptr) : -1;
}

jint LmText_AddOuterShadowTextEffect(JNIEnv* env, jobject thiz, jfloat angle, jfloat distance, jfloat size,
                                     jint colour, jfloat opacity)
{
    LmEffect* effect = BoundEffect(env, thiz, __LINE__, "LmText_AddOuterShadowTextEffect() effect is NULL");
    return effect ? effect->addOuterShadowText(angle, distance, size, (unsigned)colour, opacity) : -1;
}

jint LmText_AddStrokeTextEffect(JNIEnv* env, jobject thiz, jfloat size, jint colour, jfloat opacity, jint extra,
                                jint position)
{
    LmEffect* effect = BoundEffect(env, thiz, __LINE__, "LmText_AddStrokeTextEffect() effect is NULL");
    return effect ? effect->addStrokeText(size, (unsigned)colour, opacity, extra, position) : -1;
}

void LmText_ClearAllTextEffect(JNIEnv* env, jobject thiz)
{
    if (!gHandleField || env->GetIntField(thiz, gHandleField) < 0) return;
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmEffect* effect = object ? object->GetEffect() : nullptr;
    if (effect) effect->cleanAllEffect();
}

jintArray LmText_RenderTextEffect(JNIEnv* env, jobject thiz)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmView* view = object ? object->GetView() : nullptr;
    LmEffect* effect = object ? object->GetEffect() : nullptr;
    if (!view || !effect) return nullptr;
    const int64_t width = (int64_t)view->GetWidth() + effect->getLeftOffset() + effect->getRightOffset();
    const int64_t height = (int64_t)view->GetHeight() + effect->getTopOffset() + effect->getBottomOffset();
    if (width < 0 || height < 0 || width > INT32_MAX || height > INT32_MAX || width * height > INT32_MAX) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "LmText_RenderTextEffect() - bitmap %lldx%lld is too large",
                     (long long)width, (long long)height);
        Error::SetError(Error::LM_ERR_INVALID_ARGUMENT);
        return nullptr;
    }
    view->SetBitmapWidth((int)width);
    view->SetBitmapHeight((int)height);
    const uint32_t* pixels = object->RenderTextEffect((int)width, (int)height);
    if (!pixels) return nullptr;
    const jsize count = (jsize)(width * height);
    jintArray result = env->NewIntArray(count);
    if (!result) {
        LmJni::ClearException(env);
        return nullptr;
    }
    env->SetIntArrayRegion(result, 0, count, reinterpret_cast<const jint*>(pixels));
    return result;
}

jboolean LmText_SetFont(JNIEnv* env, jobject thiz, jstring jpath)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    if (!object) return JNI_FALSE;
    LmJniString path(env, jpath);
    if (!path.get()) {
        LogError("LmText_SetFont() - Fail to get fontFile string");
        return JNI_FALSE;
    }
    return object->SetFont(path.get()) ? JNI_TRUE : JNI_FALSE;
}

jboolean LmText_SetFont2(JNIEnv* env, jobject thiz, jstring jname, jbyteArray jbuffer)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    if (!object) return JNI_FALSE;
    if (!jname) {
        LogError("LmText_SetFont2() - fontName is NULL");
        return JNI_FALSE;
    }
    if (!jbuffer) {
        LogError("LmText_SetFont2() - buffer is NULL");
        return JNI_FALSE;
    }
    LmJniString name(env, jname);
    if (!name.get()) {
        LogError("LmText_SetFont2() - Fail to get fontFile string");
        return JNI_FALSE;
    }
    unsigned size = 0;
    char* buffer = LmJni::CopyBytes(env, jbuffer, &size);
    if (!buffer) return JNI_FALSE;
    return object->SetFont(name.get(), buffer, size) ? JNI_TRUE : JNI_FALSE;
}

jboolean LmText_SetFont3(JNIEnv* env, jobject thiz, jobject assetManager, jstring jname)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    if (!object) return JNI_FALSE;
    if (!assetManager) {
        LogError("LmText_SetFont3() - assetManager is NULL");
        return JNI_FALSE;
    }
    if (!jname) {
        LogError("LmText_SetFont3() - fontName is NULL");
        return JNI_FALSE;
    }
    LmJniString name(env, jname);
    if (!name.get()) {
        LogError("LmText_SetFont3() - Fail to get fontFile string");
        return JNI_FALSE;
    }
    if (FontManager::GetInstance()->IsExisting(name.get(), 0)) return object->SetFont(name.get()) ? JNI_TRUE : JNI_FALSE;
    unsigned size = 0;
    char* buffer = LmAssetReader::Read(env, assetManager, name.get(), &size);
    if (!buffer) {
        LogError("LmText_SetFont3() - _ASSET_NOT_FOUND_");
        return JNI_FALSE;
    }
    return object->SetFont(name.get(), buffer, size) ? JNI_TRUE : JNI_FALSE;
}

// The paint's locale list as a registered id; 0 without locales.
uint32_t LocaleListId(JNIEnv* env, jobject locales)
{
    if (!locales) return 0;
    jclass cls = env->GetObjectClass(locales);
    jmethodID toTags = LmJni::Method(env, cls, "toLanguageTags", "()Ljava/lang/String;");
    if (!toTags) {
        LogDebug("LocaleList cannot find 'toLanguageTags' method id");
        return 0;
    }
    LmJniString tags(env, static_cast<jstring>(LmJni::CallObject(env, locales, toTags)));
    return tags.get() ? LmLocaleListRegistry::registerLocaleList(tags.get()) : 0;
}

// The paint's alignment is checked but not kept: the lines arrive already placed by the view's
// layout, so nothing downstream aligns text.
void CheckAlignment(JNIEnv* env, jobject align)
{
    jclass cls = align ? env->GetObjectClass(align) : nullptr;
    jmethodID name = LmJni::Method(env, cls, "name", "()Ljava/lang/String;");
    if (align && !name) LogDebug("Paint.Align cannot find 'name' method id");
}

jboolean LmText_SetPaint(JNIEnv* env, jobject thiz, jobject jpaint)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    if (!object) return JNI_FALSE;
    if (!jpaint) {
        LogError("LmText_SetPaint() - paint is NULL");
        return JNI_FALSE;
    }
    LmJniLocalFrame frame(env, 16);
    jmethodID scaleX, skewX, spacing, elegant, flags, features, locales, align, color, size, fakeBold;
    const LmJni::MethodLookup lookups[] = {
        {"getTextScaleX", "()F", &scaleX},
        {"getTextSkewX", "()F", &skewX},
        {"getLetterSpacing", "()F", &spacing},
        {"isElegantTextHeight", "()Z", &elegant},
        {"getFlags", "()I", &flags},
        {"getFontFeatureSettings", "()Ljava/lang/String;", &features},
        {"getTextLocales", "()Landroid/os/LocaleList;", &locales},
        {"getTextAlign", "()Landroid/graphics/Paint$Align;", &align},
        {"getColor", "()I", &color},  // looked up only: the text colour comes from the view
        {"getTextSize", "()F", &size},
        {"isFakeBoldText", "()Z", &fakeBold},
    };
    if (!LmJni::Methods(env, env->GetObjectClass(jpaint), lookups, 11, kTag, "Java function %s not found"))
        return JNI_FALSE;
    LmPaint paint;
    paint.setTextScaleX(LmJni::CallFloat(env, jpaint, scaleX));
    paint.setTextSkewX(LmJni::CallFloat(env, jpaint, skewX));
    paint.setTextSize(LmJni::CallFloat(env, jpaint, size));
    paint.setEmbolden(LmJni::CallBoolean(env, jpaint, fakeBold));
    paint.setLetterSpacing(LmJni::CallFloat(env, jpaint, spacing));
    paint.setFamilyVariant(LmJni::CallBoolean(env, jpaint, elegant) ? LmPaint::kVariantElegant
                                                                    : LmPaint::kVariantDefault);
    paint.setJavaFlags((uint32_t)LmJni::CallInt(env, jpaint, flags));
    LmJniString featureText(env, static_cast<jstring>(LmJni::CallObject(env, jpaint, features)));
    if (featureText.get()) paint.setFontFeatureSettings(featureText.get());
    paint.setLocaleListId(LocaleListId(env, LmJni::CallObject(env, jpaint, locales)));
    CheckAlignment(env, LmJni::CallObject(env, jpaint, align));
    object->SetPaint(paint);
    return JNI_TRUE;
}

jboolean LmText_SetView(JNIEnv* env, jobject thiz, jobject textView)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmView* view = object ? object->GetView() : nullptr;
    if (!view) return JNI_FALSE;
    if (!textView) {
        LogError("LmText_SetView - textView is NULL");
        return JNI_FALSE;
    }
    LmJniLocalFrame frame(env, 16);
    jmethodID textSize, textColor, typeface, textDirection, layoutDirection, width, height;
    jmethodID padLeft, padRight, padTop, padBottom, gravity, maxLines;
    const LmJni::MethodLookup lookups[] = {
        {"getTextSize", "()F", &textSize},
        {"getCurrentTextColor", "()I", &textColor},
        {"getTypeface", "()Landroid/graphics/Typeface;", &typeface},
        {"getTextDirection", "()I", &textDirection},
        {"getLayoutDirection", "()I", &layoutDirection},
        {"getWidth", "()I", &width},
        {"getHeight", "()I", &height},
        {"getPaddingLeft", "()I", &padLeft},
        {"getPaddingRight", "()I", &padRight},
        {"getPaddingTop", "()I", &padTop},
        {"getPaddingBottom", "()I", &padBottom},
        {"getGravity", "()I", &gravity},
        {"getMaxLines", "()I", &maxLines},
    };
    if (!LmJni::Methods(env, env->GetObjectClass(textView), lookups, 13, kTag, "LmText_SetView - Function %s not found"))
        return JNI_FALSE;
    view->gravity = LmJni::CallInt(env, textView, gravity);
    view->maxLines = LmJni::CallInt(env, textView, maxLines);
    object->SetTextColor((uint32_t)LmJni::CallInt(env, textView, textColor));
    view->SetPadding(LmJni::CallInt(env, textView, padLeft), LmJni::CallInt(env, textView, padTop),
                     LmJni::CallInt(env, textView, padRight), LmJni::CallInt(env, textView, padBottom));
    view->SetSize(LmJni::CallInt(env, textView, width), LmJni::CallInt(env, textView, height));
    jobject face = LmJni::CallObject(env, textView, typeface);
    if (face) {
        jclass faceClass = env->GetObjectClass(face);
        jmethodID isBold = LmJni::Method(env, faceClass, "isBold", "()Z");
        if (!isBold) LogDebug("getTypeFace cannot find 'isBold' method id");
        jmethodID isItalic = LmJni::Method(env, faceClass, "isItalic", "()Z");
        if (!isItalic) LogDebug("getTypeFace cannot find 'isItalic' method id");
        object->SetTextStyle(LmJni::CallBoolean(env, face, isBold), LmJni::CallBoolean(env, face, isItalic));
    }
    return JNI_TRUE;
}

struct LayoutMethods {
    jmethodID width, height, topPadding, bottomPadding, lineCount, paragraphDirection, paragraphLeft, paragraphRight;
    jmethodID lineBaseline, lineTop, lineBottom, lineAscent, lineDescent, lineStart, lineEnd, lineVisibleEnd;
    jmethodID lineLeft, lineRight, lineMax, lineWidth, text;
};

bool LookUpLayoutMethods(JNIEnv* env, jobject layout, LayoutMethods& m)
{
    const LmJni::MethodLookup lookups[] = {
        {"getWidth", "()I", &m.width},
        {"getHeight", "()I", &m.height},
        {"getTopPadding", "()I", &m.topPadding},
        {"getBottomPadding", "()I", &m.bottomPadding},
        {"getLineCount", "()I", &m.lineCount},
        {"getParagraphDirection", "(I)I", &m.paragraphDirection},
        {"getParagraphLeft", "(I)I", &m.paragraphLeft},
        {"getParagraphRight", "(I)I", &m.paragraphRight},
        {"getLineBaseline", "(I)I", &m.lineBaseline},
        {"getLineTop", "(I)I", &m.lineTop},
        {"getLineBottom", "(I)I", &m.lineBottom},
        {"getLineAscent", "(I)I", &m.lineAscent},
        {"getLineDescent", "(I)I", &m.lineDescent},
        {"getLineStart", "(I)I", &m.lineStart},
        {"getLineEnd", "(I)I", &m.lineEnd},
        {"getLineVisibleEnd", "(I)I", &m.lineVisibleEnd},
        {"getLineLeft", "(I)F", &m.lineLeft},
        {"getLineRight", "(I)F", &m.lineRight},
        {"getLineMax", "(I)F", &m.lineMax},
        {"getLineWidth", "(I)F", &m.lineWidth},
        {"getText", "()Ljava/lang/CharSequence;", &m.text},
    };
    return LmJni::Methods(env, env->GetObjectClass(layout), lookups, 21, kTag, "LmText_SetLayout - Function %s not found");
}

// The background colour of the text's spans: the last BackgroundColorSpan in span order.
void SetBackground(JNIEnv* env, LmTextObject& object, jobject text, jsize length)
{
    jclass spannable = LmJni::FindClass(env, "android/text/SpannableString");
    jclass spanClass = LmJni::FindClass(env, "android/text/style/BackgroundColorSpan");
    jmethodID init = LmJni::Method(env, spannable, "<init>", "(Ljava/lang/CharSequence;)V");
    jmethodID getSpans = LmJni::Method(env, spannable, "getSpans", "(IILjava/lang/Class;)[Ljava/lang/Object;");
    jmethodID getColour = LmJni::Method(env, spanClass, "getBackgroundColor", "()I");
    jobject spanned = text && init ? env->NewObject(spannable, init, text) : nullptr;
    LmJni::ClearException(env);
    auto spans = static_cast<jobjectArray>(LmJni::CallObject(env, spanned, getSpans, 0, length, spanClass));
    for (jsize i = spans ? env->GetArrayLength(spans) - 1 : -1; i >= 0; --i) {
        jobject span = env->GetObjectArrayElement(spans, i);
        if (!span) continue;
        object.SetBackgroundColor((uint32_t)LmJni::CallInt(env, span, getColour), true);
        return;
    }
    object.SetBackgroundColor(0, false);
}

// The lines to draw, placed in the view: the vertical origin follows the gravity and x adds
// the left padding.
void PlaceLines(JNIEnv* env, jobject layout, const LayoutMethods& m, LmView& view, List& out)
{
    const int n = LmJni::CallInt(env, layout, m.lineCount);
    int drawn = 0;
    if (view.lineLimit >= 1) drawn = std::min(n, (int)view.lineLimit);
    else if (view.maxLines >= 1) drawn = std::min(n, (int)view.maxLines);
    if (n <= 0 || drawn <= 0) return;  // no line is drawn without a limit

    auto lineInt = [&](jmethodID method, int i) { return (int64_t)LmJni::CallInt(env, layout, method, (jint)i); };
    auto lineFloat = [&](jmethodID method, int i) { return LmJni::CallFloat(env, layout, method, (jint)i); };
    const int64_t b0 = lineInt(m.lineBaseline, 0);
    lineInt(m.lineBaseline, n - 1);
    const int g = view.gravity & LmView::kVerticalMask;
    const int64_t height = view.GetHeight(), padTop = view.GetPaddingTop(), padBottom = view.GetPaddingBottom();
    int first = 0, last = drawn - 1;
    int64_t origin = padTop + b0;
    int64_t bottomBase = 0;
    if (g == LmView::kCenterVertical || g == LmView::kFillVertical) {
        const int64_t avail = height - padTop - padBottom, bottom = lineInt(m.lineBottom, drawn - 1);
        if (avail > bottom) origin += (avail - bottom) / 2;
    } else if (g == LmView::kBottom) {
        const int64_t lastBottom = lineInt(m.lineBottom, n - 1);
        origin = height + b0 - lastBottom - padBottom;
        bottomBase = height - padBottom - lastBottom;
        first = n - drawn;
        last = n - 1;
    }
    for (int i = first; i <= last; ++i) {
        auto* info = new LineInfo();
        const int64_t baseline = lineInt(m.lineBaseline, i);
        info->baseline = lmSaturate(g == LmView::kBottom ? bottomBase + baseline : origin - b0 + baseline);
        info->x = lmSaturate((int64_t)lmToInt(lineFloat(m.lineLeft, i)) + view.GetPaddingLeft());
        info->start = (int32_t)lineInt(m.lineStart, i);
        info->end = (int32_t)lineInt(m.lineVisibleEnd, i);
        info->direction = 1;
        info->bounds = LmRect(info->x, lmSaturate(info->baseline + lineInt(m.lineAscent, i)),
                              lmSaturate((int64_t)info->x + lmToInt(lineFloat(m.lineWidth, i))),
                              lmSaturate(info->baseline + lineInt(m.lineDescent, i)));
        out.Add(info);
    }
}

jboolean LmText_SetLayout(JNIEnv* env, jobject thiz, jobject layout)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmView* view = object ? object->GetView() : nullptr;
    if (!view) return JNI_FALSE;
    const int handle = object->GetRuntimeHandle();
    if (!layout) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmText_SetLayout - RH(%d) null", handle);
        return JNI_FALSE;
    }
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "LmText_SetLayout - RH(%d) (%p)", handle, (void*)layout);
    LmJniLocalFrame frame(env, 32);
    LayoutMethods m;
    if (!LookUpLayoutMethods(env, layout, m)) return JNI_FALSE;

    jobject text = LmJni::CallObject(env, layout, m.text);
    jsize length = 0;
    if (text) {
        jclass textClass = env->GetObjectClass(text);
        jmethodID toString = LmJni::Method(env, textClass, "toString", "()Ljava/lang/String;");
        if (!toString) LogDebug("getText cannot find 'toString' method id");
        auto string = static_cast<jstring>(LmJni::CallObject(env, text, toString));
        LmString native;
        native.Construct();
        if (LmJni::ToLmString(env, string, native)) {
            object->SetText(&native);
            length = env->GetStringLength(string);
        }
    }
    SetBackground(env, *object, text, length);

    List lines;
    lines.Construct();
    PlaceLines(env, layout, m, *view, lines);
    if (!object->SetLineInfo(&lines)) {
        for (int i = 0; i < lines.GetCount(); ++i) delete static_cast<LineInfo*>(lines.Get(i));
    }
    lines.RemoveAll();
    return JNI_TRUE;
}

jboolean LmText_SetLine(JNIEnv* env, jobject thiz, jint count)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmView* view = object ? object->GetView() : nullptr;
    if (!view) return JNI_FALSE;
    view->lineLimit = count;
    return JNI_TRUE;
}

jintArray LmText_GetDrawingBitmapSize(JNIEnv* env, jobject thiz)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmView* view = object ? object->GetView() : nullptr;
    if (!view) return nullptr;
    jintArray size = env->NewIntArray(2);
    if (!size) {
        LmJni::ClearException(env);
        return nullptr;
    }
    const jint values[2] = {view->GetBitmapWidth(), view->GetBitmapHeight()};
    env->SetIntArrayRegion(size, 0, 2, values);
    return size;
}

template <int (LmEffect::*Offset)()>
jint EffectOffset(JNIEnv* env, jobject thiz)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    LmEffect* effect = object ? object->GetEffect() : nullptr;
    return effect ? (effect->*Offset)() : 0;
}

jboolean LmText_SetFontFamilyName(JNIEnv* env, jobject thiz, jstring jname)
{
    LmTextObject* object = Bound(env, thiz, __LINE__);
    if (!object) return JNI_FALSE;
    LmJniString name(env, jname);
    if (!name.get()) {
        LogError("LmText_SetFontFamilyName() - Fail to get familyName string");
        return JNI_FALSE;
    }
    return object->SetFontFamilyName(name.get()) ? JNI_TRUE : JNI_FALSE;
}

#define LM_NATIVE(name, signature) \
    { const_cast<char*>(#name), const_cast<char*>(signature), reinterpret_cast<void*>(LmJniGuard<&name>::Call) }

const JNINativeMethod kMethods[] = {
    LM_NATIVE(LmText_finalize, "()V"),
    LM_NATIVE(LmText_AddInnerShadowTextEffect, "(FFFIF)I"),
    LM_NATIVE(LmText_AddLinearGradientTextEffect, "(FF[I[F[FF)I"),
    LM_NATIVE(LmText_AddOuterGlowTextEffect, "(FIF)I"),
    LM_NATIVE(LmText_AddOuterShadowTextEffect, "(FFFIF)I"),
    LM_NATIVE(LmText_AddStrokeTextEffect, "(FIFII)I"),
    LM_NATIVE(LmText_ClearAllTextEffect, "()V"),
    LM_NATIVE(LmText_RenderTextEffect, "()[I"),
    LM_NATIVE(LmText_SetFont, "(Ljava/lang/String;)Z"),
    LM_NATIVE(LmText_SetFont2, "(Ljava/lang/String;[B)Z"),
    LM_NATIVE(LmText_SetFont3, "(Landroid/content/res/AssetManager;Ljava/lang/String;)Z"),
    LM_NATIVE(LmText_SetPaint, "(Landroid/graphics/Paint;)Z"),
    LM_NATIVE(LmText_SetLayout, "(Landroid/text/Layout;)Z"),
    LM_NATIVE(LmText_SetLine, "(I)Z"),
    LM_NATIVE(LmText_SetView, "(Landroid/widget/TextView;)Z"),
    LM_NATIVE(LmText_GetDrawingBitmapSize, "()[I"),
    {const_cast<char*>("LmText_GetEffectLeftOffset"), const_cast<char*>("()I"),
     reinterpret_cast<void*>(LmJniGuard<&EffectOffset<&LmEffect::getLeftOffset>>::Call)},
    {const_cast<char*>("LmText_GetEffectTopOffset"), const_cast<char*>("()I"),
     reinterpret_cast<void*>(LmJniGuard<&EffectOffset<&LmEffect::getTopOffset>>::Call)},
    {const_cast<char*>("LmText_GetEffectRightOffset"), const_cast<char*>("()I"),
     reinterpret_cast<void*>(LmJniGuard<&EffectOffset<&LmEffect::getRightOffset>>::Call)},
    {const_cast<char*>("LmText_GetEffectBottomOffset"), const_cast<char*>("()I"),
     reinterpret_cast<void*>(LmJniGuard<&EffectOffset<&LmEffect::getBottomOffset>>::Call)},
    LM_NATIVE(LmText_SetFontFamilyName, "(Ljava/lang/String;)Z"),
};

#undef LM_NATIVE

} // namespace

bool LmText_OnLoad(JavaVM* vm, JNIEnv* env)
{
    gVm = vm;
    bool bound = LmJni::BindClass(env, "com/zentrix/android/sdk/lme/LmText", kMethods, 21, kTag, "JNI_OnLoad .. Done",
                                  &gClass);
    if (gClass && !gHandleField) {
        gHandleField = env->GetFieldID(gClass, "mHandle", "I");
        LmJni::ClearException(env);
    }
    return bound;
}

} // namespace LmFontEffect
