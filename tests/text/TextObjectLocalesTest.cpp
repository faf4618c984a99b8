#include "text/LmScriptLocales.h"

#include "foundation/List.h"
#include "foundation/LmString.h"
#include "platform/LmLocaleListRegistry.h"
#include "text/FontEntry.h"
#include "text/FontManager.h"
#include "text/LmFontFamily.h"
#include "text/LmTextObject.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace LmFontEffect;

namespace {

using Tags = std::vector<std::string>;

Tags collect(const std::u16string& text) { return LmScriptLocales::Collect(text.data(), (int)text.size()); }

} // namespace

TEST(ScriptLocales, CommonAndInheritedJoinTheirRunAndLatinNeedsNothing)
{
    EXPECT_EQ(collect(u"Hello 123, world!"), Tags{});
    EXPECT_EQ(collect(u"cafe\u0301 \U0001F600"), Tags{});  // combining mark, emoji
    EXPECT_EQ(collect(u"\u0301"), Tags{});                 // inherited alone ends as common
    EXPECT_EQ(collect(u"1\u0645\u0631\u062D\u0628\u0627"), Tags{"und-Arab"});  // the digit joins the Arabic run
    EXPECT_EQ(LmScriptLocales::Collect(nullptr, 5), Tags{});
}

TEST(ScriptLocales, EachRunAsksForItsLocales)
{
    EXPECT_EQ(collect(u"Hello \u4F60\u597D"), (Tags{"zh-Hans", "zh-Hant"}));
    EXPECT_EQ(collect(u"\u3072\u3089\u30AB"), (Tags{"ja", "ja"}));  // hiragana, then a katakana run
    EXPECT_EQ(collect(u"\uD55C\uAE00"), Tags{"ko"});
    EXPECT_EQ(collect(u"\u041F\u0440 \u05E9\u05DC \u03B1"), (Tags{"und-Cyrl", "und-Hebr", "und-Grek"}));
    EXPECT_EQ(collect(u"\u0645 abc \u0645"), (Tags{"und-Arab", "und-Arab"}));  // repeats are kept
}

TEST(ScriptLocales, SurrogatesPairUpOrCountAsReplacement)
{
    EXPECT_EQ(collect(u"a\U00020000"), (Tags{"zh-Hans", "zh-Hant"}));  // Han outside the basic plane
    EXPECT_EQ(collect(std::u16string(u"\u0645") + char16_t(0xD800)), Tags{"und-Arab"});
    EXPECT_EQ(collect(std::u16string{char16_t(0xDC00), char16_t(0xD801), char16_t(0xDBFF)}), Tags{});
    // A high surrogate followed by something else does not swallow it.
    EXPECT_EQ(collect(std::u16string{char16_t(0xD840), u'\u05D0'}), Tags{"und-Hebr"});
}

TEST(TextObjectLocales, SettingTextLoadsTheFallbackFamiliesItsScriptsNeed)
{
    FontManager* fm = FontManager::GetInstance();
    fm->ClearFontFamilies();
    auto* list = new List();
    list->Construct();
    std::vector<LmFontFamily*> families;
    for (const char* tags : {"zh-Hans", "ja", "und-Arab"}) {
        auto* family = new LmFontFamily();
        family->localeListId = LmLocaleListRegistry::registerLocaleList(tags);
        family->fonts = new List();
        family->fonts->Construct();
        auto* entry = new FontEntry();
        entry->path = new LmString();
        entry->path->Construct("/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf");
        family->fonts->Add(entry);
        list->Add(family);
        families.push_back(family);
    }
    ASSERT_TRUE(fm->SetSystemFontFamilies(list));
    auto loaded = [&] { return std::vector<int>{families[0]->loaded, families[1]->loaded, families[2]->loaded}; };

    LmTextObject text;
    ASSERT_EQ(text.Construct(), 1);
    ASSERT_EQ(text.SetText(L"Latin only 42"), 1);
    EXPECT_EQ(loaded(), (std::vector<int>{0, 0, 0}));
    ASSERT_EQ(text.SetText(L"Hello \u4F60\u597D"), 1);
    EXPECT_EQ(loaded(), (std::vector<int>{1, 0, 0}));
    ASSERT_EQ(text.SetText(L"\xD800\xDC00\xDFFF"), 1);  // lone surrogates only
    LmString arabic;
    arabic.Construct(L"\u0645\u0631\u062D\u0628\u0627");
    ASSERT_EQ(text.SetText(&arabic), 1);
    EXPECT_EQ(loaded(), (std::vector<int>{1, 0, 1}));

    fm->ClearFontFamilies();
    fm->ClearFontMaps();
}
