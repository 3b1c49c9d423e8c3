#pragma once

#include "zorvex_api/Adapter.h"

namespace zorvex_adapter
{

/// The adapter of the format STREAM: a Stream that is in memory already stands where a chain
/// expects a file.
///
/// The stream's address is the text that the adapter above looks for. Whoever gets the stream
/// deletes it.
class STREAM : public zorvex_api::Adapter
{
public:
    zorvex_api::PluginDescriptor* GetPluginDescriptor() override;

    /// GET gives the stream, if the address is that of a live one. LOAD gives the stream of the
    /// adapter below as a handle of the format "STREAM", and DESTROY deletes the streams of such
    /// handles. RESET, CLONE; others as the base.
    void Process(zorvex_api::PluginProcessData* data) override;
};

}  // namespace zorvex_adapter
