#include "document/XercesParser.h"

#include "document/ParserImpl.h"
#include "document/ParserPlugin.h"
#include "document/XercesHandlers.h"
#include "document/XercesInput.h"
#include "document/XercesMemory.h"
#include "runtime/Text.h"
#include "runtime/XmlPlatform.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/Stream.h"

namespace zorvex_parser
{

using zorvex_api::Configuration;
using zorvex_api::Exception;
using zorvex_api::PluginDescriptor;
using zorvex_api::PluginProcessData;
using zorvex_api::Result;
using zorvex_api::Stream;
using zorvex_api::String;
using zorvex_api::internal::GetSlot;
using zorvex_api::internal::kOptionsSlot;
using zorvex_api::internal::kResultSlot;
using zorvex_api::internal::kStreamSlot;

namespace
{

PluginDescriptor* g_descriptor = nullptr;  // owned by the plug-in registry

void* MakeXerces()
{
    return new Xerces;
}

void FillProperties(PluginDescriptor*, Configuration* properties)
{
    properties->Set(u"THREADING", u"MULTIPLE");
}

bool OptionIs(Configuration* options, const char16_t* path, const char16_t* value)
{
    String text;
    return options != nullptr && options->Get(path, text) != nullptr && text == value;
}

/// The settings, in the order in which the parser takes them. External entities are never fetched.
void Configure(WatchedParser& parser, Configuration* options,
               xercesc::SecurityManager& securityManager)
{
    parser.setValidationScheme(xercesc::SAXParser::Val_Never);
    parser.setDisableDefaultEntityResolution(true);
    parser.setLoadExternalDTD(false);
    if (OptionIs(options, u"parsers/validate", u"true"))
    {
        parser.setValidationScheme(xercesc::SAXParser::Val_Always);
        parser.setDoNamespaces(true);
        parser.setDoSchema(true);
        parser.setSkipDTDValidation(true);
    }
    parser.setSecurityManager(&securityManager);
}

void RunParser(Xerces& plugin, Stream* stream, Configuration* options, XMLFilePos& bytesRead,
               XercesMemory& memory)
{
    const zorvex_api::ParserImpl& reader = *plugin.GetImplementation();
    const zorvex_api::ParseLimits& limits = reader.limits;
    EntityWatch watch(limits, bytesRead);

    xercesc::SecurityManager securityManager;
    securityManager.setEntityExpansionLimit(static_cast<XMLSize_t>(limits.entityExpansions));
    WatchedParser parser(watch, memory);
    XercesDocumentHandler documentHandler(plugin, watch);
    XercesDTDHandler declarationHandler;
    XercesErrorHandler errorHandler;
    parser.setDocumentHandler(&documentHandler);
    parser.setDTDHandler(&declarationHandler);
    parser.setErrorHandler(&errorHandler);
    Configure(parser, options, securityManager);

    const bool filter = OptionIs(options, u"adapters/ZORVEX/char_filter", u"true");
    const XercesInputSource source(stream, filter, reader.forceUtf8, &bytesRead);
    parser.parse(source);
}

String MessageOf(const XMLCh* message)
{
    return message != nullptr ? String(zorvex_api::AsUnits(message)) : String();
}

/// Turns whatever the parse throws into an error; what was built so far stays.
void ParseStreamOf(Xerces& plugin, Stream* stream, Configuration* options, Result& result)
{
    XMLFilePos bytesRead = 0;
    // Exceptions of the parse have their texts there.
    XercesMemory memory(plugin.GetImplementation()->limits, bytesRead);
    try
    {
        RunParser(plugin, stream, options, bytesRead, memory);
    }
    catch (const xercesc::SAXParseException& exception)
    {
        result.AddError(4, String(u"XML Parser error: ") + MessageOf(exception.getMessage()));
    }
    catch (const char* text)
    {
        result.AddError(4, String(text));
    }
    catch (const String& text)
    {
        result.AddError(4, text);
    }
    catch (const Exception& exception)
    {
        result.AddError(exception.GetCode(), exception.GetMessage());
    }
    catch (...)
    {
        result.AddError(4, u"Unexpected throw");
    }
}

}  // namespace

Xerces::Xerces() = default;

Xerces::~Xerces()
{
    if (g_descriptor != nullptr)
    {
        g_descriptor->RemoveInstance(this);
    }
}

PluginDescriptor* Xerces::GetPluginDescriptor()
{
    return g_descriptor;
}

void Xerces::Process(PluginProcessData* data)
{
    if (data->m_operation != zorvex_api::ZORVEX_OP_PARSER_PARSE)
    {
        Parser::Process(data);
        return;
    }
    auto* result = GetSlot<Result>(*data, kResultSlot);
    auto* stream = GetSlot<Stream>(*data, kStreamSlot);
    if (result == nullptr)
    {
        return;  // nobody to tell
    }
    if (stream == nullptr || !GetImplementation()->IsPrepared())
    {
        result->AddError(19, u"Only the document reader can parse a stream.");
        return;
    }
    if (!zorvex_api::XmlPlatform::Start())
    {
        result->AddError(82, u"Unable to initialise parser.");
        return;
    }
    auto* options = GetSlot<Configuration>(*data, kOptionsSlot);
    String ignored;
    if (options != nullptr && options->Get(u"adapters/ZORVEX/import/transform", ignored) != nullptr)
    {
        // Stylesheets on the way in are an operation that this plug-in doesn't have.
        result->AddError(6, u"Invalid Parser operation code.");
        return;
    }
    ParseStreamOf(*this, stream, options, *result);
}

}  // namespace zorvex_parser

namespace zorvex_api::internal
{

int InitXercesParser(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    using zorvex_parser::g_descriptor;
    g_descriptor = static_cast<PluginDescriptor*>(descriptor);
    g_descriptor->SetType(2);
    g_descriptor->SetName(u"Xerces");
    g_descriptor->SetBase(ParserBaseDescriptor());
    g_descriptor->SetInstanceFunction(&zorvex_parser::MakeXerces);
    g_descriptor->SetPropertiesFunction(&zorvex_parser::FillProperties);
    return 1;
}

}  // namespace zorvex_api::internal
