#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"

namespace zorvex_adapter
{

/// An element's name in UTF-8.
struct WriterName
{
    std::string_view prefix;
    std::string_view text;
};

/// One field in the order of a document.
struct WriterStep
{
    zorvex_api::FieldDescriptor* field;
    int record;             // its place in the object's list of fields; -1: it has none
    std::string_view name;  // of the attribute
    std::string defaultText;
    bool hasDefault;
    bool required;
    bool lowerFirst;  // of the name
    bool plain;       // its values are numbers: no escapes
    bool mayBreak;    // lines may break in its values
    // The name of the last child written for the field: children come in runs of one class.
    const zorvex_api::ClassDescriptorImpl* childClass = nullptr;
    const zorvex_api::String* childElementName = nullptr;
    WriterName childName;
};

/// What an object writes whose list of fields is just this one: the list decides what there is to
/// write and in which order, and most objects of a class have the same one.
struct WriterShape
{
    std::vector<std::uintptr_t> key;
    std::vector<WriterStep> attributes;
    std::vector<WriterStep> contents;  // elements, content elements and content; the header first
};

/// The shapes met so far of one class, as it was at one generation.
class WriterClass
{
public:
    explicit WriterClass(const zorvex_api::ClassDescriptorImpl& descriptor);

    const zorvex_api::ClassDescriptorImpl& Descriptor() const { return m_descriptor; }
    bool IsCurrent() const { return m_descriptor.Generation() == m_generation; }
    /// Whether objects of the class write their id.
    bool WritesId() const { return m_writesId; }
    /// The shape of an object of the class; the reference holds until the next call. The object's
    /// fields are appended to `records`, in the order of its list.
    const std::shared_ptr<WriterShape>& ShapeOf(zorvex_api::ClassData& data,
                                                std::vector<zorvex_api::FieldData*>& records);

private:
    std::shared_ptr<WriterShape> MakeShape(zorvex_api::ClassData& data,
                                           zorvex_api::FieldData* const* records,
                                           std::size_t count) const;

    /// A field that an object may write, by its place in a document.
    struct Place
    {
        std::uint32_t position;
        zorvex_api::FieldDescriptor* field;
        int record;  // its place in the object's list of fields; -1: looked up
    };
    void OrderFields();
    std::vector<Place> FieldsOf(zorvex_api::FieldData* const* records, std::size_t count) const;

    const zorvex_api::ClassDescriptorImpl& m_descriptor;
    const zorvex_api::ClassLayout& m_layout;
    std::uint32_t m_generation;
    bool m_writesId;
    std::unordered_map<const zorvex_api::FieldDescriptor*, std::uint32_t> m_positions;
    std::vector<Place> m_always;  // fields that a look at the object's list alone doesn't find
    std::shared_ptr<WriterShape> m_last;
    std::unordered_multimap<std::uint64_t, std::shared_ptr<WriterShape>> m_shapes;  // by hash
};

}  // namespace zorvex_adapter
