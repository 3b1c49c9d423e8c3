#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/Object.h"

namespace zorvex_cli
{

/// Kinds of fields, as the flags of the library's look-ups.
enum FieldKind : unsigned int
{
    kAttributes = 2,
    kElements = 4,
    kContent = 8,
    kAllFields = kAttributes | kElements | kContent
};

/// The type text of a field, as "multiple_uri".
const char* TypeName(const zorvex_api::FieldInfo& field);

/// The fields of `kinds` of the class and its bases, the bases' first, each in the order of
/// registration: the order in which a document holds them.
std::vector<zorvex_api::FieldInfo> FieldsInOrder(const zorvex_api::ClassDescriptor& descriptor,
                                                 unsigned int kinds);

/// Where a reference leads.
enum class Target
{
    Local,     ///< an object of the same tree
    External,  ///< something in another document or format
    None       ///< nothing was found, or nothing was loaded
};

/// One reference value of an object.
struct ReferenceValue
{
    std::string field;
    std::string text;
    Target target = Target::None;
    bool isLocalText = false;  ///< names an element of the same document
};

/// Reads the references of objects, with what it learns of each class kept.
class ReferenceReader
{
public:
    /// The references that `object` holds, in the order of its fields. Loads nothing.
    std::vector<ReferenceValue> Read(zorvex_api::Object& object);

private:
    const std::vector<zorvex_api::FieldInfo>& ReferenceFields(
        zorvex_api::ClassDescriptor* descriptor);

    std::unordered_map<zorvex_api::ClassDescriptor*, std::vector<zorvex_api::FieldInfo>> m_fields;
};

}  // namespace zorvex_cli
