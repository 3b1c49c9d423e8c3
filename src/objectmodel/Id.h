#pragma once

#include <cstdint>
#include <string>

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
    explicit IdValue(std::uint32_t number);
    explicit IdValue(TextView text);
    IdValue(const IdValue& other);
    IdValue(IdValue&& other) noexcept;
    ~IdValue();

    IdValue& operator=(const IdValue& other);
    IdValue& operator=(IdValue&& other) noexcept;

    /// Replaces value and flags. "id42" becomes the number 42; "id0", "id007", "ID4" and ten digits
    /// stay text. The empty text makes the id empty.
    void Set(TextView text);
    /// A number of more than nine digits is kept as the text that it would be read back as.
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

    /// The number of "id" and up to nine digits; false without one. A numeric id of 0 counts as
    /// none.
    bool GetNumber(std::uint32_t& out) const;

    /// Appends the id as text.
    void AppendTo(std::u16string& out) const;
    /// Appends the id as UTF-8.
    void AppendTo(std::string& out) const;
    String ToString() const;

    /// A hash that equal ids share: the number itself, or a mix of the text with a seed that
    /// differs from run to run.
    std::uint32_t Hash() const;

    friend bool operator==(const IdValue& a, const IdValue& b);
    friend bool operator<(const IdValue& a, const IdValue& b);

private:
    void StoreText(TextView text);

    union
    {
        std::uint32_t m_number;
        char16_t* m_text = nullptr;  // owned, terminated by 0; from Allocator
    };
    std::uint32_t m_flags = 0;
};

class ClassData;

/// The tie between a linked Id and its target: in a chain of the target, so that the end of the
/// target cuts it. Owned by the Id.
struct IdLink
{
    Object* target;     // null when the target has died
    IdLink* next;       // chain of the target's links
    IdLink** previous;  // what points here: the chain's head or the `next` before
    IdValue last;       // the target's last id, when it has died

    static IdLink* Make(ClassData& target);
    static void Destroy(IdLink* link);
    /// Leaves the chain, keeping the target's present id as the text to show.
    void Cut() noexcept;
};

/// An id in a reference field: a value, or a link to an object that has no usable id yet.
///
/// A link is known to its target: when the target dies, the Id keeps the target's last id as its
/// value and the link is gone. Copies have links of their own. Not for use on several threads.
class Id : public IdValue
{
public:
    using IdValue::IdValue;
    Id() noexcept = default;
    explicit Id(const IdValue& value) : IdValue(value) {}
    Id(const Id& other);
    Id(Id&& other) noexcept;
    ~Id();

    Id& operator=(const Id& other);
    Id& operator=(Id&& other) noexcept;

    /// Replace the value; the link goes.
    void Set(TextView text);
    void SetNumber(std::uint32_t number);
    void SetValue(const IdValue& value);
    void SetNone();
    void Clear();

    /// The target, null without a link and after the target's end.
    Object* Link() const { return m_link != nullptr ? m_link->target : nullptr; }
    /// Links to an object, or ends the link for null. The Id's own value stays, but while there is
    /// a link the object's id counts.
    void SetLink(Object* target);

    bool IsEmpty() const { return !Current().HasValue() && Link() == nullptr; }

    /// The value to show: a linked Id shows its object's current id, the last one after its end.
    const IdValue& Current() const;

private:
    void DropLink() noexcept;

    IdLink* m_link = nullptr;  // owned
};

}  // namespace zorvex_api
