#include "objectmodel/ClassData.h"
#include "objectmodel/DocumentMap.h"
#include "zorvex_api/TraverseContext.h"

/// Documents that refer to each other, and the marks that tell of changes.

namespace zorvex_api
{

namespace
{

using Documents = Array<Object*>;
using Holders = Array<ClassData*>;

// Tag of the documents that have this one as a companion: neither list keeps one that has died.
using extension_tag::kCompanionOf;

/// Gathers the documents that a walk reaches through URIs.
class NetworkContext final : public TraverseContext
{
public:
    NetworkContext(const Object* start, Map<Object*, Object*>& network)
        : m_start(start), m_network(network)
    {
    }

    zorvexTraverseResult Visit(Object* object) override
    {
        const bool isDocument = (ClassData::Of(object)->stateFlags & ClassData::kDocumentBase) != 0;
        if (isDocument && object != m_start && m_network.LookupIndex(object) < 0)
        {
            m_network.Add(object, object);
        }
        return zorvexTraverseContinue;
    }

private:
    const Object* m_start;
    Map<Object*, Object*>& m_network;
};

Documents* CompanionsOf(const ClassData& document)
{
    return static_cast<Documents*>(document.GetExtension(extension_tag::kCompanions));
}

Holders* HoldersOf(const ClassData& document)
{
    return static_cast<Holders*>(document.GetExtension(kCompanionOf));
}

/// The list under a tag, made when there is none.
template <class List>
List& NeedList(ClassData& document, int tag)
{
    void** place = document.ExtensionSlot(tag);
    if (*place == nullptr)
    {
        *place = new List;
    }
    return *static_cast<List*>(*place);
}

/// Takes an entry out of the list under a tag; the list goes with its last entry.
template <class List, class Entry>
void TakeFrom(ClassData& document, int tag, List* list, Entry entry)
{
    const int index = list != nullptr ? list->Lookup(entry) : -1;
    if (index < 0)
    {
        return;
    }
    list->RemoveAt(index);
    if (list->GetSize() == 0)
    {
        document.SetExtension(tag, nullptr);
        delete list;
    }
}

void DestroyCompanions(ClassData& owner, void* data)
{
    auto* companions = static_cast<Documents*>(data);
    for (Object* companion : *companions)
    {
        ClassData& held = *ClassData::Of(companion);
        TakeFrom(held, kCompanionOf, HoldersOf(held), &owner);
    }
    delete companions;
}

/// A document ends that others have as a companion. Those that ended without saying so aren't in
/// the map of documents any more.
void DestroyHolders(ClassData& owner, void* data)
{
    auto* holders = static_cast<Holders*>(data);
    for (ClassData* holder : *holders)
    {
        if (DocumentMap::Contains(holder))
        {
            TakeFrom(*holder, extension_tag::kCompanions, CompanionsOf(*holder), owner.object);
        }
    }
    delete holders;
}

[[maybe_unused]] const int s_companionsRegistered =
    ClassData::RegisterExtensionDestroyer(extension_tag::kCompanions, &DestroyCompanions);
[[maybe_unused]] const int s_holdersRegistered =
    ClassData::RegisterExtensionDestroyer(kCompanionOf, &DestroyHolders);

}  // namespace

void ClassData::MarkNetwork()
{
    ClassData* root = Root();
    root->stateFlags |= kNetworkStale;
    ++root->changeStamp;
    if (extensions == nullptr)
    {
        return;
    }
    if (Documents* companions = CompanionsOf(*this))
    {
        SetExtension(extension_tag::kCompanions, nullptr);
        DestroyCompanions(*this, companions);
    }
}

std::uint32_t ClassData::ChangeStamp()
{
    return Root()->changeStamp;
}

void ClassData::GetDocumentNetwork(ClassData* document, Map<Object*, Object*>& network)
{
    NetworkContext context(document->object, network);
    document->object->Traverse(&context);
}

void ClassData::AddCompanion(Object* document)
{
    if (document == nullptr || document == object)
    {
        return;
    }
    Documents& companions = NeedList<Documents>(*this, extension_tag::kCompanions);
    if (companions.Lookup(document) < 0)
    {
        companions.Add(document);
        NeedList<Holders>(*Of(document), kCompanionOf).Add(this);
    }
}

}  // namespace zorvex_api
