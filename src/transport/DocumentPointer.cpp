#include "transport/DocumentPointer.h"

#include <memory>

#include "objectmodel/ObjectPin.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api::internal
{

namespace
{

void DestroyPointer(ClassData&, void* data)
{
    delete static_cast<Pointer*>(data);
}

[[maybe_unused]] const int g_destroyer =
    ClassData::RegisterExtensionDestroyer(extension_tag::kDocumentPointer, &DestroyPointer);

}  // namespace

const Pointer* GetDocumentPointer(const Object* root)
{
    if (root == nullptr)
    {
        return nullptr;
    }
    const ObjectPin pin(root);
    return static_cast<const Pointer*>(pin->GetExtension(extension_tag::kDocumentPointer));
}

void RememberDocumentPointer(Object* root, const Pointer& pointer)
{
    if (root == nullptr || GetDocumentPointer(root) != nullptr || HasStreamElement(pointer))
    {
        return;
    }
    const ObjectPin pin(root);
    auto kept = std::make_unique<Pointer>(pointer);
    pin->SetExtension(extension_tag::kDocumentPointer, kept.get());
    static_cast<void>(kept.release());  // the object's now
}

void ForgetDocumentPointer(Object* root)
{
    const ObjectPin pin(root);
    delete static_cast<Pointer*>(pin->GetExtension(extension_tag::kDocumentPointer));
    pin->SetExtension(extension_tag::kDocumentPointer, nullptr);
}

bool HasStreamElement(const Pointer& pointer)
{
    const int count = pointer.GetAdapterCount();
    for (int i = 0; i < count; ++i)
    {
        if (pointer.GetAdapterType(i) == u"STREAM")
        {
            return true;
        }
    }
    return false;
}

}  // namespace zorvex_api::internal
