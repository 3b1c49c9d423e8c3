#include "generator/ElementWriter.h"

namespace zorvex_bench
{

namespace
{

constexpr std::size_t kBlock = 1 << 20;

}  // namespace

void ElementWriter::Start(const char* name)
{
    CloseTag();
    if (m_buffer.size() > kBlock)
    {
        Flush();
    }
    m_buffer.append("\n<").append(name);
    m_open.push_back(name);
    m_isTagOpen = true;
    ++m_facts.elements;
}

void ElementWriter::Start(const char* name, IdNumber id)
{
    Start(name);
    Attribute("id", "id" + std::to_string(id));
}

void ElementWriter::Attribute(const char* name, std::string_view value)
{
    m_buffer.append(" ").append(name).append("=\"");
    Escaped(value, true);
    m_buffer += '"';
    ++m_facts.attributes;
}

void ElementWriter::Attribute(const char* name, std::uint64_t value)
{
    Attribute(name, std::to_string(value));
}

void ElementWriter::Declaration(std::string_view attributes)
{
    m_buffer.append(" ").append(attributes).append("\n");
}

void ElementWriter::Uri(const char* name, IdNumber target)
{
    List(name, "#id", {target});
}

void ElementWriter::Uris(const char* name, const std::vector<IdNumber>& targets)
{
    List(name, "#id", targets);
}

void ElementWriter::Id(const char* name, IdNumber target)
{
    List(name, "id", {target});
}

void ElementWriter::Ids(const char* name, const std::vector<IdNumber>& targets)
{
    List(name, "id", targets);
}

void ElementWriter::List(const char* name, std::string_view prefix,
                         const std::vector<IdNumber>& targets)
{
    m_buffer.append(" ").append(name).append("=\"");
    for (std::size_t i = 0; i < targets.size(); ++i)
    {
        m_buffer.append(i == 0 ? "" : " ").append(prefix).append(std::to_string(targets[i]));
    }
    m_buffer += '"';
    ++m_facts.attributes;
    m_facts.references += targets.size();
}

void ElementWriter::Text(std::string_view text)
{
    CloseTag();
    Escaped(text, false);
}

void ElementWriter::End()
{
    CloseTag();
    m_buffer.append("</").append(m_open.back()).append(">");
    m_open.pop_back();
}

bool ElementWriter::Finish()
{
    Flush();
    m_out.flush();
    return m_out.good();
}

void ElementWriter::CloseTag()
{
    if (m_isTagOpen)
    {
        m_buffer += '>';
        m_isTagOpen = false;
    }
}

void ElementWriter::Escaped(std::string_view text, bool quotes)
{
    for (const char c : text)
    {
        switch (c)
        {
            case '&':
                m_buffer += "&amp;";
                break;
            case '<':
                m_buffer += "&lt;";
                break;
            case '"':
                m_buffer += quotes ? "&quot;" : "\"";
                break;
            default:
                m_buffer += c;
        }
    }
}

void ElementWriter::Flush()
{
    m_facts.bytes += m_buffer.size();
    m_out.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    m_buffer.clear();
}

}  // namespace zorvex_bench
