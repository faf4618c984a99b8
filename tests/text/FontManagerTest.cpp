#include "text/TextTestSupport.h"

#include "text/LmFontManagerImpl.h"

#include <cstdio>

namespace LmFontEffect {
class FontManagerPeer {
public:
    static LmFontManagerImpl* impl(FontManager* fm) { return fm->impl; }
};
} // namespace LmFontEffect

using namespace LmTest;

namespace {

const char* const kMissing = "/nonexistent/dir/NoSuchFont.ttf";

struct Str {
    explicit Str(const char* text) { s.Construct(text); }
    LmString s;
};

class FontManagerTest : public FreshFonts {
protected:
    static LmFontManagerImpl* impl() { return FontManagerPeer::impl(fm); }
    static FontManager* const fm;
};
FontManager* const FontManagerTest::fm = FontManager::GetInstance();

} // namespace

TEST(FontManagerKeys, KeysKeepTheirTrailingNul)
{
    EXPECT_EQ(LmFontManagerImpl::FontKey("a.ttf", 3), std::string("a.ttf3\0", 7));
    EXPECT_EQ(LmFontManagerImpl::FontKey("a", 200), std::string("a\xf8\0", 3));  // '0' + 200 cut to 8 bits
    EXPECT_EQ(LmFontManagerImpl::PathKey("a.ttf"), std::string("a.ttf\0", 6));
}

// A file is read once, handed bytes are kept once; the first font made stays.
TEST_F(FontManagerTest, FontsFromAFileOrHandedBytesAreKeptOnce)
{
    ASSERT_TRUE(fm->AddMinikinFont(kSansPath, nullptr, 0, 0, true));
    EXPECT_TRUE(fm->IsExisting(kSansPath, 0));
    ASSERT_EQ(impl()->fontDataMap.size(), 1u);  // read whole: the end-to-end changing-file test
    EXPECT_GT(impl()->totalBufferMB, 0.0);

    Str name(kSansPath);
    std::shared_ptr<LmPlatformFont> first, again;
    ASSERT_TRUE(fm->GetMinikinFont(first, &name.s, 0));
    EXPECT_TRUE(fm->AddMinikinFont(&name.s, nullptr, 0, 0, false));
    ASSERT_TRUE(fm->GetMinikinFont(again, &name.s, 0));
    EXPECT_EQ(again, first);
    EXPECT_EQ(impl()->fontDataMap.size(), 1u);

    fm->ClearFontMaps();
    EXPECT_FALSE(fm->IsExisting(kSansPath, 0));
    EXPECT_TRUE(impl()->fontDataMap.empty());
    EXPECT_EQ(impl()->totalBufferMB, 0.0);

    std::vector<unsigned char> bytes = readFileBytes(kSansPath);
    unsigned size = (unsigned)bytes.size();
    ASSERT_TRUE(fm->AddMinikinFont("user", handOver(bytes, size), size, 0, true));
    Str user("user");
    ASSERT_TRUE(fm->GetMinikinFont(first, &user.s, 0));
    // Checked, the second buffer is freed at once; unchecked, its font is made and dropped.
    EXPECT_TRUE(fm->AddMinikinFont("user", handOver(bytes, size), size, 0, true));
    EXPECT_TRUE(fm->AddMinikinFont("user", handOver(bytes, size), size, 0, false));
    ASSERT_TRUE(fm->GetMinikinFont(again, &user.s, 0));
    EXPECT_EQ(again, first);
    EXPECT_TRUE(impl()->fontDataMap.empty());
    EXPECT_TRUE(first->HasGlyph('A'));
}

TEST_F(FontManagerTest, MissingRandomTruncatedAndEmptyFontsAreRefused)
{
    LogCapture log;
    EXPECT_FALSE(fm->AddMinikinFont(kMissing, nullptr, 0, 0, true));
    const std::string openFailed = std::string("Failed to open ") + kMissing + " as a font";
    EXPECT_TRUE(log.contains("LmFontManager", openFailed));
    log.clear();
    EXPECT_FALSE(fm->AddMinikinFont(kMissing, nullptr, 0, 0, true));  // the failed file is not retried
    EXPECT_FALSE(log.containsMessage(openFailed));
    EXPECT_FALSE(fm->AddMinikinFont((LmString*)nullptr, new char[4](), 4, 0, true));

    std::vector<unsigned char> bytes = readFileBytes(kSansPath);
    std::vector<unsigned char> noise(bytes.size());
    std::mt19937 random(1234);
    for (auto& c : noise) c = (unsigned char)random();
    EXPECT_FALSE(fm->AddMinikinFont("random", handOver(noise, noise.size()), (unsigned)noise.size(), 0, true));
    EXPECT_FALSE(fm->AddMinikinFont("truncated", handOver(bytes, 2048), 2048, 0, true));
    EXPECT_FALSE(fm->AddMinikinFont("empty", new char[1](), 0, 0, true));
    EXPECT_TRUE(impl()->fontMap.empty());

    // An empty file on disk (truncated ones read as the truncated buffer above).
    std::string empty = ::testing::TempDir() + "/lm_empty_font.ttf";
    std::ofstream(empty, std::ios::binary).flush();
    EXPECT_FALSE(fm->AddMinikinFont(empty.c_str(), nullptr, 0, 0, true));
    std::remove(empty.c_str());
}

