#include "transport/LiveStreams.h"

#include <cstdint>
#include <mutex>
#include <unordered_set>

#include "zorvex_api/Stream.h"

namespace zorvex_api
{

namespace
{

/// The addresses of all live Streams. Never destroyed: a Stream of a static object may end after
/// everything else.
struct LiveTable
{
    std::mutex mutex;
    std::unordered_set<Stream*> streams;
};

LiveTable& Table()
{
    static LiveTable& table = *new LiveTable;
    return table;
}

int HexDigit(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9')
    {
        return unit - u'0';
    }
    const char16_t lower = unit | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

/// Hexadecimal digits with or without "0x" and nothing else; 0 when it isn't that.
std::uintptr_t ReadAddress(TextView text)
{
    if (text.substr(0, 2) == u"0x" || text.substr(0, 2) == u"0X")
    {
        text.remove_prefix(2);
    }
    constexpr std::uintptr_t kFull = UINTPTR_MAX >> 4;
    std::uintptr_t address = 0;
    for (const char16_t unit : text)
    {
        const int digit = HexDigit(unit);
        if (digit < 0 || address > kFull)
        {
            return 0;
        }
        address = address << 4 | static_cast<std::uintptr_t>(digit);
    }
    return address;
}

}  // namespace

Stream* FindLiveStream(TextView address)
{
    return FindLiveStream(reinterpret_cast<void*>(ReadAddress(address)));
}

Stream* FindLiveStream(void* address)
{
    auto* stream = static_cast<Stream*>(address);
    LiveTable& table = Table();
    const std::lock_guard<std::mutex> lock(table.mutex);
    return table.streams.count(stream) != 0 ? stream : nullptr;
}

String StreamAddress(const Stream* stream)
{
    return String::Format("%p", static_cast<const void*>(stream));
}

namespace internal
{

void EnterLiveStream(Stream* stream)
{
    LiveTable& table = Table();
    const std::lock_guard<std::mutex> lock(table.mutex);
    table.streams.insert(stream);
}

void LeaveLiveStream(Stream* stream)
{
    LiveTable& table = Table();
    const std::lock_guard<std::mutex> lock(table.mutex);
    table.streams.erase(stream);
}

}  // namespace internal
}  // namespace zorvex_api
