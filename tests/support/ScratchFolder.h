#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "zorvex_api/String.h"

namespace zorvex_test
{

/// A new folder for one test, gone with everything in it at the end.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    /// The full path of a file in the folder, as the library takes it.
    zorvex_api::String File(std::string_view name) const;
    /// Writes a file, making its folder if there is none, and gives its full path.
    zorvex_api::String Write(std::string_view name, std::string_view bytes) const;
    /// The bytes of a file; fails the test when it can't be read.
    std::string Read(std::string_view name) const;
    bool Has(std::string_view name) const;

private:
    std::filesystem::path m_path;
};

}  // namespace zorvex_test
