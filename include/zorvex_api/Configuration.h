#pragma once

#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

/// A tree of options: name and value pairs addressed by paths like "adapters/ZORVEX/export/mode".
///
/// Paths are divided at "/", empty parts don't count, names compare exactly. A Configuration is an
/// Object of the class "Configuration"; the pointer of a node is its user pointer. A root belongs
/// to the application.
class ZORVEX_API Configuration : public Object
{
public:
    /// A root node.
    Configuration();
    /// A node attached to `owner`. A refusal raises an Exception of code 2 with the Result's
    /// message.
    explicit Configuration(Object* owner);
    ~Configuration() override;

    /// Sets the value at `path`, making the nodes that are missing. Gives the node, or null for an
    /// empty path.
    Configuration* Set(const String& path, const String& value);
    /// The same, and sets the node's pointer, which the tree doesn't own.
    Configuration* Set(const String& path, const String& value, void* const pointer);

    /// Gives the node at `path` and its value; null, with `value` as it was, when there is none.
    /// Of several nodes of one name the first counts.
    Configuration* Get(const String& path, String& value) const;
    Configuration* Get(const String& path, String& value, void*& pointer) const;

    /// A new child without a name.
    Configuration* AddConfiguration();
    /// Attaches `child`; null gives code 2.
    Result AddConfiguration(Configuration* child);
    /// A child by index from 0, null out of range.
    Configuration* GetConfiguration(int index) const;
    /// Empties `out` and fills it with the children.
    void GetConfigurations(Array<Configuration*>& out) const;
    int NumberOfConfigurations() const;
    /// An index out of range raises an Exception of code 16.
    void DeleteConfiguration(int index);
    void DeleteConfiguration(Configuration* child);
    void DeleteConfigurations();

    String GetName() const;
    String GetValue() const;
    int HasName() const;
    int HasValue() const;
    Result SetName(const String& name);
    Result SetValue(const String& value);
    Result UnsetName();
    Result UnsetValue();
};

}  // namespace zorvex_api
