#include "zorvex_api/TypedAccess.h"

#include <algorithm>

#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/ClassData.h"
#include "objectmodel/ObjectCallbackBase.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/StoredText.h"
#include "runtime/Text.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Reference.h"
#include "zorvex_api/Transf.h"
#include "zorvex_api/Vector.h"

namespace zorvex_api::typed
{

namespace
{

constexpr int kAttributes = 2;
constexpr int kElements = 4;
constexpr int kBadArgument = 2;
constexpr int kBadIndex = 16;

// A String over a literal: no copy is made.
String Borrow(FieldName name)
{
    return String(name.Text(), -1);
}

TextView ViewOf(FieldName name)
{
    return TextView(name.Text(), name.Length());
}

/// The value of a field of exactly this name; null leaves it to the general way, which is needed
/// for defaults, near names and messages. Most reads find it here, at the cost of a few
/// comparisons.
const FieldData* FindValue(const ClassData& object, FieldName name)
{
    constexpr int kMost = 16;
    const TextView text = ViewOf(name);
    const FieldData* record = object.fields;
    for (int i = 0; record != nullptr && i < kMost; ++i, record = record->next)
    {
        const FieldDescriptor& field = *record->descriptor;
        if (field.NameView() == text && (field.Kind() & field_kind::kAttributeOrContent) != 0)
        {
            return record->IsSet() ? record : nullptr;
        }
    }
    return nullptr;
}

bool Holds(const FieldData* record, FieldData::Form form)
{
    return record != nullptr && FieldData::FormOf(*record->descriptor) == form;
}

[[noreturn]] void RaiseBadIndex()
{
    throw Exception(kBadIndex);
}

bool IsInside(const Array<Reference>& list, int index)
{
    return index >= 0 && index < list.GetSize();
}

Result Read(const Object& object, FieldName field, Array<Reference>& list)
{
    return object.GetAttributeValue(Borrow(field), list);
}

Result Write(Object& object, FieldName field, const Array<Reference>& list)
{
    return object.SetAttributeValue(Borrow(field), list);
}

Result SetEntry(Object& object, FieldName field, int index, const Reference& value)
{
    Array<Reference> list;
    Result result = Read(object, field, list);
    if (!IsInside(list, index))
    {
        result.AddError(Error(kBadIndex));
        return result;
    }
    list[index] = value;
    return Write(object, field, list);
}

int ReplaceEntry(Object& object, FieldName field, int index, const Reference& value)
{
    Array<Reference> list;
    if (index < 0 || !Read(object, field, list).Ok() || index >= list.GetSize())
    {
        return 0;
    }
    list[index] = value;
    return Write(object, field, list).Ok();
}

template <class Match>
void RemoveFirst(Object& object, FieldName field, Match match)
{
    Array<Reference> list;
    if (!Read(object, field, list).Ok())
    {
        return;
    }
    const Reference* found = std::find_if(list.begin(), list.end(), match);
    if (found == list.end())
    {
        return;
    }
    list.RemoveAt(static_cast<int>(found - list.begin()));
    Write(object, field, list);
}

template <class T>
Result ReadList(const Object& object, FieldName field, int count, T* values)
{
    if (values == nullptr)
    {
        return Result(kBadArgument);
    }
    Array<T> list;
    Result result = object.GetAttributeValue(Borrow(field), list);
    if (result.Ok())
    {
        std::copy_n(list.begin(), std::min(count, list.GetSize()), values);
    }
    return result;
}

template <class T>
Result WriteList(Object& object, FieldName field, int count, const T* values)
{
    return object.SetAttributeValue(Borrow(field), Array<T>(values == nullptr ? 0 : count, values));
}

// Reads exactly `count` numbers; another number of them counts as no value.
Result ReadNumbers(const Object& object, FieldName field, int count, Array<double>& numbers)
{
    const String name = Borrow(field);
    Result result = object.GetAttributeValue(name, numbers);
    if (result.Ok() && numbers.GetSize() != count)
    {
        result.AddError(kBadArgument, String::Format("Attribute: \"%s\" is not set.",
                                                     static_cast<const char*>(name)));
    }
    return result;
}

// Counts the children of a field and keeps one of them, without a copy of their list.
class ElementPicker final : public ObjectCallbackBase
{
public:
    explicit ElementPicker(int index) : m_index(index) {}

