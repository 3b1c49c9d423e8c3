#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace schemagen
{

/// Where the generator writes to. A file whose text stays the same isn't touched, so that what was
/// compiled from it stands.
class OutputFolder
{
public:
    explicit OutputFolder(std::filesystem::path root) : m_root(std::move(root)) {}

    /// `name` is relative, with "/". Raises std::runtime_error when the file can't be written.
    void Write(const std::string& name, const std::string& text);
    /// Deletes files below `folder` that were there before and haven't been written this time:
    /// those of classes that the vocabulary lost.
    void RemoveStale(const std::string& folder) const;

private:
    std::filesystem::path m_root;
    std::set<std::filesystem::path> m_written;
};

}  // namespace schemagen
