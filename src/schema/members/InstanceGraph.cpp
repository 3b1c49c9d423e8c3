#include "zorvex60/InstanceGraph.h"

#include "schema/members/PartMembers.h"

namespace zorvex60
{

namespace internal = zorvex_api::internal;

ProductRevisionView* InstanceGraph::AddPart()
{
    return internal::AddPart(*this);
}

Result InstanceGraph::AddPart(ProductRevisionView* element)
{
    return AddStructureRevisionView(element);
}

ProductRevisionView* InstanceGraph::GetPart(int index) const
{
    return internal::GetPart(*this, index);
}

void InstanceGraph::GetParts(Array<ProductRevisionView*>& elements) const
{
    internal::GetParts(*this, elements);
}

int InstanceGraph::NumberOfParts() const
{
    Array<ProductRevisionView*> parts;
    GetParts(parts);
    return parts.GetSize();
}

void InstanceGraph::DeletePart(int index)
{
    internal::DeletePart(*this, index);
}

void InstanceGraph::DeletePart(ProductRevisionView* element)
{
    DeleteElement(element);
}

void InstanceGraph::DeleteParts()
{
    internal::DeleteParts(*this);
}

}  // namespace zorvex60
