#pragma once

#include "zorvex60/ProductRevisionView.h"
#include "zorvex_api/Exception.h"

/// The older view of the StructureRevisionView elements of a class: those that are parts.
namespace zorvex_api::internal
{

template <class Owner>
void GetParts(const Owner& owner, Array<zorvex60::ProductRevisionView*>& parts)
{
    parts.RemoveAll();
    Array<zorvex60::StructureRevisionView*> views;
    owner.GetStructureRevisionViews(views);
    for (zorvex60::StructureRevisionView* view : views)
    {
        if (view->Is(zorvex60::zorvexClassProductRevisionView))
        {
            parts.Add(static_cast<zorvex60::ProductRevisionView*>(view));
        }
    }
}

template <class Owner>
zorvex60::ProductRevisionView* GetPart(const Owner& owner, int index)
{
    Array<zorvex60::ProductRevisionView*> parts;
    GetParts(owner, parts);
    return index >= 0 && index < parts.GetSize() ? parts[index] : nullptr;
}

template <class Owner>
zorvex60::ProductRevisionView* AddPart(Owner& owner)
{
    auto* part = new zorvex60::ProductRevisionView();
    if (owner.AddStructureRevisionView(part).Ok())
    {
        return part;
    }
    delete part;
    return nullptr;
}

template <class Owner>
void DeletePart(Owner& owner, int index)
{
    zorvex60::ProductRevisionView* part = GetPart(owner, index);
    if (part == nullptr)
    {
        throw Exception(16);
    }
    owner.DeleteElement(part);
}

template <class Owner>
void DeleteParts(Owner& owner)
{
    while (zorvex60::ProductRevisionView* part = GetPart(owner, 0))
    {
        if (!owner.DeleteElement(part).Ok())
        {
            return;
        }
    }
}

}  // namespace zorvex_api::internal
