#include "support/Printers.h"

#include <ostream>

#include "runtime/Text.h"

namespace zorvex_api
{

void PrintTo(const String& text, std::ostream* out)
{
    *out << '"' << ToUtf8(text) << '"';
}

void PrintTo(const Result& result, std::ostream* out)
{
    *out << (result.Ok() ? "Ok" : "not Ok");
    for (const std::string& message : zorvex_test::Messages(result))
    {
        *out << "\n  " << message;
    }
}

}  // namespace zorvex_api

namespace zorvex_test
{

std::string Utf8(const zorvex_api::String& text)
{
    return zorvex_api::ToUtf8(text);
}

std::vector<std::string> Messages(const zorvex_api::Result& result)
{
    static constexpr const char* kSeverities[] = {"UNSET",  "MESSAGE", "WARNING", "ERROR",
                                                  "SEVERE", "FATAL",   "MULTIPLE"};
    std::vector<std::string> messages;
    for (int i = 0; i < result.NumberOfErrors(); ++i)
    {
        const zorvex_api::Error& error = *result.GetError(i);
        messages.push_back(std::string(kSeverities[error.GetSeverity()]) + " " +
                           std::to_string(error.GetCode()) + ": " + Utf8(error.GetMessage()));
    }
    return messages;
}

std::vector<std::string> Texts(const zorvex_api::Array<zorvex_api::String>& texts)
{
    std::vector<std::string> all;
    for (const zorvex_api::String& text : texts)
    {
        all.push_back(Utf8(text));
    }
    return all;
}

}  // namespace zorvex_test
