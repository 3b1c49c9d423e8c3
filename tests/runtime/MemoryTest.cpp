#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <future>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "runtime/FreeList.h"
#include "runtime/HookBlocks.h"
#include "runtime/SessionState.h"
#include "support/CountingAllocator.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{
namespace
{

using zorvex_test::CountingAllocator;
using zorvex_test::HooksScope;

TEST(AllocatorTest, BlocksGoBackToWhereTheyCameFrom)
{
    CountingAllocator first;
    CountingAllocator second;
    auto before = std::make_unique<String>("made before any hooks");
    std::unique_ptr<String> during;
    {
        const HooksScope scope(first);
        during = std::make_unique<String>("made with the first hooks");
        before.reset();
        EXPECT_EQ(1, first.Live() - 1);  // the String object and its record
    }
    {
        const HooksScope scope(second);
        during.reset();
        const internal::UnhookedScope unhooked;
        const String outliving("made without hooks");
        EXPECT_EQ(0, second.Live());
    }
    EXPECT_EQ(0, first.Live());
    EXPECT_EQ(0, second.Live());
}

TEST(AllocatorTest, HookedBlocksAreTrackedThroughManyAllocations)
{
    CountingAllocator hooks;
    const HooksScope scope(hooks);
    std::mt19937 random(1);
    std::vector<void*> blocks;
    for (int i = 0; i < 50000; ++i)
    {
        if (blocks.empty() || random() % 3 != 0)
        {
            blocks.push_back(Allocator::allocate(1 + random() % 40));
            continue;
        }
        std::swap(blocks[random() % blocks.size()], blocks.back());
        Allocator::deallocate(blocks.back());
        blocks.pop_back();
    }
    EXPECT_EQ(static_cast<long long>(blocks.size()), hooks.Live());
    for (void* block : blocks)
    {
        Allocator::deallocate(block);
    }
    EXPECT_EQ(0, hooks.Live());
}

TEST(AllocatorTest, RefusedMemoryRaisesAndLeavesNothingBehind)
{
    CountingAllocator hooks;
    const HooksScope scope(hooks);
    for (int nth = 1; nth < 12; ++nth)
    {
        hooks.RefuseNth(nth);
        try
        {
            Result result(2, "a message that takes memory");
            result.AddError(4, "and another");
            static_cast<void>(result.GetMessage());
            const Result copy(result);
        }
        catch (const std::bad_alloc&)
        {
            hooks.RefuseNth(0);
        }
        EXPECT_EQ(0, hooks.Live()) << "after refusing allocation " << nth;
    }
}

/// Hooks that give nothing, as an allocator without exceptions would.
struct EmptyHooks : AllocatorBase, DeAllocatorBase
{
    void* allocate(size_t) override { return nullptr; }
    void deallocate(void* block) override { nulls += block == nullptr ? 1 : 0; }
    int nulls = 0;
};

TEST(AllocatorTest, NullFromHooksRaisesAndNullsAreSeenByThem)
{
    EmptyHooks hooks;
    Allocator::RegisterHandlers(&hooks, &hooks);
    EXPECT_THROW(Allocator::allocate(1), std::bad_alloc);
    Allocator::deallocate(nullptr);
    Allocator::RegisterHandlers(nullptr, nullptr);
    EXPECT_EQ(1, hooks.nulls);
}

TEST(AllocatorTest, CompareGivesTheSignOfTheFirstDifference)
{
    EXPECT_EQ(-1, Allocator::compare("abz", "aca", 3));
    EXPECT_EQ(1, Allocator::compare("\xFF", "a", 1));
    EXPECT_EQ(0, Allocator::compare("abx", "aby", 2));
    EXPECT_EQ(0, Allocator::compare(nullptr, nullptr, 0));
}

/// A running session keeps blocks at hand; a size of its own for each test.
class FreeListTest : public testing::Test
{
protected:
    void SetUp() override { SessionState::SetActive(true); }
    void TearDown() override
    {
        SessionState::SetActive(false);
        internal::BlockPool::ReleaseUnused();
    }
};

TEST_F(FreeListTest, BlocksOverlapNobodyAndAreAligned)
{
    using List = FreeList<40>;
    std::map<char*, unsigned char> held;
    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i)
    {
        if (held.empty() || random() % 5 < 3)
        {
            char* const block = static_cast<char*>(List::Take());
            EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(block) % 8);
            const auto mark = static_cast<unsigned char>(random());
            std::memset(block, mark, 40);
            EXPECT_TRUE(held.emplace(block, mark).second);
            continue;
        }
        const auto victim = random() % 2 == 0 ? held.begin() : std::prev(held.end());
        for (int offset = 0; offset < 40; ++offset)
        {
            ASSERT_EQ(victim->second, static_cast<unsigned char>(victim->first[offset]));
        }
        List::Give(victim->first);
        held.erase(victim);
    }
    for (const auto& [block, mark] : held)
    {
        List::Give(block);
    }
}

TEST_F(FreeListTest, MemoryReturnsWhenTheLastBlockIsBack)
{
    CountingAllocator hooks;
    const HooksScope scope(hooks);
    using List = FreeList<72>;
    void* const kept = List::Take();
    for (int i = 0; i < 500; ++i)
    {
        List::Give(List::Take());
    }
    internal::BlockPool::ReleaseUnused();
    EXPECT_GT(hooks.Live(), 0);
    SessionState::SetActive(false);
    List::Give(kept);  // an object deleted after the session's end
    EXPECT_EQ(0, hooks.Live());
    List::Give(List::Take());  // and one that lives between sessions
    EXPECT_EQ(0, hooks.Live());
}

TEST_F(FreeListTest, ThreadsMayGiveBackWhatOthersTook)
{
    using List = FreeList<56>;
    std::vector<void*> taken(20000);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < 4; ++t)
    {
        threads.emplace_back(
            [&taken, t]
            {
                for (size_t i = t; i < taken.size(); i += 4)
                {
                    taken[i] = List::Take();
                    std::memset(taken[i], static_cast<int>(t), 56);
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(taken.size(), std::set<void*>(taken.begin(), taken.end()).size());
    std::thread giver(
        [&]
        {
            for (void* block : taken)
            {
                List::Give(block);
            }
        });
    giver.join();
}

TEST_F(FreeListTest, MemoryOfASessionReturnsWhileThreadsThatUsedItGoOn)
{
    CountingAllocator hooks;
    const HooksScope scope(hooks);
    using List = FreeList<88>;
    std::promise<void> used;
    std::promise<void> nextSession;
    std::thread worker(
        [&]
        {
            List::Give(List::Take());
            used.set_value();
            nextSession.get_future().wait();
            void* const block = List::Take();
            std::memset(block, 1, 88);
            List::Give(block);
        });
    used.get_future().wait();
    SessionState::SetActive(false);
    internal::BlockPool::ReleaseUnused();
    EXPECT_EQ(0, hooks.Live());
    SessionState::SetActive(true);
    nextSession.set_value();
    worker.join();
    SessionState::SetActive(false);
    internal::BlockPool::ReleaseUnused();
    EXPECT_EQ(0, hooks.Live());
}

}  // namespace
}  // namespace zorvex_api
