#include "foundation/Error.h"
#include "foundation/LmString.h"
#include "foundation/LmStringImpl.h"
#include "foundation/NativeError.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace LmFontEffect;

namespace {

std::wstring text(const LmString& s) { return s.GetPointer() ? std::wstring(s.GetPointer()) : std::wstring(); }

std::string utf8(const LmString& s)
{
    int size = s.GetUTF8Size();
    std::vector<char> buf((size_t)size + 1, 'X');
    EXPECT_TRUE(s.GetUTF8(buf.data(), size));
    return std::string(buf.data());
}

std::u16string utf16(const LmString& s)
{
    std::unique_ptr<char16_t[]> p(s.GetUTF16());
    return p ? std::u16string(p.get()) : std::u16string();
}

} // namespace

TEST(LmString, SearchAndCompare)
{
    LmString s, b, aa, ab, e;
    ASSERT_TRUE(s.Construct(L"abc"));
    // Forward search stops short of the last position; reverse search does not.
    const struct { const wchar_t* wide; const char* narrow; int find, reverseFind; } searches[] = {
        {L"abc", "abc", -1, 0}, {L"b", "b", 1, 1}, {L"bc", "bc", -1, 1}, {L"abcd", "abcd", -1, -1}};
    for (const auto& c : searches) {
        EXPECT_EQ(c.find, s.Find(c.wide)) << c.narrow;
        EXPECT_EQ(c.find, s.Find(c.narrow)) << c.narrow;
        EXPECT_EQ(c.reverseFind, s.ReverseFind(c.wide)) << c.narrow;
        EXPECT_EQ(c.reverseFind, s.ReverseFind(c.narrow)) << c.narrow;
    }
    EXPECT_FAILS(-1, 7, s.Find((const wchar_t*)nullptr));

    // Comparison orders by length first.
    ASSERT_TRUE(b.Construct("b"));
    ASSERT_TRUE(aa.Construct("aa"));
    ASSERT_TRUE(ab.Construct("ab"));
    EXPECT_EQ(-1, b.CompareTo(&aa));
    EXPECT_GT(ab.CompareTo(&aa), 0);
    EXPECT_EQ(0, aa.CompareTo("aa"));
    EXPECT_EQ(-1, b.CompareTo("aa"));
    // The C-string form weighs its length in bytes: é is one character but two bytes.
    ASSERT_TRUE(e.Construct(L"\u00e9"));
    EXPECT_EQ(-1, e.CompareTo("\xc3\xa9"));
    EXPECT_EQ(0, e.CompareTo("\xc3\xa9", 1));
    // The counted form has no length test.
    EXPECT_EQ(0, ab.CompareTo("abzzz", 2));
    EXPECT_LT(aa.CompareTo("ab", 2), 0);
}

TEST(LmString, Edits)
{
    LmString s, src, sub, empty;
    ASSERT_TRUE(s.Construct(L"ac"));
    // Insert rejects an empty string that Append accepts.
    EXPECT_FAILS(false, 7, s.Insert(L"", 0));
    EXPECT_TRUE(s.Append(L""));
    EXPECT_TRUE(s.Insert((const wchar_t*)nullptr, 99));
    EXPECT_TRUE(s.Insert(L"b", 1));
    EXPECT_TRUE(s.Insert(L"d", 3)); // at the length: appends
    EXPECT_EQ(L"abcd", text(s));
    EXPECT_FAILS(false, 3, s.Insert(L"x", 5));
    EXPECT_EQ(L"abcd", text(s));

    ASSERT_TRUE(s.Set(L"ab"));
    // Its own contents as the argument.
    EXPECT_TRUE(s.Append(&s));
    EXPECT_EQ(L"abab", text(s));
    EXPECT_TRUE(s.Insert(&s, 2));
    EXPECT_EQ(L"abababab", text(s));
    EXPECT_TRUE(s.Set(s.GetPointer()));
    EXPECT_EQ(8, s.GetLength());
    EXPECT_TRUE(s.SetSubstring(&s, 1, 2));
    EXPECT_EQ(L"ba", text(s));

    ASSERT_TRUE(s.Set("abcde"));
    EXPECT_FAILS(false, 3, s.Remove(5, 0));
    EXPECT_FAILS(false, 7, s.Remove(3, 3));
    EXPECT_FALSE(s.Remove(1, -1));
    EXPECT_TRUE(s.Remove(1, 2));
    EXPECT_EQ(L"ade", text(s));

    ASSERT_TRUE(src.Construct("hello"));
    ASSERT_TRUE(sub.Construct());
    EXPECT_TRUE(sub.SetSubstring(&src, 1, 3));
    EXPECT_EQ(L"ell", text(sub));
    EXPECT_TRUE(sub.SetSubstring(&src, 2, 1));
    EXPECT_EQ(L"", text(sub));
    // The range is not held to the source's length; nothing past its end is read.
    EXPECT_TRUE(sub.SetSubstring(&src, 2, 40));
    EXPECT_EQ(L"llo", text(sub));
    EXPECT_TRUE(sub.SetSubstring(&src, 9, 12));
    EXPECT_EQ(0, sub.GetLength());
    ASSERT_TRUE(empty.Construct());
    EXPECT_FAILS(false, 7, sub.SetSubstring(&empty, 0, 0));
}

