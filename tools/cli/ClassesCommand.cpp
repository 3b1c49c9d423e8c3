#include <algorithm>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Command.h"
#include "Fields.h"
#include "Json.h"
#include "Report.h"
#include "Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/FieldInfo.h"

using zorvex_api::Array;
using zorvex_api::ClassDescriptor;
using zorvex_api::FieldDescriptor;
using zorvex_api::FieldInfo;
using zorvex_api::String;

namespace zorvex_cli
{
namespace
{

struct Arguments
{
    std::string name;
    bool json = false;
};

/// One field as it was registered.
struct Field
{
    std::string name;
    std::string type;
    int length = 1;  // 1 for a single value, 0 for a list of any length
    std::string className;
    std::string defaultText;
    bool hasDefault = false;
    bool isRequired = false;
    bool isDeprecated = false;
    std::vector<std::string> values;
};

/// The three fields that the library shares between classes. A look-up gives them where a class has
/// registered none ("id") or an external reference ("load" and "location").
class SharedFields
{
public:
    SharedFields()
    {
        m_id = Find(u"IdObject", u"id");
        m_load = Find(u"Representation", u"load");
        m_location = Find(u"Representation", u"location");
    }

    bool IsId(const FieldInfo& field) const { return Is(field, m_id); }
    bool IsExternalReference(const FieldInfo& field) const
    {
        return Is(field, m_load) || Is(field, m_location);
    }

private:
    static const FieldDescriptor* Find(const char16_t* className, const char16_t* name)
    {
        FieldInfo field;
        const ClassDescriptor* descriptor = ClassDescriptor::FindByName(className);
        if (descriptor)
        {
            descriptor->GetField(name, field, kAttributes);
        }
        return field.GetDescriptor();
    }

    static bool Is(const FieldInfo& field, const FieldDescriptor* shared)
    {
        return shared && field.GetDescriptor() == shared;
    }

