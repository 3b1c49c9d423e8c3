#pragma once

#include <cstddef>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

class ParserImpl;
class PluginDescriptor;
class PluginProcessData;

/// Operation codes of `Parser::Process`.
enum ParserOperation
{
    ZORVEX_OP_PARSER_PARSE = 20,             ///< slots 0 Result*, 1 Configuration*, 8 Stream*
    ZORVEX_OP_PARSER_TRANSFORM_EXPORT = 28,  ///< slots 0, 1, 8
    ZORVEX_OP_PARSER_SELECT = 29,            ///< slots 0, 1, 2, 5, 10, 12, 14
    ZORVEX_OP_PARSER_RELEASE = 30            ///< slots 0, 1, 2
};

/// Base of parser plug-ins, plug-in type 2.
///
/// A plug-in derives from it, overrides GetPluginDescriptor and Process, and hands the events of a
/// parse to the document reader by StartElement, EndElement and Characters. A new instance serves
/// one parse and is deleted at its end.
class ZORVEX_API Parser : public Allocator
{
public:
    /// A list of texts as a parser has them: the names or the values of an element's attributes.
    class UCharList
    {
    public:
        virtual int GetLength() const = 0;
        /// The text by index from 0, terminated by 0; null when the parser can't give it. Valid
        /// until the event ends.
        virtual const unsigned short* operator[](int index) const = 0;

    protected:
        ~UCharList() = default;
    };

    Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    virtual PluginDescriptor* GetPluginDescriptor();
    virtual ~Parser();

    /// Runs an operation. The base knows none: error 6, "Invalid Parser operation code.".
    virtual void Process(PluginProcessData* data);

    static PluginDescriptor* GetStaticPluginDescriptor();

    /// The reader's state, owned by the parser.
    ParserImpl* GetImplementation() const { return m_impl; }

    /// The events of a parse. Names and texts are UTF-16, terminated by 0 where no length stands.
    /// What they throw ends the parse: an Exception, or a String.
    void StartElement(const unsigned short* name, const UCharList& attributeNames,
                      const UCharList& attributeValues);
    void EndElement(const unsigned short* name);
    void Characters(const unsigned short* text, std::size_t length);

private:
    ParserImpl* m_impl;  // owned
};

}  // namespace zorvex_api
