#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <string>
#include <utility>

#include "runtime/Text.h"
#include "transport/FileTarget.h"
#include "transport/StreamImpl.h"

namespace zorvex_api
{

namespace
{

constexpr unsigned int kAccessBits = kStreamRead | kStreamWrite | kStreamAppend;

/// The C library's mode, null for a mode without access.
const char* ModeText(unsigned int mode)
{
    if (mode & kStreamAppend)
    {
        return mode & kStreamRead ? "ab+" : "ab";
    }
    switch (mode & kAccessBits)
    {
        case kStreamRead:
            return "rb";
        case kStreamWrite:
            return "wb";
        case kStreamRead | kStreamWrite:
            return mode & kStreamCreate ? "wb+" : "rb+";
        default:
            return nullptr;
    }
}

/// Opens anything but a folder, which the C library opens for reading.
std::FILE* OpenFile(const std::string& path, const char* mode)
{
    std::FILE* file = std::fopen(path.c_str(), mode);
    struct stat status;
    if (file != nullptr && fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode))
    {
        std::fclose(file);
        return nullptr;
    }
    return file;
}

}  // namespace

FileStreamImpl::FileStreamImpl() = default;

FileStreamImpl::~FileStreamImpl()
{
    if (m_file != nullptr)
    {
        std::fclose(m_file);
    }
}

int FileStreamImpl::Open()
{
    const char* mode = ModeText(m_mode & kStreamModeMask);
    const std::string path = ToUtf8(m_name);
    // the C library would open what stands in front of a zero byte
    const bool isName = !path.empty() && path.find('\0') == std::string::npos;
    if (IsOpen() || !isName || mode == nullptr)
    {
        return 0;
    }
    m_lastStep = LastStep::kNone;
    m_writeFailed = false;
    if (m_commitOnClose && (m_mode & kAccessBits) == kStreamWrite && !OpenTarget(path))
    {
        return 0;
    }
    if (m_file == nullptr)
    {
        m_file = OpenFile(path, mode);
    }
    return IsOpen() ? 1 : 0;
}

bool FileStreamImpl::OpenTarget(const std::string& path)
{
    auto target = std::make_unique<internal::FileTarget>();
    bool refused = false;
    m_file = target->Open(path, refused);
    if (m_file != nullptr)
    {
        m_target = std::move(target);
    }
    return !refused;
}

int FileStreamImpl::Close()
{
    if (!IsOpen())
    {
        return 0;
    }
    const std::unique_ptr<internal::FileTarget> target = std::move(m_target);
    const bool settled = target == nullptr || m_writeFailed || target->Settle(m_file) != 0;
    const bool closed = std::fclose(std::exchange(m_file, nullptr)) == 0 && settled;
    if (target == nullptr)
    {
        return closed ? 1 : 0;
    }
    return closed && !m_writeFailed ? target->Commit() : 0;
}

bool FileStreamImpl::Prepare(LastStep step)
{
    const LastStep last = std::exchange(m_lastStep, step);
    return last == LastStep::kNone || last == step || fseeko(m_file, 0, SEEK_CUR) == 0;
}

int FileStreamImpl::Read(void* buffer, int size)
{
    return size < 1 ? 0 : static_cast<int>(Read64(buffer, static_cast<std::uint64_t>(size)));
}

std::uint64_t FileStreamImpl::Read64(void* buffer, std::uint64_t size)
{
    if (!IsOpen() || size == 0 || !Prepare(LastStep::kRead))
    {
        return 0;
    }
    return std::fread(buffer, 1, size, m_file);
}

int FileStreamImpl::Write(const void* buffer, int size)
{
    return Write64(buffer, size < 1 ? 0 : static_cast<std::uint64_t>(size));
}

int FileStreamImpl::Write64(const void* buffer, std::uint64_t size)
{
    if (!IsOpen())
    {
        return 0;
    }
    if (size == 0)
    {
        return 1;
    }
    const bool written = Prepare(LastStep::kWrite) && std::fwrite(buffer, 1, size, m_file) == size;
    m_writeFailed |= !written;
    return written ? 1 : 0;
}

int FileStreamImpl::Peek(char* byte)
{
    if (!IsOpen() || !Prepare(LastStep::kRead))
    {
        return 0;
    }
    const int next = std::fgetc(m_file);
    if (next == EOF || std::ungetc(next, m_file) == EOF)
    {
        return 0;
    }
    *byte = static_cast<char>(next);
    return 1;
}

int FileStreamImpl::Seek(std::uint64_t position)
{
    if (!IsOpen() || position > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
    {
        return 0;
    }
    m_lastStep = LastStep::kNone;
    return fseeko(m_file, static_cast<off_t>(position), SEEK_SET) == 0 ? 1 : 0;
}

int FileStreamImpl::Tell(std::uint64_t& position)
{
    const off_t here = IsOpen() ? ftello(m_file) : -1;
    position = here < 0 ? 0 : static_cast<std::uint64_t>(here);
    return here < 0 ? 0 : 1;
}

int FileStreamImpl::GetLength(std::uint64_t& length)
{
    length = 0;
    std::uint64_t here = 0;
    if (!Tell(here) || fseeko(m_file, 0, SEEK_END) != 0)
    {
        return 0;
    }
    const int status = Tell(length);
    return Seek(here) && status ? 1 : 0;
}

int FileStreamImpl::SetLength(std::uint64_t length)
{
    std::uint64_t present = 0;
    if (!GetLength(present) ||
        length > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
    {
        return 0;
    }
    if (length > present && !(m_mode & kStreamAppend))
    {
        const char zero = 0;
        return Seek(length - 1) && Write(&zero, 1) ? 1 : 0;
    }
    const bool done =
        std::fflush(m_file) == 0 && ftruncate(fileno(m_file), static_cast<off_t>(length)) == 0;
    m_writeFailed |= !done;
    return done ? 1 : 0;
}

int FileStreamImpl::Flush()
{
    if (!IsOpen())
    {
        return 0;
    }
    const bool flushed = std::fflush(m_file) == 0;
    m_writeFailed |= !flushed;
    return flushed ? 1 : 0;
}

}  // namespace zorvex_api
