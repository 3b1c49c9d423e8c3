#pragma once

#include <cstdint>

#include "objectmodel/FieldData.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/Id.h"
#include "runtime/Text.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Map.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

class FieldDataIndex;
class IdTable;
class ObjectCallbackBase;
struct ExternalRep;

/// Rare data of one object, a chained list by tag; each tag has its own destroy function.
struct ExtensionRecord
{
    int tag;
    void* data;
    ExtensionRecord* next;
};

namespace extension_tag
{
constexpr int kUserPointer = -1;
constexpr int kJavaRecord = -5;
constexpr int kPluginInstances = -6;
constexpr int kCompanions = -7;
constexpr int kIncomingIds = -20;      // objects whose reference fields are linked to this one
constexpr int kDocumentPointer = -21;  // the pointer a root was first loaded from or saved to
constexpr int kAsideChildren = -22;    // children that no field holds; they die with the object
constexpr int kPulledIn = -23;         // a root that only references brought in
constexpr int kCompanionOf = -24;      // documents that have this one as a companion
constexpr int kFieldIndex = -25;       // index of the fields of an object that has very many
constexpr int kSurplusRoots = -40;     // on the first root of a file: the others
constexpr int kKeeper = -41;           // on one of the others: the list that it stands in
}  // namespace extension_tag

/// All that the library knows of one object.
///
/// The shell and this record live and die together. Field storage is sparse: a chained list of
/// FieldData, the field touched last at its head.
class ClassData : public Allocator
{
public:
    // State flags.
    static constexpr std::uint32_t kChainedLists = 1;  // element lists are chained, not arrays
    static constexpr std::uint32_t kIdObject = 2;      // under IdObject: has an id
    static constexpr std::uint32_t kDocumentBase = 4;  // under DocumentBase: can be a root
    static constexpr std::uint32_t kDiscarded = 8;     // paged out: children are left alone
    static constexpr std::uint32_t kPooled = 16;       // stands in the paging pool
    static constexpr std::uint32_t kLazyClass = 32;    // the class is still a class value
    static constexpr std::uint32_t kNetworkRef = 64;   // holds a reference from a network
    static constexpr std::uint32_t kDestructing = 128;
    static constexpr std::uint32_t kNetworkStale = 0x100;
    static constexpr std::uint32_t kParserOwned = 0x200;  // its end is told to the parser plug-in
    static constexpr std::uint32_t kDeletedWithParent = 0x400;
    static constexpr std::uint32_t kJavaHeld = 0x800;
    static constexpr std::uint32_t kLongForm = 0x1000;
    // Marks of our own: they spare a look at tables that don't know the object.
    static constexpr std::uint32_t kRegistered = 0x10000;  // a resolver may know it
    static constexpr std::uint32_t kInDocumentMap = 0x20000;
    static constexpr std::uint32_t kUseCounted = 0x40000;    // stands in documentUseCounts
    static constexpr std::uint32_t kPulledInRoot = 0x80000;  // never handed to the application
    static constexpr std::uint32_t kIsConfiguration = 0x100000;
    static constexpr std::uint32_t kFieldsIndexed = 0x200000;  // has a kFieldIndex
    static constexpr std::uint32_t kInBlock = 0x400000;  // one block with the shell: ObjectBlock.h

    /// Makes the record of a new shell; the memory comes from a free list.
    static ClassData* Make(Object* shell);
    /// Ends the object: end-of-object routine, then fields, children, extensions. Called by the
    /// shell's destructor.
    static void Destroy(ClassData* data);

    /// The record of an object, in memory. Null for null.
    static ClassData* Of(const Object* object)
    {
        return object != nullptr ? object->m_data : nullptr;
    }

