#include "objectmodel/TransformText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "objectmodel/AttributeStore.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "runtime/NumberText.h"

namespace zorvex_api::transform_text
{

namespace
{

constexpr double kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// Where the numbers of each kind stand in the stored matrix.
constexpr int kAllPlaces[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
constexpr int kBlockPlaces[] = {0, 1, 2, 4, 5, 6, 8, 9, 10};
constexpr int kTranslationPlaces[] = {12, 13, 14};
constexpr int kScalePlace = 15;

struct Places
{
    const int* begin;
    int count;
};

Places PlacesOf(Kind kind)
{
    switch (kind)
    {
        case Kind::Rotation:
            return {kBlockPlaces, 9};
        case Kind::Translation:
            return {kTranslationPlaces, 3};
        default:
            return {kAllPlaces, 16};
    }
}

bool IsBlank(TextView text)
{
    for (char16_t unit : text)
    {
        if (!number::IsSpace(unit))
        {
            return false;
        }
    }
    return true;
}

/// Reads up to `limit` numbers, stepping one character past each.
int ReadNumbers(TextView text, double* numbers, int limit)
{
    int count = 0;
    while (count < limit && !text.empty())
    {
        const number::ParsedDouble parsed = number::ParseDouble(text);
        if (parsed.end == text.data())
        {
            break;
        }
        numbers[count++] = parsed.value;
        const size_t used = static_cast<size_t>(parsed.end - text.data());
        text.remove_prefix(std::min(used + 1, text.size()));
    }
    return count;
}

/// The shortest text whose reciprocal is exactly `stored`; false when there is none.
bool FormatReciprocal(double stored, char (&out)[number::kMaxText])
{
    const double middle = 1.0 / stored;
    if (stored == 0.0 || !std::isfinite(stored) || !std::isfinite(middle))
    {
        return false;
    }
    const double below = std::nextafter(middle, -HUGE_VAL);
    const double above = std::nextafter(middle, HUGE_VAL);
    for (int digits = 1; digits <= 17; ++digits)
    {
        for (const double candidate : {middle, below, above})
        {
            char* end = std::to_chars(out, out + sizeof(out) - 1, candidate,
                                      std::chars_format::general, digits)
                            .ptr;
            double back = 0.0;
            std::from_chars(out, end, back);
            if (1.0 / back == stored)
            {
                *end = '\0';
                return true;
            }
        }
    }
    return false;
}

void AppendScale(double stored, std::string& out)
{
    char text[number::kMaxText];
    if (!FormatReciprocal(stored, text))
    {
        number::FormatDouble16g(1.0 / stored, text);
    }
    out += text;
}

}  // namespace

bool AppliesTo(ClassData& object)
{
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(object.GetClassDescriptor());
    return descriptor != nullptr && descriptor->InMainNamespace() &&
           View(descriptor->Name()) == u"Transform";
}

Kind KindOf(ClassData& object)
{
    FieldData* data = nullptr;
    const FieldDescriptor* field =
        attribute_store::FindField(object, u"type", field_kind::kAttribute, data);
    if (field == nullptr || data == nullptr || !data->IsSet())
    {
        return Kind::General;
    }
    std::u16string type;
    attribute_store::AppendText(object, *field, *data, type);
    return KindOf(type);
}

Kind KindOf(TextView type)
{
    if (type.empty() || type == u"general" || type == u"unset")
    {
        return Kind::General;
    }
    if (type == u"rotate" || type == u"general3")
    {
        return Kind::Rotation;
    }
    if (type == u"translate")
    {
        return Kind::Translation;
    }
    return type == u"scale" ? Kind::Scale : Kind::Unknown;
}

ReadResult Read(Kind kind, TextView text, double (&matrix)[16])
{
    if (IsBlank(text))
    {
        return ReadResult::Nothing;
    }
    if (kind == Kind::Unknown)
    {
        return ReadResult::UnknownType;
    }
    double numbers[16];
    if (kind == Kind::Scale)
    {
        if (ReadNumbers(text, numbers, 1) == 0 || numbers[0] == 0.0)
        {
            return ReadResult::ZeroScale;
        }
        std::memcpy(matrix, kIdentity, sizeof(matrix));
        matrix[kScalePlace] = 1.0 / numbers[0];
        return ReadResult::Done;
    }
    const Places places = PlacesOf(kind);
    const int count = ReadNumbers(text, numbers, places.count);
    std::memcpy(matrix, kIdentity, sizeof(matrix));
    for (int i = 0; i < count; ++i)
    {
        matrix[places.begin[i]] = numbers[i];
    }
    return ReadResult::Done;
}

bool Expresses(Kind kind, const double* matrix)
{
    if (kind == Kind::General)
    {
        return true;
    }
    if (kind == Kind::Unknown)
    {
        return false;
    }
    bool written[16] = {};
    if (kind == Kind::Scale)
    {
        char text[number::kMaxText];
        if (!FormatReciprocal(matrix[kScalePlace], text))
        {
            return false;
        }
        written[kScalePlace] = true;
    }
    else
    {
        const Places places = PlacesOf(kind);
        for (int i = 0; i < places.count; ++i)
        {
            written[places.begin[i]] = true;
        }
    }
    for (int i = 0; i < 16; ++i)
    {
        if (!written[i] && matrix[i] != kIdentity[i])
        {
            return false;
        }
    }
    return true;
}

void Append(Kind kind, const double* matrix, std::string& out)
{
    if (kind == Kind::Scale)
    {
        AppendScale(matrix[kScalePlace], out);
        return;
    }
    const Places places = PlacesOf(kind);
    for (int i = 0; i < places.count; ++i)
    {
        char text[number::kMaxText];
        const size_t length = number::FormatDouble16g(matrix[places.begin[i]], text);
        if (i > 0)
        {
            out += ' ';
        }
        out.append(text, length);
    }
}

}  // namespace zorvex_api::transform_text
