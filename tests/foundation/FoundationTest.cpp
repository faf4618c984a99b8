// Foundation pieces: strings and their encodings, lists and their traversals, files, the log
// and the error code, mutexes.
#include "foundation/Error.h"
#include "foundation/File.h"
#include "foundation/List.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "foundation/LmStringImpl.h"
#include "foundation/Mutex.h"
#include "foundation/NativeError.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
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
    EXPECT_TRUE(s.Insert(&s, 2));
    EXPECT_EQ(L"abababab", text(s));
    EXPECT_TRUE(s.Set(s.GetPointer()));
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
    // The range is not held to the source's length; nothing past its end is read.
    const struct { int start, end; std::wstring want; } ranges[] = {
        {1, 3, L"ell"}, {2, 1, L""}, {2, 40, L"llo"}, {9, 12, L""}};
    for (const auto& r : ranges) {
        EXPECT_TRUE(sub.SetSubstring(&src, r.start, r.end));
        EXPECT_EQ(r.want, text(sub)) << r.start << ".." << r.end;
        EXPECT_EQ((int)r.want.size(), sub.GetLength());
    }
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
    EXPECT_EQ(std::u16string(u"a\0\1\1", 4), std::u16string(out, 4));
    EXPECT_EQ(0, LmStringImpl::UTF32To16(out, L"a", 0));
    EXPECT_EQ(1, LmStringImpl::UTF32To16(out, nullptr, 4));
    EXPECT_EQ(0, out[0]);
}

int items[64];

void* item(int k) { return &items[k]; }

// Constructs list with items 0 .. n-1.
void fill(List& list, int n)
{
    ASSERT_TRUE(list.Construct());
    for (int k = 0; k < n; ++k) ASSERT_TRUE(list.Add(item(k)));
}

std::vector<void*> contents(const List& list)
{
    std::vector<void*> out;
    for (int k = 0; k < list.GetCount(); ++k) out.push_back(list.Get(k));
    return out;
}

TEST(List, EditsAtTheEndsAndBadArguments)
{
    List list;
    EXPECT_FAILS(-1, 8, list.GetCount());
    fill(list, 3);
    EXPECT_FAILS(nullptr, 9, list.GetData(12345));
    EXPECT_FAILS(nullptr, 7, list.GetData(0));
    EXPECT_FALSE(list.Move(nullptr, 0));
    long h = list.BeginTraversal();
    EXPECT_FAILS(false, 3, list.Move(&h, 3));
    list.EndTraversal(h);

    EXPECT_TRUE(list.Insert(item(9), 100)); // past the end appends
    EXPECT_TRUE(list.Insert(item(8), 0));
    EXPECT_FAILS(false, 7, list.Insert(item(7), -1));
    EXPECT_FAILS(false, 7, list.Remove((void*)nullptr));
    // A range stops at the end and still succeeds, leaving the out-of-range code behind.
    EXPECT_FAILS(true, 3, list.Remove(3, 4));
    EXPECT_FALSE(list.Remove(0, 4));
    EXPECT_FALSE(list.Remove(3, 0));
    EXPECT_TRUE(list.Remove(0, 2));
    EXPECT_EQ(std::vector<void*>{item(1)}, contents(list));
}

TEST(List, TraversalsAtMostTen)
{
    List list;
    fill(list, 2);
    long h[10];
    for (long& t : h) ASSERT_NE(-1, t = list.BeginTraversal());
    EXPECT_FAILS(-1, 2, list.BeginTraversal());
    // With every traversal of the source taken, its items are copied and visited by position.
    List copy;
    ASSERT_TRUE(copy.Construct(&list));
    EXPECT_EQ(contents(list), contents(copy));
    EXPECT_TRUE(list.EndTraversal(h[4]));
    long t = list.BeginTraversal();
    EXPECT_EQ(item(0), list.GetData(t));
    // Ending a failed traversal frees nothing and leaves the others registered.
    EXPECT_TRUE(list.EndTraversal(-1));
    EXPECT_EQ(-1, list.BeginTraversal());
    EXPECT_EQ(item(0), list.GetData(h[0]));

    // Stepping off either end: the randomized model below; the code it leaves is checked here.
    EXPECT_TRUE(list.MoveLast(&t));
    EXPECT_TRUE(list.NextData(t));
    EXPECT_FAILS(false, 9, list.NextData(t));
}

