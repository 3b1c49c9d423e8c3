#pragma once

#include <cstdint>

#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Object;

/// The compact value of an id: a number for "id" and up to nine digits, else an owned text.
///
/// 16 bytes, no link. An object's own id is an IdValue; a reference to an object is an Id.
class IdValue : public Allocator
{
public:
    static constexpr std::uint32_t kGenerated = 2;  // made by the library, which may change it
    static constexpr std::uint32_t kNumeric = 4;    // the value is the number
    static constexpr std::uint32_t kNone = 8;       // the object doesn't have an id

    IdValue() noexcept = default;
    explicit IdValue(std::uint32_t number) noexcept;
    explicit IdValue(TextView text);
    IdValue(const IdValue& other);
    IdValue(IdValue&& other) noexcept;
    ~IdValue();

    IdValue& operator=(const IdValue& other);
    IdValue& operator=(IdValue&& other) noexcept;

    /// Replaces value and flags. "id42" becomes the number 42; "id0", "id007", "ID4" and ten digits
    /// stay text. The empty text makes the id empty.
    void Set(TextView text);
    void SetNumber(std::uint32_t number);
    void SetNone();
    void Clear();
    void SetGenerated(bool generated);

    bool IsNone() const { return (m_flags & kNone) != 0; }
    /// No number and no text.
    bool HasValue() const { return (m_flags & kNumeric) != 0 || m_text != nullptr; }
    bool IsNumeric() const { return (m_flags & kNumeric) != 0; }
    bool IsGenerated() const { return (m_flags & kGenerated) != 0; }
    std::uint32_t Flags() const { return m_flags; }
    std::uint32_t Number() const { return IsNumeric() ? m_number : 0; }
    /// The text of an id that is no number; empty for a number.
    TextView Text() const;

    /// The number of "id" and digits; false without one (a number 0 counts as none). Digits beyond
    /// nine give no number.
    bool GetNumber(std::uint32_t& out) const;

    /// Appends the id as text.
    void AppendTo(std::u16string& out) const;
    /// Appends the id as UTF-8.
    void AppendTo(std::string& out) const;
    String ToString() const;

    /// A hash that equal ids share.
    std::uint32_t Hash() const;

    friend bool operator==(const IdValue& a, const IdValue& b);
    friend bool operator<(const IdValue& a, const IdValue& b);

private:
    union
    {
        std::uint32_t m_number;
        char16_t* m_text = nullptr;  // owned, terminated by 0; from Allocator
    };
    std::uint32_t m_flags = 0;
};

/// An id in a reference field: a value, or a link to an object that has no usable id yet.
///
/// A link is registered with its target (IncomingLinks.h), so that the end of the target clears it;
/// the Id itself only holds the pointer.
class Id : public IdValue
{
public:
    using IdValue::IdValue;
    Id() noexcept = default;
    explicit Id(const IdValue& value) : IdValue(value) {}

    Object* Link() const { return m_object; }
    void SetLink(Object* object) { m_object = object; }

    bool IsEmpty() const { return !HasValue() && m_object == nullptr; }

    /// The value to show: a linked Id shows its object's current id.
    const IdValue& Current() const;

private:
    Object* m_object = nullptr;
};

}  // namespace zorvex_api
