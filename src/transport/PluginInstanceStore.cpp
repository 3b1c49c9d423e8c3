#include <algorithm>
#include <memory>
#include <vector>

#include "objectmodel/ObjectPin.h"
#include "runtime/Text.h"
#include "transport/PluginInstances.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api::internal
{

namespace
{

struct StoredInstance
{
    int type;
    String name;  // of an adapter its format; may be empty for other types
    void* instance;
    bool owned;
};

/// The instances of one object, the latest last. On a Configuration the instances of the types
/// that the tree can show are looked up there, so that both always agree.
struct InstanceStore : public Allocator
{
    InstanceStore() = default;
    InstanceStore(const InstanceStore&) = delete;
    InstanceStore& operator=(const InstanceStore&) = delete;
    ~InstanceStore()
    {
        for (const StoredInstance& entry : entries)
        {
            if (entry.owned)
            {
                ReleaseInstance(entry.type, entry.instance);
            }
        }
    }

    std::vector<StoredInstance> entries;
};

void DestroyStore(ClassData&, void* data)
{
    delete static_cast<InstanceStore*>(data);
}

[[maybe_unused]] const int g_destroyer =
    ClassData::RegisterExtensionDestroyer(extension_tag::kPluginInstances, &DestroyStore);

InstanceStore* GetStore(const Object* holder)
{
    const ObjectPin pin(holder);
    return static_cast<InstanceStore*>(pin->GetExtension(extension_tag::kPluginInstances));
}

InstanceStore& NeedStore(Object* holder)
{
    if (InstanceStore* store = GetStore(holder))
    {
        return *store;
    }
    auto store = std::make_unique<InstanceStore>();
    const ObjectPin pin(holder);
    pin->SetExtension(extension_tag::kPluginInstances, store.get());
    return *store.release();  // the holder's now
}

bool ShowsInTree(int type)
{
    return type == kAdapterPlugin || type == kResolverPlugin;
}

std::vector<Configuration*> ChildrenNamed(const Configuration& node, TextView name)
{
    std::vector<Configuration*> found;
    Array<Configuration*> children;
    node.GetConfigurations(children);
    for (Configuration* child : children)
    {
        if (Equals(child->GetName(), name))
        {
            found.push_back(child);
        }
    }
    return found;
}

/// The user pointer of the child "instance".
void* InstanceAt(const Configuration& node)
{
    for (const Configuration* child : ChildrenNamed(node, u"instance"))
    {
        if (void* instance = child->GetUserPointer())
        {
            return instance;
        }
    }
    return nullptr;
}

void* FindResolverInTree(const Configuration& options)
{
    for (const Configuration* node : ChildrenNamed(options, u"uri_resolver"))
    {
        if (void* instance = InstanceAt(*node))
        {
            return instance;
        }
    }
    return nullptr;
}

/// By the name of the node, or else by the format that the instance tells itself.
void* FindAdapterInTree(const Configuration& options, const String& format)
{
    void* byInstance = nullptr;
    for (const Configuration* adapters : ChildrenNamed(options, u"adapters"))
    {
        Array<Configuration*> nodes;
        adapters->GetConfigurations(nodes);
        for (const Configuration* node : nodes)
        {
            void* instance = InstanceAt(*node);
            if (instance == nullptr)
            {
                continue;
            }
            if (node->GetName() == format)
            {
                return instance;
            }
            if (byInstance == nullptr && static_cast<Adapter*>(instance)->GetFormat() == format)
            {
                byInstance = instance;
            }
        }
    }
    return byInstance;
}

void* FindInTree(const Configuration& options, int type, const String& name)
{
    return type == kAdapterPlugin ? FindAdapterInTree(options, name) : FindResolverInTree(options);
}

void* FindInStore(const InstanceStore& store, int type, const String& name)
{
    const bool anyName = type != kAdapterPlugin && name.IsEmpty();
    const auto found =
        std::find_if(store.entries.rbegin(), store.entries.rend(),
                     [&](const StoredInstance& entry)
                     { return entry.type == type && (anyName || entry.name == name); });
    return found != store.entries.rend() ? found->instance : nullptr;
}

void SetInTree(Configuration& options, int type, const String& name, void* instance)
{
    const String path = type == kAdapterPlugin ? u"adapters/" + name + u"/instance"
                                               : String(u"uri_resolver/instance");
    options.Set(path, String(), instance);
}

void CopyNode(const Configuration& from, Configuration& to)
{
    if (from.HasName() != 0)
    {
        to.SetName(from.GetName());
    }
    if (from.HasValue() != 0)
    {
        to.SetValue(from.GetValue());
    }
    if (void* pointer = from.GetUserPointer())
    {
        to.SetUserPointer(pointer);
    }
    Array<Configuration*> children;
    from.GetConfigurations(children);
    for (const Configuration* child : children)
    {
        CopyNode(*child, *to.AddConfiguration());
    }
}

}  // namespace

void* FindStoredInstance(Object* holder, int type, const String& name)
{
    if (holder == nullptr)
    {
        return nullptr;
    }
    const auto* options = dynamic_cast<const Configuration*>(holder);
    if (options != nullptr && ShowsInTree(type))
    {
        return FindInTree(*options, type, name);
    }
    const InstanceStore* store = GetStore(holder);
    return store != nullptr ? FindInStore(*store, type, name) : nullptr;
}

void StoreInstance(Object* holder, int type, const String& name, void* instance, bool owned)
{
    auto* options = dynamic_cast<Configuration*>(holder);
    const bool inTree = options != nullptr && ShowsInTree(type);
    if (inTree)
    {
        SetInTree(*options, type, name, instance);
    }
    if (!inTree || owned)
    {
        NeedStore(holder).entries.push_back({type, name, instance, owned});
    }
}

URIResolver* FindStoredResolver(Object* holder)
{
    return static_cast<URIResolver*>(FindStoredInstance(holder, kResolverPlugin, String()));
}

std::unique_ptr<Configuration> CopyOptions(Configuration* options)
{
    auto copy = std::make_unique<Configuration>();
    if (options == nullptr)
    {
        return copy;
    }
    CopyNode(*options, *copy);
    if (const InstanceStore* store = GetStore(options))
    {
        for (const StoredInstance& entry : store->entries)
        {
            if (!ShowsInTree(entry.type))
            {
                StoreInstance(copy.get(), entry.type, entry.name, entry.instance, false);
            }
        }
    }
    return copy;
}

}  // namespace zorvex_api::internal
