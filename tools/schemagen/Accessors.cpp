#include "Accessors.h"

#include <algorithm>

#include "Naming.h"
#include "VocabularyError.h"

namespace schemagen
{

namespace
{

// Makes the accessors of one field. `m_name` stands behind "Get" and its like.
class Builder
{
public:
    Builder(const Class& owner, const Field& field)
        : m_owner(owner),
          m_field(field),
          m_key(WideLiteral(field.name)),
          m_what("`" + field.name + "` (" + Describe(field) + ")")
    {
    }

    std::vector<Accessor> Build()
    {
        if (m_field.name.empty() || m_field.name == "Content")
        {
            return {};  // Object's own operations reach these
        }
        m_name = UpperFirst(m_field.name);
        switch (m_field.kind)
        {
            case Kind::Logical:
            case Kind::Int:
                BuildNumber("int", "GetInt");
                break;
            case Kind::Double:
                BuildNumber("double", "GetDouble");
                break;
            case Kind::String:
                BuildString();
                break;
            case Kind::Vector:
                BuildValue("Vector", "Get", "Set");
                break;
            case Kind::Matrix:
                BuildValue("Transf", "Get", "Set");
                break;
            case Kind::Content:
                BuildContent();
                break;
            case Kind::Enum:
                BuildEnum();
                break;
            case Kind::Uri:
                BuildUri();
                break;
            case Kind::Uris:
                BuildUris();
                break;
            case Kind::Reference:
                BuildReference();
                break;
            case Kind::References:
                BuildReferences();
                break;
            case Kind::Element:
                BuildElement();
                break;
            case Kind::Elements:
                BuildElements();
                break;
            case Kind::External:
                break;  // hand-written members
        }
        return std::move(m_accessors);
    }

private:
    void Add(const std::string& result, const std::string& name, const std::string& parameters,
             bool isConst, const std::string& body, const std::string& doc)
    {
        m_accessors.push_back({result, name, parameters, isConst, body, doc});
    }

    // typed::<operation>(*this, field<arguments>)
    std::string Call(const std::string& operation, const std::string& arguments = "") const
    {
        return "typed::" + operation + "(*this, " + m_key + arguments + ")";
    }
    std::string Return(const std::string& operation, const std::string& arguments = "") const
    {
        return "return " + Call(operation, arguments) + ";";
    }

    void AddHasAndUnset()
    {
        Add("int", "Has" + m_name, "", true, Return("Has"),
            "1 when " + m_what + " has a value" +
                (m_field.defaultText ? "; its default counts." : "."));
        Add("Result", "Unset" + m_name, "", false, Return("Unset"), "Takes away " + m_what + ".");
    }

    void BuildNumber(const std::string& type, const std::string& getter)
    {
        if (m_field.length && *m_field.length != 1)
        {
            BuildList(type);
            return;
        }
        Add(type, "Get" + m_name, "", true, Return(getter), m_what + "; 0 when there is no value.");
        Add("Result", "Set" + m_name, type + " value", false, Return("Set", ", value"),
            "Sets " + m_what + ".");
        AddHasAndUnset();
    }

    void BuildString()
    {
        Add("String", "Get" + m_name, "", true, Return("GetString"),
            m_what + "; empty when there is no value.");
        Add("Result", "Set" + m_name, "const String& value", false, Return("Set", ", value"),
            "Sets " + m_what + ".");
        AddHasAndUnset();
    }

    void BuildList(const std::string& type)
    {
        if (*m_field.length == 0)
        {
            Add("Result", "Get" + m_name, "Array<" + type + ">& values", true,
                Return("Get", ", values"), "Reads " + m_what + ".");
            Add("Result", "Set" + m_name, "const Array<" + type + ">& values", false,
                Return("Set", ", values"), "Sets " + m_what + ".");
        }
        else
        {
            const std::string count = std::to_string(*m_field.length);
            Add("Result", "Get" + m_name, type + "* values", true,
                Return("GetList", ", " + count + ", values"),
                "Reads " + m_what + "; room for " + count + ".");
            Add("Result", "Set" + m_name, "const " + type + "* values", false,
                Return("SetList", ", " + count + ", values"),
                "Sets " + m_what + "; null is refused, as any other number of values.");
        }
        AddHasAndUnset();
    }