TEST(List, IndexSearchAndWholeLists)
{
    List list, b, empty;
    fill(list, 3);
    list.Add(item(0));
    long h = list.BeginTraversal();
    EXPECT_EQ(0, list.GetIndex(item(0)));
    ASSERT_TRUE(list.Move(&h, 3));
    EXPECT_EQ(3, list.GetIndex(item(0))); // searched from the remembered position: the later copy
    list.EndTraversal(h);
    EXPECT_EQ(0, list.GetIndex(item(0)));
    EXPECT_EQ(-1, list.GetIndex(item(5)));
    EXPECT_FAILS(-1, 8, list.GetIndex(nullptr)); // deliberately "not constructed"
    EXPECT_FAILS(false, 7, list.IsContained((void*)nullptr));

    void* some[] = {item(1), item(0)};
    ASSERT_TRUE(b.Construct(some, 2));
    EXPECT_TRUE(list.IsContained(&b));
    EXPECT_TRUE(b.Add(item(5)));
    EXPECT_FALSE(list.IsContained(&b));
    ASSERT_TRUE(empty.Construct());
    EXPECT_TRUE(b.IsContained(&empty));
    EXPECT_TRUE(b.Add(&empty));
    EXPECT_FAILS(false, 4, list.Construct());
    EXPECT_TRUE(list.Add(&list)); // adding a list to itself doubles it once
    EXPECT_EQ((std::vector<void*>{item(0), item(1), item(2), item(0), item(0), item(1), item(2), item(0)}),
              contents(list));
}

// Edits, jumps and steps on three open traversals, against a model: every traversal keeps
// its item (removal moves each one standing on the node on, clearing leaves it on nothing),
// and positional look-ups and searches stay right whichever traversal moved last.
TEST(List, TraversalsAndLookUpsStayTrueUnderRandomEdits)
{
    std::mt19937 rng(1234);
    List list;
    ASSERT_TRUE(list.Construct());
    std::vector<void*> model;
    long h[3] = {-1, -1, -1};
    int at[3] = {-1, -1, -1}; // model index each traversal stands on, -1 for nothing
    auto shift = [&](int i, int delta) {
        for (int& a : at)
            if (a >= i) a += delta;
    };
    auto erase = [&](int i) {
        model.erase(model.begin() + i);
        for (int& a : at) {
            if (a > i)
                --a;
            else if (a == i && i == (int)model.size())
                a = -1;
        }
    };
    for (int step = 0; step < 6000; ++step) {
        int n = (int)model.size();
        int op = (int)(rng() % 11);
        int i = n ? (int)(rng() % (unsigned)n) : 0;
        int t = (int)(rng() % 3);
        void* p = item((int)(rng() % 64));
        if (op <= 2) { // Add, or Insert anywhere including past the end
            int to = op == 2 ? n : std::min(i + op, n);
            ASSERT_TRUE(op == 2 ? list.Add(p) : list.Insert(p, i + op));
            if (to < n) shift(to, 1);
            model.insert(model.begin() + to, p);
        } else if (op == 3 && n) {
            ASSERT_TRUE(list.Remove(i));
            erase(i);
        } else if (op == 4 && n) {
            ASSERT_TRUE(list.Remove(p));
            auto it = std::find(model.begin(), model.end(), p);
            if (it != model.end()) erase((int)(it - model.begin()));
        } else if (op == 5) {
            if (h[t] == -1) {
                h[t] = list.BeginTraversal();
                at[t] = n ? 0 : -1;
            }
            if (n) {
                ASSERT_TRUE(list.Move(&h[t], i));
                at[t] = i;
            }
        } else if (op == 6 && h[t] != -1) {
            bool first = rng() % 2;
            ASSERT_TRUE(first ? list.MoveFirst(&h[t]) : list.MoveLast(&h[t]));
            at[t] = n ? (first ? 0 : n - 1) : -1;
        } else if (op == 7 && h[t] != -1) {
            bool forward = rng() % 2;
            bool stood = at[t] != -1;
            ASSERT_EQ(stood, forward ? list.NextData(h[t]) : list.PrevData(h[t]));
            int next = at[t] + (forward ? 1 : -1);
            at[t] = !stood ? (n ? 0 : -1) : (next < 0 || next >= n ? -1 : next);
        } else if (op == 8 && h[t] != -1 && rng() % 4 == 0) {
            list.EndTraversal(h[t]);
            h[t] = -1;
        } else if (op == 10 && rng() % 8 == 0) {
            ASSERT_TRUE(list.RemoveAll());
            model.clear();
            for (int& a : at) a = -1;
        } else if (op == 9 && n) {
            ASSERT_EQ(model[(size_t)i], list.Get(i)) << "step " << step;
            int index = list.GetIndex(model[(size_t)i]);
            ASSERT_GE(index, 0);
            ASSERT_EQ(model[(size_t)i], model[(size_t)index]);
        }
        ASSERT_EQ((int)model.size(), list.GetCount());
        for (int k = 0; k < 3; ++k) {
            if (h[k] != -1) {
                ASSERT_EQ(at[k] < 0 ? nullptr : model[(size_t)at[k]], list.GetData(h[k])) << "step " << step;
            }
        }
    }
    EXPECT_EQ(model, contents(list));
}

