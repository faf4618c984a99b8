#ifndef LMFONTEFFECT_FOUNDATION_MUTEX_H
#define LMFONTEFFECT_FOUNDATION_MUTEX_H

namespace LmFontEffect {

struct MutexRecord;

// Recursive mutex over a default POSIX mutex: the owning thread may lock again, and the
// mutex is released at the matching last Unlock. Two-phase: Construct before use; Lock and
// Unlock do nothing on an unconstructed mutex, and Unlock does nothing for a non-owner.
class Mutex {
public:
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    // False with error 4 when already constructed, error 1 when the platform refuses.
    bool Construct();
    void Lock();
    void Unlock();

private:
    MutexRecord* mRecord;
};

} // namespace LmFontEffect

#endif
