#include "SetArguments.h"

#include <algorithm>

namespace zorvex_cli
{
namespace
{

bool TakesNextArgument(const std::string& argument)
{
    return argument == "-O" || argument == "--output" || argument == "-o" || argument == "--option";
}

bool IsSetOption(const std::string& argument)
{
    const auto starts = [&argument](const char* prefix) { return argument.rfind(prefix, 0) == 0; };
    return starts("-O") || starts("-o") || starts("--output=") || starts("--option=");
}

}  // namespace

std::vector<std::string> OrderSetArguments(const std::vector<std::string>& arguments)
{
    const auto command =
        std::find_if(arguments.begin(), arguments.end(),
                     [](const std::string& one) { return one.compare(0, 1, "-") != 0; });
    if (command == arguments.end() || *command != "set")
    {
        return arguments;
    }

    constexpr size_t kBeforeValue = 3;  // FILE, ID, FIELD
    std::vector<std::string> options(arguments.begin(), command + 1);
    std::vector<std::string> positionals;
    for (auto one = command + 1; one != arguments.end(); ++one)
    {
        const bool isDashed = one->size() > 1 && one->front() == '-';
        if (*one == "--")
        {
            positionals.insert(positionals.end(), one + 1, arguments.end());
            break;
        }
        if (TakesNextArgument(*one) && one + 1 != arguments.end())
        {
            options.insert(options.end(), {*one, *(one + 1)});
            ++one;
        }
        else if (isDashed && (IsSetOption(*one) || positionals.size() != kBeforeValue))
        {
            options.push_back(*one);
        }
        else
        {
            positionals.push_back(*one);
        }
    }
    if (!positionals.empty())
    {
        options.emplace_back("--");
        options.insert(options.end(), positionals.begin(), positionals.end());
    }
    return options;
}

}  // namespace zorvex_cli
