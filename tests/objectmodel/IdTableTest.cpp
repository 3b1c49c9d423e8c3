#include "objectmodel/IdTable.h"

#include <chrono>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "objectmodel/ClassData.h"
#include "support/SessionTest.h"

namespace zorvex_test
{

using zorvex_api::ClassData;
using zorvex_api::IdTable;
using zorvex_api::IdValue;

namespace
{

/// Objects of no class that serve as entries. They are roots without tables of their own.
class Entries
{
public:
    ClassData* Make(const IdValue& id)
    {
        m_objects.push_back(std::make_unique<Entry>());
        ClassData* data = ClassData::Of(m_objects.back().get());
        data->id = id;
        return data;
    }

private:
    class Entry : public zorvex_api::Object
    {
    };

    std::deque<std::unique_ptr<Entry>> m_objects;
};

}  // namespace

class IdTableTest : public SessionTest
{
};

TEST_F(IdTableTest, OfEqualIdsTheFirstEnteredIsFoundAndTheNextTakesOver)
{
    Entries entries;
    IdTable table;
    const IdValue id(u"bolt");
    ClassData* first = entries.Make(id);
    ClassData* second = entries.Make(id);
    ClassData* third = entries.Make(id);
    for (ClassData* data : {first, second, third})
    {
        table.Insert(data);
    }
    for (std::uint32_t n = 1; n < 500; ++n)  // rebuilds on the way
    {
        table.Insert(entries.Make(IdValue(n)));
    }
    EXPECT_EQ(first, table.Find(id));
    table.Remove(second);
    table.Remove(first);
    EXPECT_EQ(third, table.Find(id));
    table.Insert(first);
    EXPECT_EQ(third, table.Find(id));
    table.Insert(first);  // isn't entered twice
    table.Insert(third);
    table.Remove(third);
    table.Remove(third);  // not in any more: the other entry of this id stays
    EXPECT_EQ(first, table.Find(id));
    table.Remove(first);
    EXPECT_EQ(nullptr, table.Find(id));
}

TEST_F(IdTableTest, AgreesWithAListOfEntriesThroughRandomChanges)
{
    std::mt19937 random(20241);
    Entries entries;
    IdTable table;
    std::map<std::string, std::list<ClassData*>> model;
    std::vector<std::pair<std::string, ClassData*>> live;
    for (int step = 0; step < 20000; ++step)
    {
        // Grows and shrinks in waves, with few enough ids for many to be equal.
        const bool insert = live.empty() || random() % 100 < ((step / 4000) % 2 == 0 ? 70u : 30u);
        if (insert)
        {
            const unsigned n = random() % 1500;
            std::u16string text = n % 3 == 0 ? u"part" : u"id";
            for (const char digit : std::to_string(n + 1))
            {
                text += static_cast<char16_t>(digit);
            }
            ClassData* data = entries.Make(IdValue(text));
            const std::string key = zorvex_api::ToUtf8(text);
            if (n % 4 != 0)  // as a reader asks before it enters an object
            {
                EXPECT_EQ(!model[key].empty(), table.Contains(data->id)) << key;
            }
            if (n % 7 == 0 && !live.empty())
            {
                const auto [other, leaving] = live.back();
                live.pop_back();
                table.Remove(leaving);
                model[other].remove(leaving);
            }
            table.Insert(data);
            model[key].push_back(data);
            live.emplace_back(key, data);
            continue;
        }
        const std::size_t at = random() % live.size();
        const auto [key, data] = live[at];
        live[at] = live.back();
        live.pop_back();
        table.Remove(data);
        model[key].remove(data);
    }
    EXPECT_EQ(live.size(), table.Count());
    for (const auto& [key, objects] : model)
    {
        const IdValue id(zorvex_api::View(zorvex_api::FromUtf8(key)));
        ASSERT_EQ(objects.empty() ? nullptr : objects.front(), table.Find(id)) << key;
    }
}

TEST_F(IdTableTest, EnteringAndLeavingForEverNeitherGrowsTheTableNorFillsItWithTombstones)
{
    Entries entries;
    IdTable table;
    std::vector<ClassData*> few;
    for (std::uint32_t n = 1; n <= 20; ++n)
    {
        few.push_back(entries.Make(IdValue(n)));
        table.Insert(few.back());
    }
    const long long blocks = Hooks().Live();
    for (std::uint32_t round = 0; round < 50000; ++round)
    {
        ClassData* data = few[round % few.size()];
        table.Remove(data);
        data->id.SetNumber(1000 + round);
        table.Insert(data);
        ASSERT_EQ(nullptr, table.Find(IdValue(999u)));
    }
    EXPECT_EQ(blocks, Hooks().Live());
    EXPECT_EQ(20u, table.Count());
}

TEST_F(IdTableTest, NumbersChosenToCollideCostNoMoreThanOthers)
{
    // Multiples of a large power of two, and one id for thousands of objects, of which the later
    // half leaves.
    Entries entries;
    IdTable table;
    std::vector<ClassData*> same;
    const auto start = std::chrono::steady_clock::now();
    for (std::uint32_t n = 1; n <= 60000; ++n)
    {
        table.Insert(entries.Make(IdValue(n << 13)));
        same.push_back(entries.Make(IdValue(u"same")));
        table.Insert(same.back());
    }
    for (std::size_t n = 30000; n < 60000; ++n)
    {
        table.Remove(same[n]);
    }
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_LT(spent, std::chrono::seconds(5));
    EXPECT_NE(nullptr, table.Find(IdValue(60000u << 13)));
    EXPECT_EQ(same[0], table.Find(IdValue(u"same")));
    EXPECT_EQ(90000u, table.Count());
    EXPECT_EQ(60000u << 13, table.HighestNumber());
}

TEST_F(IdTableTest, AbsorbingKeepsTheFirstEntryOfEachIdAndTheHighestNumber)
{
    Entries entries;
    IdTable tree;
    IdTable joined;
    ClassData* own = entries.Make(IdValue(5u));
    ClassData* other = entries.Make(IdValue(5u));
    tree.Insert(own);
    joined.Insert(other);
    joined.Insert(entries.Make(IdValue(77u)));
    tree.Absorb(joined);
    EXPECT_EQ(own, tree.Find(IdValue(5u)));
    EXPECT_EQ(77u, tree.HighestNumber());
    EXPECT_EQ(3u, tree.Count());
    EXPECT_EQ(0u, joined.Count());
    EXPECT_EQ(nullptr, joined.Find(IdValue(5u)));
}

}  // namespace zorvex_test
