#pragma once

#include <string>

#include "objectmodel/ClassData.h"
#include "runtime/Text.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

/// Attribute access below the public interface: the field is known, so nothing is searched by name.
/// Object's operations, the reader, the writer and Copy all work through these.
namespace attribute_store
{

/// How a text is stored.
struct SetTextOptions
{
    bool emptyIsValue = false;     // an empty text is stored as a value (string, reference, URI)
    bool checkCharacters = true;   // refuse units that XML doesn't allow (code 520)
    bool markNetwork = true;       // the tree's marks follow the change
    bool skipDefault = true;       // a default on an untouched field isn't stored
};

/// The field that `name` means for attribute access: set fields first, then the class's fields.
/// `data` gets the record when there is one. Null when the class has no such attribute or content.
FieldDescriptor* FindField(ClassData& owner, TextView name, FieldData*& data);

/// Stores a text by the type of `field`. The built-in id, "load" and "location" are handled.
Result SetText(ClassData& owner, FieldDescriptor& field, TextView name, TextView text,
               const SetTextOptions& options);

/// The reader's form: no Result is made unless something is wrong (then it is merged into
/// `result`). False when something was wrong.
bool SetTextQuick(ClassData& owner, FieldDescriptor& field, TextView text, bool emptyIsValue,
                  Result& result);

/// Appends the text of a stored value (not of a default); nothing for a not-set record.
void AppendText(ClassData& owner, const FieldDescriptor& field, const FieldData& data,
                std::u16string& out);
/// The same as UTF-8, without escapes: the writer's form.
void AppendUtf8(ClassData& owner, const FieldDescriptor& field, const FieldData& data,
                std::string& out);

/// Whether the text of the stored value equals the field's default, letter for letter.
bool TextEqualsDefault(ClassData& owner, const FieldDescriptor& field, const FieldData& data);

}  // namespace attribute_store
}  // namespace zorvex_api