    void Process(Object** children, int count) override
    {
        if (m_index >= m_count && m_index < m_count + count)
        {
            m_found = children[m_index - m_count];
        }
        m_count += count;
    }
    int Process(Object* child) override
    {
        Process(&child, 1);
        return 1;
    }

    Object* Found() const { return m_found; }
    int Count() const { return m_count; }

private:
    int m_index;
    int m_count = 0;
    Object* m_found = nullptr;
};

ElementPicker PickElement(const Object& object, FieldName field, int index)
{
    const ObjectPin pin(&object);
    ElementPicker picker(index);
    pin->ElementsByField(ViewOf(field), &picker);
    return picker;
}

}  // namespace

// --- making ------------------------------------------------------------------------------------

Result Attach(Object& object, Object* owner)
{
    return owner == nullptr ? Result() : object.SetOwner(owner);
}

void RaiseNotAttached(const Result& result)
{
    throw Exception(kBadArgument, result.GetMessage());
}

// --- values ------------------------------------------------------------------------------------

int GetInt(const Object& object, FieldName field)
{
    {
        const ObjectPin pin(&object);
        if (const FieldData* found = FindValue(*pin, field); Holds(found, FieldData::Form::Int))
        {
            return attribute_numbers::IsLogical(*found->descriptor) ? found->Int() != 0
                                                                    : found->Int();
        }
    }
    int value = 0;
    object.GetAttributeValue(Borrow(field), value);
    return value;
}

double GetDouble(const Object& object, FieldName field)
{
    {
        const ObjectPin pin(&object);
        if (const FieldData* found = FindValue(*pin, field); Holds(found, FieldData::Form::Double))
        {
            return found->Double();
        }
    }
    double value = 0.0;
    object.GetAttributeValue(Borrow(field), value);
    return value;
}

String GetString(const Object& object, FieldName field)
{
    {
        const ObjectPin pin(&object);
        const FieldData* found = FindValue(*pin, field);
        if (found != nullptr && found->descriptor->Type() == zorvexFieldString)
        {
            return stored::ToString(found->Text());
        }
    }
    String value;
    const Result result = object.GetAttributeValue(Borrow(field), value);
    return result.HasError() ? String() : value;
}

Result Set(Object& object, FieldName field, int value)
{
    return object.SetAttributeValue(Borrow(field), value);
}

Result Set(Object& object, FieldName field, double value)
{
    return object.SetAttributeValue(Borrow(field), value);
}

Result Set(Object& object, FieldName field, const String& value)
{
    return object.SetAttributeValue(Borrow(field), value);
}

Result Get(const Object& object, FieldName field, Array<int>& values)
{
    return object.GetAttributeValue(Borrow(field), values);
}

Result Get(const Object& object, FieldName field, Array<double>& values)
{
    return object.GetAttributeValue(Borrow(field), values);
}

Result Get(const Object& object, FieldName field, Vector& value)
{
    return object.GetAttributeValue(Borrow(field), value);
}

Result Get(const Object& object, FieldName field, Transf& value)
{
    return object.GetAttributeValue(Borrow(field), value);
}

Result Set(Object& object, FieldName field, const Array<int>& values)
{
    return object.SetAttributeValue(Borrow(field), values);
}

Result Set(Object& object, FieldName field, const Array<double>& values)
{
    return object.SetAttributeValue(Borrow(field), values);
}

Result Set(Object& object, FieldName field, const Vector& value)
{
    return object.SetAttributeValue(Borrow(field), value);
}

Result Set(Object& object, FieldName field, const Transf& value)
{
    return object.SetAttributeValue(Borrow(field), value);
}

Result GetList(const Object& object, FieldName field, int count, int* values)
{
    return ReadList(object, field, count, values);
}

Result GetList(const Object& object, FieldName field, int count, double* values)
{
    return ReadList(object, field, count, values);
}

Result SetList(Object& object, FieldName field, int count, const int* values)
{
    return WriteList(object, field, count, values);
}

Result SetList(Object& object, FieldName field, int count, const double* values)
{
    return WriteList(object, field, count, values);
}

Result GetContent(const Object& object, FieldName field, Vector& value)
{
    Array<double> numbers;
    Result result = ReadNumbers(object, field, 3, numbers);
    if (result.Ok())
    {
        value = Vector(numbers.GetData());
    }
    return result;
}

Result GetContent(const Object& object, FieldName field, Transf& value)
{
    Array<double> numbers;
    Result result = ReadNumbers(object, field, 16, numbers);
    if (!result.Ok())
    {
        return result;
    }
    double matrix[4][4];
    for (int k = 0; k < 16; ++k)
    {
        matrix[k % 4][k / 4] = numbers[k];
    }
    value.FromMatrix4x4(matrix);
    return result;
}

Result SetContent(Object& object, FieldName field, const Vector& value)
{
    const double numbers[] = {value.x(), value.y(), value.z()};
    return WriteList(object, field, 3, numbers);
}

Result SetContent(Object& object, FieldName field, const Transf& value)
{
    double matrix[4][4];
    value.ToMatrix4x4(matrix);
    double numbers[16];
    for (int k = 0; k < 16; ++k)
    {
        numbers[k] = matrix[k % 4][k / 4];
    }
    return WriteList(object, field, 16, numbers);
}

int Has(const Object& object, FieldName field)
{
    return object.HasField(Borrow(field), kAttributes);
}

Result Unset(Object& object, FieldName field)
{
    return object.DeleteAttribute(Borrow(field));
}

// --- one URI -----------------------------------------------------------------------------------

Result GetURI(const Object& object, FieldName field, Handle& handle)
{
    Reference reference;
    Result result = object.GetAttributeValue(Borrow(field), reference);
    handle = reference.GetHandle();
    return result;
}

Result SetURI(Object& object, FieldName field, const Handle& handle)
{
    return object.SetAttributeValue(Borrow(field), Reference(handle));
}

Result ResolveURI(Object& object, FieldName field, Handle& handle, Configuration* configuration)
{
    Reference reference;
    Result result = object.ResolveAttributeValue(Borrow(field), reference, configuration);
    handle = reference.GetHandle();
    return result;
}

// --- lists of URIs -----------------------------------------------------------------------------

Result AddURI(Object& object, FieldName field, const String& text)
{
    return object.AddAttributeValue(Borrow(field), Reference(text));
}

Result AddURI(Object& object, FieldName field, const Handle& handle)
{
    return object.AddAttributeValue(Borrow(field), Reference(handle));
}

int CountReferences(const Object& object, FieldName field)
{
    Array<Reference> list;
    Read(object, field, list);
    return list.GetSize();
}

String GetURI(const Object& object, FieldName field, int index)
{
    Array<Reference> list;
    Read(object, field, list);
    if (!IsInside(list, index))
    {
        RaiseBadIndex();
    }
    return list[index].GetString();
}

Result GetURI(const Object& object, FieldName field, int index, Handle& handle)
{
    Array<Reference> list;
    Result result = Read(object, field, list);
    if (!IsInside(list, index))
    {
        result.AddError(Error(kBadIndex));
        return result;
    }
    handle = list[index].GetHandle();
    return result;
}

Result SetURI(Object& object, FieldName field, int index, const String& text)
{
    return SetEntry(object, field, index, Reference(text));
}

Result SetURI(Object& object, FieldName field, int index, const Handle& handle)
{
    return SetEntry(object, field, index, Reference(handle));
}

Result DeleteURI(Object& object, FieldName field, int index)
{
    Array<Reference> list;
    Result result = Read(object, field, list);
    if (!IsInside(list, index))
    {
        result.AddError(Error(kBadIndex));
        return result;
    }
    list.RemoveAt(index);
    return Write(object, field, list);
}

Result ResolveURI(Object& object, FieldName field, int index, Handle& handle,
                  Configuration* configuration)
{
    Array<Reference> list;
    Result result = object.ResolveAttributeValue(Borrow(field), list, configuration);
    if (!IsInside(list, index))
    {
        result.AddError(Error(kBadIndex));
        return result;
    }
    handle = list[index].GetHandle();
    return result;
}

// --- one reference -----------------------------------------------------------------------------

String GetId(const Object& object, FieldName field)
{
    Reference reference;
    object.GetAttributeValue(Borrow(field), reference);
    return reference.GetString();
}

int SetId(Object& object, FieldName field, const String& id)
{
    return object.SetAttributeValue(Borrow(field), id).Ok();
}

int SetRef(Object& object, FieldName field, Object* target)
{
    if (target == nullptr)
    {
        object.DeleteAttribute(Borrow(field));
        return 1;
    }
    return object.SetAttributeValue(Borrow(field), Reference(Handle(target))).Ok();
}

Object* ResolveRef(Object& object, FieldName field, Configuration* configuration)
{
    return ResolveRef(object, field, 0, configuration);
}

// --- lists of references -----------------------------------------------------------------------

int AddId(Object& object, FieldName field, const String& id)
{
    return AddURI(object, field, id).Ok();
}

int AddRef(Object& object, FieldName field, Object* target)
{
    return AddURI(object, field, Handle(target)).Ok();
}

String GetId(const Object& object, FieldName field, int index)
{
    if (index < 0)
    {
        RaiseBadIndex();
    }
    Array<Reference> list;
    if (!Read(object, field, list).Ok())
    {
        return String();
    }
    if (index >= list.GetSize())
    {
        RaiseBadIndex();
    }
    return list[index].GetString();
}

void GetIds(const Object& object, FieldName field, Array<String>& ids)
{
    Array<Reference> list;
    Read(object, field, list);
    for (const Reference& reference : list)
    {
        ids.Add(reference.GetString());
    }
}

int SetId(Object& object, FieldName field, int index, const String& id)
{
    return ReplaceEntry(object, field, index, Reference(id));
}

int SetRef(Object& object, FieldName field, int index, Object* target)
{
    return ReplaceEntry(object, field, index, Reference(Handle(target)));
}

void RemoveRef(Object& object, FieldName field, int index)
{
    if (index < 0)
    {
        RaiseBadIndex();
    }
    Array<Reference> list;
    if (!Read(object, field, list).Ok())
    {
        return;
    }
    if (index >= list.GetSize())
    {
        RaiseBadIndex();
    }
    list.RemoveAt(index);
    Write(object, field, list);
}

void RemoveRef(Object& object, FieldName field, const String& id)
{
    RemoveFirst(object, field, [&](const Reference& entry) { return entry.GetString() == id; });
}

void RemoveRef(Object& object, FieldName field, const Object* target)
{
    if (target == nullptr)
    {
        return;
    }
    RemoveFirst(object, field,
                [&](const Reference& entry) { return entry.GetHandle().GetObject() == target; });
}

Object* ResolveRef(Object& object, FieldName field, int index, Configuration* configuration)
{
    Array<Reference> list;
    const Result result = object.ResolveAttributeValue(Borrow(field), list, configuration);
    return result.Ok() && IsInside(list, index) ? list[index].GetHandle().GetObject() : nullptr;
}

void ResolveRefs(Object& object, FieldName field, Array<Object*>& targets,
                 Configuration* configuration)
{
    Array<Reference> list;
    object.ResolveAttributeValue(Borrow(field), list, configuration);
    for (const Reference& reference : list)
    {
        if (Object* target = reference.GetHandle().GetObject())
        {
            targets.Add(target);
        }
    }
}

// --- elements ----------------------------------------------------------------------------------

Object* GetElement(const Object& object, FieldName field)
{
    return GetElement(object, field, 0);
}

Object* GetElement(const Object& object, FieldName field, int index)
{
    return PickElement(object, field, index).Found();
}

int CountElements(const Object& object, FieldName field)
{
    return PickElement(object, field, -1).Count();
}

Object* AddSingleElement(Object& object, const char16_t* className, FieldName field)
{
    if (object.HasField(Borrow(field), kElements))
    {
        return nullptr;
    }
    return AddElement(object, className, field);
}

Object* AddElement(Object& object, const char16_t* className, FieldName field)
{
    Object* element = nullptr;
    object.AddElement(String(className, -1), Borrow(field), element);
    return element;
}

Result AttachElement(Object& object, Object* element, FieldName field)
{
    return element == nullptr ? Result(kBadArgument) : element->SetOwner(&object, Borrow(field));
}

void GetElements(const Object& object, FieldName field, Array<Object*>& elements)
{
    elements.RemoveAll();
    object.GetElementsByField(Borrow(field), elements);
}

void DeleteElement(Object& object, FieldName field, int index)
{
    Object* element = GetElement(object, field, index);
    if (element == nullptr)
    {
        RaiseBadIndex();
    }
    object.DeleteElement(element);
}

void DeleteElement(Object& object, Object* element)
{
    object.DeleteElement(element);
}

void DeleteElements(Object& object, FieldName field)
{
    object.DeleteElementsByField(Borrow(field));
}

}  // namespace zorvex_api::typed
