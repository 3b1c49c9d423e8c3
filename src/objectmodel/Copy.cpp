#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "objectmodel/AttributeStore.h"
#include "objectmodel/AttributeWrite.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/CopyReferences.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/StoredText.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

using Form = FieldData::Form;

constexpr unsigned int kGeneric = 2;
constexpr unsigned int kDeep = 4;
constexpr int kFailed = 2;

/// The class that stands for an object in a generic copy: the one that its element name means, or a
/// class made for it, in which every attribute is a text.
ClassDescriptor* GenericClassOf(ClassData& source)
{
    const ClassDescriptorImpl* own = ClassDescriptorImpl::Of(source.GetClassDescriptor());
    const String name = source.object->GetElementName();
    if (ClassDescriptor* known = ClassRegistry::FindByName(View(name)))
    {
        return known;
    }
    bool isNew = false;
    ClassDescriptor* made = ClassRegistry::MakeRuntimeClass(
        View(name), View(own->NamespaceUri()), View(own->NamespacePrefix()), nullptr, &isNew);
    if (!isNew)
    {
        return made;
    }
    Array<FieldInfo> fields;
    own->Descriptor()->GetFields(fields, field_kind::kAttributeOrContent, 1);
    for (const FieldInfo& field : fields)
    {
        ClassDescriptorImpl::Of(made)->AddRuntimeField(View(field.GetName()), zorvexFieldString,
                                                       nullptr, nullptr);
    }
    return made;
}

/// One copy, from the first object to the references. Keeps its own stack, so that the depth of a
/// tree is no matter of the thread's.
class TreeCopier
{
public:
    TreeCopier(const Object* top, unsigned int flags, Result& result)
        : m_top(top), m_flags(flags), m_result(result), m_references(top, flags)
    {
    }

    /// Null when the first object can't be made.
    Object* Run();

private:
    /// The place in one object whose children are being copied.
    struct Frame
    {
        ObjectPin source;
        ClassData* copy;
        FieldRange fields;
        size_t field = 0;
        int child = 0;
    };

    bool Has(unsigned int flag) const { return (m_flags & flag) != 0; }
    ClassDescriptor* ClassOf(ClassData& source);
    std::unique_ptr<Object> Make(ClassData& source);
    void Enter(Object* source, ClassData& copy);
    void Step();
    void CopyChild(Object* child, FieldDescriptor& field);
    bool Attach(std::unique_ptr<Object>& child, FieldDescriptor& field, ClassData& source);

    void CopyField(ClassData& source, ClassData& copy, FieldDescriptor& field,
                   const FieldData& data);
    void CopyAsText(ClassData& source, ClassData& copy, FieldDescriptor& field,
                    const FieldData& data);
    void CopyOwnId(ClassData& source, ClassData& copy);

    const Object* m_top;
    unsigned int m_flags;
    Result& m_result;
    CopyReferences m_references;
    ClassData* m_root = nullptr;  // the copy of m_top
    std::vector<Frame> m_path;
};

ClassDescriptor* TreeCopier::ClassOf(ClassData& source)
{
    ClassDescriptor* own = source.GetClassDescriptor();
    return own != nullptr && Has(kGeneric) ? GenericClassOf(source) : own;
}

std::unique_ptr<Object> TreeCopier::Make(ClassData& source)
{
    try
    {
        ClassDescriptor* descriptor = ClassOf(source);
        std::unique_ptr<Object> made(descriptor != nullptr ? descriptor->MakeObject() : nullptr);
        if (made == nullptr)
        {
            m_result.AddError(kFailed,
                              String::Format("Unable to create class: \"%s\".",
                                             ToUtf8(source.object->GetClassName()).c_str()));
            return made;
        }
        made->SetUserPointer(source.object->GetUserPointer());
        return made;
    }
    catch (const Exception& exception)
    {
        m_result.AddError(exception.GetCode(), exception.GetMessage());
        return nullptr;
    }
}

Object* TreeCopier::Run()
{
    const ObjectPin top(m_top);
    std::unique_ptr<Object> made = Make(*top);
    if (made == nullptr)
    {
        return nullptr;
    }
    m_root = ClassData::Of(made.get());
    CopyOwnId(*top, *m_root);
    Enter(top->object, *m_root);
    while (!m_path.empty())
    {
        Step();
    }
    m_references.Settle();
    return made.release();
}

void TreeCopier::Enter(Object* source, ClassData& copy)
{
    m_references.Note(*ClassData::Of(source), copy);
    ObjectPin pin(source);
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(pin->GetClassDescriptor());
    m_path.push_back(Frame{std::move(pin), &copy, descriptor->Layout().DerivedFirst()});
}

/// Copies the fields of the object on top of the path, up to the next child.
void TreeCopier::Step()
{
    Frame& frame = m_path.back();
    for (; frame.field < frame.fields.size(); ++frame.field, frame.child = 0)
    {
        FieldDescriptor& field = *frame.fields[frame.field];
        const FieldData* data = frame.source->FindField(&field);
        // Two fields of type 11 share one record; it is copied for its own field.
        if (data == nullptr || !data->IsSet() || data->descriptor != &field)
        {
            continue;
        }
        if (!field.IsElement())
        {
            CopyField(*frame.source, *frame.copy, field, *data);
            continue;
        }
        const bool isList = field.Type() == zorvexFieldMultipleElement;
        const int count = isList ? data->Elements()->Count() : data->Element() != nullptr;
        if (Has(kDeep) && frame.child < count)
        {
            const int index = frame.child++;
            CopyChild(isList ? data->Elements()->At(index) : data->Element(), field);
            return;
        }
    }
    m_path.pop_back();
}

