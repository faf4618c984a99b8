#include "foundation/Error.h"
#include "foundation/Mutex.h"
#include "foundation/NativeError.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace LmFontEffect;

namespace {

// Starts a thread that blocks on the mutex and records when it got it.
class Contender {
public:
    explicit Contender(Mutex& m)
        : mThread([this, &m] {
              m.Lock();
              mAcquired = true;
              m.Unlock();
          })
    {
    }
    ~Contender()
    {
        if (mThread.joinable()) mThread.join();
    }
    // Gives the contender a moment: enough to take a free mutex, not proof of blocking.
    bool acquiredSoon()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return mAcquired;
    }
    bool acquiredAfterJoin()
    {
        mThread.join();
        return mAcquired;
    }

private:
    std::atomic<bool> mAcquired{false};
    std::thread mThread;
};

} // namespace

TEST(Mutex, RecursiveLockIsReleasedAtTheLastUnlock)
{
    Mutex m;
    ASSERT_TRUE(m.Construct());
    m.Lock();
    m.Lock();
    Contender other(m);
    m.Unlock();
    EXPECT_FALSE(other.acquiredSoon());
    m.Unlock();
    EXPECT_TRUE(other.acquiredAfterJoin());
}

TEST(Mutex, UnlockByAnotherThreadDoesNothing)
{
    Mutex m;
    ASSERT_TRUE(m.Construct());
    m.Lock();
    std::thread intruder([&m] { m.Unlock(); });
    intruder.join();
    Contender other(m);
    EXPECT_FALSE(other.acquiredSoon());
    m.Unlock();
    EXPECT_TRUE(other.acquiredAfterJoin());
}

TEST(Mutex, ConstructTwiceAndUnconstructed)
{
    Mutex idle;
    idle.Lock();
    idle.Unlock();

    Mutex m;
    ASSERT_TRUE(m.Construct());
    LmTest::LogCapture log;
    Error::SetError(0);
    EXPECT_FALSE(m.Construct());
    EXPECT_EQ(4u, Error::GetError());
    EXPECT_TRUE(LmTest::loggedNativeError(log, "Lm_Mutex", 4));
}
