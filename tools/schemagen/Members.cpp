#include "Members.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <istream>
#include <stdexcept>

#include "VocabularyError.h"

namespace schemagen
{

namespace
{

void AddMembers(std::istream& stream, Members& members)
{
    std::string declarations;
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
        else if (!line.empty() || !declarations.empty())
        {
            declarations += (line.empty() ? "" : "    ") + line + "\n";
        }
    }
    members.declarations += (members.declarations.empty() ? "" : "\n") + declarations;
}

}  // namespace

Members ReadMembers(const std::filesystem::path& folder, const Class& owner)
{
    Members members;
    for (const std::string& name : owner.members)
    {
        std::ifstream stream(folder / (name + ".inc"));
        if (!stream)
        {
            throw VocabularyError(owner.place, "the members \"" + name + "\" can't be read");
        }
        AddMembers(stream, members);
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
