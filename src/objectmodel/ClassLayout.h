#pragma once

#include <atomic>
#include <cstdint>
#include <span>

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
/// when the class or a base of it has changed. That costs a step for each class of the chain, not
/// for each field: documents with unknown elements change their classes all the time. A layout
/// stays readable as long as its class exists, but doesn't learn of later changes: ask for it anew
/// for each object.
class ClassLayout : public Allocator
{
public:
    /// `chain`: the class itself and its bases up to the root class. Under the write lock.
    ClassLayout(std::span<const ClassDescriptorImpl* const> chain, std::uint32_t generation);
    ~ClassLayout();
    ClassLayout(const ClassLayout&) = delete;
    ClassLayout& operator=(const ClassLayout&) = delete;

    std::uint32_t Generation() const { return m_generation; }

    /// The class's own fields first, then each base's up to the root class.
    FieldRange DerivedFirst() const { return Range(kDerivedFirst); }
    /// The root class's fields first, the class's own last. The order of a document.
    FieldRange BaseFirst() const { return Range(kBaseFirst); }
    /// Of types 7 and 8, derived first.
    FieldRange ElementFields() const { return Range(kElements); }
    /// Required fields that are no elements, derived first, without those that a subclass on the
    /// way makes optional.
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
    /// The first element or content element field of this name in documents that `accept(field)`
    /// takes, derived first; null if none.
    template <class Accept>
    FieldDescriptor* FindElementIf(TextView xmlName, Accept accept) const
    {
        const std::uint32_t hash = name_match::Hash(xmlName);
        return Search(
            [&](const FieldScope& scope)
            {
                FieldDescriptor* found = nullptr;
                scope.ForHash(
                    hash,
                    [&](FieldDescriptor* field, std::uint32_t)
                    {
                        if ((field->IsElement() || field->Type() == zorvexFieldContentElement) &&
                            field->XmlNameView() == xmlName && accept(*field))
                        {
                            found = field;
                        }
                        return found != nullptr;
                    });
                return found;
            });
    }
    /// The field that a text means, of the kinds in `mask`: of exactly that name anywhere in the
    /// class chain, else the first that the name match accepts. "load" and "location" mean the
    /// external reference.
    FieldDescriptor* FindField(const FieldQuery& query, bool exactOnly) const;
    FieldDescriptor* FindField(TextView name, int mask) const
    {
        return FindField(FieldQuery(name, mask), false);
    }

private:
    /// Arrangements of the levels.
    enum Order
    {
        kDerivedFirst,
        kBaseFirst,
        kElements,
        kOrders
    };
    /// All fields in one run with one index, derived first: made when the layout has been searched
    /// often enough to pay for it.
    struct Flat;

    FieldRange Range(Order order) const
    {
        return FieldRange(std::span(m_levels).subspan(order * m_depth, m_depth), m_sizes[order]);
    }
    void CollectRequired(std::span<const ClassDescriptorImpl* const> chain);
    const Flat* FlatForSearch() const;
    /// The first result of `find(scope)` that isn't null, over the classes from the derived one up.
    template <class Find>
    FieldDescriptor* Search(Find find) const
    {
        const Flat* flat = FlatForSearch();
        const std::size_t scopes = flat != nullptr ? 1 : m_depth;
        for (std::size_t i = 0; i < scopes; ++i)
        {
            if (FieldDescriptor* found = find(flat != nullptr ? ScopeOf(*flat) : LevelScope(i)))
            {
                return found;
            }
        }
        return nullptr;
    }
    static FieldScope ScopeOf(const Flat& flat);
    static bool IsElementKind(const FieldDescriptor& field)
    {
        return field.IsElement() || field.Type() == zorvexFieldContentElement;
    }
    FieldScope LevelScope(std::size_t level) const { return {m_levels[level], m_indexes[level]}; }

    std::uint32_t m_generation;
    std::size_t m_depth;                        // classes in the chain
    HookedVector<FieldSpan> m_levels;           // m_depth for each order
    HookedVector<const FieldIndex*> m_indexes;  // of the levels, derived first; null without one
    std::size_t m_sizes[kOrders] = {};
    HookedVector<FieldDescriptor*> m_requiredFields;
    FieldDescriptor* m_content = nullptr;
    FieldDescriptor* m_externalReference = nullptr;
    FieldDescriptor* m_wildcard = nullptr;
    mutable std::atomic<std::uint32_t> m_searches{0};
    mutable std::atomic<Flat*> m_flat{nullptr};  // owned
};

}  // namespace zorvex_api
