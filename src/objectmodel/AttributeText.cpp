#include <string>

#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/TransformText.h"
#include "runtime/NumberText.h"
#include "runtime/StoredText.h"
#include "runtime/Utf8.h"

/// The text of stored values.

namespace zorvex_api::attribute_store
{

namespace
{

// What the two kinds of output need; the rest is written once for both.

void PutAscii(std::string_view text, std::u16string& out)
{
    out.append(text.begin(), text.end());
}
void PutAscii(std::string_view text, std::string& out)
{
    out.append(text);
}
void PutText(TextView text, std::u16string& out)
{
    out.append(text);
}
void PutText(TextView text, std::string& out)
{
    utf8::AppendEncoded(text, utf8::kPlain, out);
}
void PutStored(stored::Word word, std::u16string& out)
{
    stored::AppendTo(word, out);
}
void PutStored(stored::Word word, std::string& out)
{
    if (stored::IsUtf8())
    {
        out.append(stored::Utf8(word));
        return;
    }
    utf8::AppendEncoded(stored::Wide(word), utf8::kPlain, out);
}

template <class Out>
void PutInt(int value, bool isLogical, Out& out)
{
    if (isLogical)
    {
        PutAscii(value != 0 ? "true" : "false", out);
        return;
    }
    char text[number::kMaxText];
    PutAscii({text, number::FormatInt(value, text)}, out);
}

template <class Out>
void PutDouble(double value, Out& out)
{
    char text[number::kMaxText];
    PutAscii({text, number::FormatDouble16g(value, text)}, out);
}

template <class Out>
void PutInts(const int* values, int count, bool isLogical, Out& out)
{
    for (int i = 0; i < count; ++i)
    {
        if (i > 0)
        {
            out += ' ';
        }
        PutInt(values[i], isLogical, out);
    }
}

template <class Out>
void PutDoubles(const double* values, int count, Out& out)
{
    for (int i = 0; i < count; ++i)
    {
        if (i > 0)
        {
            out += ' ';
        }
        PutDouble(values[i], out);
    }
}

template <class Out>
void PutFixedDoubles(ClassData& owner, const FieldDescriptor& field, const double* values, Out& out)
{
    if (field.Type() == zorvexFieldMatrix && transform_text::AppliesTo(owner))
    {
        std::string text;
        transform_text::Append(transform_text::KindOf(owner), values, text);
        PutAscii(text, out);
        return;
    }
    PutDoubles(values, FieldData::NumberCount(field), out);
}

template <class Out>
void PutIds(const Array<Id>& ids, Out& out)
{
    const Id* items = ids.GetData();
    for (int i = 0; i < ids.GetSize(); ++i)
    {
        if (i > 0)
        {
            out += ' ';
        }
        items[i].Current().AppendTo(out);
    }
}

/// The target of a URI when it has an id and stands in the same tree, else null.
ClassData* LocalTarget(ClassData& owner, const ExternalRep& reference)
{
    ClassData* target = ClassData::Of(reference.TargetObject());
    return target != nullptr && target->id.HasValue() && target->Root() == owner.Root() ? target
                                                                                        : nullptr;
}

template <class Out>
void PutReference(ClassData& owner, const ExternalRep& reference, Out& out)
{
    if (const ClassData* target = LocalTarget(owner, reference))
    {
        out += '#';
        target->id.AppendTo(out);
        return;
    }
    reference.AppendText(out);
}

template <class Out>
void PutReferences(ClassData& owner, const Array<ExternalRep*>& references, Out& out)
{
    ExternalRep* const* items = references.GetData();
    for (int i = 0; i < references.GetSize(); ++i)
    {
        if (i > 0)
        {
            out += ' ';
        }
        PutReference(owner, *items[i], out);
    }
}

template <class Out>
void PutValue(ClassData& owner, const FieldDescriptor& field, const FieldData& data, Out& out)
{
    const FieldDescriptor& stored = *data.descriptor;
    switch (FieldData::FormOf(stored))
    {
        case FieldData::Form::Int:
            PutInt(data.Int(), attribute_numbers::IsLogical(stored), out);
            break;
        case FieldData::Form::Ints:
            PutInts(data.Ints(), stored.Length(), attribute_numbers::IsLogical(stored), out);
            break;
        case FieldData::Form::IntArray:
            PutInts(data.IntArray()->GetData(), data.IntArray()->GetSize(),
                    attribute_numbers::IsLogical(stored), out);
            break;
        case FieldData::Form::Double:
            PutDouble(data.Double(), out);
            break;
        case FieldData::Form::Doubles:
            PutFixedDoubles(owner, stored, data.Doubles(), out);
            break;
        case FieldData::Form::DoubleArray:
            PutDoubles(data.DoubleArray()->GetData(), data.DoubleArray()->GetSize(), out);
            break;
        case FieldData::Form::Text:
            PutStored(data.Text(), out);
            break;
        case FieldData::Form::Enum:
            PutText(data.EnumText(), out);
            break;
        case FieldData::Form::SingleId:
            data.SingleId()->Current().AppendTo(out);
            break;
        case FieldData::Form::Ids:
            PutIds(*data.Ids(), out);
            break;
        case FieldData::Form::External:
            if (PartOf(field) == Part::Load)
            {
                PutAscii((data.External()->flags & ExternalRep::kLoad) != 0 ? "true" : "false",
                         out);
                break;
            }
            PutReference(owner, *data.External(), out);
            break;
        case FieldData::Form::Externals:
            PutReferences(owner, *data.Externals(), out);
            break;
        case FieldData::Form::None:
        case FieldData::Form::Element:
        case FieldData::Form::Elements:
            break;
    }
}

}  // namespace

void AppendText(ClassData& owner, const FieldDescriptor& field, const FieldData& data,
                std::u16string& out)
{
    if (data.IsSet())
    {
        PutValue(owner, field, data, out);
    }
}

void AppendUtf8(ClassData& owner, const FieldDescriptor& field, const FieldData& data,
                std::string& out)
{
    if (data.IsSet())
    {
        PutValue(owner, field, data, out);
    }
}

String GetText(ClassData& owner, const FieldDescriptor& field, const FieldData* data)
{
    if (PartOf(field) == Part::Id)
    {
        return owner.id.ToString();
    }
    if (data == nullptr || !data->IsSet())
    {
        return field.DefaultValue();
    }
    if (FieldData::FormOf(*data->descriptor) == FieldData::Form::Text)
    {
        return stored::ToString(data->Text());
    }
    std::u16string text;
    PutValue(owner, field, *data, text);
    return ToString(text);
}

bool TextEqualsDefault(ClassData& owner, const FieldDescriptor& field, const FieldData& data)
{
    if (!data.IsSet())
    {
        return false;
    }
    switch (FieldData::FormOf(*data.descriptor))
    {
        case FieldData::Form::Text:
            return stored::Equals(data.Text(), field.DefaultView());
        case FieldData::Form::Enum:
            return data.EnumText() == field.DefaultView();
        default:
            break;
    }
    if (!field.HasDefault())
    {
        return false;
    }
    std::u16string text;
    PutValue(owner, field, data, text);
    return text == field.DefaultView();
}

void AppendReferenceText(ClassData& owner, const ExternalRep& reference, std::u16string& out)
{
    PutReference(owner, reference, out);
}

}  // namespace zorvex_api::attribute_store
