#include "zorvex_api/GenericObject.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

/// The nearest base class that isn't made at run time; "Object", the last of them, makes nothing.
ClassDescriptorImpl* BuiltInBase(const ClassDescriptorImpl& impl)
{
    ClassDescriptorImpl* base = impl.Base();
    while (base != nullptr && base->IsRuntimeClass())
    {
        base = base->Base();
    }
    return base;
}

}  // namespace

GenericObject::GenericObject() : GenericObject(nullptr) {}

GenericObject::GenericObject(ClassDescriptorImpl* descriptor) : m_class(descriptor)
{
    InitData(descriptor != nullptr ? descriptor->Value() : short{0});
}

GenericObject::GenericObject(ClassDescriptorImpl* descriptor, Object* owner)
    : GenericObject(descriptor)
{
    const Result result = SetOwner(owner);
    if (!result.Ok())
    {
        InitData(0);
        m_class = nullptr;
        throw Exception(2, result.GetMessage());
    }
}

GenericObject::~GenericObject() = default;

Object* GenericObject::MakeFunction(ClassDescriptorImpl* descriptor)
{
    if (descriptor == nullptr)
    {
        return nullptr;
    }
    ClassDescriptorImpl* base = BuiltInBase(*descriptor);
    Object* object = base != nullptr ? base->MakeObject() : nullptr;
    if (object == nullptr)
    {
        return new GenericObject(descriptor);
    }
    ClassData::Of(object)->SetClassValue(descriptor->Value());
    return object;
}

}  // namespace zorvex_api
