#include "objectmodel/ClassDescriptorImpl.h"

#include <algorithm>
#include <memory>
#include <new>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/Namespace.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

/// A class chain longer than this isn't followed: its base counts as unknown.
constexpr std::uint32_t kMaxDepth = 1000;

std::atomic<int> g_alive{0};

void DeleteString(void* text)
{
    delete static_cast<String*>(text);
}
void DeleteUtf8(void* text)
{
    delete static_cast<std::string*>(text);
}
void DeleteBlock(void* block)
{
    Allocator::deallocate(block);
}

/// Publishes `fresh` unless another thread was quicker, and gives what stands.
template <class T>
T* Publish(std::atomic<T*>& place, T* fresh)
{
    T* present = nullptr;
    if (place.compare_exchange_strong(present, fresh, std::memory_order_acq_rel))
    {
        return fresh;
    }
    delete fresh;
    return present;
}

}  // namespace

// --- life ---------------------------------------------------------------------------------------

ClassDescriptorImpl::ClassDescriptorImpl()
{
    g_alive.fetch_add(1, std::memory_order_relaxed);
}

ClassDescriptorImpl* ClassDescriptorImpl::Make()
{
    auto* const impl = new ClassDescriptorImpl;
    try
    {
        impl->m_classValue = ClassRegistry::TakeClassValue();
        impl->m_descriptor = new ClassDescriptor(impl);
    }
    catch (...)
    {
        delete impl;
        throw;
    }
    return impl;
}

int ClassDescriptorImpl::NumberAlive()
{
    return g_alive.load(std::memory_order_acquire);
}

ClassDescriptorImpl::~ClassDescriptorImpl()
{
    ClassRegistry::GiveBackClassValue(m_classValue);
    for (FieldDescriptor* field : Fields())
    {
        if (!field->IsBuiltIn())
        {
            delete field;
        }
    }
    delete m_index.load(std::memory_order_relaxed);
    delete m_layout.load(std::memory_order_relaxed);
    Allocator::deallocate(m_lineage.load(std::memory_order_relaxed));
    delete m_baseName.load(std::memory_order_relaxed);
    delete m_qualifiedName.load(std::memory_order_relaxed);
    delete m_utf8OutputName.load(std::memory_order_relaxed);
    for (const Retired& retired : m_retired)
    {
        retired.destroy(retired.block);
    }
    if (m_holdsNamespace)
    {
        Namespace::Release(View(m_namespace));
    }
    if (g_alive.fetch_sub(1, std::memory_order_acq_rel) == 1)
    {
        FieldDescriptor::FreeUnwantedBuiltIns();
    }
}

bool ClassDescriptorImpl::Release()
{
    {
        const std::lock_guard lock(ClassRegistry::WriteLock());
        if (m_useCount == 0 || --m_useCount > 0)
        {
            return false;  // with no use left, another thread is releasing it
        }
    }
    if (!ClassRegistry::IsClassValueTaken(m_classValue))
    {
        throw Exception(2, String("zorvexClass values problem."));
    }
    if (IsRegistered() && !ClassRegistry::Remove(*this))
    {
        throw Exception(2, String("Unable to remove ClassDescriptor."));
    }
    Unhold();
    return true;
}

void ClassDescriptorImpl::Unhold()
{
    if (!DropHold())
    {
        return;
    }
    // The end of a class can be the end of its base, and so on up a chain of any length.
    HookedVector<ClassDescriptorImpl*> ended;
    for (ClassDescriptorImpl* impl = this; impl != nullptr;)
    {
        impl->UnlinkBase();
        for (ClassDescriptorImpl* base : impl->m_formerBases)
        {
            base->m_classHolds.fetch_sub(1, std::memory_order_relaxed);
            if (base->DropHold())
            {
                ended.push_back(base);
            }
        }
        delete impl->m_descriptor;
        impl = nullptr;
        if (!ended.empty())
        {
            impl = ended.back();
            ended.pop_back();
        }
    }
}

void ClassDescriptorImpl::Retire(void* block, void (*destroy)(void*)) const
{
    if (block == nullptr)
    {
        return;
    }
    if (m_published.load(std::memory_order_relaxed))
    {
        const std::lock_guard lock(ClassRegistry::WriteLock());
        m_retired.push_back({block, destroy});
        return;
    }
    destroy(block);  // nobody else knows this class yet
}

bool ClassDescriptorImpl::IsUsedByObjects() const
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    HookedVector<const ClassDescriptorImpl*> pending{this};
    while (!pending.empty())
    {
        const ClassDescriptorImpl* impl = pending.back();
        pending.pop_back();
        const std::uint64_t others =
            impl->m_classHolds.load(std::memory_order_relaxed) + (impl->m_useCount > 0 ? 1u : 0u);
        if (impl->m_holds.load(std::memory_order_relaxed) > others)
        {
            return true;
        }
        impl->ForEachDerived([&](const ClassDescriptorImpl* derived)
                             { pending.push_back(derived); });
    }
    return false;
}

