#include "transport/SurplusRoots.h"

#include <memory>
#include <utility>
#include <vector>

#include "objectmodel/ObjectPin.h"

namespace zorvex_api::internal
{

namespace
{

using extension_tag::kKeeper;        // on a surplus root: the Roots that it stands in
using extension_tag::kSurplusRoots;  // on the first root: its Roots

using Roots = std::vector<Object*>;

/// Takes the mark off; true when the root is to be deleted.
bool Release(const Object* root)
{
    const ObjectPin pin(root);
    pin->SetExtension(kKeeper, nullptr);
    return pin->owner == nullptr && (pin->stateFlags & ClassData::kDestructing) == 0;
}

/// The first root ends.
void DestroySurplusRoots(ClassData&, void* data)
{
    const std::unique_ptr<Roots> roots(static_cast<Roots*>(data));
    while (!roots->empty())  // the end of one may be the end of others
    {
        const Object* root = roots->back();
        roots->pop_back();
        if (Release(root))
        {
            delete root;
        }
    }
}

/// A surplus root ends before the first one.
void LeaveKeeper(ClassData& ending, void* roots)
{
    std::erase(*static_cast<Roots*>(roots), ending.object);
}

[[maybe_unused]] const int g_listDestroyer =
    ClassData::RegisterExtensionDestroyer(kSurplusRoots, &DestroySurplusRoots);
[[maybe_unused]] const int g_keeperDestroyer =
    ClassData::RegisterExtensionDestroyer(kKeeper, &LeaveKeeper);

Roots& NeedRoots(const Object* first)
{
    const ObjectPin pin(first);
    auto* roots = static_cast<Roots*>(pin->GetExtension(kSurplusRoots));
    if (roots == nullptr)
    {
        auto made = std::make_unique<Roots>();
        pin->SetExtension(kSurplusRoots, made.get());
        roots = made.release();  // the object's now
    }
    return *roots;
}

}  // namespace

void KeepSurplusRoots(const Array<Object*>& documents)
{
    Roots& kept = NeedRoots(documents[0]);
    for (int i = 1; i < documents.GetSize(); ++i)
    {
        Object* root = documents[i];
        const ObjectPin pin(root);
        // A resolver that is kept can give the same roots again.
        if (root != documents[0] && pin->GetExtension(kKeeper) == nullptr)
        {
            kept.push_back(root);
            pin->SetExtension(kKeeper, &kept);
        }
    }
}

}  // namespace zorvex_api::internal
