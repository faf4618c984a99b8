#include "text/LmTextObject.h"

#include "effect/LmEffect.h"
#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "support/TestSupport.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmFontDrawing.h"
#include "text/LmTextInstanceManager.h"
#include "text/LmView.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

using namespace LmFontEffect;

namespace {

const char* const kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

std::string format(const char* fmt, const void* p, int n)
{
    char text[128];
    std::snprintf(text, sizeof text, fmt, p, n);
    return text;
}

LineInfo* makeLine(int x, int baseline, int start, int end, LmRect bounds)
{
    auto* line = new LineInfo();
    line->x = x;
    line->baseline = baseline;
    line->start = start;
    line->end = end;
    line->bounds = bounds;
    return line;
}

// Hands one line record to the object the way the bridge does: the caller's list is emptied
// without deleting what it held.
void giveLines(LmTextObject& object, std::vector<LineInfo*> lines)
{
    List list;
    list.Construct();
    for (LineInfo* line : lines) list.Add(line);
    ASSERT_EQ(object.SetLineInfo(&list), 1);
    list.RemoveAll();
}

} // namespace

TEST(TextObject, ConstructTwiceFailsAndKeepsTheHandle)
{
    LmTextObject object;
    LmTest::LogCapture log;
    ASSERT_EQ(object.Construct(), 1);
    int handle = object.GetRuntimeHandle();
    EXPECT_GE(handle, 1);
    EXPECT_TRUE(log.contains("LmTextObject", format("Construct(%p / %d)", &object, handle)));
    EXPECT_EQ(LmTextObject::FindLmTextObject(handle), &object);

    Error::SetError(0);
    EXPECT_EQ(object.Construct(), 0);
    EXPECT_EQ(Error::GetError(), 4u);
    EXPECT_EQ(object.GetRuntimeHandle(), handle);

    // The defaults of a new object.
    EXPECT_EQ(object.GetTextColor(), 0xFF000000u);
    EXPECT_EQ(object.GetText(), nullptr);
    EXPECT_NE(object.GetEffect(), nullptr);
    EXPECT_NE(object.GetFont(), nullptr);
    ASSERT_NE(object.GetLineInfo(), nullptr);
    EXPECT_EQ(object.GetLineInfo()->GetCount(), 0);
    ASSERT_NE(object.GetView(), nullptr);
    EXPECT_EQ(object.GetView()->gravity, 3);
    EXPECT_FALSE(object.isBoldTextStyle());
    EXPECT_FALSE(object.isItalicTextStyle());
}

TEST(TextObject, EveryOperationOfAnUnconstructedObjectFailsWithError8)
{
    LmTest::LogCapture log;
    {
        LmTextObject object;
        EXPECT_TRUE(log.contains("LmTextObject", format("LmTextObject(%p)%.0d", &object, 0)));
        auto expect8 = [](bool failedAsExpected) {
            EXPECT_TRUE(failedAsExpected);
            EXPECT_EQ(Error::GetError(), 8u);
            Error::SetError(0);
        };
        LmString text;
        text.Construct("x");
        LmPaint paint;
        expect8(object.GetRuntimeHandle() == -1);
        expect8(object.GetEffect() == nullptr);
        expect8(object.GetText() == nullptr);
        expect8(object.GetFont() == nullptr);
        expect8(object.GetLineInfo() == nullptr);
        expect8(object.GetView() == nullptr);
        expect8(object.SetText(&text) == 0);
        expect8(object.SetText(L"x") == 0);
        expect8(object.SetFontFamilyName("sans") == 0);
        expect8(object.SetFont(kSans) == 0);
        expect8(object.SetFont(kSans, new char[4](), 4) == 0);
        expect8(object.SetLineInfo(nullptr) == 0);
        expect8(object.SetTextStyle(true, true) == 0);
        expect8(!object.isBoldTextStyle());
        expect8(!object.isItalicTextStyle());
        object.SetPaint(paint);
        expect8(true);
        expect8(object.GetPaint().getTextSize() == LmPaint().getTextSize());
        object.SetBackgroundColor(0xFF00FF00u, true);
        expect8(true);
        object.SetTextColor(0xFFFFFFFFu);
        expect8(true);
        expect8(object.GetTextColor() == 0xFF000000u);

        log.clear();
        expect8(object.RenderTextEffect(10, 10) == nullptr);
        EXPECT_TRUE(log.contains("LmTextObject", "@ Native Error 8 : 248"));
    }
    // The destructor of an object without state reports it too.
    EXPECT_EQ(Error::GetError(), 8u);
}

