#include "foundation/List.h"

#include "foundation/Error.h"

#include <cstdint>
#include <new>

namespace LmFontEffect {

namespace {

const char* const kTag = "Lm_List";
const int kMaxTraversals = 10;
// Index left behind when the remembered position is dropped; only the null node matters.
const int32_t kNoIndex = -999999999;

struct ListNode {
    ListNode* prev;
    ListNode* next;
    void* data;
};

// What a traversal handle points to: the node the traversal stands on, or null, and that
// node's index, kept up to date by every edit so the remembered position can follow it.
struct ListCell {
    ListNode* node;
    int32_t index;
};

} // namespace

struct ListImpl {
    ListNode* head = nullptr;
    ListNode* tail = nullptr;
    int32_t count = 0;
    int32_t openTraversals = 0;
    ListCell** traversals = nullptr; // kMaxTraversals slots
    int32_t cachedIndex = -1;
    ListNode* cachedNode = nullptr; // remembered position, null when there is none

    void remember(int32_t index, ListNode* node)
    {
        cachedIndex = index;
        cachedNode = node;
    }

    void forget() { remember(kNoIndex, nullptr); }

    ListNode* walkFromHead(int i) const
    {
        ListNode* n = head;
        for (int k = 0; k < i && n; ++k) n = n->next;
        return n;
    }

    static ListNode* walkFrom(ListNode* from, int steps, bool forward)
    {
        ListNode* n = from;
        for (int k = 0; k < steps && n; ++k) n = forward ? n->next : n->prev;
        return n;
    }

    // The look-up of Get: reads only, so lists shared between threads may be read at once.
    ListNode* nodeForGet(int i) const
    {
        if (!cachedNode) return walkFromHead(i);
        if (cachedIndex >= i) return walkFrom(cachedNode, cachedIndex - i, false);
        return walkFrom(cachedNode, i - cachedIndex, true);
    }

    // The look-up of Move, Insert and Remove: the remembered position follows, if there is one.
    ListNode* nodeForMove(int i)
    {
        if (!cachedNode) return walkFromHead(i);
        ListNode* n;
        if (cachedIndex <= i)
            n = walkFrom(cachedNode, i - cachedIndex, true);
        else if (i <= cachedIndex / 2)
            n = walkFromHead(i);
        else
            n = walkFrom(cachedNode, cachedIndex - i, false);
        remember(i, n);
        return n;
    }

    // Searches from the remembered position to the end, then from the head up to it.
    ListNode* search(void* data, int* index) const
    {
        ListNode* start = cachedNode ? cachedNode : head;
        int k = cachedNode ? cachedIndex : 0;
        for (ListNode* n = start; n; n = n->next, ++k) {
            if (n->data == data) {
                *index = k;
                return n;
            }
        }
        if (!cachedNode) return nullptr;
        k = 0;
        for (ListNode* n = head; n && n != cachedNode; n = n->next, ++k) {
            if (n->data == data) {
                *index = k;
                return n;
            }
        }
        return nullptr;
    }

    // Visits the first n items until visit returns false.
    template <class Visit>
    void visit(int n, Visit fn) const
    {
        ListNode* node = head;
        for (int k = 0; k < n && node; ++k, node = node->next)
            if (!fn(node->data)) break;
    }

    int slotOf(long h) const
    {
        for (int k = 0; k < kMaxTraversals; ++k)
            if (traversals[k] && (long)(intptr_t)traversals[k] == h) return k;
        return -1;
    }

    ListCell* cellOf(long h) const
    {
        int slot = slotOf(h);
        return slot < 0 ? nullptr : traversals[slot];
    }

    void append(ListNode* node)
    {
        node->prev = tail;
        node->next = nullptr;
        if (tail)
            tail->next = node;
        else
            head = node;
        tail = node;
        if (count == 0) remember(0, node);
        ++count;
    }

    // Every traversal at or after index i shifts by delta; those on a removed node step
    // onto its successor, which takes over the index.
    void shiftTraversals(int32_t i, int32_t delta, const ListNode* removed)
    {
        for (int k = 0; k < kMaxTraversals; ++k) {
            ListCell* cell = traversals[k];
            if (!cell || !cell->node) continue;
            if (removed && cell->node == removed)
                cell->node = removed->next;
            else if (cell->index >= i + (removed ? 1 : 0))
                cell->index += delta;
        }
    }

