#include "document/ZORVEXWriter.h"

#include <cstdio>

#include "objectmodel/AttributeStore.h"
#include "objectmodel/AttributeWrite.h"
#include "objectmodel/ExternalRep.h"
#include "runtime/StoredText.h"
#include "transport/DocumentPointer.h"
#include "transport/PluginInstances.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_adapter
{

using namespace zorvex_api;

namespace
{

bool IsBlank(std::string_view text)
{
    return (text.empty() || text.front() == ' ') && text.find_first_not_of(' ') == text.npos;
}

bool HoldsUris(const FieldDescriptor& field)
{
    return field.Type() == zorvexFieldSingleURI || field.Type() == zorvexFieldMultipleURI ||
           field.Type() == zorvexFieldExternalReference;
}

/// Whether an external reference is loaded: "true", or not written at all.
bool IsLoadFlag(const FieldDescriptor& field)
{
    return field.Type() == zorvexFieldExternalReference && field.NameView() == u"load";
}

/// The reference at a place of a field, asked for anew after each call that can change the tree.
ExternalRep* ReferenceAt(ClassData& data, FieldDescriptor& field, int index)
{
    const FieldData* stored = data.FindField(&field);
    if (stored == nullptr || !stored->IsSet())
    {
        return nullptr;
    }
    if (stored->descriptor->Type() != zorvexFieldMultipleURI)
    {
        return index == 0 ? stored->External() : nullptr;
    }
    Array<ExternalRep*>& all = *stored->Externals();
    return index < all.GetSize() ? all[index] : nullptr;
}

}  // namespace

void ZORVEXWriter::WriteAttributes(ClassData& data, bool writesId, const WriterShape& shape,
                                   const Frame& frame, const FieldDescriptor* holdingField)
{
    if (m_pointers)
    {
        char address[32];
        const int length =
            std::snprintf(address, sizeof(address), "%p", static_cast<void*>(data.object));
        m_textStream.WritePlainAttribute(
            "objectPtr", std::string_view(address, static_cast<std::size_t>(length)));
    }
    const bool suppressed = holdingField != nullptr && holdingField->SuppressId();
    if (writesId && data.id.HasValue() && !suppressed)
    {
        m_value.clear();
        data.id.AppendTo(m_value);
        if (data.id.IsNumeric())
        {
            m_textStream.WritePlainAttribute("id", m_value);
        }
        else
        {
            m_textStream.WriteReferenceAttribute("id", std::string_view(m_value));
        }
    }
    for (const WriterStep& step : shape.attributes)
    {
        WriteField(data, step, RecordOf(frame, step));
    }
}

void ZORVEXWriter::WriteField(ClassData& data, const WriterStep& step, const FieldData* stored)
{
    const bool isSet = stored != nullptr && stored->IsSet();
    if (!isSet && !step.required)
    {
        return;
    }
    std::string_view value = ValueOf(data, step, isSet ? stored : nullptr);
    const bool equalsDefault = step.hasDefault && value == step.defaultText;
    if (IsBlank(value))
    {
        value = {};
    }
    if (!step.required)
    {
        const bool mayBeEmpty = m_treatEmptyAsSet && !IsLoadFlag(*step.field);
        const bool wanted = value.empty() ? mayBeEmpty && isSet : !equalsDefault;
        if (!wanted)
        {
            return;
        }
    }
    if (step.plain && isSet)
    {
        m_textStream.WritePlainAttribute(step.name, value, step.lowerFirst);
        return;
    }
    m_textStream.SetWrap(step.mayBreak);
    m_textStream.WriteAttribute(step.name, value, step.lowerFirst);
    m_textStream.SetWrap(false);
}

/// The field's text, or its default without a record. Good until the next value.
std::string_view ZORVEXWriter::ValueOf(ClassData& data, const WriterStep& step,
                                       const FieldData* stored)
{
    if (stored == nullptr)
    {
        return step.defaultText;
    }
    FieldDescriptor& field = *step.field;
    if (FieldData::FormOf(*stored->descriptor) == FieldData::Form::Text && stored::IsUtf8())
    {
        return stored::Utf8(stored->Text());
    }
    m_value.clear();
    if (HoldsUris(field))
    {
        AppendUris(data, field, *stored);
    }
    else
    {
        attribute_store::AppendUtf8(data, field, *stored, m_value);
    }
    return m_value;
}

void ZORVEXWriter::AppendUris(ClassData& data, FieldDescriptor& field, const FieldData& stored)
{
    if (IsLoadFlag(field))
    {
        if ((stored.External()->flags & ExternalRep::kLoad) != 0)
        {
            m_value = "true";
        }
        return;
    }
    if (field.Type() != zorvexFieldMultipleURI)
    {
        AppendUri(data, field, 0, stored.External());
    }
    else
    {
        AppendUriList(data, field, *stored.Externals());
    }
    // A reader puts "#" in front of a `partRef` without one: a whole document needs its chain.
    if (field.NameView() == u"partRef" && !m_value.empty() &&
        m_value.find('#') == std::string::npos && attribute_write::IsBelow(data, u"Instance"))
    {
        m_value += "#ZORVEX(ZORVEX-doc)";
    }
}

void ZORVEXWriter::AppendUriList(ClassData& data, FieldDescriptor& field,
                                 const Array<ExternalRep*>& list)
{
    // Targets lie all over the memory: they are asked for some steps ahead.
    constexpr int kAhead = 6;
    const unsigned before = m_disturbances;
    const int count = list.GetSize();
    for (int i = 0; i < count; ++i)
    {
        if (before == m_disturbances && i + kAhead < count)
        {
            __builtin_prefetch(list[i + kAhead]->TargetObject());
        }
        if (i > 0)
        {
            m_value += ' ';
        }
        // A nested save could have taken the list away.
        AppendUri(data, field, i, before == m_disturbances ? list[i] : ReferenceAt(data, field, i));
    }
}

/// Whether an object belongs to the tree that is written. Most have the parent of the one before.
bool ZORVEXWriter::IsInTree(ClassData& object)
{
    if (object.owner != nullptr && object.owner == m_parentInTree &&
        m_parentFoundAt == m_disturbances)
    {
        return true;
    }
    if (object.Root() != m_treeRoot)
    {
        return false;
    }
    m_parentInTree = object.owner;
    m_parentFoundAt = m_disturbances;
    return true;
}

void ZORVEXWriter::AppendUri(ClassData& data, FieldDescriptor& field, int index,
                             const ExternalRep* rep)
{
    if (rep == nullptr)
    {
        return;
    }
    if (rep->HasTarget())
    {
        m_hasExternalReference = true;
        ClassData* target = ClassData::Of(rep->TargetObject());
        if (target != nullptr && target->id.HasValue() && IsInTree(*target))
        {
            m_value += '#';
            target->id.AppendTo(m_value);
            return;
        }
        AppendForeignUri(data, field, index);
        return;
    }
    if ((rep->flags & ExternalRep::kNumericText) != 0)
    {
        rep->AppendText(m_value);
        return;
    }
    String text;
    rep->GetEscapedText(text);
    if (m_referenceMode == 0)
    {
        // As it stands, if a reader makes the same of it.
        const String plain = rep->GetText();
        String readBack;
        Pointer::UnescapeString(plain, readBack, 8);
        const bool splits = field.Type() == zorvexFieldMultipleURI &&
                            View(plain).find_first_of(u" \t\r\n") != TextView::npos;
        text = readBack == plain && !splits ? plain : text;
    }
    m_value += ToUtf8(text);
}

/// A reference to another document, which following it may save first.
void ZORVEXWriter::AppendForeignUri(ClassData& data, FieldDescriptor& field, int index)
{
    std::string before =
        std::move(m_value);  // a nested save uses a writer of its own, not this text
    if (!m_xmlOnly)
    {
        ++m_disturbances;
        ReferenceAt(data, field, index)
            ->Save(data.object, m_adapter, m_referenceMode, m_options, &field, m_result);
    }
    m_value = std::move(before);
    const Pointer& base = m_xmlOnly ? PointerOf(data.Root()->object) : m_document;
    if (const ExternalRep* rep = ReferenceAt(data, field, index))
    {
        String text;
        rep->GetRelativeText(base, text);
        m_value += ToUtf8(text);
    }
}

/// Where the tree that is being written belongs: as the resolver knows it, as it was loaded or
/// saved first, or else where it is being written to.
const Pointer& ZORVEXWriter::PointerOf(Object* root)
{
    if (m_rootPointer != nullptr)
    {
        return *m_rootPointer;
    }
    m_rootPointer = std::make_unique<Pointer>();
    ++m_disturbances;  // the resolver can be the application's
    const URIResolverRef resolver(internal::FindStoredResolver(m_options));
    if (resolver.GetURIResolver() == nullptr ||
        resolver->FindPointer(Handle(root), *m_rootPointer) == 0)
    {
        const Pointer* remembered = internal::GetDocumentPointer(root);
        *m_rootPointer = remembered != nullptr ? *remembered : m_document;
    }
    return *m_rootPointer;
}

}  // namespace zorvex_adapter
