#include "text/TextTestSupport.h"

#include "foundation/NativeError.h"

using namespace LmTest;

namespace {

// Stand-ins: the table only compares pointers and the recording callback never follows them.
char gSlots[16];
LmTextObject* fake(int i) { return reinterpret_cast<LmTextObject*>(&gSlots[i]); }

std::vector<LmTextObject*> gReleased;
void recordRelease(LmTextObject* object) { gReleased.push_back(object); }

class InstanceManagerTest : public ::testing::Test {
protected:
    using M = LmTextInstanceManager;
    void SetUp() override
    {
        gReleased.clear();
        M::SetCallBack(recordRelease);
    }
    void TearDown() override
    {
        M::Unlock();
        for (int i = 0; i < 16; ++i) M::Unregister(M::FindLmTextHandle(fake(i)));
        M::SetCallBack(releaseTextObjectCallback);
    }
};

// A text object whose destructor re-enters the table by releasing a partner.
class ChainedTextObject : public LmTextObject {
public:
    ~ChainedTextObject() override
    {
        ++destroyed;
        if (partner) LmTextInstanceManager::Release(partner, true);
    }
    LmTextObject* partner = nullptr;
    static int destroyed;
};
int ChainedTextObject::destroyed = 0;

std::vector<ChainedTextObject*> boundChain(int n)
{
    std::vector<ChainedTextObject*> chain;
    for (int i = 0; i < n; ++i) {
        chain.push_back(new ChainedTextObject());
        chain.back()->Construct();
        LmTextInstanceManager::Bind(chain.back());
        if (i > 0) chain[i - 1]->partner = chain[i];
    }
    return chain;
}

} // namespace

// Constructing twice is error 4 and keeps the handle; anything before Construct is error 8.
// Text, line records and fonts are replaced by their setters, bad values refused.
TEST(TextObject, ConstructOnceElseErrors4And8AndSettersReplaceTextLinesAndFont)
{
    LmTextObject object;
    ASSERT_EQ(object.Construct(), 1);
    int handle = object.GetRuntimeHandle();
    EXPECT_FAILS(0, 4, object.Construct());
    EXPECT_EQ(object.GetRuntimeHandle(), handle);
    {
        LmTextObject bare;
        EXPECT_FAILS(0, 8, bare.SetText(L"x"));
        EXPECT_FAILS(0, 8, bare.SetFont(kSansPath, new char[4](), 4));  // the buffer is still freed
        EXPECT_EQ(bare.GetRuntimeHandle(), -1);
        EXPECT_FAILS(nullptr, 8, bare.RenderTextEffect(10, 10));
        Error::SetError(0);
    }
    EXPECT_EQ(Error::GetError(), 8u);  // so does its destructor

    {
        LmString text;
        text.Construct("Hello");
        ASSERT_EQ(object.SetText(&text), 1);
    }
    EXPECT_EQ(object.GetText()->CompareTo("Hello"), 0);
    EXPECT_EQ(object.SetText((const wchar_t*)nullptr), 1);
    EXPECT_EQ(object.GetText(), nullptr);

    EXPECT_FAILS(0, 7, object.SetLineInfo(nullptr));
    giveLines(object, {newLine(1, 10, 0, 3), newLine(2, 20, 3, 5)});
    // The old records are deleted, which the sanitizer build checks.
    giveLines(object, {newLine(7, 70, 0, 1)});
    ASSERT_EQ(object.GetLineInfo()->GetCount(), 1);
    EXPECT_EQ(static_cast<LineInfo*>(object.GetLineInfo()->Get(0))->x, 7);

    EXPECT_FAILS(0, 7, object.SetFont(nullptr));
    EXPECT_EQ(object.SetFontFamilyName(nullptr), 0);
    EXPECT_EQ(object.GetFont()->GetFontPath(), nullptr);

    ASSERT_EQ(object.SetFont(kSansPath), 1);
    // Bytes that are no font are refused and the earlier choice stays.
    char* junk = new char[64];
    for (int i = 0; i < 64; ++i) junk[i] = (char)(i * 37 + 11);
    EXPECT_EQ(object.SetFont("junk-font", junk, 64), 0);
    EXPECT_EQ(object.GetFont()->GetFontPath()->CompareTo(kSansPath), 0);
    EXPECT_EQ(object.SetFontFamilyName("sans-serif"), 1);
    freshFontManager(false);
}

TEST(View, NegativeSizesAreRefusedAndLeaveValuesZeroIsAccepted)
{
    LmView view;
    ASSERT_TRUE(view.SetSize(20, 30) && view.SetBitmapWidth(40) && view.SetBitmapHeight(50));
    LogCapture log;
    EXPECT_FALSE(view.SetSize(-1, 5) || view.SetBitmapWidth(-1) || view.SetBitmapHeight(-7));
    EXPECT_TRUE(log.contains("LmView", "SetBitmapWidht() - width[-1] is invalid"));  // spelt so by the system
    EXPECT_EQ((std::vector<int>{20, 30, 40, 50}), (std::vector<int>{view.GetWidth(), view.GetHeight(),
                                                                    view.GetDrawingBitmapSize()[0],
                                                                    view.GetDrawingBitmapSize()[1]}));
    EXPECT_TRUE(view.SetSize(0, 0) && view.SetBitmapWidth(0) && view.SetBitmapHeight(0));
    EXPECT_EQ(view.GetBitmapWidth() + view.GetBitmapHeight() + view.GetWidth(), 0);
}

