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

FieldDescriptor* ClassDescriptorImpl::FindField(TextView name, int mask, bool climb,
                                                bool exactOnly) const
{
    const FieldQuery query(name, mask);
    if (climb)
    {
        return Layout().FindField(query, exactOnly);
    }
    const FieldScope own = Scope();
    FieldDescriptor* const found = own.FindExact(query);
    return found != nullptr || exactOnly ? found : own.FindNear(query);
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
    return InsertOwned(std::move(field), place);
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
    if (candidate.Type() != zorvexFieldString || candidate.NameView() != u"id")
    {
        return false;
    }
    if (View(BaseName()) == u"Object")
    {
        return true;
    }
    if (!present.IsBuiltIn())
    {
        return false;  // no IdObject: the id is an attribute like others
    }
    const FieldSpan own = Fields();
    if (std::find(own.begin(), own.end(), &present) == own.end())
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
    return InsertOwned(std::move(field), Place::Back);
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

/// Under the write lock. Without memory the field may stand in the list all the same; then it
/// belongs to the class.
FieldDescriptor* ClassDescriptorImpl::InsertOwned(std::unique_ptr<FieldDescriptor> field,
                                                  Place place)
{
    try
    {
        InsertField(field.get(), place);
    }
    catch (...)
    {
        const FieldSpan own = Fields();
        if (std::find(own.begin(), own.end(), field.get()) != own.end())
        {
            field.release();
        }
        throw;
    }
    return field.release();
}

/// Under the write lock.
void ClassDescriptorImpl::InsertField(FieldDescriptor* field, Place place)
{
    const FieldSpan own = Fields();
    if (place == Place::Front)
    {
        HookedVector<FieldDescriptor*> fields(own.begin(), own.end());
        fields.insert(fields.begin(), field);
        ReplaceFields(fields);
        return;
    }
    const auto position = static_cast<std::uint32_t>(own.size());
    Retire(m_fields.Append(field), &DeleteBlock);
    NoteOwn(field);
    FieldIndex* const index = m_index.load(std::memory_order_relaxed);
    if (index != nullptr && index->HasRoom())
    {
        index->Insert(*field, position);
    }
    else
    {
        IndexFields();
    }
    Invalidate(false);
}

/// Under the write lock: enters a new last field in the lists of its kind.
void ClassDescriptorImpl::NoteOwn(FieldDescriptor* field)
{
    if (field->IsElement())
    {
        Retire(m_elementFields.Append(field), &DeleteBlock);
        if (m_wildcard == nullptr && field->IsWildcard())
        {
            m_wildcard = field;
        }
        return;
    }
    if (m_content == nullptr && field->IsContent())
    {
        m_content = field;
    }
    if (m_external == nullptr && field->Type() == zorvexFieldExternalReference)
    {
        m_external = field;
    }
}

/// Under the write lock: other fields, or another order.
void ClassDescriptorImpl::ReplaceFields(FieldSpan fields)
{
    // Positions change: searched without an index until there is a new one.
    Retire(m_index.exchange(nullptr, std::memory_order_acq_rel), &DeleteIndex);
    Retire(m_fields.Replace(fields), &DeleteBlock);
    Retire(m_elementFields.Replace(FieldSpan()), &DeleteBlock);
    m_content = nullptr;
    m_external = nullptr;
    m_wildcard = nullptr;
    int required = 0;
    for (FieldDescriptor* field : fields)
    {
        NoteOwn(field);
        required += field->IsRequired();
    }
    m_numberRequired.store(required, std::memory_order_relaxed);
    IndexFields();
    Invalidate(false);
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
    ReplaceFields(rest);
    Retire(field, &DeleteField);
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
    ReplaceFields(taken);
    other.ReplaceFields(FieldSpan());
    for (FieldDescriptor* field : replaced)
    {
        Retire(field, &DeleteField);
    }
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
