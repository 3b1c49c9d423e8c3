#include "objectmodel/ClassRegistry.h"

#include <bitset>

#include "objectmodel/BuiltInClasses.h"
#include "objectmodel/Namespace.h"
#include "runtime/LinkNodeOwner.h"
#include "runtime/MutexLock.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/GenericObject.h"
#include "zorvex_api/LinkNode.h"

namespace zorvex_api
{

namespace
{

/// A namespace and a name of this many units together are refused.
constexpr size_t kMaxName = 1022;

constexpr TextView kHttp = u"http:";
constexpr TextView kTwoColons = u"::";

/// Tries of a new class value before all count as taken.
constexpr int kValueTries = 32763;

/// What a name of a class means: a namespace, empty for none, and a name in it.
struct ClassName
{
    explicit ClassName(TextView text);

    bool IsTooLong() const { return space.size() + local.size() >= kMaxName; }

    bool unqualified = false;
    String uri;  // holds the text of a space that a prefix stands for
    TextView space;
    TextView local;
};

ClassName::ClassName(TextView text) : local(text)
{
    const size_t lastColon = text.rfind(u':');
    if (lastColon == TextView::npos)
    {
        unqualified = true;
        space = Namespace::MainUri();
        return;
    }
    if (text.starts_with(kHttp))
    {
        return;
    }
    const size_t twoColons = text.find(kTwoColons);
    if (twoColons != TextView::npos)
    {
        space = Namespace::MainUri();
        local = text.substr(twoColons + kTwoColons.size());
        return;
    }
    const MutexLock lock(kMutexNamespaces);
    if (const Namespace* found = Namespace::FindByPrefix(text.substr(0, lastColon)))
    {
        uri = found->Uri();
        space = View(uri);
        local = text.substr(lastColon + 1);
    }
}

LinkNode* RegisterNode()
{
    return __atomic_load_n(&LinkNode::m_pRegisterNode, __ATOMIC_ACQUIRE);
}

}  // namespace

std::atomic<ClassDescriptor*> ClassRegistry::s_byValue[kMaxClassValue + 1];
std::atomic<std::uint32_t> ClassRegistry::s_namesGeneration{1};

/// Classes for a walk without a lock: they may be released meanwhile, but their memory stays.
class ClassRegistry::HeldClasses
{
public:
    HeldClasses() = default;
    ~HeldClasses()
    {
        for (ClassDescriptorImpl* impl : m_classes)
        {
            impl->EndHold();
        }
    }
    HeldClasses(const HeldClasses&) = delete;
    HeldClasses& operator=(const HeldClasses&) = delete;

    /// Under the lock of the table that the class stands in.
    void Add(ClassDescriptorImpl* impl)
    {
        m_classes.push_back(impl);
        impl->Hold();
    }
    void Add(const HookedVector<ClassDescriptorImpl*>& classes)
    {
        m_classes.reserve(m_classes.size() + classes.size());
        for (ClassDescriptorImpl* impl : classes)
        {
            Add(impl);
        }
    }

    int Count() const { return static_cast<int>(m_classes.size()); }
    auto begin() const { return m_classes.begin(); }
    auto end() const { return m_classes.end(); }

private:
    HookedVector<ClassDescriptorImpl*> m_classes;
};

/// Lives as long as the process: nodes of libraries come and go until its end. The tables give
/// their memory back when they are empty.
struct ClassRegistry::State : public LinkNodeOwner
{
    using Classes = HookedVector<ClassDescriptorImpl*>;

    /// Names of the classes of one sort.
    struct Tables
    {
        explicit Tables(ClassNameTable::Readers readers) : byName(readers), byLocalName(readers) {}

        ClassNameTable byName;       // qualified and old names
        ClassNameTable byLocalName;  // local and output names, in any namespace
        Classes list;                // a class keeps its index
    };

    bool IsFilled() const override { return ready.load(std::memory_order_acquire); }
    void Joined(LinkNode&) override {}  // class nodes wait for the next access
    void Ending(LinkNode& node) noexcept override;

    Tables& TablesOf(const ClassDescriptorImpl& impl)
    {
        return impl.m_inRuntimeTables ? runtime : builtIn;
    }

    void InsertNames(const ClassDescriptorImpl& impl);
    /// False when one of the names wasn't there.
    bool RemoveNames(const ClassDescriptorImpl& impl);