    // --- class ----------------------------------------------------------------------------------
    /// The class value 0 leaves the object without a class.
    void SetClassValue(short newClassValue);
    /// Fixes the descriptor and sets what a fresh object of the class has. False for null.
    bool Initialise(ClassDescriptor* newDescriptor);
    /// Resolves a lazy class first. Null when the class isn't known.
    ClassDescriptor* GetClassDescriptor()
    {
        return (stateFlags & kLazyClass) != 0 ? ResolveClass() : descriptor;
    }
    /// For the reader: fixes the descriptor of an object made by it, without the initial attributes
    /// of a document and without an id: the id stays none.
    void AdoptClass(ClassDescriptor* newDescriptor);
    /// Gives a document those of its initial attributes (schemaVersion, author, date, time) that it
    /// hasn't got. For the reader, when it has read a root's attributes.
    void FillInitialAttributes();
    short GetClassValue() const;
    bool IsSubClass(const ClassDescriptor* other);

    // --- fields ---------------------------------------------------------------------------------
    /// The record of a descriptor; the built-in "load" and "location" mean the record of type 11.
    FieldData* FindField(const FieldDescriptor* field) const;
    /// Makes a not-set record at the head of the list. Null for the built-in id.
    FieldData* AddField(FieldDescriptor* field);
    FieldData* FindOrAddField(FieldDescriptor* field);
    /// Takes the record out of the list and frees it; its value must be not set.
    void RemoveField(FieldData* field);

    // --- extensions -----------------------------------------------------------------------------
    void* GetExtension(int tag) const;
    /// Sets or replaces; null removes the record without destroying the old data.
    void SetExtension(int tag, void* data);
    /// The place of a tag's data, made when there is none; it stays until the record is removed.
    void** ExtensionSlot(int tag);
    using ExtensionDestroyer = void (*)(ClassData& owner, void* data);
    /// Registers how the data of a tag dies with its object. Once per tag, at static
    /// initialisation: 0 when the tag has one.
    static int RegisterExtensionDestroyer(int tag, ExtensionDestroyer destroyer);

    // --- tree -----------------------------------------------------------------------------------
    ClassData* OwnerData() const { return Of(owner); }
    ClassData* Root();
    /// Whether `ancestor` stands above this object or is this object.
    bool IsUnder(const ClassData* ancestor) const;
    /// Attaches this root to `newOwner`, or detaches it when that is null.
    /// `field` fixes the place; `fieldName` filters; see Object::SetOwner. `strictness` 0: a child
    /// that fits nowhere is an error; 1: a warning, and the owner keeps it aside; 2: a given field
    /// takes the child in place of its value.
    Result SetOwner(Object* newOwner, TextView fieldName, FieldDescriptor* field,
                    bool resolveConflict, bool markNetwork, int strictness);
    /// Puts a child into a field of this object, or aside; see SetOwner. Notes the field in the
    /// child, but doesn't touch the child's owner. A null child deletes the value of the field.
    Result PlaceChild(Object* child, TextView fieldName, FieldDescriptor* field, int strictness);
    /// The reader's way: appends a fresh child to a known element field. No checks, no marks, and a
    /// cached element name stays. The child has nothing below it, and its id, if it has one, is for
    /// the caller to enter: see SetLoadedId. False, with nothing changed, when a single field
    /// already holds a child.
    bool AppendChild(ClassData* child, FieldDescriptor* field);
    /// The end of adding a child that was made for this object and is placed in it: it takes the
    /// owner, joins the tree's ids and, under IdObject, takes a new id.
    void AdoptNewChild(ClassData& child);
    /// The field that holds this object in its owner, noted when it was placed; may be null.
    FieldDescriptor* HoldingField() const { return holdingField; }
    /// The name and prefix under which `child` stands here. `prefix` may be null.
    const String& ChildElementName(ClassData* child, const String** prefix);
    /// The first set element field that a name means; of several near matches see
    /// Object::GetElementsByField. Null when none is set.
    FieldData* FindSetElementField(TextView fieldName);
    Result ElementsByField(TextView fieldName, ObjectCallbackBase* callback);
    /// Detaches all children of a field and deletes them, in order.
    void DeleteChildren(FieldData& field);
    /// Keeps a child that stands in no field: it dies with this object.
    void KeepAside(ClassData* child);
    /// Children kept aside, or null.
    Array<Object*>* AsideChildren() const
    {
        return static_cast<Array<Object*>*>(GetExtension(extension_tag::kAsideChildren));
    }

