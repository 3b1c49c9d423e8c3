#pragma once

#include "zorvex_api/Stream.h"

namespace zorvex_api
{

/// A Stream on a file of the file system.
class ZORVEX_API FileStream : public Stream
{
public:
    /// Closed.
    FileStream();

    /// Opens `name` by the mode bits of Stream: 1 an existing file to read, 2 a new or emptied file
    /// to write, 3 an existing file to read and write, 3 and 16 a new or emptied one, 4 to append,
    /// 4 and 1 to read as well. @throws Exception code 17 when that fails.
    FileStream(const String& name, int mode);

    /// Closes.
    ~FileStream() override;

protected:
    int Open() override;
    int ReadBytes(void* buffer, int size) override;
    int WriteBytes(const void* buffer, int size) override;
    int PeekByte(char* byte) override;

public:
    int Seek(const std::uint32_t& position) override;
    int Tell(std::uint32_t& position) override;
    int GetLength(std::uint32_t& length) override;
    int SetLength(std::uint32_t length) override;
    int Flush() override;
    int Close() override;
    StreamImpl* GetImplementation() override;

    /// Opens `name` as the constructor does; 0 when a file is open already or can't be opened.
    virtual int Open(const String& name, int mode);
};

}  // namespace zorvex_api
