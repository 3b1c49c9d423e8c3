#include "FieldText.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

using zorvex_api::FieldInfo;

namespace zorvex_cli
{
namespace
{

enum class Word
{
    Text,
    Logical,
    Whole,
    Number
};

Word WordOf(const FieldInfo& field)
{
    constexpr short kIntegerContent = -21;
    constexpr short kDoubleContent = -22;
    switch (field.GetType())
    {
        case zorvex_api::zorvexFieldLogical:
            return Word::Logical;
        case zorvex_api::zorvexFieldInt:
            return Word::Whole;
        case zorvex_api::zorvexFieldDouble:
        case zorvex_api::zorvexFieldMatrix:
        case zorvex_api::zorvexFieldVector:
            return Word::Number;
        case zorvex_api::zorvexFieldContentElement:
            return field.GetClass() == kIntegerContent  ? Word::Whole
                   : field.GetClass() == kDoubleContent ? Word::Number
                                                        : Word::Text;
        default:
            return Word::Text;
    }
}

bool Fits(Word kind, const std::string& word)
{
    if (kind == Word::Logical)
    {
        return word == "true" || word == "false";
    }
    char* end = nullptr;
    if (kind == Word::Whole)
    {
        std::strtoll(word.c_str(), &end, 10);
    }
    else
    {
        std::strtod(word.c_str(), &end);
    }
    return end != word.c_str() && *end == '\0';
}

/// The words between blanks; in lists that aren't of whole numbers commas divide too.
std::vector<std::string> Split(const std::string& text, bool atCommas)
{
    const char* const dividers = atCommas ? " \t\r\n," : " \t\r\n";
    std::vector<std::string> words;
    for (size_t at = text.find_first_not_of(dividers); at != std::string::npos;
         at = text.find_first_not_of(dividers, at))
    {
        const size_t end = std::min(text.find_first_of(dividers, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

/// `count` values, 0 for any number of them.
std::string Describe(Word kind, size_t count)
{
    const char* const number = kind == Word::Whole ? "whole number" : "number";
    if (count == 1)
    {
        return kind == Word::Logical ? "\"true\" or \"false\"" : std::string("a ") + number;
    }
    const std::string many = count == 0 ? std::string() : std::to_string(count) + " ";
    return many +
           (kind == Word::Logical ? "words \"true\" or \"false\"" : number + std::string("s"));
}

}  // namespace

std::string WhatIsExpected(const FieldInfo& field, const std::string& text)
{
    const Word kind = WordOf(field);
    if (kind == Word::Text || text.empty())
    {
        return std::string();
    }
    const bool isList = field.IsArray() != 0;
    const std::vector<std::string> words =
        isList ? Split(text, kind != Word::Whole) : std::vector<std::string>{text};
    const size_t count = isList ? static_cast<size_t>(field.GetArrayLength()) : 1;
    const bool good = (count == 0 || words.size() == count) &&
                      std::all_of(words.begin(), words.end(),
                                  [kind](const std::string& word) { return Fits(kind, word); });
    return good ? std::string() : Describe(kind, count);
}

}  // namespace zorvex_cli
