#pragma once

#include <cstddef>

#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

/// What the accessors of the generated classes do, once for all of them.
///
/// An accessor of a generated class is one call of an operation below with the name of its field.
/// `field` is that name, or for an element the key "namespace:class:element"; it has to be a
/// literal or live as long. Applications use the accessors.
namespace zorvex_api::typed
{

/// The name of a field, with its length: a literal.
class FieldName
{
public:
    template <size_t N>
    constexpr FieldName(const char16_t (&literal)[N]) : m_text(literal), m_length(N - 1)
    {
    }
    constexpr const char16_t* Text() const { return m_text; }
    constexpr size_t Length() const { return m_length; }

private:
    const char16_t* m_text;
    size_t m_length;
};

/// Views an object as the class that its field is declared with. Generated classes have no data of
/// their own and a single line of bases, so that all of their addresses are the same. The class
/// needn't be defined at this point.
template <class T>
T* As(Object* object)
{
    return static_cast<T*>(static_cast<void*>(object));
}
template <class T>
Object* ToObject(T* object)
{
    return static_cast<Object*>(static_cast<void*>(object));
}

/// Replaces what `to` holds by the same objects, as the class of their field.
template <class T>
void AssignAs(const Array<Object*>& from, Array<T*>& to)
{
    to.RemoveAll();
    for (Object* object : from)
    {
        to.Add(As<T>(object));
    }
}

// --- making ------------------------------------------------------------------------------------

/// Attaches a new object to its owner. Nothing happens for null.
ZORVEX_API Result Attach(Object& object, Object* owner);
/// Raises code 2 with the message of `result`.
[[noreturn]] ZORVEX_API void RaiseNotAttached(const Result& result);

// --- values ------------------------------------------------------------------------------------

/// 0, 0.0 or the empty text when there is no value.
ZORVEX_API int GetInt(const Object& object, FieldName field);
ZORVEX_API double GetDouble(const Object& object, FieldName field);
ZORVEX_API String GetString(const Object& object, FieldName field);

ZORVEX_API Result Set(Object& object, FieldName field, int value);
ZORVEX_API Result Set(Object& object, FieldName field, double value);
ZORVEX_API Result Set(Object& object, FieldName field, const String& value);

ZORVEX_API Result Get(const Object& object, FieldName field, Array<int>& values);
ZORVEX_API Result Get(const Object& object, FieldName field, Array<double>& values);
ZORVEX_API Result Get(const Object& object, FieldName field, Vector& value);
ZORVEX_API Result Get(const Object& object, FieldName field, Transf& value);
ZORVEX_API Result Set(Object& object, FieldName field, const Array<int>& values);
ZORVEX_API Result Set(Object& object, FieldName field, const Array<double>& values);
ZORVEX_API Result Set(Object& object, FieldName field, const Vector& value);
ZORVEX_API Result Set(Object& object, FieldName field, const Transf& value);

/// A list of `count` values; `values` has room for as many. To set, null stands for an empty list,
/// which a field of fixed length refuses; to get, it gives code 2.
ZORVEX_API Result GetList(const Object& object, FieldName field, int count, int* values);
ZORVEX_API Result GetList(const Object& object, FieldName field, int count, double* values);
ZORVEX_API Result SetList(Object& object, FieldName field, int count, const int* values);
ZORVEX_API Result SetList(Object& object, FieldName field, int count, const double* values);

/// A Vector or Transf kept as a list of numbers in an element of its own.
ZORVEX_API Result GetContent(const Object& object, FieldName field, Vector& value);
ZORVEX_API Result GetContent(const Object& object, FieldName field, Transf& value);
ZORVEX_API Result SetContent(Object& object, FieldName field, const Vector& value);
ZORVEX_API Result SetContent(Object& object, FieldName field, const Transf& value);

/// 1 when the attribute has a value or a default.
ZORVEX_API int Has(const Object& object, FieldName field);
ZORVEX_API Result Unset(Object& object, FieldName field);

// --- one URI -----------------------------------------------------------------------------------

ZORVEX_API Result GetURI(const Object& object, FieldName field, Handle& handle);
ZORVEX_API Result SetURI(Object& object, FieldName field, const Handle& handle);
ZORVEX_API Result ResolveURI(Object& object, FieldName field, Handle& handle,
                             Configuration* configuration);

// --- lists of URIs; an index out of range is code 16 -------------------------------------------

ZORVEX_API Result AddURI(Object& object, FieldName field, const String& text);
ZORVEX_API Result AddURI(Object& object, FieldName field, const Handle& handle);
ZORVEX_API int CountReferences(const Object& object, FieldName field);
/// Raises code 16 for an index out of range.
ZORVEX_API String GetURI(const Object& object, FieldName field, int index);
ZORVEX_API Result GetURI(const Object& object, FieldName field, int index, Handle& handle);
ZORVEX_API Result SetURI(Object& object, FieldName field, int index, const String& text);
ZORVEX_API Result SetURI(Object& object, FieldName field, int index, const Handle& handle);
ZORVEX_API Result DeleteURI(Object& object, FieldName field, int index);
ZORVEX_API Result ResolveURI(Object& object, FieldName field, int index, Handle& handle,
                             Configuration* configuration);

// --- one reference -----------------------------------------------------------------------------

ZORVEX_API String GetId(const Object& object, FieldName field);
ZORVEX_API int SetId(Object& object, FieldName field, const String& id);
/// Null removes the reference and gives 1.
ZORVEX_API int SetRef(Object& object, FieldName field, Object* target);
ZORVEX_API Object* ResolveRef(Object& object, FieldName field, Configuration* configuration);

// --- lists of references -----------------------------------------------------------------------

ZORVEX_API int AddId(Object& object, FieldName field, const String& id);
ZORVEX_API int AddRef(Object& object, FieldName field, Object* target);
/// Raises code 16 for an index out of range; the empty text when the list can't be read.
ZORVEX_API String GetId(const Object& object, FieldName field, int index);
/// Appends.
ZORVEX_API void GetIds(const Object& object, FieldName field, Array<String>& ids);
/// 0 for an index out of range.
ZORVEX_API int SetId(Object& object, FieldName field, int index, const String& id);
ZORVEX_API int SetRef(Object& object, FieldName field, int index, Object* target);
/// Raises code 16 for an index out of range.
ZORVEX_API void RemoveRef(Object& object, FieldName field, int index);
/// The first one with this text or object; nothing happens when there is none.
ZORVEX_API void RemoveRef(Object& object, FieldName field, const String& id);
ZORVEX_API void RemoveRef(Object& object, FieldName field, const Object* target);
/// Null when out of range.
ZORVEX_API Object* ResolveRef(Object& object, FieldName field, int index,
                              Configuration* configuration);
ZORVEX_API void ResolveRefs(Object& object, FieldName field, Array<Object*>& targets,
                            Configuration* configuration);
/// Appends.
template <class T>
void ResolveRefs(Object& object, FieldName field, Array<T*>& targets, Configuration* configuration)
{
    Array<Object*> objects;
    ResolveRefs(object, field, objects, configuration);
    for (Object* target : objects)
    {
        targets.Add(As<T>(target));
    }
}

// --- elements ----------------------------------------------------------------------------------

/// Null when there is none.
ZORVEX_API Object* GetElement(const Object& object, FieldName field);
ZORVEX_API Object* GetElement(const Object& object, FieldName field, int index);
ZORVEX_API int CountElements(const Object& object, FieldName field);
/// Null when the field has an element already, or none can be made.
ZORVEX_API Object* AddSingleElement(Object& object, const char16_t* className, FieldName field);
ZORVEX_API Object* AddElement(Object& object, const char16_t* className, FieldName field);
/// Null gives code 2.
ZORVEX_API Result AttachElement(Object& object, Object* element, FieldName field);
/// Empties `elements` and fills it.
ZORVEX_API void GetElements(const Object& object, FieldName field, Array<Object*>& elements);
template <class T>
void GetElements(const Object& object, FieldName field, Array<T*>& elements)
{
    Array<Object*> objects;
    GetElements(object, field, objects);
    AssignAs(objects, elements);
}
/// Raises code 16 for an index out of range.
ZORVEX_API void DeleteElement(Object& object, FieldName field, int index);
ZORVEX_API void DeleteElement(Object& object, Object* element);
ZORVEX_API void DeleteElements(Object& object, FieldName field);

}  // namespace zorvex_api::typed
