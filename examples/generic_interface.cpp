// Reads and edits a document by names alone: no generated class is used, so the same code serves
// every class, also those that are made at run time for elements that nobody has described.
#include "Example.h"

namespace
{

using example::Require;
using example::Text;
using zorvex_api::Array;
using zorvex_api::ClassDescriptor;
using zorvex_api::Configuration;
using zorvex_api::FieldInfo;
using zorvex_api::Handle;
using zorvex_api::Map;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::String;
using zorvex_api::TraverseContext;

constexpr unsigned int kAttributes = 2;

/// Prints every object with the attributes that it holds.
class Printer : public TraverseContext
{
public:
    Printer() { SetFollowURI(0); }

    zorvex_api::zorvexTraverseResult Visit(Object* object) override
    {
        int depth = 0;
        for (const Object* one = object->GetOwner(); one; one = one->GetOwner())
        {
            ++depth;
        }
        std::cout << std::string(static_cast<size_t>(2 * depth), ' ')
                  << Text(object->GetElementName());
        Map<String, String> values;
        Require(object->GetAttributeValues(values), "reading the attributes");
        for (int i = 0; i < values.GetSize(); ++i)
        {
            std::cout << ' ' << Text(values.GetKey(i)) << "='" << Text(values.GetValue(i)) << '\'';
        }
        std::cout << '\n';
        ++m_count;
        return zorvex_api::zorvexTraverseContinue;
    }

    int Count() const { return m_count; }

private:
    int m_count = 0;
};

/// Gives each object of `document` that may have a name one, unless it has.
class Namer : public TraverseContext
{
public:
    zorvex_api::zorvexTraverseResult Visit(Object* object) override
    {
        int hasValue = 0;
        if (object->HasAttribute(u"name", hasValue) && !hasValue)
        {
            Require(object->SetAttributeValue(u"name", object->GetClassName()), "naming");
            ++m_count;
        }
        return zorvex_api::zorvexTraverseContinue;
    }

    int m_count = 0;
};

void DescribeClass(const char16_t* name)
{
    const ClassDescriptor* descriptor = ClassDescriptor::FindByName(name);
    Require(descriptor != nullptr, "the class is known");
    Array<FieldInfo> fields;
    Require(descriptor->GetFields(fields, kAttributes, 1), "reading the fields");
    std::cout << Text(descriptor->GetName()) << " has " << fields.GetSize() << " attributes; ";
    int required = 0;
    for (int i = 0; i < fields.GetSize(); ++i)
    {
        required += fields[i].IsRequired() ? 1 : 0;
    }
    std::cout << required << " are required\n";
}

void Work(const std::string& data, const std::string&)
{
    DescribeClass(u"ProductRevision");

    Configuration options;
    Array<Handle> handles;
    Require(zorvex_api::Load((data + "/fasteners.zorvex").c_str(), options, handles), "loading");
    Require(handles.GetSize() == 1, "there is one root");
    Object* document = handles[0];

    Printer printer;
    document->Traverse(&printer);
    Require(printer.Count() > 20, "the walk met the whole document");

    // A child by the name of its class, and a value by the name of its field. A wrong name is told
    // in the Result and changes nothing.
    Object* screw = document->ResolveId(u"id20");
    Require(screw != nullptr, "id20 is there");
    Result result;
    Object* note = screw->AddChildElement(u"UserData", result);
    Require(result, "adding a child");
    Require(note->SetAttributeValue(u"type", u"Poznámka"), "setting the type");
    result = note->SetAttributeValue(u"colour", u"red");
    Require(!result.Ok() && result.GetCode() == 525, "a note has no colour");
    std::cout << Text(result.GetMessage()) << '\n';

    Namer namer;
    document->Traverse(&namer);
    std::cout << namer.m_count << " objects were named\n";

    delete document;
}

}  // namespace

int main(int argc, char** argv)
{
    return example::Run(argc, argv, &Work);
}
