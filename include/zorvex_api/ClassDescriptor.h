#pragma once

#include <cstddef>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class ClassDescriptor;
class ClassDescriptorImpl;
class Object;

/// The other class that a class names: its base or its equivalence class.
///
/// A small value that serves as the name and as the descriptor. Good as long as the class that gave
/// it is registered.
class ZORVEX_API ClassLink
{
public:
    ClassLink(const String& name, ClassDescriptor* descriptor)
        : m_name(&name), m_descriptor(descriptor)
    {
    }
    /// No class, and no name.
    ClassLink(std::nullptr_t) : ClassLink(String::EmptyString(), nullptr) {}  // NOLINT: for ?:

    /// The name as it was set, resolved or not.
    operator const String&() const { return *m_name; }
    /// The descriptor, null when no class of that name is known.
    operator ClassDescriptor*() const { return m_descriptor; }
    ClassDescriptor* operator->() const { return m_descriptor; }
    explicit operator bool() const { return m_descriptor != nullptr; }

    // A descriptor or a text on the other side compares through the conversions.
    friend bool operator==(const ClassLink& a, const ClassLink& b)
    {
        return a.m_descriptor == b.m_descriptor;
    }
    friend bool operator!=(const ClassLink& a, const ClassLink& b) { return !(a == b); }
    friend bool operator==(const ClassLink& a, std::nullptr_t) { return a.m_descriptor == nullptr; }
    friend bool operator!=(const ClassLink& a, std::nullptr_t) { return a.m_descriptor != nullptr; }
    friend bool operator==(std::nullptr_t, const ClassLink& a) { return a.m_descriptor == nullptr; }
    friend bool operator!=(std::nullptr_t, const ClassLink& a) { return a.m_descriptor != nullptr; }

private:
    const String* m_name;           // owned by the class that gave the link
    ClassDescriptor* m_descriptor;  // not owned
};

/// The metadata of one class: names, base class, fields, how to make an object.
///
/// Owned by the class registry. A built-in class lives until Terminate, a class made at run time
/// until Reset; the memory stays as long as objects of the class do. Looking classes up is safe
/// from any thread. The Set and Register operations are for the code that brings a class in.
class ZORVEX_API ClassDescriptor : public Allocator
{
public:
    virtual ~ClassDescriptor();

    ClassDescriptor(const ClassDescriptor&) = delete;
    ClassDescriptor& operator=(const ClassDescriptor&) = delete;

    // --- the registry; each of these fills it first when that hasn't been done ----------------

    /// Finds a class; null when there is none. `name` is a local name of the main namespace, a
    /// namespace URI, ":" and a local name, a registered prefix, ":" and a local name, or "::" and
    /// a local name of the main namespace. A name of 1022 units or more raises code 520,
    /// "Invalid XML namespace".
    static ClassDescriptor* FindByName(const String& name);
    /// Finds a class by its class value; null when there is none.
    static ClassDescriptor* FindByClass(short classValue);
    /// Built-in classes and those made at run time.
    static int NumberOfClassDescriptors();
    /// Class `index`, 0 up to NumberOfClassDescriptors(), built-in classes first. Null out of
    /// range.
    static ClassDescriptor* GetClassDescriptor(int index);
    /// Releases all classes made at run time: nobody finds them any more.
    static Result Reset();
    /// Releases the run-time classes of one namespace, or the one class of that name when the
    /// namespace has none.
    static Result Reset(const String& namespaceURI);

    // --- names ----------------------------------------------------------------------------------

    const String& GetName() const;
    int SetName(const String& name);
    /// The format's version, as "6.0".
    const String& GetVersion() const;
    /// The file name of the schema that the class comes from, empty when it comes from none.
    const String& GetSchemaFile() const;
    /// `version` is the format's version, optionally followed by a blank and the schema's file
    /// name.
    int SetVersion(const String& version);
    /// The name objects are written with: the class's name unless another one was set.
    const String& GetOutputName() const;
    int SetOutputName(const String& name);
    const String& GetNamespace() const;
    const String& GetNamespacePrefix() const;
    int SetNamespace(const String& uri, const String& prefix);
    /// Namespace, ":" and output name; without a namespace just the name. Built on the first
    /// request and fixed from then on.
    const String& GetQualifiedName() const;
    /// The name of the type in the schema.
    const String& GetSchemaName() const;
    int SetSchemaName(const String& name);

