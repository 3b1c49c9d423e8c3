#include "objectmodel/SplitTreeContext.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/TraverseContextImpl.h"

namespace zorvex_api
{

SplitTreeContext::SplitTreeContext(ClassData& oldRoot, ClassData& newRoot)
    : m_oldRoot(oldRoot), m_newRoot(newRoot)
{
    SetFollowURI(0);
    GetImplementation()->includesAside = true;
}

zorvexTraverseResult SplitTreeContext::Visit(Object* object)
{
    ClassData* data = ClassData::Of(object);
    if (data->id.HasValue())
    {
        Move(*data);
    }
    return zorvexTraverseContinue;
}

void SplitTreeContext::Move(ClassData& data)
{
    if (m_oldRoot.idTable != nullptr)
    {
        m_oldRoot.idTable->Remove(&data);
    }
    if (&data != &m_newRoot)  // the first table of a root takes in the root's own id
    {
        m_newRoot.NeedIdTable().Insert(&data);
    }
}

}  // namespace zorvex_api
