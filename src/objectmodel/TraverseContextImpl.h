#pragma once

#include <unordered_set>

#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

class Object;

/// The state of a walk.
class TraverseContextImpl : public Allocator
{
public:
    virtual ~TraverseContextImpl() = default;

    int depth = 0;                              // objects on the way down to the present one
    std::unordered_set<const Object*> visited;  // document roots met in this walk
    int followURI = 1;
    bool includesAside = false;  // children that objects keep aside too: for walks about ids
};

}  // namespace zorvex_api
