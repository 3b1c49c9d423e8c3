#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "generator/PartStructure.h"

namespace zorvex_bench
{

/// What a document holds.
struct DocumentFacts
{
    std::uint64_t bytes = 0;
    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;  // without declarations of namespaces
    std::uint64_t references = 0;  // one for each id that an attribute names
};

/// Writes elements in the text form in which the library saves them, and counts.
///
/// Calls come in the order of the document: Start, then attributes, then text or children, End.
class ElementWriter
{
public:
    explicit ElementWriter(std::ostream& out) : m_out(out) {}

    /// Text of the document as it is: the prolog.
    void Raw(std::string_view text) { m_buffer += text; }
    void Start(const char* name);
    /// The same, with the attribute "id".
    void Start(const char* name, IdNumber id);
    void Declaration(std::string_view attributes);
    void Attribute(const char* name, std::string_view value);
    void Attribute(const char* name, std::uint64_t value);
    /// A reference as "#idN".
    void Uri(const char* name, IdNumber target);
    void Uris(const char* name, const std::vector<IdNumber>& targets);
    /// References as ids alone.
    void Id(const char* name, IdNumber target);
    void Ids(const char* name, const std::vector<IdNumber>& targets);
    void Text(std::string_view text);
    void End();
    /// Hands everything to the stream; false when it took not all.
    bool Finish();

    const DocumentFacts& Facts() const { return m_facts; }

private:
    void List(const char* name, std::string_view prefix, const std::vector<IdNumber>& targets);
    void CloseTag();
    void Escaped(std::string_view text, bool quotes);
    void Flush();

    std::ostream& m_out;
    std::string m_buffer;
    std::vector<const char*> m_open;  // names of the elements that are not ended
    bool m_isTagOpen = false;
    DocumentFacts m_facts;
};

}  // namespace zorvex_bench
