#pragma once

#include "zorvex_api/Parser.h"

namespace zorvex_parser
{

/// The parser plug-in "Xerces": runs the SAX parser of Xerces-C on a stream.
class Xerces : public zorvex_api::Parser
{
public:
    Xerces();
    ~Xerces() override;

    zorvex_api::PluginDescriptor* GetPluginDescriptor() override;

    /// Operation 20 parses the stream of slot 8; other codes go to the base. Nothing is thrown.
    void Process(zorvex_api::PluginProcessData* data) override;
};

}  // namespace zorvex_parser

namespace zorvex_api::internal
{

/// Initialiser of the plug-in's node: the argument is the new PluginDescriptor.
int InitXercesParser(void* descriptor);

}  // namespace zorvex_api::internal
