#include "document/WriterShape.h"

#include <algorithm>

#include "runtime/Text.h"

namespace zorvex_adapter
{

using namespace zorvex_api;

namespace
{

// A class whose objects are all different keeps no more than that many.
constexpr std::size_t kMaxShapes = 256;

/// A field of a list, and whether it has a value.
std::uintptr_t KeyOf(const FieldData& record)
{
    return reinterpret_cast<std::uintptr_t>(record.descriptor) | (record.IsSet() ? 1u : 0u);
}

bool Matches(const WriterShape& shape, FieldData* const* records, std::size_t count)
{
    if (shape.key.size() != count)
    {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        if (shape.key[i] != KeyOf(*records[i]))
        {
            return false;
        }
    }
    return true;
}

std::uint64_t HashOf(FieldData* const* records, std::size_t count)
{
    std::uint64_t hash = count;
    for (std::size_t i = 0; i < count; ++i)
    {
        hash = (hash ^ KeyOf(*records[i])) * 0x9e3779b97f4a7c15ULL;
        hash ^= hash >> 29;
    }
    return hash;
}

int PlaceOf(const FieldData* record, FieldData* const* records, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (records[i] == record)
        {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool IsWrittenAttribute(const FieldDescriptor& field)
{
    return field.IsAttribute() && field.Type() != zorvexFieldContentElement &&
           !(field.IsBuiltIn() && &field == FieldDescriptor::BuiltIn(FieldDescriptor::kId));
}

WriterStep MakeStep(FieldDescriptor& field, int record)
{
    WriterStep step{};
    step.field = &field;
    step.record = record;
    step.name = field.Utf8XmlName();
    step.defaultText = ToUtf8(field.DefaultView());
    step.hasDefault = field.HasDefault();
    step.required = field.IsRequired();
    step.plain = FieldData::HoldsNumbers(field);
    step.mayBreak =
        field.Type() == zorvexFieldMultipleReference || field.Type() == zorvexFieldMultipleURI;
    step.lowerFirst = field.Owner() != nullptr && !field.Owner()->HasSchemaFile();
    return step;
}

}  // namespace

WriterClass::WriterClass(const ClassDescriptorImpl& descriptor)
    : m_descriptor(descriptor),
      m_layout(descriptor.Layout()),
      m_generation(m_layout.Generation()),
      m_writesId(descriptor.IsIdObject() && !descriptor.IsDocumentBase())
{
    OrderFields();
}

/// Required fields are written even when they aren't set; "load" and "location" share one record.
void WriterClass::OrderFields()
{
    const FieldDescriptor* header =
        m_descriptor.IsDocumentBase() ? m_layout.FindElement(u"Header") : nullptr;
    std::uint32_t position = 0;
    for (FieldDescriptor* field : m_layout.BaseFirst())
    {
        const std::uint32_t place = field == header ? 0 : ++position;
        if (field->IsRequired() || field->IsBuiltIn() ||
            field->Type() == zorvexFieldExternalReference)
        {
            m_always.push_back({place, field, -1});
            continue;
        }
        m_positions.emplace(field, place);
    }
}

/// What there may be to write for a list of fields, in the order of a document.
std::vector<WriterClass::Place> WriterClass::FieldsOf(FieldData* const* records,
                                                      std::size_t count) const
{
    std::vector<Place> fields = m_always;
    for (std::size_t i = 0; i < count; ++i)
    {
        const auto known = m_positions.find(records[i]->descriptor);
        if (known != m_positions.end())
        {
            fields.push_back({known->second, records[i]->descriptor, static_cast<int>(i)});
        }
    }
    std::sort(fields.begin(), fields.end(),
              [](const Place& a, const Place& b) { return a.position < b.position; });
    return fields;
}

const std::shared_ptr<WriterShape>& WriterClass::ShapeOf(ClassData& data,
                                                         std::vector<FieldData*>& records)
{
    const std::size_t first = records.size();
    for (FieldData* record = data.fields; record != nullptr; record = record->next)
    {
        records.push_back(record);
    }
    FieldData* const* list = records.data() + first;
    const std::size_t count = records.size() - first;
    if (m_last != nullptr && Matches(*m_last, list, count))
    {
        return m_last;
    }
    const std::uint64_t hash = HashOf(list, count);
    const auto [begin, end] = m_shapes.equal_range(hash);
    for (auto known = begin; known != end; ++known)
    {
        if (Matches(*known->second, list, count))
        {
            m_last = known->second;
            return m_last;
        }
    }
    if (m_shapes.size() >= kMaxShapes)
    {
        m_shapes.clear();  // open elements hold theirs
    }
    m_last = MakeShape(data, list, count);
    m_shapes.emplace(hash, m_last);
    return m_last;
}

std::shared_ptr<WriterShape> WriterClass::MakeShape(ClassData& data, FieldData* const* records,
                                                    std::size_t count) const
{
    auto shape = std::make_shared<WriterShape>();
    shape->key.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        shape->key.push_back(KeyOf(*records[i]));
    }
    for (const Place& place : FieldsOf(records, count))
    {
        FieldDescriptor* field = place.field;
        // Two fields can share a record.
        const FieldData* stored = place.record >= 0 ? records[place.record] : data.FindField(field);
        const bool isSet = stored != nullptr && stored->IsSet();
        int record = -1;
        if (isSet)
        {
            record = place.record >= 0 ? place.record : PlaceOf(stored, records, count);
        }
        if (IsWrittenAttribute(*field) && (isSet || field->IsRequired()))
        {
            shape->attributes.push_back(MakeStep(*field, record));
        }
        const bool isContent =
            field->IsElement() || field->IsContent() || field->Type() == zorvexFieldContentElement;
        if (isContent && isSet)
        {
            shape->contents.push_back(MakeStep(*field, record));
        }
    }
    return shape;
}

}  // namespace zorvex_adapter
