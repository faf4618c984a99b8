#include "foundation/Mutex.h"

#include "foundation/Error.h"

#include <pthread.h>

#include <atomic>
#include <new>

namespace LmFontEffect {

namespace {
const char* const kTag = "Lm_Mutex";
}

struct MutexRecord {
    // Statically initialised as well, so a record whose initialisation failed still holds
    // a usable mutex.
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    int32_t count = 0;
    // Read by threads that do not hold the lock (the recursion check), hence atomic; a
    // thread only ever finds its own id here while it owns the mutex. 0 when free.
    std::atomic<pthread_t> owner{0};
};

Mutex::Mutex() : mRecord(nullptr) {}

Mutex::~Mutex()
{
    if (!mRecord) return;
    pthread_mutex_destroy(&mRecord->mutex);
    delete mRecord;
}

bool Mutex::Construct()
{
    if (mRecord) {
        Error::Report(kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__);
        return false;
    }
    mRecord = new (std::nothrow) MutexRecord;
    if (!mRecord) return false;
    // A failed initialisation keeps the record, so a second Construct reports code 4.
    if (pthread_mutex_init(&mRecord->mutex, nullptr) != 0) {
        Error::Report(kTag, Error::LM_ERR_PLATFORM, __LINE__);
        return false;
    }
    mRecord->count = 0;
    mRecord->owner = 0;
    return true;
}

void Mutex::Lock()
{
    if (!mRecord) return;
    pthread_t self = pthread_self();
    if (mRecord->owner.load() == self) {
        ++mRecord->count;
        return;
    }
    pthread_mutex_lock(&mRecord->mutex);
    mRecord->count = 1;
    mRecord->owner = self;
}

void Mutex::Unlock()
{
    if (!mRecord || mRecord->owner.load() != pthread_self()) return;
    if (mRecord->count-- <= 1) {
        mRecord->owner = 0;
        pthread_mutex_unlock(&mRecord->mutex);
    }
}

} // namespace LmFontEffect
