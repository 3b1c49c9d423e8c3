#include "runtime/ByteBuffer.h"

#include <algorithm>

namespace zorvex_api
{

void ByteBuffer::Grow(std::size_t count)
{
    constexpr std::size_t kSmallest = 256;
    const std::size_t capacity = std::max({kSmallest, 2 * m_capacity, m_size + count});
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (m_size != 0)
    {
        std::memcpy(bytes.get(), m_bytes.get(), m_size);
    }
    m_bytes = std::move(bytes);
    m_capacity = capacity;
}

}  // namespace zorvex_api
