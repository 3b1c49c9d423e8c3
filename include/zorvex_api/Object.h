#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Map.h"
#include "zorvex_api/Reference.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"
#include "zorvex_api/TraverseContext.h"

namespace zorvex_api
{

class ClassData;
class ClassDescriptor;
class Configuration;
class Transf;
class Vector;

/// One element of a document: the generic, name-driven interface that every class shares.
///
/// A thin shell of a virtual table and one pointer. Generated classes derive from it and add no
/// data. A root object belongs to the application, which deletes it; objects under a root belong to
/// the tree and are deleted through it. A tree serves one thread at a time.
///
/// Names of fields are matched as FieldInfo tells: a field of exactly that name wins, then the near
/// forms (`part` for `partRef`, a class-qualified name, another case of the first letter).
class ZORVEX_API Object : public Allocator
{
public:
    virtual ~Object();

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    using Allocator::operator new;
    using Allocator::operator delete;
    /// Memory for an object, from Allocator.
    static void* operator new(size_t size);
    /// Takes back the memory of an object, whichever way it was obtained.
    static void operator delete(void* block);

    /// The library's own record behind the shell; owned by the object.
    virtual ClassData* GetImplementation() const;

    // --- class ------------------------------------------------------------------------------

    /// The class value: valid for this session only, differs from run to run.
    short Is() const;
    /// 1 when the object is exactly of this class.
    int Is(const short& classValue) const;
    int Is(const String& className) const;
    /// 1 when the class or one of its bases is the one given. The value -25 stands for any class
    /// and matches classes made at run time.
    int IsSubClass(const short& classValue) const;
    int IsSubClass(const String& className) const;
    /// The class's descriptor, owned by the registry; null when the class isn't known.
    ClassDescriptor* GetClassDescriptor() const;
    const String& GetClassName() const;
    static const String& GetClassName(const short& classValue);
    /// 1 for a class under "AttribOwner".
    int AttributesOwner() const;
    /// 1 for a class under "Entity3D".
    int BoundOwner() const;
    /// 1 for a class under "DescriptionObject".
    int DescriptionOwner() const;
    /// The field "Description" of a class under "DescriptionObject", else the empty text.
    String GetObjectDescription();
    /// 1 when the class is under "DescriptionObject", whatever the write gave; else 0.
    int SetObjectDescription(const String& description);

    // --- attributes -------------------------------------------------------------------------
    // All of these fail with code 525 and "\"%s\" is not an allowed attribute of: \"%s\"." for a
    // name that is no attribute or content of the class.

    /// Reads a value. A field with no stored value gives its default; without a default the String
    /// form gives the empty text and no error, the other forms fail with code 2 and
    /// "Attribute: \"%s\" is not set.".
    Result GetAttributeValue(const String& name, int& value) const;
    Result GetAttributeValue(const String& name, double& value) const;
    Result GetAttributeValue(const String& name, String& value) const;
    Result GetAttributeValue(const String& name, Array<int>& values) const;
    Result GetAttributeValue(const String& name, Array<double>& values) const;
    Result GetAttributeValue(const String& name, Array<Reference>& values) const;
    Result GetAttributeValue(const String& name, Reference& value) const;
    Result GetAttributeValue(const String& name, Transf& value) const;
    Result GetAttributeValue(const String& name, Vector& value) const;
    /// Empties `values` and fills it with the text of every attribute that has a value.
    Result GetAttributeValues(Map<String, String>& values) const;
    /// Empties `types` and fills it with the type code of every attribute of the class.
    Result GetAttributeTypes(Map<String, int>& types) const;

    /// Stores a value. The empty text deletes the value, unless the active configuration has
    /// "adapters/ZORVEX/empty_attributes" set to "treat_as_set". A value equal to the default isn't
    /// stored on an untouched field.
    ///
    /// A reference is stored by its handles or, without any, by its text. A target of a field of
    /// ids must stand in the same tree once this object has an owner and the target an id (code 2,
    /// "... must be in the same root as object."). A single reference and an external one
    /// ("location") take one handle, more are code 2; a single URI takes several.
    Result SetAttributeValue(const String& name, int value);
    Result SetAttributeValue(const String& name, double value);
    Result SetAttributeValue(const String& name, const String& value);
    Result SetAttributeValue(const String& name, const Array<int>& values);
    Result SetAttributeValue(const String& name, const Array<double>& values);
    Result SetAttributeValue(const String& name, const Array<Reference>& values);
    Result SetAttributeValue(const String& name, const Reference& value);
    Result SetAttributeValue(const String& name, const Transf& value);
    Result SetAttributeValue(const String& name, const Vector& value);

