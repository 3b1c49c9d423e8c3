#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/ObjectBlock.h"
#include "objectmodel/ObjectPin.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

const String& NameOf(const ClassDescriptor* descriptor)
{
    return descriptor != nullptr ? descriptor->GetName() : String::EmptyString();
}

ClassDescriptor* FindClass(TextView name)
{
    ClassRegistry::Fill();
    return ClassRegistry::FindByName(name);
}

bool IsUnderClass(const Object* object, TextView className)
{
    ObjectPin pin(object);
    const ClassDescriptor* other = FindClass(className);
    return other != nullptr && pin->IsSubClass(other);
}

}  // namespace

Object::Object() : m_data(ClassData::Make(this))
{
    if (PagingHooks::IsActive())
    {
        PagingHooks::Made(this);
    }
}

Object::~Object()
{
    if (PagingHooks::IsActive())
    {
        PagingHooks::Pin(this);  // stays in memory to its end
    }
    ClassData::Destroy(m_data);
}

void* Object::operator new(size_t size)
{
    return Allocator::allocate(size);
}

void Object::operator delete(void* block)
{
    if (!internal::ObjectBlock::GiveBack(block))
    {
        Allocator::deallocate(block);
    }
}

ClassData* Object::GetImplementation() const
{
    return m_data;
}

int Object::InitData(short classValue)
{
    m_data->SetClassValue(classValue);
    return classValue != 0 ? 1 : 0;
}

short Object::Is() const
{
    return ObjectPin(this)->GetClassValue();
}

int Object::Is(const short& classValue) const
{
    return ObjectPin(this)->GetClassValue() == classValue ? 1 : 0;
}

int Object::Is(const String& className) const
{
    ObjectPin pin(this);
    const ClassDescriptor* other = FindClass(View(className));
    return other != nullptr && pin->GetClassDescriptor() == other ? 1 : 0;
}

int Object::IsSubClass(const short& classValue) const
{
    ObjectPin pin(this);
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(pin->GetClassDescriptor());
    return impl != nullptr && impl->IsSubClass(classValue) ? 1 : 0;
}

int Object::IsSubClass(const String& className) const
{
    return IsUnderClass(this, View(className)) ? 1 : 0;
}

ClassDescriptor* Object::GetClassDescriptor() const
{
    return ObjectPin(this)->GetClassDescriptor();
}

const String& Object::GetClassName() const
{
    return NameOf(ObjectPin(this)->GetClassDescriptor());
}

const String& Object::GetClassName(const short& classValue)
{
    return NameOf(ClassDescriptor::FindByClass(classValue));
}

int Object::AttributesOwner() const
{
    return IsUnderClass(this, u"AttribOwner") ? 1 : 0;
}

int Object::BoundOwner() const
{
    return IsUnderClass(this, u"Entity3D") ? 1 : 0;
}

int Object::DescriptionOwner() const
{
    return IsUnderClass(this, u"DescriptionObject") ? 1 : 0;
}

String Object::GetObjectDescription()
{
    String description;
    if (DescriptionOwner() != 0)
    {
        GetAttributeValue(String(u"Description", -1), description);
    }
    return description;
}

int Object::SetObjectDescription(const String& description)
{
    if (DescriptionOwner() == 0)
    {
        return 0;
    }
    SetAttributeValue(String(u"Description", -1), description);
    return 1;
}

void Object::SetUserPointer(void* pointer)
{
    ObjectPin(this)->SetExtension(extension_tag::kUserPointer, pointer);
}

void* Object::GetUserPointer() const
{
    return ObjectPin(this)->GetExtension(extension_tag::kUserPointer);
}

}  // namespace zorvex_api
