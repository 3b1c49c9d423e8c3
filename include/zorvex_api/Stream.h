#pragma once

#include <cstdint>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class StreamImpl;

/// Bytes that enter or leave the library. An application can derive its own.
///
/// Operations return non-zero on success and 0 on failure, save those that give byte counts; none
/// words a message. One thread at a time. Whoever asked for a Stream deletes it.
///
/// Mode bits: 1 read, 2 write, 4 append, 16 (with 3) create or truncate.
class ZORVEX_API Stream : public Allocator
{
public:
    Stream();
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

protected:
    /// Called to open a Stream that knows its name and mode already.
    virtual int Open();

    /// Reads up to `size` bytes and gives the number read, 0 at the end.
    virtual int ReadBytes(void* buffer, int size) = 0;

    /// Writes all `size` bytes.
    virtual int WriteBytes(const void* buffer, int size) = 0;

    /// Gives the next byte and leaves it unread.
    virtual int PeekByte(char* byte) = 0;

public:
    virtual ~Stream();

    /// The mode bits, for whoever opens the Stream; what is open already doesn't follow a change.
    virtual unsigned int GetMode();
    virtual void SetMode(unsigned int mode);

    /// Reads `count` elements of `size` bytes, with `compressed` a block that `Write` made with
    /// `compressed`. Gives the number of bytes; a read past the end gives fewer. A compressed block
    /// gives `count` * `size` or, when it is damaged, 0.
    virtual int Read(void* buffer, int count, int size, int compressed);

    /// Gives the next byte and leaves it unread; 0 at the end.
    virtual int Peek(char* byte);

    /// Writes `count` elements of `size` bytes, with `compressed` as a block that is deflated where
    /// that saves space. Non-zero when all was written.
    virtual int Write(const void* buffer, int count, int size, int compressed);

    /// Positions are in bytes from the start. What doesn't fit into 32 bits has the 64-bit forms
    /// below; a Stream that doesn't override an operation doesn't offer it and gives 0, but 1 for
    /// Close.
    virtual int Seek(const std::uint32_t& position);
    virtual int Tell(std::uint32_t& position);
    virtual int Rewind();
    virtual int GetLength(std::uint32_t& length);
    virtual int SetLength(std::uint32_t length);
    virtual int Flush();
    virtual int Close();

    /// The record, owned by this Stream and made on first use.
    virtual StreamImpl* GetImplementation();

    /// A name for messages and for finding out where bytes come from; of a FileStream the path.
    const String& GetName();
    void SetName(const String& name);

    /// The 64-bit forms; 0 for a Stream that doesn't offer them.
    int GetLength64(std::uint64_t& length);
    int Seek64(std::uint64_t position);
    int SetLength64(std::uint64_t length);
    int Tell64(std::uint64_t& position);

protected:
    /// The record as it stands, null before its first use.
    StreamImpl* ExistingImplementation() const;

    /// Takes over `impl` in place of the present record, which is deleted.
    void SetImplementation(StreamImpl* impl);

private:
    StreamImpl* m_impl;  // owned; null until needed
};

}  // namespace zorvex_api
