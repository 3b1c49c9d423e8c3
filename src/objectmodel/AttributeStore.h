#pragma once

#include <string>

#include "objectmodel/ClassData.h"
#include "runtime/Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Reference.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

class Transf;
class Vector;

/// Attribute access below the public interface: the field is known, so nothing is searched by name.
/// Object's operations, the reader, the writer and Copy all work through these.
///
/// A field of type 11 stands for two attributes, "location" and "load"; the built-in fields of
/// these names mean the object's one record of that type.
namespace attribute_store
{

/// Which part of an object a field means.
enum class Part
{
    Value,     // the record of the field
    Id,        // the object's id
    Load,      // the flag of the external reference
    Location,  // the text and targets of the external reference
};
Part PartOf(const FieldDescriptor& field);

// --- finding the field
// ------------------------------------------------------------------------------

/// The field that `name` means for attribute access. A field of exactly that name wins; then the
/// set fields that match it, then the class's fields. `data` gets the record when there is one.
/// Null when the class has no such attribute or content.
FieldDescriptor* FindField(ClassData& owner, TextView name, FieldData*& data);
/// The same among the kinds of `mask`.
FieldDescriptor* FindField(ClassData& owner, TextView name, int mask, FieldData*& data);

/// Whether the attribute has a value. With `checkDefault` a default counts, and empty texts, lists
/// and references don't.
bool HasValue(const ClassData& owner, const FieldDescriptor& field, const FieldData* data,
              bool checkDefault);

// --- text
// -------------------------------------------------------------------------------------------

/// How a text is stored.
struct SetTextOptions
{
    bool emptyIsValue = false;    // an empty text is stored as a value (string, reference, URI)
    bool checkCharacters = true;  // refuse units that XML doesn't allow (code 520)
    bool markNetwork = true;      // the tree's marks follow the change
    bool skipDefault = true;      // a default on an untouched field isn't stored
};

/// Stores a text by the type of `field`. The built-in id, "load" and "location" are handled. `name`
/// is the text that the caller used for the field; messages quote it.
Result SetText(ClassData& owner, FieldDescriptor& field, TextView name, TextView text,
               const SetTextOptions& options);

/// The reader's form: no Result is made unless something is wrong (then it is merged into
/// `result`), and no marks are set. False when something was wrong.
bool SetTextQuick(ClassData& owner, FieldDescriptor& field, TextView text, bool emptyIsValue,
                  Result& result);

/// Appends the text of a stored value (not of a default); nothing for a not-set record.
void AppendText(ClassData& owner, const FieldDescriptor& field, const FieldData& data,
                std::u16string& out);
/// The same as UTF-8, without escapes: the writer's form. A lone surrogate stands as three bytes.
void AppendUtf8(ClassData& owner, const FieldDescriptor& field, const FieldData& data,
                std::string& out);
/// The text that reading the attribute gives: the stored value's, or else the default.
String GetText(ClassData& owner, const FieldDescriptor& field, const FieldData* data);

/// Whether the text of the stored value equals the field's default, letter for letter.
bool TextEqualsDefault(ClassData& owner, const FieldDescriptor& field, const FieldData& data);

/// Empties the attribute: it has no value any more. `data` may be null.
void ResetValue(ClassData& owner, const FieldDescriptor& field, FieldData* data);

// --- references
// -------------------------------------------------------------------------------------

/// How far reading a reference goes after its target.
enum class Follow
{
    Nowhere,  // what is known already
    Loaded,   // the same document and documents that are loaded already
    Anywhere  // documents are loaded
};

/// What a reference field holds, in order: text and what is known of the targets. Ids are always
/// looked up. Code 517 for a field of another type.
Result GetReferences(ClassData& owner, FieldDescriptor& field, FieldData& data, Follow follow,
                     Configuration* options, Array<Reference>& out);
/// Replaces the value. `name` is quoted in messages.
Result SetReferences(ClassData& owner, FieldDescriptor& field, TextView name,
                     const Reference* references, int count);
/// Appends to a list. `skipKnown` leaves out what the list has already.
Result AddReferences(ClassData& owner, FieldDescriptor& field, TextView name,
                     const Reference& reference, bool skipKnown);

/// Sets a single URI, an external reference too, to lead to any number of things.
Result SetTargets(ClassData& owner, TextView name, const Reference& reference);
/// Appends the targets of a single URI to `out` and takes them off it: nothing is destroyed, and
/// the text stays.
void DetachTargets(ClassData& owner, TextView name, Array<Handle>& out);

/// The text of a URI as it reads now: "#" and the target's current id when the target stands in the
/// same tree, else the stored text.
void AppendReferenceText(ClassData& owner, const ExternalRep& reference, std::u16string& out);

}  // namespace attribute_store
}  // namespace zorvex_api