    // --- ids ------------------------------------------------------------------------------------
    /// Assigns the id and keeps the root's table in step, unless `keepTable`.
    /// Local URI references to this object follow. `keepTable`: the object isn't in a table, and
    /// nothing is marked.
    bool SetId(const IdValue& newId, bool keepTable);
    /// The reader's way: an object without an id gets the one that stands in its document. `root`
    /// is its root; nothing is marked.
    void SetLoadedId(IdValue&& newId, ClassData& root);
    /// The object was read without an id: it gets one only when something needs it.
    void SetNoId();
    /// The next number for a generated id is this plus one; for the tree of this object.
    std::uint32_t GetHighestId();
    /// Gives the object the next generated id of its tree.
    void TakeGeneratedId();
    /// The table of this root. A root without one has no id below it, so that the table of an
    /// object that is being made costs nothing; a table that exists holds the root's own id too.
    IdTable& NeedIdTable();
    Object* ResolveId(const IdValue& wanted);

    // --- changes --------------------------------------------------------------------------------
    /// After every change of an attribute, element, id or owner: raises the root's change stamp,
    /// marks its document network as stale and drops this object's companions.
    void MarkNetwork();
    /// The root's change stamp; it differs after any change to the tree.
    std::uint32_t ChangeStamp();
    /// Raises the stamp alone, where the document network stays as it is.
    void RaiseChangeStamp() { ++Root()->changeStamp; }
    static void GetDocumentNetwork(ClassData* document, Map<Object*, Object*>& network);
    void AddCompanion(Object* document);

    // --- data -----------------------------------------------------------------------------------
    Object* owner = nullptr;
    Object* object = nullptr;
    ExtensionRecord* extensions = nullptr;
    IdValue id;                  // starts as none
    IdTable* idTable = nullptr;  // on a root, of all objects below it
    union
    {
        ClassDescriptor* descriptor = nullptr;
        short classValue;  // with kLazyClass
    };
    FieldData* fields = nullptr;
    std::uint32_t stateFlags = 0;
    std::uint32_t changeStamp = 0;        // on a root
    const String* elementName = nullptr;  // owned by a descriptor; the cached name under the owner
    FieldDescriptor* holdingField = nullptr;
    ExternalRep* incoming = nullptr;  // head of the chain of references that target this object

private:
    ClassData() = default;
    ~ClassData() = default;
    ClassDescriptor* ResolveClass();
    void SetDescriptor(ClassDescriptor* newDescriptor);
    void BecomeDocument();
    FieldData* FindRecord(const FieldDescriptor* field) const;
    const FieldDataIndex* FieldIndexOf() const;
    void IndexField(FieldData* field);
    void DropFieldIndex();
    static void DestroyRecord(ClassData* data);
    void FreeFields(unsigned options);
    void FreeExtensions();
    Object* TakeAnyChild();
    void DeleteDescendants();

    Result Attach(Object* newOwner, TextView fieldName, FieldDescriptor* field,
                  bool resolveConflict, bool markNetwork, int strictness);
    Result Detach(TextView fieldName, bool markNetwork);
    void BecomeChildOf(ClassData& newOwner, ClassData& newRoot);
    bool TakeChild(ClassData& child, TextView fieldName);
    Result PlaceNull(TextView fieldName, FieldDescriptor* field);
    Result Store(Object* child, FieldDescriptor& field);
    void JoinIds(ClassData& newRoot);
    void SplitIds(ClassData& oldRoot);
    void EnterInTable(ClassData& root);
    void RememberNumber(const IdValue& newId);
    void RefreshIncomingTexts(const IdValue& oldId);
};

}  // namespace zorvex_api
