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

std::vector<std::string> collect(const std::u16string& text)
{
    return LmScriptLocales::Collect(text.data(), (int)text.size());
}

using Tags = std::vector<std::string>;

} // namespace

TEST(ScriptLocales, LatinDigitsSpacesAndMarksNeedNothing)
{
    EXPECT_EQ(collect(u"Hello 123, world!"), Tags{});
    EXPECT_EQ(collect(u"cafe\u0301 na\u0308ive"), Tags{});  // combining marks stay in the Latin run
    EXPECT_EQ(collect(u"\u0301\u0301"), Tags{});            // inherited alone ends as common
    EXPECT_EQ(collect(u"\U0001F600 :-)"), Tags{});          // emoji are common
    EXPECT_EQ(collect(u""), Tags{});
    EXPECT_EQ(LmScriptLocales::Collect(nullptr, 5), Tags{});
}

TEST(ScriptLocales, EachRunAsksForItsLocales)
{
    EXPECT_EQ(collect(u"Hello \u4F60\u597D"), (Tags{"zh-Hans", "zh-Hant"}));
    EXPECT_EQ(collect(u"\u3072\u3089\u304C\u306A"), Tags{"ja"});
    EXPECT_EQ(collect(u"\u30AB\u30BF"), Tags{"ja"});
    EXPECT_EQ(collect(u"\uD55C\uAE00"), Tags{"ko"});
    EXPECT_EQ(collect(u"\u041F\u0440\u0438\u0432\u0435\u0442"), Tags{"und-Cyrl"});
    EXPECT_EQ(collect(u"\u05E9\u05DC\u05D5\u05DD"), Tags{"und-Hebr"});
    EXPECT_EQ(collect(u"\u03B1\u03B2\u03B3"), Tags{"und-Grek"});
    // The digit joins the Arabic run that follows it: one run, one registration.
    EXPECT_EQ(collect(u"1\u0645\u0631\u062D\u0628\u0627"), Tags{"und-Arab"});
    // Runs repeat their locales; the Latin between them asks for nothing.
    EXPECT_EQ(collect(u"\u0645 abc \u0645"), (Tags{"und-Arab", "und-Arab"}));
    EXPECT_EQ(collect(u"\u4F60\u3072"), (Tags{"zh-Hans", "zh-Hant", "ja"}));
}

TEST(ScriptLocales, SurrogatesPairUpOrCountAsReplacement)
{
    // U+20000, a Han ideograph outside the basic plane.
    EXPECT_EQ(collect(u"a\U00020000"), (Tags{"zh-Hans", "zh-Hant"}));
    // A lone high surrogate at the end, a lone low one, and a text of nothing else.
    EXPECT_EQ(collect(std::u16string(u"\u0645") + char16_t(0xD800)), Tags{"und-Arab"});
    EXPECT_EQ(collect(std::u16string{char16_t(0xDC00), char16_t(0xD801), char16_t(0xDBFF)}), Tags{});
    // A high surrogate followed by a non-surrogate does not swallow it.
    EXPECT_EQ(collect(std::u16string{char16_t(0xD840), u'\u05D0'}), Tags{"und-Hebr"});
}

namespace {

LmFontFamily* fallbackFamily(const char* tags)
{
    auto* family = new LmFontFamily();
    family->localeListId = LmLocaleListRegistry::registerLocaleList(tags);
    family->fonts = new List();
    family->fonts->Construct();
    auto* entry = new FontEntry();
    entry->path = new LmString();
    entry->path->Construct("/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf");
    family->fonts->Add(entry);
    return family;
}

} // namespace

TEST(TextObjectLocales, SettingTextLoadsTheFallbackFamiliesItsScriptsNeed)
{
    FontManager* fm = FontManager::GetInstance();
    fm->ClearFontFamilies();
    auto* list = new List();
    list->Construct();
    LmFontFamily* hans = fallbackFamily("zh-Hans");
    LmFontFamily* japanese = fallbackFamily("ja");
    LmFontFamily* arabic = fallbackFamily("und-Arab");
    for (LmFontFamily* f : {hans, japanese, arabic}) list->Add(f);
    ASSERT_TRUE(fm->SetSystemFontFamilies(list));

    LmTextObject text;
    ASSERT_EQ(text.Construct(), 1);
    ASSERT_EQ(text.SetText(L"Latin only 42"), 1);
    EXPECT_FALSE(hans->loaded || japanese->loaded || arabic->loaded);

    ASSERT_EQ(text.SetText(L"Hello \u4F60\u597D"), 1);
    EXPECT_TRUE(hans->loaded);
    EXPECT_FALSE(japanese->loaded);
    EXPECT_FALSE(arabic->loaded);

    LmString arabicText;
    arabicText.Construct(L"\u0645\u0631\u062D\u0628\u0627");
    ASSERT_EQ(text.SetText(&arabicText), 1);
    EXPECT_TRUE(arabic->loaded);
    EXPECT_FALSE(japanese->loaded);

    // Lone surrogates only: nothing to load, nothing broken.
    ASSERT_EQ(text.SetText(L"\xD800\xDC00\xDFFF"), 1);
    EXPECT_FALSE(japanese->loaded);

    fm->ClearFontFamilies();
    fm->ClearFontMaps();
}
