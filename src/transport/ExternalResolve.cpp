#include <memory>
#include <vector>

#include "objectmodel/ClassData.h"
#include "objectmodel/ExternalRep.h"
#include "transport/AdapterImpl.h"
#include "transport/DocumentPointer.h"
#include "transport/DocumentUses.h"
#include "transport/ExternalFormat.h"
#include "transport/ExternalQuestions.h"
#include "transport/ExternalText.h"
#include "transport/FileName.h"
#include "transport/LoadDepth.h"
#include "transport/LoadRefusal.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/URIResolver.h"

/// Following a URI reference: within its document, or into another one.

namespace zorvex_api
{

namespace
{

using namespace internal;

constexpr const char16_t* kReferencesOption = u"adapters/ZORVEX/references";
constexpr const char16_t* kSubstituteOption = u"adapters/substitute";

enum class Mode
{
    Off = 0,
    Translate = 1,
    Follow = 2
};

/// What following one reference works with; nothing is owned.
struct Follow
{
    ExternalRep& reference;
    Object* owner;      // null for a load by an application
    Adapter* previous;  // may be null
    Configuration* options;
    URIResolver* resolver;
    FieldDescriptor* field;
    int load;
    bool loadAllowed;
    Result& result;
};

Mode ModeOf(const Follow& follow)
{
    if (follow.load == 0 || follow.options == nullptr)
    {
        return Mode::Follow;
    }
    String text;
    follow.options->Get(kReferencesOption, text);
    if (text == u"off")
    {
        return Mode::Off;
    }
    return text == u"translate" ? Mode::Translate : Mode::Follow;
}

/// A pointer without a location, to something that the ZORVEX adapter is to look up.
bool IsLocal(const Pointer& pointer)
{
    return pointer.GetAbsolutePath().IsEmpty() != 0 && pointer.GetAdapterCount() == 1 &&
           pointer.GetFormat() == u"ZORVEX" && pointer.GetLocatorString().IsEmpty() == 0;
}

/// "#" alone means the document itself.
bool IsOwnDocument(TextView text)
{
    return text == u"#";
}

bool IsPlainId(TextView text)
{
    return text.size() > 3 && text.starts_with(u"#id");
}

TextView WithoutIdPrefix(TextView locator)
{
    constexpr TextView kPrefix = u"id=";
    return locator.starts_with(kPrefix) ? locator.substr(kPrefix.size()) : locator;
}

void PointAt(ExternalRep& reference, Object* found)
{
    reference.LinkTarget(found);
    if (reference.FormatText().empty())
    {
        reference.StoreFormat(u"ZORVEX");
    }
}

/// Looks a locator up in the id tables of `roots`; true when it was found.
bool FindInRoots(ExternalRep& reference, TextView locator, const std::vector<ClassData*>& roots)
{
    const IdValue id(WithoutIdPrefix(locator));
    for (ClassData* root : roots)
    {
        if (Object* found = root->ResolveId(id))
        {
            PointAt(reference, found);
            return true;
        }
    }
    return false;
}

// --- the steps of loading a target ---------------------------------------------------------------

void ReportLocatorFailure(Follow& follow, const String& locator)
{
    follow.result.AddError(517, WARNING, u"Locator failed: " + locator);
    follow.reference.ClearTarget();
}

/// What a chain finds by a locator among candidates.
Array<Handle> Locate(Adapter* top, Array<Handle>& candidates, String locator,
                     Configuration* options, Result& result)
{
    Array<Handle> located;
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_LOCATE;
    data.Set(kResultSlot, &result);
    data.Set(kOptionsSlot, options);
    data.Set(kHandlesSlot, &candidates);
    data.Set(kLocatedSlot, &located);
    data.Set(kLocatorSlot, &locator);
    ProcessLocked(top, data);
    return located;
}

void LocateInOwnDocument(Follow& follow, const Pointer& pointer, const String& locator)
{
    const AdapterRef chain(pointer, follow.previous, follow.options);
    Array<Handle> located;
    if (chain.IsValid() != 0)
    {
        Array<Handle> candidates;
        candidates.Add(Handle(follow.owner->GetRoot()));
        located = Locate(chain.GetAdapter(), candidates, locator, follow.options, follow.result);
    }
    if (located.GetSize() == 0)
    {
        ReportLocatorFailure(follow, locator);
        return;
    }
    follow.reference.SetTargets(located);
}

/// A relative text is meant from the folder of the owner's document. On loading the chain below
/// tells that folder; later the document does, or who registered it.
void CompleteRelative(const Follow& follow, Pointer& pointer)
{
    if (follow.previous != nullptr || follow.owner == nullptr)
    {
        return;
    }
    Object* root = follow.owner->GetRoot();
    Pointer registered;
    const Pointer* document = GetDocumentPointer(root);
    if (document == nullptr && follow.resolver->FindPointer(Handle(root), registered) != 0)
    {
        document = &registered;
    }
    if (document != nullptr)
    {
        pointer = FromFolderOf(*document, pointer);
    }
}

void EnsureAnyFormat(Follow& follow, Pointer& pointer)
{
    if (pointer.GetFormat().IsEmpty() != 0)
    {
        pointer.EnsureFormat(follow.reference.GetFormat(follow.owner));
    }
    if (pointer.GetFormat().IsEmpty() != 0)
    {
        pointer.EnsureFormat(FindFormatByExtension(pointer));
    }
}

void ReportNoFormat(Follow& follow, const Pointer& pointer)
{
    const std::string element =
        follow.owner != nullptr ? ToUtf8(follow.owner->GetElementName()) : std::string();
    const std::string field =
        follow.field != nullptr ? ToUtf8(follow.field->NameView()) : std::string();
    follow.result.AddError(
        525, WARNING,
        String::Format("Unable to determine URI format of <%s %s=\"%s\">", element.c_str(),
                       field.c_str(), ToUtf8(pointer.GetString()).c_str()));
}

/// The option "adapters/substitute": "FOO/ZORVEX,BAR/BAZ" has one adapter read for another.
void Substitute(Configuration* options, Pointer& pointer)
{
    String list;
    if (options == nullptr || options->Get(kSubstituteOption, list) == nullptr)
    {
        return;
    }
    Array<String> items;
    list.Split(u",", items);
    for (int i = 0; i < items.GetSize(); ++i)
    {
        Array<String> parts;
        items[i].Split(u"/", parts);
        if (parts.GetSize() != 2)
        {
            continue;
        }
        for (int k = 0; k < pointer.GetAdapterCount(); ++k)
        {
            if (pointer.GetAdapterType(k) == parts[0])
            {
                pointer.SetAdapterType(k, parts[1]);
            }
        }
    }
}

/// A text that names a stream in memory by its address. What a document says of addresses isn't
/// believed: a guess would have a stream of the application read and deleted. An application's
/// resolver may put such a pointer in place.
bool NamesStreamAddress(const Pointer& pointer)
{
    for (int i = 0; i + 1 < pointer.GetAdapterCount(); ++i)
    {
        if (pointer.GetAdapterType(i) == u"STREAM" && pointer.GetControlString(i).IsEmpty() == 0)
        {
            return true;
        }
    }
    return false;
}

void ReportUnableToLoad(Follow& follow, const Pointer& pointer)
{
    follow.result.AddError(
        4, String::Format("Unable to load: \"%s\"", ToUtf8(pointer.GetString()).c_str()));
}

void MarkPulledIn(const Array<Handle>& handles, Object* owner)
{
    for (int i = 0; owner != nullptr && i < handles.GetSize(); ++i)
    {
        if (Object* object = handles.GetAt(i).GetObject())
        {
            ClassData* root = ClassData::Of(object)->Root();
            if (root->object != owner->GetRoot())
            {
                root->stateFlags |= ClassData::kPulledInRoot;
            }
        }
    }
}

/// Has the chain load its document. What comes is registered under the pointer.
void LoadDocumentOf(Follow& follow, AdapterRef& chain, const Pointer& pointer,
                    Array<Handle>& handles, Result& result)
{
    const LoadDepth depth(follow.options);
    if (!depth.Allows(pointer.GetString(), result))
    {
        return;
    }
    // The adapter sees for whom it loads: its roots are pulled in.
    chain.GetAdapter()->GetImplementation()->handle = follow.owner;
    const std::unique_ptr<Configuration> copy = CopyOptions(follow.options);
    StoreInstance(copy.get(), kResolverPlugin, String(), follow.resolver, false);
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_LOAD;
    data.Set(kResultSlot, &result);
    data.Set(kOptionsSlot, copy.get());
    data.Set(kHandlesSlot, &handles);
    data.Set(kResolverSlot, follow.resolver);
    ProcessLocked(chain.GetAdapter(), data);
    MarkPulledIn(handles, follow.owner);
    for (int i = 0; i < handles.GetSize() && !HasStreamElement(pointer); ++i)
    {
        result.Merge(follow.resolver->RegisterObject(handles[i], pointer));
        if (const Object* object = handles[i].GetObject())
        {
            // An adapter of an application tells the library nothing of where its documents stand.
            RememberDocumentPointer(object->GetRoot(), pointer);
        }
    }
}

/// Lets the reference hold the documents and the things that it was followed into.
void CountUses(Follow& follow, const Array<Handle>& handles)
{
    if (follow.owner == nullptr)
    {
        return;
    }
    const ClassData* ownRoot = ClassData::Of(follow.owner)->Root();
    for (const Handle& handle : handles)
    {
        ClassData* object = ClassData::Of(handle.GetObject());
        ClassData* root = object != nullptr ? object->Root() : nullptr;
        if (root != nullptr && root != ownRoot)
        {
            DocumentUses::Get().Add(follow.reference, root->object);
        }
        else if (object == nullptr && handle.GetData() != nullptr)
        {
            DocumentUses::Get().AddForeign(follow.reference, handle);
        }
    }
}

void TakeTargets(Follow& follow, AdapterRef& chain, Array<Handle>& handles, const String& locator)
{
    if (locator.IsEmpty() != 0)
    {
        follow.reference.SetTargets(handles);
    }
    else
    {
        const Array<Handle> located =
            Locate(chain.GetAdapter(), handles, locator, follow.options, follow.result);
        if (located.GetSize() == 0)
        {
            ReportLocatorFailure(follow, locator);
        }
        else
        {
            follow.reference.SetTargets(located);
        }
    }
    CountUses(follow, handles);
}

/// The reference whose targets a locator shares: that of the representation that it speaks of; null
/// without one.
ExternalRep* SharedWith(const Follow& follow, const Pointer& pointer)
{
    if (pointer.GetFormat().IsEmpty() != 0 || pointer.GetAbsolutePath().IsEmpty() == 0)
    {
        return nullptr;
    }
    ExternalRep* location = FormatFromOwner(follow.reference, follow.owner, nullptr).location;
    return location != &follow.reference ? location : nullptr;
}

/// A document that was loaded for nobody and in which nothing was found: no one would delete it.
void DestroyUnwanted(Follow& follow, AdapterRef& chain, Array<Handle>& handles)
{
    if (follow.owner == nullptr && !follow.reference.HasTarget() && handles.GetSize() > 0)
    {
        PluginProcessData data;
        data.m_operation = ZORVEX_OP_ADAPTER_DESTROY;
        data.Set(kOptionsSlot, follow.options);
        data.Set(kHandlesSlot, &handles);
        ProcessLocked(chain.GetAdapter(), data);
    }
}

/// The document itself: found among those loaded, or loaded now.
void FollowChain(Follow& follow, AdapterRef& chain, const Pointer& pointer, const String& locator,
                 const ExternalRep* shared)
{
    Array<Handle> handles;
    Result loaded;
    bool isNew = false;
    if (shared != nullptr)
    {
        shared->GetTargets(handles);
    }
    else if (follow.resolver->FindObjects(pointer, handles) == 0 || handles.GetSize() == 0)
    {
        if (!follow.loadAllowed)
        {
            return;
        }
        isNew = true;
        LoadDocumentOf(follow, chain, pointer, handles, loaded);
    }
    follow.result.Merge(loaded);
    if (loaded.Ok() != 0 && handles.GetSize() == 0 && follow.owner != nullptr &&
        pointer.GetFormat() == u"ZORVEX")
    {
        handles.Add(Handle(follow.owner->GetRoot()));
    }
    if (handles.GetSize() > 0)
    {
        TakeTargets(follow, chain, handles, locator);
    }
    if (isNew)
    {
        DestroyUnwanted(follow, chain, handles);
    }
}

void LoadTarget(Follow& follow, Pointer& pointer)
{
    const Mode mode = ModeOf(follow);
    if (follow.reference.HasTarget() || mode == Mode::Off || pointer.IsValid() == 0)
    {
        return;
    }
    const ReferenceResolver resolver(follow.resolver, follow.options, follow.owner);
    follow.resolver = resolver.Get();
    const ContextWay way{follow.previous, follow.options, follow.resolver, follow.load,
                         follow.loadAllowed};
    pointer.EnsureFormat(FormatFromOwner(follow.reference, follow.owner, &way).format);
    String locator = pointer.GetLocatorString();
    if (follow.owner != nullptr && IsLocal(pointer))
    {
        LocateInOwnDocument(follow, pointer, locator);
        return;
    }
    if (follow.previous != nullptr && follow.previous->GetFormat() == u"STREAM")
    {
        follow.result.AddError(517, WARNING,
                               u"External references are not supported for loading from a String.");
        return;
    }
    if (follow.owner != nullptr && NamesStreamAddress(pointer))
    {
        ReportUnableToLoad(follow, pointer);
        return;
    }

    ReferenceQuestion question(follow.resolver, follow.owner, follow.field, follow.options);
    if (!question.MayFollow(pointer, follow.result))
    {
        NoteRefusal();
        return;
    }
    if (pointer.GetLocatorString().IsEmpty() == 0)
    {
        locator = pointer.GetLocatorString();  // the resolver may have named another element
    }
    CompleteRelative(follow, pointer);
    EnsureAnyFormat(follow, pointer);
    if (pointer.GetFormat().IsEmpty() != 0)
    {
        ReportNoFormat(follow, pointer);
        return;
    }
    Substitute(follow.options, pointer);
    AdapterRef chain(pointer, follow.previous, follow.options);
    if (chain.IsValid() == 0)
    {
        follow.result.Merge(chain.GetResult());
        return;
    }
    const ExternalRep* shared = SharedWith(follow, pointer);
    chain->ConstructPointer(pointer);  // with the folder in front
    if (mode == Mode::Translate)
    {
        pointer.SetLocatorString(locator);
        follow.reference.StoreText(View(TextWithin(follow.owner, pointer)));
        return;
    }
    Result asked;
    if (!question.MayLoad(pointer, asked))
    {
        NoteRefusal();  // and nothing that it said counts
        return;
    }
    follow.result.Merge(asked);
    FollowChain(follow, chain, pointer, locator, shared);
}

}  // namespace

void ExternalRep::Resolve(Object* ownerObject, Adapter* previous, Configuration* options,
                          URIResolver* resolver, FieldDescriptor* field, int load, bool loadAllowed,
                          Result& result)
{
    if (HasTarget())
    {
        return;
    }
    const String stored = GetText();
    if (ownerObject != nullptr && IsOwnDocument(View(stored)))
    {
        PointAt(*this, ownerObject->GetRoot());
        return;
    }
    Pointer pointer(stored);
    if (ownerObject != nullptr && (IsPlainId(View(stored)) || IsLocal(pointer)))
    {
        ClassData* root = ClassData::Of(ownerObject)->Root();
        const TextView locator =
            IsPlainId(View(stored)) ? View(stored).substr(1) : View(pointer.GetLocatorString());
        if (FindInRoots(*this, locator, {root}) || IsPlainId(View(stored)))
        {
            return;
        }
    }
    Follow follow{*this, ownerObject, previous,    options, resolver,
                  field, load,        loadAllowed, result};
    LoadTarget(follow, pointer);
}

void ExternalRep::ResolveAfterParse(Object* ownerObject, Adapter* adapter, Configuration* options,
                                    URIResolver* resolver, FieldDescriptor* field, int load,
                                    Result& result, Array<Handle>& roots)
{
    if (HasTarget())
    {
        return;
    }
    const String stored = GetText();
    if (IsOwnDocument(View(stored)))
    {
        PointAt(*this, ownerObject->GetRoot());
        return;
    }
    Pointer pointer(stored);
    if (IsPlainId(View(stored)) || IsLocal(pointer))
    {
        std::vector<ClassData*> trees;
        for (int i = 0; i < roots.GetSize(); ++i)
        {
            trees.push_back(ClassData::Of(roots[i].GetObject())->Root());
        }
        const TextView locator =
            IsPlainId(View(stored)) ? View(stored).substr(1) : View(pointer.GetLocatorString());
        if (FindInRoots(*this, locator, trees) || IsPlainId(View(stored)))
        {
            return;
        }
    }
    Adapter* previous = adapter != nullptr ? adapter->GetPrevious() : nullptr;
    Follow follow{*this, ownerObject, previous, options, resolver, field, load, true, result};
    LoadTarget(follow, pointer);
}

}  // namespace zorvex_api
