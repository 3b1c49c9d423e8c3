#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "objectmodel/ClassLayout.h"
#include "objectmodel/ClassNameTable.h"
#include "objectmodel/ClassText.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/FieldIndex.h"
#include "objectmodel/FieldList.h"
#include "objectmodel/FieldSearch.h"
#include "objectmodel/HookedVector.h"
#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class ClassRegistry;
class LinkNode;
class Object;

/// The record behind a ClassDescriptor.
///
/// Life: one use from making, shared by the chain's node and the registry; merges add uses. With
/// the last use the class leaves the registry at once; its memory goes when no object and no
/// derived class holds it any more.
///
/// Threads: what stands in the registry is read without a lock. Changes of a registered class (its
/// fields, its base) are made under the registry's write lock, published by atomic pointers, and
/// raise the generation of the class and of all classes below it. What they replace is retired, not
/// freed, until the class dies.
class ClassDescriptorImpl : public Allocator
{
public:
    /// Makes a class with a fresh class value and one use. Code 2 with
    /// "zorvexClass values exhausted: " and the class names when none is left.
    static ClassDescriptorImpl* Make();

    ClassDescriptor* Descriptor() const { return m_descriptor; }
    static ClassDescriptorImpl* Of(const ClassDescriptor* descriptor)
    {
        return descriptor != nullptr ? descriptor->GetImplementation() : nullptr;
    }

    // --- names
    // ------------------------------------------------------------------------------------
    short Value() const { return m_classValue; }
    const String& Name() const { return m_name; }
    const String& OutputName() const { return m_outputName.IsEmpty() ? m_name : m_outputName; }
    /// UTF-8 of the output name, for the writer.
    const std::string& Utf8OutputName() const;
    const String& QualifiedName() const;
    const String& NamespaceUri() const { return m_namespace; }
    const String& NamespacePrefix() const { return m_prefix; }
    bool InMainNamespace() const { return m_mainNamespace; }
    const String& Version() const { return m_version; }
    const String& SchemaFile() const { return m_schemaFile; }
    const String& SchemaName() const { return m_schemaName; }
    /// A class without a schema file counts as made at run time where names are matched and
    /// written.
    bool HasSchemaFile() const { return !m_schemaFile.IsEmpty(); }
    /// Made at run time, with generic objects.
    bool IsRuntimeClass() const { return m_genericMake != nullptr; }
    bool IsAbstract() const { return m_abstract; }
    bool IsDeprecated() const { return m_deprecated; }
    bool IsRegistered() const { return m_registered; }
    const String& BaseName() const
    {
        const String* name = m_baseName.load(std::memory_order_acquire);
        return name != nullptr ? *name : String::EmptyString();
    }
    const String& EquivalenceName() const { return m_equivalenceName; }
    const HookedVector<String>& OptionalAttributes() const { return m_optionalAttributes; }

    // --- the class chain
    // --------------------------------------------------------------------------
    /// The base class, resolved on first need; null when there is none or it isn't known.
    ClassDescriptorImpl* Base() const
    {
        ClassDescriptorImpl* base = m_base.load(std::memory_order_acquire);
        return base != nullptr ? base : ResolveBase();
    }
    ClassDescriptorImpl* Equivalence() const;
    /// The class itself or one of its bases. One comparison.
    bool IsSubClass(const ClassDescriptorImpl* other) const
    {
        const Lineage& mine = CurrentLineage();
        if (other == nullptr)
        {
            return false;
        }
        const Lineage& theirs = other->CurrentLineage();
        return theirs.depth <= mine.depth && mine.chain[theirs.depth] == other;
    }
    bool IsSubClass(const ClassDescriptor* other) const { return IsSubClass(Of(other)); }
    /// By class value; -25 stands for any class and matches classes made at run time.
    bool IsSubClass(short classValue) const;
    /// By qualified name, or a bare name for a class without a namespace.
    bool IsSubClass(TextView qualifiedName) const;
    bool IsIdObject() const { return IsMember(kIdObject, u"IdObject"); }
    bool IsDocumentBase() const { return IsMember(kDocumentBase, u"DocumentBase"); }
    /// Appends the classes below that aren't abstract, through abstract ones.
    void CollectConcreteClasses(Array<ClassDescriptor*>& classes) const;
    /// Calls `visit(class)` for each class that names this one as its base and has resolved it.
    /// Under the registry's write lock.
    template <class Visit>
    void ForEachDerived(Visit visit) const
    {
        for (ClassDescriptorImpl* derived = m_firstDerived; derived != nullptr;
             derived = derived->m_nextSibling)
        {
            visit(derived);
        }
    }

