#pragma once

#include "document/ReferenceData.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{
class IdTable;
class Adapter;
class Configuration;
class PluginProcessData;
class Result;
class Stream;
class URIResolver;
}  // namespace zorvex_api

namespace zorvex_adapter
{

/// One load of a document by the ZORVEX adapter: from stream to roots with resolved references.
///
/// The roots are registered and handed out also when the document is malformed; they belong to the
/// caller. The stream is deleted as soon as the parse ends.
class DocumentLoad
{
public:
    /// `data` is that of ZORVEX_OP_ADAPTER_LOAD; the adapter has a context.
    DocumentLoad(zorvex_api::Adapter& adapter, const zorvex_api::PluginProcessData& data);
    /// Deletes what could not be handed out.
    ~DocumentLoad();
    DocumentLoad(const DocumentLoad&) = delete;
    DocumentLoad& operator=(const DocumentLoad&) = delete;

    /// Nothing is thrown.
    void Run();

private:
    zorvex_api::Stream* OpenStream();
    void RunSteps();
    void Parse();
    void HandOut();
    void ResolveReferences();
    void ResolveReference(const zorvex_api::ReferenceData& reference);
    const zorvex_api::IdTable* OnlyTable() const;
    bool LinkBatch(const zorvex_api::ReferenceData* references, std::size_t count,
                   const zorvex_api::IdTable& table);
    void ReportEnd();
    void MarkRoots();

    zorvex_api::Adapter& m_adapter;
    zorvex_api::Result m_unheard;
    zorvex_api::Result& m_result;                      // the operation's, or one that nobody reads
    zorvex_api::Configuration* m_options;              // may be null
    zorvex_api::URIResolver* m_resolver;               // may be null
    zorvex_api::Array<zorvex_api::Handle>& m_handles;  // the caller's
    zorvex_api::Stream* m_stream = nullptr;            // owned until the parse ends
    zorvex_api::Array<zorvex_api::Object*> m_objects;
    int m_handedOut = 0;  // of the objects: the caller's
    zorvex_api::Array<zorvex_api::Handle> m_roots;
    zorvex_api::ReferenceList m_references;
    zorvex_api::Pointer m_pointer;
};

}  // namespace zorvex_adapter
