#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

namespace internal
{
class FileTarget;
}

/// Open modes count in these bits only.
constexpr unsigned int kStreamModeMask = 0xFFFF;
constexpr unsigned int kStreamRead = 1;
constexpr unsigned int kStreamWrite = 2;
constexpr unsigned int kStreamAppend = 4;
constexpr unsigned int kStreamCreate = 16;

/// What a Stream holds, and the byte operations below the public ones.
class StreamImpl : public Allocator
{
public:
    StreamImpl() = default;
    StreamImpl(const StreamImpl&) = delete;
    StreamImpl& operator=(const StreamImpl&) = delete;
    virtual ~StreamImpl() = default;

    /// The number of bytes read.
    virtual int Read(void* buffer, int size);
    virtual int Write(const void* buffer, int size);
    virtual int Peek(char* byte);
    virtual int Open();
    virtual int Close();
    virtual int Seek(std::uint64_t position);
    virtual int Tell(std::uint64_t& position);
    virtual int GetLength(std::uint64_t& length);
    virtual int SetLength(std::uint64_t length);
    /// The number of bytes read, as a 64-bit value in `size` and non-zero on success.
    virtual std::uint64_t Read64(void* buffer, std::uint64_t size);
    virtual int Write64(const void* buffer, std::uint64_t size);

    String m_name;
    unsigned int m_mode = kStreamRead;
    bool m_swapBytes = false;  // Stream::Read reverses elements of two bytes and more
};

class FileStreamImpl : public StreamImpl
{
public:
    FileStreamImpl();
    /// Closes; a target that is to be committed on closing is dropped.
    ~FileStreamImpl() override;

    int Read(void* buffer, int size) override;
    int Write(const void* buffer, int size) override;
    int Peek(char* byte) override;
    int Open() override;
    int Close() override;
    int Seek(std::uint64_t position) override;
    int Tell(std::uint64_t& position) override;
    int GetLength(std::uint64_t& length) override;
    int SetLength(std::uint64_t length) override;
    std::uint64_t Read64(void* buffer, std::uint64_t size) override;
    int Write64(const void* buffer, std::uint64_t size) override;

    int Flush();
    bool IsOpen() const { return m_file != nullptr; }

    /// From the next opening on, a regular file opened with mode 2 alone is written beside its
    /// place and put there by Close.
    void SetCommitOnClose(bool commit) { m_commitOnClose = commit; }

private:
    enum class LastStep
    {
        kNone,
        kRead,
        kWrite
    };

    /// Puts the seek between reading and writing that a C file needs.
    bool Prepare(LastStep step);
    /// Opens beside the place where that can be done; false when nothing may be opened.
    bool OpenTarget(const std::string& path);

    std::FILE* m_file = nullptr;  // owned while open
    LastStep m_lastStep = LastStep::kNone;
    bool m_commitOnClose = false;
    bool m_writeFailed = false;                      // then nothing is committed
    std::unique_ptr<internal::FileTarget> m_target;  // while open for a commit
};

/// Invariant: position <= length <= allocLength.
class MemoryStreamImpl : public StreamImpl
{
public:
    MemoryStreamImpl();
    MemoryStreamImpl(void* buffer, std::uint64_t length, std::uint64_t allocLength);
    ~MemoryStreamImpl() override;

    int Read(void* buffer, int size) override;
    int Write(const void* buffer, int size) override;
    int Peek(char* byte) override;
    int Seek(std::uint64_t position) override;
    int Tell(std::uint64_t& position) override;
    int GetLength(std::uint64_t& length) override;
    int SetLength(std::uint64_t length) override;
    std::uint64_t Read64(void* buffer, std::uint64_t size) override;
    int Write64(const void* buffer, std::uint64_t size) override;

    /// Makes allocLength at least `size` by the growth rule.
    int Grow(std::uint64_t size);

    char* m_buffer = nullptr;
    std::uint64_t m_allocLength = 0;
    std::uint64_t m_length = 0;
    std::uint64_t m_position = 0;
    int m_ownsBuffer = 1;  // allocated by Allocator, may grow, freed at the end

private:
    bool Reserve(std::uint64_t capacity);

    std::uint64_t m_capacity = 0;  // bytes behind m_buffer; ahead of allocLength to save copies
};

}  // namespace zorvex_api
