#pragma once

#include <cstddef>

namespace zorvex_api
{

class ClassData;

/// The documents of the process: objects of a class under DocumentBase, from the moment their class
/// is fixed to their end. Safe from any thread; the documents themselves aren't guarded.
class DocumentMap
{
public:
    static void Add(ClassData* document);
    static void Remove(ClassData* document) noexcept;
    static bool Contains(const ClassData* document);
    static std::size_t Count();
};

}  // namespace zorvex_api
