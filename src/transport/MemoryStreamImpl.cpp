#include <algorithm>
#include <limits>
#include <new>

#include "transport/StreamImpl.h"

namespace zorvex_api
{

namespace
{

constexpr std::uint64_t kDoublingLimit = 1000000;  // and the step of growth above it
// room for growth and terminator without overflow, and within what one block can hold
constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max() / 4;

}  // namespace

MemoryStreamImpl::MemoryStreamImpl()
{
    m_mode = kStreamRead | kStreamWrite;
}

MemoryStreamImpl::MemoryStreamImpl(void* buffer, std::uint64_t length, std::uint64_t allocLength)
    : m_buffer(static_cast<char*>(buffer)),
      m_allocLength(buffer == nullptr ? 0 : std::max(length, allocLength)),
      m_length(buffer == nullptr ? 0 : length),
      m_ownsBuffer(0)
{
    m_mode = kStreamRead | kStreamWrite;
}

MemoryStreamImpl::~MemoryStreamImpl()
{
    if (m_ownsBuffer && m_buffer != nullptr)
    {
        Allocator::deallocate(m_buffer);
    }
}

int MemoryStreamImpl::Read(void* buffer, int size)
{
    return size < 1 ? 0 : static_cast<int>(Read64(buffer, static_cast<std::uint64_t>(size)));
}

std::uint64_t MemoryStreamImpl::Read64(void* buffer, std::uint64_t size)
{
    const std::uint64_t got = std::min(size, m_length - m_position);
    if (got > 0)
    {
        Allocator::copy(buffer, m_buffer + m_position, got);
        m_position += got;
    }
    return got;
}

int MemoryStreamImpl::Write(const void* buffer, int size)
{
    return size < 1 ? 1 : Write64(buffer, static_cast<std::uint64_t>(size));
}

int MemoryStreamImpl::Write64(const void* buffer, std::uint64_t size)
{
    if (size == 0)
    {
        return 1;
    }
    if (size > m_allocLength - m_position && (size > kLargest || !Grow(m_position + size)))
    {
        return 0;
    }
    Allocator::move(m_buffer + m_position, buffer, size);
    m_position += size;
    m_length = std::max(m_length, m_position);
    return 1;
}

int MemoryStreamImpl::Peek(char* byte)
{
    if (m_position == m_length)
    {
        return 0;
    }
    *byte = m_buffer[m_position];
    return 1;
}

int MemoryStreamImpl::Seek(std::uint64_t position)
{
    if (position > m_length)
    {
        return 0;
    }
    m_position = position;
    return 1;
}

int MemoryStreamImpl::Tell(std::uint64_t& position)
{
    position = m_position;
    return 1;
}

int MemoryStreamImpl::GetLength(std::uint64_t& length)
{
    length = m_length;
    return 1;
}

int MemoryStreamImpl::SetLength(std::uint64_t length)
{
    if (length > m_allocLength && !Grow(length))
    {
        return 0;
    }
    m_length = length;
    m_position = std::min(m_position, length);
    return 1;
}

int MemoryStreamImpl::Grow(std::uint64_t size)
{
    if (size <= m_allocLength)
    {
        return 1;
    }
    if (!m_ownsBuffer || size > kLargest)
    {
        return 0;
    }
    const std::uint64_t allocLength = size <= kDoublingLimit ? 2 * size : size + kDoublingLimit;
    if (!Reserve(allocLength))
    {
        return 0;
    }
    // what becomes available reads as zero, and so does the byte behind it
    Allocator::set(m_buffer + m_allocLength, 0, allocLength + 1 - m_allocLength);
    m_allocLength = allocLength;
    return 1;
}

/// The block runs ahead of allocLength by half, so that steps of a constant size don't copy the
/// content each time.
bool MemoryStreamImpl::Reserve(std::uint64_t capacity)
{
    if (capacity < m_capacity)
    {
        return true;
    }
    const std::uint64_t sizes[] = {
        capacity <= 2 * kDoublingLimit ? capacity + 1 : capacity + capacity / 2, capacity + 1};
    for (const std::uint64_t bytes : sizes)
    {
        try
        {
            char* block = static_cast<char*>(Allocator::allocate(bytes));
            if (m_buffer != nullptr)
            {
                Allocator::copy(block, m_buffer, m_allocLength);
                Allocator::deallocate(m_buffer);
            }
            m_buffer = block;
            m_capacity = bytes;
            return true;
        }
        catch (const std::bad_alloc&)
        {
            // the exact size is tried next; failing that too, the caller reports it
        }
    }
    return false;
}

}  // namespace zorvex_api
