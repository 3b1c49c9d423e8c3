#include <cstring>
#include <vector>

#include "objectmodel/AttributeMessages.h"
#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/AttributeWrite.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/TransformText.h"
#include "runtime/StoredText.h"
#include "runtime/XmlCharacters.h"

/// Storing a text by the type of its field.

namespace zorvex_api::attribute_store
{

namespace
{

constexpr TextView kReferenceSeparators = u" \t\r\n";
constexpr TextView kFormatName = u"ZORVEX";
constexpr TextView kOldFormatName = u"oRB";

/// One text on its way into one field. Nothing is allocated and no message is made as long as all
/// goes well.
class TextSetter
{
public:
    TextSetter(ClassData& owner, FieldDescriptor& field, TextView text, Result& result)
        : m_owner(owner), m_field(field), m_text(text), m_result(result)
    {
    }

    /// `data` may be null. False when the text isn't stored.
    bool Store(FieldData* data);

private:
    bool StoreValue(FieldData* data);
    bool StoreLoad(FieldData* data);
    bool StoreLocation(FieldData* data);
    bool StoreInt(FieldData* data);
    bool StoreInts(FieldData* data);
    bool StoreIntArray(FieldData* data);
    bool StoreDouble(FieldData* data);
    bool StoreDoubles(FieldData* data);
    bool StoreDoubleArray(FieldData* data);
    bool StoreTransform(FieldData* data);
    bool StoreString(FieldData* data);
    bool StoreEnum(FieldData* data);
    bool StoreId(FieldData* data);
    bool StoreIds(FieldData* data);
    bool StoreUri(FieldData* data);
    bool StoreUris(FieldData* data);

    // Never null for a field whose values have a stored form.
    FieldData* Need(FieldData* data) { return attribute_write::NeedRecord(m_owner, m_field, data); }
    bool IsLogical() const { return attribute_numbers::IsLogical(m_field); }
    bool CannotCreate();
    bool Overflow();
    bool WantsHash() const;

