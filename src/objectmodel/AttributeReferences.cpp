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

void Follow(ClassData& owner, ExternalRep& uri, FieldDescriptor& field, Configuration* options,
            Result& result)
{
    uri.Resolve(owner.object, nullptr, options, nullptr, &field, 1, true, result);
}

}  // namespace

Result GetReferences(ClassData& owner, FieldDescriptor& field, FieldData& data, bool follow,
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
            if (follow)
            {
                Follow(owner, *data.External(), field, options, result);
            }
            AddUri(owner, *data.External(), out);
            break;
        case FieldData::Form::Externals:
            // Following one may load documents, whose resolver may change this very list.
            for (int i = 0; data.IsSet() && i < data.Externals()->GetSize(); ++i)
            {
                if (follow)
                {
                    Follow(owner, *data.Externals()->GetAt(i), field, options, result);
                }
                AddUri(owner, *data.Externals()->GetAt(i), out);
            }
            break;
        default:
            return attribute_message::UnexpectedType();
    }
    return result;
}

}  // namespace zorvex_api::attribute_store
