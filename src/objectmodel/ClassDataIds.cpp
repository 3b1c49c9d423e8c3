#include <limits>
#include <utility>

#include "objectmodel/ClassData.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/SplitTreeContext.h"

namespace zorvex_api
{

IdTable& ClassData::NeedIdTable()
{
    if (idTable == nullptr)
    {
        idTable = new IdTable;
        if (id.HasValue())
        {
            idTable->Insert(this);
        }
    }
    return *idTable;
}

Object* ClassData::ResolveId(const IdValue& wanted)
{
    if (!wanted.HasValue())
    {
        return nullptr;
    }
    ClassData& root = *Root();
    if (root.idTable == nullptr)
    {
        return root.id == wanted ? root.object : nullptr;
    }
    const ClassData* found = root.idTable->Find(wanted);
    return found != nullptr ? found->object : nullptr;
}

std::uint32_t ClassData::GetHighestId()
{
    const ClassData& root = *Root();
    std::uint32_t own = 0;
    root.id.GetNumber(own);
    const std::uint32_t table = root.idTable != nullptr ? root.idTable->HighestNumber() : 0;
    return table > own ? table : own;
}

bool ClassData::SetId(const IdValue& newId, bool keepTable)
{
    ClassData& root = *Root();
    if (!keepTable && root.idTable != nullptr && id.HasValue())
    {
        root.idTable->Remove(this);
    }
    else if (!keepTable && &root == this)
    {
        RememberNumber(newId);
    }
    const IdValue oldId = incoming != nullptr ? id : IdValue();
    id = newId;
    if (keepTable)
    {
        std::uint32_t number = 0;
        if (root.idTable != nullptr && id.GetNumber(number))
        {
            root.idTable->RaiseHighestNumber(number);
        }
        return true;
    }
    root.MarkNetwork();
    EnterInTable(root);
    if (incoming != nullptr)
    {
        RefreshIncomingTexts(oldId);
    }
    return true;
}

/// Numbers aren't used twice: a root without a table gets one for the number that it gives up.
void ClassData::RememberNumber(const IdValue& newId)
{
    std::uint32_t oldNumber = 0;
    std::uint32_t newNumber = 0;
    newId.GetNumber(newNumber);
    if (id.GetNumber(oldNumber) && oldNumber > newNumber)
    {
        idTable = new IdTable;
        idTable->SetHighestNumber(oldNumber);
    }
}

void ClassData::SetLoadedId(IdValue&& newId, ClassData& root)
{
    id = std::move(newId);
    EnterInTable(root);
}

void ClassData::EnterInTable(ClassData& root)
{
    if (!id.HasValue())
    {
        return;
    }
    if (root.idTable != nullptr)
    {
        root.idTable->Insert(this);
    }
    else if (&root != this)
    {
        root.NeedIdTable().Insert(this);
    }
}

void ClassData::SetNoId()
{
    if (id.HasValue())
    {
        SetId(IdValue(), false);
    }
    id.SetNone();
}

void ClassData::TakeGeneratedId()
{
    ClassData& root = *Root();
    std::uint32_t number = GetHighestId();
    IdValue next;
    do
    {
        // Behind the ids that are numbers come texts, which a document may have already.
        number = number < std::numeric_limits<std::uint32_t>::max() ? number + 1 : 1;
        next.SetNumber(number);
    } while (root.ResolveId(next) != nullptr);
    next.SetGenerated(true);
    if (!next.IsNumeric())
    {
        root.NeedIdTable().RaiseHighestNumber(number);
    }
    SetId(next, false);
}

void ClassData::JoinIds(ClassData& newRoot)
{
    if (idTable == nullptr)
    {
        EnterInTable(newRoot);
        return;
    }
    if (newRoot.idTable != nullptr)
    {
        newRoot.idTable->Absorb(*idTable);
        delete std::exchange(idTable, nullptr);
        return;
    }
    newRoot.idTable = std::exchange(idTable, nullptr);
    if (newRoot.id.HasValue())
    {
        newRoot.idTable->Insert(&newRoot);
    }
}

void ClassData::SplitIds(ClassData& oldRoot)
{
    if (oldRoot.idTable == nullptr)
    {
        return;  // no id below that root
    }
    SplitTreeContext context(oldRoot, *this);
    object->Traverse(&context);
}

void ClassData::RefreshIncomingTexts(const IdValue& oldId)
{
    const ClassData* root = Root();
    std::u16string oldText = u"#";
    oldId.AppendTo(oldText);
    std::u16string newText = u"#";
    id.AppendTo(newText);
    std::u16string text;
    for (ExternalRep* rep = incoming; rep != nullptr; rep = rep->nextIncoming)
    {
        text.clear();
        rep->AppendText(text);
        if ((text == oldText || text.empty()) && rep->owner->Root() == root)
        {
            rep->StoreText(newText);
        }
    }
}

}  // namespace zorvex_api
