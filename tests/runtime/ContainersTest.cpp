#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Printers.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/AutoPtr.h"
#include "zorvex_api/Map.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

namespace
{

using testing::ElementsAre;
using zorvex_test::Texts;

/// Counts what is alive, to see that an array constructs and destroys in pairs.
struct Counted
{
    static inline int alive = 0;
    int value = 7;

    Counted() { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
};

TEST(ArrayTest, CapacityFollowsTheDoublingRule)
{
    Array<int> numbers;
    std::string capacities;
    for (int i = 0; i < 22; ++i)
    {
        numbers.Add(i);
        const std::string capacity = std::to_string(numbers.GetMaxSize()) + " ";
        if (capacities.find(" " + capacity) == std::string::npos && capacities != capacity)
        {
            capacities += capacity;
        }
    }
    EXPECT_EQ("1 4 10 22 ", capacities);

    Array<int> five;
    five.SetSize(5);
    EXPECT_EQ(10, five.GetMaxSize());
    EXPECT_THAT(std::vector<int>(five.begin(), five.end()), ElementsAre(0, 0, 0, 0, 0));
    Array<int> exact;
    exact.SetSizeEx(5, 0);
    EXPECT_EQ(5, exact.GetMaxSize());
    exact.SetSize(-1);
    EXPECT_EQ(5, exact.GetSize());
}

TEST(ArrayTest, GrowingOverOldElementsShowsThemAgain)
{
    Array<String> texts;
    texts.Add("a");
    texts.Add("b");
    texts.SetSize(1);
    texts.SetSize(2);
    EXPECT_THAT(Texts(texts), ElementsAre("a", "b"));
    texts.RemoveAll();
    texts.SetSize(2);
    EXPECT_THAT(Texts(texts), ElementsAre("", ""));
}

TEST(ArrayTest, ArgumentsMayStandInTheArray)
{
    Array<String> texts;
    texts.Add("a");
    texts.Add(texts[0]);
    texts.Add(texts.GetSize(), texts.GetData());
    texts.Add(texts.GetSize(), texts.GetData());
    EXPECT_EQ(8, texts.GetSize());
    EXPECT_EQ(8, texts.Add(0, texts.GetData()));
    texts.InsertAt(0, texts[7] + "!");
    texts.InsertAt(9, texts[0]);
    texts.InsertAt(11, "ignored");
    texts.InsertAt(-1, "ignored");
    EXPECT_EQ(10, texts.GetSize());
    EXPECT_EQ(texts[0], texts[9]);
    texts = static_cast<const Array<String>&>(texts);
    EXPECT_EQ(10, texts.GetSize());
    EXPECT_EQ(texts[1], "a");
}

TEST(ArrayTest, AddsAndTakesOutInOrder)
{
    const String more[] = {"c", "d", "e", "f", "g"};
    Array<String> texts;
    texts.Add("a");
    texts.Add("b");
    EXPECT_EQ(7, texts.Add(5, more));
    texts.RemoveAt(0);
    texts.RemoveAt(5);
    texts.RemoveAt(5);
    texts.RemoveAt(-1);
    EXPECT_THAT(Texts(texts), ElementsAre("b", "c", "d", "e", "f"));
    EXPECT_EQ(2, texts.Lookup("d"));
    EXPECT_EQ(-1, texts.Lookup("g"));
    texts.Reverse();
    EXPECT_THAT(Texts(texts), ElementsAre("f", "e", "d", "c", "b"));
    Array<String> moved(std::move(texts));
    EXPECT_EQ(5, moved.GetSize());
    EXPECT_EQ(-1, Array<int>().Lookup(0));
}

TEST(ArrayTest, EverySlotUpToTheCapacityIsAlive)
{
    {
        Array<Counted> counted(10);
        EXPECT_EQ(10, Counted::alive);
        counted.SetSize(3);
        EXPECT_EQ(7, counted[2].value);
        counted[2].value = 1;
        counted.RemoveAt(2);
        counted.SetSize(3);
        EXPECT_EQ(7, counted[2].value);
        counted.SetSize(11);
        EXPECT_EQ(22, Counted::alive);
        const Array<Counted> copy(counted);
        EXPECT_EQ(11, copy.GetSize());
    }
    EXPECT_EQ(0, Counted::alive);
}

TEST(MapTest, KeepsTheOrderOfInsertionAndFindsEveryKey)
{
    Map<String, int> map;
    for (int i = 9; i >= 0; --i)
    {
        map.Add(String::Format("key%d", i), i);
    }
    for (int i = 0; i < 10; ++i)
    {
        EXPECT_EQ(9 - i, map.GetValue(i));
        int value = -1;
        EXPECT_EQ(1, map.Lookup(map.GetKey(i), value));
        EXPECT_EQ(9 - i, value);
    }
    int untouched = 42;
    EXPECT_EQ(0, map.Lookup("key", untouched));
    EXPECT_EQ(42, untouched);
}

TEST(MapTest, RemovingShiftsLaterIndices)
{
    Map<String, int> map;
    map.Add("c", 3);
    map.Add("a", 1);
    map.Add("b", 2);
    map.Remove(map.GetKey(0));
    map.Remove("nothing");
    EXPECT_EQ(2, map.GetSize());
    EXPECT_EQ(0, map.LookupIndex("a"));
    EXPECT_EQ(1, map.LookupIndex("b"));
    EXPECT_EQ(-1, map.LookupIndex("c"));
    map.Remove("b");
    EXPECT_EQ(map.GetLastKey(), "b");
    const Map<String, int> copy(map);
    map.RemoveAll();
    EXPECT_EQ(-1, map.LookupIndex("a"));
    EXPECT_EQ(0, copy.LookupIndex("a"));
}

TEST(MapTest, EqualKeysStandBesideEachOther)
{
    Map<String, int> map;
    map.Add("a", 1);
    map.Add("a", 2);
    EXPECT_EQ(2, map.GetSize());
    map.Remove("a");
    EXPECT_EQ(1, map.GetSize());
    EXPECT_EQ(0, map.LookupIndex("a"));
}

TEST(AutoPtrTest, DeletesWhatItHoldsUnlessReleased)
{
    Counted* released = nullptr;
    {
        AutoPtr<Counted> first(new Counted);
        AutoPtr<Counted> second(new Counted);
        second.Reset(new Counted);
        EXPECT_EQ(2, Counted::alive);
        released = first.Release();
    }
    EXPECT_EQ(1, Counted::alive);
    delete released;
}

}  // namespace
}  // namespace zorvex_api
