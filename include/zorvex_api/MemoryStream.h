#pragma once

#include <type_traits>

#include "zorvex_api/Stream.h"

namespace zorvex_api
{

/// A Stream on memory, always readable and writable.
class ZORVEX_API MemoryStream : public Stream
{
public:
    /// Empty, with a buffer of its own that grows.
    MemoryStream();

    /// Stands on the caller's `buffer` of `allocLength` bytes with `length` bytes of content. The
    /// caller keeps the buffer alive; the stream neither frees nor grows it.
    MemoryStream(void* buffer, int length, int allocLength);
    MemoryStream(void* buffer, std::uint64_t length, std::uint64_t allocLength);

    /// The same for sizes of other and of mixed types, as `MemoryStream(data, 0, sizeof data)`.
    template <
        class Length, class AllocLength,
        class = std::enable_if_t<std::is_integral_v<Length> && std::is_integral_v<AllocLength>>>
    MemoryStream(void* buffer, Length length, AllocLength allocLength)
        : MemoryStream(buffer, AsSize(length), AsSize(allocLength))
    {
    }

    ~MemoryStream() override;

protected:
    int ReadBytes(void* buffer, int size) override;
    int WriteBytes(const void* buffer, int size) override;
    int PeekByte(char* byte) override;

public:
    int Seek(const std::uint32_t& position) override;
    int Tell(std::uint32_t& position) override;
    int GetLength(std::uint32_t& length) override;
    int SetLength(std::uint32_t length) override;
    int Flush() override;
    StreamImpl* GetImplementation() override;

protected:
    /// Makes room for `size` bytes; 0 when the buffer isn't the stream's own or memory is short.
    virtual int GrowFile(std::uint32_t size);

public:
    /// The storage, valid until the next write that grows it. Null before the first.
    virtual void* GetBuffer();

    /// The bytes available in the storage.
    virtual std::uint64_t GetAllocLength();

    /// Reads up to `count` * `size` bytes and gives the number read.
    std::uint64_t Read64(void* buffer, std::uint64_t count, std::uint64_t size);

    /// Writes `count` * `size` bytes; non-zero on success.
    int Write64(const void* buffer, std::uint64_t count, std::uint64_t size);

private:
    /// Nothing for a negative size.
    template <class Size>
    static constexpr std::uint64_t AsSize(Size size)
    {
        return size > 0 ? static_cast<std::uint64_t>(size) : 0;
    }
};

}  // namespace zorvex_api
