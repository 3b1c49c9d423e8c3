// The floor: the pass that the library lets the parser make, with nobody doing anything about it.
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/HandlerBase.hpp>

#include <memory>
#include <string>

#include "measured/Subject.h"
#include "measured/XercesSession.h"

namespace zorvex_bench
{

namespace
{

struct Counter : xercesc::HandlerBase
{
    void startElement(const XMLCh* const name, xercesc::AttributeList& attributes) override
    {
        if (m_elements++ == 0)
        {
            m_root = name;
        }
        m_attributes += attributes.getLength();
    }

    std::u16string m_root;
    std::uint64_t m_elements = 0;
    std::uint64_t m_attributes = 0;
};

class XercesSaxSubject : public Subject
{
public:
    bool HasReferences() const override { return false; }
    bool KeepsDocument() const override { return false; }

    void Load(const std::string& path) override
    {
        m_counter = std::make_unique<Counter>();
        xercesc::SAXParser parser;
        m_session.Configure(parser);
        parser.setDocumentHandler(m_counter.get());
        parser.parse(xercesc::LocalFileInputSource(XercesText(path).c_str()));
        if (m_counter->m_attributes < m_counter->m_elements)
        {
            throw std::runtime_error("attributes are missing");
        }
    }

    Contents Inspect() override
    {
        return {Utf8(m_counter->m_root.c_str()), m_counter->m_elements, 0};
    }

private:
    XercesSession m_session;
    std::unique_ptr<Counter> m_counter;
};

}  // namespace

std::unique_ptr<Subject> MakeSubject()
{
    return std::make_unique<XercesSaxSubject>();
}

}  // namespace zorvex_bench
