#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/NativeError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace LmFontEffect;

namespace {

int items[64];

void* item(int k) { return &items[k]; }

// Constructs list with items 0 .. n-1.
void fill(List& list, int n)
{
    ASSERT_TRUE(list.Construct());
    for (int k = 0; k < n; ++k) ASSERT_TRUE(list.Add(item(k)));
}

std::vector<void*> contents(const List& list)
{
    std::vector<void*> out;
    for (int k = 0; k < list.GetCount(); ++k) out.push_back(list.Get(k));
    return out;
}

} // namespace

TEST(List, EditsAtTheEndsAndBadArguments)
{
    List list;
    EXPECT_FAILS(-1, 8, list.GetCount());
    fill(list, 3);
    EXPECT_FAILS(nullptr, 9, list.GetData(12345));
    EXPECT_FAILS(nullptr, 7, list.GetData(0));
    EXPECT_FALSE(list.Move(nullptr, 0));
    long h = list.BeginTraversal();
    EXPECT_FAILS(false, 3, list.Move(&h, 3));
    list.EndTraversal(h);

    EXPECT_TRUE(list.Insert(item(9), 100)); // past the end appends
    EXPECT_TRUE(list.Insert(item(8), 0));
    EXPECT_EQ((std::vector<void*>{item(8), item(0), item(1), item(2), item(9)}), contents(list));
    EXPECT_FAILS(false, 7, list.Insert(item(7), -1));
    EXPECT_FAILS(false, 7, list.Remove((void*)nullptr));
    // A range stops at the end and still succeeds, leaving the out-of-range code behind.
    EXPECT_FAILS(true, 3, list.Remove(3, 4));
    EXPECT_EQ(3, list.GetCount());
    EXPECT_FALSE(list.Remove(0, 4));
    EXPECT_FALSE(list.Remove(3, 0));
    EXPECT_TRUE(list.Remove(0, 2));
    EXPECT_EQ(std::vector<void*>{item(1)}, contents(list));
}

TEST(List, TraversalsAtMostTen)
{
    List list;
    fill(list, 2);
    long h[10];
    for (long& t : h) ASSERT_NE(-1, t = list.BeginTraversal());
    EXPECT_FAILS(-1, 2, list.BeginTraversal());
    // With every traversal of the source taken, its items are copied and visited by position.
    List copy;
    ASSERT_TRUE(copy.Construct(&list));
    EXPECT_EQ(contents(list), contents(copy));
    EXPECT_TRUE(copy.IsContained(&list));
    EXPECT_TRUE(list.EndTraversal(h[4]));
    long t = list.BeginTraversal();
    EXPECT_NE(-1, t);
    EXPECT_EQ(item(0), list.GetData(t));
    // Ending a failed traversal frees nothing and leaves the others registered.
    EXPECT_TRUE(list.EndTraversal(-1));
    EXPECT_EQ(-1, list.BeginTraversal());
    EXPECT_EQ(item(0), list.GetData(h[0]));

    // Stepping off either end: the randomized model below; the code it leaves is checked here.
    EXPECT_TRUE(list.MoveLast(&t));
    EXPECT_TRUE(list.NextData(t));
    EXPECT_FAILS(false, 9, list.NextData(t));
    EXPECT_TRUE(list.EndTraversal(t));
}

TEST(List, IndexSearchAndWholeLists)
{
    List list, b, empty;
    fill(list, 3);
    list.Add(item(0));
    long h = list.BeginTraversal();
    EXPECT_EQ(0, list.GetIndex(item(0)));
    ASSERT_TRUE(list.Move(&h, 3));
    EXPECT_EQ(3, list.GetIndex(item(0))); // searched from the remembered position: the later copy
    EXPECT_EQ(1, list.GetIndex(item(1)));
    EXPECT_TRUE(list.IsContained(item(1)));
    list.EndTraversal(h);
    EXPECT_EQ(0, list.GetIndex(item(0)));
    EXPECT_EQ(-1, list.GetIndex(item(5)));
    EXPECT_FAILS(-1, 8, list.GetIndex(nullptr)); // deliberately "not constructed"
    EXPECT_FAILS(false, 7, list.IsContained((void*)nullptr));

    void* some[] = {item(1), item(0)};
    ASSERT_TRUE(b.Construct(some, 2));
    EXPECT_TRUE(list.IsContained(&b));
    EXPECT_TRUE(b.Add(item(5)));
    EXPECT_FALSE(list.IsContained(&b));
    ASSERT_TRUE(empty.Construct());
    EXPECT_TRUE(b.IsContained(&empty));
    EXPECT_TRUE(b.Add(&empty));
    EXPECT_FAILS(false, 4, list.Construct());
    EXPECT_TRUE(list.Add(&list)); // adding a list to itself doubles it once
    EXPECT_EQ((std::vector<void*>{item(0), item(1), item(2), item(0), item(0), item(1), item(2), item(0)}),
              contents(list));
}

