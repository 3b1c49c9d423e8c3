#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Model.h"

namespace schemagen
{

/// One line of a vocabulary file, split into words at blanks. A quoted word keeps its blanks.
struct Line
{
    Place place;
    bool indented = false;
    struct Word
    {
        std::string text;
        bool quoted = false;
    };
    std::vector<Word> words;

    /// Takes the next word; raises VocabularyError "... expected" at the end of the line.
    const Word& Next(const char* what);
    /// Takes the next word when it is this one, unquoted.
    bool Skip(const char* word);
    bool AtEnd() const { return m_next == words.size(); }
    void ExpectEnd() const;

private:
    std::size_t m_next = 0;
};

/// Reads a file line by line, leaving out comments ("#" to the end) and empty lines.
class LineScanner
{
public:
    /// Raises VocabularyError when the file can't be read.
    explicit LineScanner(const std::filesystem::path& file);
    /// False at the end of the file.
    bool Read(Line& line);

private:
    void Split(const std::string& text, Line& line) const;

    Place m_place;
    std::ifstream m_stream;
};

}  // namespace schemagen
