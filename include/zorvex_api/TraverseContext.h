#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

class Object;
class TraverseContextImpl;

/// What a visit tells the walk to do next, and what a walk reports.
enum zorvexTraverseResult : int
{
    zorvexTraverseContinue = 0,  ///< go on, into this object's children
    zorvexTraverseSkip = 1,      ///< go on, but not into this object's children
    zorvexTraverseStop = 2       ///< end the whole walk
};

/// Base of all walks over object trees; see Object::Traverse.
///
/// Derive from it, add your own data and implement Visit. A context can serve several walks one
/// after the other; after an exception from Visit it isn't to be used again.
class ZORVEX_API TraverseContext : public Allocator
{
public:
    TraverseContext();
    virtual ~TraverseContext();

    TraverseContext(const TraverseContext&) = delete;
    TraverseContext& operator=(const TraverseContext&) = delete;

    /// Called once for each object that the walk meets, before its children.
    virtual zorvexTraverseResult Visit(Object* object) = 0;

    /// Whether the walk goes on into documents that URIs point at; 1 at first.
    int GetFollowURI() const;
    void SetFollowURI(int follow);

    /// The walk's own state; owned by the context.
    TraverseContextImpl* GetImplementation() const;

private:
    TraverseContextImpl* m_impl;  // owned
};

}  // namespace zorvex_api
