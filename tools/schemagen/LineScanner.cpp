#include "LineScanner.h"

#include "VocabularyError.h"

namespace schemagen
{

const Line::Word& Line::Next(const char* what)
{
    if (AtEnd())
    {
        throw VocabularyError(place, std::string(what) + " expected");
    }
    return words[m_next++];
}

bool Line::Skip(const char* word)
{
    if (AtEnd() || words[m_next].quoted || words[m_next].text != word)
    {
        return false;
    }
    ++m_next;
    return true;
}

void Line::ExpectEnd() const
{
    if (!AtEnd())
    {
        throw VocabularyError(place, "unexpected \"" + words[m_next].text + "\"");
    }
}

LineScanner::LineScanner(const std::filesystem::path& file)
    : m_place{file.filename().string(), 0}, m_stream(file)
{
    if (!m_stream)
    {
        throw VocabularyError(m_place, "the file can't be read");
    }
}

bool LineScanner::Read(Line& line)
{
    std::string text;
    while (std::getline(m_stream, text))
    {
        ++m_place.line;
        line = Line();
        line.place = m_place;
        line.indented = !text.empty() && text.front() == ' ';
        Split(text, line);
        if (!line.words.empty())
        {
            return true;
        }
    }
    return false;
}

void LineScanner::Split(const std::string& text, Line& line) const
{
    for (std::size_t at = 0; at < text.size();)
    {
        const char c = text[at];
        if (c == ' ' || c == '\t' || c == '\r')
        {
            ++at;
        }
        else if (c == '#')
        {
            return;
        }
        else if (c == '"')
        {
            const std::size_t end = text.find('"', at + 1);
            if (end == std::string::npos)
            {
                throw VocabularyError(m_place, "closing quote expected");
            }
            line.words.push_back({text.substr(at + 1, end - at - 1), true});
            at = end + 1;
        }
        else
        {
            std::size_t end = text.find_first_of(" \t\r\"#", at);
            end = end == std::string::npos ? text.size() : end;
            line.words.push_back({text.substr(at, end - at), false});
            at = end;
        }
    }
}

}  // namespace schemagen
