#include "objectmodel/Id.h"

#include <chrono>
#include <cstring>
#include <utility>

#include "objectmodel/ClassData.h"
#include "objectmodel/IdSeed.h"
#include "runtime/FreeList.h"
#include "runtime/NumberText.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

constexpr TextView kPrefix = u"id";
constexpr std::size_t kMaxDigits = 9;
constexpr std::uint32_t kMaxNumber = 999999999;

bool AllDigits(TextView text)
{
    for (const char16_t unit : text)
    {
        if (unit < u'0' || unit > u'9')
        {
            return false;
        }
    }
    return true;
}

/// The digits behind "id", empty when the text has another form.
TextView DigitsOf(TextView text)
{
    if (text.size() <= kPrefix.size() || text.substr(0, kPrefix.size()) != kPrefix)
    {
        return {};
    }
    const TextView digits = text.substr(kPrefix.size());
    return digits.size() <= kMaxDigits && AllDigits(digits) ? digits : TextView();
}

std::uint32_t NumberOf(TextView digits)
{
    std::uint32_t number = 0;
    for (const char16_t unit : digits)
    {
        number = number * 10 + static_cast<std::uint32_t>(unit - u'0');
    }
    return number;
}

std::uint64_t MakeSeed()
{
    const int local = 0;
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    return static_cast<std::uint64_t>(ticks) * 0x9e3779b97f4a7c15ULL ^
           reinterpret_cast<std::uintptr_t>(&local);
}

const std::uint64_t s_seed = MakeSeed();

}  // namespace

std::uint64_t internal::IdSeed()
{
    return s_seed;
}

// --- IdValue ----------------------------------------------------------------------------------

IdValue::IdValue(std::uint32_t number)
{
    SetNumber(number);
}

IdValue::IdValue(TextView text)
{
    Set(text);
}

IdValue::IdValue(const IdValue& other)
{
    *this = other;
}

IdValue::IdValue(IdValue&& other) noexcept
    : m_text(std::exchange(other.m_text, nullptr)), m_flags(std::exchange(other.m_flags, 0))
{
}

IdValue::~IdValue()
{
    Clear();
}

IdValue& IdValue::operator=(const IdValue& other)
{
    if (this == &other)
    {
        return *this;
    }
    Clear();
    if (other.IsNumeric())
    {
        m_number = other.m_number;
    }
    else if (other.m_text != nullptr)
    {
        StoreText(other.Text());
    }
    m_flags = other.m_flags;
    return *this;
}

IdValue& IdValue::operator=(IdValue&& other) noexcept
{
    std::swap(m_text, other.m_text);
    std::swap(m_flags, other.m_flags);
    return *this;
}

void IdValue::StoreText(TextView text)
{
    const std::size_t bytes = text.size() * sizeof(char16_t);
    char16_t* copy = static_cast<char16_t*>(Allocator::allocate(bytes + sizeof(char16_t)));
    Allocator::copy(copy, text.data(), bytes);
    copy[text.size()] = 0;
    m_text = copy;
}

void IdValue::Set(TextView text)
{
    const TextView digits = DigitsOf(text);
    if (!digits.empty() && digits[0] != u'0')
    {
        SetNumber(NumberOf(digits));
        return;
    }
    IdValue old(std::move(*this));  // `text` may stand in it
    Clear();
    if (!text.empty())
    {
        StoreText(text);
    }
}

void IdValue::SetNumber(std::uint32_t number)
{
    Clear();
    if (number <= kMaxNumber)
    {
        m_text = nullptr;
        m_number = number;
        m_flags = kNumeric;
        return;
    }
    std::u16string text(kPrefix);
    number::AppendInt(number, text);
    StoreText(text);
}

void IdValue::SetNone()
{
    Clear();
    m_flags = kNone;
}

void IdValue::Clear()
{
    if (!IsNumeric())
    {
        Allocator::deallocate(m_text);
    }
    m_text = nullptr;
    m_flags = 0;
}

void IdValue::SetGenerated(bool generated)
{
    m_flags = generated ? m_flags | kGenerated : m_flags & ~kGenerated;
}

TextView IdValue::Text() const
{
    return !IsNumeric() && m_text != nullptr ? TextView(m_text) : TextView(u"", 0);
}

bool IdValue::GetNumber(std::uint32_t& out) const
{
    if (IsNumeric())
    {
        out = m_number;
        return m_number > 0;
    }
    const TextView digits = DigitsOf(Text());
    if (digits.empty())
    {
        return false;
    }
    out = NumberOf(digits);
    return true;
}

void IdValue::AppendTo(std::u16string& out) const
{
    if (!IsNumeric())
    {
        out += Text();
        return;
    }
    out += kPrefix;
    number::AppendInt(m_number, out);
}