// A fresh directory for each test, removed with what it holds.
class FileTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        char templ[] = "/tmp/lmfileXXXXXX";
        ASSERT_NE(nullptr, mkdtemp(templ));
        dir = templ;
    }
    void TearDown() override { (void)system(("rm -rf '" + dir + "'").c_str()); }

    std::string dir;
};

TEST_F(FileTest, WritesAndReadsBackThroughAUtf8Path)
{
    std::string path = dir + "/caf\xc3\xa9.bin";
    LmString name;
    ASSERT_TRUE(name.Construct(path.c_str()));
    {
        File out;
        ASSERT_TRUE(out.Construct(&name, "wb", false));
        EXPECT_EQ(5u, out.Write("hello", 1, 5));
        EXPECT_EQ(5, out.Tell());
    }
    File in;
    ASSERT_TRUE(in.Construct(path.c_str(), "rb"));
    char buf[8] = {0};
    EXPECT_EQ(0, in.Seek(1, SEEK_SET));
    EXPECT_EQ(4u, in.Read(buf, 1, 8));
    EXPECT_STREQ("ello", buf);
    EXPECT_NE(0, in.Eof());
    in.Close();
    EXPECT_EQ(nullptr, in.GetFilePointer());
    EXPECT_EQ(0u, in.Read(buf, 1, 1));
    EXPECT_EQ(-1, in.Tell());

    // Kept open, the stream outlives its owner and belongs to the caller.
    FILE* stream = nullptr;
    {
        File f;
        ASSERT_TRUE(f.Construct(&name, "w+", true));
        stream = f.GetFilePointer();
        f.Close();
        EXPECT_EQ(stream, f.GetFilePointer());
    }
    EXPECT_GE(fputs("abc", stream), 0);
    EXPECT_EQ(0, fclose(stream));
}

TEST_F(FileTest, OpenFailuresAndPathHelpers)
{
    File f;
    LmString none;
    EXPECT_FAILS(false, 7, f.Construct((const char*)nullptr, "r"));
    EXPECT_FAILS(false, 7, f.Construct("x", ""));
    EXPECT_FAILS(false, 11, f.Construct((dir + "/missing").c_str(), "r"));
    EXPECT_FAILS(false, 7, f.Construct(&none, "r", false));
    // A failed open leaves the object free to try again.
    std::string a = dir + "/a", b = dir + "/b";
    ASSERT_TRUE(f.Construct(a.c_str(), "w"));
    EXPECT_FAILS(false, 4, f.Construct(a.c_str(), "w"));
    f.Close();

    LmString la, lb;
    ASSERT_TRUE(la.Construct(a.c_str()));
    ASSERT_TRUE(lb.Construct(b.c_str()));
    EXPECT_EQ(0, File::Rename(&la, &lb));
    EXPECT_EQ(-1, File::IsAccessible(&la, F_OK));
    EXPECT_EQ(0, File::IsAccessible(&lb, F_OK));
    EXPECT_EQ(0, File::Rename(b.c_str(), a.c_str()));
    EXPECT_EQ(0, File::Unlink(&la));
    EXPECT_EQ(-1, File::Unlink(a.c_str()));

    EXPECT_FAILS(-1, 7, File::IsAccessible(&none, F_OK));
    EXPECT_EQ(-1, File::Unlink((const LmString*)nullptr));
    EXPECT_EQ(-1, File::Rename(&la, &none));
}

// Restores the process-wide level mask after each test.
class LmLogTest : public ::testing::Test {
protected:
    void SetUp() override { mSaved = LmLog::getPrintLogLevel(); }
    void TearDown() override { LmLog::setPrintLogLevel(mSaved); }

    LmTest::LogCapture log;

private:
    unsigned char mSaved = 255;
};

