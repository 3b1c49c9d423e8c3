#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "objectmodel/NameMatch.h"
#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class ClassDescriptor;
class ClassDescriptorImpl;
class EnumTexts;

/// Kinds of field, as a mask.
namespace field_kind
{
constexpr int kAttribute = 2;
constexpr int kElement = 4;
constexpr int kContent = 8;
constexpr int kAttributeOrContent = kAttribute | kContent;
constexpr int kAll = kAttribute | kElement | kContent;
}  // namespace field_kind

/// Class values that are no class.
namespace class_value
{
constexpr short kUnset = -999;
constexpr short kInteger = -21;
constexpr short kDouble = -22;
constexpr short kString = -23;
constexpr short kLogical = -24;
constexpr short kAny = -25;

constexpr bool IsPrimitive(short value)
{
    return value <= kInteger && value >= kLogical;
}
}  // namespace class_value

/// One attribute, child element or content of a class.
///
/// Filled while its class is being registered, or completely made before it is published in a class
/// that other threads see; from then on only the resolved class changes, which is atomic.
class FieldDescriptor final : public Allocator
{
public:
    enum BuiltInIndex
    {
        kId = 0,
        kLoad = 1,
        kLocation = 2
    };

    /// `borrowed`: `name` lies over a literal and may be kept without a copy.
    FieldDescriptor(ClassDescriptorImpl* owner, const String& name, int type, const String& prefix,
                    bool borrowed);
    ~FieldDescriptor();
    FieldDescriptor(const FieldDescriptor&) = delete;
    FieldDescriptor& operator=(const FieldDescriptor&) = delete;

    // --- what it is
    // -------------------------------------------------------------------------------
    int Type() const { return m_type; }
    /// field_kind bit.
    int Kind() const { return m_kind; }
    bool IsElement() const { return m_kind == field_kind::kElement; }
    bool IsContent() const { return m_kind == field_kind::kContent; }
    bool IsAttribute() const { return m_kind == field_kind::kAttribute; }
    bool IsReference() const
    {
        return m_type == zorvexFieldSingleReference || m_type == zorvexFieldMultipleReference ||
               (m_type >= zorvexFieldSingleURI && m_type <= zorvexFieldExternalReference);
    }
    bool IsEnum() const { return m_type > zorvexFieldEnum; }
    /// An element field with an empty name takes any child.
    bool IsWildcard() const { return m_nameView.empty(); }
    bool IsRequired() const { return m_required; }
    bool IsDeprecated() const { return m_deprecated; }
    /// Whether an object ever had a record of the field.
    bool WasUsed() const { return m_used.load(std::memory_order_relaxed); }
    void NoteUse()
    {
        if (!WasUsed())
        {
            m_used.store(true, std::memory_order_relaxed);
        }
    }
    bool SuppressId() const { return m_suppressId; }
    bool HasLegacyName() const { return m_legacyName; }
    /// 1 is no array, 0 any length.
    int Length() const { return m_length; }
    bool IsVariableLength() const { return m_variableLength; }
    bool IsArray() const { return m_length != 1; }
    bool HasDefault() const { return !m_defaultView.empty(); }
    /// Null for the three built-in fields.
    ClassDescriptorImpl* Owner() const { return m_owner; }
    bool IsBuiltIn() const { return m_owner == nullptr; }

    // --- names; the views and references live as long as the field
    // --------------------------------
    const String& Name() const { return m_name; }
    TextView NameView() const { return m_nameView; }
    /// The name without the ending "Ref" or "Refs" of its reference type.
    TextView ShortNameView() const { return m_shortNameView; }
    /// The name in a document.
    const String& XmlName() const { return m_ownXmlName ? m_xmlName : m_name; }
    TextView XmlNameView() const { return m_xmlNameView; }
    const std::string& Utf8XmlName() const { return m_utf8XmlName; }
    const String& Prefix() const { return m_prefix; }
    /// As registered: "suppressId=true" on an element field, which has no default otherwise.
    const String& DefaultValue() const { return m_default; }
    /// The default of a value; empty on an element field.
    TextView DefaultView() const { return m_defaultView; }

