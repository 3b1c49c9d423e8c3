#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "objectmodel/ExternalRep.h"

namespace zorvex_api::internal
{

/// documentUseCounts: which references hold which roots that references brought in, which hold
/// which things of other formats, and which references have which objects in an array of targets.
/// Process-wide, guarded by mutex 2.
///
/// A pulled-in root dies when no reference holds it that an application's root can be reached
/// through: a reference of its own tree, of a dying tree, or of another pulled-in root that nobody
/// holds doesn't count. Roots that were handed to the application never die here. A thing of
/// another format is destroyed by the adapter of its format with the last reference that holds it.
class DocumentUses
{
public:
    static DocumentUses& Get();

    /// A reference follows to this root. Nothing happens for a root that wasn't pulled in.
    void Add(ExternalRep& reference, Object* root);
    /// A reference follows to a thing of another format.
    void AddForeign(ExternalRep& reference, const Handle& thing);
    /// A reference has this object in its array of targets.
    void AddArrayTarget(ExternalRep& reference, Object* object);
    /// The reference forgets its array of targets, before the array changes.
    void LeaveArrayTargets(ExternalRep& reference);
    /// The reference lets go of all that it holds; what nobody holds any more goes.
    void Drop(ExternalRep& reference);
    /// The reference lets go of things of other formats, which somebody else has now.
    void LeaveForeign(ExternalRep& reference);
    /// The object dies: it leaves the table and all arrays of targets.
    void Forget(Object* object) noexcept;

private:
    using References = std::unordered_set<ExternalRep*>;
    using ForeignKey = std::pair<void*, std::u16string>;  // data and format
    using ForeignThings = std::map<ForeignKey, References>;

    struct Held
    {
        std::vector<Object*> roots;
        std::vector<ForeignThings::iterator> things;
    };

    bool MayBeHeld(Object* root) const;
    std::vector<Object*> TakeUnheld(const std::vector<Object*>& candidates) const;
    std::vector<Handle> LetGo(ExternalRep& reference,
                              const std::vector<ForeignThings::iterator>& things);

    std::unordered_map<Object*, References> m_holders;  // of pulled-in roots
    ForeignThings m_foreignHolders;
    std::unordered_map<ExternalRep*, Held> m_held;  // the same, the other way round
    std::unordered_map<Object*, References> m_arrayHolders;
};

}  // namespace zorvex_api::internal
