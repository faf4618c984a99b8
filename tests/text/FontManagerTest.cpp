#include "text/FontManager.h"

#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "platform/LmPlatformFamily.h"
#include "platform/LmPlatformFont.h"
#include "support/TestSupport.h"
#include "text/FontEntry.h"
#include "text/LmFontData.h"
#include "text/LmFontFamily.h"
#include "text/LmFontManagerImpl.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace LmFontEffect;

namespace {

const char* const kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
const char* const kSerif = "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf";
const char* const kMissing = "/nonexistent/dir/NoSuchFont.ttf";

std::vector<char> readFile(const char* path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A new[] copy of bytes, as callers hand buffers to the font manager.
char* handOver(const std::vector<char>& bytes, size_t n)
{
    char* data = new char[n];
    std::memcpy(data, bytes.data(), n);
    return data;
}

struct OwnedString {
    explicit OwnedString(const char* text) { s.Construct(text); }
    LmString s;
};

LmFontFamily* makeFamily(uint32_t localeListId, int variant, std::vector<const char*> paths, int weight = 400,
                         bool italic = false)
{
    auto* family = new LmFontFamily();
    family->localeListId = localeListId;
    family->variant = variant;
    family->fonts = new List();
    family->fonts->Construct();
    for (const char* path : paths) {
        auto* entry = new FontEntry();
        entry->path = new LmString();
        entry->path->Construct(path);
        entry->weight = weight;
        entry->italic = italic;
        family->fonts->Add(entry);
    }
    return family;
}

class FontManagerTest : public ::testing::Test {
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset()
    {
        FontManager::GetInstance()->ClearFontMaps();
        FontManager::GetInstance()->ClearFontFamilies();
        LmLog::SetDebugEnable(false);
    }
    static LmFontManagerImpl* impl() { return FontManager::GetInstance()->GetImpl(); }

    // The user family's single font, with the weight the name rules produced.
    struct UserResult {
        int weight;
        size_t families;
        int fontWeight = -1;
        bool fontItalic = false;
    };
    static UserResult userFamilies(const char* userFont, const char* familyName = nullptr)
    {
        OwnedString user(userFont);
        std::unique_ptr<OwnedString> family(familyName ? new OwnedString(familyName) : nullptr);
        std::vector<std::shared_ptr<LmPlatformFamily>> families;
        int weight = 400;
        EXPECT_TRUE(
            FontManager::GetInstance()->GetMinikinFontFamilies(family ? &family->s : nullptr, families, &user.s, weight));
        UserResult r{weight, families.size()};
        if (!families.empty() && families[0]->getNumFonts() == 1) {
            r.fontWeight = families[0]->getFonts()[0].weight;
            r.fontItalic = families[0]->getFonts()[0].italic;
        }
        return r;
    }
};

} // namespace

TEST(FontManagerKeys, KeysKeepTheirTrailingNul)
{
    EXPECT_EQ(LmFontManagerImpl::FontKey("a.ttf", 0), std::string("a.ttf0\0", 7));
    EXPECT_EQ(LmFontManagerImpl::FontKey("a.ttf", 3), std::string("a.ttf3\0", 7));
    // '0' + 200 does not fit a byte: the index is cut to 8 bits.
    EXPECT_EQ(LmFontManagerImpl::FontKey("a", 200), std::string("a\xf8\0", 3));
    EXPECT_EQ(LmFontManagerImpl::PathKey("a.ttf"), std::string("a.ttf\0", 6));
}

TEST_F(FontManagerTest, FileIsMappedOnceAndRegisteredPerIndex)
{
    FontManager* fm = FontManager::GetInstance();
    EXPECT_FALSE(fm->IsExisting(kSans, 0));
    ASSERT_TRUE(fm->AddMinikinFont(kSans, nullptr, 0, 0, true));
    EXPECT_TRUE(fm->IsExisting(kSans, 0));
    EXPECT_FALSE(fm->IsExisting(kSans, 1));

    ASSERT_EQ(impl()->fontDataMap.size(), 1u);
    const LmFontData* data = impl()->fontDataMap.begin()->second;
    ASSERT_NE(data->buffer, nullptr);
    EXPECT_TRUE(data->mapped);
    std::vector<char> bytes = readFile(kSans);
    ASSERT_EQ(data->size, bytes.size());
    EXPECT_EQ(std::memcmp(data->buffer, bytes.data(), bytes.size()), 0);
    EXPECT_DOUBLE_EQ(impl()->totalBufferMB, bytes.size() / 1024000.0);

    // Registering again, checked or not, reuses the mapping; the map keeps its first font.
    OwnedString name(kSans);
    std::shared_ptr<LmPlatformFont> first;
    ASSERT_TRUE(fm->GetMinikinFont(first, &name.s, 0));
    EXPECT_TRUE(fm->AddMinikinFont(kSans, nullptr, 0, 0, true));
    EXPECT_TRUE(fm->AddMinikinFont(&name.s, nullptr, 0, 0, false));
    std::shared_ptr<LmPlatformFont> again;
    ASSERT_TRUE(fm->GetMinikinFont(again, &name.s, 0));
    EXPECT_EQ(again, first);
    EXPECT_EQ(impl()->fontDataMap.size(), 1u);
    EXPECT_DOUBLE_EQ(impl()->totalBufferMB, bytes.size() / 1024000.0);

    // A single font file has no face 1.
    LmTest::LogCapture log;
    EXPECT_FALSE(fm->AddMinikinFont(kSans, nullptr, 0, 1, true));
    EXPECT_TRUE(log.contains("LmFontManager", "AddMinikinFont() - Fail to create typeface"));
    EXPECT_EQ(impl()->fontDataMap.size(), 1u);

    fm->ClearFontMaps();
    EXPECT_FALSE(fm->IsExisting(kSans, 0));
    EXPECT_TRUE(impl()->fontDataMap.empty());
    EXPECT_EQ(impl()->totalBufferMB, 0.0);
    // The font taken before the clear still owns its FreeType face.
    EXPECT_EQ(first->GetIndex(), 0);
}

TEST_F(FontManagerTest, MissingFileFailsOnceAndIsNotRetried)
{
    FontManager* fm = FontManager::GetInstance();
    LmTest::LogCapture log;
    EXPECT_FALSE(fm->AddMinikinFont(kMissing, nullptr, 0, 0, true));
    EXPECT_TRUE(log.contains("LmFontManager", std::string("Failed to open ") + kMissing + " as a font"));
    EXPECT_TRUE(log.contains("LmFontManager", "AddMinikinFont() - Fail to get font"));
    ASSERT_EQ(impl()->fontDataMap.count(LmFontManagerImpl::PathKey(kMissing)), 1u);
    EXPECT_EQ(impl()->fontDataMap[LmFontManagerImpl::PathKey(kMissing)]->buffer, nullptr);

    log.clear();
    EXPECT_FALSE(fm->AddMinikinFont(kMissing, nullptr, 0, 0, true));
    EXPECT_FALSE(log.containsMessage(std::string("Failed to open ") + kMissing + " as a font"));
    EXPECT_TRUE(log.containsMessage("AddMinikinFont() - Fail to get font"));
}

TEST_F(FontManagerTest, NullOrEmptyNamesAreRefused)
{
    FontManager* fm = FontManager::GetInstance();
    LmTest::LogCapture log;
    EXPECT_FALSE(fm->AddMinikinFont((const char*)nullptr, nullptr, 0, 0, true));
    EXPECT_FALSE(fm->AddMinikinFont("", new char[4](), 4, 0, true));
    EXPECT_FALSE(fm->AddMinikinFont((LmString*)nullptr, new char[4](), 4, 0, true));
    EXPECT_TRUE(log.contains("LmFontManager", "AddMinikinFont() - path is NULL"));
    EXPECT_FALSE(fm->IsExisting(nullptr, 0));
    EXPECT_FALSE(fm->IsExisting("", 0));
    EXPECT_TRUE(log.contains("LmFontManager", "IsExisting() - path is NULL"));
    std::shared_ptr<LmPlatformFont> font;
    EXPECT_FALSE(fm->GetMinikinFont(font, nullptr, 0));
    EXPECT_EQ(font, nullptr);
}

TEST_F(FontManagerTest, BadFontBytesAreRefusedAndFreed)
{
    FontManager* fm = FontManager::GetInstance();
    std::vector<char> bytes = readFile(kSans);
    ASSERT_GT(bytes.size(), 4096u);

    std::vector<char> noise(bytes.size());
    std::mt19937 random(1234);
    for (char& c : noise) c = (char)(random() & 0xFF);

    LmTest::LogCapture log;
    EXPECT_FALSE(fm->AddMinikinFont("random", handOver(noise, noise.size()), (unsigned)noise.size(), 0, true));
    EXPECT_FALSE(fm->AddMinikinFont("truncated", handOver(bytes, 2048), 2048, 0, true));
    EXPECT_FALSE(fm->AddMinikinFont("empty", new char[1](), 0, 0, true));
    EXPECT_TRUE(log.contains("LmFontManager", "AddMinikinFont() - Fail to create typeface"));
    EXPECT_TRUE(log.contains("LmFontManager", "AddMinikinFont() - Fail to get font"));
    EXPECT_FALSE(fm->IsExisting("random", 0));
    EXPECT_FALSE(fm->IsExisting("truncated", 0));
    EXPECT_TRUE(impl()->handedBuffers.empty());

    // The same faults from files on disk: a truncated copy and an empty file.
    std::string dir = ::testing::TempDir();
    std::string truncated = dir + "/lm_truncated_font.ttf";
    std::string empty = dir + "/lm_empty_font.ttf";
    {
        std::ofstream(truncated, std::ios::binary).write(bytes.data(), 3000);
        std::ofstream(empty, std::ios::binary);
    }
    EXPECT_FALSE(fm->AddMinikinFont(truncated.c_str(), nullptr, 0, 0, true));
    EXPECT_FALSE(fm->AddMinikinFont(empty.c_str(), nullptr, 0, 0, true));
    std::remove(truncated.c_str());
    std::remove(empty.c_str());
}

TEST_F(FontManagerTest, HandedBuffersAreKeptOnceAndDuplicatesFreed)
{
    FontManager* fm = FontManager::GetInstance();
    std::vector<char> bytes = readFile(kSans);
    ASSERT_TRUE(fm->AddMinikinFont("user", handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, true));
    EXPECT_EQ(impl()->handedBuffers.size(), 1u);
    OwnedString name("user");
    std::shared_ptr<LmPlatformFont> first;
    ASSERT_TRUE(fm->GetMinikinFont(first, &name.s, 0));

    // Checked: already registered, the second buffer is freed at once.
    EXPECT_TRUE(fm->AddMinikinFont("user", handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, true));
    // Unchecked: the font is made and thrown away, its buffer with it.
    EXPECT_TRUE(fm->AddMinikinFont("user", handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, false));
    EXPECT_EQ(impl()->handedBuffers.size(), 1u);
    std::shared_ptr<LmPlatformFont> again;
    ASSERT_TRUE(fm->GetMinikinFont(again, &name.s, 0));
    EXPECT_EQ(again, first);
    EXPECT_TRUE(first->HasGlyph('A'));
    // No file was read for a handed buffer.
    EXPECT_TRUE(impl()->fontDataMap.empty());
}

TEST_F(FontManagerTest, VerboseLoggingReportsTheMappedTotal)
{
    LmLog::SetDebugEnable(true);
    if (!LmLog::IsAllLogEnable()) GTEST_SKIP() << "verbose logging is off in this build type";
    LmTest::LogCapture log;
    ASSERT_TRUE(FontManager::GetInstance()->AddMinikinFont(kSans, nullptr, 0, 0, true));
    double mb = readFile(kSans).size() / 1024000.0;
    char expected[512];
    std::snprintf(expected, sizeof expected, "BUFFER TOTAL SIZE(%.2fMB) <- %s(%.2fMB) ", mb, kSans, mb);
    EXPECT_TRUE(log.contains("LmFontManager", expected));
}

TEST_F(FontManagerTest, UserFontNameSetsWeightAndSlant)
{
    FontManager* fm = FontManager::GetInstance();
    std::vector<char> bytes = readFile(kSans);
    for (const char* name : {"/fonts/Foo-Bold-Italic.ttf", "/fonts/Foo-Thin-Bold.ttf", "/fonts/Roboto-Medium.ttf",
                             "-Bold.ttf", "/fonts/Foo-Light.ttf", "/fonts/Foo-Black.ttf", "/fonts/Foo-Bold.ttf",
                             "/fonts/Foo-Regular.ttf"})
        ASSERT_TRUE(fm->AddMinikinFont(name, handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, true)) << name;

    UserResult r = userFamilies("/fonts/Foo-Bold-Italic.ttf");
    EXPECT_EQ(r.weight, 400);  // italic names keep the caller's weight
    EXPECT_EQ(r.fontWeight, 400);
    EXPECT_TRUE(r.fontItalic);

    EXPECT_EQ(userFamilies("/fonts/Foo-Thin-Bold.ttf").weight, 100);  // -Thin is tested first
    EXPECT_EQ(userFamilies("/fonts/Roboto-Medium.ttf", "qvx-roboto-light").weight, 700);
    EXPECT_EQ(userFamilies("/fonts/Roboto-Medium.ttf", "sans-serif").weight, 500);
    EXPECT_EQ(userFamilies("/fonts/Roboto-Medium.ttf").weight, 500);
    EXPECT_EQ(userFamilies("-Bold.ttf").weight, 400);  // a match at the very start does not count
    EXPECT_EQ(userFamilies("/fonts/Foo-Light.ttf").weight, 300);
    EXPECT_EQ(userFamilies("/fonts/Foo-Black.ttf").weight, 900);

    r = userFamilies("/fonts/Foo-Bold.ttf");
    EXPECT_EQ(r.weight, 700);
    EXPECT_EQ(r.families, 1u);
    EXPECT_EQ(r.fontWeight, 700);
    EXPECT_FALSE(r.fontItalic);

    r = userFamilies("/fonts/Foo-Regular.ttf");
    EXPECT_EQ(r.weight, 400);
    EXPECT_EQ(r.fontWeight, 400);

    // An unregistered name still sets the weight but adds no family; so does a system Roboto
    // file, which the system families serve.
    r = userFamilies("/fonts/Unknown-Bold.ttf");
    EXPECT_EQ(r.weight, 700);
    EXPECT_EQ(r.families, 0u);
    ASSERT_TRUE(fm->AddMinikinFont("/system/fonts/Roboto-Bold.ttf", handOver(bytes, bytes.size()),
                                   (unsigned)bytes.size(), 0, true));
    r = userFamilies("/system/fonts/Roboto-Bold.ttf");
    EXPECT_EQ(r.weight, 700);
    EXPECT_EQ(r.families, 0u);
}

TEST_F(FontManagerTest, SystemFamiliesAreTakenOnceAndLoadedOnDemand)
{
    FontManager* fm = FontManager::GetInstance();
    EXPECT_FALSE(fm->IsSystemFontFamiliesAlreadySet());
    auto* list = new List();
    list->Construct();
    LmFontFamily* base = makeFamily(0, 0, {kSans});
    LmFontFamily* serif = makeFamily(7001, 2, {kSerif}, 500, true);
    LmFontFamily* broken = makeFamily(7002, 0, {kSans, kMissing});
    LmFontFamily* empty = makeFamily(7003, 0, {});
    for (LmFontFamily* f : {base, serif, broken, empty}) list->Add(f);
    EXPECT_TRUE(fm->SetSystemFontFamilies(list));
    EXPECT_TRUE(fm->IsSystemFontFamiliesAlreadySet());

    // A later list is ignored and stays the caller's.
    List other;
    other.Construct();
    EXPECT_TRUE(fm->SetSystemFontFamilies(&other));
    EXPECT_EQ(fm->GetSystemFontFamilies(), list);

    base->loaded = fm->BuildMinikinFamily(base);
    EXPECT_EQ(base->loaded, 1);
    EXPECT_FALSE(fm->BuildMinikinFamily(nullptr));
    EXPECT_FALSE(fm->BuildMinikinFamily(empty));

    EXPECT_FALSE(fm->LoadMinikinFontFamily(9999));
    EXPECT_TRUE(fm->LoadMinikinFontFamily(7001));
    EXPECT_EQ(serif->loaded, 1);
    EXPECT_FALSE(fm->LoadMinikinFontFamily(7001));  // loaded families are skipped
    // A family whose second font is missing stops there and stays unloaded.
    EXPECT_TRUE(fm->LoadMinikinFontFamily(7002));
    EXPECT_EQ(broken->loaded, 0);
    EXPECT_TRUE(fm->IsExisting(kSans, 0));

    // No user font: the loaded system families in order, with their locale and variant.
    std::vector<std::shared_ptr<LmPlatformFamily>> families;
    int weight = 400;
    ASSERT_TRUE(fm->GetMinikinFontFamilies(nullptr, families, nullptr, weight));
    ASSERT_EQ(families.size(), 2u);
    EXPECT_EQ(families[0]->getLocaleListId(), 0u);
    EXPECT_EQ(families[1]->getLocaleListId(), 7001u);
    EXPECT_EQ(families[1]->getVariant(), 2);
    ASSERT_EQ(families[1]->getNumFonts(), 1u);
    EXPECT_EQ(families[1]->getFonts()[0].weight, 500);
    EXPECT_TRUE(families[1]->getFonts()[0].italic);
    EXPECT_FALSE(families[0]->isCustomFallback());

    // A user font goes first.
    std::vector<char> bytes = readFile(kSerif);
    ASSERT_TRUE(fm->AddMinikinFont("mine-Bold.ttf", handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, true));
    OwnedString user("mine-Bold.ttf");
    families.clear();
    ASSERT_TRUE(fm->GetMinikinFontFamilies(nullptr, families, &user.s, weight));
    ASSERT_EQ(families.size(), 3u);
    EXPECT_EQ(weight, 700);
    EXPECT_EQ(families[0]->getFonts()[0].weight, 700);
    EXPECT_EQ(families[1]->getLocaleListId(), 0u);

    fm->ClearFontFamilies();
    EXPECT_FALSE(fm->IsSystemFontFamiliesAlreadySet());
    EXPECT_EQ(fm->GetSystemFontFamilies(), nullptr);
    EXPECT_FALSE(fm->LoadMinikinFontFamily(7001));
}

TEST_F(FontManagerTest, FamiliesWhoseFontsWereClearedDrop)
{
    FontManager* fm = FontManager::GetInstance();
    auto* list = new List();
    list->Construct();
    LmFontFamily* base = makeFamily(0, 0, {kSans});
    list->Add(base);
    fm->SetSystemFontFamilies(list);
    base->loaded = fm->BuildMinikinFamily(base);
    fm->ClearFontMaps();

    std::vector<std::shared_ptr<LmPlatformFamily>> families;
    int weight = 400;
    EXPECT_TRUE(fm->GetMinikinFontFamilies(nullptr, families, nullptr, weight));
    EXPECT_TRUE(families.empty());
}