void IdValue::AppendTo(std::string& out) const
{
    if (!IsNumeric())
    {
        out += ToUtf8(Text());
        return;
    }
    char digits[number::kMaxText];
    out += "id";
    out.append(digits, number::FormatInt(m_number, digits));
}

String IdValue::ToString() const
{
    if (!IsNumeric())
    {
        return m_text != nullptr ? zorvex_api::ToString(Text()) : String();
    }
    std::u16string text;
    AppendTo(text);
    return zorvex_api::ToString(text);
}

std::uint32_t IdValue::Hash() const
{
    if (IsNumeric())
    {
        return m_number;
    }
    std::uint64_t hash = s_seed;
    for (const char16_t unit : Text())
    {
        hash = (hash ^ unit) * 0x9fb21c651e98df25ULL;
        hash ^= hash >> 29;
    }
    return static_cast<std::uint32_t>(hash >> 32);
}

bool operator==(const IdValue& a, const IdValue& b)
{
    if (a.IsNone() || b.IsNone())
    {
        return a.IsNone() && b.IsNone();
    }
    if (a.IsNumeric() || b.IsNumeric())
    {
        return a.IsNumeric() && b.IsNumeric() && a.m_number == b.m_number;
    }
    return a.Text() == b.Text();
}

bool operator<(const IdValue& a, const IdValue& b)
{
    // A text stands before or behind all numbers, as it does to "id1".
    constexpr TextView kAnyNumber = u"id1";
    if (!a.HasValue() || !b.HasValue())
    {
        return !a.HasValue() && b.HasValue();
    }
    if (a.IsNumeric() && b.IsNumeric())
    {
        return static_cast<std::int32_t>(a.m_number) < static_cast<std::int32_t>(b.m_number);
    }
    const TextView left = a.IsNumeric() ? kAnyNumber : a.Text();
    const TextView right = b.IsNumeric() ? kAnyNumber : b.Text();
    return left < right;
}

// --- IdLink -----------------------------------------------------------------------------------

IdLink* IdLink::Make(ClassData& target)
{
    void** head = target.ExtensionSlot(extension_tag::kIncomingIds);
    IdLink* link = new (FreeList<sizeof(IdLink)>::Take()) IdLink();
    link->target = target.object;
    link->previous = reinterpret_cast<IdLink**>(head);
    link->next = static_cast<IdLink*>(*head);
    *head = link;
    if (link->next != nullptr)
    {
        link->next->previous = &link->next;
    }
    return link;
}

void IdLink::Cut() noexcept
{
    if (target == nullptr)
    {
        return;
    }
    *previous = next;
    if (next != nullptr)
    {
        next->previous = previous;
    }
    try
    {
        last = ClassData::Of(target)->id;
    }
    catch (...)
    {
        last.Clear();  // no memory for the text: the reference ends empty rather than the process
    }
    target = nullptr;
}

void IdLink::Destroy(IdLink* link)
{
    if (link->target != nullptr)
    {
        *link->previous = link->next;
        if (link->next != nullptr)
        {
            link->next->previous = link->previous;
        }
    }
    link->~IdLink();
    FreeList<sizeof(IdLink)>::Give(link);
}

// --- Id ---------------------------------------------------------------------------------------

Id::Id(const Id& other) : IdValue(other)
{
    SetLink(other.Link());
    if (m_link == nullptr && other.m_link != nullptr)
    {
        IdValue::operator=(other.m_link->last);
    }
}

Id::Id(Id&& other) noexcept
    : IdValue(std::move(other)), m_link(std::exchange(other.m_link, nullptr))
{
}

Id::~Id()
{
    DropLink();
}

Id& Id::operator=(const Id& other)
{
    if (this != &other)
    {
        *this = Id(other);
    }
    return *this;
}

Id& Id::operator=(Id&& other) noexcept
{
    IdValue::operator=(std::move(other));
    std::swap(m_link, other.m_link);
    return *this;
}

void Id::Set(TextView text)
{
    IdValue::Set(text);
    DropLink();
}

void Id::SetNumber(std::uint32_t number)
{
    IdValue::SetNumber(number);
    DropLink();
}

void Id::SetValue(const IdValue& value)
{
    IdValue::operator=(value);
    DropLink();
}

void Id::SetNone()
{
    IdValue::SetNone();
    DropLink();
}

void Id::Clear()
{
    IdValue::Clear();
    DropLink();
}

void Id::SetLink(Object* target)
{
    if (target == Link())
    {
        return;
    }
    DropLink();
    m_link = target != nullptr ? IdLink::Make(*ClassData::Of(target)) : nullptr;
}

void Id::DropLink() noexcept
{
    if (m_link != nullptr)
    {
        IdLink::Destroy(m_link);
        m_link = nullptr;
    }
}

const IdValue& Id::Current() const
{
    if (m_link == nullptr)
    {
        return *this;
    }
    return m_link->target != nullptr ? ClassData::Of(m_link->target)->id : m_link->last;
}

}  // namespace zorvex_api
