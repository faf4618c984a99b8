#include "text/LmTextInstanceManager.h"

#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "foundation/Mutex.h"

#include <algorithm>
#include <list>
#include <map>
#include <memory>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmTextInstanceManager";

struct State {
    std::map<LmTextObject*, int> bindCounts;
    std::map<int, LmTextObject*> handles;
    std::map<LmTextObject*, int> objects;
    std::list<LmTextObject*> pending;  // front: most recently parked
    LmTextInstanceManager::ReleaseCallback callback = nullptr;
    unsigned char locked = 0;
    int lastHandle = 0;
};

State& state()
{
    static State s;
    return s;
}

// Created by whichever operation comes first (thread-safe static initialisation); when the
// platform mutex cannot be made the table runs unlocked.
Mutex* tableMutex()
{
    static std::unique_ptr<Mutex> mutex = [] {
        std::unique_ptr<Mutex> m(new Mutex());
        if (!m->Construct()) m.reset();
        return m;
    }();
    return mutex.get();
}

class TableLock {
public:
    TableLock() : mutex(tableMutex())
    {
        if (mutex) mutex->Lock();
    }
    ~TableLock()
    {
        if (mutex) mutex->Unlock();
    }
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;

private:
    Mutex* mutex;
};

} // namespace

void LmTextInstanceManager::SetCallBack(ReleaseCallback callback)
{
    TableLock lock;
    state().callback = callback;
}

int LmTextInstanceManager::Register(LmTextObject* object)
{
    TableLock lock;
    State& s = state();
    auto found = s.objects.find(object);
    if (found != s.objects.end()) return found->second;
    int handle = ++s.lastHandle;
    s.handles[handle] = object;
    try {
        s.objects[object] = handle;
    } catch (...) {
        s.handles.erase(handle); // all or nothing: the caller sees the failure
        throw;
    }
    return handle;
}

void LmTextInstanceManager::Unregister(int handle)
{
    TableLock lock;
    State& s = state();
    auto found = s.handles.find(handle);
    if (found == s.handles.end()) return;
    s.objects.erase(found->second);
    s.handles.erase(found);
}

void LmTextInstanceManager::Bind(LmTextObject* object)
{
    TableLock lock;
    State& s = state();
    auto found = s.bindCounts.find(object);
    if (found != s.bindCounts.end()) {
        ++found->second;
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Bind(%p) - count: %d", (void*)object, found->second);
        return;
    }
    s.pending.remove(object);
    s.bindCounts[object] = 1;
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Bind(%p) - count: 1", (void*)object);
}

bool LmTextInstanceManager::Release(LmTextObject* object, bool deleteAtZero)
{
    TableLock lock;
    State& s = state();
    auto found = s.bindCounts.find(object);
    if (found == s.bindCounts.end()) {
        Error::Report(kTag, Error::LM_ERR_UNKNOWN_HANDLE, __LINE__);
        return false;
    }
    int before = found->second--;
    if (before == 1 && deleteAtZero) {
        // The entry goes before the callback runs, so a destructor that re-enters the table
        // never sees a count for an object that is being deleted.
        s.bindCounts.erase(found);
        if (s.locked == 1)
            s.pending.push_front(object);
        else if (s.callback)
            s.callback(object);
    }
    return true;
}

bool LmTextInstanceManager::Release(int handle)
{
    TableLock lock;
    State& s = state();
    auto found = s.handles.find(handle);
    if (found == s.handles.end()) {
        Error::Report(kTag, Error::LM_ERR_UNKNOWN_HANDLE, __LINE__);
        return false;
    }
    return Release(found->second, true);
}

void LmTextInstanceManager::Lock()
{
    TableLock lock;
    state().locked = 1;
}

void LmTextInstanceManager::Unlock()
{
    TableLock lock;
    State& s = state();
    // One at a time from the front: a destructor may park further objects (still locked) or
    // revive one through Bind, and both must be seen before the switch goes off.
    while (!s.pending.empty()) {
        LmTextObject* object = s.pending.front();
        s.pending.pop_front();
        if (s.callback) s.callback(object);
    }
    s.locked = 0;
}

int LmTextInstanceManager::FindLmTextHandle(LmTextObject* object)
{
    TableLock lock;
    State& s = state();
    auto found = s.objects.find(object);
    return found == s.objects.end() ? -1 : found->second;
}

LmTextObject* LmTextInstanceManager::FindLmTextObject(int handle)
{
    TableLock lock;
    State& s = state();
    auto found = s.handles.find(handle);
    if (found == s.handles.end()) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "FindLmTextObject() - Can't find the handle[%d]", handle);
        return nullptr;
    }
    return found->second;
}

} // namespace LmFontEffect
