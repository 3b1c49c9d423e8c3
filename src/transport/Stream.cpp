#include "zorvex_api/Stream.h"

#include <algorithm>
#include <limits>

#include "transport/LiveStreams.h"
#include "transport/StreamBlock.h"
#include "transport/StreamImpl.h"

namespace zorvex_api
{

namespace
{

/// `count` * `size`, 0 for anything below 1. False when that is more than a call can move or there
/// is no buffer to move it.
bool TotalOf(const void* buffer, int count, int size, int& total)
{
    const std::int64_t product = static_cast<std::int64_t>(count) * size;
    total = static_cast<int>(std::clamp<std::int64_t>(product, 0, std::numeric_limits<int>::max()));
    return product <= total && (buffer != nullptr || total == 0);
}

/// Reverses the bytes of each whole element.
void SwapElements(void* buffer, int bytes, int size)
{
    char* element = static_cast<char*>(buffer);
    for (int left = bytes; size >= 2 && left >= size; left -= size, element += size)
    {
        std::reverse(element, element + size);
    }
}

}  // namespace

Stream::Stream() : m_impl(nullptr)
{
    internal::EnterLiveStream(this);
}

Stream::~Stream()
{
    internal::LeaveLiveStream(this);
    delete m_impl;
}

int Stream::Open()
{
    return 1;
}

unsigned int Stream::GetMode()
{
    return GetImplementation()->m_mode;
}

void Stream::SetMode(unsigned int mode)
{
    GetImplementation()->m_mode = mode;
}

int Stream::Read(void* buffer, int count, int size, int compressed)
{
    struct Source : internal::BlockBytes
    {
        explicit Source(Stream& stream) : m_stream(stream) {}
        int Read(void* to, int bytes) override { return m_stream.ReadBytes(to, bytes); }
        bool Write(const void*, int) override { return false; }
        Stream& m_stream;
    };

    int total = 0;
    if (!TotalOf(buffer, count, size, total))
    {
        return 0;
    }
    Source source(*this);
    const int got =
        compressed ? internal::ReadBlock(source, buffer, total) : ReadBytes(buffer, total);
    const StreamImpl* impl = GetImplementation();
    if (impl != nullptr && impl->m_swapBytes)
    {
        SwapElements(buffer, std::min(got, total), size);
    }
    return got;
}

int Stream::Peek(char* byte)
{
    return byte == nullptr ? 0 : PeekByte(byte);
}

int Stream::Write(const void* buffer, int count, int size, int compressed)
{
    struct Target : internal::BlockBytes
    {
        explicit Target(Stream& stream) : m_stream(stream) {}
        int Read(void*, int) override { return 0; }
        bool Write(const void* from, int bytes) override
        {
            return m_stream.WriteBytes(from, bytes) != 0;
        }
        Stream& m_stream;
    };

    int total = 0;
    if (!TotalOf(buffer, count, size, total))
    {
        return 0;
    }
    if (!compressed)
    {
        return WriteBytes(buffer, total);
    }
    Target target(*this);
    return internal::WriteBlock(target, buffer, total) ? 1 : 0;
}

int Stream::Seek(const std::uint32_t&)
{
    return 0;
}

int Stream::Tell(std::uint32_t&)
{
    return 0;
}

int Stream::Rewind()
{
    return Seek(0);
}

int Stream::GetLength(std::uint32_t&)
{
    return 0;
}

int Stream::SetLength(std::uint32_t)
{
    return 0;
}

int Stream::Flush()
{
    return 0;
}

int Stream::Close()
{
    return 1;
}

StreamImpl* Stream::GetImplementation()
{
    if (m_impl == nullptr)
    {
        m_impl = new StreamImpl;
    }
    return m_impl;
}

const String& Stream::GetName()
{
    return GetImplementation()->m_name;
}

void Stream::SetName(const String& name)
{
    GetImplementation()->m_name = name;
}

int Stream::GetLength64(std::uint64_t& length)
{
    return m_impl == nullptr ? 0 : m_impl->GetLength(length);
}

int Stream::Seek64(std::uint64_t position)
{
    return m_impl == nullptr ? 0 : m_impl->Seek(position);
}

int Stream::SetLength64(std::uint64_t length)
{
    return m_impl == nullptr ? 0 : m_impl->SetLength(length);
}

int Stream::Tell64(std::uint64_t& position)
{
    return m_impl == nullptr ? 0 : m_impl->Tell(position);
}

StreamImpl* Stream::ExistingImplementation() const
{
    return m_impl;
}

void Stream::SetImplementation(StreamImpl* impl)
{
    delete m_impl;
    m_impl = impl;
}

}  // namespace zorvex_api
