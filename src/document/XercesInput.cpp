#include "document/XercesInput.h"

#include <xercesc/util/XMLUni.hpp>

#include <cstdint>
#include <cstring>

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

constexpr XMLSize_t kWidest = 4;  // bytes of a character

bool IsForbiddenControl(std::uint32_t character)
{
    return character < 32 && character != 0 && character != 9 && character != 10 && character != 13;
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
    if (!m_filter)
    {
        const XMLSize_t read = ReadStream(buffer, size);
        *m_position += read;
        return read;
    }
    // Whole characters, so that none is cut in two but at the end of the stream.
    const XMLSize_t wanted = size >= kWidest ? size - size % kWidest : size;
    XMLSize_t read = ReadStream(buffer, wanted);
    while (read % kWidest != 0 && read < wanted)
    {
        const XMLSize_t more = ReadStream(buffer + read, kWidest - read % kWidest);
        if (more == 0)
        {
            break;
        }
        read += more;
    }
    if (m_width == 0)
    {
        FindWidth(buffer, read);
    }
    Filter(buffer, read);
    *m_position += read;
    return read;
}

/// From what the parser tells encodings by: the mark at the start, or the zero bytes around "<".
void XercesBinInputStream::FindWidth(const XMLByte* bytes, XMLSize_t count)
{
    struct Start
    {
        XMLByte bytes[4];
        XMLSize_t length;
        int width;
        bool highFirst;
    };
    static constexpr Start kStarts[] = {
        {{'<', 0, 0, 0}, 4, 4, false}, {{0, 0, 0, '<'}, 4, 4, true}, {{0xFF, 0xFE}, 2, 2, false},
        {{'<', 0}, 2, 2, false},       {{0xFE, 0xFF}, 2, 2, true},   {{0, '<'}, 2, 2, true},
    };
    m_width = 1;
    for (const Start& start : kStarts)
    {
        if (count >= start.length && std::memcmp(bytes, start.bytes, start.length) == 0)
        {
            m_width = start.width;
            m_highFirst = start.highFirst;
            return;
        }
    }
}

void XercesBinInputStream::Filter(XMLByte* bytes, XMLSize_t count) const
{
    const auto width = static_cast<XMLSize_t>(m_width);
    for (XMLSize_t at = 0; at + width <= count; at += width)
    {
        std::uint32_t character = 0;
        for (XMLSize_t i = 0; i < width; ++i)
        {
            character = character << 8 | bytes[at + (m_highFirst ? i : width - 1 - i)];
        }
        if (IsForbiddenControl(character))
        {
            bytes[at + (m_highFirst ? width - 1 : 0)] = ' ';
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
