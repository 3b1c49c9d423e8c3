#pragma once

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/Namespace.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/GenericObject.h"

namespace zorvex_test
{

inline constexpr char16_t kTestSpace[] = u"urn:test";

/// A filled class with generic objects that isn't registered yet.
inline zorvex_api::ClassDescriptor* MakeClass(const char16_t* name,
                                              const char16_t* version = u"1 t.xsd",
                                              const char16_t* base = u"Object",
                                              const char16_t* space = kTestSpace)
{
    auto* impl = zorvex_api::ClassDescriptorImpl::Make();
    impl->SetVersion(version);
    impl->SetName(name);
    impl->SetNamespace(space, u"t");
    impl->SetBaseClass(base);
    impl->SetGenericMakeFunction(&zorvex_api::GenericObject::MakeFunction);
    return impl->Descriptor();
}

inline zorvex_api::ClassDescriptor* RegisterClass(const char16_t* name,
                                                  const char16_t* version = u"1 t.xsd",
                                                  const char16_t* base = u"Object")
{
    return zorvex_api::ClassRegistry::Register(MakeClass(name, version, base));
}

}  // namespace zorvex_test
