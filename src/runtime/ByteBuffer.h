#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace zorvex_api
{

/// Bytes that grow at the end, for output made of very many short pieces: a piece of up to 16 bytes
/// is copied without a call.
class ByteBuffer
{
public:
    std::size_t size() const { return m_size; }
    char& operator[](std::size_t index) { return m_bytes[index]; }
    std::string_view View() const { return {m_bytes.get(), m_size}; }

    void push_back(char byte)
    {
        Need(1);
        m_bytes[m_size++] = byte;
    }
    void append(std::string_view text)
    {
        Need(text.size());
        Copy(m_bytes.get() + m_size, text.data(), text.size());
        m_size += text.size();
    }
    /// Forgets what stands behind `size`.
    void Cut(std::size_t size) { m_size = size; }
    /// Takes out the first `count` bytes.
    void RemoveFront(std::size_t count)
    {
        m_size -= count;
        if (m_size != 0)
        {
            std::memmove(m_bytes.get(), m_bytes.get() + count, m_size);
        }
    }

private:
    void Need(std::size_t count)
    {
        if (m_capacity - m_size < count)
        {
            Grow(count);
        }
    }
    void Grow(std::size_t count);

    static void Copy(char* to, const char* from, std::size_t count)
    {
        if (count > 16)
        {
            std::memcpy(to, from, count);
        }
        else if (count >= 8)
        {
            CopyEnds<8>(to, from, count);
        }
        else if (count >= 4)
        {
            CopyEnds<4>(to, from, count);
        }
        else
        {
            for (std::size_t i = 0; i < count; ++i)
            {
                to[i] = from[i];
            }
        }
    }
    /// The first and the last `Half` bytes, which overlap.
    template <std::size_t Half>
    static void CopyEnds(char* to, const char* from, std::size_t count)
    {
        char first[Half];
        char last[Half];
        std::memcpy(first, from, Half);
        std::memcpy(last, from + count - Half, Half);
        std::memcpy(to, first, Half);
        std::memcpy(to + count - Half, last, Half);
    }

    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

}  // namespace zorvex_api
