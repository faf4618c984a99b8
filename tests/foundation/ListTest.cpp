#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/NativeError.h"

#include <gtest/gtest.h>

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

TEST(List, InsertPastTheEndAppends)
{
    List list;
    fill(list, 3);
    EXPECT_TRUE(list.Insert(item(9), 100));
    EXPECT_EQ(4, list.GetCount());
    EXPECT_EQ(item(9), list.Get(3));
    EXPECT_TRUE(list.Insert(item(8), 0));
    EXPECT_EQ(item(8), list.Get(0));
    EXPECT_EQ(item(0), list.Get(1));
    Error::SetError(0);
    EXPECT_FALSE(list.Insert(item(7), -1));
    EXPECT_EQ(7u, Error::GetError());
}

TEST(List, RemovingWhatIsNotThereSucceeds)
{
    List list;
    fill(list, 3);
    int stranger = 0;
    EXPECT_TRUE(list.Remove((void*)&stranger));
    EXPECT_EQ(3, list.GetCount());
    Error::SetError(0);
    EXPECT_FALSE(list.Remove((void*)nullptr));
    EXPECT_EQ(7u, Error::GetError());
}

TEST(List, RangeRemovalStopsAtTheEndButSucceeds)
{
    List list;
    fill(list, 5);
    Error::SetError(0);
    EXPECT_TRUE(list.Remove(3, 4)); // only two items follow index 3
    EXPECT_EQ(3, list.GetCount());
    EXPECT_EQ(3u, Error::GetError());
    EXPECT_FALSE(list.Remove(0, 4));
    EXPECT_FALSE(list.Remove(3, 0));
    EXPECT_TRUE(list.Remove(0, 2));
    EXPECT_EQ(std::vector<void*>{item(2)}, contents(list));
}

TEST(List, AtMostTenTraversals)
{
    List list;
    fill(list, 2);
    LmTest::LogCapture log;
    long h[10];
    for (long& t : h) {
        t = list.BeginTraversal();
        ASSERT_NE(-1, t);
    }
    Error::SetError(0);
    EXPECT_EQ(-1, list.BeginTraversal());
    EXPECT_EQ(2u, Error::GetError());
    EXPECT_TRUE(LmTest::loggedNativeError(log, "Lm_List", 2));
    EXPECT_TRUE(list.EndTraversal(h[4]));
    long again = list.BeginTraversal();
    EXPECT_NE(-1, again);
    EXPECT_EQ(item(0), list.GetData(again));
    // Ending a failed traversal frees nothing and leaves the others registered.
    EXPECT_TRUE(list.EndTraversal(-1));
    EXPECT_EQ(-1, list.BeginTraversal());
    EXPECT_EQ(item(0), list.GetData(h[0]));
}

TEST(List, RunningPastTheEndResetsToTheHead)
{
    List list;
    fill(list, 2);
    long h = list.BeginTraversal();
    EXPECT_TRUE(list.NextData(h));
    EXPECT_EQ(item(1), list.GetData(h));
    EXPECT_TRUE(list.NextData(h));
    EXPECT_EQ(nullptr, list.GetData(h));
    Error::SetError(0);
    EXPECT_FALSE(list.NextData(h));
    EXPECT_EQ(9u, Error::GetError());
    EXPECT_EQ(item(0), list.GetData(h));
    // Running off the front resets to the head as well.
    EXPECT_TRUE(list.PrevData(h));
    EXPECT_FALSE(list.PrevData(h));
    EXPECT_EQ(item(0), list.GetData(h));
    EXPECT_TRUE(list.MoveLast(&h));
    EXPECT_EQ(item(1), list.GetData(h));
    EXPECT_TRUE(list.EndTraversal(h));
}

TEST(List, RemovingTheCurrentNodeMovesTheTraversalOn)
{
    List list;
    fill(list, 4);
    long h = list.BeginTraversal();
    ASSERT_TRUE(list.Move(&h, 1));
    EXPECT_TRUE(list.Remove(item(1)));
    EXPECT_EQ(item(2), list.GetData(h));
    ASSERT_TRUE(list.MoveLast(&h));
    EXPECT_TRUE(list.Remove(2));
    EXPECT_EQ(nullptr, list.GetData(h));
    EXPECT_EQ((std::vector<void*>{item(0), item(2)}), contents(list));
    list.EndTraversal(h);
}

TEST(List, RemoveAllLeavesTraversalsOnNothing)
{
    List list;
    fill(list, 3);
    long h = list.BeginTraversal();
    EXPECT_TRUE(list.RemoveAll());
    EXPECT_EQ(0, list.GetCount());
    EXPECT_EQ(nullptr, list.GetData(h));
    EXPECT_FALSE(list.NextData(h));
    list.EndTraversal(h);
}

