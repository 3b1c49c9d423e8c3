#pragma once

#include <atomic>
#include <cstdint>
#include <span>

#include "objectmodel/ElementCache.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/FieldIndex.h"
#include "objectmodel/FieldSearch.h"
#include "objectmodel/HookedVector.h"
#include "runtime/Text.h"

namespace zorvex_api
{

class ClassDescriptorImpl;

/// All fields of a class and its bases, arranged for reading, writing and walking.
///
/// Immutable once published; obtained from ClassDescriptorImpl::Layout(), which makes a new one
/// when the class or a base of it has changed. A layout stays readable as long as its class exists,
/// but doesn't learn of later changes: ask for it anew for each object.
class ClassLayout : public Allocator
{
public:
    /// `chain`: the class itself and its bases up to the root class.
    ClassLayout(std::span<const ClassDescriptorImpl* const> chain, std::uint32_t generation);

    std::uint32_t Generation() const { return m_generation; }

    /// The class's own fields first, then each base's up to the root class.
    FieldSpan DerivedFirst() const { return m_derivedFirst; }
    /// The root class's fields first, the class's own last. The order of a document.
    FieldSpan BaseFirst() const { return m_baseFirst; }
    /// Of types 7 and 8, derived first.
    FieldSpan ElementFields() const { return m_elementFields; }
    /// Reference and URI fields (types 5, 6, 9, 10, 11), derived first.
    FieldSpan ReferenceFields() const { return m_referenceFields; }
    /// Required fields that are no elements, derived first, without those that the class or a
    /// subclass on the way makes optional.
    FieldSpan RequiredFields() const { return m_requiredFields; }
    /// The nearest content field, the nearest of type 11, the nearest that takes any child; or
    /// null.
    FieldDescriptor* Content() const { return m_content; }
    FieldDescriptor* ExternalReference() const { return m_externalReference; }
    FieldDescriptor* Wildcard() const { return m_wildcard; }

    /// The attribute or content that stands under this name in a document: by exact XML name, then
    /// by FindField.
    FieldDescriptor* FindAttribute(TextView xmlName) const;
    /// The element or content element field of exactly this name, derived first; null if none.
    FieldDescriptor* FindElement(TextView name) const;
    /// The field that a text means, of the kinds in `mask`: of exactly that name anywhere in the
    /// class chain, else the first that the name match accepts. "load" and "location" mean the
    /// external reference.
    FieldDescriptor* FindField(const FieldQuery& query, bool exactOnly) const;
    FieldDescriptor* FindField(TextView name, int mask) const
    {
        return FindField(FieldQuery(name, mask), false);
    }

    /// What the reader found for an element name below this class; see ElementCache.
    ElementCache& Elements() const { return m_elements; }

private:
    void Note(FieldDescriptor* field);
    void CollectRequired(std::span<const ClassDescriptorImpl* const> chain);
    FieldScope Scope() const { return {m_derivedFirst, &m_index}; }

    std::uint32_t m_generation;
    HookedVector<FieldDescriptor*> m_derivedFirst;
    HookedVector<FieldDescriptor*> m_baseFirst;
    HookedVector<FieldDescriptor*> m_elementFields;
    HookedVector<FieldDescriptor*> m_referenceFields;
    HookedVector<FieldDescriptor*> m_requiredFields;
    FieldDescriptor* m_content = nullptr;
    FieldDescriptor* m_externalReference = nullptr;
    FieldDescriptor* m_wildcard = nullptr;
    FieldIndex m_index;
    mutable ElementCache m_elements;
};

}  // namespace zorvex_api
