#include "objectmodel/IncomingLinks.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/Id.h"

namespace zorvex_api
{

void CutIncomingLinks(ClassData& target) noexcept
{
    while (target.incoming != nullptr)
    {
        target.incoming->ClearTarget();
    }
    if (target.extensions == nullptr)
    {
        return;
    }
    while (void* link = target.GetExtension(extension_tag::kIncomingIds))
    {
        static_cast<IdLink*>(link)->Cut();
    }
}

}  // namespace zorvex_api
