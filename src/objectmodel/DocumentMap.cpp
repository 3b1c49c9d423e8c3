#include "objectmodel/DocumentMap.h"

#include <functional>
#include <mutex>
#include <unordered_set>

#include "objectmodel/HookedVector.h"

namespace zorvex_api
{

namespace
{

using Documents =
    std::unordered_set<const ClassData*, std::hash<const ClassData*>,
                       std::equal_to<const ClassData*>, HookedAllocator<const ClassData*>>;

constinit std::mutex s_lock;
constinit Documents* s_documents = nullptr;  // made with the first document, freed with the last

}  // namespace

void DocumentMap::Add(ClassData* document)
{
    const std::lock_guard guard(s_lock);
    if (s_documents == nullptr)
    {
        s_documents = new Documents;
    }
    s_documents->insert(document);
}

void DocumentMap::Remove(ClassData* document) noexcept
{
    const std::lock_guard guard(s_lock);
    if (s_documents == nullptr)
    {
        return;
    }
    s_documents->erase(document);
    if (s_documents->empty())
    {
        delete s_documents;
        s_documents = nullptr;
    }
}

bool DocumentMap::Contains(const ClassData* document)
{
    const std::lock_guard guard(s_lock);
    return s_documents != nullptr && s_documents->contains(document);
}

std::size_t DocumentMap::Count()
{
    const std::lock_guard guard(s_lock);
    return s_documents != nullptr ? s_documents->size() : 0;
}

}  // namespace zorvex_api