    // --- fields
    // -----------------------------------------------------------------------------------
    /// The class's own fields in declaration order; readable while others are added.
    FieldSpan Fields() const { return m_fields.Fields(); }
    /// All fields with those of the bases, ready to walk and to search.
    const ClassLayout& Layout() const
    {
        const ClassLayout* layout = m_layout.load(std::memory_order_acquire);
        return layout != nullptr && layout->Generation() == Generation() ? *layout : MakeLayout();
    }
    /// The fast look-up of attribute and element operations: see ClassLayout::FindField. `climb`
    /// false stays in the class itself; `exactOnly` leaves out the name match.
    FieldDescriptor* FindField(TextView name, int mask, bool climb = true,
                               bool exactOnly = false) const;
    /// Differs after each change of the fields or bases of this class.
    std::uint32_t Generation() const { return m_generation.load(std::memory_order_acquire); }

    // --- objects
    // ----------------------------------------------------------------------------------
    /// An object whose class is fixed to this one holds it, so that its memory stays.
    void AddObject() { m_holds.fetch_add(1, std::memory_order_relaxed); }
    void RemoveObject() { Unhold(); }
    /// Classes that exist, those included that only objects hold.
    static int NumberAlive();
    /// Whether objects of this class or of one below it exist.
    bool IsUsedByObjects() const;
    Object* MakeObject();

    // --- filling
    // ----------------------------------------------------------------------------------
    /// While set, texts given to the operations below lie over literals and are kept without a
    /// copy.
    void SetBorrowsTexts(bool borrows) { m_borrowsTexts = borrows; }
    bool BorrowsTexts() const { return m_borrowsTexts; }
    void SetName(const String& name);
    void SetVersion(const String& version);
    void SetOutputName(const String& name);
    void SetNamespace(const String& uri, const String& prefix);
    void SetSchemaName(const String& name);
    void SetBaseClass(const String& name);
    void SetEquivalenceClass(const String& name);
    void SetMakeFunction(Object* (*make)()) { m_origin.make = make; }
    void SetGenericMakeFunction(Object* (*make)(ClassDescriptorImpl*)) { m_genericMake = make; }
    void SetAbstract(bool isAbstract) { m_abstract = isAbstract; }
    void SetDeprecated(bool deprecated) { m_deprecated = deprecated; }
    void AddOptionalAttribute(const String& name);
    /// The node that brings the class in, and where its library keeps the class value.
    void SetNode(const LinkNode* node, short* classValue)
    {
        m_origin.node = node;
        m_origin.classValue = classValue;
    }
    void SetLegacyClassValue(short* place) { m_origin.legacyClassValue = place; }
    /// Writes a class value to the statics of the generated class: its own, or that of the class
    /// it was merged into.
    void PublishClassValue(short value) const;
    /// The library of a node is unloaded: nothing in it is called or written any more. A class that
    /// other libraries brought in too makes its objects by the next of them.
    void LeaveNode(const LinkNode* node);

    enum class Place
    {
        Back,
        Front
    };
    /// Adds a field, see ClassDescriptor::RegisterField. The prefix is the class's, or the one
    /// registered for `prefixUri` when that is given. 0 or 1.
    int RegisterField(const String& name, int type, Place place = Place::Back,
                      const String* prefixUri = nullptr);
    /// The same, for tables of built-in classes, which set up the field they get before anybody
    /// else sees it. Null when nothing was added.
    FieldDescriptor* NewField(const String& name, int type);
    /// The same, complete in one step: for classes that other threads see already. `fieldClass` and
    /// `prefix` may be null. Gives the new field, or the one that is there already (of the same
    /// name, for an element field too); null when an inherited field of another kind is in the way.
    FieldDescriptor* AddRuntimeField(TextView name, int type, const ClassDescriptor* fieldClass,
                                     const String* prefix);
    /// Takes an own field out of the class. The record is retired. False when it isn't there.
    bool RemoveField(FieldDescriptor* field);
    /// The own field that the SetField operations mean; the built-in id for a class under IdObject.
    FieldDescriptor* FindOwnField(TextView name) const;
    /// Applies `change(field)` to the own field of that name; gives its result, 0 without a field.
    /// The built-in id serves all classes: the change is judged on a copy, and the id stays as it
    /// is.
    template <class Change>
    int ChangeField(TextView name, Change change);
    /// To be called after a change of own fields that layouts depend on.
    void FieldsChanged(bool namesToo);

