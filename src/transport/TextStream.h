#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/ByteBuffer.h"
#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Configuration;
class Reference;
class Stream;

/// Writes XML text to a Stream.
///
/// A failed write raises an Exception of code 258, "Failure writing out to stream". Without a
/// target nothing is written and the operations give 0. One thread at a time.
class TextStream : public Allocator
{
public:
    /// What had to be replaced, see `SetDocumentRules`.
    enum Replacement
    {
        kLoneSurrogate,
        kNonCharacter,  // U+FFFE and U+FFFF
        kControl,
        kReplacementKinds
    };

    /// The first place of a kind of replacement.
    struct Replaced
    {
        bool happened = false;
        std::uint32_t unit = 0;  // what stood there; the byte for malformed UTF-8
        int index = 0;           // of that unit in its text
    };

    /// Reads the options of `options` (may be null) and writes the prolog to `target` (may be
    /// null). With `ownsStream` the target is deleted at the end.
    TextStream(Stream* target, Configuration* options, int ownsStream);
    TextStream(const TextStream&) = delete;
    TextStream& operator=(const TextStream&) = delete;

    virtual int Write(const char* text);
    /// A declaration and a line break; the default namespace for an empty prefix.
    virtual int WriteNamespace(const String& prefix, const String& uri);
    /// Opens a tag, on a new line unless `compact`; `close` ends it and counts only without a
    /// prefix.
    virtual int WriteStartTag(const String& prefix, const String& name, int compact, int close);
    virtual int WriteStartTag(const String& name, int compact, int close);
    virtual int WriteEndTag(const String& prefix, const String& name);
    virtual int WriteEndTag(const String& name);
    virtual int WriteTagEnd();
    virtual int WriteIntAttribute(const int* value, const String& name, int close);
    virtual int WriteIntArrayAttribute(const int* values, const int* count, const String& name,
                                       int close);
    virtual int WriteReferenceArrayAttribute(const Array<Reference>& values, const String& name,
                                             int close);
    virtual int WriteReferenceAttribute(const Reference& value, const String& name, int close);
    virtual int WriteDoubleArrayAttribute(const double* values, const int* count,
                                          const String& name, int close);
    virtual int WriteStringAttribute(const String& value, const String& name, int close,
                                     int lowerFirst);
    virtual int WriteRawAttribute(const char* value, const String& name, int close, int lowerFirst);
    virtual int WriteBoolArrayAttribute(const int* values, int count, const String& name,
                                        int close);
    virtual int WriteBoolAttribute(int value, const String& name, int close);
    virtual int WriteAttributeName(const String& name, int lowerFirst);
    virtual int WriteAttributeEnd();

    /// Writes out what waits, without a word when that fails: call `FlushBuffer` before.
    virtual ~TextStream();

    /// Breaks lines at blanks where the option gives a limit. Off at first.
    void SetWrap(int on) { m_wrap = on != 0; }
    /// Element text, with the escapes of text.
    int WriteText(const String& text);

    // The forms for the writer: names ready in UTF-8 (legal names, written as they stand), values
    // as text or in their stored UTF-8 form, escaped here.
    int Write(std::string_view text);
    int WriteStartTag(std::string_view prefix, std::string_view name, bool compact, bool close);
    int WriteEndTag(std::string_view prefix, std::string_view name);
    /// Blank, name, `="`, value, `"`. `lowerFirst` lowers the first letter of the name.
    int WriteAttribute(std::string_view name, TextView value, bool lowerFirst = false);
    int WriteAttribute(std::string_view name, std::string_view utf8Value, bool lowerFirst = false);
    /// The same for an attribute that is a reference: tab and line breaks stay as they are.
    int WriteReferenceAttribute(std::string_view name, TextView value);
    int WriteReferenceAttribute(std::string_view name, std::string_view utf8Value);
    /// A value that needs no escapes, as a number.
    int WritePlainAttribute(std::string_view name, std::string_view value, bool lowerFirst = false);
    int WriteText(TextView text);
    int WriteText(std::string_view utf8Text);
    /// Element text that needs no escapes.
    int WritePlainText(std::string_view text) { return Write(text); }

    /// Collects the bytes and hands them to the stream in large pieces. What is collected reaches
    /// the stream in `FlushBuffer` at the latest.
    void SetBuffering(bool on);
    int FlushBuffer();

    /// Keeps what isn't legal in a document out of text and attribute values: lone surrogates,
    /// malformed UTF-8, U+FFFE and U+FFFF become U+FFFD, control characters other than tab and line
    /// breaks blanks; ">" behind "]]" in text is escaped, and so is a carriage return in text.
    void SetDocumentRules(bool on) { m_documentRules = on; }
    /// What the rules have replaced so far.
    const Replaced& GetReplaced(Replacement kind) const { return m_replaced[kind]; }

    Stream* GetTarget() const { return m_target; }

private:
    enum class Place
    {
        kName,  // names and references
        kText,
        kAttribute
    };

    void WriteProlog(Configuration* options);

    // TextStreamEncode.cpp: append to m_buffer
    void EncodeText(TextView text, Place place);
    void AppendEncoded(TextView text, unsigned int flags);
    void EncodeUtf8(std::string_view text, Place place);
    void CopyUtf8(std::string_view text, Place place);
    void EncodeByRules(TextView text, Place place);
    void EncodeSpecial(unsigned int unit, bool endsSection, std::size_t index);
    void AppendReplacement(Replacement kind, std::uint32_t unit, std::size_t index);
    unsigned int SpecialUnits(Place place) const;

    void AppendName(std::string_view prefix, std::string_view name);
    int BeginAttribute(std::string_view name, bool lowerFirst);
    int EndAttribute(int close);
    int EndValue();

    /// Sends what was put behind m_ready in m_buffer as one text through the byte path; a failure
    /// raises.
    int Emit();
    int SendLines(std::string_view text);
    int SendPlain(std::string_view text);
    int HandOver(std::string_view bytes);
    int WriteToTarget(std::string_view bytes);

    Stream* m_target;
    bool m_ownsStream;
    bool m_wrap = false;
    bool m_charFilter = false;
    bool m_escapeGt = false;
    bool m_buffering = false;
    bool m_documentRules = false;
    std::int64_t m_lineLimit = 0;  // 0: none
    std::int64_t m_column = 0;     // kept while there is a limit
    ByteBuffer m_buffer;           // first what waits for the stream, then the text in hand
    std::size_t m_ready = 0;       // where the text in hand begins; 0 without buffering
    std::string m_inHand;
    std::string m_filtered;
    std::string m_encoded;
    Replaced m_replaced[kReplacementKinds];
};

}  // namespace zorvex_api