    void BuildValue(const std::string& type, const std::string& get, const std::string& set)
    {
        Add("Result", "Get" + m_name, type + "& value", true, Return(get, ", value"),
            "Reads " + m_what + ".");
        Add("Result", "Set" + m_name, "const " + type + "& value", false, Return(set, ", value"),
            "Sets " + m_what + ".");
        AddHasAndUnset();
    }

    void BuildContent()
    {
        const std::string& type = m_field.classNames.front();
        if (type == "String")
        {
            BuildString();
        }
        else if (m_field.asMatrix)
        {
            BuildValue("Transf", "GetContent", "SetContent");
        }
        else if (type == "Double" && m_field.length == 3)
        {
            BuildValue("Vector", "GetContent", "SetContent");
        }
        else
        {
            BuildNumber(type == "Double" ? "double" : "int",
                        type == "Double" ? "GetDouble" : "GetInt");
        }
    }

    void BuildEnum()
    {
        const std::string type = EnumText(*m_field.enumeration, m_owner.CodeName());
        Add(type, "Get" + m_name, "", true, "return " + type + "(" + Call("GetString") + ");",
            m_what + "; a text that it lacks gives an invalid value.");
        Add("Result", "Set" + m_name, "const " + type + "& value", false,
            Return("Set", ", value.ToString()"), "Sets " + m_what + ".");
        AddHasAndUnset();
    }

    void BuildUri()
    {
        m_name = Stem(m_field.name);
        Add("String", "Get" + m_name + "URI", "", true, Return("GetString"),
            m_what + ": its text.");
        Add("Result", "Get" + m_name + "URI", "Handle& target", true, Return("GetURI", ", target"),
            m_what + ": what it is known to lead to.");
        Add("Result", "Set" + m_name + "URI", "const String& text", false, Return("Set", ", text"),
            "Sets " + m_what + " as text.");
        Add("Result", "Set" + m_name + "URI", "const Handle& target", false,
            Return("SetURI", ", target"), "Sets " + m_what + " to lead to an object.");
        Add("int", "Has" + m_name + "URI", "", true, Return("Has"),
            "1 when " + m_what + " has a value.");
        Add("Result", "Delete" + m_name + "URI", "", false, Return("Unset"),
            "Takes away " + m_what + ".");
        Add("Result", "Resolve" + m_name + "URI",
            "Handle& target, Configuration* configuration = nullptr", false,
            Return("ResolveURI", ", target, configuration"),
            "Follows " + m_what + "; may load a document.");
    }

    void BuildUris()
    {
        m_name = Stem(m_field.name);
        const std::string uri = m_name + "URI";
        Add("Result", "Add" + uri, "const String& text", false, Return("AddURI", ", text"),
            "Appends to " + m_what + " as text.");
        Add("Result", "Add" + uri, "const Handle& target", false, Return("AddURI", ", target"),
            "Appends to " + m_what + " what leads to an object.");
        Add("int", "NumberOf" + uri + "s", "", true, Return("CountReferences"),
            "How many " + m_what + " has.");
        Add("int", "Has" + uri + "s", "", true, Return("Has"),
            "1 when " + m_what + " has a value.");
        Add("String", "Get" + uri, "int index", true, Return("GetURI", ", index"),
            "Text `index` of " + m_what + "; raises code 16 out of range.");
        Add("Result", "Get" + uri, "int index, Handle& target", true,
            Return("GetURI", ", index, target"),
            "What entry `index` of " + m_what + " is known to lead to; code 16 out of range.");
        Add("Result", "Set" + uri, "int index, const String& text", false,
            Return("SetURI", ", index, text"),
            "Replaces entry `index` of " + m_what + "; code 16 out of range.");
        Add("Result", "Set" + uri, "int index, const Handle& target", false,
            Return("SetURI", ", index, target"),
            "Replaces entry `index` of " + m_what + "; code 16 out of range.");
        Add("Result", "Delete" + uri, "int index", false, Return("DeleteURI", ", index"),
            "Takes entry `index` out of " + m_what + "; code 16 out of range.");
        Add("Result", "Delete" + uri + "s", "", false, Return("Unset"),
            "Takes away " + m_what + ".");
        Add("Result", "Resolve" + uri,
            "int index, Handle& target, Configuration* configuration = nullptr", false,
            Return("ResolveURI", ", index, target, configuration"),
            "Follows entry `index` of " + m_what + "; code 16 out of range.");
    }

