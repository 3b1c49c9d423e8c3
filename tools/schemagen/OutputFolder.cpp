#include "OutputFolder.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace schemagen
{

namespace
{

bool Holds(const std::filesystem::path& file, const std::string& text)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
    {
        return false;
    }
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str() == text;
}

}  // namespace

void OutputFolder::Write(const std::string& name, const std::string& text)
{
    const std::filesystem::path file = m_root / name;
    m_written.insert(file);
    if (Holds(file, text))
    {
        return;
    }
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream)
    {
        throw std::runtime_error("can't write " + file.string());
    }
}

void OutputFolder::RemoveStale(const std::string& folder) const
{
    std::vector<std::filesystem::path> stale;
    if (!std::filesystem::exists(m_root / folder))
    {
        return;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_root / folder))
    {
        if (entry.is_regular_file() && m_written.count(entry.path()) == 0)
        {
            stale.push_back(entry.path());
        }
    }
    for (const std::filesystem::path& file : stale)
    {
        std::filesystem::remove(file);
    }
}

}  // namespace schemagen
