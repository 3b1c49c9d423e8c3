#include "Options.h"

#include "Text.h"

namespace zorvex_cli
{

void Options::AddTo(CLI::App& command)
{
    const auto check = [](const std::string& pair)
    {
        const size_t equals = pair.find('=');
        return equals == std::string::npos || equals == 0 ? "'" + pair + "' is no name=value"
                                                          : std::string();
    };
    command.add_option("-o,--option", pairs, "An option of the library, as name=value; repeatable")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(CLI::Validator(check, ""));
}

void Options::Fill(zorvex_api::Configuration& configuration) const
{
    for (const std::string& pair : pairs)
    {
        const size_t equals = pair.find('=');
        configuration.Set(FromUtf8(pair.substr(0, equals)), FromUtf8(pair.substr(equals + 1)));
    }
}

}  // namespace zorvex_cli