    void unlinkAndFree(ListNode* node, int index)
    {
        shiftTraversals(index, -1, node);
        ListNode* prev = node->prev;
        ListNode* next = node->next;
        if (prev)
            prev->next = next;
        else
            head = next;
        if (next)
            next->prev = prev;
        else
            tail = prev;
        if (cachedNode == node) {
            if (cachedIndex == 0)
                remember(0, next);
            else
                remember(cachedIndex - 1, prev);
        } else if (index < cachedIndex) {
            --cachedIndex;
        }
        delete node;
        --count;
    }

    void freeNodes()
    {
        for (ListNode* n = head; n;) {
            ListNode* next = n->next;
            delete n;
            n = next;
        }
        head = tail = nullptr;
        count = 0;
    }
};

List::List() : mImpl(nullptr) {}

List::~List()
{
    if (!mImpl) return;
    mImpl->freeNodes();
    for (int k = 0; k < kMaxTraversals; ++k) delete mImpl->traversals[k];
    delete[] mImpl->traversals;
    delete mImpl;
}

bool List::Construct()
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    ListImpl* impl = new (std::nothrow) ListImpl;
    ListCell** slots = new (std::nothrow) ListCell*[kMaxTraversals]();
    if (!impl || !slots) {
        delete impl;
        delete[] slots;
        Error::Report(kTag, Error::LM_ERR_PLATFORM, __LINE__);
        return false;
    }
    impl->traversals = slots;
    mImpl = impl;
    return true;
}

bool List::Construct(const List* other)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!other, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    return Construct() && Add(other);
}

bool List::Construct(void** items, int n)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!items || n < 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    if (!Construct()) return false;
    for (int k = 0; k < n; ++k)
        if (!Add(items[k])) return false;
    return true;
}

bool List::Add(void* data)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    ListNode* node = new (std::nothrow) ListNode{nullptr, nullptr, data};
    if (Error::ReportIf(!node, kTag, Error::LM_ERR_PLATFORM, __LINE__)) return false;
    mImpl->append(node);
    return true;
}

bool List::Add(const List* other)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!other, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    if (!other->mImpl || other->mImpl->count == 0) return true;
    // Walks the nodes directly, so the other list is only read. The count is taken first so
    // that adding a list to itself ends. An item that cannot be added fails the call.
    bool all = true;
    other->mImpl->visit(other->mImpl->count, [&](void* data) { return all = Add(data); });
    return all;
}

bool List::Insert(void* data, int i)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(i < 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    // Any index past the end appends (deliberate).
    if (i >= mImpl->count) return Add(data);
    ListNode* at = mImpl->nodeForMove(i);
    ListNode* node = new (std::nothrow) ListNode{at->prev, at, data};
    if (Error::ReportIf(!node, kTag, Error::LM_ERR_PLATFORM, __LINE__)) return false;
    if (at->prev)
        at->prev->next = node;
    else
        mImpl->head = node;
    at->prev = node;
    if (mImpl->cachedIndex >= i) ++mImpl->cachedIndex;
    mImpl->shiftTraversals(i, 1, nullptr);
    ++mImpl->count;
    return true;
}

bool List::Remove(void* data)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!data || mImpl->count == 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    int index = 0;
    for (ListNode* n = mImpl->head; n; n = n->next, ++index) {
        if (n->data == data) {
            mImpl->unlinkAndFree(n, index);
            break;
        }
    }
    return true;
}

bool List::Remove(int i)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(i < 0 || i >= mImpl->count, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    mImpl->unlinkAndFree(mImpl->nodeForMove(i), i);
    return true;
}

bool List::Remove(int i, int n)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(i < 0 || i >= mImpl->count || n < 0 || n > mImpl->count, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    // Items past the end are not an error for the call as a whole.
    for (int k = 0; k < n; ++k)
        if (!Remove(i)) break;
    return true;
}

bool List::RemoveAll()
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (mImpl->count == 0) return true;
    mImpl->freeNodes();
    for (int k = 0; k < kMaxTraversals; ++k)
        if (mImpl->traversals[k]) mImpl->traversals[k]->node = nullptr;
    mImpl->forget();
    return true;
}

int List::GetCount() const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    return mImpl->count;
}

