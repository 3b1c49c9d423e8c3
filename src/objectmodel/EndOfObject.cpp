#include "objectmodel/EndOfObject.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/DocumentMap.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/IncomingLinks.h"
#include "objectmodel/UpperServices.h"
#include "runtime/JavaHooks.h"
#include "runtime/PagingHooks.h"

namespace zorvex_api
{

namespace
{

void EndDocument(ClassData& document) noexcept
{
    DocumentMap::Remove(&document);
    const bool holdsNetwork = (document.stateFlags & ClassData::kNetworkRef) != 0;
    document.stateFlags &= ~(ClassData::kNetworkRef | ClassData::kInDocumentMap);
    if (holdsNetwork && (document.Root()->stateFlags & ClassData::kJavaHeld) == 0)
    {
        upper::ReleaseDocumentNetwork(document);
    }
}

}  // namespace

void EndOfObject(ClassData& data, IdTable* treeTable) noexcept
{
    const std::uint32_t flags = data.stateFlags;
    if ((flags & ClassData::kParserOwned) != 0)
    {
        upper::ReleaseParserCache(data.object);
    }
    if ((flags & ClassData::kIsConfiguration) != 0)
    {
        upper::ForgetConfiguration(data.object);
    }
    if ((flags & (ClassData::kRegistered | ClassData::kUseCounted)) != 0)
    {
        upper::ForgetRegistered(data);
    }
    CutIncomingLinks(data);
    if (PagingHooks::IsActive() || (flags & ClassData::kPooled) != 0)
    {
        PagingHooks::Ending(data.object);
    }
    if ((flags & ClassData::kInDocumentMap) != 0)
    {
        EndDocument(data);
    }
    if (treeTable != nullptr && data.id.HasValue())
    {
        treeTable->Remove(&data);
    }
    if (JavaHooks::IsPresent())
    {
        JavaHooks::Get()->ObjectEnding(&data);
    }
}

}  // namespace zorvex_api
