#include "transport/LoadRoutine.h"

#include <memory>

#include "objectmodel/ExternalRep.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/SessionState.h"
#include "runtime/Text.h"
#include "transport/DocumentPointer.h"
#include "transport/FileName.h"
#include "transport/LiveStreams.h"
#include "transport/LoadDepth.h"
#include "transport/LoadRefusal.h"
#include "transport/LoadText.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "transport/URIResolverDefault.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/ConfigurationRef.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_api::internal
{

namespace
{

constexpr const char16_t* kStandardFormat = u"ZORVEX";

String FormatOption(Configuration* options)
{
    String format;
    if (options != nullptr)
    {
        options->Get(u"format", format);
    }
    return format;
}

void ReportUnableToLoad(const String& uri, Result& result)
{
    result.AddError(4, String::Format("Unable to load: \"%s\"", ToUtf8(uri).c_str()));
}

struct DeleteResolver
{
    void operator()(URIResolver* resolver) const { ReleaseInstance(kResolverPlugin, resolver); }
};

/// The resolver of one load. It stands in the store of the load's options.
class LoadResolver
{
public:
    LoadResolver(URIResolver* given, Configuration& options) : m_resolver(given)
    {
        if (m_resolver == nullptr)
        {
            m_resolver = FindStoredResolver(&options);
            if (m_resolver != nullptr)
            {
                return;  // in the store already
            }
        }
        if (m_resolver == nullptr)
        {
            int isNew = 0;
            m_resolver = FindResolver(nullptr, isNew);  // the session's default, or a new one
            m_owned.reset(isNew != 0 ? m_resolver : nullptr);
        }
        StoreInstance(&options, kResolverPlugin, String(), m_resolver, false);
    }

    URIResolver* Get() const { return m_resolver; }

    /// A resolver that was made for this load lives on with the document.
    void MoveTo(Object* document)
    {
        if (m_owned != nullptr)
        {
            StoreInstance(document, kResolverPlugin, String(), m_resolver, true);
            m_owned.release();
        }
    }

private:
    URIResolver* m_resolver;
    std::unique_ptr<URIResolver, DeleteResolver> m_owned;
};

/// A reference that no object holds.
struct LooseReference
{
    LooseReference() = default;
    LooseReference(const LooseReference&) = delete;
    LooseReference& operator=(const LooseReference&) = delete;
    ~LooseReference()
    {
        rep.ReleaseTargets();
        rep.ClearTarget();
        rep.StoreText({});
        rep.StoreFormat({});
    }

    ExternalRep rep;
};

/// What one load works with.
struct LoadWork
{
    Pointer pointer;
    Configuration& options;
    URIResolver* resolver;
    Array<Handle>& handles;
    Result& result;
};

/// What the pointer says; with `multiple` a pointer without a format gets one.
String FormatOfReference(LoadWork& work, bool multiple)
{
    String format = work.pointer.GetFormat();
    if (!multiple || format.IsEmpty() == 0)
    {
        return format;
    }
    format = FormatOption(&work.options);
    if (format.IsEmpty() != 0)
    {
        format = FindOrAskFormatByExtension(work.pointer);
    }
    return format.IsEmpty() != 0 ? String(kStandardFormat) : format;
}

/// The way of a URI that names a format: as a reference with nobody behind it.
void LoadAsReference(LoadWork& work, bool multiple)
{
    LooseReference reference;
    reference.rep.StoreText(View(work.pointer.GetString()));
    // A lone adapter isn't part of the text.
    reference.rep.StoreFormat(View(FormatOfReference(work, multiple)));
    reference.rep.Resolve(nullptr, nullptr, &work.options, work.resolver, nullptr, 0, true,
                          work.result);
    Array<Handle> found;
    reference.rep.MoveTargets(found);
    work.handles.Add(found.GetSize(), found.GetData());
}

void Import(LoadWork& work, Adapter& top)
{
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_IMPORT;
    data.Set(kResultSlot, &work.result);
    data.Set(kOptionsSlot, &work.options);
    data.Set(kHandlesSlot, &work.handles);
    data.Set(kResolverSlot, work.resolver);
    ProcessLocked(&top, data);
}

void RegisterDocument(LoadWork& work, Adapter& top, const Handle& document)
{
    Pointer pointer;
    top.ConstructPointer(pointer);
    work.result.Merge(work.resolver->RegisterObject(document, pointer));
    if (const Object* object = document.GetObject())
    {
        RememberDocumentPointer(object->GetRoot(), pointer);
    }
}

/// The way of a plain path: the format's adapter on the chain of the path.
void LoadByFormat(LoadWork& work)
{
    String format = FormatOption(&work.options);
    if (format.IsEmpty() != 0)
    {
        format = FindOrAskFormatByExtension(work.pointer);
    }
    if (format.IsEmpty() != 0)
    {
        work.result.AddError(2, u"No adapter found for \"" + work.pointer.GetString() + u"\".");
        return;
    }
    work.pointer.EnsureFormat(format);
    const AdapterRef chain(work.pointer, nullptr, &work.options);
    work.result.Merge(chain.GetResult());
    if (chain.IsValid() == 0)
    {
        ReportUnableToLoad(work.pointer.GetString(), work.result);
        return;
    }
    const LoadDepth depth(&work.options);
    if (!depth.Allows(work.pointer.GetString(), work.result))
    {
        return;
    }
    const int before = work.handles.GetSize();
    Import(work, *chain.GetAdapter());
    if (work.handles.GetSize() > before)
    {
        RegisterDocument(work, *chain.GetAdapter(), work.handles[before]);
    }
}

/// What an entry point gives out belongs to the application from then on.
void MarkHandedOut(const Array<Handle>& handles, int first)
{
    for (int i = first; i < handles.GetSize(); ++i)
    {
        if (const Object* object = handles[i].GetObject())
        {
            const ObjectPin root(object->GetRoot());
            root->stateFlags &= ~ClassData::kPulledInRoot;
        }
    }
}

void LoadPointer(const String& uri, Array<Handle>& handles, Configuration* options, Result& result,
                 const LoadSwitches& switches)
{
    const std::unique_ptr<Configuration> copy = CopyOptions(options);
    LoadResolver resolver(switches.resolver, *copy);
    const ConfigurationRef active(copy.get());
    const URIResolverRef shared(resolver.Get());
    const RefusalWatch refusals;
    const int before = handles.GetSize();

    LoadWork work{Pointer(), *copy, resolver.Get(), handles, result};
    const Result parsed = work.pointer.Parse(uri);
    result.Merge(parsed);
    if (parsed.Ok() == 0)
    {
        return;
    }
    const String name = work.pointer.GetString();
    if (switches.resolveOnly || switches.multiple || work.pointer.GetFormat().IsEmpty() == 0)
    {
        LoadAsReference(work, switches.multiple);
    }
    else
    {
        LoadByFormat(work);
    }

    const bool grew = handles.GetSize() > before;
    if (!grew && result.Ok() != 0 && !refusals.WasRefused())
    {
        ReportUnableToLoad(name, result);
    }
    if (!switches.nested)
    {
        MarkHandedOut(handles, before);
        if (grew && handles.GetSize() == 1 && SessionState::Multithreading() &&
            handles[0].IsObject() != 0)
        {
            resolver.MoveTo(handles[0].GetObject());
        }
    }
}

/// A document's text as a stream, which the adapter that reads it deletes, or else this.
class TextSource
{
public:
    explicit TextSource(TextView text) : m_stream(new LoadTextStream(text, m_taken)) {}
    ~TextSource()
    {
        if (!m_taken)
        {
            delete m_stream;
        }
    }
    TextSource(const TextSource&) = delete;
    TextSource& operator=(const TextSource&) = delete;

    String Address() const { return StreamAddress(m_stream); }

private:
    bool m_taken = false;
    LoadTextStream* m_stream;
};

void LoadText(TextView text, Array<Handle>& handles, Configuration* options, Result& result,
              LoadSwitches switches)
{
    String format = FormatOption(options);
    if (format.IsEmpty() != 0)
    {
        format = kStandardFormat;
    }
    const TextSource source(text);
    switches.multiple = false;
    LoadPointer(u"#ZORVEX(STREAM-doc/" + source.Address() + u"/" + format + u"-doc)", handles,
                options, result, switches);
}

void LoadAny(const String& uri, Array<Handle>& handles, Configuration* options, Result& result,
             const LoadSwitches& switches)
{
    if (uri.IsEmpty() != 0)
    {
        result.AddError(4, u"Invalid uri");
        return;
    }
    if (options == nullptr)
    {
        options = ConfigurationRef::GetActiveConfiguration();
    }
    const TextView text = DocumentText(View(uri));
    if (!text.empty())
    {
        LoadText(text, handles, options, result, switches);
        return;
    }
    LoadPointer(uri, handles, options, result, switches);
}

}  // namespace

void LoadDocumentInto(const String& uri, Array<Handle>& handles, Configuration* options,
                      Result& result, const LoadSwitches& switches)
{
    try
    {
        LoadAny(uri, handles, options, result, switches);
    }
    catch (const Exception& exception)
    {
        result.AddError(exception.GetCode(), exception.GetMessage());
    }
    catch (...)
    {
        // A document's own text isn't repeated.
        ReportUnableToLoad(DocumentText(View(uri)).empty() ? uri : String(u"<...>"), result);
    }
}

}  // namespace zorvex_api::internal
