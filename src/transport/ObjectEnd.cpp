#include <cstdint>

#include "objectmodel/ClassData.h"
#include "objectmodel/EndOfObject.h"
#include "objectmodel/UpperServices.h"
#include "transport/DocumentUses.h"
#include "transport/URIResolverRegistry.h"
#include "zorvex_api/Array.h"

namespace zorvex_api::upper
{

void ForgetRegistered(ClassData& data) noexcept
{
    internal::ForgetObject(data.object);
    if ((data.stateFlags & ClassData::kUseCounted) != 0)
    {
        internal::DocumentUses::Get().Forget(data.object);
    }
}

namespace
{

/// A companion that was only pulled in, with that mark taken off; null when there is none.
Object* TakePulledInCompanion(const ClassData& document) noexcept
{
    constexpr std::uint32_t kMarks = ClassData::kPulledInRoot | ClassData::kNetworkRef;
    const auto* companions =
        static_cast<const Array<Object*>*>(document.GetExtension(extension_tag::kCompanions));
    if (companions == nullptr)
    {
        return nullptr;
    }
    for (Object* companion : *companions)
    {
        ClassData& data = *ClassData::Of(companion);
        if ((data.stateFlags & ClassData::kPulledInRoot) != 0 &&
            (data.stateFlags & ClassData::kDestructing) == 0)
        {
            data.stateFlags &= ~kMarks;
            return companion;
        }
    }
    return nullptr;
}

}  // namespace

/// Documents that references of this one brought in go with those references. What is left are its
/// companions, of which only the pulled-in ones may die with it. The list goes with the document.
void ReleaseDocumentNetwork(ClassData& document) noexcept
{
    while (Object* companion = TakePulledInCompanion(document))
    {
        DeleteUnheldRoot(companion);
    }
}

}  // namespace zorvex_api::upper