Object* ClassDescriptorImpl::MakeObject()
{
    Object* object = nullptr;
    if (m_origin.make != nullptr)
    {
        object = m_origin.make();
    }
    else if (m_genericMake != nullptr)
    {
        object = m_genericMake(this);
    }
    if (object != nullptr && !m_deprecated)
    {
        std::unique_ptr<Object> fresh(object);  // until it is complete
        ClassData::Of(object)->Initialise(m_descriptor);
        fresh.release();
    }
    return object;
}

// --- names --------------------------------------------------------------------------------------

void ClassDescriptorImpl::SetName(const String& name)
{
    m_name = Kept(name);
    Retire(m_utf8OutputName.exchange(nullptr), &DeleteUtf8);
}

void ClassDescriptorImpl::SetOutputName(const String& name)
{
    m_outputName = Kept(name);
    Retire(m_utf8OutputName.exchange(nullptr), &DeleteUtf8);
}

void ClassDescriptorImpl::SetVersion(const String& version)
{
    constexpr TextView kBlank = u" ";
    TextView text = View(version);
    text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size()));
    const size_t end = std::min(text.find(u' '), text.size());
    m_version = ToString(text.substr(0, end));

    text.remove_prefix(end);
    text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size()));
    // The last word has the terminator behind it.
    const TextView file = text.substr(0, text.find(u' '));
    m_schemaFile = file.size() == text.size() && IsBorrowed(version) && m_borrowsTexts
                       ? BorrowConstant(file)
                       : ToString(file);
}

void ClassDescriptorImpl::SetNamespace(const String& uri, const String& prefix)
{
    const TextView text = View(uri);
    const bool main = Namespace::IsMain(text);
    if (!main && !text.empty())
    {
        Namespace::Register(text, View(prefix), false, true, nullptr);
    }
    if (m_holdsNamespace)
    {
        Namespace::Release(View(m_namespace));
    }
    m_holdsNamespace = !main && !text.empty();
    m_mainNamespace = main;
    m_namespace = Kept(uri);
    m_prefix = Kept(prefix);
}

void ClassDescriptorImpl::SetSchemaName(const String& name)
{
    m_schemaName = Kept(name);
}

const String& ClassDescriptorImpl::QualifiedName() const
{
    if (const String* known = m_qualifiedName.load(std::memory_order_acquire))
    {
        return *known;
    }
    std::u16string name(View(m_namespace));
    if (!name.empty())
    {
        name += u':';
    }
    name += View(OutputName());
    return *Publish(m_qualifiedName, new String(ToString(name)));
}

const std::string& ClassDescriptorImpl::Utf8OutputName() const
{
    if (const std::string* known = m_utf8OutputName.load(std::memory_order_acquire))
    {
        return *known;
    }
    return *Publish(m_utf8OutputName, new std::string(ToUtf8(OutputName())));
}

void ClassDescriptorImpl::AddOptionalAttribute(const String& name)
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    m_optionalAttributes.push_back(name);
    FieldsChanged(false);
}

void ClassDescriptorImpl::PublishClassValue(short value) const
{
    for (short* place : {m_origin.classValue, m_origin.legacyClassValue})
    {
        if (place != nullptr)
        {
            *place = value;
        }
    }
}

void ClassDescriptorImpl::LeaveNode(const LinkNode* node)
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    if (m_origin.node != node)
    {
        std::erase_if(m_furtherOrigins, [node](const Origin& other) { return other.node == node; });
        return;
    }
    m_origin = Origin();
    if (!m_furtherOrigins.empty())
    {
        m_origin = m_furtherOrigins.front();
        m_furtherOrigins.erase(m_furtherOrigins.begin());
    }
}

void ClassDescriptorImpl::MakeKeys()
{
    const TextView qualified = View(QualifiedName());
    m_qualifiedKey.Set(qualified, this);
    const TextView name = View(m_name);
    if (qualified.ends_with(name))
    {
        m_localKey.Set(qualified.substr(qualified.size() - name.size()), this);
    }
    else
    {
        m_localKeyText = m_name;
        m_localKey.Set(View(m_localKeyText), this);
    }
    if (!m_outputName.IsEmpty() && m_outputName != m_name)
    {
        m_outputKeyText = m_outputName;
        m_outputKey.Set(View(m_outputKeyText), this);
    }
    // The class was called otherwise once; documents and programs may still say so.
    if (m_mainNamespace && name == u"ProductRevisionView" && !m_namespace.IsEmpty())
    {
        m_aliasKeyText = m_namespace + u":Part";
        m_aliasKey.Set(View(m_aliasKeyText), this);
    }
}

