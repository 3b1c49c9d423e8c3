#include "objectmodel/ClassLayout.h"

#include <new>

#include "objectmodel/ClassDescriptorImpl.h"

namespace zorvex_api
{

namespace
{

/// A layout with few searches isn't worth an index of its own.
constexpr std::uint32_t kSearchesForIndex = 8;

bool IsNamed(const FieldDescriptor& field, const HookedVector<TextView>& names)
{
    for (const TextView name : names)
    {
        if (field.NameView() == name)
        {
            return true;
        }
    }
    return false;
}

}  // namespace

struct ClassLayout::Flat : public Allocator
{
    explicit Flat(const FieldRange& all)
        : fields(all.begin(), all.end()), index(static_cast<std::uint32_t>(all.size()))
    {
        for (std::uint32_t position = 0; position < fields.size(); ++position)
        {
            index.Insert(*fields[position], position);
        }
    }

    HookedVector<FieldDescriptor*> fields;
    FieldIndex index;
};

ClassLayout::ClassLayout(std::span<const ClassDescriptorImpl* const> chain,
                         std::uint32_t generation)
    : m_generation(generation), m_depth(chain.size()), m_levels(chain.size() * kOrders)
{
    m_indexes.reserve(m_depth);
    for (std::size_t level = 0; level < m_depth; ++level)
    {
        const ClassDescriptorImpl& impl = *chain[level];
        m_levels[kDerivedFirst * m_depth + level] = impl.Fields();
        m_levels[kBaseFirst * m_depth + (m_depth - 1 - level)] = impl.Fields();
        m_levels[kElements * m_depth + level] = impl.m_elementFields.Fields();
        m_indexes.push_back(impl.m_index.load(std::memory_order_relaxed));
        m_content = m_content != nullptr ? m_content : impl.m_content;
        m_externalReference =
            m_externalReference != nullptr ? m_externalReference : impl.m_external;
        m_wildcard = m_wildcard != nullptr ? m_wildcard : impl.m_wildcard;
    }
    for (std::size_t order = 0; order < kOrders; ++order)
    {
        for (std::size_t level = 0; level < m_depth; ++level)
        {
            m_sizes[order] += m_levels[order * m_depth + level].size();
        }
    }
    CollectRequired(chain);
}

ClassLayout::~ClassLayout()
{
    delete m_flat.load(std::memory_order_relaxed);
}

const ClassLayout::Flat* ClassLayout::FlatForSearch() const
{
    if (Flat* known = m_flat.load(std::memory_order_acquire))
    {
        return known;
    }
    const std::uint32_t searches = m_searches.fetch_add(1, std::memory_order_relaxed);
    if (searches < kSearchesForIndex + m_sizes[kDerivedFirst] / 4)
    {
        return nullptr;
    }
    Flat* fresh = nullptr;
    try
    {
        fresh = new Flat(DerivedFirst());
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;  // searched as before
    }
    Flat* present = nullptr;
    if (m_flat.compare_exchange_strong(present, fresh, std::memory_order_acq_rel))
    {
        return fresh;
    }
    delete fresh;
    return present;
}

FieldScope ClassLayout::ScopeOf(const Flat& flat)
{
    return {flat.fields, &flat.index};
}

void ClassLayout::CollectRequired(std::span<const ClassDescriptorImpl* const> chain)
{
    HookedVector<TextView> optional;
    for (const ClassDescriptorImpl* level : chain)
    {
        const bool any = level->m_numberRequired.load(std::memory_order_relaxed) > 0;
        for (FieldDescriptor* field : any ? level->Fields() : FieldSpan())
        {
            if (field->IsRequired() && !field->IsElement() && !IsNamed(*field, optional))
            {
                m_requiredFields.push_back(field);
            }
        }
        for (const String& name : level->OptionalAttributes())
        {
            optional.push_back(View(name));
        }
    }
}

FieldDescriptor* ClassLayout::FindField(const FieldQuery& query, bool exactOnly) const
{
    FieldDescriptor* found =
        Search([&](const FieldScope& scope) { return scope.FindExact(query); });
    if (found != nullptr || exactOnly)
    {
        return found;
    }
    if (m_externalReference != nullptr && (query.mask & field_kind::kAttribute) != 0 &&
        query.IsLoadOrLocation())
    {
        return m_externalReference;
    }
    return Search([&](const FieldScope& scope) { return scope.FindNear(query); });
}

FieldDescriptor* ClassLayout::FindAttribute(TextView xmlName) const
{
    constexpr int kMask = field_kind::kAttributeOrContent;
    const std::uint32_t hash = name_match::Hash(xmlName);
    FieldDescriptor* found =
        Search([&](const FieldScope& scope) { return scope.FindXmlName(xmlName, hash, kMask); });
    return found != nullptr ? found : FindField(xmlName, kMask);
}

FieldDescriptor* ClassLayout::FindElement(TextView name) const
{
    const std::uint32_t hash = name_match::Hash(name);
    return Search(
        [&](const FieldScope& scope)
        {
            FieldDescriptor* found = nullptr;
            scope.ForHash(hash,
                          [&](FieldDescriptor* field, std::uint32_t)
                          {
                              if (IsElementKind(*field) && field->NameView() == name)
                              {
                                  found = field;
                              }
                              return found != nullptr;
                          });
            return found;
        });
}

}  // namespace zorvex_api
