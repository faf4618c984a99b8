#ifndef LMFONTEFFECT_FOUNDATION_LIST_H
#define LMFONTEFFECT_FOUNDATION_LIST_H

namespace LmFontEffect {

struct ListImpl;

// Doubly linked list of untyped pointers; it never owns what they point to. Two-phase:
// a trivial constructor, then one Construct. Up to 10 traversals may be open at once; a
// traversal handle is a long, -1 on failure. A remembered position (index, node) makes
// neighbouring positional look-ups cheap. Removing a node moves every traversal standing
// on it to the next node. Const calls only read, so threads may read one list at once
// while nobody edits or traverses it. Failures return false / -1 / null and set the
// thread's error code (2 too many traversals, 3 index out of range, 4 already
// constructed, 7 invalid argument, 8 not constructed, 9 traversal past the end or
// unknown handle).
class List {
public:
    List();
    virtual ~List();
    List(const List&) = delete;
    List& operator=(const List&) = delete;

    bool Construct();
    bool Construct(const List* other);
    bool Construct(void** items, int n);

    bool Add(void* data);
    bool Add(const List* other);
    // Any index at or past the end appends.
    bool Insert(void* data, int i);

    // A pointer that is not in the list is not an error.
    bool Remove(void* data);
    bool Remove(int i);
    bool Remove(int i, int n);
    bool RemoveAll();

    int GetCount() const;
    void* Get(int i) const;
    int GetIndex(void* data) const;
    bool IsContained(void* data) const;
    bool IsContained(const List* other) const;

    long BeginTraversal();
    void* GetData(long h) const;
    bool NextData(long h);
    bool PrevData(long h);
    bool Move(long* h, int i);
    bool MoveFirst(long* h);
    bool MoveLast(long* h);
    bool EndTraversal(long h);

private:
    ListImpl* mImpl;
};

} // namespace LmFontEffect

#endif