    const FieldDescriptor* m_id;
    const FieldDescriptor* m_load;
    const FieldDescriptor* m_location;
};

Field Describe(const FieldInfo& info)
{
    Field field;
    field.name = ToUtf8(info.GetName());
    field.type = TypeName(info);
    field.length = info.IsArray() ? info.GetArrayLength() : 1;
    field.className = ToUtf8(info.GetClassString());
    field.hasDefault = info.HasDefaultValue() != 0;
    field.defaultText = ToUtf8(info.GetDefaultValue());
    field.isRequired = info.IsRequired() != 0;
    field.isDeprecated = info.IsDeprecated() != 0;
    Array<String> values;
    info.GetEnumerationValues(values);
    for (int i = 0; i < values.GetSize(); ++i)
    {
        field.values.push_back(ToUtf8(values[i]));
    }
    return field;
}

/// The class's own fields in the order of registration.
std::vector<Field> OwnFields(const ClassDescriptor& descriptor, const SharedFields& shared)
{
    Array<FieldInfo> infos;
    descriptor.GetFields(infos, kAllFields, 0);
    std::vector<Field> fields;
    for (int i = 0; i < infos.GetSize(); ++i)
    {
        if (shared.IsId(infos[i]))
        {
            continue;
        }
        fields.push_back(Describe(infos[i]));
        if (shared.IsExternalReference(infos[i]))
        {
            fields.back().type = "external_reference";
        }
    }
    // "location" is registered right before "load"; a look-up gives the two the other way round.
    for (size_t i = 1; i < fields.size(); ++i)
    {
        if (fields[i - 1].type == "external_reference" && fields[i - 1].name == "load" &&
            fields[i].type == "external_reference")
        {
            std::swap(fields[i - 1], fields[i]);
        }
    }
    return fields;
}

std::string BaseName(const ClassDescriptor& descriptor)
{
    const String& name = descriptor.GetBaseClass();
    return ToUtf8(name);
}

std::string EquivalenceName(const ClassDescriptor& descriptor)
{
    const String& name = descriptor.GetEquivalenceClass();
    return ToUtf8(name);
}

/// The version text as it was registered: the format's version and the schema's file.
std::string VersionText(const ClassDescriptor& descriptor)
{
    const std::string file = ToUtf8(descriptor.GetSchemaFile());
    return ToUtf8(descriptor.GetVersion()) + (file.empty() ? "" : " " + file);
}

Json ToJson(const ClassDescriptor& descriptor, const SharedFields& shared)
{
    Json fields = Json::array();
    for (const Field& field : OwnFields(descriptor, shared))
    {
        fields.push_back({{"name", field.name},
                          {"type", field.type},
                          {"length", field.length},
                          {"class", field.className},
                          {"default", field.hasDefault ? Json(field.defaultText) : Json()},
                          {"required", field.isRequired},
                          {"deprecated", field.isDeprecated},
                          {"values", field.values}});
    }
    return Json{{"name", ToUtf8(descriptor.GetName())},
                {"namespace", ToUtf8(descriptor.GetNamespace())},
                {"base", BaseName(descriptor)},
                {"equivalence", EquivalenceName(descriptor)},
                {"abstract", descriptor.GetIsAbstract() != 0},
                {"version", VersionText(descriptor)},
                {"fields", std::move(fields)}};
}

std::string FieldLine(const Field& field)
{
    std::string line =
        "  " + (field.name.empty() ? std::string("(any)") : field.name) + "  " + field.type;
    if (field.length != 1)
    {
        line += field.length == 0 ? "[]" : "[" + std::to_string(field.length) + "]";
    }
    line += field.className.empty() ? "" : "  " + field.className;
    line += field.hasDefault ? "  default \"" + field.defaultText + "\"" : "";
    line += field.isRequired ? "  required" : "";
    line += field.isDeprecated ? "  deprecated" : "";
    return line;
}

void PrintClass(const ClassDescriptor& descriptor, const SharedFields& shared)
{
    const auto line = [](const char* name, const std::string& value)
    { std::cout << name << (value.empty() ? "-" : value) << '\n'; };

    line("name         ", ToUtf8(descriptor.GetName()));
    line("namespace    ", ToUtf8(descriptor.GetNamespace()));
    line("schema type  ", ToUtf8(descriptor.GetSchemaName()));
    line("base         ", BaseName(descriptor));
    line("equivalence  ", EquivalenceName(descriptor));
    line("abstract     ", descriptor.GetIsAbstract() ? "yes" : "no");
    line("version      ", VersionText(descriptor));
    const std::vector<Field> fields = OwnFields(descriptor, shared);
    std::cout << fields.size() << " fields\n";
    for (const Field& field : fields)
    {
        std::cout << FieldLine(field) << '\n';
        for (const std::string& value : field.values)
        {
            std::cout << "      " << value << '\n';
        }
    }
}

/// All classes of the schemas in the order in which they were registered. The library's own two,
/// Object and Configuration, belong to no namespace and are told when asked for by name.
std::vector<const ClassDescriptor*> AllClasses()
{
    std::vector<const ClassDescriptor*> classes;
    const int count = ClassDescriptor::NumberOfClassDescriptors();
    classes.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
    {
        const ClassDescriptor* one = ClassDescriptor::GetClassDescriptor(i);
        if (!one->GetNamespace().IsEmpty())
        {
            classes.push_back(one);
        }
    }
    // Class values are handed out in the order of registration.
    std::sort(classes.begin(), classes.end(),
              [](const ClassDescriptor* a, const ClassDescriptor* b)
              { return a->GetClass() < b->GetClass(); });
    return classes;
}

int Classes(const Arguments& arguments)
{
    std::vector<const ClassDescriptor*> classes;
    if (arguments.name.empty())
    {
        classes = AllClasses();
    }
    else if (const ClassDescriptor* one = ClassDescriptor::FindByName(FromUtf8(arguments.name)))
    {
        classes.push_back(one);
    }
    else
    {
        Report(zorvex_api::ERROR, 2, "No class is named \"" + arguments.name + "\"");
        return kFindings;
    }

    const SharedFields shared;
    if (arguments.json)
    {
        Json json = Json::array();
        for (const ClassDescriptor* one : classes)
        {
            json.push_back(ToJson(*one, shared));
        }
        Write(json);
    }
    else if (!arguments.name.empty())
    {
        PrintClass(*classes.front(), shared);
    }
    else
    {
        for (const ClassDescriptor* one : classes)
        {
            std::cout << ToUtf8(one->GetQualifiedName()) << '\n';
        }
    }
    return kGood;
}

}  // namespace

void AddClasses(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        app.add_subcommand("classes", "Prints the classes that documents are made of");
    command->add_option("NAME", arguments->name,
                        "One class, with its fields: a name, or a namespace, a colon and a name");
    command->add_flag("--json", arguments->json, "Machine-readable output, with all fields");
    command->callback([arguments, &action]
                      { action = [arguments] { return Classes(*arguments); }; });
}

}  // namespace zorvex_cli