    /// Appends to a list of references. `flags` is 0, or 2 to leave out a reference that the field
    /// has already (code 20 when all were of that kind); any other value gives code 19, "flags".
    Result AddAttributeValue(const String& name, const Reference& value);
    Result AddAttributeValue(const String& name, const Reference& value, unsigned int flags);

    /// 1 when the class has such an attribute or content; `hasValue` as HasField.
    int HasAttribute(const String& name, int& hasValue) const;
    /// 1 with `hasValue` 1 for a stored value; 1 with `hasValue` 0 for a default only; else 0.
    int HasAttributeValue(const String& name, int& hasValue) const;
    /// 1 when the field has a value; a field with a default counts as set. `flags`: 2 attributes,
    /// 4 elements, 8 content, or their sum.
    int HasField(const String& name, unsigned int flags) const;

    Result ResetAttributeValue(const String& name);
    Result DeleteAttribute(const String& name);

    /// The character data of the element: the field "Content".
    Result GetContent(int& value) const;
    Result GetContent(double& value) const;
    Result GetContent(String& value) const;
    Result GetContent(Array<int>& values) const;
    Result GetContent(Array<double>& values) const;
    Result GetContent(Transf& value) const;
    Result GetContent(Vector& value) const;
    Result SetContent(int value);
    Result SetContent(double value);
    Result SetContent(const String& value);
    Result SetContent(const Array<int>& values);
    Result SetContent(const Array<double>& values);
    Result SetContent(const Transf& value);
    Result SetContent(const Vector& value);
    int HasContent() const;
    Result ResetContent();

    // --- references -------------------------------------------------------------------------

    /// Follows a reference and gives what it leads to; may load documents. `handles` is emptied.
    /// When nothing was found and nothing else is wrong: code 2, "Unable to resolve attribute:
    /// \"%s\".".
    Result ResolveAttribute(const String& name, Array<Handle>& handles);
    /// `configuration` may be null. A reference that leads nowhere has its text and no handle. An
    /// unset attribute is a WARNING of code 2, one that holds no references code 517.
    Result ResolveAttributeValue(const String& name, Reference& value,
                                 Configuration* configuration);
    Result ResolveAttributeValue(const String& name, Array<Reference>& values,
                                 Configuration* configuration);
    Result ResolveAttributeValue(const String& name, const Configuration& configuration,
                                 Reference& value);
    Result ResolveAttributeValue(const String& name, const Configuration& configuration,
                                 Array<Reference>& values);

    // --- ids --------------------------------------------------------------------------------

    /// The object's id as text, empty when it has none.
    String GetId() const;
    /// Gives the object an id; the empty text takes it away. 1, or 0 when that isn't possible. That
    /// no other object of the tree has the id isn't checked. References by the old id don't follow,
    /// but for "#id" URIs of the same tree that have found this object.
    int SetId(const String& id);
    /// The object of this id in the whole tree, the first entered of several, null when there is
    /// none.
    Object* ResolveId(const String& id) const;
    /// Makes this root's ids differ from those of `other`'s tree, which it is about to join:
    /// generated ids that clash are renumbered, and the references to them follow. Another id in
    /// conflict is code 2, "Element with id ... conflicts with id in parent"; with `force` it is
    /// renumbered too. An object with an owner gives code 2, "Object is not a root".
    Result ResolveIdConflict(Object* other, int force);

    // --- tree -------------------------------------------------------------------------------

    /// Makes a child of the class `className`, or of the class of the field `fieldName` when
    /// `className` is empty, and attaches it. `out` gets the child, which the tree owns; it stays
    /// as it was on an error. With a class, `fieldName` (may be empty) says which field takes the
    /// child; the first one that fits does. A child under "IdObject" gets the next id of the tree.
    /// Both texts empty: code 19. Code 2: "Unable to find class: \"%s\".", or the refusal of
    /// SetOwner.
    Result AddElement(const String& className, const String& fieldName, Object*& out);
    Result AddElement(short classValue, const String& fieldName, Object*& out);
    /// Attaches `child`, which must be a root and from then on belongs to the tree: its SetOwner.
    /// Null is code 2.
    Result AddElement(Object* child);
    Result AddElement(Object* child, const String& fieldName);
    /// Makes a child by class name or, failing that, by field name; null on an error.
    Object* AddChildElement(const String& name, Result& result);

