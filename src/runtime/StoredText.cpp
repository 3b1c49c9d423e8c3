#include "runtime/StoredText.h"

#include <atomic>
#include <cstring>

#include "runtime/StringData.h"
#include "runtime/StringPool.h"
#include "runtime/Utf8.h"

namespace zorvex_api::stored
{

namespace
{

using internal::FreeStored;
using internal::NewStored;
using internal::OwnedHeader;
using internal::StoredBytes;
using internal::StoredView;

/// Counts the owned texts; threads use different counters, so that they don't contend.
struct alignas(64) Counter
{
    std::atomic<long long> count{0};
};

constexpr int kCounters = 16;
Counter g_owned[kCounters];

Counter& CounterOfThread()
{
    static std::atomic<unsigned> next{0};
    static thread_local const unsigned own = next.fetch_add(1, std::memory_order_relaxed);
    return g_owned[own % kCounters];
}

void* NewOwned(size_t bytes)
{
    void* const text = NewStored(sizeof(OwnedHeader), bytes);
    CounterOfThread().count.fetch_add(1, std::memory_order_relaxed);
    return text;
}

Word CopyOwned(std::string_view bytes)
{
    void* const text = NewOwned(bytes.size());
    std::memcpy(text, bytes.data(), bytes.size());
    return text;
}

}  // namespace

Word Make(TextView text)
{
    if (text.empty())
    {
        return nullptr;
    }
    if (SessionState::Pooling())
    {
        return StringData::Acquire(text);
    }
    if (!SessionState::Compression())
    {
        return CopyOwned(
            {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)});
    }
    void* const bytes = NewOwned(utf8::StoredSize(text));
    utf8::EncodeStored(text, static_cast<char*>(bytes));
    return bytes;
}

Word Share(Word word)
{
    if (word == nullptr)
    {
        return nullptr;
    }
    return SessionState::Pooling() ? StringData::AddUse(word) : CopyOwned(StoredView(word));
}

void Release(Word word)
{
    if (word == nullptr)
    {
        return;
    }
    if (SessionState::Pooling())
    {
        StringData::Release(word);
        return;
    }
    FreeStored(sizeof(OwnedHeader), word);
    CounterOfThread().count.fetch_sub(1, std::memory_order_relaxed);
}

bool IsEmpty(Word word)
{
    return word == nullptr || StoredBytes(word) == 0;
}

size_t Bytes(Word word)
{
    return word == nullptr ? 0 : StoredBytes(word) + (IsUtf8() ? 1 : sizeof(char16_t));
}

std::string_view Utf8(Word word)
{
    return word == nullptr ? std::string_view() : StoredView(word);
}

TextView Wide(Word word)
{
    return word == nullptr
               ? TextView(u"", 0)
               : TextView(static_cast<const char16_t*>(word), StoredBytes(word) / sizeof(char16_t));
}

String ToString(Word word)
{
    if (!IsUtf8())
    {
        return zorvex_api::ToString(Wide(word));
    }
    String text;
    if (!IsEmpty(word))
    {
        const std::string_view bytes = Utf8(word);
        utf8::DecodeStored(bytes, StringAccess::NewText(text, utf8::StoredUnits(bytes)));
    }
    return text;
}

void AppendTo(Word word, std::u16string& out)
{
    if (!IsUtf8())
    {
        out += Wide(word);
        return;
    }
    const std::string_view bytes = Utf8(word);
    const size_t start = out.size();
    out.resize(start + utf8::StoredUnits(bytes));
    utf8::DecodeStored(bytes, out.data() + start);
}

bool Equals(Word word, TextView text)
{
    return IsUtf8() ? utf8::StoredEquals(Utf8(word), text) : Wide(word) == text;
}

Reader::Reader(Word word) : m_text(u"", 0)
{
    if (!IsUtf8())
    {
        m_text = Wide(word);
        return;
    }
    const std::string_view bytes = Utf8(word);
    if (bytes.size() <= kInline)  // a unit takes at least one byte
    {
        m_text =
            TextView(m_inline, static_cast<size_t>(utf8::DecodeStored(bytes, m_inline) - m_inline));
        return;
    }
    AppendTo(word, m_long);
    m_text = m_long;
}

bool AnyAlive()
{
    long long owned = 0;
    for (const Counter& counter : g_owned)
    {
        owned += counter.count.load(std::memory_order_relaxed);
    }
    return owned != 0 || StringData::GetOccupied() != 0;
}

}  // namespace zorvex_api::stored
