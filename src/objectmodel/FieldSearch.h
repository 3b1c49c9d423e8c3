#pragma once

#include <cstdint>

#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/FieldIndex.h"
#include "objectmodel/FieldList.h"
#include "objectmodel/NameMatch.h"
#include "runtime/Text.h"

namespace zorvex_api
{

/// What a text asks for, worked out once.
struct FieldQuery
{
    FieldQuery(TextView text, int kindMask);

    /// The two names under which an external reference is reached.
    bool IsLoadOrLocation() const
    {
        return !parts.isQualified && (parts.name == u"load" || parts.name == u"location");
    }

    name_match::QualifiedText parts;
    int mask;
    std::uint32_t hash;  // of the name itself
};

/// A run of fields to search, with its index when it has one.
struct FieldScope
{
    FieldSpan fields;
    const FieldIndex* index;

    /// The first field of exactly the name asked for.
    FieldDescriptor* FindExact(const FieldQuery& query) const;
    /// The first field that the name match accepts.
    FieldDescriptor* FindNear(const FieldQuery& query) const;
    /// The first field of this XML name and of a kind in `mask`.
    FieldDescriptor* FindXmlName(TextView xmlName, std::uint32_t hash, int mask) const;

    /// Calls `visit(field, position)` for the fields that have the hash, in order, until it gives
    /// true.
    template <class Visit>
    void ForHash(std::uint32_t hash, Visit visit) const
    {
        if (index != nullptr)
        {
            index->ForEach(
                hash, [&](std::uint32_t position)
                { return position < fields.size() && visit(fields[position], position); });
            return;
        }
        for (std::uint32_t position = 0; position < fields.size(); ++position)
        {
            FieldDescriptor* field = fields[position];
            if ((field->NameHash() == hash || field->XmlNameHash() == hash) &&
                visit(field, position))
            {
                return;
            }
        }
    }
};

}  // namespace zorvex_api
