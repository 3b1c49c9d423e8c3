#include "zorvex_api/FileStream.h"

#include "transport/Narrow32.h"
#include "transport/StreamImpl.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

constexpr int kCannotOpen = 17;

FileStreamImpl& Impl(Stream& stream)
{
    return static_cast<FileStreamImpl&>(*stream.GetImplementation());
}

}  // namespace

FileStream::FileStream() = default;

FileStream::FileStream(const String& name, int mode)
{
    if (!FileStream::Open(name, mode))
    {
        throw Exception(kCannotOpen);
    }
}

FileStream::~FileStream() = default;

int FileStream::Open()
{
    return Impl(*this).Open();
}

int FileStream::ReadBytes(void* buffer, int size)
{
    return Impl(*this).Read(buffer, size);
}

int FileStream::WriteBytes(const void* buffer, int size)
{
    return Impl(*this).Write(buffer, size);
}

int FileStream::PeekByte(char* byte)
{
    return Impl(*this).Peek(byte);
}

int FileStream::Seek(const std::uint32_t& position)
{
    return Impl(*this).Seek(position);
}

int FileStream::Tell(std::uint32_t& position)
{
    std::uint64_t value = 0;
    const int status = Impl(*this).Tell(value);
    return internal::Narrow32(status, value, position);
}

int FileStream::GetLength(std::uint32_t& length)
{
    std::uint64_t value = 0;
    const int status = Impl(*this).GetLength(value);
    return internal::Narrow32(status, value, length);
}

int FileStream::SetLength(std::uint32_t length)
{
    return Impl(*this).SetLength(length);
}

int FileStream::Flush()
{
    return Impl(*this).Flush();
}

int FileStream::Close()
{
    return ExistingImplementation() == nullptr ? 1 : ExistingImplementation()->Close();
}

StreamImpl* FileStream::GetImplementation()
{
    if (ExistingImplementation() == nullptr)
    {
        SetImplementation(new FileStreamImpl);
    }
    return ExistingImplementation();
}

int FileStream::Open(const String& name, int mode)
{
    FileStreamImpl& impl = Impl(*this);
    if (impl.IsOpen())
    {
        return 0;
    }
    impl.m_name = name;
    impl.m_mode = static_cast<unsigned int>(mode) & kStreamModeMask;
    return impl.Open();
}

}  // namespace zorvex_api
