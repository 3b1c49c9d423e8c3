#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Command.h"
#include "Document.h"
#include "Fields.h"
#include "Json.h"
#include "Report.h"
#include "Text.h"
#include "zorvex_api/Array.h"

using zorvex_api::Array;
using zorvex_api::ClassDescriptor;
using zorvex_api::FieldInfo;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::String;

namespace zorvex_cli
{
namespace
{

struct Arguments
{
    std::string file;
    std::string id;
    std::string field;
    bool json = false;
    Options options;
};

struct Value
{
    std::string name;
    std::string text;
};

/// The attributes and the content that have a value, in the order of a document; the id apart.
std::vector<Value> Values(const Object& object)
{
    std::vector<Value> values;
    for (const FieldInfo& field :
         FieldsInOrder(*object.GetClassDescriptor(), kAttributes | kContent))
    {
        int hasValue = 0;
        object.HasAttributeValue(field.GetName(), hasValue);
        String text;
        const bool isId = field.GetName() == u"id";
        if (hasValue && !isId && object.GetAttributeValue(field.GetName(), text).Ok() &&
            !text.IsEmpty())
        {
            values.push_back({ToUtf8(field.GetName()), ToUtf8(text)});
        }
    }
    return values;
}

std::vector<Object*> Children(const Object& object)
{
    Array<Object*> array;
    object.GetElements(array);
    return std::vector<Object*>(array.GetData(), array.GetData() + array.GetSize());
}

Json ToJson(const std::vector<Value>& values)
{
    Json json = Json::object();
    for (const Value& value : values)
    {
        json[value.name] = value.text;
    }
    return json;
}

/// An object as a child: with its values when it has no id by which they could be asked for.
Json Summary(Object& object)
{
    const std::string id = ToUtf8(object.GetId());
    Json json = {{"element", ToUtf8(object.GetElementName())},
                 {"class", ToUtf8(object.GetClassName())},
                 {"id", id}};
    if (id.empty())
    {
        json["attributes"] = ToJson(Values(object));
    }
    return json;
}

std::string Line(Object& object)
{
    std::string line = ToUtf8(object.GetElementName());
    const std::string className = ToUtf8(object.GetClassName());
    const std::string id = ToUtf8(object.GetId());
    line += line == className ? "" : " (" + className + ")";
    line += id.empty() ? "" : " " + id;
    return OneLine(line);
}

/// The same for a child, with its values as Summary tells.
std::string ChildLine(Object& object)
{
    std::string line = Line(object);
    if (object.GetId().IsEmpty())
    {
        for (const Value& value : Values(object))
        {
            line += " " + value.name + "=\"" + OneLine(value.text) + "\"";
        }
    }
    return line;
}

void PrintObject(Object& object, bool asJson)
{
    const std::vector<Value> values = Values(object);
    if (asJson)
    {
        Json json = Summary(object);
        json["attributes"] = ToJson(values);
        json["elements"] = Json::array();
        for (Object* child : Children(object))
        {
            json["elements"].push_back(Summary(*child));
        }
        Write(json);
        return;
    }
    std::cout << Line(object) << '\n';
    for (const Value& value : values)
    {
        std::cout << "  " << value.name << " = " << OneLine(value.text) << '\n';
    }
    for (Object* child : Children(object))
    {
        std::cout << "  <" << ChildLine(*child) << ">\n";
    }
}

Result PrintElements(const Object& object, const FieldInfo& field, bool asJson)
{
    Array<Object*> children;
    const Result result = object.GetElementsByField(field.GetName(), children);
    Json json = Json::array();
    for (int i = 0; i < children.GetSize(); ++i)
    {
        if (asJson)
        {
            json.push_back(Summary(*children[i]));
        }
        else
        {
            std::cout << ChildLine(*children[i]) << '\n';
        }
    }
    if (asJson)
    {
        Write(json);
    }
    return result;
}

Result PrintField(const Object& object, const std::string& name, bool asJson)
{
    FieldInfo field;
    const ClassDescriptor* descriptor = object.GetClassDescriptor();
    const bool isKnown = descriptor->GetField(FromUtf8(name), field, kAllFields).Ok();
    if (isKnown && field.IsElement())
    {
        return PrintElements(object, field, asJson);
    }
    String text;
    Result result = object.GetAttributeValue(FromUtf8(name), text);
    if (result.Ok())
    {
        if (asJson)
        {
            Write(Json(ToUtf8(text)));
        }
        else
        {
            std::cout << ToUtf8(text) << '\n';
        }
    }
    return result;
}

int Get(const Arguments& arguments)
{
    Document document(arguments.options);
    const bool isGood = document.Load(arguments.file);
    Object* object = document.Root() ? document.Find(arguments.id) : nullptr;
    if (!object)
    {
        return kFindings;
    }
    if (arguments.field.empty())
    {
        PrintObject(*object, arguments.json);
        return isGood ? kGood : kFindings;
    }
    const Result result = PrintField(*object, arguments.field, arguments.json);
    Report(result);
    return result.Ok() && isGood ? kGood : kFindings;
}

}  // namespace

void AddGet(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand("get", "Prints an element, or one field of it");
    command->add_option("FILE", arguments->file, "The document")->required();
    command->add_option("ID", arguments->id, "The element's id, or . for the root")->required();
    command->add_option("FIELD", arguments->field, "The field; without it all that has a value");
    command->add_flag("--json", arguments->json, "Machine-readable output");
    arguments->options.AddTo(*command);
    command->callback([arguments, &action] { action = [arguments] { return Get(*arguments); }; });
}

}  // namespace zorvex_cli
