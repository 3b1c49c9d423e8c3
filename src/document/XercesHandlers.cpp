#include "document/XercesHandlers.h"

#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "document/XercesParser.h"
#include "runtime/Text.h"

namespace zorvex_parser
{

using zorvex_api::AsUnits;

// --- EntityWatch ---------------------------------------------------------------------------------

EntityWatch::EntityWatch(const zorvex_api::ParseLimits& limits, const XMLFilePos& bytesRead)
    : m_limits(limits), m_bytesRead(bytesRead)
{
}

void EntityWatch::CheckAmplification() const
{
    using zorvex_api::ParseLimits;
    const std::uint64_t beyond = m_delivered - ParseLimits::kAmplificationAllowance;
    if (beyond / ParseLimits::kAmplification > m_bytesRead)
    {
        ParseLimits::FailAmplification();
    }
}

void EntityWatch::CountExpansion()
{
    if (++m_expansions > m_limits.entityExpansions)
    {
        FailExpansions();
    }
}

void EntityWatch::CountParameterEntity(const XMLCh* name, const XMLCh* value, XMLSize_t length)
{
    // The value as declared: character references to "%" are resolved in it, so the names that a
    // use will expand stand there. Entities declared later can't be expanded by it before they
    // exist.
    std::uint64_t weight = 1;
    const std::u16string_view text(value != nullptr ? value : u"", value != nullptr ? length : 0);
    for (std::size_t at = text.find(u'%'); at != text.npos; at = text.find(u'%', at + 1))
    {
        const std::size_t end = text.find(u';', at);
        if (end == text.npos)
        {
            break;
        }
        const auto known = m_weights.find(std::u16string(text.substr(at + 1, end - at - 1)));
        weight += known != m_weights.end() ? known->second : 1;
        if (weight > m_limits.entityExpansions)
        {
            FailExpansions();
        }
    }
    m_weights.emplace(name, weight);
    CountExpansion();
}

// --- WatchedParser -------------------------------------------------------------------------------

WatchedParser::WatchedParser(EntityWatch& watch, xercesc::MemoryManager& memory)
    : SAXParser(nullptr, &memory), m_watch(watch)
{
}

void WatchedParser::startEntityReference(const xercesc::XMLEntityDecl& declaration)
{
    m_watch.CountExpansion();
    SAXParser::startEntityReference(declaration);
}

void WatchedParser::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                               const bool isIgnored)
{
    m_watch.NoteDeclaration();
    if (isParameter)
    {
        m_watch.CountParameterEntity(declaration.getName(), declaration.getValue(),
                                     declaration.getValueLen());
    }
    SAXParser::entityDecl(declaration, isParameter, isIgnored);
}

void WatchedParser::error(const unsigned int code, const XMLCh* const domain,
                          const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
                          const XMLCh* const systemId, const XMLCh* const publicId,
                          const XMLFileLoc line, const XMLFileLoc column)
{
    // Entities in attribute values are counted by Xerces alone; its text doesn't name the option.
    if (code == xercesc::XMLErrs::EntityExpansionLimitExceeded &&
        xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain))
    {
        m_watch.FailExpansions();
    }
    SAXParser::error(code, domain, type, text, systemId, publicId, line, column);
}

// --- XercesDocumentHandler -----------------------------------------------------------------------

namespace
{

/// A view of Xerces's attribute list: the names or the values by index.
class ArrayRef final : public zorvex_api::Parser::UCharList
{
public:
    ArrayRef(const xercesc::AttributeList& attributes, bool values)
        : m_attributes(attributes), m_values(values)
    {
    }

    int GetLength() const override { return static_cast<int>(m_attributes.getLength()); }
    const unsigned short* operator[](int index) const override
    {
        const auto at = static_cast<XMLSize_t>(index);
        return AsUnits(m_values ? m_attributes.getValue(at) : m_attributes.getName(at));
    }

private:
    const xercesc::AttributeList& m_attributes;
    bool m_values;
};

}  // namespace

XercesDocumentHandler::XercesDocumentHandler(Xerces& parser, EntityWatch& watch)
    : m_parser(parser), m_watch(watch)
{
}

void XercesDocumentHandler::characters(const XMLCh* const text, const XMLSize_t length)
{
    m_watch.CountText(length);
    m_parser.Characters(AsUnits(text), length);
}

void XercesDocumentHandler::startElement(const XMLCh* const name,
                                         xercesc::AttributeList& attributes)
{
    if (m_watch.HasEntities())
    {
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
        {
            m_watch.CountText(xercesc::XMLString::stringLen(attributes.getValue(i)));
        }
    }
    const ArrayRef names(attributes, false);
    const ArrayRef values(attributes, true);
    m_parser.StartElement(AsUnits(name), names, values);
}

void XercesDocumentHandler::endElement(const XMLCh* const name)
{
    m_parser.EndElement(AsUnits(name));
}

// --- XercesErrorHandler --------------------------------------------------------------------------

void XercesErrorHandler::error(const xercesc::SAXParseException& exception)
{
    throw xercesc::SAXParseException(exception);
}

void XercesErrorHandler::fatalError(const xercesc::SAXParseException& exception)
{
    throw xercesc::SAXParseException(exception);
}

}  // namespace zorvex_parser
