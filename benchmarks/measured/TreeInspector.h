#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "zorvex_api/Array.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Reference.h"
#include "zorvex_api/TraverseContext.h"

namespace zorvex_bench
{

/// Counts the elements of a generated document that was loaded, and its references that lead to an
/// object. Slow: nothing here is measured.
class TreeInspector : public zorvex_api::TraverseContext
{
public:
    zorvex_api::zorvexTraverseResult Visit(zorvex_api::Object* object) override
    {
        ++m_elements;
        // The one element of these documents that is no object.
        m_elements += object->GetObjectDescription().IsEmpty() ? 0 : 1;
        for (const zorvex_api::String& field : ReferenceFields(object->GetClassDescriptor()))
        {
            CountReferences(*object, field);
        }
        return zorvex_api::zorvexTraverseContinue;
    }

    std::uint64_t Elements() const { return m_elements; }
    std::uint64_t References() const { return m_references; }

private:
    void CountReferences(const zorvex_api::Object& object, const zorvex_api::String& field)
    {
        int hasValue = 0;
        zorvex_api::Array<zorvex_api::Reference> references;
        if (object.HasAttributeValue(field, hasValue) == 0 || hasValue == 0 ||
            !object.GetAttributeValue(field, references).Ok())
        {
            return;
        }
        for (int i = 0; i < references.GetSize(); ++i)
        {
            m_references += references[i].GetHandle().GetObject() != nullptr ? 1 : 0;
        }
    }

    const std::vector<zorvex_api::String>& ReferenceFields(
        const zorvex_api::ClassDescriptor* descriptor)
    {
        constexpr unsigned int kAttributes = 2;
        const auto known = m_fields.find(descriptor);
        if (known != m_fields.end())
        {
            return known->second;
        }
        std::vector<zorvex_api::String>& names = m_fields[descriptor];
        for (const zorvex_api::ClassDescriptor* one = descriptor; one; one = one->GetBaseClass())
        {
            zorvex_api::Array<zorvex_api::FieldInfo> fields;
            one->GetFields(fields, kAttributes, 0);
            for (int i = 0; i < fields.GetSize(); ++i)
            {
                if (fields[i].IsReference())
                {
                    names.push_back(fields[i].GetName());
                }
            }
        }
        return names;
    }

    std::map<const zorvex_api::ClassDescriptor*, std::vector<zorvex_api::String>> m_fields;
    std::uint64_t m_elements = 0;
    std::uint64_t m_references = 0;
};

}  // namespace zorvex_bench
