#pragma once

#include <functional>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class FieldDescriptor;

/// What a field holds. Each generated enumeration has a code of its own above zorvexFieldEnum,
/// which differs from run to run.
enum zorvexFieldType
{
    zorvexFieldUnset = 0,
    zorvexFieldLogical = 1,
    zorvexFieldInt = 2,
    zorvexFieldDouble = 3,
    zorvexFieldString = 4,
    zorvexFieldSingleReference = 5,
    zorvexFieldMultipleReference = 6,
    zorvexFieldSingleElement = 7,
    zorvexFieldMultipleElement = 8,
    zorvexFieldSingleURI = 9,
    zorvexFieldMultipleURI = 10,
    zorvexFieldExternalReference = 11,
    zorvexFieldInternal = 12,
    zorvexFieldContentElement = 13,
    zorvexFieldMatrix = 19,
    zorvexFieldVector = 20,
    zorvexFieldEnum = 10000
};

/// One kind of child that a class allows.
struct FieldType
{
    String m_name;
    short m_class = -999;  ///< the class value of the field's class, -999 when it has none
    int m_type = 0;        ///< a zorvexFieldType code
};

inline bool operator==(const FieldType& left, const FieldType& right)
{
    return left.m_class == right.m_class && left.m_type == right.m_type &&
           left.m_name == right.m_name;
}

/// A copyable view of one field of a class: an attribute, a child element or the content.
///
/// Holds a pointer that is good as long as the class is registered. A FieldInfo that names no field
/// answers 0, -999 or an empty text to everything. Obtained from ClassDescriptor::GetField.
class ZORVEX_API FieldInfo : public Allocator
{
public:
    FieldInfo();
    explicit FieldInfo(FieldDescriptor* descriptor);

    /// The name in the generic interface; empty for a field that takes any element.
    const String& GetName() const;
    /// A zorvexFieldType code, or a number above zorvexFieldEnum for an enumeration.
    int GetType() const;
    /// The class value of what the field holds or refers to; -21 integer, -22 double, -23 text,
    /// -24 logical content; -999 when there is none.
    short GetClass() const;
    /// The class name as it was registered; of several classes their names, divided by blanks.
    const String& GetClassString() const;
    /// The default as it was registered; "suppressId=true" on an element field whose children are
    /// written without their ids.
    const String& GetDefaultValue() const;
    int HasDefaultValue() const;
    /// The number of values of a fixed array, 0 for a variable one and for a field that is no
    /// array.
    int GetArrayLength() const;
    int IsArray() const;
    int IsVariableLengthArray() const;
    int IsAttribute() const;
    int IsElement() const;
    int IsContent() const;
    int IsReference() const;
    int IsEnum() const;
    int IsRequired() const;
    int IsDeprecated() const;
    /// Appends the allowed texts of an enumeration; 0 for a field that is none.
    int GetEnumerationValues(Array<String>& values) const;
    /// The library's own record, null when this names no field. Owned by the class.
    FieldDescriptor* GetDescriptor() const;

private:
    FieldDescriptor* m_descriptor;  // not owned, may be null
};

/// The same field of the same class; two that name no field are equal.
inline bool operator==(const FieldInfo& left, const FieldInfo& right)
{
    return left.GetDescriptor() == right.GetDescriptor();
}
inline bool operator!=(const FieldInfo& left, const FieldInfo& right)
{
    return !(left == right);
}
/// An order for keys of a `Map`; it differs from run to run.
inline bool operator<(const FieldInfo& left, const FieldInfo& right)
{
    return std::less<FieldDescriptor*>()(left.GetDescriptor(), right.GetDescriptor());
}

}  // namespace zorvex_api
