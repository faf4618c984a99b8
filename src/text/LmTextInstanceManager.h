#ifndef LMFONTEFFECT_TEXT_LMTEXTINSTANCEMANAGER_H
#define LMFONTEFFECT_TEXT_LMTEXTINSTANCEMANAGER_H

namespace LmFontEffect {

class LmTextObject;

// Process-wide table between the integer handles Java keeps and native text objects, with a
// reference count per bound object. Handles count up from 1 and are never reused; -1 means
// none. Deletion goes through the release callback; while Lock() is in force, objects whose
// count reaches zero are parked and deleted at Unlock(), most recently parked first.
// Every operation holds one recursive mutex, so the callback may re-enter the table (the
// text object's destructor unregisters its handle).
class LmTextInstanceManager {
public:
    using ReleaseCallback = void (*)(LmTextObject*);

    LmTextInstanceManager() = delete;

    static void SetCallBack(ReleaseCallback callback);
    // The object's handle; a new one for an object not yet registered. Out of memory it
    // throws std::bad_alloc and leaves the table as it was.
    static int Register(LmTextObject* object);
    // Forgets the handle (unknown handles are ignored); bind counts are left alone.
    static void Unregister(int handle);
    // Count + 1; an object parked for deletion is revived with count 1.
    static void Bind(LmTextObject* object);
    // Count - 1; at zero and deleteAtZero the object is deleted (or parked while locked).
    // An object never bound reports error 9 and gives 0.
    static bool Release(LmTextObject* object, bool deleteAtZero);
    static bool Release(int handle);
    static void Lock();
    static void Unlock();
    static int FindLmTextHandle(LmTextObject* object);
    static LmTextObject* FindLmTextObject(int handle);
};

} // namespace LmFontEffect

#endif