TEST(TextObject, TextStyleBitsAreIndependent)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    EXPECT_EQ(object.SetTextStyle(true, false), 1);
    EXPECT_TRUE(object.isBoldTextStyle());
    EXPECT_FALSE(object.isItalicTextStyle());
    object.SetTextStyle(false, true);
    EXPECT_FALSE(object.isBoldTextStyle());
    EXPECT_TRUE(object.isItalicTextStyle());
    object.SetTextStyle(false, false);
    EXPECT_FALSE(object.isBoldTextStyle());
    EXPECT_FALSE(object.isItalicTextStyle());
}

TEST(TextObject, TextIsCopiedAndNullClearsIt)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    {
        LmString text;
        text.Construct("Hello");
        ASSERT_EQ(object.SetText(&text), 1);
    }
    ASSERT_NE(object.GetText(), nullptr);
    EXPECT_EQ(object.GetText()->CompareTo("Hello"), 0);
    ASSERT_EQ(object.SetText(L"Bye"), 1);
    EXPECT_EQ(object.GetText()->CompareTo("Bye"), 0);
    EXPECT_EQ(object.SetText((const LmString*)nullptr), 1);
    EXPECT_EQ(object.GetText(), nullptr);
    EXPECT_EQ(object.SetText((const wchar_t*)nullptr), 1);
    EXPECT_EQ(object.SetText(L""), 1);
    ASSERT_NE(object.GetText(), nullptr);
    EXPECT_EQ(object.GetText()->GetLength(), 0);
}

TEST(TextObject, LineRecordsAreTakenOverAndReplaced)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    LmTest::LogCapture log;
    Error::SetError(0);
    EXPECT_EQ(object.SetLineInfo(nullptr), 0);
    EXPECT_EQ(Error::GetError(), 7u);
    EXPECT_TRUE(log.contains("LmTextObject", "SetLineInfo - lineInfo is NULL"));

    giveLines(object, {makeLine(1, 10, 0, 3, LmRect()), makeLine(2, 20, 3, 5, LmRect())});
    ASSERT_EQ(object.GetLineInfo()->GetCount(), 2);
    EXPECT_EQ(static_cast<LineInfo*>(object.GetLineInfo()->Get(1))->baseline, 20);
    // The old records are deleted (the sanitizer build sees a leak otherwise).
    giveLines(object, {makeLine(7, 70, 0, 1, LmRect())});
    ASSERT_EQ(object.GetLineInfo()->GetCount(), 1);
    EXPECT_EQ(static_cast<LineInfo*>(object.GetLineInfo()->Get(0))->x, 7);
    giveLines(object, {});
    EXPECT_EQ(object.GetLineInfo()->GetCount(), 0);
}