    std::recursive_mutex fillLock;
    std::recursive_mutex writeLock;
    std::atomic<bool> ready{false};   // all nodes have been run
    bool filling = false;             // under fillLock
    std::atomic<bool> filled{false};  // something was inserted

    Tables builtIn{ClassNameTable::Readers::Free};
    Tables runtime{ClassNameTable::Readers::Locked};  // also under mutex 4

    std::bitset<kMaxClassValue> taken;  // under mutex 5, as the next
    int lastValue = -1;
    ReleaseListener listener = nullptr;
};

ClassRegistry::State& ClassRegistry::TheState()
{
    static State* const state = new State;
    return *state;
}

std::recursive_mutex& ClassRegistry::WriteLock()
{
    return TheState().writeLock;
}

// --- class values -------------------------------------------------------------------------------

short ClassRegistry::TakeClassValue()
{
    State& state = TheState();
    {
        const MutexLock lock(kMutexClassValues);
        for (int attempt = 0; attempt < kValueTries; ++attempt)
        {
            state.lastValue = (state.lastValue + 1) % kMaxClassValue;
            if (!state.taken[static_cast<size_t>(state.lastValue)])
            {
                state.taken.set(static_cast<size_t>(state.lastValue));
                return static_cast<short>(state.lastValue + 1);
            }
        }
    }
    std::u16string message(u"zorvexClass values exhausted: ");
    AppendNames(message);
    throw Exception(2, ToString(message));
}

bool ClassRegistry::IsClassValueTaken(short value)
{
    const MutexLock lock(kMutexClassValues);
    return value > 0 && value <= kMaxClassValue && TheState().taken[static_cast<size_t>(value - 1)];
}

void ClassRegistry::GiveBackClassValue(short value) noexcept
{
    if (value <= 0)
    {
        return;  // the class never had one
    }
    const MutexLock lock(kMutexClassValues);
    TheState().taken.reset(static_cast<size_t>(value - 1));
}

void ClassRegistry::AppendNames(std::u16string& out)
{
    const MutexLock runtimeLock(kMutexRuntimeClasses);
    const std::lock_guard lock(WriteLock());
    const State& state = TheState();
    for (const State::Tables* tables : {&state.builtIn, &state.runtime})
    {
        for (const ClassDescriptorImpl* impl : tables->list)
        {
            out += u'\n';
            out += View(impl->Name());
        }
    }
}

// --- filling ------------------------------------------------------------------------------------

bool ClassRegistry::IsFilled()
{
    return TheState().filled.load(std::memory_order_acquire);
}

void ClassRegistry::Fill()
{
    State& state = TheState();
    if (state.IsFilled() && RegisterNode() == nullptr)
    {
        return;
    }
    const std::lock_guard lock(state.fillLock);
    if (state.filling)
    {
        return;  // an initialiser looks for a class
    }
    struct Filling
    {
        explicit Filling(bool& mark) : m_mark(mark) { m_mark = true; }
        ~Filling() { m_mark = false; }
        bool& m_mark;
    } const filling(state.filling);

    if (state.IsFilled())
    {
        FillLate();
        return;
    }
    LinkNodeOwner::Set(LinkNode::kClass, &state);
    FieldDescriptor::MakeBuiltIns();
    Namespace::RegisterMain();
    for (LinkNode* node = LinkNode::m_pHeadNode; node != nullptr; node = node->GetNext())
    {
        if (node->GetKind() == LinkNode::kClass && node->GetDescriptor() == nullptr &&
            !node->IsDone())
        {
            RunNode(*node);
        }
    }
    Namespace::RegisterLegacy();
    FinishAll();
    state.ready.store(true, std::memory_order_release);
}

/// Runs the nodes of libraries that were loaded since. The mark is cleared first: a library whose
/// classes can't be registered isn't tried again and again.
void ClassRegistry::FillLate()
{
    LinkNode* node = RegisterNode();
    __atomic_store_n(&LinkNode::m_pRegisterNode, nullptr, __ATOMIC_RELEASE);
    if (node == nullptr)
    {
        return;
    }
    for (; node != nullptr; node = node->GetNext())
    {
        if (node->GetKind() == LinkNode::kClass && node->GetDescriptor() == nullptr)
        {
            RunNode(*node);
        }
    }
    FinishAll();
}

void ClassRegistry::RunNode(LinkNode& node)
{
    ClassDescriptorImpl* const impl = ClassDescriptorImpl::Make();
    ClassInitRecord record{1, impl->Descriptor(), nullptr};
    ClassDescriptor* standing = nullptr;
    try
    {
        if (node.RunInitialiser(&record) != 0)
        {
            impl->SetNode(&node, record.staticClass);
            standing = Register(impl->Descriptor());
        }
    }
    catch (...)
    {
        impl->Release();
        throw;
    }
    if (standing == nullptr)
    {
        impl->Release();
        return;
    }
    node.SetDone(true);
    if (record.staticClass != nullptr)
    {
        *record.staticClass = standing->GetClass();
    }
    node.SetDescriptor(standing);
}

/// Resolves what classes and fields name, so that threads find it done.
void ClassRegistry::FinishAll()
{
    HeldClasses runtime;
    {
        const MutexLock lock(kMutexRuntimeClasses);
        runtime.Add(TheState().runtime.list);
    }
    const auto finish = [](const auto& classes)
    {
        for (const ClassDescriptorImpl* impl : classes)
        {
            impl->ResolveChain();
        }
        for (const ClassDescriptorImpl* impl : classes)
        {
            impl->IsIdObject();
            impl->IsDocumentBase();
            impl->QualifiedName();
            impl->Equivalence();
            for (const FieldDescriptor* field : impl->Fields())
            {
                field->Class();
            }
        }
    };
    finish(TheState().builtIn.list);
    finish(runtime);
}

void ClassRegistry::ResolveBases()
{
    HeldClasses classes;
    {
        const MutexLock runtimeLock(kMutexRuntimeClasses);
        const std::lock_guard lock(WriteLock());
        const State& state = TheState();
        classes.Add(state.builtIn.list);
        classes.Add(state.runtime.list);
    }
    for (const ClassDescriptorImpl* impl : classes)
    {
        impl->Base();
    }
}

// --- releasing ----------------------------------------------------------------------------------

void ClassRegistry::ReleaseAll()
{
    State& state = TheState();
    const std::lock_guard fillLock(state.fillLock);
    state.ready.store(false, std::memory_order_release);
    for (LinkNode* node = LinkNode::m_pHeadNode; node != nullptr; node = node->GetNext())
    {
        if (node->GetKind() == LinkNode::kClass)
        {
            node->SetDescriptor(nullptr);
            node->SetDone(false);
        }
    }
    __atomic_store_n(&LinkNode::m_pRegisterNode, nullptr, __ATOMIC_RELEASE);

    for (State::Tables* tables : {&state.runtime, &state.builtIn})
    {
        while (!tables->list.empty())
        {
            ClassDescriptorImpl* const impl = tables->list.back();
            impl->m_useCount = 1;
            impl->Release();
        }
        State::Classes().swap(tables->list);
    }
    state.filled.store(false, std::memory_order_release);
    {
        const MutexLock lock(kMutexClassValues);
        state.lastValue = -1;
    }
    Namespace::ReleaseBuiltIn();
}

/// A library goes: its node drops the reference that it shares with the registry.
void ClassRegistry::State::Ending(LinkNode& node) noexcept
{
    auto* const descriptor = static_cast<ClassDescriptor*>(node.GetDescriptor());
    node.SetDescriptor(nullptr);
    const std::lock_guard lock(fillLock);
    ClassDescriptorImpl* const impl = descriptor->GetImplementation();
    impl->LeaveNode(&node);
    try
    {
        impl->Release();
    }
    catch (const Exception&)
    {
        // A broken registry can't be reported from the end of a library; the class stays findable
        // by nobody.
    }
}

template <class Choose>
int ClassRegistry::ReleaseChosen(Choose choose)
{
    HeldClasses chosen;
    {
        const MutexLock lock(kMutexRuntimeClasses);
        for (ClassDescriptorImpl* impl : TheState().runtime.list)
        {
            if (choose(*impl))
            {
                chosen.Add(impl);
            }
        }
    }
    Array<short> values;
    for (ClassDescriptorImpl* impl : chosen)
    {
        if (impl->Release())
        {
            values.Add(impl->Value());
        }
    }
    if (values.GetSize() > 0)
    {
        Forget(values);
    }
    return chosen.Count();
}

void ClassRegistry::ReleaseRuntimeClass(const ClassDescriptor* descriptor)
{
    ReleaseChosen([descriptor](const ClassDescriptorImpl& impl)
                  { return impl.Descriptor() == descriptor; });
}

int ClassRegistry::ReleaseRuntimeClasses(const TextView* namespaceUri)
{
    return ReleaseChosen(
        [namespaceUri](const ClassDescriptorImpl& impl)
        { return namespaceUri == nullptr || View(impl.NamespaceUri()) == *namespaceUri; });
}

/// Fields and equivalences that lead to a released class lead nowhere: the value may come again.
void ClassRegistry::Forget(const Array<short>& classValues)
{
    State& state = TheState();
    std::bitset<kMaxClassValue + 1> gone;
    for (const short value : classValues)
    {
        if (FindByClass(value) == nullptr)
        {
            gone.set(static_cast<size_t>(value));
        }
    }
    const auto isGone = [&](short value) { return value > 0 && gone[static_cast<size_t>(value)]; };
    {
        const MutexLock runtimeLock(kMutexRuntimeClasses);
        const std::lock_guard lock(state.writeLock);
        for (State::Tables* tables : {&state.builtIn, &state.runtime})
        {
            for (ClassDescriptorImpl* impl : tables->list)
            {
                if (isGone(impl->m_equivalenceValue.load(std::memory_order_relaxed)))
                {
                    impl->m_equivalenceValue.store(class_value::kUnset, std::memory_order_release);
                }
                for (FieldDescriptor* field : impl->Fields())
                {
                    if (isGone(field->KnownClassValue()))
                    {
                        field->ForgetClass();
                    }
                }
            }
        }
    }
    if (state.listener != nullptr)
    {
        state.listener(classValues);
    }
}

void ClassRegistry::SetReleaseListener(ReleaseListener listener)
{
    TheState().listener = listener;
}

// --- entering and leaving -----------------------------------------------------------------------

ClassDescriptor* ClassRegistry::Register(ClassDescriptor* descriptor)
{
    State& state = TheState();
    ClassDescriptorImpl& fresh = *descriptor->GetImplementation();
    const bool unchecked =
        fresh.Value() == zorvexClassGenericObject || fresh.Value() == zorvexClassConfiguration;
    ClassDescriptorImpl* standing = nullptr;
    {
        const MutexLock runtimeLock(fresh.IsRuntimeClass() ? kMutexRuntimeClasses : kMutexSlots);
        const std::lock_guard lock(state.writeLock);
        const ClassNameQuery name(View(fresh.QualifiedName()));
        if (!unchecked)
        {
            standing = state.builtIn.byName.Find(name);
        }
        if (!unchecked && standing == nullptr && fresh.IsRuntimeClass())
        {
            standing = state.runtime.byName.Find(name);
        }
        if (standing == nullptr)
        {
            if (View(fresh.EquivalenceName()) == u"0")
            {
                fresh.SetEquivalenceClass(String());
            }
            Insert(fresh);
        }
        else
        {
            Merge(*standing, fresh);
        }
    }
    if (standing == nullptr)
    {
        fresh.PublishClassValue(fresh.Value());
        return descriptor;
    }
    fresh.PublishClassValue(standing->Value());
    fresh.Release();
    standing->PublishClassValue(standing->Value());
    return standing->Descriptor();
}

/// Under the write lock. The newer version's fields win, unless a class made at run time would take
/// the fields of a built-in class away from objects.
void ClassRegistry::Merge(ClassDescriptorImpl& standing, ClassDescriptorImpl& fresh)
{
    const bool inUse =
        fresh.IsRuntimeClass() && !standing.IsRuntimeClass() && standing.IsUsedByObjects();
    if (fresh.Version().Compare(standing.Version()) >= 0 && !inUse)
    {
        standing.TakeOverFields(fresh);
        standing.m_version = fresh.m_version;
    }
    if (fresh.m_origin.node != nullptr)
    {
        standing.m_furtherOrigins.push_back(fresh.m_origin);
    }
    ++standing.m_useCount;
}

void ClassRegistry::State::InsertNames(const ClassDescriptorImpl& impl)
{
    Tables& tables = TablesOf(impl);
    tables.byName.Insert(impl.m_qualifiedKey);
    tables.byLocalName.Insert(impl.m_localKey);
    if (impl.m_outputKey.owner != nullptr)
    {
        tables.byLocalName.Insert(impl.m_outputKey);
    }
    if (impl.m_aliasKey.owner != nullptr)
    {
        tables.byName.Insert(impl.m_aliasKey);
    }
}

bool ClassRegistry::State::RemoveNames(const ClassDescriptorImpl& impl)
{
    Tables& tables = TablesOf(impl);
    bool complete = tables.byName.Remove(impl.m_qualifiedKey);
    complete = tables.byLocalName.Remove(impl.m_localKey) && complete;
    if (impl.m_outputKey.owner != nullptr)
    {
        complete = tables.byLocalName.Remove(impl.m_outputKey) && complete;
    }
    if (impl.m_aliasKey.owner != nullptr)
    {
        complete = tables.byName.Remove(impl.m_aliasKey) && complete;
    }
    return complete;
}

/// Under the write lock, and mutex 4 for a class made at run time.
void ClassRegistry::Insert(ClassDescriptorImpl& impl)
{
    State& state = TheState();
    impl.m_inRuntimeTables = impl.IsRuntimeClass();
    State::Tables& tables = state.TablesOf(impl);
    impl.MakeKeys();
    try
    {
        state.InsertNames(impl);
        tables.list.push_back(&impl);
    }
    catch (...)
    {
        state.RemoveNames(impl);  // no name may outlive a class that wasn't taken in
        throw;
    }
    impl.m_registryIndex = static_cast<std::uint32_t>(tables.list.size() - 1);
    s_byValue[impl.Value()].store(impl.Descriptor(), std::memory_order_release);
    impl.m_published.store(true, std::memory_order_release);
    impl.m_registered.store(true, std::memory_order_release);
    state.filled.store(true, std::memory_order_release);
    s_namesGeneration.fetch_add(1, std::memory_order_acq_rel);
}

bool ClassRegistry::Remove(ClassDescriptorImpl& impl)
{
    State& state = TheState();
    const MutexLock runtimeLock(impl.m_inRuntimeTables ? kMutexRuntimeClasses : kMutexSlots);
    const std::lock_guard lock(state.writeLock);
    State::Tables& tables = state.TablesOf(impl);
    const bool complete = state.RemoveNames(impl);
    // The last class takes the place of the one that goes.
    ClassDescriptorImpl* const last = tables.list.back();
    tables.list[impl.m_registryIndex] = last;
    last->m_registryIndex = impl.m_registryIndex;
    tables.list.pop_back();
    s_byValue[impl.Value()].store(nullptr, std::memory_order_release);
    impl.m_registered.store(false, std::memory_order_release);
    s_namesGeneration.fetch_add(1, std::memory_order_acq_rel);
    return complete;
}

ClassDescriptor* ClassRegistry::MakeRuntimeClass(TextView name, TextView namespaceUri,
                                                 TextView prefix, ClassDescriptor* base, bool* made)
{
    if (made != nullptr)
    {
        *made = false;
    }
    if (ClassDescriptor* known = Find(namespaceUri, name))
    {
        return known;
    }
    ClassDescriptorImpl* const impl = ClassDescriptorImpl::Make();
    impl->SetName(ToString(name));
    impl->SetNamespace(ToString(namespaceUri), ToString(prefix));
    // A document's own prefix for a known namespace isn't the one that is declared on saving.
    if (const Namespace* known = Namespace::FindByUri(namespaceUri))
    {
        impl->SetNamespace(ToString(namespaceUri), known->Prefix());
    }
    impl->SetGenericMakeFunction(&GenericObject::MakeFunction);
    impl->SetBaseClass(base != nullptr ? base->GetQualifiedName() : String(u"Object"));
    impl->ResolveChain();
    ClassDescriptor* const descriptor = impl->Descriptor();  // another thread may release the class

    ClassDescriptor* known = nullptr;
    {
        const MutexLock runtimeLock(kMutexRuntimeClasses);
        const std::lock_guard lock(WriteLock());
        known = Find(namespaceUri, name);
        if (known == nullptr)
        {
            Insert(*impl);
        }
    }
    if (known != nullptr)
    {
        impl->Release();  // another thread was quicker
        return known;
    }
    if (made != nullptr)
    {
        *made = true;
    }
    return descriptor;
}

// --- finding ------------------------------------------------------------------------------------

ClassDescriptor* ClassRegistry::FindKey(const ClassNameQuery& key)
{
    ClassDescriptorImpl* found = TheState().builtIn.byName.Find(key);
    return found != nullptr ? found->Descriptor() : FindRuntimeKey(key);
}

ClassDescriptor* ClassRegistry::FindRuntimeKey(const ClassNameQuery& key)
{
    const MutexLock lock(kMutexRuntimeClasses);
    ClassDescriptorImpl* found = TheState().runtime.byName.Find(key);
    return found != nullptr ? found->Descriptor() : nullptr;
}

ClassDescriptor* ClassRegistry::Find(TextView namespaceUri, TextView localName)
{
    return FindKey(ClassNameQuery(namespaceUri, localName));
}

ClassDescriptor* ClassRegistry::Lookup(TextView text)
{
    if (text.empty() || !IsFilled())
    {
        return nullptr;
    }
    const ClassName name(text);
    return name.unqualified ? FindUnqualified(text) : Find(name.space, name.local);
}

/// In the main namespace or in none: built-in classes first.
ClassDescriptor* ClassRegistry::FindUnqualified(TextView name)
{
    const ClassNameQuery inMain(Namespace::MainUri(), name);
    const ClassNameQuery alone(name);
    const State& state = TheState();
    for (const ClassNameQuery* key : {&inMain, &alone})
    {
        if (const ClassDescriptorImpl* found = state.builtIn.byName.Find(*key))
        {
            return found->Descriptor();
        }
    }
    ClassDescriptor* const found = FindRuntimeKey(inMain);
    return found != nullptr ? found : FindRuntimeKey(alone);
}

ClassDescriptor* ClassRegistry::FindByName(TextView text)
{
    const ClassName name(text);
    if (name.IsTooLong())
    {
        throw Exception(520, String("Invalid XML namespace"));
    }
    if (text.empty() || !IsFilled())
    {
        return nullptr;
    }
    return name.unqualified ? FindUnqualified(text) : Find(name.space, name.local);
}

ClassDescriptor* ClassRegistry::FindForField(TextView text, bool searchAll)
{
    return searchAll && text.find(u':') == TextView::npos ? FindInAnyNamespace(text) : Lookup(text);
}

ClassDescriptor* ClassRegistry::FindInAnyNamespace(TextView localName)
{
    if (localName.empty())
    {
        return nullptr;
    }
    ClassDescriptor* found = Find(Namespace::MainUri(), localName);
    if (found != nullptr)
    {
        return found;
    }
    // Classes of registered namespaces come before others, those of the namespace registered last
    // first. Without one, the class of that name that was made last.
    const MutexLock namespacesLock(kMutexNamespaces);
    const MutexLock runtimeLock(kMutexRuntimeClasses);
    const std::lock_guard lock(WriteLock());
    const ClassDescriptorImpl* spaced = nullptr;
    const ClassDescriptorImpl* last = nullptr;
    unsigned int serial = 0;
    const ClassNameQuery query(localName);
    const State& state = TheState();
    for (const State::Tables* tables : {&state.builtIn, &state.runtime})
    {
        tables->byLocalName.ForEach(
            query,
            [&](const ClassDescriptorImpl& impl)
            {
                const Namespace* space = Namespace::FindByUri(View(impl.NamespaceUri()));
                if (space != nullptr && View(impl.OutputName()) == localName &&
                    (spaced == nullptr || space->Serial() > serial))
                {
                    spaced = &impl;
                    serial = space->Serial();
                }
                if (View(impl.Name()) == localName)
                {
                    last = &impl;
                }
                return false;
            });
    }
    const ClassDescriptorImpl* chosen = spaced != nullptr ? spaced : last;
    return chosen != nullptr ? chosen->Descriptor() : nullptr;
}

int ClassRegistry::Count()
{
    const MutexLock runtimeLock(kMutexRuntimeClasses);
    const std::lock_guard lock(WriteLock());
    const State& state = TheState();
    return static_cast<int>(state.builtIn.list.size() + state.runtime.list.size());
}

ClassDescriptor* ClassRegistry::ByIndex(int index)
{
    const MutexLock runtimeLock(kMutexRuntimeClasses);
    const std::lock_guard lock(WriteLock());
    const State& state = TheState();
    if (index < 0)
    {
        return nullptr;
    }
    size_t at = static_cast<size_t>(index);
    for (const State::Tables* tables : {&state.builtIn, &state.runtime})
    {
        if (at < tables->list.size())
        {
            return tables->list[at]->Descriptor();
        }
        at -= tables->list.size();
    }
    return nullptr;
}

}  // namespace zorvex_api
