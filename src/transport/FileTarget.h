#pragma once

#include <cstdio>
#include <string>

namespace zorvex_api
{

class FileStream;

/// Has `stream` write a regular file opened with mode 2 beside its place, put it there in Close,
/// and leave what stood there untouched without Close. To be called before opening. Pipes, devices
/// and files in folders that can't be written to are written directly.
void CommitOnClose(FileStream& stream);

namespace internal
{

/// A file that is written beside its place and renamed there when it is complete.
class FileTarget
{
public:
    FileTarget() = default;
    FileTarget(const FileTarget&) = delete;
    FileTarget& operator=(const FileTarget&) = delete;
    /// Drops what isn't committed.
    ~FileTarget();

    /// Opens a file beside `path` to write. Symbolic links are followed; access rights and, where
    /// possible, the owner of a file that stands there are kept. Null when the target is no regular
    /// file or its folder refuses, and the caller then writes to `path` itself; `refused` says that
    /// the file itself can't be written.
    std::FILE* Open(const std::string& path, bool& refused);

    /// Brings what was written to the disk when it is to replace a file, which a power cut must not
    /// leave with neither content. A new file replaces nothing, and waiting for the disk is dear.
    /// To be called before the file is closed. Non-zero on success.
    int Settle(std::FILE* file) const;

    /// Renames into place. To be called when the file is closed. Non-zero on success.
    int Commit();

    /// Removes the file beside.
    void Drop();

private:
    std::string m_path;       // the place, links resolved
    std::string m_tempPath;   // empty when there is nothing to commit
    bool m_replaces = false;  // a file stands in the place
};

}  // namespace internal
}  // namespace zorvex_api
