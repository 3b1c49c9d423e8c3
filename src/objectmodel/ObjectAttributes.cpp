#include <vector>

#include "objectmodel/AttributeMessages.h"
#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/AttributeWrite.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/NumberText.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Transf.h"
#include "zorvex_api/Vector.h"

/// Reading and testing attributes by name.

namespace zorvex_api
{

namespace
{

using attribute_store::Part;
using Form = FieldData::Form;

constexpr int kMatrixOrder = 4;
constexpr int kMatrixSize = kMatrixOrder * kMatrixOrder;
constexpr int kVectorSize = 3;

bool IsSet(const FieldData* data)
{
    return data != nullptr && data->IsSet();
}

bool HoldsInts(Form form)
{
    return form == Form::Int || form == Form::Ints || form == Form::IntArray;
}

bool HoldsDoubles(Form form)
{
    return form == Form::Double || form == Form::Doubles || form == Form::DoubleArray;
}

int DefaultInt(const FieldDescriptor& field)
{
    if (attribute_numbers::IsLogical(field))
    {
        return field.DefaultView() == u"true" ? 1 : 0;
    }
    return number::ParseInt(field.DefaultView()).value;
}

/// The number of an id of the form "id" and digits, as long as it fits: ids with more than nine
/// digits are kept as text.
Result GetIdNumber(const ClassData& owner, int& value)
{
    std::uint32_t idNumber = 0;
    if (owner.id.GetNumber(idNumber))
    {
        value = static_cast<int>(idNumber);
        return Result();
    }
    constexpr TextView kPrefix = u"id";
    const TextView text = owner.id.Text();
    const TextView digits = text.starts_with(kPrefix) ? text.substr(kPrefix.size()) : TextView();
    if (digits.empty() || digits.find_first_not_of(u"0123456789") != TextView::npos)
    {
        return attribute_message::IdIsNoInt();
    }
    const number::ParsedInt parsed = number::ParseInt(digits);
    if (parsed.overflow)
    {
        return attribute_message::IdIsNoInt();
    }
    value = parsed.value;
    return Result();
}

Result GetInt(ClassData& owner, TextView name, int& value)
{
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(owner, name, data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(name, owner);
    }
    const Part part = attribute_store::PartOf(*field);
    if (part == Part::Id)
    {
        return GetIdNumber(owner, value);
    }
    if (part == Part::Load && IsSet(data))
    {
        value = (data->External()->flags & ExternalRep::kLoad) != 0 ? 1 : 0;
        return Result();
    }
    if (part == Part::Value && !IsSet(data) && field->HasDefault())
    {
        value = DefaultInt(*field);
        return Result();
    }
    if (part != Part::Value || !IsSet(data) || FieldData::FormOf(*field) != Form::Int)
    {
        return attribute_message::NotSet(name);
    }
    value = attribute_numbers::IsLogical(*field) ? data->Int() != 0 : data->Int();
    return Result();
}

Result GetDouble(ClassData& owner, TextView name, double& value)
{
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(owner, name, data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(name, owner);
    }
    const Form form = FieldData::FormOf(*field);
    if (attribute_store::PartOf(*field) != Part::Value || !HoldsDoubles(form))
    {
        return attribute_message::WrongType(name);
    }
    if (!IsSet(data) && field->HasDefault())
    {
        value = number::ParseDouble(field->DefaultView()).value;
        return Result();
    }
    if (!IsSet(data) || form != Form::Double)
    {
        return attribute_message::NotSet(name);
    }
    value = data->Double();
    return Result();
}

void CopyInts(const FieldDescriptor& field, const FieldData& data, Array<int>& out)
{
    switch (FieldData::FormOf(field))
    {
        case Form::Int:
            out.Add(data.Int());
            break;
        case Form::Ints:
            out.Add(field.Length(), data.Ints());
            break;
        default:
            out.Add(data.IntArray()->GetSize(), data.IntArray()->GetData());
            break;
    }
    if (attribute_numbers::IsLogical(field))
    {
        for (int& value : out)
        {
            value = value != 0;
        }
    }
}

void CopyDoubles(const FieldDescriptor& field, const FieldData& data, Array<double>& out)
{
    switch (FieldData::FormOf(field))
    {
        case Form::Double:
            out.Add(data.Double());
            break;
        case Form::Doubles:
            out.Add(FieldData::NumberCount(field), data.Doubles());
            break;
        default:
            out.Add(data.DoubleArray()->GetSize(), data.DoubleArray()->GetData());
            break;
    }
}

/// Reads all values of a field whose type `accepts`: those that are stored, or those of the
/// default.
template <class T, class Accepts>
Result GetAll(ClassData& owner, TextView name, Accepts accepts,
              void (*copy)(const FieldDescriptor&, const FieldData&, Array<T>&),
              std::vector<T> (*defaults)(const FieldDescriptor&), Array<T>& out)
{
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(owner, name, data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(name, owner);
    }
    if (attribute_store::PartOf(*field) != Part::Value || !accepts(*field))
    {
        return attribute_message::WrongType(name);
    }
    out.RemoveAll();
    if (IsSet(data))
    {
        copy(*field, *data, out);
        return Result();
    }
    if (!field->HasDefault())
    {
        return attribute_message::NotSet(name);
    }
    const std::vector<T> values = defaults(*field);
    out.Add(static_cast<int>(values.size()), values.data());
    return Result();
}

bool HoldsAnyInts(const FieldDescriptor& field)
{
    return HoldsInts(FieldData::FormOf(field));
}

bool HoldsAnyDoubles(const FieldDescriptor& field)
{
    return HoldsDoubles(FieldData::FormOf(field));
}

Result GetInts(ClassData& owner, TextView name, Array<int>& out)
{
    return GetAll(owner, name, HoldsAnyInts, CopyInts, attribute_numbers::DefaultInts, out);
}

/// The doubles of a field whose type `accepts`; WrongType for any other.
template <class Accepts>
Result GetDoublesOf(ClassData& owner, TextView name, Accepts accepts, Array<double>& out)
{
    const auto holdsThem = [&](const FieldDescriptor& field)
    { return HoldsAnyDoubles(field) && accepts(field); };
    return GetAll(owner, name, holdsThem, CopyDoubles, attribute_numbers::DefaultDoubles, out);
}

bool HoldsVector(const FieldDescriptor& field)
{
    return field.Type() == zorvexFieldVector ||
           (field.Type() == zorvexFieldContentElement && field.Length() == kVectorSize);
}

/// A matrix, or a content element with a list of numbers that can be one.
bool HoldsMatrix(const FieldDescriptor& field)
{
    return field.Type() == zorvexFieldMatrix ||
           (field.Type() == zorvexFieldContentElement && field.IsVariableLength());
}

Result GetVector(ClassData& owner, TextView name, Vector& value)
{
    Array<double> numbers;
    Result result = GetDoublesOf(owner, name, HoldsVector, numbers);
    if (result.Ok())
    {
        value.x() = numbers[0];
        value.y() = numbers[1];
        value.z() = numbers[2];
    }
    return result;
}

Result GetTransf(ClassData& owner, TextView name, Transf& value)
{
    Array<double> numbers;
    Result result = GetDoublesOf(owner, name, HoldsMatrix, numbers);
    if (!result.Ok())
    {
        return result;
    }
    if (numbers.GetSize() != kMatrixSize)
    {
        return attribute_message::WrongType(name);
    }
    double matrix[kMatrixOrder][kMatrixOrder];
    for (int k = 0; k < kMatrixSize; ++k)
    {
        matrix[k % kMatrixOrder][k / kMatrixOrder] = numbers[k];
    }
    value.FromMatrix4x4(matrix);
    return result;
}

/// The references of a field that has a value; the WARNING for one that has none.
Result GetReferenceList(ClassData& owner, TextView name, Array<Reference>& out)
{
    out.RemoveAll();
    FieldData* data = nullptr;
    FieldDescriptor* field = attribute_store::FindField(owner, name, data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(name, owner);
    }
    const Part part = attribute_store::PartOf(*field);
    if (part == Part::Id || (part == Part::Value && !field->IsReference()))
    {
        return attribute_message::UnexpectedType();
    }
    if (!IsSet(data))
    {
        return attribute_message::NotSetWarning(name);
    }
    Result result = attribute_store::GetReferences(owner, *field, *data,
                                                   attribute_store::Follow::Nowhere, nullptr, out);
    if (result.Ok() && out.GetSize() == 0)
    {
        return attribute_message::NotSetWarning(name);
    }
    return result;
}

Result GetReference(ClassData& owner, TextView name, Reference& value)
{
    Array<Reference> references;
    Result result = GetReferenceList(owner, name, references);
    if (references.GetSize() == 0)
    {
        return result;
    }
    if (references.GetSize() > 1)
    {
        FieldData* data = nullptr;
        const FieldDescriptor* field = attribute_store::FindField(owner, name, data);
        return field->Type() == zorvexFieldMultipleReference ? attribute_message::SeveralIds()
                                                             : attribute_message::SeveralUris();
    }
    value = references[0];
    return result;
}

}  // namespace

// --- reading
// ----------------------------------------------------------------------------------------

Result Object::GetAttributeValue(const String& name, int& value) const
{
    const ObjectPin pin(this);
    return GetInt(*pin, View(name), value);
}

Result Object::GetAttributeValue(const String& name, double& value) const
{
    const ObjectPin pin(this);
    return GetDouble(*pin, View(name), value);
}

Result Object::GetAttributeValue(const String& name, String& value) const
{
    const ObjectPin pin(this);
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(*pin, View(name), data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(View(name), *pin);
    }
    value = attribute_store::GetText(*pin, *field, data);
    return Result();
}

Result Object::GetAttributeValue(const String& name, Array<int>& values) const
{
    const ObjectPin pin(this);
    return GetInts(*pin, View(name), values);
}

Result Object::GetAttributeValue(const String& name, Array<double>& values) const
{
    const ObjectPin pin(this);
    return GetDoublesOf(*pin, View(name), HoldsAnyDoubles, values);
}

Result Object::GetAttributeValue(const String& name, Array<Reference>& values) const
{
    const ObjectPin pin(this);
    return GetReferenceList(*pin, View(name), values);
}

Result Object::GetAttributeValue(const String& name, Reference& value) const
{
    const ObjectPin pin(this);
    return GetReference(*pin, View(name), value);
}

Result Object::GetAttributeValue(const String& name, Transf& value) const
{
    const ObjectPin pin(this);
    return GetTransf(*pin, View(name), value);
}

Result Object::GetAttributeValue(const String& name, Vector& value) const
{
    const ObjectPin pin(this);
    return GetVector(*pin, View(name), value);
}

Result Object::GetAttributeValues(Map<String, String>& values) const
{
    const ObjectPin pin(this);
    values.RemoveAll();
    Result result;
    const ClassDescriptor* descriptor = pin->GetClassDescriptor();
    if (descriptor == nullptr)
    {
        result.AddError(2, "Unable to get attribute values: the class isn't known");
        return result;
    }
    Array<FieldInfo> fields;
    const Result listed = descriptor->GetFields(fields, field_kind::kAttributeOrContent, 1);
    if (!listed.Ok())
    {
        result.AddError(2, String::Format("Unable to get attribute values: %s",
                                          ToUtf8(listed.GetMessage()).c_str()));
        return result;
    }
    for (const FieldInfo& info : fields)
    {
        const FieldDescriptor& field = *info.GetDescriptor();
        const FieldData* data = pin->FindField(&field);
        if (attribute_store::HasValue(*pin, field, data, true))
        {
            values.Add(field.Name(), attribute_store::GetText(*pin, field, data));
        }
    }
    return result;
}

Result Object::GetAttributeTypes(Map<String, int>& types) const
{
    const ObjectPin pin(this);
    types.RemoveAll();
    const ClassDescriptor* descriptor = pin->GetClassDescriptor();
    if (descriptor == nullptr)
    {
        return Result();
    }
    Array<FieldInfo> fields;
    Result result = descriptor->GetFields(fields, field_kind::kAttribute, 1);
    for (const FieldInfo& info : fields)
    {
        types.Add(info.GetName(), info.GetType());
    }
    return result;
}

// --- testing
// ----------------------------------------------------------------------------------------

int Object::HasAttribute(const String& name, int& hasValue) const
{
    const ObjectPin pin(this);
    hasValue = 0;
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(*pin, View(name), data);
    if (field == nullptr)
    {
        return 0;
    }
    hasValue = attribute_store::HasValue(*pin, *field, data, true) ? 1 : 0;
    return 1;
}

int Object::HasAttributeValue(const String& name, int& hasValue) const
{
    const ObjectPin pin(this);
    hasValue = 0;
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(*pin, View(name), data);
    if (field == nullptr)
    {
        return 0;
    }
    hasValue = attribute_store::HasValue(*pin, *field, data, false) ? 1 : 0;
    return hasValue != 0 || field->HasDefault() ? 1 : 0;
}

int Object::HasField(const String& name, unsigned int flags) const
{
    const ObjectPin pin(this);
    FieldData* data = nullptr;
    const FieldDescriptor* field = attribute_store::FindField(
        *pin, View(name), static_cast<int>(flags & field_kind::kAll), data);
    return field != nullptr && attribute_store::HasValue(*pin, *field, data, true) ? 1 : 0;
}

}  // namespace zorvex_api