TEST(ScriptLocales, EachScriptRunAsksForItsLocales)
{
    using Tags = std::vector<std::string>;
    const std::pair<std::u16string, Tags> cases[] = {
        // Common and inherited characters join their run; Latin needs nothing.
        {u"Hello 123, world!", {}},
        {u"cafe\u0301 \U0001F600", {}},  // combining mark, emoji
        {u"\u0301", {}},                 // inherited alone ends as common
        {u"1\u0645\u0631\u062D\u0628\u0627", {"und-Arab"}},  // the digit joins the Arabic run
        {u"Hello \u4F60\u597D", {"zh-Hans", "zh-Hant"}},
        {u"\u3072\u3089\u30AB", {"ja", "ja"}},  // hiragana, then a katakana run
        {u"\uD55C\uAE00", {"ko"}},
        {u"\u041F\u0440 \u05E9\u05DC \u03B1", {"und-Cyrl", "und-Hebr", "und-Grek"}},
        {u"\u0645 abc \u0645", {"und-Arab", "und-Arab"}},  // repeats are kept
        // Surrogates pair up or count as replacement characters.
        {u"a\U00020000", {"zh-Hans", "zh-Hant"}},  // Han outside the basic plane
        {std::u16string(u"\u0645") + char16_t(0xD800), {"und-Arab"}},
        {std::u16string{char16_t(0xDC00), char16_t(0xD801), char16_t(0xDBFF)}, {}},
        {std::u16string{char16_t(0xD840), u'\u05D0'}, {"und-Hebr"}},  // a lone high surrogate swallows nothing
    };
    for (size_t i = 0; i < std::size(cases); i++)
        EXPECT_EQ(LmScriptLocales::Collect(cases[i].first.data(), (int)cases[i].first.size()), cases[i].second) << i;
    EXPECT_EQ(LmScriptLocales::Collect(nullptr, 5), Tags{});
}

// Handles are issued once per object and never reused; releasing what is not bound is error 9.
TEST_F(InstanceManagerTest, HandlesAreNeverReusedAndReleasingTheUnboundIsError9)
{
    int first = M::Register(fake(0));
    EXPECT_EQ(M::Register(fake(0)), first);
    int second = M::Register(fake(1));
    EXPECT_EQ(second, first + 1);  // the repeated registration issued no number

    M::Unregister(first);
    M::Unregister(first);  // unknown now: ignored
    EXPECT_EQ(M::FindLmTextHandle(fake(0)), -1);
    EXPECT_GT(M::Register(fake(0)), second);

    EXPECT_FAILS(false, 9, M::Release(fake(3), true));
    EXPECT_FAILS(false, 9, M::Release(987654321));
    int handle = M::Register(fake(3));
    M::Bind(fake(3));
    EXPECT_TRUE(M::Release(handle));
    EXPECT_EQ(gReleased, std::vector<LmTextObject*>{fake(3)});
}

// Bind counts decide deletion; while locked, deletions wait for Unlock.
TEST_F(InstanceManagerTest, BindCountsAndTheLockDecideWhenObjectsAreDeleted)
{
    M::Bind(fake(2));
    M::Bind(fake(2));
    EXPECT_TRUE(M::Release(fake(2), true));
    EXPECT_TRUE(gReleased.empty());
    EXPECT_TRUE(M::Release(fake(2), true));

    // A non-deleting release may reach zero and below; the entry stays and nothing is deleted.
    M::Bind(fake(4));
    EXPECT_TRUE(M::Release(fake(4), false));
    EXPECT_TRUE(M::Release(fake(4), true));
    EXPECT_EQ(gReleased.size(), 1u);
    M::Bind(fake(4));  // -1 to 0
    M::Bind(fake(4));
    M::Release(fake(4), true);  // back from 1 to 0 deletes
    EXPECT_EQ(gReleased.size(), 2u);

    gReleased.clear();
    for (int i : {6, 7, 8}) M::Bind(fake(i));
    M::Lock();
    for (int i : {6, 7, 8}) M::Release(fake(i), true);
    EXPECT_TRUE(gReleased.empty());

    M::Bind(fake(7));  // revived with count 1: no longer parked

    M::Unlock();
    EXPECT_EQ(gReleased, (std::vector<LmTextObject*>{fake(8), fake(6)}));
    M::Release(fake(7), true);
}

TEST(InstanceManagerRealObjects, DestructorsReenterTheTableLockedOrNot)
{
    ChainedTextObject::destroyed = 0;
    std::vector<ChainedTextObject*> chain = boundChain(3);
    int lastHandle = chain[2]->GetRuntimeHandle();
    // Each destructor deletes the next from inside the previous one's Release.
    LmTextInstanceManager::Release(chain[0], true);
    EXPECT_EQ(ChainedTextObject::destroyed, 3);
    EXPECT_EQ(LmTextInstanceManager::FindLmTextObject(lastHandle), nullptr);  // unregistered

    // Locked: Unlock runs the first destructor, which parks its partner; Unlock deletes that
    // one too before deferral ends.
    ChainedTextObject::destroyed = 0;
    chain = boundChain(2);
    LmTextInstanceManager::Lock();
    LmTextInstanceManager::Release(chain[0], true);
    EXPECT_EQ(ChainedTextObject::destroyed, 0);
    LmTextInstanceManager::Unlock();
    EXPECT_EQ(ChainedTextObject::destroyed, 2);
}