TEST_F(FontManagerTest, UserFontNameSetsWeightAndSlant)
{
    std::vector<unsigned char> bytes = readFileBytes(kSansPath);
    struct Case {
        const char* name;
        const char* family;
        int weight;
        bool italic;
        bool registered, added;
    };
    const Case cases[] = {
        {"/f/Foo-Bold-Italic.ttf", nullptr, 400, true, true, true},  // italic names keep the caller's weight
        {"/f/Foo-Thin-Bold.ttf", nullptr, 100, false, true, true},   // -Thin is tested before -Bold
        {"/f/Roboto-Medium.ttf", "qvx-roboto-light", 700, false, true, true},
        {"/f/Roboto-Medium.ttf", "sans-serif", 500, false, true, true},
        {"-Bold.ttf", nullptr, 400, false, true, true},  // a match at the very start does not count
        {"/f/Foo-Black.ttf", nullptr, 900, false, true, true},
        {"/f/Foo-Regular.ttf", nullptr, 400, false, true, true},
        // Unregistered names, and the system's own Roboto files, set the weight but add no family.
        {"/f/Unknown-Bold.ttf", nullptr, 700, false, false, false},
        {"/system/fonts/Roboto-Bold.ttf", nullptr, 700, false, true, false},
    };
    for (const Case& c : cases) {
        if (c.registered) fm->AddMinikinFont(c.name, handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, true);
        Str user(c.name);
        std::unique_ptr<Str> family(c.family ? new Str(c.family) : nullptr);
        std::vector<std::shared_ptr<LmPlatformFamily>> families;
        int weight = 400;
        ASSERT_TRUE(fm->GetMinikinFontFamilies(family ? &family->s : nullptr, families, &user.s, weight));
        EXPECT_EQ(weight, c.weight) << c.name;
        ASSERT_EQ(families.size(), c.added ? 1u : 0u) << c.name;
        if (!c.added) continue;
        const LmStyledFont& font = families[0]->getFonts().at(0);
        EXPECT_EQ(std::make_pair(c.weight, c.italic), std::make_pair(font.weight, font.italic)) << c.name;
    }
}

TEST_F(FontManagerTest, SystemFamiliesAreTakenOnceAndLoadedOnDemand)
{
    auto* list = new List();
    list->Construct();
    LmFontFamily* base = makeFamily(0, 0, {kSansPath});
    LmFontFamily* serif = makeFamily(7001, 2, {kSerifPath});
    LmFontFamily* broken = makeFamily(7002, 0, {kSansPath, kMissing});
    LmFontFamily* empty = makeFamily(7003, 0, {});
    for (LmFontFamily* f : {base, serif, broken, empty}) list->Add(f);
    EXPECT_TRUE(fm->SetSystemFontFamilies(list));
    List later;  // ignored, and stays the caller's
    later.Construct();
    EXPECT_TRUE(fm->SetSystemFontFamilies(&later));
    EXPECT_EQ(fm->GetSystemFontFamilies(), list);

    base->loaded = fm->BuildMinikinFamily(base);
    EXPECT_FALSE(fm->BuildMinikinFamily(nullptr) || fm->BuildMinikinFamily(empty));
    EXPECT_FALSE(fm->LoadMinikinFontFamily(9999));
    EXPECT_TRUE(fm->LoadMinikinFontFamily(7001));
    EXPECT_EQ(serif->loaded, 1);
    EXPECT_FALSE(fm->LoadMinikinFontFamily(7001));  // built once
    EXPECT_TRUE(fm->LoadMinikinFontFamily(7002));   // stops at its missing font
    EXPECT_EQ(broken->loaded, 0);

    // The user font first, then the loaded system families in order.
    std::vector<unsigned char> bytes = readFileBytes(kSerifPath);
    ASSERT_TRUE(fm->AddMinikinFont("mine-Bold.ttf", handOver(bytes, bytes.size()), (unsigned)bytes.size(), 0, true));
    Str user("mine-Bold.ttf");
    std::vector<std::shared_ptr<LmPlatformFamily>> families;
    int weight = 400;
    ASSERT_TRUE(fm->GetMinikinFontFamilies(nullptr, families, &user.s, weight));
    using Family = std::tuple<uint32_t, int, int, bool>;  // locale list, variant, first font's weight and slant
    std::vector<Family> got;
    for (const auto& f : families)
        got.emplace_back(f->getLocaleListId(), f->getVariant(), f->getFonts().at(0).weight, f->getFonts().at(0).italic);
    EXPECT_EQ((std::vector<Family>{{0, 0, 700, false}, {0, 0, 500, true}, {7001, 2, 500, true}}), got);

    fm->ClearFontFamilies();
    EXPECT_FALSE(fm->LoadMinikinFontFamily(7001));
}
