#include <sys/stat.h>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ExternalRep.h"
#include "runtime/StackSpace.h"
#include "transport/DocumentPointer.h"
#include "transport/ExternalFileName.h"
#include "transport/ExternalQuestions.h"
#include "transport/ExternalText.h"
#include "transport/FileName.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/URIResolver.h"

/// A reference into another document while its own is being saved: the other document is written
/// too when it has no name yet, and the reference's text follows.

namespace zorvex_api
{

namespace
{

using namespace internal;

constexpr int kFollowReferences = 2;

/// What saving the target of one reference works with; nothing is owned.
struct TargetSave
{
    ExternalRep& reference;
    Object* owner;
    Configuration* options;
    URIResolver* resolver;
    Adapter* top;  // writes the target
    Array<Handle> targets;
    Array<Handle> roots;
    Result& result;
};

/// Whether a root stands, or can stand, in a file of its own; if not it was cut out of its
/// document.
bool IsDocument(Object* root)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(root->GetClassDescriptor());
    return (impl != nullptr && impl->IsDocumentBase()) || GetDocumentPointer(root) != nullptr;
}

/// Where the document stands already: as the resolver or the document itself knows.
bool FindKnownPointer(const TargetSave& save, Pointer& pointer)
{
    const Handle& root = save.roots.GetAt(0);
    if (save.resolver != nullptr && save.resolver->FindPointer(root, pointer) != 0)
    {
        return true;
    }
    const Pointer* remembered = GetDocumentPointer(root.GetObject());
    if (remembered == nullptr)
    {
        return false;
    }
    pointer = *remembered;
    return true;
}

/// A document that a resolver of the application brought in through a stream has no place and isn't
/// to get one: what the reference says leads there again.
bool CameThroughStream(const TargetSave& save)
{
    const ClassData* root = ClassData::Of(save.roots.GetAt(0).GetObject());
    return root != nullptr && (root->stateFlags & ClassData::kPulledInRoot) != 0 &&
           save.reference.HasText();
}

/// Whether something stands under a pointer: a document that the resolver knows, or, where the
/// name was made up here, a file of whatever origin. A name that the reference's text gives is the
/// application's wish.
bool IsTaken(const TargetSave& save, const Pointer& candidate, bool isMadeUp)
{
    Array<Handle> known;
    if (save.resolver != nullptr && save.resolver->FindObjects(candidate, known) != 0 &&
        known.GetSize() > 0)
    {
        return true;
    }
    const String& scheme = candidate.GetScheme();
    const bool isFile = scheme.IsEmpty() != 0 || scheme.LowerCase() == u"file";
    struct stat status;
    return isMadeUp && isFile && lstat(ToUtf8(candidate.GetFullPath()).c_str(), &status) == 0;
}

/// Gives the target's adapter a name under which nothing stands yet.
void ChooseName(TargetSave& save, const Pointer& pointer, int& stripLocator)
{
    const FileNameSource source{pointer,    save.targets, save.roots,
                                save.owner, save.top,     save.resolver};
    String before;
    for (int number = -1;; ++number)
    {
        const String name = FitFileName(MakeFileName(source, number, stripLocator), save.top);
        if (number >= 0 && name == before)
        {
            return;  // a package has its members under one name only
        }
        before = name;
        save.top->SetContext(name);
        Pointer candidate;
        save.top->ConstructPointer(candidate);
        if (!IsTaken(save, candidate, pointer.GetFile().IsEmpty() != 0))
        {
            return;
        }
    }
}

/// Writes the target's document under a new name. True when it stands under `pointer` now.
bool SaveUnnamed(TargetSave& save, Pointer& pointer, ReferenceQuestion& question, int& stripLocator)
{
    ChooseName(save, pointer, stripLocator);
    Pointer named;
    save.top->ConstructPointer(named);
    Result saved;
    if (!HasStackSpace())
    {
        saved.AddError(4, String::Format("Unable to save: \"%s\": too long a chain of documents "
                                         "that refer to each other and have no place yet",
                                         ToUtf8(named.GetString()).c_str()));
    }
    else if (question.MayLoad(named, saved))
    {
        PluginProcessData data;
        data.m_operation = ZORVEX_OP_ADAPTER_SAVE;
        data.Set(kResultSlot, &saved);
        data.Set(kOptionsSlot, save.options);
        data.Set(kHandlesSlot, &save.roots);
        ProcessLocked(save.top, data);
    }
    save.top->ConstructPointer(pointer);
    save.result.Merge(saved);
    return saved.Ok() != 0;
}

void RegisterRoots(const TargetSave& save, const Pointer& pointer)
{
    for (int i = 0; i < save.roots.GetSize(); ++i)
    {
        const Handle& root = save.roots.GetAt(i);
        if (save.resolver != nullptr && !HasStreamElement(pointer))
        {
            save.resolver->RegisterObject(root, pointer);
        }
        RememberDocumentPointer(root.GetObject(), pointer);
    }
}

Array<Handle> LocateRoots(TargetSave& save)
{
    Array<Handle> roots;
    String everything;
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_LOCATE;
    data.Set(kResultSlot, &save.result);
    data.Set(kOptionsSlot, save.options);
    data.Set(kHandlesSlot, &save.targets);
    data.Set(kLocatedSlot, &roots);
    data.Set(kLocatorSlot, &everything);
    ProcessLocked(save.top, data);
    return roots;
}

/// What picks the target out of its document: an object's present id, else what the text said.
String LocatorOf(const ExternalRep& reference, const Pointer& pointer)
{
    ClassData* target = ClassData::Of(reference.TargetObject());
    if (target != nullptr)
    {
        return target->owner == nullptr ? String() : target->id.ToString();
    }
    return pointer.GetLocatorString();
}

}  // namespace