TEST(TextObject, FontSettersRegisterWithTheFontManager)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    Error::SetError(0);
    EXPECT_EQ(object.SetFont(nullptr), 0);
    EXPECT_EQ(Error::GetError(), 7u);
    Error::SetError(0);
    EXPECT_EQ(object.SetFont(nullptr, new char[8](), 8), 0);
    EXPECT_EQ(Error::GetError(), 7u);
    EXPECT_EQ(object.SetFontFamilyName(nullptr), 0);

    EXPECT_EQ(object.SetFont("/nonexistent/font.ttf"), 0);
    EXPECT_EQ(object.GetFont()->GetFontPath(), nullptr);

    LmTest::LogCapture log;
    ASSERT_EQ(object.SetFont(kSans), 1);
    EXPECT_TRUE(log.contains("LmTextObject", std::string("SetFont(") + format("%p", &object, 0) + ") - path[" + kSans + "]"));
    EXPECT_TRUE(FontManager::GetInstance()->IsExisting(kSans, 0));
    ASSERT_NE(object.GetFont()->GetFontPath(), nullptr);
    EXPECT_EQ(object.GetFont()->GetFontPath()->CompareTo(kSans), 0);

    // Random bytes are no font: refused, the previous choice stays.
    char* junk = new char[64];
    for (int i = 0; i < 64; ++i) junk[i] = (char)(i * 37 + 11);
    EXPECT_EQ(object.SetFont("junk-font", junk, 64), 0);
    EXPECT_EQ(object.GetFont()->GetFontPath()->CompareTo(kSans), 0);

    ASSERT_EQ(object.SetFontFamilyName("sans-serif"), 1);
    ASSERT_NE(object.GetFont()->GetFontFamilyName(), nullptr);
    EXPECT_EQ(object.GetFont()->GetFontFamilyName()->CompareTo("sans-serif"), 0);
}

TEST(TextObject, PaintAndColoursAreStored)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    LmPaint paint;
    paint.setTextSize(48.0f);
    paint.setTextSkewX(-0.25f);
    object.SetPaint(paint);
    paint.setTextSize(10.0f);  // the object keeps its own copy
    EXPECT_EQ(object.GetPaint().getTextSize(), 48.0f);
    EXPECT_EQ(object.GetPaint().getTextSkewX(), -0.25f);
    object.SetTextColor(0x80112233u);
    EXPECT_EQ(object.GetTextColor(), 0x80112233u);
}

namespace {

// A text object with no text (so font drawing draws nothing) whose one line box covers the
// whole bitmap with a background: what shows is exactly the clip rectangle.
struct ClipProbe {
    static constexpr int kW = 40;
    static constexpr int kH = 30;
    static constexpr uint32_t kColour = 0xFF112233u;

    explicit ClipProbe(int gravity)
    {
        EXPECT_EQ(object.Construct(), 1);
        object.GetView()->SetPadding(10, 10, 10, 10);
        object.GetView()->gravity = gravity;
        giveLines(object, {makeLine(0, 20, 0, 0, LmRect(-5, -5, kW + 5, kH + 5))});
        object.SetBackgroundColor(kColour, true);
    }

    // The covered rectangle (left, top, right, bottom) after checking every pixel is either
    // the background colour or transparent.
    LmRect render()
    {
        const uint32_t* pixels = object.RenderTextEffect(kW, kH);
        EXPECT_NE(pixels, nullptr);
        LmRect box(kW, kH, 0, 0);
        if (!pixels) return box;
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x) {
                uint32_t p = pixels[y * kW + x];
                if (p == 0) continue;
                EXPECT_EQ(p, kColour) << x << "," << y;
                box.left = std::min(box.left, x);
                box.top = std::min(box.top, y);
                box.right = std::max(box.right, x + 1);
                box.bottom = std::max(box.bottom, y + 1);
            }
        return box;
    }

    LmTextObject object;
};

void expectRect(const LmRect& r, int l, int t, int right, int b)
{
    EXPECT_EQ(r.left, l);
    EXPECT_EQ(r.top, t);
    EXPECT_EQ(r.right, right);
    EXPECT_EQ(r.bottom, b);
}

} // namespace

TEST(TextObjectRender, ClipLeavesOutThePaddingExceptTowardTheGravity)
{
    const int w = ClipProbe::kW, h = ClipProbe::kH;
    expectRect(ClipProbe(0x03 | 0x30).render(), 0, 0, w - 10, h - 10);   // left | top
    expectRect(ClipProbe(0x05 | 0x50).render(), 10, 10, w, h);           // right | bottom
    expectRect(ClipProbe(0x05 | 0x30).render(), 10, 0, w, h - 10);       // right | top
    expectRect(ClipProbe(0x03 | 0x10).render(), 0, 10, w - 10, h - 10);  // left | centre
    expectRect(ClipProbe(0x01 | 0x70).render(), 10, 10, w - 10, h - 10); // centre | fill
}

