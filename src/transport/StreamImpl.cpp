#include "transport/StreamImpl.h"

namespace zorvex_api
{

int StreamImpl::Read(void*, int)
{
    return -1;
}

int StreamImpl::Write(const void*, int)
{
    return 0;
}

int StreamImpl::Peek(char*)
{
    return 0;
}

int StreamImpl::Open()
{
    return 1;
}

int StreamImpl::Close()
{
    return 1;
}

int StreamImpl::Seek(std::uint64_t)
{
    return 0;
}

int StreamImpl::Tell(std::uint64_t&)
{
    return 0;
}

int StreamImpl::GetLength(std::uint64_t&)
{
    return 0;
}

int StreamImpl::SetLength(std::uint64_t)
{
    return 0;
}

std::uint64_t StreamImpl::Read64(void*, std::uint64_t)
{
    return 0;
}

int StreamImpl::Write64(const void*, std::uint64_t)
{
    return 0;
}

}  // namespace zorvex_api