    /// Attaches this root to `owner`, or detaches this object when `owner` is null. A detached
    /// object is a root of its own and belongs to the caller.
    ///
    /// Ids that clash give way first: see ResolveIdConflict. An attached object under "IdObject"
    /// without an id gets the next one of the tree. On an error nothing is attached, and the object
    /// stays the caller's. Code 2: "Cannot set the owner to be this Object." for the object itself
    /// and those below it, "Object already has owner", an id in conflict, "Cannot add child of
    /// type: %s to parent of type: %s." where no field takes it; on detaching "Cannot find child of
    /// type %s in parent of type %s", when another field than `fieldName` holds it.
    Result SetOwner(Object* owner);
    Result SetOwner(Object* owner, const String& fieldName);
    /// The parent, null for a root.
    Object* GetOwner() const;
    /// The topmost object of the tree, this object when it has no owner.
    Object* GetRoot() const;
    /// From this object upwards, the first whose class is exactly "Document".
    Object* GetDocument() const;
    /// The root, when its class is exactly "Document".
    Object* GetDocumentRoot() const;
    /// From this object upwards, the first of a class under "DocumentBase".
    Object* GetDocumentBase() const;
    /// The topmost object on the way up of a class under "DocumentBase".
    Object* GetDocumentBaseRoot() const;

    /// The name of this object as an element of a document: the one that its owner gives it,
    /// "ZORVEX" for a "Document" without an owner, else that of its class.
    String GetElementName();
    /// The name under which `child` stands in this object: its class's when it stands in for the
    /// class of its field. Empty for null and for an object that isn't a child.
    String GetChildElementName(const Object* child);

    /// All children, those of the field touched last first: `out` is emptied first.
    Result GetElements(Array<Object*>& out) const;
    Result GetChildElements(Array<Object*>& out) const;
    /// Children of the class or below it, appended to `out`. An unknown class is code 2, "Cannot
    /// find the class: \"%s\".".
    Result GetElementsByClass(const String& className, Array<Object*>& out) const;
    /// Children of the field, appended to `out`. A name that the class doesn't allow is code 2.
    Result GetElementsByField(const String& fieldName, Array<Object*>& out) const;
    /// By class, and when there is no such class by field.
    Result GetChildElements(const String& name, Array<Object*>& out) const;
    /// Empties `out` and fills it with one entry for each element field of the class and its bases.
    Result GetChildElementTypes(Array<FieldType>& out) const;

    /// Detaches `child` from its owner, whichever that is, and deletes it. Null gives code 19,
    /// "Element to delete is NULL.".
    Result DeleteElement(Object* child);
    Result DeleteChildElement(Object* child);
    /// Deletes all children.
    Result DeleteElements();
    /// Deletes the children of the class or below it. An unknown class is code 2, "Cannot find the
    /// class: \"%s\".".
    Result DeleteElementsByClass(const String& className);
    /// Deletes the children of one field; a name that means no field with children is no error.
    Result DeleteElementsByField(const String& fieldName);

    // --- whole trees ------------------------------------------------------------------------

    /// Walks this object and everything below it, and documents that its URIs lead to, unless the
    /// context says otherwise; see TraverseContext. A null `context` walks nothing.
    zorvexTraverseResult Traverse(TraverseContext* context);
    /// Makes a copy, which is a root, has the same ids and belongs to the caller. `flags`: 2
    /// generic classes by element name, 4 with the children, 8 references as text only. Values
    /// equal to their default aren't copied. References to what is copied too mean the copy, others
    /// keep their target; none is followed for it. What can't be copied is told in the Result, and
    /// `out` has the rest; it stays as it was when there is nothing.
    Result Copy(Object*& out, unsigned int flags) const;

    /// Writes the document to `uri`. `options` may be null: then the active configuration holds.
    Result Save(const String& uri, Configuration* options);
    Result Save(const String& uri, const Configuration& options);
    /// Hands this object to the adapter of another format; what that makes goes to `handles`.
    Result Export(const String& uri, Array<Handle>& handles, Configuration* options);
    /// Writes this object alone as XML text. `text` is unchanged when the Result isn't Ok.
    Result GetXML(String& text, Configuration* options);

    // --- user data --------------------------------------------------------------------------

    /// A pointer of the application's that the library never looks at.
    void SetUserPointer(void* pointer);
    void* GetUserPointer() const;

protected:
    Object();
    /// Fixes the class of a new object. 0 for the class value 0, else 1.
    int InitData(short classValue);

private:
    friend class ClassData;

    ClassData* m_data;  // owned; never null
};

}  // namespace zorvex_api
