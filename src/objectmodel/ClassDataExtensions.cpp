#include "objectmodel/ClassData.h"

#include <cassert>

#include "runtime/FreeList.h"

namespace zorvex_api
{

namespace
{

constexpr int kMaxDestroyers = 32;

struct Destroyer
{
    int tag;
    ClassData::ExtensionDestroyer destroy;
};

// Filled by static initialisers of any order, so it must need none itself.
constinit Destroyer s_destroyers[kMaxDestroyers] = {};
constinit int s_destroyerCount = 0;

ClassData::ExtensionDestroyer DestroyerOf(int tag)
{
    for (int i = 0; i < s_destroyerCount; ++i)
    {
        if (s_destroyers[i].tag == tag)
        {
            return s_destroyers[i].destroy;
        }
    }
    return nullptr;
}

ExtensionRecord* FindExtension(ExtensionRecord* record, int tag)
{
    while (record != nullptr && record->tag != tag)
    {
        record = record->next;
    }
    return record;
}

}  // namespace

int ClassData::RegisterExtensionDestroyer(int tag, ExtensionDestroyer destroyer)
{
    const ExtensionDestroyer known = DestroyerOf(tag);
    assert(known == nullptr || known == destroyer);  // two kinds of data would share the tag
    if (known != nullptr || s_destroyerCount == kMaxDestroyers)
    {
        return 0;
    }
    s_destroyers[s_destroyerCount++] = {tag, destroyer};
    return 1;
}

void* ClassData::GetExtension(int tag) const
{
    const ExtensionRecord* record = FindExtension(extensions, tag);
    return record != nullptr ? record->data : nullptr;
}

void** ClassData::ExtensionSlot(int tag)
{
    ExtensionRecord* record = FindExtension(extensions, tag);
    if (record == nullptr)
    {
        record = static_cast<ExtensionRecord*>(FreeList<sizeof(ExtensionRecord)>::Take());
        record->tag = tag;
        record->data = nullptr;
        record->next = extensions;
        extensions = record;
    }
    return &record->data;
}

void ClassData::SetExtension(int tag, void* data)
{
    if (data != nullptr)
    {
        *ExtensionSlot(tag) = data;
        return;
    }
    for (ExtensionRecord** place = &extensions; *place != nullptr; place = &(*place)->next)
    {
        ExtensionRecord* record = *place;
        if (record->tag == tag)
        {
            *place = record->next;
            FreeList<sizeof(ExtensionRecord)>::Give(record);
            return;
        }
    }
}

void ClassData::FreeExtensions()
{
    while (extensions != nullptr)
    {
        ExtensionRecord* record = extensions;
        extensions = record->next;
        const ExtensionDestroyer destroy = DestroyerOf(record->tag);
        if (destroy != nullptr && record->data != nullptr)
        {
            destroy(*this, record->data);
        }
        FreeList<sizeof(ExtensionRecord)>::Give(record);
    }
}

}  // namespace zorvex_api
