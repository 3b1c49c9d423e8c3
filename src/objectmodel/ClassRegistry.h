#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

#include "objectmodel/ClassDescriptorImpl.h"
#include "runtime/Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class LinkNode;

/// All classes of the process, by name and by class value.
///
/// Built-in classes are found without a lock. Classes made at run time stand in tables of their
/// own, guarded by mutex 4. Every change is made under one write lock, the innermost of all locks.
class ClassRegistry
{
public:
    static constexpr int kMaxClassValue = 32760;
    /// More classes than this at the end of the fill fail `Initialise`.
    static constexpr int kClassLimit = 7978;

    // --- life
    // -------------------------------------------------------------------------------------
    /// Runs the class nodes of the chain that haven't been run: all of them the first time, later
    /// those of libraries loaded since. Cheap when there is nothing to do.
    static void Fill();
    static bool IsFilled();
    /// Releases every class: nodes forget theirs, nobody finds any. A later Fill starts anew.
    static void ReleaseAll();

    // --- finding; none of these fills the registry
    // ------------------------------------------------
    /// The forms of ClassDescriptor::FindByName.
    static ClassDescriptor* FindByName(TextView text);
    /// The same, without the limit of the length.
    static ClassDescriptor* Lookup(TextView text);
    /// A name within a namespace; an empty namespace means a class without one. No length limit.
    static ClassDescriptor* Find(TextView namespaceUri, TextView localName);
    /// In any namespace: the main one, then registered ones from the last, then the class made
    /// last.
    static ClassDescriptor* FindInAnyNamespace(TextView localName);
    /// For the class name of a field: Lookup, in any namespace when `searchAll`. No length limit:
    /// asking a field for its class raises nothing.
    static ClassDescriptor* FindForField(TextView text, bool searchAll);
    static ClassDescriptor* FindByClass(short classValue)
    {
        return classValue > 0 && classValue <= kMaxClassValue
                   ? s_byValue[classValue].load(std::memory_order_acquire)
                   : nullptr;
    }
    static int Count();
    static ClassDescriptor* ByIndex(int index);

    // --- changing
    // ---------------------------------------------------------------------------------
    /// Enters a filled class, or merges it into the one of the same qualified name: then the one
    /// given is released. Gives the class that stands.
    static ClassDescriptor* Register(ClassDescriptor* descriptor);
    /// Finds a class by name, or makes and registers one with generic objects, in one step that no
    /// other thread can come between. `base` null means the class "Object". Raises code 2 when
    /// class values are exhausted. `made` (optional) tells whether it is new.
    static ClassDescriptor* MakeRuntimeClass(TextView name, TextView namespaceUri, TextView prefix,
                                             ClassDescriptor* base, bool* made = nullptr);
    /// Drops the registry's use of a class made at run time; nothing for a built-in one.
    static void ReleaseRuntimeClass(const ClassDescriptor* descriptor);
    /// Releases the classes made at run time, of one namespace when `namespaceUri` isn't null.
    /// Gives how many there were.
    static int ReleaseRuntimeClasses(const TextView* namespaceUri);

    /// Told the class values of classes made at run time that are gone.
    using ReleaseListener = void (*)(const Array<short>& classValues);
    static void SetReleaseListener(ReleaseListener listener);

    /// Raised whenever a class enters or leaves: what was found by name may be another class now.
    static std::uint32_t NamesGeneration()
    {
        return s_namesGeneration.load(std::memory_order_acquire);
    }

    // --- class values
    // -----------------------------------------------------------------------------
    static short TakeClassValue();
    static bool IsClassValueTaken(short value);
    static void GiveBackClassValue(short value) noexcept;

private:
    friend class ClassDescriptorImpl;
    struct State;
    class HeldClasses;

    static State& TheState();
    /// Innermost of all locks: nothing else is locked while it is held.
    static std::recursive_mutex& WriteLock();
    static void AppendNames(std::u16string& out);

    static void FillLate();
    static void RunNode(LinkNode& node);
    static void FinishAll();
    /// Resolves base classes that nobody has asked for yet, so that bases know the classes below.
    static void ResolveBases();
    static void Forget(const Array<short>& classValues);
    /// Releases those classes made at run time that `choose(class)` takes. Gives how many.
    template <class Choose>
    static int ReleaseChosen(Choose choose);

    static void Merge(ClassDescriptorImpl& standing, ClassDescriptorImpl& fresh);
    static void Insert(ClassDescriptorImpl& impl);
    /// Takes the class out of all tables. False when it wasn't in one.
    static bool Remove(ClassDescriptorImpl& impl);

    static ClassDescriptor* FindKey(const ClassNameQuery& key);
    static ClassDescriptor* FindRuntimeKey(const ClassNameQuery& key);
    static ClassDescriptor* FindUnqualified(TextView name);

    static std::atomic<ClassDescriptor*> s_byValue[kMaxClassValue + 1];
    static std::atomic<std::uint32_t> s_namesGeneration;
};

}  // namespace zorvex_api
