#include "objectmodel/BuiltInClasses.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "runtime/Text.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/GenericObject.h"
#include "zorvex_api/LinkNode.h"

namespace zorvex_api
{

short zorvexClassObject = class_value::kUnset;
short zorvexClassGenericObject = class_value::kUnset;
short zorvexClassConfiguration = class_value::kUnset;

namespace internal
{

int InitObjectClass(void* record)
{
    if (record == nullptr)
    {
        return 0;
    }
    auto& init = *static_cast<ClassInitRecord*>(record);
    zorvexClassObject = init.descriptor->GetClass();
    init.staticClass = &zorvexClassObject;

    ClassDescriptorImpl& impl = *init.descriptor->GetImplementation();
    impl.SetName(BorrowConstant(u"Object"));
    const String prefix = BorrowConstant(u"xsi");
    impl.AddRuntimeField(u"schemaLocation", zorvexFieldString, nullptr, &prefix);
    return 1;
}

}  // namespace internal
}  // namespace zorvex_api
