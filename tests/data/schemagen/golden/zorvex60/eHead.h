// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex60/Common.h"
#include "zorvex_api/EnumBase.h"

namespace zorvex60
{

/// The field type code of eHead: differs from run to run, stays for the life of a process.
extern ZORVEX_API int zorvexFieldEnumHead;

/// Values of the schema type `Head`, version "1.0 Tiny.xsd"; see zorvex_api::EnumBase.
/// Used by: zorvex60::Bolt (head), zorvex_cha60::Nut (head).
class ZORVEX_API eHead : public zorvex_api::EnumBase
{
public:
    /// "unset".
    eHead() : EnumBase(Values()) {}
    /// A text that isn't in the table gives an invalid value that keeps it; the empty one
    /// gives "unset".
    eHead(const String& text) : EnumBase(Values(), text) {}  // NOLINT
    /// As above, but only null gives "unset".
    eHead(const char* text) : EnumBase(Values(), text) {}  // NOLINT
    /// One of the library's constants.
    explicit eHead(Constant constant) : EnumBase(Values(), constant) {}
    eHead(const eHead& other) = default;
    ~eHead() override;

    eHead& operator=(const eHead& other) = default;
    /// Raises code 2 with "<text> is not a valid eHead" for a text that isn't in the
    /// table; the value then stays.
    eHead& operator=(const String& text)
    {
        Assign(Values(), "eHead", static_cast<const char*>(text));
        return *this;
    }
    eHead& operator=(const char* text)
    {
        Assign(Values(), "eHead", text);
        return *this;
    }

    using EnumBase::Set;
    int Set(const char* text) override;

    /// The texts in the order of the schema, "unset" first, null at the end.
    static const char* const* Values();
};

inline int operator==(const eHead& a, const eHead& b)
{
    return zorvex_api::EnumBase::Equal(a, b);
}
inline int operator!=(const eHead& a, const eHead& b)
{
    return zorvex_api::EnumBase::Equal(a, b) == 0 ? 1 : 0;
}

/// "unset"
extern ZORVEX_API const eHead eHeadUnset;
/// "hexagon"
extern ZORVEX_API const eHead eHeadHexagon;
/// "round"
extern ZORVEX_API const eHead eHeadRound;
/// "flat, countersunk"
extern ZORVEX_API const eHead eHeadFlat;

}  // namespace zorvex60