    // --- the class that it holds or refers to
    // -----------------------------------------------------
    const String& ClassName() const { return m_className; }
    const String& ClassList() const { return m_classList; }
    /// The class value, resolved when that is possible; a primitive one for content; else unset.
    short ClassValue() const;
    /// What is known without resolving.
    short KnownClassValue() const { return m_classValue.load(std::memory_order_acquire); }
    /// The class, null when there is none. Of several it is their nearest common base.
    ClassDescriptor* Class() const;
    /// Of several: their class values, in the order of the list, unknown ones left out.
    void Classes(Array<short>& values) const;

    // --- enumerations
    // -----------------------------------------------------------------------------
    int NumberOfAllowedValues() const;
    /// `index` must be below the number.
    const String& AllowedValue(int index) const;
    /// The allowed text equal to `text`, null when there is none. Lives as long as the field.
    const String* FindAllowedValue(TextView text) const;
    const String* FindAllowedValue(const char* utf8) const;

    /// Whether `text` names this field; see NameMatch.h. `mask` can exclude kinds.
    bool Matches(TextView text, int mask) const;

    // --- filling; before the field is published
    // ---------------------------------------------------
    /// False for a list of classes on a field that can't have one.
    bool SetClass(const String& className, bool searchAllNamespaces, bool borrowed);
    /// Fixes the class itself; safe at any time.
    void SetClassValue(short value) { m_classValue.store(value, std::memory_order_release); }
    /// Forgets what was resolved; the names stay.
    void ForgetClass() { SetClassValue(class_value::kUnset); }
    bool SetDefault(const String& value, bool borrowed);
    void SetRequired(bool required);
    void SetDeprecated(bool deprecated) { m_deprecated = deprecated; }
    bool SetLength(int length);
    /// Appends a null-terminated list. `borrowed`: the table outlives the field and is read later.
    bool AddAllowedValues(const char* const* values, bool borrowed);
    void SetOwner(ClassDescriptorImpl* owner) { m_owner = owner; }

    /// Name hashes, for the indexes of a class; see NameMatch.h.
    std::uint32_t NameHash() const { return m_nameHash; }
    std::uint32_t XmlNameHash() const { return m_xmlNameHash; }

    // --- the built-in fields id, load and location
    // ------------------------------------------------
    /// Makes them when they don't exist.
    static void MakeBuiltIns();
    /// Frees them at the end of a session, as soon as no class is left.
    static void FreeBuiltIns();
    static void FreeUnwantedBuiltIns();
    /// Null before MakeBuiltIns.
    static FieldDescriptor* BuiltIn(BuiltInIndex index);

private:
    void SetXmlName(const String& name);
    void InitXmlName();
    ClassDescriptor* Resolve() const;
    ClassDescriptor* ResolveList() const;
    const EnumTexts* Texts() const;

    ClassDescriptorImpl* m_owner;
    int m_type;
    int m_kind;
    int m_length = 1;
    mutable std::atomic<short> m_classValue{class_value::kUnset};
    bool m_variableLength = false;
    bool m_required = false;
    bool m_deprecated = false;
    std::atomic<bool> m_used{false};
    bool m_suppressId = false;
    bool m_legacyName = false;
    bool m_searchAllNamespaces = false;
    bool m_ownXmlName = false;  // m_xmlName differs from m_name

    String m_name;
    String m_xmlName;
    String m_prefix;
    String m_className;
    String m_classList;
    String m_default;
    TextView m_nameView;
    TextView m_shortNameView;
    TextView m_xmlNameView;
    TextView m_defaultView;
    std::string m_utf8XmlName;
    std::uint32_t m_nameHash = 0;
    std::uint32_t m_xmlNameHash = 0;
    // The names generation in which resolving found nothing; it isn't tried again until names
    // change.
    mutable std::atomic<std::uint32_t> m_unresolvedIn{0};

    const char* const* m_enumTable = nullptr;              // borrowed, read on first need
    mutable std::atomic<EnumTexts*> m_enumTexts{nullptr};  // owned
};

}  // namespace zorvex_api
