#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace schemagen
{

/// A source with the rows, constructors and initialisers of some classes.
std::string ClassSource(const std::vector<const Class*>& classes);
/// A source with the tables and constants of some enumerations.
std::string EnumSource(const std::vector<const Enumeration*>& enums);
/// The header and the source of the list of all initialisers, in registration order.
std::string RegistrationHeader(const Vocabulary& vocabulary);
std::string RegistrationSource(const Vocabulary& vocabulary);

/// Item `chunk` of `count` parts of a list, in order and of nearly equal length.
template <class List>
auto Chunk(const List& list, std::size_t chunk, std::size_t count)
{
    std::vector<const typename List::value_type*> part;
    for (std::size_t i = list.size() * chunk / count; i < list.size() * (chunk + 1) / count; ++i)
    {
        part.push_back(&list[i]);
    }
    return part;
}

}  // namespace schemagen
