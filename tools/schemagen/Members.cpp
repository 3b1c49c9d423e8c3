#include "Members.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <stdexcept>

#include "VocabularyError.h"

namespace schemagen
{

Members ReadMembers(const std::filesystem::path& folder, const Class& owner)
{
    std::ifstream stream(folder / (owner.name + ".inc"));
    if (!stream)
    {
        throw VocabularyError(owner.place,
                              "the members of class \"" + owner.name + "\" can't be read");
    }
    Members members;
    std::string line;
    while (std::getline(stream, line))
    {
        if (line.rfind("#include", 0) == 0)
        {
            members.includes.push_back(line);
        }
        else if (line.rfind("class ", 0) == 0 && line.back() == ';')
        {
            members.declared.insert(line.substr(6, line.size() - 7));
        }
        else if (!line.empty() || !members.declarations.empty())
        {
            members.declarations += (line.empty() ? "" : "    ") + line + "\n";
        }
    }
    return members;
}

std::set<std::string> ReadOperationNames(const std::filesystem::path& header)
{
    std::ifstream stream(header);
    if (!stream)
    {
        throw std::runtime_error("can't read " + header.string());
    }
    std::set<std::string> names;
    std::string line;
    while (std::getline(stream, line))
    {
        line.resize(std::min(line.find("//"), line.size()));
        for (std::size_t open = line.find('('); open != std::string::npos;
             open = line.find('(', open + 1))
        {
            std::size_t begin = open;
            while (begin > 0 && std::isalnum(static_cast<unsigned char>(line[begin - 1])) != 0)
            {
                --begin;
            }
            if (begin < open && std::isupper(static_cast<unsigned char>(line[begin])) != 0)
            {
                names.insert(line.substr(begin, open - begin));
            }
        }
    }
    return names;
}

}  // namespace schemagen
