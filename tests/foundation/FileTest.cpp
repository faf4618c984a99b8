#include "foundation/Error.h"
#include "foundation/File.h"
#include "foundation/LmString.h"
#include "foundation/NativeError.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <string>

using namespace LmFontEffect;

namespace {

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

} // namespace

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
    EXPECT_EQ(0, File::IsAccessible(path.c_str(), R_OK));
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
