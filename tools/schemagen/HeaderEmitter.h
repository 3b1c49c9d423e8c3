#pragma once

#include <set>
#include <string>

#include "Members.h"
#include "Model.h"
#include "OutputFolder.h"

namespace schemagen
{

/// The typed header of a class. `objectNames` are the operations of Object: accessors of the same
/// name would hide them, so that both are brought together.
std::string ClassHeader(const Class& owner, const Members& members,
                        const std::set<std::string>& objectNames);

/// The header of an enumeration.
std::string EnumHeader(const Enumeration& item);

/// One header for a whole C++ namespace.
std::string UmbrellaHeader(const Vocabulary& vocabulary, const CodeNamespace& code);

/// What the headers of a C++ namespace begin with.
std::string CommonHeader(const CodeNamespace& code);

}  // namespace schemagen
