#include <algorithm>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

#include "objectmodel/AttributeMessages.h"
#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/AttributeWrite.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ConfigurationStack.h"
#include "objectmodel/ExternalRep.h"
#include "runtime/XmlCharacters.h"

/// Storing references: ids and URIs by the objects that they lead to, or by their text.

namespace zorvex_api::attribute_store
{

namespace
{

constexpr TextView kSeparators = u" \t\r\n";

// --- making ids
// -------------------------------------------------------------------------------------

bool CanHaveId(ClassData& object)
{
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(object.GetClassDescriptor());
    return descriptor != nullptr && descriptor->IsIdObject() && !descriptor->IsDocumentBase();
}

/// An object that was read without an id gets one now that something refers to it.
void EnsureId(ClassData& target)
{
    if (!target.id.IsNone())
    {
        return;
    }
    if (target.owner != nullptr)
    {
        target.TakeGeneratedId();
        return;
    }
    target.id.Clear();
}

/// Makes `id` refer to the object: by its id when both stand in one tree, by a link as long as one
/// of them has no place yet. False, with `id` empty, for an object of another tree.
bool PointAt(ClassData& owner, ClassData& target, Id& id)
{
    EnsureId(target);
    id.Clear();
    if (!target.id.HasValue() || owner.owner == nullptr)
    {
        id.SetLink(target.object);
        return true;
    }
    if (target.Root() != owner.Root())
    {
        return false;
    }
    id.SetValue(target.id);
    return true;
}

TextView WithoutHash(TextView id)
{
    return !id.empty() && id.front() == u'#' ? id.substr(1) : id;
}

/// Appends the ids that a reference stands for: one for each handle, or else those of its text.
Result AppendIds(ClassData& owner, TextView name, const Reference& reference, std::vector<Id>& out)
{
    const Array<Handle>& handles = reference.GetHandles();
    if (handles.GetSize() == 0)
    {
        attribute_numbers::ForEachToken(View(reference.GetString()), kSeparators,
                                        [&](TextView token)
                                        { out.emplace_back(WithoutHash(token)); });
        return Result();
    }
    for (const Handle& handle : handles)
    {
        ClassData* target = ClassData::Of(handle.GetObject());
        if (target == nullptr || !CanHaveId(*target))
        {
            return attribute_message::CannotSet(name);
        }
        Id id;
        if (!PointAt(owner, *target, id))
        {
            return attribute_message::OtherRoot(name, View(target->id.ToString()));
        }
        out.push_back(std::move(id));
    }
    return Result();
}

bool AreSame(const Id& a, const Id& b)
{
    if (a.Link() != nullptr && a.Link() == b.Link())
    {
        return true;
    }
    return a.Current().HasValue() && a.Current() == b.Current();
}

// --- making URIs
// ------------------------------------------------------------------------------------

/// Owns a reference until a field takes it.
struct DestroyRep
{
    void operator()(ExternalRep* reference) const { ExternalRep::Destroy(reference); }
};
using OwnedRep = std::unique_ptr<ExternalRep, DestroyRep>;

/// A new record for a URI. `like` (optional) gives the flag "load" and the format.
OwnedRep MakeUri(ClassData& owner, const Reference& reference, const ExternalRep* like)
{
    OwnedRep made(ExternalRep::Make(owner));
    if (like != nullptr)
    {
        made->flags |= like->flags & ExternalRep::kLoad;
        made->StoreFormat(like->FormatText());
    }
    attribute_write::SetUriText(owner, *made, View(reference.GetString()));
    const Array<Handle>& handles = reference.GetHandles();
    ClassData* single = handles.GetSize() == 1 ? ClassData::Of(handles[0].GetObject()) : nullptr;
    if (single != nullptr && CanHaveId(*single))
    {
        EnsureId(*single);
        if (single->Root() == owner.Root())
        {
            made->SetTarget(owner.object, single->object);
            return made;
        }
    }
    if (handles.GetSize() > 0)
    {
        made->SetTargets(handles);
        made->CountUses();
    }
    return made;
}

/// Whether `text` is one entry of the list although it has blanks: texts are stored unescaped.
bool IsEntryWithBlanks(const Array<ExternalRep*>* list, TextView text)
{
    if (list == nullptr || text.find_first_of(kSeparators) == TextView::npos)
    {
        return false;
    }
    return std::any_of(list->begin(), list->end(),
                       [&](const ExternalRep* entry)
                       {
                           std::u16string known;
                           entry->AppendText(known);
                           return known == text;
                       });
}

/// The URIs that a reference stands for: one with its handles, or else those of its text. What is
/// an entry of `present` (may be null) stays one, so that a list can be read, changed and set.
void AppendUris(ClassData& owner, const Reference& reference, const Array<ExternalRep*>* present,
                std::vector<OwnedRep>& out)
{
    const TextView text = View(reference.GetString());
    if (reference.GetHandles().GetSize() > 0 || IsEntryWithBlanks(present, text))
    {
        out.push_back(MakeUri(owner, reference, nullptr));
        return;
    }
    attribute_numbers::ForEachToken(text, kSeparators,
                                    [&](TextView token)
                                    {
                                        OwnedRep made(ExternalRep::Make(owner));
                                        attribute_write::SetUriText(owner, *made, token);
                                        out.push_back(std::move(made));
                                    });
}

bool AreSame(ClassData& owner, const ExternalRep& a, const ExternalRep& b)
{
    if (a.TargetObject() != nullptr && a.TargetObject() == b.TargetObject())
    {
        return true;
    }
    std::u16string first;
    std::u16string second;
    AppendReferenceText(owner, a, first);
    AppendReferenceText(owner, b, second);
    return !first.empty() && first == second;
}

// --- setting
// ----------------------------------------------------------------------------------------

Result SetSingleId(ClassData& owner, FieldDescriptor& field, TextView name,
                   const Reference& reference)
{
    const Array<Handle>& handles = reference.GetHandles();
    if (handles.GetSize() > 1)
    {
        return attribute_message::SizeNotOne("zorvexFieldSingleReference");
    }
    ClassData* target = ClassData::Of(handles[0].GetObject());
    if (target == nullptr || !CanHaveId(*target))
    {
        return attribute_message::CannotSet(name);
    }
    FieldData* data = attribute_write::NeedRecord(owner, field, owner.FindField(&field));
    if (!PointAt(owner, *target, *data->SingleId()))
    {
        return attribute_message::OtherRoot(name, View(target->id.ToString()));
    }
    return Result();
}

Result SetIds(ClassData& owner, FieldDescriptor& field, TextView name, const Reference* references,
              int count)
{
    std::vector<Id> made;
    for (int i = 0; i < count; ++i)
    {
        Result result = AppendIds(owner, name, references[i], made);
        if (!result.Ok())
        {
            return result;
        }
    }
    FieldData* data = owner.FindField(&field);
    if (made.empty())
    {
        ResetValue(owner, field, data);
        return Result();
    }
    data = attribute_write::NeedRecord(owner, field, data);
    Array<Id>& ids = *data->Ids();
    ids.RemoveAll();
    ids.SetSizeEx(static_cast<int>(made.size()), 0);
    std::move(made.begin(), made.end(), ids.GetData());
    return Result();
}

/// A thing of another format dies with the last reference to it: those that the new references have
/// too are taken out of the old one first.
void SpareKept(ExternalRep& old, ExternalRep* const* kept, int count)
{
    if ((old.flags & ExternalRep::kHandles) == 0)
    {
        return;
    }
    const auto isKept = [&](const Handle& handle)
    {
        return std::any_of(kept, kept + count,
                           [&](const ExternalRep* reference)
                           {
                               return (reference->flags & ExternalRep::kHandles) != 0 &&
                                      reference->handles->Lookup(handle) >= 0;
                           });
    };
    for (int i = old.handles->GetSize() - 1; i >= 0; --i)
    {
        const Handle& handle = old.handles->GetAt(i);
        if (handle.IsObject() == 0 && isKept(handle))
        {
            old.handles->RemoveAt(i);
        }
    }
}

Result SetSingleUri(ClassData& owner, FieldDescriptor& field, TextView name,
                    const Reference& reference)
{
    FieldData* data = owner.FindField(&field);
    const bool isSet = data != nullptr && data->IsSet();
    OwnedRep made = MakeUri(owner, reference, isSet ? data->External() : nullptr);
    data = attribute_write::NeedRecord(owner, field, data);
    if (data == nullptr)
    {
        return attribute_message::CannotCreate(name, owner);
    }
    const OwnedRep old(data->External());
    data->SetPointer(made.release());
    ExternalRep* const kept = data->External();
    SpareKept(*old, &kept, 1);
    return Result();
}

void AppendTo(Array<ExternalRep*>& list, std::vector<OwnedRep>& made)
{
    for (OwnedRep& reference : made)
    {
        list.Add(reference.get());
        reference.release();
    }
}

Result SetUris(ClassData& owner, FieldDescriptor& field, const Reference* references, int count)
{
    FieldData* data = owner.FindField(&field);
    const Array<ExternalRep*>* present =
        data != nullptr && data->IsSet() ? data->Externals() : nullptr;
    std::vector<OwnedRep> made;
    for (int i = 0; i < count; ++i)
    {
        AppendUris(owner, references[i], present, made);
    }
    if (made.empty())
    {
        ResetValue(owner, field, data);
        return Result();
    }
    data = attribute_write::NeedRecord(owner, field, data);
    Array<ExternalRep*>& list = *data->Externals();
    // The new ones stand before the old ones go: a document that both lead to must not die between.
    Array<ExternalRep*> old(list);
    list.SetSizeEx(0, 0);
    AppendTo(list, made);
    for (ExternalRep* reference : old)
    {
        SpareKept(*reference, list.GetData(), list.GetSize());
    }
    attribute_write::DestroyAll(old);
    return Result();
}

Result SetAsText(ClassData& owner, FieldDescriptor& field, TextView name,
                 const Reference& reference)
{
    SetTextOptions options;
    const TextView text = View(reference.GetString());
    options.emptyIsValue = text.empty() && configuration_stack::EmptyIsValue();
    options.markNetwork = false;
    return SetText(owner, field, name, text, options);
}

bool IsExternalReference(const FieldDescriptor& field)
{
    return PartOf(field) != Part::Value;
}

int CountHandles(const Reference* references, int count)
{
    return std::accumulate(references, references + count, 0,
                           [](int sum, const Reference& reference)
                           { return sum + reference.GetHandles().GetSize(); });
}

const char* SingleTypeName(const FieldDescriptor& field)
{
    if (field.Type() == zorvexFieldSingleReference)
    {
        return "zorvexFieldSingleReference";
    }
    return IsExternalReference(field) ? "zorvexFieldExternalReference" : "zorvexFieldSingleURI";
}

Result SetSingle(ClassData& owner, FieldDescriptor& field, TextView name,
                 const Reference* references, int count)
{
    if (IsExternalReference(field) && CountHandles(references, count) > 1)
    {
        return attribute_message::MultipleHandles(name);
    }
    if (count != 1)
    {
        return attribute_message::SizeNotOne(SingleTypeName(field));
    }
    if (references[0].GetHandles().GetSize() == 0)
    {
        return SetAsText(owner, field, name, references[0]);
    }
    return field.Type() == zorvexFieldSingleReference
               ? SetSingleId(owner, field, name, references[0])
               : SetSingleUri(owner, field, name, references[0]);
}

/// A field that holds no references takes their texts, split by blanks, when they have nothing
/// else.
Result SetOtherField(ClassData& owner, FieldDescriptor& field, TextView name,
                     const Reference* references, int count)
{
    std::u16string text;
    for (int i = 0; i < count; ++i)
    {
        if (references[i].GetHandles().GetSize() > 0)
        {
            return attribute_message::WrongType(name);
        }
        text += i > 0 ? u" " : u"";
        text += View(references[i].GetString());
    }
    return SetAsText(owner, field, name, Reference(ToString(text)));
}

/// Leaves out what the list has already, or an entry before has.
template <class Item, class Made, class IsSame>
void LeaveOutKnown(const Array<Item>& list, std::vector<Made>& made, IsSame isSame)
{
    std::vector<Made> kept;
    for (Made& candidate : made)
    {
        const auto isKnown = [&](const auto& known) { return isSame(known, candidate); };
        if (std::none_of(list.begin(), list.end(), isKnown) &&
            std::none_of(kept.begin(), kept.end(), isKnown))
        {
            kept.push_back(std::move(candidate));
        }
    }
    made = std::move(kept);
}

/// Makes room first, so that the list stays as it is when there is no memory.
template <class Item, class Made, class Take>
Result Append(TextView name, Array<Item>& list, std::vector<Made>& made, Take take)
{
    const int known = list.GetSize();
    try
    {
        list.SetSizeEx(known + static_cast<int>(made.size()), 1);
    }
    catch (const std::bad_alloc&)
    {
        return attribute_message::CannotAdd(name);
    }
    std::transform(made.begin(), made.end(), list.GetData() + known, take);
    return Result();
}

Result AddIds(ClassData& owner, TextView name, const Reference& reference, bool skipKnown,
              Array<Id>& ids)
{
    std::vector<Id> made;
    Result result = AppendIds(owner, name, reference, made);
    if (!result.Ok() || made.empty())
    {
        return result;
    }
    if (skipKnown)
    {
        LeaveOutKnown(ids, made, [](const Id& a, const Id& b) { return AreSame(a, b); });
    }
    return made.empty() ? attribute_message::AlreadyExists()
                        : Append(name, ids, made, [](Id& id) { return std::move(id); });
}

Result AddUris(ClassData& owner, TextView name, const Reference& reference, bool skipKnown,
               Array<ExternalRep*>& list)
{
    std::vector<OwnedRep> made;
    AppendUris(owner, reference, nullptr, made);
    if (made.empty())
    {
        return Result();
    }
    if (skipKnown)
    {
        LeaveOutKnown(list, made,
                      [&](const auto& a, const auto& b) { return AreSame(owner, *a, *b); });
    }
    return made.empty() ? attribute_message::AlreadyExists()
                        : Append(name, list, made, [](OwnedRep& uri) { return uri.release(); });
}

/// Lists of references don't go through the route of text, which has its own check.
Result CheckCharacters(TextView name, const Reference* references, int count)
{
    Result result;
    for (int i = 0; i < count && result.Ok(); ++i)
    {
        result = CheckXmlCharacters(View(references[i].GetString()));
    }
    if (!result.Ok())
    {
        result.Merge(attribute_message::CannotSet(name));
    }
    return result;
}

}  // namespace

Result SetReferences(ClassData& owner, FieldDescriptor& field, TextView name,
                     const Reference* references, int count)
{
    const Part part = PartOf(field);
    if (part == Part::Id || part == Part::Load || (part == Part::Value && !field.IsReference()))
    {
        Result result = SetOtherField(owner, field, name, references, count);
        owner.MarkNetwork();
        return result;
    }
    Result result = CheckCharacters(name, references, count);
    if (!result.Ok())
    {
        return result;
    }
    switch (field.Type())
    {
        case zorvexFieldMultipleReference:
            result = SetIds(owner, field, name, references, count);
            break;
        case zorvexFieldMultipleURI:
            result = SetUris(owner, field, references, count);
            break;
        default:
            result = SetSingle(owner, field, name, references, count);
            break;
    }
    owner.MarkNetwork();
    return result;
}

Result AddReferences(ClassData& owner, FieldDescriptor& field, TextView name,
                     const Reference& reference, bool skipKnown)
{
    const bool isId = PartOf(field) == Part::Id;
    FieldData* data = isId ? nullptr : owner.FindField(&field);
    const bool isStored = isId || (data != nullptr && data->IsSet());
    if (!isStored || !HasValue(owner, field, data, true))
    {
        return SetReferences(owner, field, name, &reference, 1);
    }
    Result result = CheckCharacters(name, &reference, 1);
    if (!result.Ok())
    {
        return result;
    }
    switch (field.Type())
    {
        case zorvexFieldMultipleReference:
            result = AddIds(owner, name, reference, skipKnown, *data->Ids());
            break;
        case zorvexFieldMultipleURI:
            result = AddUris(owner, name, reference, skipKnown, *data->Externals());
            break;
        default:
            return attribute_message::IncorrectFieldType();
    }
    owner.MarkNetwork();
    return result;
}

Result SetTargets(ClassData& owner, TextView name, const Reference& reference)
{
    FieldData* data = nullptr;
    FieldDescriptor* field = FindField(owner, name, data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(name, owner);
    }
    Result result = reference.GetHandles().GetSize() == 0
                        ? SetAsText(owner, *field, name, reference)
                        : SetSingleUri(owner, *field, name, reference);
    owner.MarkNetwork();
    return result;
}

}  // namespace zorvex_api::attribute_store
