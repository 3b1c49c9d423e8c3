#include "objectmodel/AttributeNumbers.h"

#include <algorithm>

#include "objectmodel/FieldData.h"
#include "runtime/NumberText.h"

namespace zorvex_api::attribute_numbers
{

namespace
{

constexpr TextView kLogicalSeparators = u" ,";
constexpr TextView kIntSeparators = u" \t\n\r\v\f";

int LogicalOf(TextView token)
{
    return token == u"false" ? 0 : 1;
}

/// Steps to one character past a number that ends at `end`.
void StepPast(TextView& text, const char16_t* end)
{
    const size_t used = static_cast<size_t>(end - text.data()) + 1;
    text.remove_prefix(std::min(used, text.size()));
}

}  // namespace

bool IsLogical(const FieldDescriptor& field)
{
    return field.Type() == zorvexFieldLogical || (field.Type() == zorvexFieldContentElement &&
                                                  field.ClassValue() == class_value::kLogical);
}

void ReadLogicals(TextView text, std::vector<int>& out)
{
    ForEachToken(text, kLogicalSeparators,
                 [&](TextView token) { out.push_back(LogicalOf(token)); });
}

bool ReadInts(TextView text, std::vector<int>& out)
{
    bool fits = true;
    ForEachToken(text, kIntSeparators,
                 [&](TextView token)
                 {
                     if (!fits)
                     {
                         return;
                     }
                     const number::ParsedInt parsed = number::ParseInt(token);
                     fits = !parsed.overflow;
                     if (fits)
                     {
                         out.push_back(parsed.value);
                     }
                 });
    return fits;
}

void ReadDoubles(TextView text, std::vector<double>& out)
{
    while (!text.empty())
    {
        const number::ParsedDouble parsed = number::ParseDouble(text);
        if (parsed.end == text.data())
        {
            return;
        }
        out.push_back(parsed.value);
        StepPast(text, parsed.end);
    }
}

void ReadFixedLogicals(TextView text, int* out, int count)
{
    int read = 0;
    ForEachToken(text, kLogicalSeparators,
                 [&](TextView token)
                 {
                     if (read < count)
                     {
                         out[read++] = LogicalOf(token);
                     }
                 });
    std::fill(out + read, out + count, 0);
}

bool ReadFixedInts(TextView text, int* out, int count)
{
    for (int i = 0; i < count; ++i)
    {
        const number::ParsedInt parsed = number::ParseInt(text);
        if (parsed.overflow)
        {
            return false;
        }
        out[i] = parsed.value;
        StepPast(text, parsed.end);
    }
    return true;
}

void ReadFixedDoubles(TextView text, double* out, int count)
{
    for (int i = 0; i < count; ++i)
    {
        const number::ParsedDouble parsed = number::ParseDouble(text);
        out[i] = parsed.value;
        StepPast(text, parsed.end);
    }
}

std::vector<int> DefaultInts(const FieldDescriptor& field)
{
    const TextView text = field.DefaultView();
    std::vector<int> values;
    if (field.IsVariableLength())
    {
        if (IsLogical(field))
        {
            ReadLogicals(text, values);
            return values;
        }
        ReadInts(text, values);
        return values;
    }
    values.resize(static_cast<size_t>(FieldData::NumberCount(field)));
    if (IsLogical(field))
    {
        ReadFixedLogicals(text, values.data(), FieldData::NumberCount(field));
        return values;
    }
    ReadFixedInts(text, values.data(), FieldData::NumberCount(field));
    return values;
}

std::vector<double> DefaultDoubles(const FieldDescriptor& field)
{
    std::vector<double> values;
    if (FieldData::FormOf(field) == FieldData::Form::DoubleArray)
    {
        ReadDoubles(field.DefaultView(), values);
        return values;
    }
    values.resize(static_cast<size_t>(FieldData::NumberCount(field)));
    ReadFixedDoubles(field.DefaultView(), values.data(), FieldData::NumberCount(field));
    return values;
}

}  // namespace zorvex_api::attribute_numbers
