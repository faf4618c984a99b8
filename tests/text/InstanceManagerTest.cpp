#include "text/TextTestSupport.h"

#include "foundation/NativeError.h"
#include "text/LmTextInstanceManager.h"

using namespace LmFontEffect;

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

} // namespace

TEST_F(InstanceManagerTest, SameObjectKeepsItsHandleAndHandlesAreNeverReused)
{
    int first = M::Register(fake(0));
    EXPECT_EQ(M::Register(fake(0)), first);
    int second = M::Register(fake(1));
    EXPECT_EQ(second, first + 1);  // the repeated registration issued no number
    EXPECT_EQ(M::FindLmTextObject(second), fake(1));

    M::Unregister(first);
    M::Unregister(first);  // unknown now: ignored
    EXPECT_EQ(M::FindLmTextHandle(fake(0)), -1);
    EXPECT_EQ(M::FindLmTextObject(first), nullptr);
    EXPECT_GT(M::Register(fake(0)), second);
}

TEST_F(InstanceManagerTest, BindCountsDecideDeletion)
{
    M::Bind(fake(2));
    M::Bind(fake(2));
    EXPECT_TRUE(M::Release(fake(2), true));
    EXPECT_TRUE(gReleased.empty());
    EXPECT_TRUE(M::Release(fake(2), true));
    EXPECT_EQ(gReleased, std::vector<LmTextObject*>{fake(2)});

    // A non-deleting release may reach zero and below; the entry stays and nothing is deleted.
    M::Bind(fake(4));
    EXPECT_TRUE(M::Release(fake(4), false));
    EXPECT_TRUE(M::Release(fake(4), true));
    EXPECT_EQ(gReleased.size(), 1u);
    M::Bind(fake(4));  // -1 to 0
    M::Bind(fake(4));
    M::Release(fake(4), true);  // back from 1 to 0 deletes
    EXPECT_EQ(gReleased.size(), 2u);
}

TEST_F(InstanceManagerTest, ReleaseOfAnUnboundObjectOrUnknownHandleIsError9)
{
    EXPECT_FAILS(false, 9, M::Release(fake(3), true));
    EXPECT_FAILS(false, 9, M::Release(987654321));
    int handle = M::Register(fake(3));
    M::Bind(fake(3));
    EXPECT_TRUE(M::Release(handle));
    EXPECT_EQ(gReleased, std::vector<LmTextObject*>{fake(3)});
}

TEST_F(InstanceManagerTest, LockParksDeletionsUntilUnlockNewestFirst)
{
    for (int i : {6, 7, 8}) M::Bind(fake(i));
    M::Lock();
    for (int i : {6, 7, 8}) M::Release(fake(i), true);
    EXPECT_TRUE(gReleased.empty());

    M::Bind(fake(7));  // revived with count 1: no longer parked

    M::Unlock();
    EXPECT_EQ(gReleased, (std::vector<LmTextObject*>{fake(8), fake(6)}));
    M::Release(fake(7), true);  // unlocked: at once
    EXPECT_EQ(gReleased.back(), fake(7));
}

namespace {

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