    // --- for the registry
    // -------------------------------------------------------------------------
    /// Drops a use; with the last the class leaves the registry: true then. Raises code 2 with
    /// "Unable to remove ClassDescriptor." or "zorvexClass values problem." on inconsistencies.
    bool Release();
    /// While held, the memory of the class stays. For one that is known not to be gone.
    void Hold()
    {
        m_holds.fetch_add(1, std::memory_order_relaxed);
        m_classHolds.fetch_add(1, std::memory_order_relaxed);
    }
    void EndHold()
    {
        m_classHolds.fetch_sub(1, std::memory_order_relaxed);
        Unhold();
    }

    /// An own field becomes required, or is so no more.
    void RequiredChanged(int by) { m_numberRequired.fetch_add(by, std::memory_order_relaxed); }

    friend class ClassDescriptor;
    friend class ClassLayout;
    friend class ClassRegistry;

private:
    /// The class and its bases, root first: chain[depth] is the class itself. Immutable.
    struct Lineage
    {
        std::uint32_t depth;
        bool complete;                                 // no base name is left unresolved
        mutable std::atomic<std::uint32_t> namesSeen;  // names generation in which it held
        const ClassDescriptorImpl* chain[1];
    };
    /// A library that knows the class: all of this stands in it.
    struct Origin
    {
        const LinkNode* node = nullptr;
        Object* (*make)() = nullptr;
        short* classValue = nullptr;
        short* legacyClassValue = nullptr;
    };
    /// What was replaced while others may still read it.
    struct Retired
    {
        void* block;
        void (*destroy)(void*);
    };

    /// Classes of the main namespace whose members are marked.
    enum Membership
    {
        kIdObject,
        kDocumentBase,
        kMemberships
    };

    ClassDescriptorImpl();
    ~ClassDescriptorImpl();

    const Lineage& CurrentLineage() const
    {
        const Lineage* lineage = m_lineage.load(std::memory_order_acquire);
        return lineage != nullptr && lineage->complete ? *lineage : RefreshLineage();
    }
    const Lineage& RefreshLineage() const;
    const ClassLayout& MakeLayout() const;
    bool IsMember(Membership which, TextView className) const
    {
        const signed char known = m_membership[which].load(std::memory_order_relaxed);
        return known >= 0 ? known != 0 : FindMembership(which, className);
    }
    bool FindMembership(Membership which, TextView className) const;
    ClassDescriptorImpl* FindNamed(const String& name) const;
    ClassDescriptorImpl* ResolveBase() const;
    void ResolveChain() const;
    void LinkBase(ClassDescriptorImpl* base) const;
    void UnlinkBase() const;
    void Invalidate(bool baseChanged) const;
    void InvalidateThis(bool baseChanged) const;

    // The rest runs under the registry's write lock.
    FieldScope Scope() const { return {Fields(), m_index.load(std::memory_order_acquire)}; }
    FieldDescriptor* FindDuplicate(const FieldDescriptor& candidate, bool idObject) const;
    FieldDescriptor* FindSameElement(const FieldDescriptor& candidate) const;
    FieldDescriptor* RegisterOrFind(std::unique_ptr<FieldDescriptor> field, Place place,
                                    bool& accepted);
    bool RegisterAgain(FieldDescriptor& present, const FieldDescriptor& candidate);
    FieldDescriptor* InsertOwned(std::unique_ptr<FieldDescriptor> field, Place place);
    void InsertField(FieldDescriptor* field, Place place);
    void NoteOwn(FieldDescriptor* field);
    void ReplaceFields(FieldSpan fields);
    void IndexFields();
    void TakeOverFields(ClassDescriptorImpl& other);
    void MakeKeys();
    String Kept(const String& text) const { return KeepText(text, m_borrowsTexts); }
    void Retire(void* block, void (*destroy)(void*)) const;

