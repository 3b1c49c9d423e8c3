#pragma once

#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/DTDHandler.hpp>
#include <xercesc/sax/DocumentHandler.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include <cstdint>
#include <string>
#include <unordered_map>

#include "document/ParseLimits.h"

namespace zorvex_parser
{

class Xerces;

/// Counts what a document's entities make of it, against the limits.
class EntityWatch
{
public:
    EntityWatch(const zorvex_api::ParseLimits& limits, const XMLFilePos& bytesRead);

    /// Text handed to the reader, in units.
    void CountText(std::uint64_t units)
    {
        m_delivered += units;
        if (m_delivered > zorvex_api::ParseLimits::kAmplificationAllowance)
        {
            CheckAmplification();
        }
    }
    void CountExpansion();
    /// Text can be more than what was read only where the document declares entities.
    void NoteDeclaration() { m_hasEntities = true; }
    bool HasEntities() const { return m_hasEntities; }
    /// A declared parameter entity: its value may name others, so that its expansions multiply.
    void CountParameterEntity(const XMLCh* name, const XMLCh* value, XMLSize_t length);
    [[noreturn]] void FailExpansions() const { m_limits.FailEntityExpansions(); }

private:
    void CheckAmplification() const;

    const zorvex_api::ParseLimits& m_limits;
    const XMLFilePos& m_bytesRead;
    std::uint64_t m_delivered = 0;
    std::uint64_t m_expansions = 0;
    bool m_hasEntities = false;
    // How many entities one use of a parameter entity expands, itself included.
    std::unordered_map<std::u16string, std::uint64_t> m_weights;
};

/// The SAX parser with an eye on entities.
class WatchedParser : public xercesc::SAXParser
{
public:
    WatchedParser(EntityWatch& watch, xercesc::MemoryManager& memory);

    void startEntityReference(const xercesc::XMLEntityDecl& declaration) override;
    void entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                    const bool isIgnored) override;
    void error(const unsigned int code, const XMLCh* const domain,
               const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
               const XMLCh* const systemId, const XMLCh* const publicId, const XMLFileLoc line,
               const XMLFileLoc column) override;

private:
    EntityWatch& m_watch;
};

/// Hands elements and texts of the document on to the reader.
class XercesDocumentHandler : public xercesc::DocumentHandler
{
public:
    XercesDocumentHandler(Xerces& parser, EntityWatch& watch);

    void characters(const XMLCh* const text, const XMLSize_t length) override;
    void startElement(const XMLCh* const name, xercesc::AttributeList& attributes) override;
    void endElement(const XMLCh* const name) override;

    void endDocument() override {}
    void ignorableWhitespace(const XMLCh* const, const XMLSize_t) override {}
    void processingInstruction(const XMLCh* const, const XMLCh* const) override {}
    void resetDocument() override {}
    void setDocumentLocator(const xercesc::Locator* const) override {}
    void startDocument() override {}

private:
    Xerces& m_parser;
    EntityWatch& m_watch;
};

/// Has nothing to do with declarations; without such a handler the parser isn't told of entities.
class XercesDTDHandler : public xercesc::DTDHandler
{
public:
    void notationDecl(const XMLCh* const, const XMLCh* const, const XMLCh* const) override {}
    void unparsedEntityDecl(const XMLCh* const, const XMLCh* const, const XMLCh* const,
                            const XMLCh* const) override
    {
    }
    void resetDocType() override {}
};

/// Ends the parse at the first error: both calls throw a copy of the exception.
class XercesErrorHandler : public xercesc::ErrorHandler
{
public:
    void warning(const xercesc::SAXParseException&) override {}
    void error(const xercesc::SAXParseException& exception) override;
    void fatalError(const xercesc::SAXParseException& exception) override;
    void resetErrors() override {}
};

}  // namespace zorvex_parser
