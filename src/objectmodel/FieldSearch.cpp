#include "objectmodel/FieldSearch.h"

#include <algorithm>

namespace zorvex_api
{

namespace
{

std::uint32_t HashWith(TextView name, TextView ending)
{
    name_match::NameHasher hasher;
    hasher.Add(name);
    hasher.Add(ending);
    return hasher.Value();
}

bool OwnerFits(const FieldDescriptor& field, const FieldQuery& query)
{
    return !query.parts.isQualified || name_match::OwnerMatches(field, query.parts.classPart);
}

}  // namespace

FieldQuery::FieldQuery(TextView text, int kindMask)
    : parts(text), mask(kindMask), hash(name_match::Hash(parts.name))
{
}

FieldDescriptor* FieldScope::FindExact(const FieldQuery& query) const
{
    FieldDescriptor* found = nullptr;
    ForHash(query.hash,
            [&](FieldDescriptor* field, std::uint32_t)
            {
                if ((field->Kind() & query.mask) != 0 && field->NameView() == query.parts.name &&
                    OwnerFits(*field, query))
                {
                    found = field;
                }
                return found != nullptr;
            });
    return found;
}

FieldDescriptor* FieldScope::FindNear(const FieldQuery& query) const
{
    const auto matches = [&query](const FieldDescriptor& field)
    {
        return (field.Kind() & query.mask) != 0 &&
               name_match::MatchesUnqualified(field, query.parts.name, query.mask) &&
               OwnerFits(field, query);
    };
    if (index == nullptr)
    {
        const auto at = std::find_if(fields.begin(), fields.end(),
                                     [&](const FieldDescriptor* field) { return matches(*field); });
        return at != fields.end() ? *at : nullptr;
    }

    FieldDescriptor* found = nullptr;
    std::uint32_t best = UINT32_MAX;
    // All names that the text can mean.
    const std::uint32_t hashes[] = {query.hash, HashWith(query.parts.name, u"Ref"),
                                    HashWith(query.parts.name, u"Refs")};
    for (const std::uint32_t hash : hashes)
    {
        ForHash(hash,
                [&](FieldDescriptor* field, std::uint32_t position)
                {
                    if (position >= best)
                    {
                        return true;
                    }
                    if (!matches(*field))
                    {
                        return false;
                    }
                    best = position;
                    found = field;
                    return true;
                });
    }
    return found;
}

FieldDescriptor* FieldScope::FindXmlName(TextView xmlName, std::uint32_t hash, int mask) const
{
    FieldDescriptor* found = nullptr;
    ForHash(hash,
            [&](FieldDescriptor* field, std::uint32_t)
            {
                if ((field->Kind() & mask) != 0 && field->XmlNameView() == xmlName)
                {
                    found = field;
                }
                return found != nullptr;
            });
    return found;
}

}  // namespace zorvex_api
