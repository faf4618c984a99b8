#include "text/LmTextInstanceManager.h"

#include "foundation/Error.h"
#include "support/TestSupport.h"
#include "text/LmTextObject.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace LmFontEffect;

namespace {

// Stand-ins for objects: the table only compares pointers, and the recording callback never
// dereferences them.
char gSlots[16];
LmTextObject* fake(int i) { return reinterpret_cast<LmTextObject*>(&gSlots[i]); }

std::vector<LmTextObject*> gReleased;
void recordRelease(LmTextObject* object) { gReleased.push_back(object); }

std::string bindLine(LmTextObject* object, int count)
{
    char text[64];
    std::snprintf(text, sizeof text, "Bind(%p) - count: %d", (void*)object, count);
    return text;
}

class InstanceManagerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        gReleased.clear();
        LmTextInstanceManager::SetCallBack(recordRelease);
    }
    void TearDown() override
    {
        LmTextInstanceManager::Unlock();
        for (int i = 0; i < 16; ++i) {
            while (LmTextInstanceManager::GetBindCount(fake(i)) > 0) LmTextInstanceManager::Release(fake(i), true);
            LmTextInstanceManager::Unregister(LmTextInstanceManager::FindLmTextHandle(fake(i)));
        }
        LmTextInstanceManager::SetCallBack(releaseTextObjectCallback);
    }
};

} // namespace

TEST_F(InstanceManagerTest, RegisteringTwiceGivesTheSameHandleAndHandlesAreNeverReused)
{
    int first = LmTextInstanceManager::Register(fake(0));
    EXPECT_GE(first, 1);
    EXPECT_EQ(LmTextInstanceManager::Register(fake(0)), first);
    int second = LmTextInstanceManager::Register(fake(1));
    EXPECT_EQ(second, first + 1);  // the repeated registration issued no number
    EXPECT_EQ(LmTextInstanceManager::FindLmTextHandle(fake(1)), second);
    EXPECT_EQ(LmTextInstanceManager::FindLmTextObject(second), fake(1));

    LmTextInstanceManager::Unregister(first);
    LmTextInstanceManager::Unregister(first);   // unknown now: ignored
    LmTextInstanceManager::Unregister(-1);
    EXPECT_EQ(LmTextInstanceManager::FindLmTextHandle(fake(0)), -1);
    EXPECT_EQ(LmTextInstanceManager::FindLmTextObject(second), fake(1));

    // The same pointer registered again is a new object to the table: a new, larger handle.
    int again = LmTextInstanceManager::Register(fake(0));
    EXPECT_GT(again, second);

    LmTest::LogCapture log;
    EXPECT_EQ(LmTextInstanceManager::FindLmTextObject(first), nullptr);
    EXPECT_TRUE(log.contains("LmTextInstanceManager",
                             "FindLmTextObject() - Can't find the handle[" + std::to_string(first) + "]"));
    EXPECT_EQ(log.lines().at(0).priority, 3);
}

TEST_F(InstanceManagerTest, LastReleaseDeletesAndBindCountsAreLogged)
{
    LmTest::LogCapture log;
    LmTextInstanceManager::Bind(fake(2));
    LmTextInstanceManager::Bind(fake(2));
    EXPECT_TRUE(log.contains("LmTextInstanceManager", bindLine(fake(2), 1)));
    EXPECT_TRUE(log.contains("LmTextInstanceManager", bindLine(fake(2), 2)));

    EXPECT_TRUE(LmTextInstanceManager::Release(fake(2), true));
    EXPECT_TRUE(gReleased.empty());
    EXPECT_EQ(LmTextInstanceManager::GetBindCount(fake(2)), 1);
    EXPECT_TRUE(LmTextInstanceManager::Release(fake(2), true));
    ASSERT_EQ(gReleased.size(), 1u);
    EXPECT_EQ(gReleased[0], fake(2));

    // The entry went with the object: a further release is of an unbound object.
    Error::SetError(0);
    log.clear();
    EXPECT_FALSE(LmTextInstanceManager::Release(fake(2), true));
    EXPECT_EQ(Error::GetError(), 9u);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].priority, 6);
    EXPECT_EQ(log.lines()[0].message.rfind("@ Native Error 9 : ", 0), 0u);
    EXPECT_EQ(gReleased.size(), 1u);
}

TEST_F(InstanceManagerTest, ReleaseOfUnknownObjectOrHandleReportsError9)
{
    Error::SetError(0);
    EXPECT_FALSE(LmTextInstanceManager::Release(fake(3), true));
    EXPECT_EQ(Error::GetError(), 9u);
    Error::SetError(0);
    EXPECT_FALSE(LmTextInstanceManager::Release(987654321));
    EXPECT_EQ(Error::GetError(), 9u);

    // By handle it is the deleting release.
    int handle = LmTextInstanceManager::Register(fake(3));
    LmTextInstanceManager::Bind(fake(3));
    EXPECT_TRUE(LmTextInstanceManager::Release(handle));
    ASSERT_EQ(gReleased.size(), 1u);
    EXPECT_EQ(gReleased[0], fake(3));
}

