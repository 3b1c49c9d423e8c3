#pragma once

#include <cstdint>

#include "runtime/Text.h"

namespace zorvex_api
{

class FieldDescriptor;

/// How a text names a field of the generic interface.
///
/// A text matches a field by its exact name; a single or multiple reference also without its ending
/// "Ref" or "Refs", in either case of the first letter; and a text with a capital also a field that
/// differs in the case of the first letter alone. A text with two or more ":" is qualified by the
/// class that declares the field.
namespace name_match
{

/// Hash of a name with the case of its first letter folded: names that can match each other but for
/// a reference ending have equal hashes.
class NameHasher
{
public:
    void Add(TextView text)
    {
        for (char16_t unit : text)
        {
            if (m_first)
            {
                m_first = false;
                unit = Lower(unit);
            }
            m_hash = (m_hash ^ unit) * 0x01000193u;
        }
    }
    /// Never 0.
    std::uint32_t Value() const
    {
        std::uint32_t h = m_hash;
        h ^= h >> 15;
        h *= 0x2c1b3c6du;
        h ^= h >> 12;
        return h != 0 ? h : 1;
    }

    static char16_t Lower(char16_t unit)
    {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    }

private:
    std::uint32_t m_hash = 0x811c9dc5u;
    bool m_first = true;
};

inline std::uint32_t Hash(TextView name)
{
    NameHasher hasher;
    hasher.Add(name);
    return hasher.Value();
}

inline bool IsCapital(TextView text)
{
    return !text.empty() && text[0] >= u'A' && text[0] <= u'Z';
}

/// Equal but for the case of the first letter.
bool EqualFoldFirst(TextView a, TextView b);

/// A text split at its last ":" when it has two or more of them.
struct QualifiedText
{
    explicit QualifiedText(TextView text);
    TextView classPart;  // empty when the text isn't qualified
    TextView name;
    bool isQualified = false;
};

/// Whether `field` is declared by the class whose qualified name is `classPart`.
bool OwnerMatches(const FieldDescriptor& field, TextView classPart);

/// Whether `name`, which isn't qualified, names the field.
bool MatchesUnqualified(const FieldDescriptor& field, TextView name, int mask);

/// The whole rule.
bool Matches(const FieldDescriptor& field, TextView text, int mask);

}  // namespace name_match
}  // namespace zorvex_api
