#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

using namespace LmFontEffect;

namespace {

// Restores the process-wide level mask after each test.
class LmLogTest : public ::testing::Test {
protected:
    void SetUp() override { mSaved = LmLog::getPrintLogLevel(); }
    void TearDown() override { LmLog::setPrintLogLevel(mSaved); }

    LmTest::LogCapture log;

private:
    unsigned char mSaved = 255;
};

} // namespace

TEST_F(LmLogTest, LevelsMapToPriorities)
{
    LmLog::setPrintLogLevel(255);
    LmLog::printLog(LM_LOG_DEBUG, "a.cpp", "d");
    LmLog::printLog(LM_LOG_INFO, "a.cpp", "i");
    LmLog::printLog(LM_LOG_WARN, "a.cpp", "w");
    LmLog::printLog(LM_LOG_ERROR, "a.cpp", "e");
    ASSERT_EQ(4u, log.lines().size());
    const int expected[] = {3, 4, 5, 6};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(expected[k], log.lines()[(size_t)k].priority);
        EXPECT_EQ("lmeffect", log.lines()[(size_t)k].tag);
    }
    EXPECT_EQ("[a] w \n", log.lines()[2].message);
}

TEST_F(LmLogTest, ClearedLevelOrNullFormatPrintsNothing)
{
    LmLog::setPrintLogLevel(LM_LOG_ERROR);
    LmLog::printLog(LM_LOG_DEBUG, "a.cpp", "hidden %d", 1);
    LmLog::printLog(LM_LOG_ERROR, "a.cpp", nullptr);
    EXPECT_TRUE(log.lines().empty());
    LmLog::printLog(LM_LOG_ERROR, "a.cpp", "shown %d", 2);
    EXPECT_TRUE(log.contains("lmeffect", "[a] shown 2 \n"));
}

TEST_F(LmLogTest, FileNameLosesItsExtension)
{
    LmLog::printLog(LM_LOG_INFO, "dir.v2/LmText.cpp", "x");
    LmLog::printLog(LM_LOG_INFO, "Makefile", "y");
    LmLog::printLog(LM_LOG_INFO, "", "z");
    EXPECT_TRUE(log.containsMessage("[dir.v2/LmText] x \n"));
    EXPECT_TRUE(log.containsMessage("[Makefile] y \n"));
    EXPECT_TRUE(log.containsMessage("[] z \n"));
}

TEST_F(LmLogTest, FileNameOf256CharactersSuppressesTheLine)
{
    std::string name(255, 'n');
    LmLog::printLog(LM_LOG_INFO, name.c_str(), "kept");
    EXPECT_TRUE(log.containsMessage("[" + name + "] kept \n"));
    log.clear();
    name.push_back('n');
    LmLog::printLog(LM_LOG_INFO, name.c_str(), "dropped");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(LmLogTest, TimingNeedsItsOwnBit)
{
    LmLog::setPrintLogLevel(LM_LOG_INFO);
    LmLog::printTime("t.cpp", "draw", 1500);
    EXPECT_TRUE(log.lines().empty());
    LmLog::setPrintLogLevel(LM_LOG_INFO | LM_LOG_TIME);
    LmLog::printTime("t.cpp", "draw", 1500);
    LmLog::printTime("t.cpp", "blur", 7, "r=%d", 3);
    EXPECT_TRUE(log.contains("lmeffect", "[t] [Time] draw 1.500ms \n"));
    EXPECT_TRUE(log.containsMessage("[t] [Time] blur 0.007ms r=3 \n"));
    EXPECT_EQ(4, log.lines()[0].priority);
}

TEST_F(LmLogTest, ConvertLogLimits)
{
    EXPECT_STREQ("[### null ###]", LmLog::ConvertLog(nullptr));
    LmString s;
    ASSERT_TRUE(s.Construct("caf\xc3\xa9"));
    EXPECT_STREQ("caf\xc3\xa9", LmLog::ConvertLog(&s));
    ASSERT_TRUE(s.Set(std::string(511, 'a').c_str())); // UTF-8 size 512: still fits
    EXPECT_EQ(std::string(511, 'a'), LmLog::ConvertLog(&s));
    ASSERT_TRUE(s.Append("b"));
    EXPECT_STREQ("[### string is too long ###]", LmLog::ConvertLog(&s));
    ASSERT_TRUE(s.Set(std::wstring(255, L'\u00e9').c_str())); // 510 bytes + terminator
    EXPECT_EQ(510u, std::string(LmLog::ConvertLog(&s)).size());
}

TEST_F(LmLogTest, NativeErrorLine)
{
    Error::Report("Tag", 11, 42);
    ASSERT_EQ(1u, log.lines().size());
    EXPECT_EQ(6, log.lines()[0].priority);
    EXPECT_TRUE(log.contains("Tag", "@ Native Error 11 : 42"));
    EXPECT_EQ(11u, Error::GetError());
}

TEST(Error, IsKeptPerThread)
{
    Error::SetError(7);
    unsigned long seenFresh = 99, seenOwn = 99;
    std::thread other([&] {
        seenFresh = Error::GetError();
        Error::SetError(3);
        seenOwn = Error::GetError();
    });
    other.join();
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
