#include "text/LmTextObject.h"

#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmString.h"
#include "support/TestSupport.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmFontDrawing.h"

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
    char text[160];
    std::snprintf(text, sizeof text, fmt, p, n);
    return text;
}

LineInfo* makeLine(int x, int baseline, int start, int end)
{
    auto* line = new LineInfo();
    line->x = x;
    line->baseline = baseline;
    line->start = start;
    line->end = end;
    line->bounds = LmRect(x, baseline - 30, x + 150, baseline + 10);
    return line;
}

// As the bridge does: the caller's list is emptied without deleting what it held.
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
}

TEST(TextObject, AnUnconstructedObjectFailsWithError8)
{
    LmTest::LogCapture log;
    {
        LmTextObject object;
        Error::SetError(0);
        EXPECT_EQ(object.SetText(L"x"), 0);
        EXPECT_EQ(Error::GetError(), 8u);
        Error::SetError(0);
        EXPECT_EQ(object.SetFont(kSans, new char[4](), 4), 0);  // the buffer is still freed
        EXPECT_EQ(Error::GetError(), 8u);
        EXPECT_EQ(object.GetTextColor(), 0xFF000000u);
        EXPECT_EQ(object.GetRuntimeHandle(), -1);
        EXPECT_EQ(object.GetLineInfo(), nullptr);
        log.clear();
        EXPECT_EQ(object.RenderTextEffect(10, 10), nullptr);
        EXPECT_TRUE(log.contains("LmTextObject", "@ Native Error 8 : 248"));
        Error::SetError(0);
    }
    EXPECT_EQ(Error::GetError(), 8u);  // so does its destructor
}

TEST(TextObject, StyleBitsAndTextAreStoredAndCleared)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    object.SetTextStyle(true, false);
    EXPECT_TRUE(object.isBoldTextStyle() && !object.isItalicTextStyle());
    object.SetTextStyle(false, true);
    EXPECT_TRUE(!object.isBoldTextStyle() && object.isItalicTextStyle());
    object.SetTextStyle(false, false);
    EXPECT_FALSE(object.isBoldTextStyle() || object.isItalicTextStyle());

    {
        LmString text;
        text.Construct("Hello");
        ASSERT_EQ(object.SetText(&text), 1);
    }
    EXPECT_EQ(object.GetText()->CompareTo("Hello"), 0);
    EXPECT_EQ(object.SetText((const wchar_t*)nullptr), 1);
    EXPECT_EQ(object.GetText(), nullptr);
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

    giveLines(object, {makeLine(1, 10, 0, 3), makeLine(2, 20, 3, 5)});
    ASSERT_EQ(object.GetLineInfo()->GetCount(), 2);
    EXPECT_EQ(static_cast<LineInfo*>(object.GetLineInfo()->Get(1))->baseline, 20);
    // The old records are deleted, which the sanitizer build checks.
    giveLines(object, {makeLine(7, 70, 0, 1)});
    ASSERT_EQ(object.GetLineInfo()->GetCount(), 1);
    EXPECT_EQ(static_cast<LineInfo*>(object.GetLineInfo()->Get(0))->x, 7);
}

TEST(TextObject, FontSettersRegisterWithTheFontManager)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    Error::SetError(0);
    EXPECT_EQ(object.SetFont(nullptr), 0);
    EXPECT_EQ(Error::GetError(), 7u);
    EXPECT_EQ(object.SetFontFamilyName(nullptr), 0);
    EXPECT_EQ(object.SetFont("/nonexistent/font.ttf"), 0);
    EXPECT_EQ(object.GetFont()->GetFontPath(), nullptr);

    ASSERT_EQ(object.SetFont(kSans), 1);
    EXPECT_TRUE(FontManager::GetInstance()->IsExisting(kSans, 0));
    EXPECT_EQ(object.GetFont()->GetFontPath()->CompareTo(kSans), 0);
    // Bytes that are no font are refused and the earlier choice stays.
    char* junk = new char[64];
    for (int i = 0; i < 64; ++i) junk[i] = (char)(i * 37 + 11);
    EXPECT_EQ(object.SetFont("junk-font", junk, 64), 0);
    EXPECT_EQ(object.GetFont()->GetFontPath()->CompareTo(kSans), 0);

    ASSERT_EQ(object.SetFontFamilyName("sans-serif"), 1);
    EXPECT_EQ(object.GetFont()->GetFontFamilyName()->CompareTo("sans-serif"), 0);
}

TEST(TextObject, CorruptFontBytesNeverCrashARender)
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
        object.SetFont(name.c_str(), data, (unsigned)bytes.size());  // accepted or refused, both fine
        ASSERT_EQ(object.SetText(L"Hello, world"), 1);
        LmPaint paint;
        paint.setTextSize(32.0f);
        object.SetPaint(paint);
        giveLines(object, {makeLine(0, 40, 0, 12)});
        EXPECT_NE(object.RenderTextEffect(200, 60), nullptr);
    }
}
