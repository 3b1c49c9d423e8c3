#include <memory>
#include <string>

#include "Command.h"
#include "Document.h"
#include "Report.h"
#include "Text.h"

using zorvex_api::Object;
using zorvex_api::Result;

namespace zorvex_cli
{
namespace
{

struct Arguments
{
    std::string file;
    std::string id;
    std::string field;
    std::string value;
    std::string out;
    Options options;
};

int Set(const Arguments& arguments)
{
    Document document(arguments.options);
    // What a load with errors left out would be lost by saving.
    Object* object = document.Load(arguments.file) ? document.Find(arguments.id) : nullptr;
    if (!object)
    {
        return kFindings;
    }
    const Result result =
        object->SetAttributeValue(FromUtf8(arguments.field), FromUtf8(arguments.value));
    Report(result);
    return result.Ok() && document.Save(arguments.out) ? kGood : kFindings;
}

}  // namespace

void AddSet(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        app.add_subcommand("set", "Sets one field of an element and saves the document");
    command->add_option("FILE", arguments->file, "The document")->required();
    command->add_option("ID", arguments->id, "The element's id, or . for the root")->required();
    command->add_option("FIELD", arguments->field, "The attribute, or Content")->required();
    command->add_option("VALUE", arguments->value, "Its new text; an empty one takes it away")
        ->required();
    command->add_option("-O,--output", arguments->out, "Where to save, perhaps FILE again")
        ->type_name("OUT")
        ->allow_extra_args(false)
        ->required();
    arguments->options.AddTo(*command);
    command->callback([arguments, &action] { action = [arguments] { return Set(*arguments); }; });
}

}  // namespace zorvex_cli