TEST(LmString, ConstructionAndTheNullBuffer)
{
    LmString s, a, b, d;
    EXPECT_FAILS(-1, 8, s.GetLength());
    EXPECT_EQ(-1, s.GetUTF8Size());
    EXPECT_EQ(nullptr, s.GetUTF16());
    EXPECT_FALSE(s.Set(L"a"));
    ASSERT_TRUE(s.Construct(L"a"));
    EXPECT_FAILS(false, 4, s.Construct(L"b"));
    EXPECT_EQ(L"a", text(s));
    wchar_t c = 0;
    EXPECT_FAILS(false, 3, s.GetChar(1, &c));
    // A counted construction copies exactly n characters, and no more than a shorter source has.
    ASSERT_TRUE(a.Construct(L"abcdef", 3));
    EXPECT_EQ(L"abc", text(a));
    ASSERT_TRUE(b.Construct(&a, 10));
    EXPECT_EQ(L"abc", text(b));
    EXPECT_FAILS(false, 7, d.Construct(L"abc", -1));

    // Constructed empty, the buffer is null and reads as empty.
    ASSERT_TRUE(d.Construct());
    EXPECT_EQ(nullptr, d.GetPointer());
    EXPECT_EQ(0, d.GetLength());
    EXPECT_EQ("", utf8(d));
    EXPECT_EQ(u"", utf16(d));
    EXPECT_EQ(0, d.ReverseFind(L""));
    EXPECT_EQ(0, d.CompareTo(""));
    EXPECT_TRUE(d.Insert(L"z", 0));
    EXPECT_EQ(L"z", text(d));
    EXPECT_TRUE(d.Set((const char*)nullptr));
    EXPECT_EQ(nullptr, d.GetPointer());
    EXPECT_TRUE(d.Append("q"));
    EXPECT_EQ(L"q", text(d));
}

// The host program never calls setlocale: decoding must not depend on the C locale.
TEST(LmString, Utf8AndUtf16)
{
    LmString s, bad, overlong;
    ASSERT_TRUE(s.Construct("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"));
    EXPECT_EQ(std::wstring(L"a\u00e9\u20ac\U0001F600"), text(s));
    EXPECT_EQ("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", utf8(s));
    ASSERT_TRUE(bad.Construct("a\xff" "b\xe2\x82"));
    EXPECT_EQ(std::wstring(L"a\uFFFDb\uFFFD"), text(bad));
    ASSERT_TRUE(overlong.Construct("\xc0\xaf"));
    EXPECT_EQ(2, overlong.GetLength());
    EXPECT_EQ(L'\uFFFD', overlong.GetPointer()[0]);

    // Sizes follow the six-byte table; values that are not Unicode scalars come out as
    // U+FFFD, within the counted size.
    const wchar_t wide[] = {0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x1FFFFF, 0x200000, 0x3FFFFFF, 0x4000000, 0};
    ASSERT_TRUE(s.Set(wide));
    EXPECT_EQ(1 + 1 + 2 + 2 + 3 + 3 + 4 + 4 + 5 + 5 + 6, s.GetUTF8Size());
    EXPECT_EQ("\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80"
              "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd",
              utf8(s));
    const wchar_t surrogate[] = {0xD800, (wchar_t)-5, 0};
    ASSERT_TRUE(s.Set(surrogate));
    EXPECT_EQ(3 + 6 + 1, s.GetUTF8Size());
    EXPECT_EQ("\xef\xbf\xbd\xef\xbf\xbd", utf8(s));

    // Output keeps to the given size and never splits a character.
    ASSERT_TRUE(s.Set(L"a\u00e9b"));
    char buf[] = "XXXXXXX";
    EXPECT_TRUE(s.GetUTF8(buf, 0));
    EXPECT_EQ('X', buf[0]);
    EXPECT_TRUE(s.GetUTF8(buf, 3)); // é does not fit in the two bytes left: cut before it
    EXPECT_STREQ("a", buf);
    EXPECT_EQ('X', buf[3]);
    EXPECT_TRUE(s.GetUTF8(buf, 4));
    EXPECT_STREQ("a\xc3\xa9", buf);
    EXPECT_FAILS(false, 7, s.GetUTF8(buf, -1));
    EXPECT_FALSE(s.GetUTF8(nullptr, 4));

    // UTF-16 counts U+FFFF as a pair and never writes past n.
    ASSERT_TRUE(s.Set(L"\uFFFF"));
    EXPECT_EQ(3, s.GetUTF16Size());
    EXPECT_EQ(std::u16string(u"\xDBFF\xDFFF"), utf16(s));
    const wchar_t mixed[] = {L'a', 0xFFFE, 0x110000, 0x10FFFF, 0};
    ASSERT_TRUE(s.Set(mixed));
    EXPECT_EQ(1 + 1 + 1 + 2 + 1, s.GetUTF16Size());
    EXPECT_EQ(std::u16string(u"a\xFFFE\xFFFD\xDBFF\xDFFF"), utf16(s));

    char16_t out[4] = {1, 1, 1, 1};
    // Room for "a" and the terminator only: the pair that follows is not split.
    EXPECT_EQ(2, LmStringImpl::UTF32To16(out, L"a\U0001F600", 2));
    EXPECT_EQ(u'a', out[0]);
    EXPECT_EQ(0, out[1]);
    EXPECT_EQ(1, out[2]);
    EXPECT_EQ(0, LmStringImpl::UTF32To16(out, L"a", 0));
    EXPECT_EQ(1, LmStringImpl::UTF32To16(out, nullptr, 4));
    EXPECT_EQ(0, out[0]);
}
