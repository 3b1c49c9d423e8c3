#include "objectmodel/CopyReferences.h"

#include <algorithm>

#include "objectmodel/AttributeStore.h"
#include "objectmodel/ExternalRep.h"

namespace zorvex_api
{

namespace
{

constexpr unsigned int kDeep = 4;
constexpr unsigned int kTextOnly = 8;

}  // namespace

CopyReferences::CopyReferences(const Object* top, unsigned int flags)
    : m_isWholeTree((flags & kDeep) != 0 && ClassData::Of(top)->owner == nullptr),
      m_textOnly((flags & kTextOnly) != 0)
{
}

void CopyReferences::Copy(ClassData& source, const FieldData& data, ClassData& copy, FieldData& to)
{
    switch (FieldData::FormOf(*data.descriptor))
    {
        case FieldData::Form::SingleId:
            CopyId(source, *data.SingleId(), *to.SingleId());
            break;
        case FieldData::Form::Ids:
            to.Ids()->SetSizeEx(data.Ids()->GetSize(), 0);
            for (int i = 0; i < data.Ids()->GetSize(); ++i)
            {
                CopyId(source, data.Ids()->GetData()[i], to.Ids()->GetData()[i]);
            }
            break;
        case FieldData::Form::External:
            ExternalRep::Destroy(to.External());
            to.SetPointer(CopyUri(source, *data.External(), copy));
            break;
        case FieldData::Form::Externals:
            for (const ExternalRep* uri : *data.Externals())
            {
                to.Externals()->Add(CopyUri(source, *uri, copy));
            }
            break;
        default:
            break;
    }
}

void CopyReferences::CopyId(ClassData& source, const Id& from, Id& to)
{
    const IdValue& value = from.Current();
    to.SetValue(value);
    if (m_textOnly || (m_isWholeTree && from.Link() == nullptr))
    {
        return;
    }
    Object* target = value.HasValue() ? source.ResolveId(value) : nullptr;
    target = target != nullptr ? target : from.Link();
    if (target != nullptr)
    {
        m_ids.push_back({&to, target});
    }
}

ExternalRep* CopyReferences::CopyUri(ClassData& source, const ExternalRep& from, ClassData& copy)
{
    ExternalRep* uri = ExternalRep::Make(copy);
    uri->flags |= from.flags & ExternalRep::kLoad;
    std::u16string text;
    attribute_store::AppendReferenceText(source, from, text);
    uri->StoreText(text);
    uri->StoreFormat(from.FormatText());
    if (!m_textOnly && from.HasTarget())
    {
        m_uris.push_back({uri, &from});
    }
    return uri;
}

ClassData* CopyReferences::CopyOf(const Object* source)
{
    const std::pair<const ClassData*, ClassData*> wanted(ClassData::Of(source), nullptr);
    const auto isBefore = [](const auto& a, const auto& b)
    { return std::less<const ClassData*>()(a.first, b.first); };
    const auto found = std::lower_bound(m_copies.begin(), m_copies.end(), wanted, isBefore);
    return found != m_copies.end() && found->first == wanted.first ? found->second : nullptr;
}

void CopyReferences::Settle()
{
    if (m_ids.empty() && m_uris.empty())
    {
        return;
    }
    std::sort(m_copies.begin(), m_copies.end(),
              [](const auto& a, const auto& b)
              { return std::less<const ClassData*>()(a.first, b.first); });
    for (const WaitingId& waiting : m_ids)
    {
        const ClassData* inside = CopyOf(waiting.target);
        if (inside != nullptr && waiting.id->HasValue())
        {
            continue;
        }
        waiting.id->Clear();
        waiting.id->SetLink(inside != nullptr ? inside->object : waiting.target);
    }
    for (const WaitingUri& waiting : m_uris)
    {
        const Object* target = waiting.source->TargetObject();
        if (target != nullptr && CopyOf(target) != nullptr)
        {
            continue;
        }
        Array<Handle> targets;
        waiting.source->GetTargets(targets);
        waiting.uri->SetTargets(targets);
        waiting.uri->CountUses();
    }
}

}  // namespace zorvex_api
