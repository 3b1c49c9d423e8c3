#include "Model.h"

#include <algorithm>

namespace schemagen
{

bool Class::Is(const Class& other) const
{
    for (const Class* step = this; step != nullptr; step = step->base)
    {
        if (step == &other)
        {
            return true;
        }
    }
    return false;
}

bool Enumeration::Has(std::string_view text) const
{
    return std::any_of(values.begin(), values.end(),
                       [&](const EnumValue& value) { return value.text == text; });
}

namespace
{

template <class List, class Match>
auto FindIn(const List& list, Match match) -> const typename List::value_type*
{
    const auto found = std::find_if(list.begin(), list.end(), match);
    return found == list.end() ? nullptr : &*found;
}

}  // namespace

const Namespace* Vocabulary::FindNamespace(std::string_view key) const
{
    return FindIn(namespaces, [&](const Namespace& item) { return item.key == key; });
}

const CodeNamespace* Vocabulary::FindCode(std::string_view name) const
{
    return FindIn(codes, [&](const CodeNamespace& item) { return item.name == name; });
}

const Class* Vocabulary::FindClass(std::string_view reference) const
{
    const std::size_t colon = reference.find(':');
    const std::string_view key =
        colon == std::string_view::npos ? std::string_view("main") : reference.substr(0, colon);
    const std::string_view name =
        colon == std::string_view::npos ? reference : reference.substr(colon + 1);
    return FindIn(classes, [&](const Class& item)
                  { return item.name == name && item.XmlNamespace().key == key; });
}

}  // namespace schemagen
