#include "runtime/Text.h"

#include "runtime/HookBlocks.h"
#include "runtime/Utf8.h"

namespace zorvex_api
{

int internal::CountLength(StringImpl& impl) noexcept
{
    const auto length = static_cast<int>(std::char_traits<char16_t>::length(AsChar16(impl.wide)));
    if (length != 0)
    {
        __atomic_store_n(&impl.length, length, __ATOMIC_RELAXED);
    }
    return length;
}

String ToString(TextView text)
{
    return String(text.data(), static_cast<int>(text.size()));
}

String BorrowConstant(TextView constant)
{
    if (constant.empty())
    {
        return String();
    }
    const internal::UnhookedScope processLifetime;
    String text(constant.data(), -1);
    text.GetImplementation()->length = static_cast<int>(constant.size());
    return text;
}

std::string ToUtf8(TextView text)
{
    std::string bytes;
    utf8::AppendEncoded(text, utf8::kPlain, bytes);
    return bytes;
}

String FromUtf8(std::string_view text)
{
    std::u16string units;
    utf8::DecodeLenient(text, units);
    return ToString(units);
}

TextView Trim(TextView text)
{
    constexpr TextView kBlanks = u" \t\n\r";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == TextView::npos)
    {
        return TextView(u"", 0);
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool EqualsIgnoringAsciiCase(TextView left, TextView right)
{
    const auto lower = [](char16_t unit)
    { return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit; };
    if (left.size() != right.size())
    {
        return false;
    }
    for (size_t i = 0; i < left.size(); ++i)
    {
        if (lower(left[i]) != lower(right[i]))
        {
            return false;
        }
    }
    return true;
}

}  // namespace zorvex_api
