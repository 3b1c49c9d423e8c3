#include "document/ParserImpl.h"

#include "objectmodel/AttributeStore.h"
#include "objectmodel/IdTable.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

constexpr TextView kSchemaLocationEnding = u":schemaLocation";

}  // namespace

/// The value's text, held against the limit.
TextView ParserImpl::TakeValue(const unsigned short* value) const
{
    const TextView text(value != nullptr ? AsChar16(value) : u"");
    if (text.size() * sizeof(char16_t) > limits.valueBytes)
    {
        limits.FailValue();
    }
    return text;
}

void ParserImpl::ReadAttributes(ClassData& data, const Parser::UCharList& names,
                                const Parser::UCharList& values)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    const bool isRuntime = impl->IsRuntimeClass();
    const bool takesNamespaces = isRuntime && schemaMode != 0;
    AttributeGuesses* guesses = isRuntime ? nullptr : &GuessesFor(*impl);
    std::size_t guess = 0;
    bool hasId = false;
    const int count = names.GetLength();
    for (int i = 0; i < count; ++i)
    {
        const unsigned short* const text = names[i];
        if (text == nullptr)
        {
            Fail(2, String::Format("Unable to get an attribute (index:%d) of: \"%s\"", i,
                                   LocalUtf8().c_str()));
            break;
        }
        if (guesses != nullptr && guesses->Hold(guess, AsChar16(text)))
        {
            FieldDescriptor* field = guesses->attributes[guess++].field;
            hasId = ReadKnownAttribute(data, field, TakeValue(values[i])) || hasId;
            continue;
        }
        const TextView name(AsChar16(text));
        if (!takesNamespaces && IsNamespaceAttribute(name))
        {
            continue;
        }
        const TextView value = TakeValue(values[i]);
        if (ReadSchemaLocation(data, name, value))
        {
            continue;
        }
        if (isRuntime)
        {
            hasId = ReadRuntimeAttribute(data, name, value) || hasId;
            continue;
        }
        FieldDescriptor* field = nullptr;
        if (name != u"id" && (field = FindBuiltInAttribute(impl->Layout(), name)) == nullptr)
        {
            continue;
        }
        guesses->Learn(guess++, name, field);
        hasId = ReadKnownAttribute(data, field, value) || hasId;
    }
    if (!hasId)
    {
        data.SetNoId();
    }
}

ParserImpl::AttributeGuesses& ParserImpl::GuessesFor(const ClassDescriptorImpl& descriptor)
{
    if (&descriptor != m_guessedClass)
    {
        m_guessedClass = &descriptor;
        m_lastGuesses = &m_guesses[&descriptor];
    }
    if (m_lastGuesses->generation != descriptor.Generation())
    {
        m_lastGuesses->attributes.clear();
        m_lastGuesses->generation = descriptor.Generation();
    }
    return *m_lastGuesses;
}

/// Whether the attribute guessed next has this name, which ends with a zero.
bool ParserImpl::AttributeGuesses::Hold(std::size_t index, const char16_t* name) const
{
    if (index >= attributes.size())
    {
        return false;
    }
    const std::u16string& guessed = attributes[index].name;
    for (const char16_t unit : guessed)
    {
        if (*name++ != unit)
        {
            return false;
        }
    }
    return *name == 0;
}

void ParserImpl::AttributeGuesses::Learn(std::size_t index, TextView name, FieldDescriptor* field)
{
    if (index < attributes.size())
    {
        attributes[index].name = name;
        attributes[index].field = field;
        return;
    }
    attributes.push_back({std::u16string(name), field});
}

/// Null, with a message, for an attribute that the class hasn't got.
FieldDescriptor* ParserImpl::FindBuiltInAttribute(const ClassLayout& layout, TextView name)
{
    FieldDescriptor* field = layout.FindAttribute(name);
    if (field != nullptr && !field->IsContent())
    {
        return field;
    }
    Warn(525, String::Format("\"%s\" is not an allowed attribute of: <%s>", ToUtf8(name).c_str(),
                             LocalUtf8().c_str()));
    return nullptr;
}

/// The id for a null field. True when it gave the object its id.
bool ParserImpl::ReadKnownAttribute(ClassData& data, FieldDescriptor* field, TextView value)
{
    if (field == nullptr)
    {
        return ReadId(data, value);
    }
    SetField(data, *field, value);
    return false;
}