TEST_F(InstanceManagerTest, NonDeletingReleaseKeepsTheEntryEvenBelowZero)
{
    LmTextInstanceManager::Bind(fake(4));
    EXPECT_TRUE(LmTextInstanceManager::Release(fake(4), false));
    EXPECT_EQ(LmTextInstanceManager::GetBindCount(fake(4)), 0);
    EXPECT_TRUE(LmTextInstanceManager::Release(fake(4), true));  // was 0, not 1: nothing deleted
    EXPECT_EQ(LmTextInstanceManager::GetBindCount(fake(4)), -1);
    EXPECT_TRUE(gReleased.empty());

    LmTextInstanceManager::Bind(fake(5));
    LmTextInstanceManager::Release(fake(5), false);
    LmTest::LogCapture log;
    LmTextInstanceManager::Bind(fake(5));
    EXPECT_TRUE(log.contains("LmTextInstanceManager", bindLine(fake(5), 1)));
    EXPECT_TRUE(LmTextInstanceManager::Release(fake(5), true));
    EXPECT_EQ(gReleased.size(), 1u);

    // Leave no negative count behind for the fixture's clean-up loop to chase.
    LmTextInstanceManager::Bind(fake(4));
    LmTextInstanceManager::Bind(fake(4));
    LmTextInstanceManager::Release(fake(4), true);
}

TEST_F(InstanceManagerTest, LockParksDeletionsUntilUnlockNewestFirst)
{
    LmTextInstanceManager::Bind(fake(6));
    LmTextInstanceManager::Bind(fake(7));
    LmTextInstanceManager::Bind(fake(8));
    LmTextInstanceManager::Lock();
    LmTextInstanceManager::Release(fake(6), true);
    LmTextInstanceManager::Release(fake(7), true);
    LmTextInstanceManager::Release(fake(8), true);
    EXPECT_TRUE(gReleased.empty());
    EXPECT_TRUE(LmTextInstanceManager::IsPending(fake(6)));

    // A bind before Unlock revives a parked object with count 1.
    LmTextInstanceManager::Bind(fake(7));
    EXPECT_FALSE(LmTextInstanceManager::IsPending(fake(7)));
    EXPECT_EQ(LmTextInstanceManager::GetBindCount(fake(7)), 1);

    LmTextInstanceManager::Unlock();
    ASSERT_EQ(gReleased.size(), 2u);
    EXPECT_EQ(gReleased[0], fake(8));
    EXPECT_EQ(gReleased[1], fake(6));
    EXPECT_FALSE(LmTextInstanceManager::IsPending(fake(6)));

    // Unlocked again: the next last release deletes at once.
    LmTextInstanceManager::Release(fake(7), true);
    ASSERT_EQ(gReleased.size(), 3u);
    EXPECT_EQ(gReleased[2], fake(7));
}

namespace {

// A text object whose destructor re-enters the table by releasing a partner object.
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

} // namespace

TEST(InstanceManagerRealObjects, ReleaseDeletesThroughTheTextObjectAndUnregistersIt)
{
    LmTextObject* object = new LmTextObject();
    ASSERT_EQ(object->Construct(), 1);
    int handle = object->GetRuntimeHandle();
    EXPECT_EQ(LmTextObject::FindLmTextObject(handle), object);
    LmTextInstanceManager::Bind(object);

    LmTest::LogCapture log;
    char deleted[96];
    std::snprintf(deleted, sizeof deleted, "Delete LmTextObject by InstanceManager : %p", (void*)object);
    char destructed[96];
    std::snprintf(destructed, sizeof destructed, "~LmTextObject(%p / %d)", (void*)object, handle);
    EXPECT_TRUE(LmTextInstanceManager::Release(object, true));
    EXPECT_TRUE(log.contains("LmTextObject", deleted));
    EXPECT_TRUE(log.contains("LmTextObject", destructed));
    EXPECT_EQ(LmTextInstanceManager::FindLmTextObject(handle), nullptr);
}

TEST(InstanceManagerRealObjects, DestructorsMayReleaseFurtherObjectsWhileTheTableIsHeld)
{
    ChainedTextObject::destroyed = 0;
    auto* first = new ChainedTextObject();
    auto* second = new ChainedTextObject();
    auto* third = new ChainedTextObject();
    for (ChainedTextObject* o : {first, second, third}) {
        ASSERT_EQ(o->Construct(), 1);
        LmTextInstanceManager::Bind(o);
    }
    first->partner = second;
    second->partner = third;
    int thirdHandle = third->GetRuntimeHandle();

    // Unlocked: the chain is deleted inside one Release, each destructor nesting the next.
    LmTextInstanceManager::Release(first, true);
    EXPECT_EQ(ChainedTextObject::destroyed, 3);
    EXPECT_EQ(LmTextInstanceManager::FindLmTextObject(thirdHandle), nullptr);

    // Locked: the destructors run at Unlock and park their partners, which Unlock also
    // deletes before it switches deferral off.
    ChainedTextObject::destroyed = 0;
    first = new ChainedTextObject();
    second = new ChainedTextObject();
    for (ChainedTextObject* o : {first, second}) {
        ASSERT_EQ(o->Construct(), 1);
        LmTextInstanceManager::Bind(o);
    }
    first->partner = second;
    LmTextInstanceManager::Lock();
    LmTextInstanceManager::Release(first, true);
    EXPECT_EQ(ChainedTextObject::destroyed, 0);
    LmTextInstanceManager::Unlock();
    EXPECT_EQ(ChainedTextObject::destroyed, 2);
    EXPECT_FALSE(LmTextInstanceManager::IsPending(second));
}
