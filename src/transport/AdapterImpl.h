#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;

/// The state of one member of a chain.
struct AdapterImpl : public Allocator
{
    Adapter* previous = nullptr;  // towards the resolver; owned unless borrowsPrevious
    Adapter* next = nullptr;      // towards the document; not owned
    String context;
    String query;  // behind the file name that the context is; files have none, see WithQuery
    int borrowsPrevious = 0;
    int isNewInstance = 1;  // 0: a shared or configured instance, kept at the chain's end
    int isClone = 0;
    void* handle = nullptr;  // an object that this member stands for; not owned
};

namespace internal
{

/// Whether the instance stands in a chain, so that it can't be used for another one.
inline bool StandsInChain(const AdapterImpl& impl)
{
    return impl.next != nullptr || impl.previous != nullptr;
}

}  // namespace internal
}  // namespace zorvex_api
