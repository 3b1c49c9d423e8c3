#pragma once

#include <set>
#include <string>
#include <vector>

#include "Model.h"

namespace schemagen
{

/// One member function of a generated class, ready to be written.
struct Accessor
{
    std::string result;
    std::string name;
    std::string parameters;  // with defaults
    bool isConst = false;
    std::string body;  // statements on one line
    std::string doc;   // one sentence

    /// Name and types of the parameters: two of the same can't stand in one class.
    std::string Signature() const;
};

/// The accessors of one field, in the order of the header.
std::vector<Accessor> FieldAccessors(const Class& owner, const Field& field);

/// The accessors of all fields that aren't replaced by hand-written members. Raises VocabularyError
/// when two fields would give the same one, or when a replaced one doesn't exist.
struct FieldGroup
{
    const Field* field;
    std::vector<Accessor> accessors;
};
std::vector<FieldGroup> ClassAccessors(const Class& owner);

}  // namespace schemagen
