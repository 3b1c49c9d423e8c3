#include "objectmodel/ClassDescriptorImpl.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>

#include "objectmodel/ClassRegistry.h"
#include "objectmodel/Namespace.h"

namespace zorvex_api
{

namespace
{

/// A class with fewer fields of its own is searched without an index.
constexpr size_t kIndexedFrom = 16;

void DeleteBlock(void* block)
{
    Allocator::deallocate(block);
}
void DeleteIndex(void* index)
{
    delete static_cast<FieldIndex*>(index);
}
void DeleteLayout(void* layout)
{
    delete static_cast<ClassLayout*>(layout);
}

void DeleteField(void* field)
{
    auto* const descriptor = static_cast<FieldDescriptor*>(field);
    if (!descriptor->IsBuiltIn())
    {
        delete descriptor;
    }
}

/// Element fields and content elements may repeat a name of the class or its bases.
bool MayRepeat(int type)
{
    return type == zorvexFieldSingleElement || type == zorvexFieldMultipleElement ||
           type == zorvexFieldContentElement;
}

/// Whether the built-in id can be meant.
bool MayBeId(const FieldDescriptor& field)
{
    const std::uint32_t id = name_match::Hash(u"id");
    return field.NameHash() == id || field.XmlNameHash() == id;
}

/// The name by which a registration is recognised again.
TextView RegisteredName(const FieldDescriptor& field)
{
    return field.HasLegacyName() ? field.NameView() : field.XmlNameView();
}

FieldDescriptor* FindRegistered(const FieldScope& scope, TextView name, int mask)
{
    FieldDescriptor* found = nullptr;
    scope.ForHash(name_match::Hash(name),
                  [&](FieldDescriptor* field, std::uint32_t)
                  {
                      if ((field->Kind() & mask) != 0 && RegisteredName(*field) == name)
                      {
                          found = field;
                      }
                      return found != nullptr;
                  });
    return found;
}

}  // namespace

// --- reading ------------------------------------------------------------------------------------

FieldSpan ClassDescriptorImpl::Fields() const
{
    const FieldList* list = m_fields.load(std::memory_order_acquire);
    return list != nullptr ? FieldSpan(list->items, list->count.load(std::memory_order_acquire))
                           : FieldSpan();
}

const ClassLayout& ClassDescriptorImpl::MakeLayout() const
{
    ResolveChain();
    const std::lock_guard lock(ClassRegistry::WriteLock());
    ClassLayout* const present = m_layout.load(std::memory_order_relaxed);
    const std::uint32_t generation = Generation();
    if (present != nullptr && present->Generation() == generation)
    {
        return *present;
    }
    HookedVector<const ClassDescriptorImpl*> chain;
    for (const ClassDescriptorImpl* at = this; at != nullptr;
         at = at->m_base.load(std::memory_order_relaxed))
    {
        chain.push_back(at);
    }
    auto* const fresh = new ClassLayout(chain, generation);
    m_layout.store(fresh, std::memory_order_release);
    Retire(present, &DeleteLayout);
    return *fresh;
}

/// A layout costs one step for each field. A class whose fields keep changing is searched without
/// one, until there have been enough searches since the last change to pay for it.
bool ClassDescriptorImpl::LayoutPays() const
{
    const ClassLayout* layout = m_layout.load(std::memory_order_acquire);
    if (layout == nullptr || layout->Generation() == Generation())
    {
        return true;
    }
    constexpr std::uint32_t kWorth = 64;
    return m_searchesSinceChange.fetch_add(1, std::memory_order_relaxed) >=
           kWorth + layout->DerivedFirst().size();
}

FieldDescriptor* ClassDescriptorImpl::FindField(TextView name, int mask, bool climb,
                                                bool exactOnly) const
{
    const FieldQuery query(name, mask);
    return climb && LayoutPays() ? Layout().FindField(query, exactOnly)
                                 : FindInChain(query, climb, exactOnly);
}

FieldDescriptor* ClassDescriptorImpl::FindInChain(const FieldQuery& query, bool climb,
                                                  bool exactOnly) const
{
    const auto search = [&](auto find) -> FieldDescriptor*
    {
        for (const ClassDescriptorImpl* at = this; at != nullptr; at = climb ? at->Base() : nullptr)
        {
            if (FieldDescriptor* found = find(at->Scope()))
            {
                return found;
            }
        }
        return nullptr;
    };

    FieldDescriptor* found =
        search([&](const FieldScope& scope) { return scope.FindExact(query); });
    if (found != nullptr || exactOnly)
    {
        return found;
    }
    if (query.IsLoadOrLocation() && (query.mask & field_kind::kAttribute) != 0)
    {
        found = search(
            [](const FieldScope& scope)
            {
                const auto at =
                    std::find_if(scope.fields.begin(), scope.fields.end(),
                                 [](const FieldDescriptor* field)
                                 { return field->Type() == zorvexFieldExternalReference; });
                return at != scope.fields.end() ? *at : nullptr;
            });
        if (found != nullptr)
        {
            return found;
        }
    }
    return search([&](const FieldScope& scope) { return scope.FindNear(query); });
}

FieldDescriptor* ClassDescriptorImpl::FindAttribute(TextView xmlName) const
{
    if (LayoutPays())
    {
        return Layout().FindAttribute(xmlName);
    }
    constexpr int kMask = field_kind::kAttributeOrContent;
    const std::uint32_t hash = name_match::Hash(xmlName);
    for (const ClassDescriptorImpl* at = this; at != nullptr; at = at->Base())
    {
        if (FieldDescriptor* found = at->Scope().FindXmlName(xmlName, hash, kMask))
        {
            return found;
        }
    }
    return FindInChain(FieldQuery(xmlName, kMask), true, false);
}

FieldDescriptor* ClassDescriptorImpl::FindOwnField(TextView name) const
{
    const FieldScope own = Scope();
    // Most often the attribute that was registered just now: no other has its name.
    if (!own.fields.empty() && own.fields.back()->IsAttribute() &&
        !MayRepeat(own.fields.back()->Type()) && RegisteredName(*own.fields.back()) == name)
    {
        return own.fields.back();
    }
    for (const int kind : {field_kind::kAttribute, field_kind::kElement, field_kind::kContent})
    {
        if (FieldDescriptor* found = FindRegistered(own, name, kind))
        {
            return found;
        }
    }
    if (!HasSchemaFile())
    {
        for (const int kind : {field_kind::kAttribute, field_kind::kElement, field_kind::kContent})
        {
            if (FieldDescriptor* found = own.FindNear(FieldQuery(name, kind)))
            {
                return found;
            }
        }
    }
    FieldDescriptor* const id = FieldDescriptor::BuiltIn(FieldDescriptor::kId);
    const bool isId =
        id != nullptr && IsIdObject() &&
        (name == id->NameView() || (!HasSchemaFile() && id->Matches(name, field_kind::kAll)));
    return isId ? id : nullptr;
}

// --- changing -----------------------------------------------------------------------------------

int ClassDescriptorImpl::RegisterField(const String& name, int type, Place place,
                                       const String* prefixUri)
{
    const String prefix = prefixUri != nullptr ? Namespace::PrefixOf(View(*prefixUri)) : m_prefix;
    bool accepted = false;
    RegisterOrFind(std::make_unique<FieldDescriptor>(this, name, type, prefix, m_borrowsTexts),
                   place, accepted);
    return accepted;
}

FieldDescriptor* ClassDescriptorImpl::NewField(const String& name, int type)
{
    bool accepted = false;
    return RegisterOrFind(
        std::make_unique<FieldDescriptor>(this, name, type, m_prefix, m_borrowsTexts), Place::Back,
        accepted);
}

/// Gives the field when it was added, else null; `accepted` tells whether the registration counts
/// as good.
FieldDescriptor* ClassDescriptorImpl::RegisterOrFind(std::unique_ptr<FieldDescriptor> field,
                                                     Place place, bool& accepted)
{
    ResolveChain();
    const bool idObject = MayBeId(*field) && IsIdObject();

    const std::lock_guard lock(ClassRegistry::WriteLock());
    if (!MayRepeat(field->Type()))
    {
        if (FieldDescriptor* present = FindDuplicate(*field, idObject))
        {
            accepted = RegisterAgain(*present, *field);
            return nullptr;
        }
    }
    accepted = true;
    InsertField(field.get(), place);
    return field.release();
}

/// Under the write lock, with the class chain resolved.
FieldDescriptor* ClassDescriptorImpl::FindDuplicate(const FieldDescriptor& candidate,
                                                    bool idObject) const
{
    const TextView xmlName = candidate.XmlNameView();
    for (const ClassDescriptorImpl* at = this; at != nullptr;
         at = at->m_base.load(std::memory_order_relaxed))
    {
        const FieldScope scope = at->Scope();
        FieldDescriptor* present = FindRegistered(scope, xmlName, field_kind::kAll);
        if (present == nullptr && !at->HasSchemaFile())
        {
            present = scope.FindNear(FieldQuery(candidate.NameView(), field_kind::kAll));
        }
        if (present != nullptr)
        {
            return present;
        }
    }
    FieldDescriptor* const id = FieldDescriptor::BuiltIn(FieldDescriptor::kId);
    const bool isId = id != nullptr && idObject &&
                      (xmlName == id->XmlNameView() ||
                       (!HasSchemaFile() && id->Matches(candidate.NameView(), field_kind::kAll)));
    return isId ? id : nullptr;
}

bool ClassDescriptorImpl::RegisterAgain(FieldDescriptor& present, const FieldDescriptor& candidate)
{
    if (!present.IsBuiltIn() || candidate.Type() != zorvexFieldString ||
        candidate.NameView() != u"id")
    {
        return false;
    }
    const FieldSpan own = Fields();
    const bool known = std::find(own.begin(), own.end(), &present) != own.end();
    if (!known && View(BaseName()) != u"Object")
    {
        InsertField(&present, Place::Back);
    }
    return true;
}

FieldDescriptor* ClassDescriptorImpl::AddRuntimeField(TextView name, int type,
                                                      const ClassDescriptor* fieldClass,
                                                      const String* prefix)
{
    std::unique_ptr<FieldDescriptor> field(new FieldDescriptor(
        this, ToString(name), type, prefix != nullptr ? *prefix : m_prefix, false));
    if (fieldClass != nullptr)
    {
        field->SetClass(fieldClass->GetQualifiedName(), false, false);
        field->SetClassValue(fieldClass->GetClass());
    }
    ResolveChain();
    const bool idObject = MayBeId(*field) && IsIdObject();

    const std::lock_guard lock(ClassRegistry::WriteLock());
    if (!MayRepeat(type))
    {
        if (FieldDescriptor* present = FindDuplicate(*field, idObject))
        {
            return present->Kind() == field->Kind() ? present : nullptr;
        }
    }
    else if (FieldDescriptor* present = FindSameElement(*field))
    {
        return present;
    }
    InsertField(field.get(), Place::Back);
    return field.release();
}

/// Under the write lock: another thread may have added the field meanwhile.
FieldDescriptor* ClassDescriptorImpl::FindSameElement(const FieldDescriptor& candidate) const
{
    FieldDescriptor* found = nullptr;
    for (const ClassDescriptorImpl* at = this; at != nullptr && found == nullptr;
         at = at->m_base.load(std::memory_order_relaxed))
    {
        at->Scope().ForHash(candidate.NameHash(),
                            [&](FieldDescriptor* field, std::uint32_t)
                            {
                                if (MayRepeat(field->Type()) && field->Kind() == candidate.Kind() &&
                                    field->NameView() == candidate.NameView())
                                {
                                    found = field;
                                }
                                return found != nullptr;
                            });
    }
    return found;
}

/// Under the write lock.
void ClassDescriptorImpl::InsertField(FieldDescriptor* field, Place place)
{
    FieldList* const list = m_fields.load(std::memory_order_relaxed);
    const std::uint32_t count = list != nullptr ? list->count.load(std::memory_order_relaxed) : 0;
    if (place == Place::Back && list != nullptr && count < list->capacity)
    {
        list->items[count] = field;
        list->count.store(count + 1, std::memory_order_release);
    }
    else
    {
        HookedVector<FieldDescriptor*> fields;
        fields.reserve(count + 1);
        if (list != nullptr)
        {
            fields.assign(list->items, list->items + count);
        }
        fields.insert(place == Place::Back ? fields.end() : fields.begin(), field);
        PublishFields(fields, place == Place::Back);
    }

    FieldIndex* const index = m_index.load(std::memory_order_relaxed);
    if (index != nullptr && index->HasRoom())
    {
        index->Insert(*field, count);
    }
    else
    {
        IndexFields();
    }
    Invalidate(false);
}

/// Under the write lock. `appended`: positions are what they were, so the index stays good.
void ClassDescriptorImpl::PublishFields(FieldSpan fields, bool appended)
{
    if (!appended)
    {
        Retire(m_index.exchange(nullptr, std::memory_order_acq_rel), &DeleteIndex);
    }
    const size_t capacity = std::max<size_t>(4, fields.size() + fields.size() / 2);
    void* memory =
        Allocator::allocate(sizeof(FieldList) + (capacity - 1) * sizeof(FieldDescriptor*));
    auto* const fresh = new (memory) FieldList;
    fresh->capacity = static_cast<std::uint32_t>(capacity);
    std::copy(fields.begin(), fields.end(), fresh->items);
    fresh->count.store(static_cast<std::uint32_t>(fields.size()), std::memory_order_relaxed);
    Retire(m_fields.exchange(fresh, std::memory_order_acq_rel), &DeleteBlock);
}

/// Under the write lock.
void ClassDescriptorImpl::IndexFields()
{
    const FieldSpan own = Fields();
    if (own.size() < kIndexedFrom)
    {
        return;
    }
    auto* const fresh = new FieldIndex(static_cast<std::uint32_t>(own.size() * 2));
    for (std::uint32_t position = 0; position < own.size(); ++position)
    {
        fresh->Insert(*own[position], position);
    }
    Retire(m_index.exchange(fresh, std::memory_order_acq_rel), &DeleteIndex);
}

bool ClassDescriptorImpl::RemoveField(FieldDescriptor* field)
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    const FieldSpan own = Fields();
    if (std::find(own.begin(), own.end(), field) == own.end())
    {
        return false;
    }
    HookedVector<FieldDescriptor*> rest;
    std::copy_if(own.begin(), own.end(), std::back_inserter(rest),
                 [field](const FieldDescriptor* other) { return other != field; });
    PublishFields(rest, false);
    IndexFields();
    Retire(field, &DeleteField);
    Invalidate(false);
    return true;
}

void ClassDescriptorImpl::TakeOverFields(ClassDescriptorImpl& other)
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    const FieldSpan old = Fields();
    const HookedVector<FieldDescriptor*> replaced(old.begin(), old.end());
    const FieldSpan taken = other.Fields();
    for (FieldDescriptor* field : taken)
    {
        if (!field->IsBuiltIn())
        {
            field->SetOwner(this);
        }
    }
    PublishFields(taken, false);
    IndexFields();
    other.PublishFields(FieldSpan(), false);
    for (FieldDescriptor* field : replaced)
    {
        Retire(field, &DeleteField);
    }
    Invalidate(false);
    other.Invalidate(false);
}

void ClassDescriptorImpl::FieldsChanged(bool namesToo)
{
    const std::lock_guard lock(ClassRegistry::WriteLock());
    if (namesToo)
    {
        IndexFields();
    }
    Invalidate(false);
}

}  // namespace zorvex_api
