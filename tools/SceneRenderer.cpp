#include "SceneRenderer.h"

#include "EffectCatalog.h"
#include "TextLayout.h"
#include "ToolError.h"

#include "effect/LmEffect.h"
#include "foundation/List.h"
#include "foundation/LmConvert.h"
#include "foundation/LmString.h"
#include "platform/LmLayoutUtils.h"
#include "platform/LmPaint.h"
#include "platform/LmSystemFonts.h"
#include "platform/LmTypeface.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmFontDrawing.h"
#include "text/LmSystemFamilies.h"
#include "text/LmTextObject.h"
#include "text/LmView.h"

#include <sys/stat.h>

#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace LmFontEffect;

namespace LmTextTool {

namespace {

const int kMaxViewSide = 16384;

bool looksLikePath(const std::string& font)
{
    return font.find('/') != std::string::npos || font.find('.') != std::string::npos;
}

// Lower case without spaces, dashes or underscores: "DejaVu Sans" and "DejaVuSans-Bold" meet.
std::string squeezed(const std::string& s)
{
    std::string out;
    for (char c : s)
        if (c != ' ' && c != '-' && c != '_') out += (char)std::tolower((unsigned char)c);
    return out;
}

bool isGenericFamily(const std::string& family)
{
    for (const char* g : {"sans", "sans-serif", "serif", "monospace", "mono", "cursive", "fantasy", "system-ui"})
        if (family == g) return true;
    return false;
}

// The fallback families for scripts the chosen font lacks, once per process.
void installSystemFonts()
{
    static bool installed = LmSystemFamilies::Install();
    (void)installed;
}

int alignFor(const Scene& scene)
{
    if (scene.align >= 0) return scene.align;
    switch (scene.gravity & LmView::kHorizontalMask) {
    case 1: return TextLayout::kCenter;
    case LmView::kRight: return TextLayout::kRight;
    default: return TextLayout::kLeft;
    }
}

std::string hex(const char* key)
{
    std::string out;
    char buf[4];
    for (const unsigned char* p = (const unsigned char*)key; p && *p; ++p) {
        std::snprintf(buf, sizeof buf, "%02x", *p);
        out += buf;
    }
    return out;
}

// Shapes and measures with the same families, weight and slant font drawing will use.
class Measurer {
public:
    // bufSize counts the terminator, as font drawing passes it.
    Measurer(const std::string& fontPath, const LmPaint& paint, bool italic, const char16_t* text, int bufSize)
        : mPaint(paint), mText(text), mBufSize(bufSize)
    {
        LmString userFont;
        userFont.Construct(fontPath.c_str());
        std::vector<std::shared_ptr<LmPlatformFamily>> families;
        int weight = 400;
        FontManager::GetInstance()->GetMinikinFontFamilies(nullptr, families, &userFont, weight);
        mTypeface = LmTypeface::createFromFamilies(std::move(families), weight, italic);
        if (!mTypeface || mTypeface->getFamilies().empty()) return;
        const LmStyledFont* first = mTypeface->getFamilies()[0]->getClosestMatch(weight, italic);
        if (first && first->font) {
            mAscent = first->font->GetAscent(paint.getTextSize());
            mDescent = first->font->GetDescent(paint.getTextSize());
        }
    }

    bool ok() const { return mTypeface != nullptr; }
    float ascent() const { return mAscent; }
    float descent() const { return mDescent; }

    // The advance of [start, end) shaped with the context font drawing gives the line.
    float operator()(int start, int end) const { return end <= start ? 0.0f : shape(start, end).getAdvance(); }

    // The ink box of [start, end) relative to the pen (whole pixels).
    LmGlyphBox ink(int start, int end) const { return end <= start ? LmGlyphBox() : shape(start, end).getBounds(); }

private:
    LmLayout shape(int start, int end) const
    {
        int context = LmFontDrawing::FindContextStart(mText, start);
        return LmLayoutUtils::doLayout(mPaint, LmLayoutUtils::kBidiDefaultLTR, mTypeface.get(),
                                       reinterpret_cast<const uint16_t*>(mText), (size_t)mBufSize, (size_t)start,
                                       (size_t)(end - start), (size_t)context, (size_t)(end - context));
    }

