#include "Report.h"

#include <iostream>

#include "Text.h"

using zorvex_api::Error;
using zorvex_api::ErrorSeverity;
using zorvex_api::Result;

namespace zorvex_cli
{

const char* SeverityName(ErrorSeverity severity)
{
    switch (severity)
    {
        case zorvex_api::UNSET:
            return "unset";
        case zorvex_api::MESSAGE:
            return "message";
        case zorvex_api::WARNING:
            return "warning";
        case zorvex_api::ERROR:
            return "error";
        case zorvex_api::SEVERE:
            return "severe";
        case zorvex_api::FATAL:
            return "fatal";
        case zorvex_api::MULTIPLE:
            return "multiple";
    }
    return "unset";
}

void Report(ErrorSeverity severity, int code, const std::string& text)
{
    std::cerr << SeverityName(severity) << ' ' << code << ": " << OneLine(text) << '\n';
}

void Report(const Result& result)
{
    for (int i = 0; i < result.NumberOfErrors(); ++i)
    {
        const Error* error = result.GetError(i);
        Report(error->GetSeverity(), error->GetCode(), ToUtf8(error->GetMessage()));
    }
}

int Count(const Result& result, ErrorSeverity least)
{
    int count = 0;
    for (int i = 0; i < result.NumberOfErrors(); ++i)
    {
        count += result.GetError(i)->GetSeverity() >= least ? 1 : 0;
    }
    return count;
}

}  // namespace zorvex_cli
