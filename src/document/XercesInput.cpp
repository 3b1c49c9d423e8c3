#include "document/XercesInput.h"

#include <xercesc/util/XMLUni.hpp>

#include "runtime/Text.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Stream.h"

namespace zorvex_parser
{

using zorvex_api::Exception;
using zorvex_api::Stream;
using zorvex_api::String;

namespace
{

bool IsForbiddenControl(unsigned unit)
{
    return unit < 32 && unit != 0 && unit != 9 && unit != 10 && unit != 13;
}

}  // namespace

XercesBinInputStream::XercesBinInputStream(Stream* stream, bool filter, XMLFilePos* bytesRead)
    : m_position(bytesRead), m_stream(stream), m_filter(filter)
{
}

XMLSize_t XercesBinInputStream::ReadStream(XMLByte* buffer, XMLSize_t size)
{
    const int count = m_stream->Read(buffer, static_cast<int>(size), 1, 0);
    if (count < 0)
    {
        throw Exception(520, String::Format("Unable to read from stream: \"%s\".",
                                            zorvex_api::ToUtf8(m_stream->GetName()).c_str()));
    }
    return static_cast<XMLSize_t>(count);
}

XMLSize_t XercesBinInputStream::readBytes(XMLByte* buffer, const XMLSize_t size)
{
    // Blocks of an even size, so that no 16-bit unit is cut in two but at the end of the stream.
    const XMLSize_t wanted = m_filter && size > 1 ? size & ~XMLSize_t{1} : size;
    XMLSize_t read = ReadStream(buffer, wanted);
    if (m_filter && read % 2 != 0 && read < wanted)
    {
        read += ReadStream(buffer + read, 1);
    }
    if (m_filter)
    {
        if (m_width == Width::Unknown)
        {
            FindWidth(buffer, read);
        }
        Filter(buffer, read);
    }
    *m_position += read;
    return read;
}

void XercesBinInputStream::FindWidth(const XMLByte* bytes, XMLSize_t count)
{
    m_width = Width::Bytes;
    if (count < 2)
    {
        return;
    }
    if ((bytes[0] == 0xFF && bytes[1] == 0xFE) || (bytes[0] == '<' && bytes[1] == 0))
    {
        m_width = Width::UnitsLowFirst;
    }
    else if ((bytes[0] == 0xFE && bytes[1] == 0xFF) || (bytes[0] == 0 && bytes[1] == '<'))
    {
        m_width = Width::UnitsHighFirst;
    }
}

void XercesBinInputStream::Filter(XMLByte* bytes, XMLSize_t count) const
{
    if (m_width == Width::Bytes)
    {
        for (XMLSize_t i = 0; i < count; ++i)
        {
            if (IsForbiddenControl(bytes[i]))
            {
                bytes[i] = ' ';
            }
        }
        return;
    }
    for (XMLSize_t i = 0; i + 1 < count; i += 2)
    {
        XMLByte& low = m_width == Width::UnitsLowFirst ? bytes[i] : bytes[i + 1];
        const XMLByte high = m_width == Width::UnitsLowFirst ? bytes[i + 1] : bytes[i];
        if (high == 0 && IsForbiddenControl(low))
        {
            low = ' ';
        }
    }
}

XercesInputSource::XercesInputSource(Stream* stream, bool filter, bool forceUtf8,
                                     XMLFilePos* bytesRead)
    : m_stream(stream), m_filter(filter), m_bytesRead(bytesRead)
{
    if (forceUtf8)
    {
        setEncoding(xercesc::XMLUni::fgUTF8EncodingString);
    }
}

xercesc::BinInputStream* XercesInputSource::makeStream() const
{
    return new XercesBinInputStream(m_stream, m_filter, m_bytesRead);
}

}  // namespace zorvex_parser