void ExternalRep::Save(Object* ownerObject, Adapter* adapter, int referenceMode,
                       Configuration* options, FieldDescriptor* field, Result& result)
{
    if (!HasTarget())
    {
        return;
    }
    ClassData* single = ClassData::Of(TargetObject());
    if (single != nullptr)
    {
        ClassData* targetRoot = single->Root();
        if (targetRoot == ClassData::Of(ownerObject)->Root())
        {
            std::u16string local = u"#";
            single->id.AppendTo(local);
            StoreText(local);
            return;
        }
        if (!IsDocument(targetRoot->object))
        {
            return;  // cut out of its document: written by its text
        }
    }
    if (referenceMode < kFollowReferences)
    {
        return;
    }
    const Pointer before(GetText());
    Pointer pointer(before);
    const String targetFormat = single == nullptr ? GetFormat(ownerObject) : String(u"ZORVEX");
    pointer.EnsureFormat(targetFormat);

    const ReferenceResolver resolver(nullptr, options, ownerObject);
    ReferenceQuestion question(resolver.Get(), ownerObject, field, options);
    if (!question.MayFollow(pointer, result))
    {
        return;
    }
    pointer.EnsureFormat(targetFormat);  // the resolver may have put another pointer in its place
    const AdapterRef chain(pointer.GetFormat(), adapter, options);
    result.Merge(chain.GetResult());
    if (chain.IsValid() == 0)
    {
        result.AddError(2, u"Invalid #Pointer: \"" + pointer.GetString() + u"\"");
        return;
    }
    TargetSave save{*this, ownerObject, options, resolver.Get(), chain.GetAdapter(),
                    {},    {},          result};
    GetTargets(save.targets);
    save.roots = LocateRoots(save);
    if (save.roots.GetSize() == 0)
    {
        return;
    }
    const String locator = LocatorOf(*this, pointer);
    int stripLocator = 1;
    if (!FindKnownPointer(save, pointer))
    {
        if (CameThroughStream(save))
        {
            return;
        }
        if (SaveUnnamed(save, pointer, question, stripLocator))
        {
            RegisterRoots(save, pointer);
        }
    }
    if (stripLocator != 0 && locator.IsEmpty() == 0)
    {
        if (pointer.GetFormat().IsEmpty() != 0)
        {
            pointer.EnsureFormat(chain->GetFormat());
        }
        pointer.SetLocatorString(locator);
    }
    StoreText(View(TextWithin(ownerObject, pointer, before)));
}

}  // namespace zorvex_api
