#pragma once

#include <utility>
#include <vector>

#include "objectmodel/ClassData.h"

namespace zorvex_api
{

struct ExternalRep;

/// The references of a copy. One whose target lies inside the copied tree goes by its text and
/// means the copied object; one to the outside keeps its target.
///
/// Where a target lies is known when the whole tree has been copied, so that Settle comes last.
class CopyReferences
{
public:
    CopyReferences(const Object* top, unsigned int flags);

    /// Tells of a copied object.
    void Note(const ClassData& source, ClassData& copy) { m_copies.emplace_back(&source, &copy); }
    /// Copies a reference value into a set, empty one of the same field.
    void Copy(ClassData& source, const FieldData& data, ClassData& copy, FieldData& to);
    /// Directs the references whose targets had to wait.
    void Settle();

private:
    struct WaitingId
    {
        Id* id;          // holds the target's id, if that has one
        Object* target;  // in the source
    };
    struct WaitingUri
    {
        ExternalRep* uri;
        const ExternalRep* source;
    };

    void CopyId(ClassData& source, const Id& from, Id& to);
    ExternalRep* CopyUri(ClassData& source, const ExternalRep& from, ClassData& copy);
    ClassData* CopyOf(const Object* source);

    bool m_isWholeTree;  // everything that an id can mean is being copied
    bool m_textOnly;
    std::vector<std::pair<const ClassData*, ClassData*>> m_copies;
    std::vector<WaitingId> m_ids;
    std::vector<WaitingUri> m_uris;
};

}  // namespace zorvex_api
