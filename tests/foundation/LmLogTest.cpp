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
        EXPECT_TRUE(log.contains("lmeffect", "[a] w \n"));
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
    EXPECT_EQ(4, log.lines()[0].priority);

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
    ASSERT_TRUE(s.Construct("caf\xc3\xa9"));
    EXPECT_STREQ("caf\xc3\xa9", LmLog::ConvertLog(&s));
    ASSERT_TRUE(s.Set(std::string(511, 'a').c_str())); // UTF-8 size 512: still fits
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
    EXPECT_EQ(11u, Error::GetError());

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