    ClassData& m_owner;
    FieldDescriptor& m_field;
    TextView m_text;
    Result& m_result;
};

TextView WithoutHash(TextView id)
{
    return !id.empty() && id.front() == u'#' ? id.substr(1) : id;
}

bool TextSetter::Store(FieldData* data)
{
    switch (PartOf(m_field))
    {
        case Part::Load:
            return StoreLoad(data);
        case Part::Location:
            return StoreLocation(data);
        default:
            return StoreValue(data);
    }
}

bool TextSetter::StoreValue(FieldData* data)
{
    switch (FieldData::FormOf(m_field))
    {
        case FieldData::Form::Int:
            return StoreInt(data);
        case FieldData::Form::Ints:
            return StoreInts(data);
        case FieldData::Form::IntArray:
            return StoreIntArray(data);
        case FieldData::Form::Double:
            return StoreDouble(data);
        case FieldData::Form::Doubles:
            return StoreDoubles(data);
        case FieldData::Form::DoubleArray:
            return StoreDoubleArray(data);
        case FieldData::Form::Text:
            return StoreString(data);
        case FieldData::Form::Enum:
            return StoreEnum(data);
        case FieldData::Form::SingleId:
            return StoreId(data);
        case FieldData::Form::Ids:
            return StoreIds(data);
        case FieldData::Form::External:
            return StoreUri(data);
        case FieldData::Form::Externals:
            return StoreUris(data);
        case FieldData::Form::None:
        case FieldData::Form::Element:
        case FieldData::Form::Elements:
            break;
    }
    if (m_field.IsContent() || m_field.Type() == zorvexFieldContentElement)
    {
        m_result.AddError(2, String::Format("Unexpected element class: \"%s\".",
                                            ToUtf8(m_field.ClassName()).c_str()));
        return false;
    }
    return CannotCreate();
}

bool TextSetter::CannotCreate()
{
    m_result.Merge(attribute_message::CannotCreate(m_field.NameView(), m_owner));
    return false;
}

bool TextSetter::Overflow()
{
    m_result.Merge(attribute_message::IntOverflow(m_text));
    return false;
}

bool TextSetter::StoreInt(FieldData* data)
{
    int value = 0;
    if (IsLogical())
    {
        attribute_numbers::ReadFixedLogicals(m_text, &value, 1);
    }
    else if (!attribute_numbers::ReadFixedInts(m_text, &value, 1))
    {
        return Overflow();
    }
    data = Need(data);
    data->SetInt(value);
    return true;
}

bool TextSetter::StoreInts(FieldData* data)
{
    std::vector<int> values(static_cast<size_t>(m_field.Length()));
    if (IsLogical())
    {
        attribute_numbers::ReadFixedLogicals(m_text, values.data(), m_field.Length());
    }
    else if (!attribute_numbers::ReadFixedInts(m_text, values.data(), m_field.Length()))
    {
        return Overflow();
    }
    data = Need(data);
    std::memcpy(data->Ints(), values.data(), values.size() * sizeof(int));
    return true;
}

bool TextSetter::StoreIntArray(FieldData* data)
{
    std::vector<int> values;
    bool fits = true;
    if (IsLogical())
    {
        attribute_numbers::ReadLogicals(m_text, values);
    }
    else
    {
        fits = attribute_numbers::ReadInts(m_text, values);
    }
    data = Need(data);
    attribute_write::Replace(*data->IntArray(), values.data(), static_cast<int>(values.size()));
    return fits || Overflow();
}

bool TextSetter::StoreDouble(FieldData* data)
{
    double value = 0.0;
    attribute_numbers::ReadFixedDoubles(m_text, &value, 1);
    data = Need(data);
    data->SetDouble(value);
    return true;
}

bool TextSetter::StoreDoubles(FieldData* data)
{
    if (m_field.Type() == zorvexFieldMatrix && transform_text::AppliesTo(m_owner))
    {
        return StoreTransform(data);
    }
    data = Need(data);
    attribute_numbers::ReadFixedDoubles(m_text, data->Doubles(), FieldData::NumberCount(m_field));
    return true;
}

bool TextSetter::StoreTransform(FieldData* data)
{
    double matrix[16];
    switch (transform_text::Read(transform_text::KindOf(m_owner), m_text, matrix))
    {
        case transform_text::ReadResult::Nothing:
            return true;
        case transform_text::ReadResult::UnknownType:
            m_result.AddError(2, "Unknown transformation type.");
            return false;
        case transform_text::ReadResult::ZeroScale:
            m_result.AddError(2, "0 scale transform specified.");
            return false;
        case transform_text::ReadResult::Done:
            break;
    }
    data = Need(data);
    std::memcpy(data->Doubles(), matrix, sizeof(matrix));
    return true;
}

bool TextSetter::StoreDoubleArray(FieldData* data)
{
    std::vector<double> values;
    attribute_numbers::ReadDoubles(m_text, values);
    data = Need(data);
    attribute_write::Replace(*data->DoubleArray(), values.data(), static_cast<int>(values.size()));
    return true;
}

bool TextSetter::StoreString(FieldData* data)
{
    const TextView text =
        m_text == kOldFormatName && m_field.NameView() == u"format" ? kFormatName : m_text;
    data = Need(data);
    const stored::Word word = stored::Make(text);  // first: `text` may stand in what is released
    stored::Release(data->Text());
    data->SetPointer(word);
    return true;
}

bool TextSetter::StoreEnum(FieldData* data)
{
    const TextView text =
        m_text == kOldFormatName && m_field.NameView() == u"format" ? kFormatName : m_text;
    const String* allowed = m_field.FindAllowedValue(text);
    data = Need(data);
    data->FreeEnum();
    if (allowed != nullptr)
    {
        data->SetEnum(allowed);
        return true;
    }
    data->SetEnumCopy(text);
    m_result.Merge(attribute_message::NotInEnum(text, m_field.ClassName()));
    return true;
}

bool TextSetter::StoreId(FieldData* data)
{
    data = Need(data);
    data->SingleId()->Set(WithoutHash(m_text));
    return true;
}

bool TextSetter::StoreIds(FieldData* data)
{
    data = Need(data);
    Array<Id>& ids = *data->Ids();
    ids.RemoveAll();
    ids.SetSizeEx(attribute_write::CountTokens(m_text, kReferenceSeparators), 0);
    Id* next = ids.GetData();
    attribute_numbers::ForEachToken(m_text, kReferenceSeparators,
                                    [&](TextView token) { (next++)->Set(WithoutHash(token)); });
    return true;
}

/// A `partRef` of an Instance names an element of the document, with or without "#".
bool TextSetter::WantsHash() const
{
    return m_field.NameView() == u"partRef" && !m_text.empty() &&
           m_text.find(u'#') == TextView::npos && attribute_write::IsBelow(m_owner, u"Instance");
}

bool TextSetter::StoreUri(FieldData* data)
{
    data = Need(data);
    if (WantsHash())
    {
        attribute_write::SetUriText(m_owner, *data->External(), u"#" + std::u16string(m_text));
        return true;
    }
    attribute_write::SetUriText(m_owner, *data->External(), m_text);
    return true;
}

bool TextSetter::StoreLoad(FieldData* data)
{
    data = Need(data);
    if (data == nullptr)
    {
        return CannotCreate();
    }
    attribute_write::SetLoad(*data->External(), m_text == u"true");
    return true;
}

bool TextSetter::StoreLocation(FieldData* data)
{
    data = Need(data);
    if (data == nullptr)
    {
        return CannotCreate();
    }
    attribute_write::SetUriText(m_owner, *data->External(), m_text);
    return true;
}

bool TextSetter::StoreUris(FieldData* data)
{
    data = Need(data);
    Array<ExternalRep*>& references = *data->Externals();
    attribute_write::DestroyAll(references);
    references.SetSizeEx(attribute_write::CountTokens(m_text, kReferenceSeparators), 0);
    references.SetSizeEx(0, 0);
    attribute_numbers::ForEachToken(m_text, kReferenceSeparators,
                                    [&](TextView token)
                                    {
                                        ExternalRep* reference = ExternalRep::Make(m_owner);
                                        references.Add(reference);
                                        attribute_write::SetUriText(m_owner, *reference, token);
                                    });
    return true;
}

/// Types whose empty text can be a value.
bool HoldsEmptyText(const FieldDescriptor& field)
{
    switch (field.Type())
    {
        case zorvexFieldString:
        case zorvexFieldSingleReference:
        case zorvexFieldMultipleReference:
        case zorvexFieldSingleURI:
        case zorvexFieldMultipleURI:
            return true;
        default:
            return false;
    }
}

/// Control characters are rare enough for a second look: the loop over all units is kept to one
/// comparison, which the compiler does for many units at once.
bool HasForbiddenUnit(TextView text)
{
    bool hasControl = false;
    for (char16_t unit : text)
    {
        hasControl |= unit < 32;
    }
    return hasControl && !CheckXmlCharacters(text).Ok();
}

bool SetIdText(ClassData& owner, TextView text)
{
    return owner.SetId(IdValue(text), false);
}

/// Without the check of characters, the marks and the final message. False on a failure.
bool SetTextPlain(ClassData& owner, FieldDescriptor& field, FieldData* data, TextView text,
                  Result& result)
{
    TextSetter setter(owner, field, text, result);
    if (!setter.Store(data))
    {
        return false;
    }
    if (field.NameView() == u"format")
    {
        attribute_write::TellFormat(owner, text);
    }
    return true;
}

bool IsDefaultOnUntouched(const FieldDescriptor& field, const FieldData* data, TextView text)
{
    return data == nullptr && field.HasDefault() && text == field.DefaultView();
}

}  // namespace

Result SetText(ClassData& owner, FieldDescriptor& field, TextView name, TextView text,
               const SetTextOptions& options)
{
    Result result;
    if (PartOf(field) == Part::Id)
    {
        if (options.checkCharacters && HasForbiddenUnit(text))
        {
            result = CheckXmlCharacters(text);
        }
        if (!result.Ok() || !SetIdText(owner, text))
        {
            result.Merge(attribute_message::CannotSet(name));
        }
        return result;
    }
    FieldData* data = owner.FindField(&field);
    if (text.empty() && !(options.emptyIsValue && HoldsEmptyText(field)))
    {
        ResetValue(owner, field, data);
        if (options.markNetwork)
        {
            owner.MarkNetwork();
        }
        return result;
    }
    if (options.checkCharacters && HasForbiddenUnit(text))
    {
        result = CheckXmlCharacters(text);
        result.Merge(attribute_message::CannotSet(name));
        return result;
    }
    if (options.skipDefault && IsDefaultOnUntouched(field, data, text))
    {
        return result;
    }
    if (!SetTextPlain(owner, field, data, text, result))
    {
        result.Merge(attribute_message::CannotSet(name));
    }
    if (options.markNetwork)
    {
        owner.MarkNetwork();
    }
    return result;
}

bool SetTextQuick(ClassData& owner, FieldDescriptor& field, TextView text, bool emptyIsValue,
                  Result& result)
{
    if (HasForbiddenUnit(text))
    {
        result.Merge(CheckXmlCharacters(text));
        result.Merge(attribute_message::CannotSet(field.NameView()));
        return false;
    }
    if (field.IsBuiltIn() && PartOf(field) == Part::Id)
    {
        return SetIdText(owner, text);
    }
    FieldData* data = owner.FindField(&field);
    if (text.empty() && !(emptyIsValue && HoldsEmptyText(field)))
    {
        ResetValue(owner, field, data);
        return true;
    }
    if (IsDefaultOnUntouched(field, data, text))
    {
        return true;
    }
    const int before = result.NumberOfErrors();
    if (SetTextPlain(owner, field, data, text, result))
    {
        return result.NumberOfErrors() == before;
    }
    if (field.Type() != zorvexFieldMatrix)
    {
        // What is wrong with a Transform's text has been said.
        result.Merge(attribute_message::CannotSet(field.NameView()));
    }
    return false;
}

void ResetValue(ClassData& owner, const FieldDescriptor& field, FieldData* data)
{
    const Part part = PartOf(field);
    if (part == Part::Id)
    {
        owner.SetId(IdValue(), false);
        return;
    }
    if (data == nullptr || !data->IsSet())
    {
        return;
    }
    if (part == Part::Value)
    {
        data->ResetValue(owner);
        return;
    }
    ExternalRep& reference = *data->External();
    const bool loads = (reference.flags & ExternalRep::kLoad) != 0;
    if (part == Part::Load)
    {
        reference.flags &= ~ExternalRep::kLoad;
        if (!reference.HasText() && !reference.HasTarget())
        {
            data->ResetValue(owner);
        }
        return;
    }
    data->ResetValue(owner);
    if (loads)
    {
        attribute_write::SetLoad(
            *attribute_write::NeedRecord(owner, *data->descriptor, data)->External(), true);
    }
}

}  // namespace zorvex_api::attribute_store
