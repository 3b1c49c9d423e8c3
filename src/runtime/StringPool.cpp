#include "runtime/StringPool.h"

#include <cstdlib>
#include <new>
#include <random>

#include "runtime/FreeList.h"

namespace zorvex_api::internal
{

namespace
{

constexpr size_t kTerminator = 2;

__extension__ using Wide = unsigned __int128;

uint64_t Mix(uint64_t left, uint64_t right)
{
    const Wide product = static_cast<Wide>(left) * right;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

uint64_t Load(const char* bytes, size_t count)
{
    uint64_t word = 0;
    std::memcpy(&word, bytes, count);
    return word;
}

uint32_t Hash(std::string_view bytes, uint64_t seed)
{
    constexpr uint64_t kFirst = 0xa0761d6478bd642fULL;
    constexpr uint64_t kSecond = 0xe7037ed1a0b428dbULL;
    uint64_t hash = seed ^ kFirst;
    const char* p = bytes.data();
    size_t left = bytes.size();
    for (; left >= 16; left -= 16, p += 16)
    {
        hash = Mix(Load(p, 8) ^ kSecond, Load(p + 8, 8) ^ hash);
    }
    const size_t low = left < 8 ? left : 8;
    hash = Mix(Load(p, low) ^ kSecond, Load(p + low, left - low) ^ hash);
    return static_cast<uint32_t>(Mix(hash ^ kFirst, bytes.size() ^ kSecond));
}

PooledHeader* HeaderOf(const void* word)
{
    char* const text = const_cast<char*>(static_cast<const char*>(word));
    return reinterpret_cast<PooledHeader*>(text - sizeof(PooledHeader));
}

uint64_t RandomSeed()
{
    std::random_device device;
    return static_cast<uint64_t>(device()) << 32 | device();
}

}  // namespace

void* NewStored(size_t headerSize, size_t bytes)
{
    if (bytes > UINT32_MAX - 64)
    {
        throw std::bad_alloc();
    }
    auto* const block = static_cast<char*>(SmallBlocks::Take(headerSize + bytes + kTerminator));
    char* const text = block + headerSize;
    const auto size = static_cast<uint32_t>(bytes);
    std::memcpy(text - sizeof size, &size, sizeof size);
    text[bytes] = '\0';
    text[bytes + 1] = '\0';
    return text;
}

void FreeStored(size_t headerSize, const void* word)
{
    SmallBlocks::Give(const_cast<char*>(static_cast<const char*>(word)) - headerSize,
                      headerSize + StoredBytes(word) + kTerminator);
}

const void* StringPool::Acquire(std::string_view bytes)
{
    if (m_slots == nullptr || (m_occupied + 1) * 5 > m_capacity * 3)
    {
        Grow();
    }
    const uint32_t hash = Hash(bytes, m_seed);
    const size_t mask = m_capacity - 1;
    size_t place = hash & mask;
    for (; m_slots[place].text != nullptr; place = (place + 1) & mask)
    {
        char* const text = m_slots[place].text;
        if (m_slots[place].hash == hash && StoredView(text) == bytes)
        {
            ++HeaderOf(text)->uses;
            return text;
        }
    }
    auto* const text = static_cast<char*>(NewStored(sizeof(PooledHeader), bytes.size()));
    std::memcpy(text, bytes.data(), bytes.size());
    HeaderOf(text)->hash = hash;
    HeaderOf(text)->uses = 1;
    m_slots[place] = Slot{text, hash};
    ++m_occupied;
    return text;
}

void StringPool::AddUse(const void* word)
{
    ++HeaderOf(word)->uses;
}

void StringPool::Release(const void* word)
{
    if (--HeaderOf(word)->uses != 0)
    {
        return;
    }
    RemoveAt(Find(word));
    --m_occupied;
    FreeStored(sizeof(PooledHeader), word);
}

size_t StringPool::Find(const void* word) const
{
    const size_t mask = m_capacity - 1;
    size_t place = HeaderOf(word)->hash & mask;
    while (m_slots[place].text != word)
    {
        place = (place + 1) & mask;
    }
    return place;
}

void StringPool::RemoveAt(size_t place)
{
    const size_t mask = m_capacity - 1;
    size_t hole = place;
    for (size_t next = (hole + 1) & mask; m_slots[next].text != nullptr; next = (next + 1) & mask)
    {
        // An entry may fill the hole unless its home lies behind the hole.
        const size_t home = m_slots[next].hash & mask;
        if (((next - home) & mask) >= ((next - hole) & mask))
        {
            m_slots[hole] = m_slots[next];
            hole = next;
        }
    }
    m_slots[hole] = Slot{nullptr, 0};
}

void StringPool::Put(Slot slot)
{
    size_t place = slot.hash & (m_capacity - 1);
    while (m_slots[place].text != nullptr)
    {
        place = (place + 1) & (m_capacity - 1);
    }
    m_slots[place] = slot;
}

void StringPool::Grow()
{
    const size_t capacity = m_slots == nullptr ? 512 : m_capacity * 2;
    auto* const slots = static_cast<Slot*>(std::calloc(capacity, sizeof(Slot)));
    if (slots == nullptr)
    {
        throw std::bad_alloc();
    }
    if (m_slots == nullptr)
    {
        m_seed = RandomSeed();
    }
    Slot* const old = m_slots;
    const size_t oldCapacity = m_capacity;
    m_slots = slots;
    m_capacity = capacity;
    for (size_t i = 0; i < oldCapacity; ++i)
    {
        if (old[i].text != nullptr)
        {
            Put(old[i]);
        }
    }
    std::free(old);
}

void StringPool::Free()
{
    std::free(m_slots);
    m_slots = nullptr;
    m_capacity = 0;
}

}  // namespace zorvex_api::internal