    // --- the class
    // --------------------------------------------------------------------------------

    /// The class value: 1 to 32760, handed out anew in each session.
    short GetClass() const;
    int GetIsAbstract() const;
    int SetIsAbstract(int isAbstract);
    int GetDeprecated() const;
    int SetDeprecated(int deprecated);
    ClassLink GetBaseClass() const;
    int SetBaseClass(const String& name);
    /// The class that this one counts as in a comparison.
    ClassLink GetEquivalenceClass() const;
    int SetEquivalenceClass(const String& name);
    int SetMakeFunction(Object* (*make)());
    /// Makes an object, which the caller owns; also of an abstract class. Null for a class that
    /// has no way to make one.
    Object* MakeObject() const;
    /// For an abstract class: appends the classes below it that aren't abstract, through abstract
    /// ones, and gives 1. Else 0.
    int GetConcreteClasses(Array<ClassDescriptor*>& classes) const;
    /// 1 when the class or a base of it declares content.
    int HasContent() const;

    /// "attributeUseOptional" adds `value` to the attributes that the class makes optional. Any
    /// other name gives code 6.
    Result SetProperty(const String& name, const String& value);
    /// "legacy_class_value" takes a `short*` that gets the class value too. Any other name gives
    /// code 6.
    Result SetProperty(const String& name, void* value);
    /// Always code 6.
    Result GetProperty(const String& name, String& value) const;
    Result GetProperty(const String& name, void*& value) const;

    // --- fields
    // -----------------------------------------------------------------------------------

    /// Adds a field. 0 when the class or a base of it has such an attribute already; element fields
    /// may repeat.
    int RegisterField(const String& name, int type);
    /// What the field holds or refers to: a class name, several split by blanks (references only,
    /// else 0), "Integer", "Int", "Double", "String" or "Logical" for content, or "legacy/" and the
    /// name the field has in documents. 0 for another class of a content element whose values
    /// objects already hold. This and the following give 0 when the class has no such field of its
    /// own.
    int SetFieldClass(const String& field, const String& className, int searchAllNamespaces);
    /// For an element field only "suppressId=true" means something.
    int SetFieldDefault(const String& field, const String& value);
    int SetFieldRequired(const String& field, int required);
    int SetFieldDeprecated(const String& field, int deprecated);
    /// 1 is no array, 0 an array of any length. Gives 0 for a negative length, and for another
    /// length of a field of numbers that objects already hold.
    int SetFieldLength(const String& field, int length);
    /// Appends a null-terminated list of UTF-8 texts; 0 for a field that is no enumeration.
    int SetFieldAllowedValues(const String& field, const char** const values);

    /// Finds a field of the class or its bases. `flags` is a sum of 2 attributes, 4 elements and
    /// 8 content. Code 2 with "empty field name" or "%s is not a field of: %s." when there is none;
    /// `out` then stays as it was.
    Result GetField(const String& name, FieldInfo& out, unsigned int flags) const;
    /// Appends the fields of the kinds in `flags`, with those of the bases when `inherited` is set:
    /// the class's own first.
    Result GetFields(Array<FieldInfo>& out, unsigned int flags, int inherited) const;
    /// 1 when GetField finds one.
    int IsField(const String& name, unsigned int flags) const;

    /// The library's own record; owned by this.
    ClassDescriptorImpl* GetImplementation() const;

private:
    friend class ClassDescriptorImpl;
    explicit ClassDescriptor(ClassDescriptorImpl* impl);

    ClassDescriptorImpl* m_impl;  // owned, never null
};

}  // namespace zorvex_api
