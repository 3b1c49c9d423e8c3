#include "document/ParserImpl.h"

#include "document/UnknownClass.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/Namespace.h"
#include "runtime/NumberText.h"

namespace zorvex_api
{

namespace
{

constexpr int kBoxValues = 6;
constexpr int kSphereValues = 4;

bool IsBoundClass(ClassDescriptor* descriptor)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(descriptor);
    return impl->InMainNamespace() && View(impl->Name()) == u"Bound";
}

/// Up to `wanted` numbers of a text into `values` from `first` on.
void ReadNumbers(TextView text, int first, int wanted, Array<double>& values)
{
    for (int i = 0; i < wanted; ++i)
    {
        const number::ParsedDouble parsed = number::ParseDouble(text);
        if (parsed.end == text.data())
        {
            return;
        }
        values.SetAt(first + i, parsed.value);
        text.remove_prefix(static_cast<std::size_t>(parsed.end - text.data()));
    }
}

void NeedSize(Array<double>& values, int size)
{
    while (values.GetSize() < size)
    {
        values.Add(0.0);
    }
}

}  // namespace

/// The predecessor's forms of a bound: child elements where today there are attributes.
bool ParserImpl::StartBound(const Parser::UCharList& names, const Parser::UCharList& values)
{
    ClassDescriptor* current = Current()->GetClassDescriptor();
    const ClassLayout& layout = ClassDescriptorImpl::Of(current)->Layout();
    if (m_name->local == u"BoxBound" || m_name->local == u"SphereBound")
    {
        FieldDescriptor* field = layout.FindElement(u"Bound");
        // An unknown element that has held a `Bound` may hold these for what they are, too.
        if (field == nullptr || IsUnknownClass(field->Owner()) || field->Class() == nullptr ||
            !IsBoundClass(field->Class()))
        {
            return false;
        }
        const bool box = m_name->local == u"BoxBound";
        OpenObject(field->Class(), field, nullptr, names, values);
        Top().convertsBound = box;
        if (!box)
        {
            result->Merge(Top().data->object->SetAttributeValue(u"type", String(u"sphere")));
        }
        return true;
    }
    if (!IsBoundClass(current))
    {
        return false;
    }
    struct Corner
    {
        TextView name;
        SAXContainerObject::Form form;
    };
    static constexpr Corner kCorners[] = {
        {u"LowCorner", SAXContainerObject::Form::LowCorner},
        {u"HighCorner", SAXContainerObject::Form::HighCorner},
        {u"Centre", SAXContainerObject::Form::Centre},
        {u"Radius", SAXContainerObject::Form::Radius},
    };
    for (const Corner& corner : kCorners)
    {
        if (corner.name == m_name->local)
        {
            OpenContentElement(corner.form, nullptr, names);
            return true;
        }
    }
    return false;
}

void ParserImpl::StoreBoundText(ClassData& bound, SAXContainerObject::Form form, TextView text)
{
    if (text.empty())
    {
        return;
    }
    Array<double> values;
    bound.object->GetAttributeValue(u"values", values);  // unset: an empty list
    switch (form)
    {
        case SAXContainerObject::Form::LowCorner:
            NeedSize(values, kBoxValues);
            ReadNumbers(text, 0, 3, values);
            break;
        case SAXContainerObject::Form::HighCorner:
            NeedSize(values, kBoxValues);
            ReadNumbers(text, 3, 3, values);
            break;
        case SAXContainerObject::Form::Centre:
            NeedSize(values, kSphereValues);
            ReadNumbers(text, 0, 3, values);
            break;
        case SAXContainerObject::Form::Radius:
            NeedSize(values, kSphereValues);
            ReadNumbers(text, 3, 1, values);
            break;
        case SAXContainerObject::Form::Field:
            return;
    }
    result->Merge(bound.object->SetAttributeValue(u"values", values));
}

/// Low and high corner become centre and half size. Fewer than six values stay as they are.
void ParserImpl::ConvertBound(ClassData& bound)
{
    Array<double> values;
    bound.object->GetAttributeValue(u"values", values);
    if (values.GetSize() < kBoxValues)
    {
        return;
    }
    for (int i = 0; i < 3; ++i)
    {
        const double low = values[i];
        const double high = values[i + 3];
        values.SetAt(i, (low + high) * 0.5);
        values.SetAt(i + 3, (high - low) * 0.5);
    }
    result->Merge(bound.object->SetAttributeValue(u"values", values));
    result->Merge(bound.object->SetAttributeValue(u"type", String(u"box")));
}

}  // namespace zorvex_api