// --- base and equivalence class -----------------------------------------------------------------

void ClassDescriptorImpl::SetBaseClass(const String& name)
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    if (BaseName() == name)
    {
        return;
    }
    UnlinkBase();
    String* const kept = name.IsEmpty() ? nullptr : new String(Kept(name));
    Retire(m_baseName.exchange(kept, std::memory_order_acq_rel), &DeleteString);
    m_baseUnresolvedIn.store(0, std::memory_order_relaxed);
    Invalidate(true);
}

void ClassDescriptorImpl::SetEquivalenceClass(const String& name)
{
    m_equivalenceName = Kept(name);
    m_equivalenceValue.store(class_value::kUnset, std::memory_order_relaxed);
    m_equivalenceUnresolvedIn.store(0, std::memory_order_relaxed);
}

ClassDescriptorImpl* ClassDescriptorImpl::FindNamed(const String& name) const
{
    ClassDescriptor* found = ClassRegistry::Lookup(View(name));
    if (found == nullptr && !m_mainNamespace && View(name).find(u':') == TextView::npos)
    {
        found = ClassRegistry::Find(View(m_namespace), View(name));
    }
    return Of(found);
}

ClassDescriptorImpl* ClassDescriptorImpl::ResolveBase() const
{
    const String& name = BaseName();
    if (name.IsEmpty())
    {
        return nullptr;
    }
    const std::uint32_t names = ClassRegistry::NamesGeneration();
    if (m_baseUnresolvedIn.load(std::memory_order_relaxed) == names)
    {
        return nullptr;
    }
    ClassDescriptorImpl* const found = FindNamed(name);
    if (found != nullptr)
    {
        const std::lock_guard lock(ClassRegistry::WriteLock());
        if (found->IsRegistered())
        {
            LinkBase(found);
        }
    }
    ClassDescriptorImpl* const base = m_base.load(std::memory_order_acquire);
    if (base == nullptr)
    {
        m_baseUnresolvedIn.store(names, std::memory_order_relaxed);
    }
    return base;
}

/// Under the write lock. A base that has this class among its own bases is refused.
void ClassDescriptorImpl::LinkBase(ClassDescriptorImpl* base) const
{
    if (m_base.load(std::memory_order_relaxed) != nullptr)
    {
        return;
    }
    std::uint32_t depth = 0;
    for (const ClassDescriptorImpl* at = base; at != nullptr;
         at = at->m_base.load(std::memory_order_relaxed))
    {
        if (at == this || ++depth >= kMaxDepth)
        {
            return;
        }
    }
    m_formerBases.reserve(m_formerBases.size() + 1);  // so that unlinking takes no memory
    base->Hold();
    auto* const self = const_cast<ClassDescriptorImpl*>(this);
    m_previousSibling = base->m_lastDerived;
    m_nextSibling = nullptr;
    (base->m_lastDerived != nullptr ? base->m_lastDerived->m_nextSibling : base->m_firstDerived) =
        self;
    base->m_lastDerived = self;
    m_base.store(base, std::memory_order_release);
    Invalidate(true);
}

void ClassDescriptorImpl::UnlinkBase() const
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    ClassDescriptorImpl* const base = m_base.exchange(nullptr, std::memory_order_acq_rel);
    if (base == nullptr)
    {
        return;
    }
    (m_previousSibling != nullptr ? m_previousSibling->m_nextSibling : base->m_firstDerived) =
        m_nextSibling;
    (m_nextSibling != nullptr ? m_nextSibling->m_previousSibling : base->m_lastDerived) =
        m_previousSibling;
    m_previousSibling = nullptr;
    m_nextSibling = nullptr;
    m_formerBases.push_back(base);  // a reader may still be in it: held until this class ends
}

/// Under the write lock.
void ClassDescriptorImpl::Invalidate(bool baseChanged) const
{
    InvalidateThis(baseChanged);
    if (m_firstDerived == nullptr)
    {
        return;
    }
    HookedVector<const ClassDescriptorImpl*> pending{this};
    while (!pending.empty())
    {
        const ClassDescriptorImpl* impl = pending.back();
        pending.pop_back();
        impl->ForEachDerived(
            [&](const ClassDescriptorImpl* derived)
            {
                derived->InvalidateThis(baseChanged);
                pending.push_back(derived);
            });
    }
}

void ClassDescriptorImpl::InvalidateThis(bool baseChanged) const
{
    m_generation.fetch_add(1, std::memory_order_release);
    if (baseChanged)
    {
        Retire(m_lineage.exchange(nullptr, std::memory_order_acq_rel), &DeleteBlock);
        for (std::atomic<signed char>& membership : m_membership)
        {
            membership.store(-1, std::memory_order_relaxed);
        }
    }
}