TEST_F(LmLogTest, LevelMaskPrioritiesAndFileNames)
{
    LmLog::setPrintLogLevel(255);
    const struct { LmLogLevel level; int priority; } levels[] = {
        {LM_LOG_DEBUG, 3}, {LM_LOG_INFO, 4}, {LM_LOG_WARN, 5}, {LM_LOG_ERROR, 6}};
    for (const auto& l : levels) {
        log.clear();
        LmLog::printLog(l.level, "a.cpp", "w");
        ASSERT_EQ(1u, log.lines().size());
        EXPECT_EQ(l.priority, log.lines()[0].priority);
    }
    log.clear();
    // A cleared level or a null format prints nothing.
    LmLog::setPrintLogLevel(LM_LOG_ERROR);
    LmLog::printLog(LM_LOG_DEBUG, "a.cpp", "hidden %d", 1);
    LmLog::printLog(LM_LOG_ERROR, "a.cpp", nullptr);
    EXPECT_TRUE(log.lines().empty());
    LmLog::printLog(LM_LOG_ERROR, "a.cpp", "shown %d", 2);
    EXPECT_TRUE(log.contains("lmeffect", "[a] shown 2 \n"));
    log.clear();
    // Timing needs its own bit.
    LmLog::setPrintLogLevel(LM_LOG_INFO);
    LmLog::printTime("t.cpp", "draw", 1500);
    EXPECT_TRUE(log.lines().empty());
    LmLog::setPrintLogLevel(LM_LOG_INFO | LM_LOG_TIME);
    LmLog::printTime("t.cpp", "draw", 1500);
    LmLog::printTime("t.cpp", "blur", 7, "r=%d", 3);
    EXPECT_TRUE(log.contains("lmeffect", "[t] [Time] draw 1.500ms \n"));
    EXPECT_TRUE(log.containsMessage("[t] [Time] blur 0.007ms r=3 \n"));

    // The file name loses its extension; one of 256 characters drops the line.
    const std::string longest(255, 'n');
    const struct { std::string file, line; } names[] = {{"dir.v2/LmText.cpp", "[dir.v2/LmText] x \n"},
        {"Makefile", "[Makefile] x \n"}, {longest, "[" + longest + "] x \n"}, {longest + "n", ""}};
    for (const auto& c : names) {
        log.clear();
        LmLog::printLog(LM_LOG_INFO, c.file.c_str(), "x");
        EXPECT_EQ(c.line, log.lines().empty() ? "" : log.lines()[0].message) << c.file;
    }
}

TEST_F(LmLogTest, ConvertLogLimits)
{
    EXPECT_STREQ("[### null ###]", LmLog::ConvertLog(nullptr));
    LmString s;
    ASSERT_TRUE(s.Construct(std::string(511, 'a').c_str())); // UTF-8 size 512: still fits
    EXPECT_EQ(std::string(511, 'a'), LmLog::ConvertLog(&s));
    ASSERT_TRUE(s.Append("b"));
    EXPECT_STREQ("[### string is too long ###]", LmLog::ConvertLog(&s));
    ASSERT_TRUE(s.Set(std::wstring(255, L'\u00e9').c_str())); // 510 bytes + terminator
    EXPECT_EQ(510u, std::string(LmLog::ConvertLog(&s)).size());
}

TEST_F(LmLogTest, NativeErrorLineAndCodePerThread)
{
    Error::Report("Tag", 11, 42);
    ASSERT_EQ(1u, log.lines().size());
    EXPECT_EQ(6, log.lines()[0].priority);
    EXPECT_TRUE(log.contains("Tag", "@ Native Error 11 : 42"));

    Error::SetError(7);
    unsigned long seenFresh = 99, seenOwn = 99;
    std::thread([&] {
        seenFresh = Error::GetError();
        Error::SetError(3);
        seenOwn = Error::GetError();
    }).join();
    EXPECT_EQ(0u, seenFresh);
    EXPECT_EQ(3u, seenOwn);
    EXPECT_EQ(7u, Error::GetError());
}

TEST(LmLogBuildType, OnlyTheFirstSettingCounts)
{
    LmLog::SetBuildType(false);
    LmLog::SetBuildType(true);
    EXPECT_TRUE(LmLog::IsCheckedBuildType());
    EXPECT_FALSE(LmLog::IsBuildTypeEngMode());
    LmLog::SetDebugEnable(true);
    EXPECT_FALSE(LmLog::IsAllLogEnable()); // verbose lines need the eng build too
    LmLog::SetDebugEnable(false);
}

// A recursive lock is released only at its last unlock, and an unlock by another thread does
// nothing: either way a contender must still be kept out.
TEST(Mutex, HeldUntilTheOwnersLastUnlock)
{
    for (bool recursive : {true, false}) {
        Mutex m;
        ASSERT_TRUE(m.Construct());
        m.Lock();
        if (recursive) {
            m.Lock();
            m.Unlock();
        } else {
            std::thread([&m] { m.Unlock(); }).join();
        }
        std::atomic<bool> acquired{false};
        std::thread other([&] { m.Lock(); acquired = true; m.Unlock(); });
        // Enough time to take a free mutex, not proof of blocking.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(acquired) << (recursive ? "recursive" : "foreign unlock");
        m.Unlock();
        other.join();
        EXPECT_TRUE(acquired);
    }
}

TEST(Mutex, ConstructTwiceAndUnconstructed)
{
    Mutex idle, m;
    idle.Lock();
    idle.Unlock();
    ASSERT_TRUE(m.Construct());
    EXPECT_FAILS(false, 4, m.Construct());
}

} // namespace
