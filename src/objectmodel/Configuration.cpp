#include "zorvex_api/Configuration.h"

#include <memory>

#include "objectmodel/AttributeStore.h"
#include "objectmodel/BuiltInClasses.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/StoredText.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/LinkNode.h"

namespace zorvex_api
{

namespace
{

constexpr int kFailed = 2;
constexpr int kOutOfRange = 16;
constexpr TextView kName = u"name";
constexpr TextView kValue = u"value";
constexpr TextView kChildren = u"Configuration";

/// The fields of the class of one node; its children have the same ones.
struct NodeFields
{
    FieldDescriptor* name = nullptr;
    FieldDescriptor* value = nullptr;
    FieldDescriptor* children = nullptr;

    explicit NodeFields(ClassData& node)
    {
        const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(node.GetClassDescriptor());
        if (descriptor == nullptr)
        {
            return;
        }
        const ClassLayout& layout = descriptor->Layout();
        name = layout.FindField(kName, field_kind::kAttribute);
        value = layout.FindField(kValue, field_kind::kAttribute);
        children = layout.FindField(kChildren, field_kind::kElement);
    }
    bool AreKnown() const { return name != nullptr && value != nullptr && children != nullptr; }
};

const ElementList* ChildrenOf(const ClassData& node)
{
    for (const FieldData* data = node.fields; data != nullptr; data = data->next)
    {
        if (data->descriptor->Type() == zorvexFieldMultipleElement && data->IsSet() &&
            data->descriptor->NameView() == kChildren)
        {
            return data->Elements();
        }
    }
    return nullptr;
}

bool IsNamed(const ClassData& node, TextView name)
{
    for (const FieldData* data = node.fields; data != nullptr; data = data->next)
    {
        if (data->descriptor->NameView() == kName)
        {
            return data->IsSet() && stored::Equals(data->Text(), name);
        }
    }
    return false;
}

/// The first child of that name, null when there is none.
ClassData* FindChild(const ClassData& node, TextView name)
{
    ClassData* found = nullptr;
    if (const ElementList* children = ChildrenOf(node))
    {
        children->Walk(
            [&](Object* child)
            {
                const ObjectPin pin(child);
                if (!IsNamed(*pin, name))
                {
                    return true;
                }
                found = pin.Data();
                return false;
            });
    }
    return found;
}

Configuration* AsConfiguration(ClassData& node)
{
    // The field takes objects of the class "Configuration" alone.
    return static_cast<Configuration*>(node.object);
}

/// Takes the next part off a path; false when none is left.
bool NextPart(TextView& path, TextView& part)
{
    const size_t begin = path.find_first_not_of(u'/');
    if (begin == TextView::npos)
    {
        return false;
    }
    path.remove_prefix(begin);
    part = path.substr(0, path.find(u'/'));
    path.remove_prefix(part.size());
    return true;
}

void SetText(ClassData& node, FieldDescriptor& field, TextView text)
{
    // Nothing in the interface of an option says why a text isn't stored.
    attribute_store::SetText(node, field, field.NameView(), text,
                             attribute_store::SetTextOptions());
}

ClassData* AddNode(ClassData& parent, TextView name)
{
    const NodeFields fields(parent);
    if (!fields.AreKnown())
    {
        return nullptr;
    }
    auto made = std::make_unique<Configuration>();
    ClassData* child = ClassData::Of(made.get());
    if (!parent.IsSubClass(child->GetClassDescriptor()))
    {
        return nullptr;  // the session of the parent has ended
    }
    SetText(*child, *fields.name, name);
    parent.AppendChild(child, fields.children);
    made.release();
    parent.MarkNetwork();
    return child;
}

/// The node of a path, null when it isn't there.
ClassData* FindNode(ClassData* node, TextView path)
{
    TextView part;
    if (!NextPart(path, part))
    {
        return nullptr;
    }
    do
    {
        node = FindChild(*node, part);
    } while (node != nullptr && NextPart(path, part));
    return node;
}

Object* MakeConfiguration()
{
    return new Configuration;
}

}  // namespace

namespace internal
{

int InitConfigurationClass(void* record)
{
    if (record == nullptr)
    {
        return 0;
    }
    auto& init = *static_cast<ClassInitRecord*>(record);
    zorvexClassConfiguration = init.descriptor->GetClass();
    init.staticClass = &zorvexClassConfiguration;

    ClassDescriptor& descriptor = *init.descriptor;
    const String name = BorrowConstant(kChildren);
    descriptor.SetName(name);
    descriptor.SetOutputName(name);
    descriptor.SetBaseClass(BorrowConstant(u"Object"));
    descriptor.SetMakeFunction(&MakeConfiguration);
    descriptor.RegisterField(BorrowConstant(kName), zorvexFieldString);
    descriptor.RegisterField(BorrowConstant(kValue), zorvexFieldString);
    descriptor.RegisterField(name, zorvexFieldMultipleElement);
    descriptor.SetFieldClass(name, name, 0);
    return 1;
}

}  // namespace internal

Configuration::Configuration()
{
    InitData(zorvexClassConfiguration);
    ClassData::Of(this)->stateFlags |= ClassData::kIsConfiguration;
}

Configuration::Configuration(Object* owner) : Configuration()
{
    if (owner == nullptr)
    {
        return;
    }
    const Result result = SetOwner(owner);
    if (!result.Ok())
    {
        InitData(0);
        throw Exception(kFailed, result.GetMessage());
    }
}

Configuration::~Configuration() = default;

// --- paths
// ------------------------------------------------------------------------------------------

Configuration* Configuration::Set(const String& path, const String& value)
{
    const ObjectPin pin(this);
    TextView rest = View(path);
    TextView part;
    ClassData* node = nullptr;
    while (NextPart(rest, part))
    {
        ClassData& parent = node != nullptr ? *node : *pin;
        node = FindChild(parent, part);
        node = node != nullptr ? node : AddNode(parent, part);
        if (node == nullptr)
        {
            return nullptr;
        }
    }
    if (node == nullptr)
    {
        return nullptr;
    }
    SetText(*node, *NodeFields(*node).value, View(value));
    return AsConfiguration(*node);
}

Configuration* Configuration::Set(const String& path, const String& value, void* const pointer)
{
    Configuration* node = Set(path, value);
    if (node != nullptr)
    {
        node->SetUserPointer(pointer);
    }
    return node;
}

Configuration* Configuration::Get(const String& path, String& value) const
{
    const ObjectPin pin(this);
    ClassData* node = FindNode(pin.Data(), View(path));
    if (node == nullptr)
    {
        return nullptr;
    }
    FieldDescriptor* field = NodeFields(*node).value;
    value = attribute_store::GetText(*node, *field, node->FindField(field));
    return AsConfiguration(*node);
}

Configuration* Configuration::Get(const String& path, String& value, void*& pointer) const
{
    Configuration* node = Get(path, value);
    if (node != nullptr)
    {
        pointer = node->GetUserPointer();
    }
    return node;
}

// --- children
// ---------------------------------------------------------------------------------------

Configuration* Configuration::AddConfiguration()
{
    auto* child = new Configuration;
    const Result result = AddConfiguration(child);
    if (!result.Ok())
    {
        delete child;
        return nullptr;
    }
    return child;
}

Result Configuration::AddConfiguration(Configuration* child)
{
    if (child == nullptr)
    {
        return Result(kFailed);
    }
    return child->SetOwner(this, BorrowConstant(kChildren));
}

Configuration* Configuration::GetConfiguration(int index) const
{
    const ObjectPin pin(this);
    const ElementList* children = ChildrenOf(*pin);
    if (children == nullptr || index < 0 || index >= children->Count())
    {
        return nullptr;
    }
    return static_cast<Configuration*>(children->At(index));
}

void Configuration::GetConfigurations(Array<Configuration*>& out) const
{
    const ObjectPin pin(this);
    out.RemoveAll();
    if (const ElementList* children = ChildrenOf(*pin))
    {
        children->Walk(
            [&](Object* child)
            {
                out.Add(static_cast<Configuration*>(child));
                return true;
            });
    }
}

int Configuration::NumberOfConfigurations() const
{
    const ObjectPin pin(this);
    const ElementList* children = ChildrenOf(*pin);
    return children != nullptr ? children->Count() : 0;
}

void Configuration::DeleteConfiguration(int index)
{
    Configuration* child = GetConfiguration(index);
    if (child == nullptr)
    {
        throw Exception(kOutOfRange, "Configuration index out of range.");
    }
    DeleteElement(child);
}

void Configuration::DeleteConfiguration(Configuration* child)
{
    DeleteElement(child);
}

void Configuration::DeleteConfigurations()
{
    DeleteElementsByField(BorrowConstant(kChildren));
}

// --- name and value
// ---------------------------------------------------------------------------------

String Configuration::GetName() const
{
    String name;
    GetAttributeValue(BorrowConstant(kName), name);
    return name;
}

String Configuration::GetValue() const
{
    String value;
    GetAttributeValue(BorrowConstant(kValue), value);
    return value;
}

int Configuration::HasName() const
{
    return HasField(BorrowConstant(kName), field_kind::kAttribute);
}

int Configuration::HasValue() const
{
    return HasField(BorrowConstant(kValue), field_kind::kAttribute);
}

Result Configuration::SetName(const String& name)
{
    return SetAttributeValue(BorrowConstant(kName), name);
}

Result Configuration::SetValue(const String& value)
{
    return SetAttributeValue(BorrowConstant(kValue), value);
}

Result Configuration::UnsetName()
{
    return DeleteAttribute(BorrowConstant(kName));
}

Result Configuration::UnsetValue()
{
    return DeleteAttribute(BorrowConstant(kValue));
}

}  // namespace zorvex_api