void TreeCopier::CopyChild(Object* child, FieldDescriptor& field)
{
    const ObjectPin source(child);
    std::unique_ptr<Object> made = Make(*source);
    if (made == nullptr)
    {
        return;
    }
    ClassData& copy = *ClassData::Of(made.get());
    if (Attach(made, field, *source))
    {
        Enter(child, copy);
    }
}

/// Attaches the copy of a child to the copy on top of the path. It goes with the id of its source,
/// so that it gets no other one.
bool TreeCopier::Attach(std::unique_ptr<Object>& child, FieldDescriptor& field, ClassData& source)
{
    ClassData& copy = *ClassData::Of(child.get());
    ClassData& parent = *m_path.back().copy;
    if (!Has(kGeneric))
    {
        parent.AppendChild(&copy, &field);
        child.release();
        CopyOwnId(source, copy);
        if (copy.id.HasValue())
        {
            copy.SetLoadedId(IdValue(copy.id), *m_root);
        }
        return true;
    }
    CopyOwnId(source, copy);
    const Result attached = copy.SetOwner(parent.object, field.NameView(), nullptr, true, false, 0);
    m_result.Merge(attached);
    if (!attached.Ok())
    {
        return false;
    }
    child.release();
    return true;
}

/// The object's own id with its marks; it isn't entered in a table.
void TreeCopier::CopyOwnId(ClassData& source, ClassData& copy)
{
    copy.GetClassDescriptor();  // an object of a deprecated class finds its class on first use
    if ((copy.stateFlags & ClassData::kIdObject) != 0)
    {
        copy.id = source.id;
        return;
    }
    FieldData* data = nullptr;
    FieldDescriptor* field =
        source.id.HasValue() ? attribute_store::FindField(copy, u"id", data) : nullptr;
    if (field != nullptr)
    {
        // A class made for the copy keeps the id as a text like any other.
        m_result.Merge(attribute_store::SetText(copy, *field, u"id", View(source.id.ToString()),
                                                attribute_store::SetTextOptions()));
    }
}

bool HasLoadFlag(const FieldData& data)
{
    return FieldData::FormOf(*data.descriptor) == Form::External &&
           (data.External()->flags & ExternalRep::kLoad) != 0;
}

/// The value bit for bit, unless it equals the default or is an empty text.
void TreeCopier::CopyField(ClassData& source, ClassData& copy, FieldDescriptor& field,
                           const FieldData& data)
{
    if (copy.GetClassDescriptor() != source.GetClassDescriptor())
    {
        CopyAsText(source, copy, field, data);
        return;
    }
    const Form form = FieldData::FormOf(field);
    const bool isDefault = !field.IsReference() && field.HasDefault() &&
                           attribute_store::TextEqualsDefault(source, field, data);
    const bool isEmpty = !data.HasValue(source, true) && !HasLoadFlag(data);
    if (isDefault || isEmpty)
    {
        return;
    }
    FieldData* to = copy.FindOrAddField(&field);
    if (to->IsSet())
    {
        to->DeleteValue(copy, FieldData::kDeleteAll);
    }
    to->InitEmpty(copy);
    const size_t count = static_cast<size_t>(FieldData::NumberCount(field));
    switch (form)
    {
        case Form::Int:
            to->SetInt(data.Int());
            break;
        case Form::Double:
            to->value = data.value;
            break;
        case Form::Ints:
            std::memcpy(to->Ints(), data.Ints(), count * sizeof(int));
            break;
        case Form::Doubles:
            std::memcpy(to->Doubles(), data.Doubles(), count * sizeof(double));
            break;
        case Form::IntArray:
            attribute_write::Replace(*to->IntArray(), data.IntArray()->GetData(),
                                     data.IntArray()->GetSize());
            break;
        case Form::DoubleArray:
            attribute_write::Replace(*to->DoubleArray(), data.DoubleArray()->GetData(),
                                     data.DoubleArray()->GetSize());
            break;
        case Form::Text:
            to->SetPointer(stored::Share(data.Text()));
            break;
        case Form::Enum:
            if (const String* allowed = field.FindAllowedValue(data.EnumText()))
            {
                to->SetEnum(allowed);
                break;
            }
            to->SetEnumCopy(data.EnumText());
            break;
        default:
            m_references.Copy(source, data, copy, *to);
            break;
    }
}

void TreeCopier::CopyAsText(ClassData& source, ClassData& copy, FieldDescriptor& field,
                            const FieldData& data)
{
    if (!field.IsReference() && attribute_store::TextEqualsDefault(source, field, data))
    {
        return;
    }
    std::u16string text;
    attribute_store::AppendText(source, field, data, text);
    if (!text.empty())
    {
        m_result.Merge(copy.object->SetAttributeValue(field.Name(), ToString(text)));
    }
    if (field.Type() == zorvexFieldExternalReference && HasLoadFlag(data))
    {
        m_result.Merge(copy.object->SetAttributeValue(u"load", u"true"));
    }
}

}  // namespace

Result Object::Copy(Object*& out, unsigned int flags) const
{
    Result result;
    TreeCopier copier(this, flags, result);
    if (Object* copy = copier.Run())
    {
        out = copy;
    }
    return result;
}

}  // namespace zorvex_api
