#include "zorvex_api/MemoryStream.h"

#include <algorithm>
#include <limits>

#include "transport/Narrow32.h"
#include "transport/StreamImpl.h"

namespace zorvex_api
{

namespace
{

MemoryStreamImpl& Impl(Stream& stream)
{
    return static_cast<MemoryStreamImpl&>(*stream.GetImplementation());
}

std::uint64_t NotNegative(int value)
{
    return static_cast<std::uint64_t>(std::max(value, 0));
}

/// False when the product doesn't fit or there is no buffer for it.
bool TotalOf(const void* buffer, std::uint64_t count, std::uint64_t size, std::uint64_t& total)
{
    total = count * size;
    return (size == 0 || total / size == count) && (buffer != nullptr || total == 0);
}

}  // namespace

MemoryStream::MemoryStream()
{
    SetImplementation(new MemoryStreamImpl);
}

MemoryStream::MemoryStream(void* buffer, int length, int allocLength)
    : MemoryStream(buffer, NotNegative(length), NotNegative(allocLength))
{
}

MemoryStream::MemoryStream(void* buffer, std::uint64_t length, std::uint64_t allocLength)
{
    SetImplementation(new MemoryStreamImpl(buffer, length, allocLength));
}

MemoryStream::~MemoryStream() = default;

int MemoryStream::ReadBytes(void* buffer, int size)
{
    return Impl(*this).Read(buffer, size);
}

int MemoryStream::WriteBytes(const void* buffer, int size)
{
    MemoryStreamImpl& impl = Impl(*this);
    const std::uint64_t end = impl.m_position + NotNegative(size);
    if (end > impl.m_allocLength && end <= std::numeric_limits<std::uint32_t>::max() &&
        !GrowFile(static_cast<std::uint32_t>(end)))
    {
        return 0;
    }
    return impl.Write(buffer, size);
}

int MemoryStream::PeekByte(char* byte)
{
    return Impl(*this).Peek(byte);
}

int MemoryStream::Seek(const std::uint32_t& position)
{
    return Impl(*this).Seek(position);
}

int MemoryStream::Tell(std::uint32_t& position)
{
    std::uint64_t value = 0;
    const int status = Impl(*this).Tell(value);
    return internal::Narrow32(status, value, position);
}

int MemoryStream::GetLength(std::uint32_t& length)
{
    std::uint64_t value = 0;
    const int status = Impl(*this).GetLength(value);
    return internal::Narrow32(status, value, length);
}

int MemoryStream::SetLength(std::uint32_t length)
{
    return Impl(*this).SetLength(length);
}

int MemoryStream::Flush()
{
    return 1;
}

StreamImpl* MemoryStream::GetImplementation()
{
    return ExistingImplementation();
}

int MemoryStream::GrowFile(std::uint32_t size)
{
    return Impl(*this).Grow(size);
}

void* MemoryStream::GetBuffer()
{
    return Impl(*this).m_buffer;
}

std::uint64_t MemoryStream::GetAllocLength()
{
    return Impl(*this).m_allocLength;
}

std::uint64_t MemoryStream::Read64(void* buffer, std::uint64_t count, std::uint64_t size)
{
    std::uint64_t total = 0;
    return TotalOf(buffer, count, size, total) ? Impl(*this).Read64(buffer, total) : 0;
}

int MemoryStream::Write64(const void* buffer, std::uint64_t count, std::uint64_t size)
{
    std::uint64_t total = 0;
    return TotalOf(buffer, count, size, total) ? Impl(*this).Write64(buffer, total) : 0;
}

}  // namespace zorvex_api
