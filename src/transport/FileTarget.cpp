#include "transport/FileTarget.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "transport/StreamImpl.h"
#include "zorvex_api/FileStream.h"

namespace zorvex_api
{

void CommitOnClose(FileStream& stream)
{
    static_cast<FileStreamImpl*>(stream.GetImplementation())->SetCommitOnClose(true);
}

namespace internal
{

namespace
{

constexpr std::size_t kMaxBaseName = 200;  // leaves room for the ending within a file name
constexpr int kMaxAttempts = 100;
constexpr mode_t kPermissions = 07777;

/// The path with links resolved, empty when that fails.
std::string Resolve(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                               &std::free);
    return resolved == nullptr ? std::string() : std::string(resolved.get());
}

/// A hidden name beside `path` that no other writer of this process uses.
std::string NameBeside(const std::string& path)
{
    static std::atomic<unsigned int> counter{0};
    const std::size_t base = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
    return path.substr(0, base) + "." + path.substr(base, kMaxBaseName) + "." +
           std::to_string(getpid()) + "-" + std::to_string(counter++) + ".tmp";
}

/// Creates a new file beside `path` and gives its name in `name`; -1 with errno set.
int CreateBeside(const std::string& path, std::string& name)
{
    int descriptor = -1;
    for (int attempt = 0; descriptor < 0 && attempt < kMaxAttempts; ++attempt)
    {
        name = NameBeside(path);
        descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST)
        {
            break;
        }
    }
    return descriptor;
}

/// Gives the new file the owner and the rights of the file that it is to replace.
bool TakeOverRights(int descriptor, const struct stat& old)
{
    struct stat own;
    if (fstat(descriptor, &own) != 0)
    {
        return false;
    }
    const bool sameOwner = own.st_uid == old.st_uid && own.st_gid == old.st_gid;
    return (sameOwner || fchown(descriptor, old.st_uid, old.st_gid) == 0) &&
           fchmod(descriptor, old.st_mode & kPermissions) == 0;
}

}  // namespace

FileTarget::~FileTarget()
{
    Drop();
}

std::FILE* FileTarget::Open(const std::string& path, bool& refused)
{
    refused = false;
    struct stat old;
    const bool exists = stat(path.c_str(), &old) == 0;
    struct stat link;
    if (exists ? !S_ISREG(old.st_mode) : lstat(path.c_str(), &link) == 0)
    {
        return nullptr;  // a pipe, a device, a folder; a link that leads nowhere
    }
    if (exists && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
    {
        refused = true;
        return nullptr;
    }
    m_replaces = exists;
    m_path = exists ? Resolve(path) : path;
    const int descriptor = m_path.empty() ? -1 : CreateBeside(m_path, m_tempPath);
    if (descriptor < 0)
    {
        // only a folder that refuses sends the writer to the place itself: with a full disk that
        // would destroy what stands there
        refused = errno != EACCES && errno != EPERM && errno != EROFS;
        m_tempPath.clear();
        return nullptr;
    }
    std::FILE* file =
        !exists || TakeOverRights(descriptor, old) ? fdopen(descriptor, "wb") : nullptr;
    if (file == nullptr)
    {
        close(descriptor);
        Drop();
    }
    return file;
}

int FileTarget::Settle(std::FILE* file) const
{
    if (std::fflush(file) != 0)
    {
        return 0;
    }
    if (!m_replaces || fdatasync(fileno(file)) == 0)
    {
        return 1;
    }
    return errno == EINVAL || errno == ENOSYS || errno == EINTR ? 1 : 0;  // not offered here
}

int FileTarget::Commit()
{
    if (m_tempPath.empty() || std::rename(m_tempPath.c_str(), m_path.c_str()) != 0)
    {
        return 0;
    }
    m_tempPath.clear();
    return 1;
}

void FileTarget::Drop()
{
    if (!m_tempPath.empty())
    {
        unlink(std::exchange(m_tempPath, std::string()).c_str());
    }
}

}  // namespace internal
}  // namespace zorvex_api