void ClassDescriptorImpl::ResolveChain() const
{
    for (const ClassDescriptorImpl* at = this; at != nullptr; at = at->Base())
    {
    }
}

const ClassDescriptorImpl::Lineage& ClassDescriptorImpl::RefreshLineage() const
{
    const std::uint32_t names = ClassRegistry::NamesGeneration();
    const Lineage* known = m_lineage.load(std::memory_order_acquire);
    if (known != nullptr && known->namesSeen.load(std::memory_order_relaxed) == names)
    {
        return *known;
    }
    ResolveChain();

    const std::lock_guard lock(ClassRegistry::WriteLock());
    known = m_lineage.load(std::memory_order_relaxed);
    if (known != nullptr)
    {
        // Each link of a base drops the lineages below it: this one still holds.
        known->namesSeen.store(names, std::memory_order_relaxed);
        return *known;
    }
    std::uint32_t depth = 0;
    const ClassDescriptorImpl* root = this;
    while (const ClassDescriptorImpl* base = root->m_base.load(std::memory_order_relaxed))
    {
        root = base;
        ++depth;
    }
    void* memory = Allocator::allocate(sizeof(Lineage) + depth * sizeof(ClassDescriptorImpl*));
    auto* const fresh = new (memory) Lineage;
    fresh->depth = depth;
    fresh->complete = root->BaseName().IsEmpty();
    fresh->namesSeen.store(names, std::memory_order_relaxed);
    const ClassDescriptorImpl* at = this;
    for (std::uint32_t level = depth + 1; level-- > 0;)
    {
        fresh->chain[level] = at;
        at = at->m_base.load(std::memory_order_relaxed);
    }
    m_lineage.store(fresh, std::memory_order_release);
    return *fresh;
}

bool ClassDescriptorImpl::IsSubClass(short classValue) const
{
    if (classValue == class_value::kAny)
    {
        return IsRuntimeClass();
    }
    const ClassDescriptor* other = ClassRegistry::FindByClass(classValue);
    return other != nullptr && IsSubClass(other);
}

bool ClassDescriptorImpl::IsSubClass(TextView qualifiedName) const
{
    for (const ClassDescriptorImpl* at = this; at != nullptr; at = at->Base())
    {
        if (View(at->QualifiedName()) == qualifiedName)
        {
            return true;
        }
    }
    return false;
}

bool ClassDescriptorImpl::FindMembership(Membership which, TextView className) const
{
    const std::uint32_t generation = Generation();
    const ClassNameQuery wanted(Namespace::MainUri(), className);
    bool member = false;
    for (const ClassDescriptorImpl* at = this; at != nullptr && !member; at = at->Base())
    {
        const signed char known = at->m_membership[which].load(std::memory_order_relaxed);
        member = known > 0 || (known < 0 && wanted.Equals(View(at->QualifiedName())));
        if (known == 0)
        {
            break;
        }
    }
    if (!member && !CurrentLineage().complete)
    {
        return false;  // a base may still come
    }
    const std::lock_guard lock(ClassRegistry::WriteLock());
    if (generation == Generation())
    {
        m_membership[which].store(member ? 1 : 0, std::memory_order_relaxed);
    }
    return member;
}

void ClassDescriptorImpl::CollectConcreteClasses(Array<ClassDescriptor*>& classes) const
{
    ClassRegistry::ResolveBases();
    const std::lock_guard lock(ClassRegistry::WriteLock());
    HookedVector<const ClassDescriptorImpl*> pending{this};
    while (!pending.empty())
    {
        const ClassDescriptorImpl* impl = pending.back();
        pending.pop_back();
        impl->ForEachDerived(
            [&](const ClassDescriptorImpl* derived)
            {
                if (!derived->IsRegistered())
                {
                    return;
                }
                if (derived->IsAbstract())
                {
                    pending.push_back(derived);
                    return;
                }
                classes.Add(derived->Descriptor());
            });
    }
}

ClassDescriptorImpl* ClassDescriptorImpl::Equivalence() const
{
    const short known = m_equivalenceValue.load(std::memory_order_acquire);
    if (known != class_value::kUnset)
    {
        return Of(ClassRegistry::FindByClass(known));
    }
    const std::uint32_t names = ClassRegistry::NamesGeneration();
    if (m_equivalenceName.IsEmpty() ||
        m_equivalenceUnresolvedIn.load(std::memory_order_relaxed) == names)
    {
        return nullptr;
    }
    ClassDescriptorImpl* const found = FindNamed(m_equivalenceName);
    if (found != nullptr)
    {
        m_equivalenceValue.store(found->Value(), std::memory_order_release);
    }
    else
    {
        m_equivalenceUnresolvedIn.store(names, std::memory_order_relaxed);
    }
    return found;
}

}  // namespace zorvex_api
