#include "foundation/Error.h"
#include "foundation/Mutex.h"
#include "foundation/NativeError.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace LmFontEffect;

// A recursive lock is released only at its last unlock, and an unlock by another thread does
// nothing: either way a contender must still be kept out.
TEST(Mutex, HeldUntilTheOwnersLastUnlock)
{
    for (bool recursive : {true, false}) {
        Mutex m;
        ASSERT_TRUE(m.Construct());
        m.Lock();
        if (recursive) {
            m.Lock();
            m.Unlock();
        } else {
            std::thread([&m] { m.Unlock(); }).join();
        }
        std::atomic<bool> acquired{false};
        std::thread other([&] { m.Lock(); acquired = true; m.Unlock(); });
        // Enough time to take a free mutex, not proof of blocking.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(acquired) << (recursive ? "recursive" : "foreign unlock");
        m.Unlock();
        other.join();
        EXPECT_TRUE(acquired);
    }
}

TEST(Mutex, ConstructTwiceAndUnconstructed)
{
    Mutex idle, m;
    idle.Lock();
    idle.Unlock();
    ASSERT_TRUE(m.Construct());
    EXPECT_FAILS(false, 4, m.Construct());
}
