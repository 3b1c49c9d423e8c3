#include "transport/ExternalFormat.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ExternalRep.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

namespace
{

constexpr const char16_t* kFormatField = u"format";
constexpr const char16_t* kUnset = u"unset";

bool IsMainClass(const Object* object, TextView name)
{
    const ClassDescriptorImpl* impl =
        object != nullptr ? ClassDescriptorImpl::Of(object->GetClassDescriptor()) : nullptr;
    return impl != nullptr && impl->InMainNamespace() && View(impl->Name()) == name;
}

bool IsRepresentation(const Object* object)
{
    return IsMainClass(object, u"Representation");
}

bool IsCompoundRep(const Object* object)
{
    return IsMainClass(object, u"CompoundRep");
}

String FormatOf(const Object* object)
{
    String format;
    if (object != nullptr)
    {
        object->GetAttributeValue(kFormatField, format);
    }
    return format;
}

/// A compound representation without a format of its own has its parent's.
String FormatOfCompound(const Object* compound)
{
    const String format = FormatOf(compound);
    const bool empty = format.IsEmpty() != 0 || format == kUnset;
    return empty ? FormatOf(compound->GetOwner()) : format;
}

ExternalRep* LocationOf(Object* representation)
{
    ClassData& data = *ClassData::Of(representation);
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    FieldDescriptor* field = impl != nullptr ? impl->Layout().ExternalReference() : nullptr;
    const FieldData* stored = field != nullptr ? data.FindField(field) : nullptr;
    return stored != nullptr && stored->IsSet() ? stored->External() : nullptr;
}

/// The field of a LocatorRef that says what it speaks of, and its reference; null without one.
FieldDescriptor* ContextField(ClassData& locatorRef)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(locatorRef.GetClassDescriptor());
    return impl != nullptr ? impl->Layout().FindAttribute(u"contextRef") : nullptr;
}

ExternalRep* ContextReference(ClassData& locatorRef)
{
    const FieldDescriptor* field = ContextField(locatorRef);
    const FieldData* stored = field != nullptr ? locatorRef.FindField(field) : nullptr;
    return stored != nullptr && stored->IsSet() ? stored->External() : nullptr;
}

/// The representation that a LocatorRef speaks of: what its context leads to, else its owner.
Object* ContextOf(Object* locatorRef, const internal::ContextWay* way)
{
    ClassData& data = *ClassData::Of(locatorRef);
    ExternalRep* context = ContextReference(data);
    if (context != nullptr && !context->HasTarget() && way != nullptr)
    {
        Result unheard;  // said when the context itself is followed
        context->Resolve(locatorRef, way->previous, way->options, way->resolver, ContextField(data),
                         way->load, way->loadAllowed, unheard);
        context = ContextReference(data);  // a resolver of the application may change the tree
    }
    Object* target = context != nullptr ? context->TargetObject() : nullptr;
    return target != nullptr ? target : locatorRef->GetOwner();
}

/// The parent's format holds for its parts as long as they agree.
void CompareParts(Object* parent)
{
    Array<Object*> children;
    parent->GetElementsByClass(u"CompoundRep", children);
    String first;
    for (int i = 0; i < children.GetSize(); ++i)
    {
        const String format = FormatOf(children[i]);
        if (i == 0)
        {
            first = format;
        }
        else if (format != first)
        {
            parent->SetAttributeValue(kFormatField, String(kUnset));
            return;
        }
    }
}

void WriteFormat(Object* object, const String& format)
{
    if (FormatOf(object) != format)
    {
        object->SetAttributeValue(kFormatField, format);
    }
}

}  // namespace

namespace internal
{

OwnerFormat FormatFromOwner(const ExternalRep& reference, Object* owner, const ContextWay* way)
{
    OwnerFormat found;
    if (owner == nullptr)
    {
        return found;
    }
    if ((reference.flags & (ExternalRep::kRepresentation | ExternalRep::kExternalFile)) != 0)
    {
        found.format = FormatOf(owner);
    }
    else if ((reference.flags & ExternalRep::kCompoundRep) != 0)
    {
        found.format = FormatOfCompound(owner);
    }
    else if ((reference.flags & ExternalRep::kLocatorRef) != 0 &&
             ContextReference(*ClassData::Of(owner)) != &reference)  // it would never end
    {
        Object* context = ContextOf(owner, way);
        if (IsRepresentation(context) || IsCompoundRep(context))
        {
            found.format = IsCompoundRep(context) ? FormatOfCompound(context) : FormatOf(context);
            found.location = LocationOf(context);
        }
    }
    if (found.format == kUnset)
    {
        found.format = String();
    }
    return found;
}

}  // namespace internal

void ExternalRep::SetFormat(Object* ownerObject, TextView newFormat, bool writeThrough)
{
    StoreFormat(newFormat);
    if (!writeThrough || ownerObject == nullptr)
    {
        return;
    }
    const String stored = ToString(FormatText());
    if ((flags & kRepresentation) != 0)
    {
        WriteFormat(ownerObject, stored);
    }
    else if ((flags & kCompoundRep) != 0)
    {
        WriteFormat(ownerObject, stored);
        if (Object* parent = ownerObject->GetOwner())
        {
            WriteFormat(parent, stored);
            CompareParts(parent);
        }
    }
}

String ExternalRep::GetFormat(Object* ownerObject)
{
    if (FormatText().empty())
    {
        const internal::OwnerFormat found = internal::FormatFromOwner(*this, ownerObject, nullptr);
        if (found.format.IsEmpty() == 0)
        {
            SetFormat(ownerObject, View(found.format), false);
        }
        else if (TargetObject() != nullptr)
        {
            StoreFormat(u"ZORVEX");
        }
    }
    return ToString(FormatText());
}

void ExternalRep::SetTarget(Object* ownerObject, Object* object)
{
    ReleaseTargets();
    ClearTarget();
    if (object == nullptr)
    {
        return;
    }
    const bool targetIsRep = IsRepresentation(object) || IsCompoundRep(object);
    if (targetIsRep)
    {
        const String targetFormat = FormatOf(object);
        if (targetFormat.IsEmpty() == 0)
        {
            SetFormat(ownerObject, View(targetFormat), true);
        }
    }
    else
    {
        const bool ownerIsRep = IsRepresentation(ownerObject) || IsCompoundRep(ownerObject);
        const bool placesRep = ownerIsRep && IsMainClass(object, u"Transform");
        SetFormat(ownerObject, u"ZORVEX", !placesRep);
    }
    ClassData& data = *ClassData::Of(object);
    LinkTarget(object);
    std::u16string local = u"#";
    data.id.AppendTo(local);
    StoreText(local);
}

}  // namespace zorvex_api
