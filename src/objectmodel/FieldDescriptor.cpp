#include "objectmodel/FieldDescriptor.h"

#include <algorithm>

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/ClassText.h"
#include "objectmodel/FieldEnumTexts.h"

namespace zorvex_api
{

namespace
{

constexpr TextView kLegacyStart = u"legacy/";

FieldDescriptor* g_builtIns[3] = {nullptr, nullptr, nullptr};
bool g_builtInsWanted = false;

int KindOf(int type, TextView name)
{
    if (type == zorvexFieldSingleElement || type == zorvexFieldMultipleElement)
    {
        return field_kind::kElement;
    }
    return name == u"Content" ? field_kind::kContent : field_kind::kAttribute;
}

TextView WithoutEnding(TextView name, int type)
{
    const bool single = type == zorvexFieldSingleReference || type == zorvexFieldSingleURI;
    const bool multiple = type == zorvexFieldMultipleReference || type == zorvexFieldMultipleURI;
    const TextView ending = single ? u"Ref" : u"Refs";
    if ((single || multiple) && name.ends_with(ending))
    {
        name.remove_suffix(ending.size());
    }
    return name;
}

/// Whether a class without a schema lowers the first letter of the field's name in documents.
bool LowersName(const ClassDescriptorImpl* owner, TextView name, int type)
{
    if (owner == nullptr || owner->HasSchemaFile() || !name_match::IsCapital(name) ||
        name == u"Content")
    {
        return false;
    }
    switch (type)
    {
        case zorvexFieldSingleElement:
        case zorvexFieldMultipleElement:
        case zorvexFieldExternalReference:
        case zorvexFieldContentElement:
        case zorvexFieldMatrix:
        case zorvexFieldVector:
            return false;
        default:
            return true;
    }
}

/// Class values of the words that name content.
short PrimitiveOf(TextView word)
{
    if (word == u"Integer" || word == u"Int")
    {
        return class_value::kInteger;
    }
    if (word == u"Double")
    {
        return class_value::kDouble;
    }
    if (word == u"String")
    {
        return class_value::kString;
    }
    return word == u"Logical" ? class_value::kLogical : class_value::kUnset;
}

bool CanHaveClass(int type)
{
    return type >= zorvexFieldSingleReference && type <= zorvexFieldMultipleURI;
}

/// Calls `visit(word)` for each word of a list split by blanks.
template <class Visit>
void ForEachWord(TextView list, Visit visit)
{
    while (!list.empty())
    {
        const size_t end = std::min(list.find(u' '), list.size());
        if (end > 0)
        {
            visit(list.substr(0, end));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

}  // namespace

FieldDescriptor::FieldDescriptor(ClassDescriptorImpl* owner, const String& name, int type,
                                 const String& prefix, bool borrowed)
    : m_owner(owner),
      m_type(type),
      m_name(KeepText(name, borrowed)),
      m_prefix(KeepText(prefix, borrowed))
{
    m_nameView = View(m_name);
    m_kind = KindOf(type, m_nameView);
    m_shortNameView = WithoutEnding(m_nameView, type);
    m_nameHash = name_match::Hash(m_nameView);
    InitXmlName();
}

FieldDescriptor::~FieldDescriptor()
{
    delete m_enumTexts.load(std::memory_order_relaxed);
}

void FieldDescriptor::InitXmlName()
{
    if (m_nameView == u"schemaLocation" && View(m_prefix) == u"xsi")
    {
        SetXmlName(BorrowConstant(u"xsi:schemaLocation"));
        return;
    }
    if (LowersName(m_owner, m_nameView, m_type))
    {
        std::u16string lowered(m_nameView);
        lowered[0] = name_match::NameHasher::Lower(lowered[0]);
        SetXmlName(ToString(lowered));
        return;
    }
    m_xmlNameView = m_nameView;
    m_xmlNameHash = m_nameHash;
    m_utf8XmlName = ToUtf8(m_xmlNameView);
}

void FieldDescriptor::SetXmlName(const String& name)
{
    m_xmlName = name;
    m_ownXmlName = true;
    m_xmlNameView = View(m_xmlName);
    m_xmlNameHash = name_match::Hash(m_xmlNameView);
    m_utf8XmlName = ToUtf8(m_xmlNameView);
}

bool FieldDescriptor::Matches(TextView text, int mask) const
{
    return name_match::Matches(*this, text, mask);
}

// --- the class ----------------------------------------------------------------------------------

short FieldDescriptor::ClassValue() const
{
    const short known = m_classValue.load(std::memory_order_acquire);
    if (known != class_value::kUnset)
    {
        return known;
    }
    const ClassDescriptor* resolved = Class();
    return resolved != nullptr ? resolved->GetClass() : class_value::kUnset;
}

ClassDescriptor* FieldDescriptor::Class() const
{
    if (!CanHaveClass(m_type))
    {
        return nullptr;
    }
    const short known = m_classValue.load(std::memory_order_acquire);
    if (known != class_value::kUnset)
    {
        return ClassRegistry::FindByClass(known);
    }
    const std::uint32_t names = ClassRegistry::NamesGeneration();
    if (m_unresolvedIn.load(std::memory_order_relaxed) == names)
    {
        return nullptr;
    }
    ClassDescriptor* const resolved = Resolve();
    if (resolved != nullptr)
    {
        short unset = class_value::kUnset;
        m_classValue.compare_exchange_strong(unset, resolved->GetClass());
    }
    else
    {
        m_unresolvedIn.store(names, std::memory_order_relaxed);
    }
    return resolved;
}

ClassDescriptor* FieldDescriptor::Resolve() const
{
    ClassDescriptor* resolved = nullptr;
    if (m_className.IsEmpty() && !m_classList.IsEmpty())
    {
        resolved = ResolveList();
    }
    else if (!m_className.IsEmpty())
    {
        resolved = ClassRegistry::FindForField(View(m_className), m_searchAllNamespaces);
    }
    if (resolved == nullptr && IsElement() && !m_nameView.empty())
    {
        resolved = ClassRegistry::FindForField(m_nameView, m_searchAllNamespaces);
    }
    return resolved;
}

ClassDescriptor* FieldDescriptor::ResolveList() const
{
    const ClassDescriptorImpl* common = nullptr;
    bool first = true;
    ForEachWord(View(m_classList),
                [&](TextView word)
                {
                    const ClassDescriptorImpl* next = ClassDescriptorImpl::Of(
                        ClassRegistry::FindForField(word, m_searchAllNamespaces));
                    if (next == nullptr)
                    {
                        return;
                    }
                    if (first)
                    {
                        first = false;
                        common = next;
                        return;
                    }
                    while (common != nullptr && !next->IsSubClass(common))
                    {
                        common = common->Base();
                    }
                });
    return common != nullptr ? common->Descriptor() : nullptr;
}

void FieldDescriptor::Classes(Array<short>& values) const
{
    values.RemoveAll();
    ForEachWord(View(m_classList),
                [&](TextView word)
                {
                    const ClassDescriptor* found =
                        ClassRegistry::FindForField(word, m_searchAllNamespaces);
                    if (found != nullptr)
                    {
                        values.Add(found->GetClass());
                    }
                });
}

bool FieldDescriptor::SetClass(const String& className, bool searchAllNamespaces, bool borrowed)
{
    const TextView text = View(className);
    if (text.find(u' ') != TextView::npos)
    {
        if (!IsReference())
        {
            return false;
        }
        m_classList = KeepText(className, borrowed);
        m_className = String();
        ForgetClass();
        m_unresolvedIn.store(0, std::memory_order_relaxed);
        return true;
    }

    m_searchAllNamespaces = searchAllNamespaces;
    m_unresolvedIn.store(0, std::memory_order_relaxed);
    if (text.starts_with(kLegacyStart))
    {
        SetXmlName(ToString(text.substr(kLegacyStart.size())));
        m_className = String();
        m_legacyName = true;
        ForgetClass();
        return true;
    }
    m_className = KeepText(className, borrowed);
    SetClassValue(PrimitiveOf(text));
    return true;
}

// --- the rest -----------------------------------------------------------------------------------

bool FieldDescriptor::SetDefault(const String& value, bool borrowed)
{
    if (!IsElement())
    {
        m_default = KeepText(value, borrowed);
        m_defaultView = View(m_default);
        return true;
    }
    const TextView text = View(value);
    const size_t equals = text.find(u'=');
    if (equals == TextView::npos || text.find(u'=', equals + 1) != TextView::npos)
    {
        return false;
    }
    if (text == u"suppressId=true")
    {
        m_suppressId = true;
        m_default = KeepText(value, borrowed);
    }
    return true;
}

void FieldDescriptor::SetRequired(bool required)
{
    if (m_owner != nullptr && required != m_required)
    {
        m_owner->RequiredChanged(required ? 1 : -1);
    }
    m_required = required;
}

bool FieldDescriptor::SetLength(int length)
{
    if (length < 0)
    {
        return false;
    }
    m_length = length;
    m_variableLength = length == 0;
    return true;
}

bool FieldDescriptor::AddAllowedValues(const char* const* values, bool borrowed)
{
    if (!IsEnum())
    {
        return false;
    }
    EnumTexts* const present = m_enumTexts.load(std::memory_order_acquire);
    if (borrowed && present == nullptr && m_enumTable == nullptr)
    {
        m_enumTable = values;
        return true;
    }
    EnumTexts* before = present;
    if (before == nullptr && m_enumTable != nullptr)
    {
        before = new EnumTexts(nullptr, m_enumTable);
    }
    m_enumTexts.store(new EnumTexts(before, values), std::memory_order_release);
    return true;
}

const EnumTexts* FieldDescriptor::Texts() const
{
    EnumTexts* texts = m_enumTexts.load(std::memory_order_acquire);
    if (texts != nullptr || m_enumTable == nullptr)
    {
        return texts;
    }
    auto* const fresh = new EnumTexts(nullptr, m_enumTable);
    if (m_enumTexts.compare_exchange_strong(texts, fresh, std::memory_order_acq_rel))
    {
        return fresh;
    }
    delete fresh;
    return texts;
}

int FieldDescriptor::NumberOfAllowedValues() const
{
    const EnumTexts* texts = Texts();
    return texts != nullptr ? texts->Count() : 0;
}

const String& FieldDescriptor::AllowedValue(int index) const
{
    return Texts()->At(index);
}

const String* FieldDescriptor::FindAllowedValue(TextView text) const
{
    const EnumTexts* texts = Texts();
    return texts != nullptr ? texts->Find(text) : nullptr;
}

const String* FieldDescriptor::FindAllowedValue(const char* utf8) const
{
    return utf8 != nullptr ? FindAllowedValue(View(FromUtf8(utf8))) : nullptr;
}

// --- built-in fields ----------------------------------------------------------------------------

void FieldDescriptor::MakeBuiltIns()
{
    g_builtInsWanted = true;
    struct Row
    {
        TextView name;
        int type;
    };
    static constexpr Row kRows[] = {{u"id", zorvexFieldString},
                                    {u"load", zorvexFieldLogical},
                                    {u"location", zorvexFieldSingleURI}};
    for (int i = 0; i < 3; ++i)
    {
        if (g_builtIns[i] == nullptr)
        {
            g_builtIns[i] = new FieldDescriptor(nullptr, BorrowConstant(kRows[i].name),
                                                kRows[i].type, String(), true);
        }
    }
}

void FieldDescriptor::FreeBuiltIns()
{
    g_builtInsWanted = false;
    FreeUnwantedBuiltIns();
}

void FieldDescriptor::FreeUnwantedBuiltIns()
{
    // Objects that outlive the session may hold values of these fields: their classes are alive
    // then.
    if (g_builtInsWanted || ClassDescriptorImpl::NumberAlive() > 0)
    {
        return;
    }
    for (FieldDescriptor*& field : g_builtIns)
    {
        delete field;
        field = nullptr;
    }
}

FieldDescriptor* FieldDescriptor::BuiltIn(BuiltInIndex index)
{
    return g_builtIns[index];
}

}  // namespace zorvex_api
