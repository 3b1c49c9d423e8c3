#pragma once

#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>

namespace zorvex_api
{
class Stream;
}

namespace zorvex_parser
{

/// Lets Xerces read from a Stream of ours; neither owned.
class XercesBinInputStream : public xercesc::BinInputStream
{
public:
    /// With `filter`, control bytes that XML doesn't allow reach the parser as blanks. UTF-16 and
    /// UTF-32 text is filtered by character, other text by byte. `bytesRead` counts what was read;
    /// it outlives the stream.
    XercesBinInputStream(zorvex_api::Stream* stream, bool filter, XMLFilePos* bytesRead);

    XMLFilePos curPos() const override { return *m_position; }
    /// A negative count from the stream raises an Exception of code 520.
    XMLSize_t readBytes(XMLByte* buffer, const XMLSize_t size) override;
    const XMLCh* getContentType() const override { return nullptr; }

private:
    XMLSize_t ReadStream(XMLByte* buffer, XMLSize_t size);
    void Filter(XMLByte* bytes, XMLSize_t count) const;
    void FindWidth(const XMLByte* bytes, XMLSize_t count);

    XMLFilePos* m_position;
    zorvex_api::Stream* m_stream;
    bool m_filter;
    int m_width = 0;  // bytes of a unit of the text; 0: not known yet
    bool m_highFirst = false;
};

/// The input source of one parse.
class XercesInputSource : public xercesc::InputSource
{
public:
    XercesInputSource(zorvex_api::Stream* stream, bool filter, bool forceUtf8,
                      XMLFilePos* bytesRead);

    xercesc::BinInputStream* makeStream() const override;

private:
    zorvex_api::Stream* m_stream;
    bool m_filter;
    XMLFilePos* m_bytesRead;
};

}  // namespace zorvex_parser
