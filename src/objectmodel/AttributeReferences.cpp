#include "objectmodel/AttributeMessages.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/ExternalRep.h"

/// Reading references: ids and URIs with the objects that they lead to.

namespace zorvex_api::attribute_store
{

namespace
{

void AddId(ClassData& root, const Id& id, Array<Reference>& out)
{
    const IdValue& value = id.Current();
    Object* object = value.HasValue() ? root.ResolveId(value) : nullptr;
    if (object == nullptr)
    {
        object = id.Link();
    }
    Reference reference(value.ToString());
    if (object != nullptr)
    {
        reference = Reference(reference.GetString(), Handle(object));
    }
    out.Add(reference);
}

void AddUri(ClassData& owner, const ExternalRep& uri, Array<Reference>& out)
{
    std::u16string text;
    AppendReferenceText(owner, uri, text);
    if (!uri.HasTarget())
    {
        out.Add(Reference(ToString(text)));
        return;
    }
    Array<Handle> handles;
    uri.GetTargets(handles);
    out.Add(handles.GetSize() == 1 ? Reference(ToString(text), handles[0])
                                   : Reference(ToString(text), handles));
}

void Resolve(ClassData& owner, ExternalRep& uri, FieldDescriptor& field, Follow follow,
             Configuration* options, Result& result)
{
    if (follow != Follow::Nowhere)
    {
        uri.Resolve(owner.object, nullptr, options, nullptr, &field, 1, follow == Follow::Anywhere,
                    result);
    }
}

bool HasEntry(const FieldData& data, int index)
{
    return data.IsSet() && index < data.Externals()->GetSize();
}

}  // namespace

Result GetReferences(ClassData& owner, FieldDescriptor& field, FieldData& data, Follow follow,
                     Configuration* options, Array<Reference>& out)
{
    out.RemoveAll();
    Result result;
    if (!data.descriptor->IsReference())
    {
        return attribute_message::UnexpectedType();
    }
    if (!data.IsSet())
    {
        return result;
    }
    switch (FieldData::FormOf(*data.descriptor))
    {
        case FieldData::Form::SingleId:
            AddId(*owner.Root(), *data.SingleId(), out);
            break;
        case FieldData::Form::Ids:
            for (const Id& id : *data.Ids())
            {
                AddId(*owner.Root(), id, out);
            }
            break;
        case FieldData::Form::External:
            Resolve(owner, *data.External(), field, follow, options, result);
            if (data.IsSet())
            {
                AddUri(owner, *data.External(), out);
            }
            break;
        case FieldData::Form::Externals:
            // Following one may load documents, whose resolver may change this very list.
            for (int i = 0; HasEntry(data, i); ++i)
            {
                Resolve(owner, *data.Externals()->GetAt(i), field, follow, options, result);
                if (HasEntry(data, i))
                {
                    AddUri(owner, *data.Externals()->GetAt(i), out);
                }
            }
            break;
        default:
            return attribute_message::UnexpectedType();
    }
    return result;
}

void DetachTargets(ClassData& owner, TextView name, Array<Handle>& out)
{
    FieldData* data = nullptr;
    FindField(owner, name, data);
    if (data != nullptr && data->IsSet() &&
        FieldData::FormOf(*data->descriptor) == FieldData::Form::External)
    {
        data->External()->MoveTargets(out);
        owner.MarkNetwork();
    }
}

}  // namespace zorvex_api::attribute_store
