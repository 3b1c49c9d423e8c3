#include <memory>
#include <string>

#include "Command.h"
#include "Document.h"
#include "Report.h"

namespace zorvex_cli
{
namespace
{

struct Arguments
{
    std::string in;
    std::string out;
    bool force = false;
    Options options;
};

int Convert(const Arguments& arguments)
{
    Document document(arguments.options);
    const bool isGood = document.Load(arguments.in);
    if (!document.Root() || (!isGood && !arguments.force))
    {
        return kFindings;
    }
    return document.Save(arguments.out) && isGood ? kGood : kFindings;
}

}  // namespace

void AddConvert(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "convert", "Loads a document and saves it; the extensions tell the formats");
    command->add_option("IN", arguments->in, "The document to load")->required();
    command->add_option("OUT", arguments->out, "Where to save it")->required();
    command->add_flag("--force", arguments->force, "Save also what a load with errors could read");
    arguments->options.AddTo(*command);
    command->callback([arguments, &action]
                      { action = [arguments] { return Convert(*arguments); }; });
}

}  // namespace zorvex_cli