    const LmPaint& mPaint;
    const char16_t* mText;
    int mBufSize;
    std::shared_ptr<LmTypeface> mTypeface;
    float mAscent = 0.0f;
    float mDescent = 0.0f;
};

// LineInfo records from the layout, placed in the view as the Java bridge places a view's
// layout: the vertical origin follows the gravity, x adds the left padding.
void placeLines(const TextLayout& layout, LmView& view, int shiftX, List& out)
{
    const int n = layout.getLineCount();
    int drawn = 0;
    if (view.lineLimit >= 1) drawn = std::min(n, (int)view.lineLimit);
    else if (view.maxLines >= 1) drawn = std::min(n, (int)view.maxLines);
    if (n == 0 || drawn == 0) return;

    // Paddings reach INT_MAX: positions are summed in 64 bits and saturated.
    const int64_t b0 = layout.line(0).baseline;
    const int g = view.gravity & LmView::kVerticalMask;
    const int64_t height = view.GetHeight(), padTop = view.GetPaddingTop(), padBottom = view.GetPaddingBottom();
    int first = 0, last = drawn - 1;
    int64_t origin = padTop + b0;
    if (g == LmView::kCenterVertical || g == LmView::kFillVertical) {
        const int64_t avail = height - padTop - padBottom;
        const int64_t bottom = layout.line(drawn - 1).bottom;
        if (avail > bottom) origin += (avail - bottom) / 2;
    } else if (g == LmView::kBottom) {
        first = n - drawn;
        last = n - 1;
    }
    const int64_t bottomBase = height - padBottom - layout.line(n - 1).bottom;
    for (int i = first; i <= last; ++i) {
        const TextLayout::Line& l = layout.line(i);
        auto* info = new LineInfo();
        info->baseline = lmSaturate(g == LmView::kBottom ? bottomBase + l.baseline : origin - b0 + l.baseline);
        info->x = lmSaturate((int64_t)lmToInt(l.left) + view.GetPaddingLeft() + shiftX);
        info->start = l.start;
        info->end = l.visibleEnd;
        info->direction = 1;
        info->bounds = LmRect(info->x, lmSaturate((int64_t)info->baseline + layout.getLineAscent()),
                              lmSaturate((int64_t)info->x + lmToInt(l.width)),
                              lmSaturate((int64_t)info->baseline + layout.getLineDescent()));
        out.Add(info);
    }
}

int checkedSide(int64_t value, const char* what)
{
    if (value < 1 || value > kMaxViewSide)
        throw ToolError::usage(std::string("the view ") + what + " " + std::to_string(value) + " is outside 1.." +
                               std::to_string(kMaxViewSide));
    return (int)value;
}

// The text object's text, font, paint, style and colours from the scene.
LmPaint setUpObject(const Scene& scene, const std::string& fontPath, const LmString& text, LmTextObject& object)
{
    object.SetText(&text);
    if (!object.SetFont(fontPath.c_str()))
        throw ToolError::failure("cannot read font '" + fontPath + "': not a font file the library can open");
    LmPaint paint;
    paint.setTextSize((float)scene.size);
    if (scene.bold) paint.setJavaFlags(LmPaint::kAntiAliasFlag | LmPaint::kFakeBoldTextFlag);
    object.SetPaint(paint);
    object.SetTextStyle(scene.bold, scene.italic);
    object.SetKeepWholeInk(!scene.clipToAdvance);
    object.SetTextColor(scene.color);
    object.SetBackgroundColor(scene.lineBackground, scene.lineBackgroundSet);
    return paint;
}

// Ink past the lines' advances on each side, which a fitted view makes room for when the
// whole ink is kept.
struct Overhang {
    int left = 0;
    int right = 0;
};

// Breaks the text into lines, measured with the font drawing's own families.
TextLayout layOut(const Scene& scene, const std::string& fontPath, const LmPaint& paint, const LmString& text,
                  Overhang& overhang)
{
    std::unique_ptr<char16_t[]> utf16(text.GetUTF16());
    int length = std::max(0, text.GetUTF16Size() - 1);
    std::u16string units(utf16 ? utf16.get() : u"", (size_t)length);
    Measurer measure(fontPath, paint, scene.italic, utf16 ? utf16.get() : u"", length + 1);
    if (!measure.ok()) throw ToolError::failure("cannot read font '" + fontPath + "': no usable font family");

    const int* pad = scene.padding;
    TextLayout::Options options;
    options.align = alignFor(scene);
    options.lineSpacing = (float)scene.lineSpacing;
    if (scene.width >= 0) {
        options.alignWidth = (float)std::max<int64_t>(0, (int64_t)scene.width - pad[0] - pad[2]);
        if (scene.wrap) options.wrapWidth = std::max(1.0f, options.alignWidth);
    }
    TextLayout layout(units, [&](int s, int e) { return measure(s, e); }, measure.ascent(), measure.descent(),
                      options);
    if (scene.clipToAdvance) return layout;
    for (int i = 0; i < layout.getLineCount(); ++i) {
        const TextLayout::Line& l = layout.line(i);
        const LmGlyphBox ink = measure.ink(l.start, l.visibleEnd);
        if (ink.empty()) continue;
        const float left = (float)lmToInt(l.left);
        overhang.left = std::max(overhang.left, lmToInt(-(left + ink.left)));
        overhang.right = std::max(overhang.right, lmToInt(std::ceil(left + ink.right - layout.getMaxWidth())));
    }
    return layout;
}

// The view sized from the scene (or the text), padded and placed, with its lines.
void setUpView(const Scene& scene, const TextLayout& layout, const Overhang& overhang, LmTextObject& object,
               SceneRenderer::Result& result)
{
    const int* pad = scene.padding;
    const bool fit = scene.width < 0;
    const int64_t width = !fit ? scene.width
                               : (int64_t)lmToInt(std::ceil(layout.getMaxWidth())) + overhang.left +
                                     overhang.right + pad[0] + pad[2];
    const int64_t height = scene.height >= 0 ? scene.height : (int64_t)layout.getHeight() + pad[1] + pad[3];
    result.viewWidth = checkedSide(width, "width");
    result.viewHeight = checkedSide(height, "height");

    LmView* view = object.GetView();
    view->SetSize(result.viewWidth, result.viewHeight);
    view->SetPadding(pad[0], pad[1], pad[2], pad[3]);
    view->gravity = scene.gravity;
    view->maxLines = scene.maxLines > 0 ? scene.maxLines : INT_MAX;

    List lines;
    lines.Construct();
    placeLines(layout, *view, fit ? overhang.left : 0, lines);
    object.SetLineInfo(&lines);
    lines.RemoveAll();
}

// Renders into a bitmap of the view grown by the stack's margins, as the bridge sizes it,
// over the scene's background.
RgbaImage renderImage(const Scene& scene, const SceneRenderer::Result& result, LmTextObject& object)
{
    LmEffect* effect = object.GetEffect();
    LmView* view = object.GetView();
    int bitmapWidth = lmSaturate((int64_t)result.viewWidth + effect->getLeftOffset() + effect->getRightOffset());
    int bitmapHeight = lmSaturate((int64_t)result.viewHeight + effect->getTopOffset() + effect->getBottomOffset());
    view->SetBitmapWidth(bitmapWidth);
    view->SetBitmapHeight(bitmapHeight);
    const uint32_t* pixels = object.RenderTextEffect(bitmapWidth, bitmapHeight);
    if (!pixels)
        throw ToolError::failure("the library could not render a " + std::to_string(bitmapWidth) + "x" +
                                 std::to_string(bitmapHeight) + " image");

    RgbaImage rendered = RgbaImage::fromArgb(pixels, (unsigned)bitmapWidth, (unsigned)bitmapHeight);
    if (!(scene.background >> 24)) return rendered;
    RgbaImage image((unsigned)bitmapWidth, (unsigned)bitmapHeight, scene.background);
    image.drawOver(rendered, 0, 0);
    return image;
}

} // namespace

std::string SceneRenderer::resolveFont(const std::string& font, std::string* note)
{
    struct stat st;
    bool exists = stat(font.c_str(), &st) == 0;
    if (exists || looksLikePath(font)) {
        if (exists && S_ISDIR(st.st_mode))
            throw ToolError::failure("cannot read font '" + font + "': it is a directory");
        FILE* f = std::fopen(font.c_str(), "rb");
        if (!f) throw ToolError::failure("cannot read font '" + font + "': " + std::strerror(errno));
        std::fclose(f);
        return font;
    }
    std::string path = LmSystemFonts::FindFontFile(font.c_str(), 400, false);
    if (path.empty())
        throw ToolError::failure("cannot find font family '" + font +
                                 "' through fontconfig (see fc-list, or give a file path)");
    // fontconfig substitutes silently; say so when the file does not look like the family.
    const std::string file = squeezed(path.substr(path.rfind('/') + 1));
    if (note && !isGenericFamily(font) && file.find(squeezed(font)) == std::string::npos)
        *note = "font family '" + font + "' is not installed as such; fontconfig chose " + path;
    return path;
}

SceneRenderer::Result SceneRenderer::render(const Scene& scene)
{
    Result result;
    if (!(scene.size > 0.0) || scene.size > 2000.0)
        throw ToolError::usage("the text size " + std::to_string(scene.size) + " is outside 0..2000");
    if (scene.wrap && scene.width < 0) throw ToolError::usage("wrapping needs a view width (--width)");

    const std::string fontPath = resolveFont(scene.font, &result.fontNote);
    installSystemFonts();

    LmTextObject object;
    if (!object.Construct()) throw ToolError::failure("the library could not create a text object");
    LmString text;
    text.Construct(scene.text.c_str());
    const LmPaint paint = setUpObject(scene, fontPath, text, object);
    Overhang overhang;
    const TextLayout layout = layOut(scene, fontPath, paint, text, overhang);
    setUpView(scene, layout, overhang, object, result);

    LmEffect* effect = object.GetEffect();
    for (const EffectRequest& request : scene.effects) EffectCatalog::addTo(*effect, request);
    result.image = renderImage(scene, result, object);

    std::unique_ptr<char[]> key(effect->getMapKey(scene.color));
    result.keyHex = hex(key.get());
    return result;
}

} // namespace LmTextTool