    void Unhold();
    bool DropHold() { return m_holds.fetch_sub(1, std::memory_order_acq_rel) == 1; }

    ClassDescriptor* m_descriptor = nullptr;  // owned
    short m_classValue = 0;
    String m_name;
    String m_version;
    String m_outputName;
    String m_schemaName;
    String m_namespace;
    String m_prefix;
    std::atomic<String*> m_baseName{nullptr};  // owned; null for none
    String m_equivalenceName;
    String m_schemaFile;
    Origin m_origin;
    HookedVector<Origin> m_furtherOrigins;  // of classes that were merged into this one
    Object* (*m_genericMake)(ClassDescriptorImpl*) = nullptr;
    bool m_abstract = false;
    bool m_mainNamespace = true;
    bool m_deprecated = false;
    bool m_borrowsTexts = false;
    bool m_holdsNamespace = false;
    bool m_inRuntimeTables = false;
    std::atomic<bool> m_registered{false};
    std::atomic<bool> m_published{false};  // was registered: others may be reading it
    int m_useCount = 1;                    // under the registry's write lock
    // One for the use side as long as there is a use, one for each object, each derived class and
    // each walk over classes.
    mutable std::atomic<std::uint64_t> m_holds{1};
    mutable std::atomic<std::uint64_t> m_classHolds{0};        // of these, not by objects
    mutable HookedVector<ClassDescriptorImpl*> m_formerBases;  // held
    HookedVector<String> m_optionalAttributes;

    mutable std::atomic<String*> m_qualifiedName{nullptr};        // owned
    mutable std::atomic<std::string*> m_utf8OutputName{nullptr};  // owned
    mutable std::atomic<ClassDescriptorImpl*> m_base{nullptr};    // held
    mutable std::atomic<Lineage*> m_lineage{nullptr};             // owned
    mutable std::atomic<short> m_equivalenceValue{class_value::kUnset};
    mutable std::atomic<std::uint32_t> m_equivalenceUnresolvedIn{0};         // names generation
    mutable std::atomic<signed char> m_membership[kMemberships] = {-1, -1};  // -1: not known
    mutable ClassDescriptorImpl* m_firstDerived = nullptr;
    mutable ClassDescriptorImpl* m_lastDerived = nullptr;
    mutable ClassDescriptorImpl* m_nextSibling = nullptr;
    mutable ClassDescriptorImpl* m_previousSibling = nullptr;

    FieldList m_fields;                     // all own fields, owned
    FieldList m_elementFields;              // of these, elements
    FieldDescriptor* m_content = nullptr;   // first content field; this and the next under the
    FieldDescriptor* m_external = nullptr;  // write lock: first external reference
    FieldDescriptor* m_wildcard = nullptr;  // first that takes any child
    std::atomic<int> m_numberRequired{0};
    std::atomic<FieldIndex*> m_index{nullptr};            // owned; null while the list is short
    mutable std::atomic<ClassLayout*> m_layout{nullptr};  // owned
    mutable std::atomic<std::uint32_t> m_generation{1};
    mutable std::atomic<std::uint32_t> m_baseUnresolvedIn{0};  // names generation
    mutable HookedVector<Retired> m_retired;

    // Entries in the registry's name tables: qualified name, local name, output name, old name. The
    // texts are those at registration; what changes later doesn't move the class.
    ClassNameKey m_qualifiedKey;
    ClassNameKey m_localKey;
    ClassNameKey m_outputKey;  // empty when the output name is the name
    ClassNameKey m_aliasKey;   // empty but for one class
    String m_localKeyText;     // empty when it is the end of the qualified name
    String m_outputKeyText;
    String m_aliasKeyText;
    std::uint32_t m_registryIndex = 0;  // place in the registry's list
};

template <class Change>
int ClassDescriptorImpl::ChangeField(TextView name, Change change)
{
    FieldDescriptor* const field = FindOwnField(name);
    if (field == nullptr)
    {
        return 0;
    }
    if (field->IsBuiltIn())
    {
        FieldDescriptor copy(nullptr, field->Name(), field->Type(), field->Prefix(), false);
        return change(copy);
    }
    const std::uint32_t xmlName = field->XmlNameHash();
    if (!change(*field))
    {
        return 0;
    }
    FieldsChanged(field->XmlNameHash() != xmlName);
    return 1;
}

}  // namespace zorvex_api
