#include "zorvex60/StructureDef.h"

#include "schema/members/PartMembers.h"

namespace zorvex60
{

namespace internal = zorvex_api::internal;

ProductRevisionView* StructureDef::AddPart()
{
    return internal::AddPart(*this);
}

Result StructureDef::AddPart(ProductRevisionView* element)
{
    return AddStructureRevisionView(element);
}

ProductRevisionView* StructureDef::GetPart(int index) const
{
    return internal::GetPart(*this, index);
}

void StructureDef::GetParts(Array<ProductRevisionView*>& elements) const
{
    internal::GetParts(*this, elements);
}

int StructureDef::NumberOfParts() const
{
    Array<ProductRevisionView*> parts;
    GetParts(parts);
    return parts.GetSize();
}

void StructureDef::DeletePart(int index)
{
    internal::DeletePart(*this, index);
}

void StructureDef::DeletePart(ProductRevisionView* element)
{
    DeleteElement(element);
}

void StructureDef::DeleteParts()
{
    internal::DeleteParts(*this);
}

}  // namespace zorvex60
