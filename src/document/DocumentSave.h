#pragma once

#include <vector>

#include "zorvex_api/Pointer.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{
class Adapter;
class Configuration;
class Object;
class PluginProcessData;
class Stream;
class URIResolver;
}  // namespace zorvex_api

namespace zorvex_adapter
{

/// One save of a document by the ZORVEX adapter: from root to a closed stream.
///
/// The stream is closed only when everything was written, so that a target that is committed in
/// Close stays as it was after a failure; nor does the root then count as standing there. What the
/// save adds to the tree for the time of the write is taken out again whatever happens.
class DocumentSave
{
public:
    /// `data` is that of ZORVEX_OP_ADAPTER_SAVE; `object` is the first of its handles.
    DocumentSave(zorvex_api::Adapter& adapter, zorvex_api::Object* object,
                 const zorvex_api::PluginProcessData& data);
    ~DocumentSave();
    DocumentSave(const DocumentSave&) = delete;
    DocumentSave& operator=(const DocumentSave&) = delete;

    /// Nothing is thrown.
    void Run();

private:
    void RunSteps();
    bool OpenStream();
    void PrepareRoot();
    void AddHeader();
    void RemoveHeader();
    bool WritesPart() const;
    void Register();
    void Deregister();
    void WriteDocument(zorvex_api::Stream* target);
    bool Transform(zorvex_api::Stream* written);
    void CloseStream();

    zorvex_api::Adapter& m_adapter;
    zorvex_api::Object* m_object;
    zorvex_api::Object* m_root;
    zorvex_api::Result m_unheard;
    zorvex_api::Result& m_result;            // the operation's, or one that nobody reads
    zorvex_api::Configuration* m_options;    // may be null
    zorvex_api::URIResolver* m_resolver;     // may be null
    zorvex_api::Stream* m_stream = nullptr;  // owned
    zorvex_api::Pointer m_pointer;
    bool m_remembered = false;  // the root had no pointer before this save
    bool m_registered = false;  // this save told the resolver of the pointer
    bool m_wasKnown = false;    // the resolver knew the root before, under m_known
    zorvex_api::Pointer m_known;
    std::vector<zorvex_api::Object*> m_added;  // in the order in which they go
};

}  // namespace zorvex_adapter
