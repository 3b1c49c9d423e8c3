// The command `zorvex`.
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "Command.h"
#include "Report.h"
#include "Session.h"
#include "SetArguments.h"
#include "Text.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Session.h"

namespace
{

using namespace zorvex_cli;

std::string VersionText()
{
    const zorvex_api::BuildInfo info = zorvex_api::GetBuildInfo();
    return "zorvex " + std::to_string(info.GetMajorRevision()) + "." +
           std::to_string(info.GetMinorRevision()) + "." + std::to_string(info.GetRevision());
}

int Run(const std::vector<std::string>& libraries, const Action& action)
{
    const Session session(libraries);
    if (!session.IsGood())
    {
        return kFindings;
    }
    const int code = action();
    std::cout.flush();
    if (!std::cout)
    {
        Report(zorvex_api::ERROR, 258, "Standard output could not be written");
        return kFindings;
    }
    return code;
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app(
        "Reads, edits and writes ZORVEX documents of product data.\n"
        "Exit code: 0 good, 1 findings or a failure, 2 wrong usage.",
        "zorvex");
    std::vector<std::string> libraries;
    app.add_option("--library", libraries,
                   "Libraries of further classes or plug-ins, divided by colons")
        ->type_name("NAME")
        ->envname("ZORVEX_LIBRARIES")
        ->delimiter(':')
        ->allow_extra_args(false);
    app.set_version_flag("--version", VersionText());
    app.require_subcommand(1);

    Action action;
    AddInfo(app, action);
    AddConvert(app, action);
    AddTree(app, action);
    AddGet(app, action);
    AddSet(app, action);
    AddClasses(app, action);
    AddCheck(app, action);

    try
    {
        std::vector<std::string> arguments = OrderSetArguments({argv + 1, argv + argc});
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? kGood : kUsage;
    }

    try
    {
        return Run(libraries, action);
    }
    catch (const zorvex_api::Exception& exception)
    {
        Report(zorvex_api::ERROR, exception.GetCode(), ToUtf8(exception.GetMessage()));
    }
    catch (const std::bad_alloc&)
    {
        Report(zorvex_api::FATAL, 1, "Out of memory");
    }
    return kFindings;
}