void* List::Get(int i) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return nullptr;
    if (Error::ReportIf(i < 0 || i >= mImpl->count, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return nullptr;
    ListNode* n = mImpl->nodeForGet(i);
    return n ? n->data : nullptr;
}

int List::GetIndex(void* data) const
{
    // A null pointer reports "not constructed" too (deliberate).
    if (Error::ReportIf(!mImpl || !data, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    int index = -1;
    return mImpl->search(data, &index) ? index : -1;
}

bool List::IsContained(void* data) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!data, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    int index = -1;
    return mImpl->search(data, &index) != nullptr;
}

bool List::IsContained(const List* other) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!other, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    if (!other->mImpl || other->mImpl->count == 0) return true;
    bool all = true;
    other->mImpl->visit(other->mImpl->count, [&](void* data) { return all = IsContained(data); });
    return all;
}

long List::BeginTraversal()
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    if (Error::ReportIf(mImpl->openTraversals >= kMaxTraversals, kTag, Error::LM_ERR_TOO_MANY_TRAVERSALS, __LINE__)) return -1;
    int slot = 0;
    while (mImpl->traversals[slot]) ++slot; // a free slot exists while fewer than 10 are open
    ListCell* cell = new (std::nothrow) ListCell{mImpl->head, 0};
    if (Error::ReportIf(!cell, kTag, Error::LM_ERR_PLATFORM, __LINE__)) return -1;
    mImpl->traversals[slot] = cell;
    ++mImpl->openTraversals;
    mImpl->remember(0, mImpl->head);
    return (long)(intptr_t)cell;
}

namespace {

// The cell behind handle h, or null after reporting why there is none.
ListCell* cellFor(const ListImpl* impl, long h)
{
    if (Error::ReportIf(!impl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return nullptr;
    if (Error::ReportIf(h == 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return nullptr;
    ListCell* cell = impl->cellOf(h);
    Error::ReportIf(!cell, kTag, Error::LM_ERR_UNKNOWN_HANDLE, __LINE__);
    return cell;
}

// Shared by NextData and PrevData.
bool step(ListImpl* impl, long h, bool forward)
{
    ListCell* cell = cellFor(impl, h);
    if (!cell) return false;
    if (!cell->node) {
        // Past either end: back to the head, whichever the direction.
        cell->node = impl->head;
        cell->index = 0;
        Error::Report(kTag, Error::LM_ERR_UNKNOWN_HANDLE, __LINE__);
        return false;
    }
    cell->node = forward ? cell->node->next : cell->node->prev;
    cell->index += forward ? 1 : -1;
    // The remembered position follows this traversal, at its own index: another traversal
    // may have moved the remembered one elsewhere.
    if (impl->cachedNode) impl->remember(cell->index, cell->node);
    return true;
}

// Shared by MoveFirst and MoveLast.
bool jump(ListImpl* impl, long* h, bool last)
{
    if (Error::ReportIf(!impl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!h, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    ListCell* cell = cellFor(impl, *h);
    if (!cell) return false;
    cell->node = last ? impl->tail : impl->head;
    cell->index = last ? impl->count - 1 : 0;
    impl->remember(cell->index, cell->node);
    return true;
}

} // namespace

void* List::GetData(long h) const
{
    ListCell* cell = cellFor(mImpl, h);
    return (cell && cell->node) ? cell->node->data : nullptr;
}

bool List::NextData(long h) { return step(mImpl, h, true); }

bool List::PrevData(long h) { return step(mImpl, h, false); }

bool List::Move(long* h, int i)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!h, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    if (Error::ReportIf(i < 0 || i >= mImpl->count, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    ListCell* cell = cellFor(mImpl, *h);
    if (!cell) return false;
    cell->node = mImpl->nodeForMove(i);
    cell->index = i;
    return true;
}

bool List::MoveFirst(long* h) { return jump(mImpl, h, false); }

bool List::MoveLast(long* h) { return jump(mImpl, h, true); }

bool List::EndTraversal(long h)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(h == 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    // Only registered cells are freed: -1 from a failed BeginTraversal, or any foreign
    // value, frees nothing.
    int slot = mImpl->slotOf(h);
    if (slot >= 0) {
        delete mImpl->traversals[slot];
        mImpl->traversals[slot] = nullptr;
        --mImpl->openTraversals;
    }
    mImpl->forget();
    return true;
}

} // namespace LmFontEffect
