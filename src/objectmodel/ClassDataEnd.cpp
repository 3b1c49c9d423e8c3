#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/EndOfObject.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/ObjectBlock.h"
#include "runtime/FreeList.h"

namespace zorvex_api
{

namespace
{

// Children end inside the end of their parent, one level of calls for each level of the tree. Below
// this depth the rest of a tree is taken down from its leaves instead, so that the stack holds.
constexpr int kMaxNestedEnds = 200;

/// One object that is ending on this thread, and the table of the tree that it leaves.
class EndScope
{
public:
    explicit EndScope(ClassData& data) : m_outer(s_innermost)
    {
        const bool withParent = (data.stateFlags & ClassData::kDeletedWithParent) != 0 &&
                                data.owner != nullptr && m_outer != nullptr;
        m_treeTable = withParent ? m_outer->m_treeTable : TableToLeave(data);
        m_depth = m_outer != nullptr ? m_outer->m_depth + 1 : 0;
        s_innermost = this;
    }
    ~EndScope() { s_innermost = m_outer; }
    EndScope(const EndScope&) = delete;
    EndScope& operator=(const EndScope&) = delete;

    static bool IsAnyOpen() { return s_innermost != nullptr; }

    IdTable* TreeTable() const { return m_treeTable; }
    bool IsDeep() const { return m_depth >= kMaxNestedEnds; }

private:
    /// Null for a root: its table dies with it, so that nobody need leave it.
    static IdTable* TableToLeave(ClassData& data)
    {
        return data.owner != nullptr ? data.Root()->idTable : nullptr;
    }

    static thread_local constinit EndScope* s_innermost;

    EndScope* m_outer;
    IdTable* m_treeTable;
    int m_depth;
};

thread_local constinit EndScope* EndScope::s_innermost = nullptr;

// Roots that wait for the end of the objects that are ending; null when there is none.
thread_local constinit std::vector<Object*>* s_waiting = nullptr;
thread_local constinit bool s_deletingWaiting = false;

void DeleteWaitingRoots()
{
    if (s_waiting == nullptr || s_deletingWaiting || EndScope::IsAnyOpen())
    {
        return;
    }
    s_deletingWaiting = true;
    while (s_waiting != nullptr)
    {
        const std::unique_ptr<std::vector<Object*>> roots(std::exchange(s_waiting, nullptr));
        for (Object* root : *roots)
        {
            delete root;
        }
    }
    s_deletingWaiting = false;
}

void DestroyAside(ClassData&, void* data)
{
    auto* children = static_cast<Array<Object*>*>(data);
    for (Object* child : *children)
    {
        ClassData::Of(child)->stateFlags |= ClassData::kDeletedWithParent;
        delete child;
    }
    delete children;
}

[[maybe_unused]] const int s_asideRegistered =
    ClassData::RegisterExtensionDestroyer(extension_tag::kAsideChildren, &DestroyAside);

}  // namespace

void DeleteUnheldRoot(Object* root) noexcept
{
    if (EndScope::IsAnyOpen())
    {
        try
        {
            if (s_waiting == nullptr)
            {
                s_waiting = new std::vector<Object*>;
            }
            s_waiting->push_back(root);
            return;
        }
        catch (const std::bad_alloc&)
        {
            // Without memory for the list the root goes at once.
        }
    }
    delete root;
}

void ClassData::Destroy(ClassData* data)
{
    const Object* const shell = data->object;
    const bool inBlock = (data->stateFlags & kInBlock) != 0;
    DestroyRecord(data);
    DeleteWaitingRoots();
    if (inBlock)
    {
        internal::ObjectBlock::NoteEnd(shell);
    }
}

void ClassData::DestroyRecord(ClassData* data)
{
    const EndScope scope(*data);
    data->stateFlags |= kDestructing;
    if ((data->stateFlags & kDiscarded) != 0)
    {
        data->FreeFields(FieldData::kLeaveChildren);
    }
    else
    {
        EndOfObject(*data, scope.TreeTable());
        delete data->idTable;
        data->idTable = nullptr;
        if (scope.IsDeep())
        {
            data->DeleteDescendants();
        }
        data->FreeFields(FieldData::kMarkChildren);
    }
    data->FreeExtensions();
    data->SetDescriptor(nullptr);
    const bool inBlock = (data->stateFlags & kInBlock) != 0;
    data->~ClassData();
    if (!inBlock)
    {
        FreeList<sizeof(ClassData)>::Give(data);
    }
}

void ClassData::FreeFields(unsigned options)
{
    while (fields != nullptr)
    {
        FieldData* field = fields;
        field->DeleteValue(*this, options);
        // What ended with the value may have touched the list.
        RemoveField(field);
    }
}

Object* ClassData::TakeAnyChild()
{
    for (FieldData* field = fields; field != nullptr; field = field->next)
    {
        if (!field->IsSet() || !field->descriptor->IsElement())
        {
            continue;
        }
        if (field->descriptor->Type() == zorvexFieldMultipleElement)
        {
            if (Object* child = field->Elements()->TakeLast())
            {
                return child;
            }
            continue;
        }
        if (Object* child = field->Element())
        {
            field->value = 0;
            return child;
        }
    }
    Array<Object*>* aside = AsideChildren();
    if (aside == nullptr || aside->GetSize() == 0)
    {
        return nullptr;
    }
    Object* child = aside->GetAt(aside->GetSize() - 1);
    aside->SetSize(aside->GetSize() - 1);
    return child;
}

void ClassData::DeleteDescendants()
{
    ClassData* current = this;
    for (;;)
    {
        if (Object* child = current->TakeAnyChild())
        {
            current = Of(child);
            current->stateFlags |= kDeletedWithParent;
            continue;
        }
        if (current == this)
        {
            return;
        }
        ClassData* above = current->OwnerData();
        delete current->object;
        current = above;
    }
}

}  // namespace zorvex_api
