#pragma once

#include "objectmodel/ClassData.h"
#include "zorvex_api/TraverseContext.h"

namespace zorvex_api
{

/// Goes on with a walk into the children that an object keeps aside: for walks that are about ids,
/// which those children have too. Stop when one of the visits said so.
inline zorvexTraverseResult TraverseAside(const ClassData& data, TraverseContext& context)
{
    const Array<Object*>* aside = data.AsideChildren();
    for (int i = 0; aside != nullptr && i < aside->GetSize(); ++i)
    {
        if (aside->GetAt(i)->Traverse(&context) == zorvexTraverseStop)
        {
            return zorvexTraverseStop;
        }
    }
    return zorvexTraverseContinue;
}

}  // namespace zorvex_api
