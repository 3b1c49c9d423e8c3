// The tree of the parser's own makers. No ids and no references: it is far behind without them.
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <memory>
#include <stdexcept>
#include <string>

#include "measured/Subject.h"
#include "measured/XercesSession.h"

namespace zorvex_bench
{

namespace
{

struct Release
{
    template <class Node>
    void operator()(Node* node) const
    {
        node->release();
    }
};

using DocumentPtr = std::unique_ptr<xercesc::DOMDocument, Release>;

std::uint64_t CountElements(const xercesc::DOMElement& element)
{
    std::uint64_t count = 1;
    for (const xercesc::DOMElement* child = element.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling())
    {
        count += CountElements(*child);
    }
    return count;
}

class XercesDomSubject : public Subject
{
public:
    bool HasReferences() const override { return false; }

    void Load(const std::string& path) override
    {
        xercesc::XercesDOMParser parser;
        m_session.Configure(parser);
        parser.setIncludeIgnorableWhitespace(false);
        parser.parse(xercesc::LocalFileInputSource(XercesText(path).c_str()));
        m_document.reset(parser.adoptDocument());
        if (m_document == nullptr)
        {
            throw std::runtime_error("loading");
        }
    }

    Contents Inspect() override
    {
        return {Utf8(m_document->getDocumentElement()->getNodeName()), Walk(), 0};
    }

    std::uint64_t Walk() override { return CountElements(*m_document->getDocumentElement()); }

    void Copy() override
    {
        m_copy.reset(static_cast<xercesc::DOMDocument*>(m_document->cloneNode(true)));
    }
    std::uint64_t WalkCopy() override { return CountElements(*m_copy->getDocumentElement()); }
    void DeleteCopy() override { m_copy.reset(); }

    void Save(const std::string& path) override
    {
        auto* implementation =
            xercesc::DOMImplementationRegistry::getDOMImplementation(XercesText("LS").c_str());
        const std::unique_ptr<xercesc::DOMLSSerializer, Release> serializer(
            implementation->createLSSerializer());
        const std::unique_ptr<xercesc::DOMLSOutput, Release> output(
            implementation->createLSOutput());
        xercesc::LocalFileFormatTarget target(XercesText(path).c_str());
        output->setByteStream(&target);
        if (!serializer->write(m_document.get(), output.get()))
        {
            throw std::runtime_error("saving");
        }
    }

    void Delete() override { m_document.reset(); }

private:
    XercesSession m_session;
    DocumentPtr m_document;
    DocumentPtr m_copy;
};

}  // namespace

std::unique_ptr<Subject> MakeSubject()
{
    return std::make_unique<XercesDomSubject>();
}

}  // namespace zorvex_bench