TEST(TextObjectRender, WithoutTextTheOutputIsTransparentApartFromBackgrounds)
{
    ClipProbe probe(0x03 | 0x30);
    probe.object.SetBackgroundColor(ClipProbe::kColour, false);
    LmTest::LogCapture log;
    const uint32_t* pixels = probe.object.RenderTextEffect(ClipProbe::kW, ClipProbe::kH);
    ASSERT_NE(pixels, nullptr);
    for (int i = 0; i < ClipProbe::kW * ClipProbe::kH; ++i) ASSERT_EQ(pixels[i], 0u) << i;
    EXPECT_TRUE(log.contains("LmTextObject", format("RenderTextEffect(%p / %d) >>> Start! - (w=40,h=30)", &probe.object,
                                                    probe.object.GetRuntimeHandle())));
    EXPECT_TRUE(log.contains("LmTextObject",
                             format("RenderTextEffect(%p / %d) <<< End.", &probe.object, probe.object.GetRuntimeHandle())));

    // Backgrounds of several lines, in list order, the later over the earlier.
    giveLines(probe.object, {makeLine(0, 0, 0, 0, LmRect(0, 0, 10, 10)), makeLine(0, 0, 0, 0, LmRect(5, 5, 15, 15))});
    probe.object.SetBackgroundColor(0x80FF0000u, true);
    pixels = probe.object.RenderTextEffect(ClipProbe::kW, ClipProbe::kH);
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(pixels[1 * ClipProbe::kW + 1] >> 24, 0x80u);
    EXPECT_GT(pixels[7 * ClipProbe::kW + 7] >> 24, 0x80u);  // two half-transparent layers
    EXPECT_EQ(pixels[7 * ClipProbe::kW + 7] & 0x00FFFFFFu, 0x00FF0000u);
    EXPECT_EQ(pixels[20 * ClipProbe::kW + 20], 0u);
}

TEST(TextObjectRender, DegenerateSizesDrawNothingWithoutCrashing)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    ASSERT_EQ(object.SetFont(kSans), 1);
    ASSERT_EQ(object.SetText(L"Hello"), 1);
    giveLines(object, {makeLine(0, 40, 0, 5, LmRect(0, 0, 100, 50))});
    object.SetBackgroundColor(0xFF0000FFu, true);

    // An empty bitmap has no pixel to read (the pointer, if any, is never dereferenced);
    // negative sizes are empty ones.
    LmTest::LogCapture log;
    object.RenderTextEffect(0, 0);
    object.RenderTextEffect(0, 50);
    object.RenderTextEffect(-10, 50);
    object.RenderTextEffect(-1, -1);
    EXPECT_TRUE(log.containsMessage(format("RenderTextEffect(%p / %d) <<< End.", &object, object.GetRuntimeHandle())));
    // 2^30 pixels: past what a bitmap may hold, so nothing is allocated or drawn.
    EXPECT_EQ(object.RenderTextEffect(1 << 15, 1 << 15), nullptr);
    // The object still renders normally afterwards.
    EXPECT_NE(object.RenderTextEffect(100, 50), nullptr);
}

TEST(TextObjectRender, HelloIsDrawnInTheTextColourInsideItsLine)
{
    const int w = 160, h = 60;
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    ASSERT_EQ(object.SetFont(kSans), 1);
    ASSERT_EQ(object.SetText(L"Hello"), 1);
    LmPaint paint;
    paint.setTextSize(40.0f);
    object.SetPaint(paint);
    object.SetTextColor(0xFFFF0000u);
    giveLines(object, {makeLine(10, 45, 0, 5, LmRect(10, 8, 150, 55))});

    const uint32_t* pixels = object.RenderTextEffect(w, h);
    ASSERT_NE(pixels, nullptr);
    int solid = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint32_t p = pixels[y * w + x];
            if (p == 0) continue;
            // Every visible pixel is the text colour at some coverage, on the line.
            EXPECT_EQ(p & 0x00FFFFFFu, 0x00FF0000u) << x << "," << y;
            EXPECT_GE(x, 9);
            EXPECT_LE(y, 46);
            if (p == 0xFFFF0000u) ++solid;
        }
    EXPECT_GT(solid, 100);

    // Font drawing moved the line box to where the text was drawn.
    const LineInfo* line = static_cast<const LineInfo*>(object.GetLineInfo()->Get(0));
    EXPECT_EQ(line->bounds.left, 10);
    EXPECT_GT(line->bounds.right, 60);

    // Each render replaces the previous result with the same picture.
    std::vector<uint32_t> first(pixels, pixels + w * h);
    giveLines(object, {makeLine(10, 45, 0, 5, LmRect(10, 8, 150, 55))});
    const uint32_t* again = object.RenderTextEffect(w, h);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(std::vector<uint32_t>(again, again + w * h), first);
}