    void BuildReference()
    {
        m_name = Stem(m_field.name);
        const std::string type = ClassText(m_field.target, m_owner.CodeName());
        Add("String", "Get" + m_name + "Id", "", true, Return("GetId"),
            "The id in " + m_what + ".");
        Add("int", "Set" + m_name + "Id", "const String& id", false, Return("SetId", ", id"),
            "Sets " + m_what + " by id; 1 on success.");
        Add("int", "Set" + m_name + "Ref", type + "* target", false,
            Return("SetRef", ", typed::ToObject(target)"),
            "Sets " + m_what + "; null takes it away; 1 on success.");
        Add("int", "Has" + m_name + "Ref", "", true, Return("Has"),
            "1 when " + m_what + " has a value.");
        Add("void", "Remove" + m_name + "Ref", "", false, Call("Unset") + ";",
            "Takes away " + m_what + ".");
        Add(type + "*", "Resolve" + m_name + "Ref", "Configuration* configuration = nullptr", false,
            "return typed::As<" + type + ">(" + Call("ResolveRef", ", configuration") + ");",
            "The object that " + m_what + " leads to, or null.");
    }

    void BuildReferences()
    {
        m_name = Stem(m_field.name);
        const std::string type = ClassText(m_field.target, m_owner.CodeName());
        const std::string ref = m_name + "Ref";
        Add("int", "Add" + m_name + "Id", "const String& id", false, Return("AddId", ", id"),
            "Appends an id to " + m_what + "; 1 on success.");
        Add("int", "Add" + ref, type + "* target", false,
            Return("AddRef", ", typed::ToObject(target)"),
            "Appends an object to " + m_what + "; 1 on success.");
        Add("int", "NumberOf" + ref + "s", "", true, Return("CountReferences"),
            "How many " + m_what + " has.");
        Add("int", "Has" + ref + "s", "", true, Return("Has"),
            "1 when " + m_what + " has a value.");
        Add("String", "Get" + m_name + "Id", "int index", true, Return("GetId", ", index"),
            "Id `index` of " + m_what + "; raises code 16 out of range.");
        Add("void", "Get" + m_name + "Ids", "Array<String>& ids", true,
            Call("GetIds", ", ids") + ";", "Appends all ids of " + m_what + ".");
        Add("int", "Set" + m_name + "Id", "int index, const String& id", false,
            Return("SetId", ", index, id"),
            "Replaces entry `index` of " + m_what + "; 0 out of range.");
        Add("int", "Set" + ref, "int index, " + type + "* target", false,
            Return("SetRef", ", index, typed::ToObject(target)"),
            "Replaces entry `index` of " + m_what + "; 0 out of range.");
        Add("void", "Remove" + ref, "int index", false, Call("RemoveRef", ", index") + ";",
            "Takes entry `index` out of " + m_what + "; raises code 16 out of range.");
        Add("void", "Remove" + ref, "const String& id", false, Call("RemoveRef", ", id") + ";",
            "Takes the first entry of this id out of " + m_what + ".");
        Add("void", "Remove" + ref, type + "* target", false,
            Call("RemoveRef", ", typed::ToObject(target)") + ";",
            "Takes the first entry of this object out of " + m_what + ".");
        Add("void", "Remove" + ref + "s", "", false, Call("Unset") + ";",
            "Takes away " + m_what + ".");
        Add(type + "*", "Resolve" + ref, "int index, Configuration* configuration = nullptr", false,
            "return typed::As<" + type + ">(" + Call("ResolveRef", ", index, configuration") + ");",
            "The object that entry `index` of " + m_what + " leads to, or null.");
        Add("void", "Resolve" + ref + "s",
            "Array<" + type + "*>& targets, Configuration* configuration = nullptr", false,
            Call("ResolveRefs", ", targets, configuration") + ";",
            "Appends the objects that " + m_what + " leads to.");
    }

    // The key of an element and, for the operation that makes one, the class before it.
    void UseElementKey()
    {
        m_key = WideLiteral(m_owner.QualifiedName() + ":" + m_field.name);
        m_type = ClassText(m_field.target, m_owner.CodeName());
    }
    std::string Make(const std::string& operation) const
    {
        return "return typed::As<" + m_type + ">(typed::" + operation + "(*this, " +
               WideLiteral(m_field.qualifiedClasses) + ", " + m_key + "));";
    }

