#include "objectmodel/ClassData.h"
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

/// Documents that references of this one brought in go with those references. What is left are its
/// companions, of which only the pulled-in ones may die with it.
void ReleaseDocumentNetwork(ClassData& document) noexcept
{
    auto* companions =
        static_cast<Array<Object*>*>(document.GetExtension(extension_tag::kCompanions));
    if (companions == nullptr)
    {
        return;
    }
    document.SetExtension(extension_tag::kCompanions, nullptr);
    for (Object* companion : *companions)
    {
        ClassData& data = *ClassData::Of(companion);
        if ((data.stateFlags & ClassData::kPulledInRoot) != 0 &&
            (data.stateFlags & ClassData::kDestructing) == 0)
        {
            data.stateFlags &= ~ClassData::kNetworkRef;
            delete companion;
        }
    }
    delete companions;
}

}  // namespace zorvex_api::upper
