#include <memory>
#include <string>

#include "Command.h"
#include "Document.h"
#include "FieldText.h"
#include "Fields.h"
#include "Report.h"
#include "Text.h"

using zorvex_api::ClassDescriptor;
using zorvex_api::FieldInfo;
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

/// False, which is reported, when the field holds numbers and VALUE is none.
bool IsValue(const Object& object, const Arguments& arguments)
{
    FieldInfo field;
    const ClassDescriptor* descriptor = object.GetClassDescriptor();
    if (!descriptor ||
        !descriptor->GetField(FromUtf8(arguments.field), field, kAttributes | kContent).Ok())
    {
        return true;  // setting it tells what is wrong
    }
    const std::string expected = WhatIsExpected(field, arguments.value);
    if (!expected.empty())
    {
        Report(zorvex_api::ERROR, 2,
               "\"" + arguments.value + "\" is no value of the field \"" + ToUtf8(field.GetName()) +
                   "\", which takes " + expected);
    }
    return expected.empty();
}

int Set(const Arguments& arguments)
{
    Document document(arguments.options);
    // What a load with errors left out would be lost by saving.
    Object* object = document.Load(arguments.file) ? document.Find(arguments.id) : nullptr;
    if (!object)
    {
        return kFindings;
    }
    if (!IsValue(*object, arguments))
    {
        return kUsage;
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