TEST(List, IndexSearchStartsAtTheRememberedPosition)
{
    List list;
    ASSERT_TRUE(list.Construct());
    list.Add(item(0));
    list.Add(item(1));
    list.Add(item(0));
    long h = list.BeginTraversal();
    EXPECT_EQ(0, list.GetIndex(item(0)));
    ASSERT_TRUE(list.Move(&h, 2));
    EXPECT_EQ(2, list.GetIndex(item(0))); // the later copy is met first
    EXPECT_EQ(1, list.GetIndex(item(1)));
    EXPECT_TRUE(list.IsContained(item(1)));
    list.EndTraversal(h);
    EXPECT_EQ(0, list.GetIndex(item(0)));
    EXPECT_EQ(-1, list.GetIndex(item(3)));
    Error::SetError(0);
    EXPECT_EQ(-1, list.GetIndex(nullptr));
    EXPECT_EQ(8u, Error::GetError()); // deliberately "not constructed"
    EXPECT_FALSE(list.IsContained((void*)nullptr));
    EXPECT_EQ(7u, Error::GetError());
}

TEST(List, WholeListOperations)
{
    List a, b;
    fill(a, 3);
    void* some[] = {item(2), item(0)};
    ASSERT_TRUE(b.Construct(some, 2));
    EXPECT_TRUE(a.IsContained(&b));
    EXPECT_FALSE(b.IsContained(&a));
    List empty;
    ASSERT_TRUE(empty.Construct());
    EXPECT_TRUE(b.IsContained(&empty));
    EXPECT_TRUE(b.Add(&empty));
    EXPECT_FALSE(a.Construct());
    EXPECT_EQ(4u, Error::GetError());
    EXPECT_TRUE(a.Add(&a)); // adding a list to itself doubles it once
    EXPECT_EQ(6, a.GetCount());
    EXPECT_EQ(item(2), a.Get(5));

    // With every traversal of the source taken, items are copied by position.
    long h[10];
    for (long& t : h) t = b.BeginTraversal();
    List c;
    ASSERT_TRUE(c.Construct(&b));
    EXPECT_EQ(contents(b), contents(c));
    EXPECT_TRUE(c.IsContained(&b));
    for (long t : h) b.EndTraversal(t);

}

TEST(List, UnconstructedAndForeignHandles)
{
    List list;
    LmTest::LogCapture log;
    Error::SetError(0);
    EXPECT_EQ(-1, list.GetCount());
    EXPECT_EQ(8u, Error::GetError());
    EXPECT_TRUE(LmTest::loggedNativeError(log, "Lm_List", 8));

    fill(list, 2);
    long bogus = 12345;
    Error::SetError(0);
    EXPECT_EQ(nullptr, list.GetData(bogus));
    EXPECT_EQ(9u, Error::GetError());
    EXPECT_FALSE(list.GetData(0));
    EXPECT_EQ(7u, Error::GetError());
    EXPECT_FALSE(list.Move(nullptr, 0));
    long h = list.BeginTraversal();
    EXPECT_FALSE(list.Move(&h, 2));
    EXPECT_EQ(3u, Error::GetError());
    list.EndTraversal(h);
}

// Positional edits and jumps keep the remembered position true to its node, so look-ups
// that start from it never give a wrong item. (Stepping a traversal moves it along the
// traversal's node, which may differ from the one remembered.)
TEST(List, RememberedPositionStaysTrueUnderRandomEdits)
{
    std::mt19937 rng(1234);
    List list;
    ASSERT_TRUE(list.Construct());
    std::vector<void*> model;
    long h = -1;
    for (int step = 0; step < 4000; ++step) {
        int n = (int)model.size();
        int op = (int)(rng() % 9);
        int i = n ? (int)(rng() % (unsigned)n) : 0;
        void* p = item((int)(rng() % 64));
        switch (op) {
        case 0:
        case 1:
        case 2: // Add, or Insert anywhere including past the end
            ASSERT_TRUE(op == 2 ? list.Add(p) : list.Insert(p, i + op));
            model.insert(model.begin() + (op == 2 ? n : std::min(i + op, n)), p);
            break;
        case 3:
            if (!n) break;
            ASSERT_TRUE(list.Remove(i));
            model.erase(model.begin() + i);
            break;
        case 4:
            if (!n) break;
            ASSERT_TRUE(list.Remove(p));
            for (size_t k = 0; k < model.size(); ++k)
                if (model[k] == p) {
                    model.erase(model.begin() + (long)k);
                    break;
                }
            break;
        case 5:
            if (h == -1) h = list.BeginTraversal();
            if (n) {
                ASSERT_TRUE(list.Move(&h, i));
                ASSERT_EQ(model[(size_t)i], list.GetData(h));
            }
            break;
        case 6:
            if (h != -1) {
                bool first = rng() % 2;
                ASSERT_TRUE(first ? list.MoveFirst(&h) : list.MoveLast(&h));
                ASSERT_EQ(n ? (first ? model.front() : model.back()) : nullptr, list.GetData(h));
            }
            break;
        case 7:
            if (h != -1 && rng() % 4 == 0) {
                list.EndTraversal(h);
                h = -1;
            }
            break;
        default:
            if (n) {
                ASSERT_EQ(model[(size_t)i], list.Get(i)) << "step " << step;
                int index = list.GetIndex(model[(size_t)i]);
                ASSERT_GE(index, 0);
                ASSERT_EQ(model[(size_t)i], model[(size_t)index]);
            }
        }
        ASSERT_EQ((int)model.size(), list.GetCount());
    }
    EXPECT_EQ(model, contents(list));
}