    void BuildElement()
    {
        UseElementKey();
        Add(m_type + "*", "Get" + m_name, "", true,
            "return typed::As<" + m_type + ">(" + Call("GetElement") + ");", m_what + ", or null.");
        Add(m_type + "*", "Add" + m_name, "", false, Make("AddSingleElement"),
            "Makes " + m_what + "; null when there is one already.");
        Add("Result", "Set" + m_name, m_type + "* element", false,
            "return typed::AttachElement(*this, typed::ToObject(element), " + m_key + ");",
            "Attaches a root as " + m_what + "; null gives code 2.");
        Add("void", "Delete" + m_name, "", false, Call("DeleteElements") + ";",
            "Deletes " + m_what + ".");
    }

    void BuildElements()
    {
        UseElementKey();
        const std::string plural = Plural(m_name);
        Add(m_type + "*", "Add" + m_name, "", false, Make("AddElement"),
            "Makes one of " + m_what + " at the end.");
        Add("Result", "Add" + m_name, m_type + "* element", false,
            "return typed::AttachElement(*this, typed::ToObject(element), " + m_key + ");",
            "Attaches a root to " + m_what + " at the end; null gives code 2.");
        Add(m_type + "*", "Get" + m_name, "int index", true,
            "return typed::As<" + m_type + ">(" + Call("GetElement", ", index") + ");",
            "Element `index` of " + m_what + ", or null.");
        Add("void", "Get" + plural, "Array<" + m_type + "*>& elements", true,
            Call("GetElements", ", elements") + ";", "Fills the array with all of " + m_what + ".");
        Add("int", "NumberOf" + plural, "", true, Return("CountElements"),
            "How many " + m_what + " has.");
        Add("void", "Delete" + m_name, "int index", false, Call("DeleteElement", ", index") + ";",
            "Deletes element `index` of " + m_what + "; raises code 16 out of range.");
        Add("void", "Delete" + m_name, m_type + "* element", false,
            "typed::DeleteElement(*this, typed::ToObject(element));",
            "Deletes one of " + m_what + ".");
        Add("void", "Delete" + plural, "", false, Call("DeleteElements") + ";",
            "Deletes all of " + m_what + ".");
    }

    const Class& m_owner;
    const Field& m_field;
    std::string m_key;
    std::string m_what;
    std::string m_name;
    std::string m_type;
    std::vector<Accessor> m_accessors;
};

}  // namespace

std::string Accessor::Signature() const
{
    // Parameter names and defaults don't count: what is left between them are the types.
    std::string types;
    for (std::size_t at = 0; at < parameters.size();)
    {
        const std::size_t end = std::min(parameters.find(", ", at), parameters.size());
        const std::string parameter = parameters.substr(at, end - at);
        const std::string declared = parameter.substr(0, parameter.find(" = "));
        types += declared.substr(0, declared.rfind(' ')) + ",";
        at = end + 2;
    }
    return name + "(" + types + ")" + (isConst ? " const" : "");
}

std::vector<Accessor> FieldAccessors(const Class& owner, const Field& field)
{
    return Builder(owner, field).Build();
}

std::vector<FieldGroup> ClassAccessors(const Class& owner)
{
    std::vector<FieldGroup> groups;
    std::set<std::string> signatures;
    std::set<std::string> replaced(owner.replaced.begin(), owner.replaced.end());
    std::set<std::string> unused = replaced;
    for (const Field& field : owner.fields)
    {
        FieldGroup group{&field, {}};
        for (Accessor& accessor : FieldAccessors(owner, field))
        {
            if (!signatures.insert(accessor.Signature()).second)
            {
                throw VocabularyError(field.place,
                                      "accessor " + accessor.name + " of field \"" + field.name +
                                          "\" exists already in class \"" + owner.name + "\"");
            }
            unused.erase(accessor.name);
            if (replaced.count(accessor.name) == 0)
            {
                group.accessors.push_back(std::move(accessor));
            }
        }
        groups.push_back(std::move(group));
    }
    if (!unused.empty())
    {
        throw VocabularyError(owner.place,
                              "there is no accessor \"" + *unused.begin() + "\" to replace");
    }
    return groups;
}

}  // namespace schemagen
