#include <memory>
#include <string>

#include "objectmodel/ClassData.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/JournalHooks.h"
#include "transport/FileName.h"
#include "transport/LiveStreams.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/ConfigurationRef.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_api
{

namespace
{

using namespace internal;

constexpr const char16_t* kStandardFormat = u"ZORVEX";

struct DeleteResolver
{
    void operator()(URIResolver* resolver) const { ReleaseInstance(kResolverPlugin, resolver); }
};

/// The options and the resolver of one save: a private copy, active for the length of the call.
class SaveScope
{
public:
    explicit SaveScope(Configuration* options)
        : m_options(CopyOptions(options != nullptr ? options
                                                   : ConfigurationRef::GetActiveConfiguration())),
          m_active(m_options.get())
    {
        if (FindStoredResolver(m_options.get()) != nullptr)
        {
            return;
        }
        int isNew = 0;
        URIResolver* resolver = FindResolver(nullptr, isNew);
        m_owned.reset(isNew != 0 ? resolver : nullptr);
        StoreInstance(m_options.get(), kResolverPlugin, String(), resolver, false);
    }

    Configuration* Options() const { return m_options.get(); }
    String Option(const char16_t* path) const
    {
        String value;
        m_options->Get(path, value);
        return value;
    }

private:
    std::unique_ptr<URIResolver, DeleteResolver> m_owned;  // outlives the options that hold it
    std::unique_ptr<Configuration> m_options;
    ConfigurationRef m_active;
};

/// Sends an operation with this object as its one handle to the chain of a pointer.
void RunOnChain(int operation, Object& object, const Pointer& pointer, Configuration* options,
                Array<Handle>* located, Result& result)
{
    const AdapterRef chain(pointer, nullptr, options);
    result.Merge(chain.GetResult());
    if (chain.GetResult().HasError() != 0)
    {
        return;
    }
    if (chain.IsValid() == 0)
    {
        // Only a warning so far, and nothing is written: that mustn't pass for a save.
        result.AddError(
            4, String::Format("Unable to save: \"%s\"", ToUtf8(pointer.GetString()).c_str()));
        return;
    }
    Array<Handle> handles;
    handles.Add(Handle(&object));
    PluginProcessData data;
    data.m_operation = operation;
    data.Set(kResultSlot, &result);
    data.Set(kOptionsSlot, options);
    data.Set(kHandlesSlot, &handles);
    data.Set(kLocatedSlot, located);
    ProcessLocked(chain.GetAdapter(), data);
}

/// The format of a save: the option, the pointer's own, the one of its extension; empty if none.
String FindFormat(const SaveScope& scope, const Pointer& pointer)
{
    String format = scope.Option(u"format");
    if (format.IsEmpty() != 0)
    {
        format = pointer.GetFormat();
    }
    return format.IsEmpty() != 0 ? FindFormatByExtension(pointer) : format;
}

void SaveTo(Object& object, const String& uri, const SaveScope& scope, Result& result)
{
    Pointer pointer;
    result.Merge(pointer.Parse(uri));
    if (result.HasError() != 0)
    {
        return;
    }
    String format = FindFormat(scope, pointer);
    if (format.IsEmpty() != 0)
    {
        result.AddError(19, WARNING, u"No adapter found for \"" + uri + u"\". Assuming ZORVEX.");
        format = kStandardFormat;
    }
    pointer.EnsureFormat(format);
    RunOnChain(ZORVEX_OP_ADAPTER_EXPORT, object, pointer, scope.Options(), nullptr, result);
}

/// Runs `work` and turns what it throws into errors: nothing leaves an entry point.
template <class Work>
void Guarded(Result& result, Work&& work)
{
    try
    {
        work();
    }
    catch (const Exception& exception)
    {
        result.AddError(exception.GetCode(), exception.GetMessage());
    }
    catch (...)
    {
        result.AddError(2, u"Unexpected exception");
    }
}

/// A memory stream that leaves its content behind when it is deleted.
class StringStream : public MemoryStream
{
public:
    struct Content
    {
        std::string bytes;
        bool gone = false;
    };

    explicit StringStream(Content& content) : m_content(content) {}
    ~StringStream() override
    {
        std::uint64_t length = 0;
        GetLength64(length);
        if (length > 0)
        {
            m_content.bytes.assign(static_cast<const char*>(GetBuffer()),
                                   static_cast<std::size_t>(length));
        }
        m_content.gone = true;
    }

private:
    Content& m_content;
};

/// Deletes the stream unless the save has done so.
struct StreamGuard
{
    ~StreamGuard()
    {
        if (!content.gone)
        {
            delete stream;
        }
    }
    const StringStream::Content& content;
    StringStream* stream;
};

}  // namespace

Result Object::Save(const String& uri, Configuration* options)
{
    const ObjectPin pin(this);
    Journal* journal = JournalHooks::Get();
    if (journal != nullptr)
    {
        journal->SaveBegin(this, uri, options);
    }
    Result result;
    Guarded(result, [&] { SaveTo(*this, uri, SaveScope(options), result); });
    if (journal != nullptr)
    {
        journal->SaveEnd(result);
    }
    return result;
}

Result Object::Save(const String& uri, const Configuration& options)
{
    return Save(uri, const_cast<Configuration*>(&options));  // copied, never changed
}

Result Object::Export(const String& uri, Array<Handle>& handles, Configuration* options)
{
    const ObjectPin pin(this);
    Result result;
    Guarded(result,
            [&]
            {
                const SaveScope scope(options);
                Pointer pointer;
                result.Merge(pointer.Parse(uri));
                if (result.HasError() != 0)
                {
                    return;
                }
                const String format = FindFormat(scope, pointer);
                if (format.IsEmpty() != 0)
                {
                    result.AddError(19, WARNING, u"No adapter found for \"" + uri + u"\".");
                    return;
                }
                pointer.EnsureFormat(format);
                Array<Handle> made;
                RunOnChain(kAdapterExportForeign, *this, pointer, scope.Options(), &made, result);
                handles.Add(made.GetSize(), made.GetData());
            });
    return result;
}

Result Object::GetXML(String& text, Configuration* options)
{
    const ObjectPin pin(this);
    StringStream::Content content;
    Result result;
    try
    {
        const SaveScope scope(options);
        if (scope.Option(u"format").IsEmpty() == 0)
        {
            scope.Options()->Set(u"format", kStandardFormat);
        }
        scope.Options()->Set(u"adapters/ZORVEX/export/mode", u"xml_only");
        const StreamGuard guard{content, new StringStream(content)};
        SaveTo(*this, u"#ZORVEX(STREAM-doc/" + StreamAddress(guard.stream) + u"/ZORVEX-doc)", scope,
               result);
    }
    catch (...)
    {
        result.AddError(2, u"Unexpected exception");
    }
    if (result.Ok() != 0)
    {
        text = FromUtf8(content.bytes);
    }
    return result;
}

}  // namespace zorvex_api
