#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <system_error>

namespace zorvex_test
{

ScratchFolder::ScratchFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "zorvex-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
    {
        ADD_FAILURE() << "no folder for the test: " << name;
    }
    m_path = name;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;  // nothing depends on it any more
    std::filesystem::remove_all(m_path, ignored);
}

zorvex_api::String ScratchFolder::File(std::string_view name) const
{
    return zorvex_api::String((m_path / name).c_str());
}

zorvex_api::String ScratchFolder::Write(std::string_view name, std::string_view bytes) const
{
    const std::filesystem::path file = m_path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(stream.good()) << "can't write " << file;
    return File(name);
}

std::string ScratchFolder::Read(std::string_view name) const
{
    std::ifstream stream(m_path / name, std::ios::binary);
    EXPECT_TRUE(stream.good()) << "can't read " << name;
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

bool ScratchFolder::Has(std::string_view name) const
{
    return std::filesystem::exists(m_path / name);
}

}  // namespace zorvex_test