TEST(TextObjectRender, EmptyOrSurrogateOnlyTextDrawsNothing)
{
    const int w = 80, h = 40;
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    ASSERT_EQ(object.SetFont(kSans), 1);
    LmPaint paint;
    paint.setTextSize(30.0f);
    object.SetPaint(paint);

    ASSERT_EQ(object.SetText(L""), 1);
    giveLines(object, {makeLine(0, 30, 0, 0, LmRect(0, 5, 80, 38))});
    LmTest::LogCapture log;
    const uint32_t* pixels = object.RenderTextEffect(w, h);
    ASSERT_NE(pixels, nullptr);
    for (int i = 0; i < w * h; ++i) ASSERT_EQ(pixels[i], 0u);
    EXPECT_TRUE(log.containsMessage(format("RenderTextEffect(%p / %d) <<< End.", &object, object.GetRuntimeHandle())));

    // Lone surrogates, a line range past the text's end and a reversed range.
    ASSERT_EQ(object.SetText(L"\xD800\xDFFF\xDC00"), 1);
    giveLines(object, {makeLine(0, 30, 0, 3, LmRect(0, 5, 80, 38)), makeLine(0, 30, 2, 50, LmRect()),
                       makeLine(0, 30, 3, 1, LmRect())});
    pixels = object.RenderTextEffect(w, h);
    ASSERT_NE(pixels, nullptr);
    for (int i = 0; i < w * h; ++i) {
        uint32_t p = pixels[i];
        // Whatever a missing-glyph box draws is in the text colour; nothing else appears.
        ASSERT_TRUE(p == 0 || (p & 0x00FFFFFFu) == 0) << i;
    }
}

TEST(TextObjectRender, CorruptFontBytesNeverCrash)
{
    std::ifstream in(kSans, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ASSERT_GT(bytes.size(), 10000u);
    std::mt19937 random(77);
    for (int round = 0; round < 6; ++round) {
        // Spoil a few hundred bytes past the table directory: outlines, metrics, cmap.
        char* data = new char[bytes.size()];
        std::memcpy(data, bytes.data(), bytes.size());
        for (int i = 0; i < 300; ++i) data[256 + random() % (bytes.size() - 256)] = (char)random();
        std::string name = "corrupt-font-" + std::to_string(round);

        LmTextObject object;
        ASSERT_EQ(object.Construct(), 1);
        object.SetFont(name.c_str(), data, (unsigned)bytes.size());  // may be refused; either is fine
        ASSERT_EQ(object.SetText(L"Hello, world"), 1);
        LmPaint paint;
        paint.setTextSize(32.0f);
        object.SetPaint(paint);
        giveLines(object, {makeLine(0, 40, 0, 12, LmRect(0, 5, 200, 50))});
        EXPECT_NE(object.RenderTextEffect(200, 60), nullptr);
    }
}

TEST(TextObject, VerboseSetTextLogsTheText)
{
    LmLog::SetDebugEnable(true);
    if (!LmLog::IsAllLogEnable()) {
        LmLog::SetDebugEnable(false);
        GTEST_SKIP() << "verbose logging is off in this build type";
    }
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    LmString text;
    text.Construct("Hi there");
    LmTest::LogCapture log;
    object.SetText(&text);
    LmLog::SetDebugEnable(false);
    EXPECT_TRUE(log.contains("LmTextObject", format("SetText() - %p [Hi there] strLen=%d", &object, 8)));
}
