#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "objectmodel/AttributeMessages.h"
#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/AttributeWrite.h"
#include "objectmodel/ConfigurationStack.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/ObjectPin.h"
#include "objectmodel/TransformText.h"
#include "runtime/NumberText.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Transf.h"
#include "zorvex_api/Vector.h"

/// Setting, adding and resetting attributes by name.

namespace zorvex_api
{

namespace
{

using attribute_store::Part;
using Form = FieldData::Form;

constexpr unsigned int kSkipKnown = 2;
constexpr int kInvalidArgument = 19;
constexpr int kMatrixOrder = 4;
constexpr int kMatrixSize = kMatrixOrder * kMatrixOrder;

/// A field that was found by name.
struct Target
{
    ClassData& owner;
    TextView name;
    FieldDescriptor* field = nullptr;
    FieldData* data = nullptr;

    Target(ClassData& object, TextView fieldName) : owner(object), name(fieldName)
    {
        field = attribute_store::FindField(owner, name, data);
    }
    bool IsUntouched() const { return data == nullptr; }
    bool IsValue() const { return attribute_store::PartOf(*field) == Part::Value; }
    /// Makes the record ready for a value, and the tree take note of the change. Null when the
    /// field can't hold one.
    FieldData* Open()
    {
        data = attribute_write::NeedRecord(owner, *field, data);
        owner.MarkNetwork();
        return data;
    }
};

// --- one number
// -------------------------------------------------------------------------------------

Result SetIdNumber(Target& target, int value)
{
    if (value <= 0 || !target.owner.SetId(IdValue(static_cast<std::uint32_t>(value)), false))
    {
        return attribute_message::CannotSet(target.name);
    }
    return Result();
}

Result SetLoad(Target& target, int value)
{
    FieldData* data = target.Open();
    if (data == nullptr)
    {
        return attribute_message::CannotCreate(target.name, target.owner);
    }
    attribute_write::SetLoad(*data->External(), value != 0);
    return Result();
}

bool IsDefaultInt(const FieldDescriptor& field, int value)
{
    if (!field.HasDefault())
    {
        return false;
    }
    if (attribute_numbers::IsLogical(field))
    {
        return (field.DefaultView() == u"true") == (value != 0);
    }
    return number::ParseInt(field.DefaultView()).value == value;
}

Result SetInt(Target& target, int value)
{
    switch (attribute_store::PartOf(*target.field))
    {
        case Part::Id:
            return SetIdNumber(target, value);
        case Part::Load:
            return SetLoad(target, value);
        case Part::Location:
            return attribute_message::WrongType(target.name);
        case Part::Value:
            break;
    }
    const FieldDescriptor& field = *target.field;
    if (FieldData::FormOf(field) != Form::Int)
    {
        return attribute_message::WrongType(target.name);
    }
    if (target.IsUntouched() && IsDefaultInt(field, value))
    {
        return Result();
    }
    target.Open()->SetInt(attribute_numbers::IsLogical(field) ? value != 0 : value);
    return Result();
}

Result SetDouble(Target& target, double value)
{
    const FieldDescriptor& field = *target.field;
    if (!target.IsValue() || FieldData::FormOf(field) != Form::Double)
    {
        return attribute_message::WrongType(target.name);
    }
    if (target.IsUntouched() && field.HasDefault() &&
        number::ParseDouble(field.DefaultView()).value == value)
    {
        return Result();
    }
    target.Open()->SetDouble(value);
    return Result();
}

// --- lists of numbers
// -------------------------------------------------------------------------------

bool IsDefaultInts(const FieldDescriptor& field, const int* values, int count)
{
    if (!field.HasDefault())
    {
        return false;
    }
    const std::vector<int> defaults = attribute_numbers::DefaultInts(field);
    return std::equal(defaults.begin(), defaults.end(), values, values + count);
}

bool IsDefaultDoubles(const FieldDescriptor& field, const double* values, int count)
{
    if (!field.HasDefault())
    {
        return false;
    }
    const std::vector<double> defaults = attribute_numbers::DefaultDoubles(field);
    return std::equal(defaults.begin(), defaults.end(), values, values + count);
}

Result SetInts(Target& target, const Array<int>& source)
{
    const FieldDescriptor& field = *target.field;
    const Form form = target.IsValue() ? FieldData::FormOf(field) : Form::None;
    const int count = source.GetSize();
    const bool fits = form == Form::IntArray || (form == Form::Int && count == 1) ||
                      (form == Form::Ints && count == field.Length());
    if (!fits)
    {
        return attribute_message::WrongType(target.name);
    }
    std::vector<int> values(source.begin(), source.end());
    if (attribute_numbers::IsLogical(field))
    {
        std::transform(values.begin(), values.end(), values.begin(),
                       [](int value) { return value != 0; });
    }
    if (target.IsUntouched() && IsDefaultInts(field, values.data(), count))
    {
        return Result();
    }
    FieldData& data = *target.Open();
    switch (form)
    {
        case Form::Int:
            data.SetInt(values[0]);
            break;
        case Form::Ints:
            std::copy(values.begin(), values.end(), data.Ints());
            break;
        default:
            attribute_write::Replace(*data.IntArray(), values.data(), count);
            break;
    }
    return Result();
}

/// The type of a Transform goes when its text could not show the matrix.
void FitTransformType(ClassData& owner, const double* matrix)
{
    if (!transform_text::AppliesTo(owner) ||
        transform_text::Expresses(transform_text::KindOf(owner), matrix))
    {
        return;
    }
    FieldData* data = nullptr;
    const FieldDescriptor* field =
        attribute_store::FindField(owner, u"type", field_kind::kAttribute, data);
    if (field != nullptr)
    {
        attribute_store::ResetValue(owner, *field, data);
    }
}

/// The caller has made sure that the type of the field takes these numbers.
Result StoreDoubles(Target& target, const double* values, int count)
{
    const FieldDescriptor& field = *target.field;
    const Form form = FieldData::FormOf(field);
    const bool fits = form == Form::DoubleArray || (form == Form::Double && count == 1) ||
                      (form == Form::Doubles && count == FieldData::NumberCount(field));
    if (!fits)
    {
        return attribute_message::WrongType(target.name);
    }
    if (target.IsUntouched() && IsDefaultDoubles(field, values, count))
    {
        return Result();
    }
    if (field.Type() == zorvexFieldMatrix)
    {
        FitTransformType(target.owner, values);
    }
    FieldData& data = *target.Open();
    switch (form)
    {
        case Form::Double:
            data.SetDouble(values[0]);
            break;
        case Form::Doubles:
            std::copy(values, values + count, data.Doubles());
            break;
        default:
            attribute_write::Replace(*data.DoubleArray(), values, count);
            break;
    }
    return Result();
}

Result SetDoubles(Target& target, const Array<double>& source)
{
    if (!target.IsValue())
    {
        return attribute_message::WrongType(target.name);
    }
    const std::vector<double> values(source.begin(), source.end());  // `source` may be the field's
    return StoreDoubles(target, values.data(), static_cast<int>(values.size()));
}

Result SetVector(Target& target, const Vector& value)
{
    const FieldDescriptor& field = *target.field;
    const double numbers[] = {value.x(), value.y(), value.z()};
    const bool isContent = field.Type() == zorvexFieldContentElement && field.Length() == 3;
    if (!target.IsValue() || (field.Type() != zorvexFieldVector && !isContent))
    {
        return attribute_message::WrongType(target.name);
    }
    return StoreDoubles(target, numbers, 3);
}

Result SetTransf(Target& target, const Transf& value)
{
    const FieldDescriptor& field = *target.field;
    const bool isMatrix = field.Type() == zorvexFieldMatrix;
    const bool isContent = field.Type() == zorvexFieldContentElement && field.IsVariableLength();
    if (!target.IsValue() || (!isMatrix && !isContent))
    {
        return attribute_message::WrongType(target.name);
    }
    double matrix[kMatrixOrder][kMatrixOrder];
    value.ToMatrix4x4(matrix);
    double numbers[kMatrixSize];
    for (int k = 0; k < kMatrixSize; ++k)
    {
        numbers[k] = matrix[k % kMatrixOrder][k / kMatrixOrder];
    }
    return StoreDoubles(target, numbers, kMatrixSize);
}

/// Finds the field and sets it by `set`, unless the class has no such attribute.
template <class Value>
Result SetValue(const Object* object, const String& name, Result (*set)(Target&, Value),
                std::type_identity_t<Value> value)
{
    const ObjectPin pin(object);
    Target target(*pin, View(name));
    return target.field != nullptr ? set(target, value)
                                   : attribute_message::NotAllowed(target.name, target.owner);
}

Result SetReferences(const Object* object, const String& name, const Reference* values, int count)
{
    const ObjectPin pin(object);
    const Target target(*pin, View(name));
    if (target.field == nullptr)
    {
        return attribute_message::NotAllowed(target.name, target.owner);
    }
    return attribute_store::SetReferences(target.owner, *target.field, target.name, values, count);
}

Result Reset(const Object* object, const String& name)
{
    const ObjectPin pin(object);
    const Target target(*pin, View(name));
    if (target.field == nullptr)
    {
        return attribute_message::NotAllowed(target.name, target.owner);
    }
    attribute_store::ResetValue(target.owner, *target.field, target.data);
    target.owner.MarkNetwork();
    return Result();
}

}  // namespace

Result Object::SetAttributeValue(const String& name, int value)
{
    return SetValue(this, name, &SetInt, value);
}

Result Object::SetAttributeValue(const String& name, double value)
{
    return SetValue(this, name, &SetDouble, value);
}

Result Object::SetAttributeValue(const String& name, const String& value)
{
    const ObjectPin pin(this);
    Target target(*pin, View(name));
    if (target.field == nullptr)
    {
        return attribute_message::NotAllowed(target.name, target.owner);
    }
    attribute_store::SetTextOptions options;
    options.emptyIsValue = value.IsEmpty() && configuration_stack::EmptyIsValue();
    return attribute_store::SetText(target.owner, *target.field, target.name, View(value), options);
}

Result Object::SetAttributeValue(const String& name, const Array<int>& values)
{
    return SetValue(this, name, &SetInts, values);
}

Result Object::SetAttributeValue(const String& name, const Array<double>& values)
{
    return SetValue(this, name, &SetDoubles, values);
}

Result Object::SetAttributeValue(const String& name, const Array<Reference>& values)
{
    return SetReferences(this, name, values.GetData(), values.GetSize());
}

Result Object::SetAttributeValue(const String& name, const Reference& value)
{
    return SetReferences(this, name, &value, 1);
}

Result Object::SetAttributeValue(const String& name, const Transf& value)
{
    return SetValue(this, name, &SetTransf, value);
}

Result Object::SetAttributeValue(const String& name, const Vector& value)
{
    return SetValue(this, name, &SetVector, value);
}

Result Object::AddAttributeValue(const String& name, const Reference& value)
{
    return AddAttributeValue(name, value, 0);
}

Result Object::AddAttributeValue(const String& name, const Reference& value, unsigned int flags)
{
    if (flags != 0 && flags != kSkipKnown)
    {
        return Result(kInvalidArgument, "flags");
    }
    const ObjectPin pin(this);
    const Target target(*pin, View(name));
    if (target.field == nullptr)
    {
        return attribute_message::NotAllowed(target.name, target.owner);
    }
    return attribute_store::AddReferences(target.owner, *target.field, target.name, value,
                                          flags == kSkipKnown);
}

Result Object::ResetAttributeValue(const String& name)
{
    return Reset(this, name);
}

Result Object::DeleteAttribute(const String& name)
{
    return Reset(this, name);
}

}  // namespace zorvex_api
