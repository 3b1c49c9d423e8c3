#pragma once

#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "objectmodel/ExternalRep.h"

namespace zorvex_api::internal
{

/// documentUseCounts: which references hold which roots that references brought in, and which
/// references have which objects in an array of targets. Process-wide, guarded by mutex 2.
///
/// A pulled-in root dies when no reference holds it that an application's root can be reached
/// through: a reference of its own tree, of a dying tree, or of another pulled-in root that nobody
/// holds doesn't count. Roots that were handed to the application never die here.
class DocumentUses
{
public:
    static DocumentUses& Get();

    /// A reference follows to this root. Nothing happens for a root that wasn't pulled in.
    void Add(ExternalRep& reference, Object* root);
    /// A reference has this object in its array of targets.
    void AddArrayTarget(ExternalRep& reference, Object* object);
    /// The reference forgets its array of targets, before the array changes.
    void LeaveArrayTargets(ExternalRep& reference);
    /// The reference lets go of all that it holds; roots that nobody holds any more are deleted.
    void Drop(ExternalRep& reference);
    /// The object dies: it leaves the table and all arrays of targets.
    void Forget(Object* object) noexcept;

private:
    using References = std::unordered_set<ExternalRep*>;

    bool IsHeld(Object* root) const;
    std::vector<Object*> TakeUnheld(const std::vector<Object*>& candidates) const;

    std::unordered_map<Object*, References> m_holders;              // of pulled-in roots
    std::unordered_map<ExternalRep*, std::vector<Object*>> m_held;  // the same, the other way round
    std::unordered_map<Object*, References> m_arrayHolders;
};

}  // namespace zorvex_api::internal