// Edits, jumps and steps on three open traversals, against a model: every traversal keeps
// its item (removal moves each one standing on the node on, clearing leaves it on nothing),
// and positional look-ups and searches stay right whichever traversal moved last.
TEST(List, TraversalsAndLookUpsStayTrueUnderRandomEdits)
{
    std::mt19937 rng(1234);
    List list;
    ASSERT_TRUE(list.Construct());
    std::vector<void*> model;
    long h[3] = {-1, -1, -1};
    int at[3] = {-1, -1, -1}; // model index each traversal stands on, -1 for nothing
    auto shift = [&](int i, int delta) {
        for (int& a : at)
            if (a >= i) a += delta;
    };
    auto erase = [&](int i) {
        model.erase(model.begin() + i);
        for (int& a : at) {
            if (a > i)
                --a;
            else if (a == i && i == (int)model.size())
                a = -1;
        }
    };
    for (int step = 0; step < 6000; ++step) {
        int n = (int)model.size();
        int op = (int)(rng() % 11);
        int i = n ? (int)(rng() % (unsigned)n) : 0;
        int t = (int)(rng() % 3);
        void* p = item((int)(rng() % 64));
        if (op <= 2) { // Add, or Insert anywhere including past the end
            int to = op == 2 ? n : std::min(i + op, n);
            ASSERT_TRUE(op == 2 ? list.Add(p) : list.Insert(p, i + op));
            if (to < n) shift(to, 1);
            model.insert(model.begin() + to, p);
        } else if (op == 3 && n) {
            ASSERT_TRUE(list.Remove(i));
            erase(i);
        } else if (op == 4 && n) {
            ASSERT_TRUE(list.Remove(p));
            auto it = std::find(model.begin(), model.end(), p);
            if (it != model.end()) erase((int)(it - model.begin()));
        } else if (op == 5) {
            if (h[t] == -1) {
                h[t] = list.BeginTraversal();
                at[t] = n ? 0 : -1;
            }
            if (n) {
                ASSERT_TRUE(list.Move(&h[t], i));
                at[t] = i;
            }
        } else if (op == 6 && h[t] != -1) {
            bool first = rng() % 2;
            ASSERT_TRUE(first ? list.MoveFirst(&h[t]) : list.MoveLast(&h[t]));
            at[t] = n ? (first ? 0 : n - 1) : -1;
        } else if (op == 7 && h[t] != -1) {
            bool forward = rng() % 2;
            bool stood = at[t] != -1;
            ASSERT_EQ(stood, forward ? list.NextData(h[t]) : list.PrevData(h[t]));
            int next = at[t] + (forward ? 1 : -1);
            at[t] = !stood ? (n ? 0 : -1) : (next < 0 || next >= n ? -1 : next);
        } else if (op == 8 && h[t] != -1 && rng() % 4 == 0) {
            list.EndTraversal(h[t]);
            h[t] = -1;
        } else if (op == 10 && rng() % 8 == 0) {
            ASSERT_TRUE(list.RemoveAll());
            model.clear();
            for (int& a : at) a = -1;
        } else if (op == 9 && n) {
            ASSERT_EQ(model[(size_t)i], list.Get(i)) << "step " << step;
            int index = list.GetIndex(model[(size_t)i]);
            ASSERT_GE(index, 0);
            ASSERT_EQ(model[(size_t)i], model[(size_t)index]);
        }
        ASSERT_EQ((int)model.size(), list.GetCount());
        for (int k = 0; k < 3; ++k) {
            if (h[k] != -1) {
                ASSERT_EQ(at[k] < 0 ? nullptr : model[(size_t)at[k]], list.GetData(h[k])) << "step " << step;
            }
        }
    }
    EXPECT_EQ(model, contents(list));
}
