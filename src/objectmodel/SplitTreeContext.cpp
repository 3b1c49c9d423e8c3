#include "objectmodel/SplitTreeContext.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/IdTable.h"

namespace zorvex_api
{

SplitTreeContext::SplitTreeContext(ClassData& oldRoot, ClassData& newRoot)
    : m_oldRoot(oldRoot), m_newRoot(newRoot)
{
    SetFollowURI(0);
}

zorvexTraverseResult SplitTreeContext::Visit(Object* object)
{
    ClassData* data = ClassData::Of(object);
    if (!data->id.HasValue())
    {
        return zorvexTraverseContinue;
    }
    if (m_oldRoot.idTable != nullptr)
    {
        m_oldRoot.idTable->Remove(data);
    }
    if (m_newRoot.idTable == nullptr)
    {
        m_newRoot.idTable = new IdTable;
    }
    m_newRoot.idTable->Insert(data);
    return zorvexTraverseContinue;
}

}  // namespace zorvex_api
