#pragma once

#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/TransService.hpp>

#include <memory>
#include <stdexcept>
#include <string>

namespace zorvex_bench
{

inline std::u16string XercesText(const std::string& utf8)
{
    const xercesc::TranscodeFromStr text(reinterpret_cast<const XMLByte*>(utf8.data()), utf8.size(),
                                         "UTF-8");
    return text.str();
}

inline std::string Utf8(const XMLCh* text)
{
    const xercesc::TranscodeToStr bytes(text, "UTF-8");
    return reinterpret_cast<const char*>(bytes.str());
}

/// Xerces-C started, for as long as this lives.
class XercesSession
{
public:
    XercesSession()
    {
        xercesc::XMLPlatformUtils::Initialize();
        m_security = std::make_unique<xercesc::SecurityManager>();
        m_security->setEntityExpansionLimit(10000);
    }
    ~XercesSession()
    {
        m_security.reset();
        xercesc::XMLPlatformUtils::Terminate();
    }
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;

    /// The settings with which the library runs its parser.
    template <class Parser>
    void Configure(Parser& parser)
    {
        parser.setValidationScheme(Parser::Val_Never);
        parser.setDisableDefaultEntityResolution(true);
        parser.setLoadExternalDTD(false);
        parser.setSecurityManager(m_security.get());
        parser.setErrorHandler(&m_errors);
    }

private:
    class Errors : public xercesc::ErrorHandler
    {
    public:
        void warning(const xercesc::SAXParseException&) override {}
        void error(const xercesc::SAXParseException&) override
        {
            throw std::runtime_error("the document isn't well-formed");
        }
        void fatalError(const xercesc::SAXParseException& exception) override { error(exception); }
        void resetErrors() override {}
    };

    std::unique_ptr<xercesc::SecurityManager> m_security;
    Errors m_errors;
};

}  // namespace zorvex_bench
