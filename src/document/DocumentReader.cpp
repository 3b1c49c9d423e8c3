#include "document/DocumentReader.h"

#include <memory>

#include "document/ParserImpl.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Parser.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Stream.h"

namespace zorvex_api
{

namespace
{

constexpr int kParserType = 2;

void RunParse(Parser& parser, Stream* stream, Configuration* options, Result& result)
{
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_PARSER_PARSE;
    data.Set(0, &result);
    data.Set(1, options);
    data.Set(8, stream);
    const PluginLock lock(parser.GetPluginDescriptor());
    parser.Process(&data);
}

void ReportEnd(const ParserImpl& reader, const Array<Object*>& objects, Result& result)
{
    if (objects.GetSize() == 0)
    {
        result.AddError(4, u"No suitable root element found");
        return;
    }
    if (!result.Ok() && !reader.lastId.empty())
    {
        result.AddError(
            4, String::Format(" ( last id read was: %s ) ", ToUtf8(reader.lastId).c_str()));
    }
}

}  // namespace

void ParseStream(const String& path, Stream* stream, Configuration* options,
                 Array<Object*>& objects, ReferenceList* references, Result& result, int schemaMode,
                 Array<ClassDescriptor*>* createdClasses, bool forceUtf8)
{
    try
    {
        int isNew = 0;
        auto* parser =
            static_cast<Parser*>(internal::FindInstance(kParserType, String(), options, isNew));
        const std::unique_ptr<Parser> owned(isNew != 0 ? parser : nullptr);
        if (parser == nullptr)
        {
            result.AddError(82, u"Unable to initialise parser.");
            return;
        }
        ParserImpl& reader = *parser->GetImplementation();
        reader.objects = &objects;
        reader.references = references;
        reader.result = &result;
        reader.options = options;
        reader.path = path;
        reader.createdClasses = createdClasses;
        reader.schemaMode = schemaMode;
        reader.forceUtf8 = forceUtf8;
        reader.Prepare();
        RunParse(*parser, stream, options, result);
        reader.Finish();
        ReportEnd(reader, objects, result);
    }
    catch (...)
    {
        throw Exception(2, u"Internal Exception");
    }
}

// --- the events of a parse -----------------------------------------------------------------------

void Parser::StartElement(const unsigned short* name, const UCharList& attributeNames,
                          const UCharList& attributeValues)
{
    if (name == nullptr || !m_impl->IsPrepared())
    {
        throw Exception(2, u"No parse is under way.");
    }
    m_impl->StartElement(TextView(AsChar16(name)), attributeNames, attributeValues);
}

void Parser::EndElement(const unsigned short*)
{
    m_impl->EndElement();
}

void Parser::Characters(const unsigned short* text, std::size_t length)
{
    if (text != nullptr)
    {
        m_impl->Characters(TextView(AsChar16(text), length));
    }
}

}  // namespace zorvex_api