bool ParserImpl::ReadId(ClassData& data, TextView value)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    if (m_checkDocument && (!impl->IsIdObject() || impl->IsDocumentBase()))
    {
        FieldDescriptor* field =
            impl->NamespaceUri().IsEmpty() ? impl->Layout().FindAttribute(u"id") : nullptr;
        if (field != nullptr)
        {
            SetField(data, *field, value);
        }
        else
        {
            Warn(525, String::Format("\"id\" is not an allowed attribute of: <%s>.",
                                     LocalUtf8().c_str()));
        }
        return false;
    }
    lastId = value;
    IdValue id(value);
    if (m_checkDocument && Current() != nullptr && Current() != &data)
    {
        IdTable* table = DocumentRoot()->idTable;
        if (table != nullptr && table->Contains(id))
        {
            Fail(513, String(u"Duplicate id: ") + ToString(value));
        }
    }
    data.id = std::move(id);  // entered in the root's table when the object is attached
    return data.id.HasValue();
}

bool ParserImpl::ReadSchemaLocation(ClassData& data, TextView name, TextView value)
{
    constexpr std::size_t kShortest = 14;
    if (name.size() < kShortest || !name.ends_with(kSchemaLocationEnding))
    {
        return false;
    }
    const NamespaceScope::Name* ns =
        m_scope.Find(name.substr(0, name.size() - kSchemaLocationEnding.size()));
    if (ns == nullptr || !ns->isSchemaInstance)
    {
        return false;
    }
    result->Merge(data.object->SetAttributeValue(u"schemaLocation", ToString(value)));
    return true;
}

void ParserImpl::SetField(ClassData& data, FieldDescriptor& field, TextView value)
{
    attribute_store::SetTextQuick(data, field, value, m_treatEmptyAsSet, *result);
    if (references != nullptr &&
        (field.Type() == zorvexFieldSingleURI || field.Type() == zorvexFieldMultipleURI ||
         (field.Type() == zorvexFieldExternalReference && field.NameView() != u"load")))
    {
        NoteReferences(data, field);
    }
}

void ParserImpl::NoteReferences(ClassData& data, FieldDescriptor& field)
{
    const FieldData* stored = data.FindField(&field);
    if (stored == nullptr || !stored->IsSet())
    {
        return;
    }
    if (stored->descriptor->Type() != zorvexFieldMultipleURI)
    {
        references->push_back({data.object, stored->descriptor, 0});
        return;
    }
    for (int i = 0; i < stored->Externals()->GetSize(); ++i)
    {
        references->push_back({data.object, stored->descriptor, i});
    }
}

// --- run-time classes ----------------------------------------------------------------------------

bool ParserImpl::ReadRuntimeAttribute(ClassData& data, TextView rawName, TextView value)
{
    TextView name = rawName;
    const NamespaceScope::Name* ns = nullptr;
    const std::size_t colon = rawName.find(u':');
    // "xml" needs no declaration, and stands for nothing else: such a name is kept whole.
    const bool isXml = rawName.starts_with(u"xml:");
    if (schemaMode == 0 && colon != rawName.npos && !isXml)
    {
        ns = m_scope.Find(rawName.substr(0, colon));
        if (ns == nullptr)
        {
            Fail(520, String::Format("Invalid XML namespace prefix: \"%s\".",
                                     ToUtf8(rawName.substr(0, colon)).c_str()));
        }
        else
        {
            name = rawName.substr(colon + 1);
        }
    }
    ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    FieldDescriptor* field = impl->Layout().FindAttribute(name);
    if (field != nullptr && field->IsContent())
    {
        field = nullptr;
    }
    if (field == nullptr && name == u"id")
    {
        if (!impl->IsIdObject())
        {
            impl->SetBaseClass(u"IdObject");
        }
        data.stateFlags |= ClassData::kIdObject;
        return ReadId(data, value);
    }
    if (field == nullptr)
    {
        const String prefix = ns != nullptr ? ToString(rawName.substr(0, colon)) : String();
        field = impl->AddRuntimeField(name, zorvexFieldString, nullptr,
                                      ns != nullptr ? &prefix : nullptr);
        if (field == nullptr)
        {
            Warn(520, String::Format("Cannot add attribute: \"%s\" to: <%s>", ToUtf8(name).c_str(),
                                     LocalUtf8().c_str()));
            return false;
        }
    }
    if (name == u"id" && impl->IsIdObject())
    {
        return ReadId(data, value);
    }
    SetField(data, *field, value);
    return false;
}

// --- required attributes -------------------------------------------------------------------------

void ParserImpl::CheckRequired(ClassData& data, const Parser::UCharList& names)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    for (FieldDescriptor* field : impl->Layout().RequiredFields())
    {
        const FieldData* stored = data.FindField(field);
        if (stored != nullptr && stored->IsSet())
        {
            continue;
        }
        bool named = false;
        for (int i = 0; i < names.GetLength() && !named; ++i)
        {
            named = names[i] != nullptr && TextView(AsChar16(names[i])) == field->XmlNameView();
        }
        if (!named)
        {
            Warn(518,
                 String::Format("Missing attribute: \"%s\", element: \"%s\"",
                                ToUtf8(field->NameView()).c_str(), ToUtf8(impl->Name()).c_str()));
        }
    }
}

}  // namespace zorvex_api
