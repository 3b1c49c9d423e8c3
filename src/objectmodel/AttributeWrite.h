#pragma once

#include "objectmodel/ClassData.h"
#include "runtime/Text.h"
#include "zorvex_api/Array.h"

namespace zorvex_api
{

struct ExternalRep;

/// The steps that the ways of storing an attribute share.
namespace attribute_write
{

/// The record of a field with a value in it, empty if there was none. `data` is the record when the
/// caller has it, else null. Null for a type that can't be stored.
FieldData* NeedRecord(ClassData& owner, FieldDescriptor& field, FieldData* data);

/// Whether the object's class is the named one of the main namespace or below it.
bool IsBelow(ClassData& object, TextView className);

/// Stores the text of a URI; what it led to before is let go. A text with ".." segments or escapes
/// goes through a Pointer.
void SetUriText(ClassData& owner, ExternalRep& reference, TextView text);
void SetLoad(ExternalRep& reference, bool load);
/// The attribute "format" of the object is now `format`: its URI learns of it.
void TellFormat(ClassData& owner, TextView format);

int CountTokens(TextView text, TextView separators);
void DestroyAll(Array<ExternalRep*>& references);

template <class T>
void Replace(Array<T>& array, const T* values, int count)
{
    array.RemoveAll();
    array.SetSizeEx(count, 0);
    for (int i = 0; i < count; ++i)
    {
        array.GetData()[i] = values[i];
    }
}

}  // namespace attribute_write
}  // namespace zorvex_api
