#include "zorvex_api/Load.h"

#include "transport/LoadRoutine.h"
#include "transport/SurplusRoots.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

// The routine works on a copy of the options.
Configuration* Unchanged(const Configuration& options)
{
    return const_cast<Configuration*>(&options);
}

}  // namespace

Result Load(const String& uri, Array<Handle>& handles, Configuration* options)
{
    Result result;
    internal::LoadDocumentInto(uri, handles, options, result, {});
    return result;
}

Result Load(const String& uri, const Configuration& options, Array<Handle>& handles)
{
    return Load(uri, handles, Unchanged(options));
}

Result LoadDocument(const String& uri, const Configuration& options, Object** document)
{
    if (document == nullptr)
    {
        Result refused;
        refused.AddError(2, u"LoadDocument: no place for the document.");
        return refused;
    }
    Array<Object*> documents;
    Result result = LoadMultipleDocument(uri, options, documents);
    *document = documents.GetSize() > 0 ? documents[0] : nullptr;
    if (documents.GetSize() > 1)
    {
        internal::KeepSurplusRoots(documents);
        result.AddError(4,
                        u"More than one DocumentBase element in the document - the first has been "
                        u"loaded");
    }
    return result;
}

Result LoadMultipleDocument(const String& uri, const Configuration& options,
                            Array<Object*>& documents)
{
    Result result;
    Array<Handle> handles;
    internal::LoadSwitches switches;
    switches.multiple = true;
    internal::LoadDocumentInto(uri, handles, Unchanged(options), result, switches);
    for (const Handle& handle : handles)
    {
        if (Object* object = handle.GetObject())
        {
            documents.Add(object);
        }
    }
    return result;
}

Result ResolveURI(const String& uri, Array<Handle>& handles)
{
    Result result;
    internal::LoadSwitches switches;
    switches.resolveOnly = true;
    internal::LoadDocumentInto(uri, handles, nullptr, result, switches);
    return result;
}

}  // namespace zorvex_api
