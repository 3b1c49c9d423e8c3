#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// Base of the enumerations of the schemas: a value out of a closed list of texts.
///
/// An object holds one text of its class's table, or a text that the table lacks: then it is
/// invalid and keeps that text, so that an unknown value passes through a program unchanged.
/// Texts compare by bytes; case counts. A value: copies are independent. The constants of the
/// library may be read from several threads at once, an object of one's own from one at a time.
class ZORVEX_API EnumBase : public Allocator
{
public:
    /// Marks the making of one of the library's constants: its text is made ready, so that reads
    /// write nothing.
    struct Constant
    {
        int index;
    };

    virtual ~EnumBase();
    EnumBase(const EnumBase& other);
    EnumBase& operator=(const EnumBase& other);

    /// Takes a text of the table and gives 1; null means "unset". Any other text gives 0 and leaves
    /// the object as it was.
    virtual int Set(const char* text) = 0;
    /// As above; the empty text means "unset".
    virtual int Set(const String& text);

    /// The text, also of an invalid object. Valid as long as the object and its value.
    const String& ToString() const;

    /// 1 when both hold the same text of the table, or both are invalid with the same text.
    static int Equal(const EnumBase& a, const EnumBase& b);

    /// The next free field type code of an enumeration.
    static int m_iCurrField;
    /// Takes a field type code: 10001, 10002 and so on. Safe from any thread.
    static int Init();

protected:
    /// A null-terminated list of texts, the first of which is "unset".
    using Table = const char* const*;

    explicit EnumBase(Table table);
    EnumBase(Table table, Constant constant);
    EnumBase(Table table, const char* text);
    EnumBase(Table table, const String& text);

    int SetFrom(Table table, const char* text);
    /// SetFrom; where that gives 0 raises code 2 with "<text> is not a valid <className>".
    void Assign(Table table, const char* className, const char* text);

private:
    const char* m_current;  // an entry of the table; null for an invalid object
    mutable String m_text;  // the text, once it was asked for or is invalid
};

}  // namespace zorvex_api
