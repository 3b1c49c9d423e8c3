#include "runtime/StoredText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "runtime/StringData.h"
#include "support/CountingAllocator.h"
#include "support/Printers.h"

namespace zorvex_api
{
namespace
{

using testing::ElementsAre;
using zorvex_test::CountingAllocator;
using zorvex_test::HooksScope;
using zorvex_test::Messages;

/// One kind of storage: pooled or not, compressed or not.
class StoredTextTest : public testing::TestWithParam<std::pair<bool, bool>>
{
protected:
    void SetUp() override
    {
        StringData::Fini();
        ASSERT_EQ(1, StringDataInit(GetParam().first, GetParam().second));
    }
    void TearDown() override
    {
        EXPECT_FALSE(stored::AnyAlive());
        StringDataFini();
        EXPECT_EQ(1, StringDataInit(1, 1));
    }
};

TEST_P(StoredTextTest, GivesBackWhatWasStored)
{
    const std::u16string texts[] = {u"",
                                    u"a",
                                    u"Winkelträger \U0001F529",
                                    u"lone \xD800 \xDC00",
                                    std::u16string(5000, u'\u00e4'),
                                    std::u16string(300, u'x')};
    for (const std::u16string& text : texts)
    {
        const stored::Word word = stored::Make(text);
        const stored::Word shared = stored::Share(word);
        EXPECT_EQ(text.empty(), stored::IsEmpty(word));
        stored::Release(word);
        EXPECT_EQ(stored::ToString(shared), text.c_str());
        EXPECT_EQ(text, stored::Reader(shared).Text());
        std::u16string appended = u"+";
        stored::AppendTo(shared, appended);
        EXPECT_EQ(u"+" + text, appended);
        EXPECT_TRUE(stored::Equals(shared, text));
        EXPECT_FALSE(stored::Equals(shared, text + u"!"));
        stored::Release(shared);
    }
}

TEST_P(StoredTextTest, SettingsStayWhileTextIsStored)
{
    const stored::Word word = stored::Make(u"M8x40");
    EXPECT_THAT(Messages(StringData::Init(0, 0)),
                ElementsAre("WARNING 2: Failed to change StringData storage settings as pooling "
                            "already in use"));
    EXPECT_EQ(0, StringDataInit(0, 0));
    StringDataFini();  // does nothing now
    EXPECT_EQ(stored::ToString(word), "M8x40");
    stored::Release(word);
}

TEST_P(StoredTextTest, MemoryComesFromHooksAndGoesBackThere)
{
    CountingAllocator hooks;
    {
        const HooksScope scope(hooks);
        std::vector<stored::Word> words;
        for (int i = 0; i < 3000; ++i)
        {
            words.push_back(stored::Make(View(String::Format("value %d", i))));
        }
        EXPECT_GT(hooks.Live(), 0);
        for (const stored::Word word : words)
        {
            stored::Release(word);
        }
    }
    EXPECT_EQ(0, hooks.Live());
}

INSTANTIATE_TEST_SUITE_P(Kinds, StoredTextTest,
                         testing::Values(std::pair(false, false), std::pair(false, true),
                                         std::pair(true, false), std::pair(true, true)));

TEST(StringPoolTest, EqualTextsShareOneBufferUntilTheLastUseGoes)
{
    const size_t before = StringData::GetOccupied();
    const void* const first = StringData::Acquire(u"bracket");
    EXPECT_EQ(first, StringData::Acquire(AsUnits(u"bracket"), 1));
    char* const taken = static_cast<char*>(Allocator::allocate(8));
    std::copy_n("bracket", 8, taken);
    EXPECT_EQ(first, StringData::AcquireStored(taken));
    EXPECT_EQ(nullptr, StringData::Acquire(nullptr, 1));
    EXPECT_EQ(before + 1, StringData::GetOccupied());
    StringData::Release(first);
    StringData::Release(first);
    EXPECT_EQ(before + 1, StringData::GetOccupied());
    StringData::Release(first);
    EXPECT_EQ(before, StringData::GetOccupied());
}

TEST(StringPoolTest, EntriesStayFindableThroughGrowthAndRemoval)
{
    std::vector<const void*> words;
    for (int i = 0; i < 20000; ++i)
    {
        words.push_back(StringData::Acquire(View(String::Format("entry %d", i))));
        if (i % 3 == 0)  // remove in between, so that later entries move back
        {
            StringData::Release(words[static_cast<size_t>(i / 2)]);
            words[static_cast<size_t>(i / 2)] =
                StringData::Acquire(View(String::Format("entry %d", i / 2)));
        }
    }
    for (int i = 0; i < 20000; ++i)
    {
        EXPECT_EQ(words[static_cast<size_t>(i)],
                  StringData::Acquire(View(String::Format("entry %d", i))));
        StringData::Release(words[static_cast<size_t>(i)]);
        StringData::Release(words[static_cast<size_t>(i)]);
    }
    EXPECT_EQ(0u, StringData::GetOccupied());
}

TEST(StringPoolTest, ThreadsShareThePool)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back(
            []
            {
                for (int i = 0; i < 5000; ++i)
                {
                    const String text = String::Format("shared %d", i % 50);
                    const stored::Word word = stored::Make(View(text));
                    EXPECT_TRUE(stored::Equals(word, View(text)));
                    stored::Release(word);
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(0u, StringData::GetOccupied());
}

}  // namespace
}  // namespace zorvex_api
