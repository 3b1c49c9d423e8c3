#include <algorithm>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/ObjectPin.h"
#include "objectmodel/TraverseContextImpl.h"
#include "zorvex_api/Object.h"

/// Making the ids of two trees differ before they are joined.

namespace zorvex_api
{

namespace
{

constexpr int kFailed = 2;

/// Finds the objects whose ids the other tree has too; stops at the first that can't be renumbered.
class ResolveIdConflictContext final : public TraverseContext
{
public:
    ResolveIdConflictContext(ClassData& otherRoot, bool force) : m_other(otherRoot), m_force(force)
    {
        SetFollowURI(0);
        GetImplementation()->includesAside = true;
    }

    zorvexTraverseResult Visit(Object* object) override
    {
        ClassData& data = *ClassData::Of(object);
        if (data.id.HasValue() && m_other.ResolveId(data.id) != nullptr)
        {
            if (!data.id.IsGenerated() && !m_force)
            {
                conflict = &data;
                return zorvexTraverseStop;
            }
            renumber.push_back(&data);
        }
        return zorvexTraverseContinue;
    }

    ClassData* conflict = nullptr;
    std::vector<ClassData*> renumber;

private:
    ClassData& m_other;
    bool m_force;
};

/// New ids by old ones. Of several objects with one id the first counts.
class NewIds
{
public:
    void Add(const IdValue& oldId, const IdValue& newId)
    {
        if (oldId.IsNumeric())
        {
            m_byNumber.emplace(oldId.Number(), newId);
            return;
        }
        m_byText.emplace(oldId.Text(), newId);
    }
    /// Null for an id that stays.
    const IdValue* Find(const IdValue& id) const
    {
        return id.IsNumeric() ? Find(m_byNumber, id.Number())
                              : Find(m_byText, std::u16string(id.Text()));
    }

private:
    template <class Map, class Key>
    static const IdValue* Find(const Map& map, const Key& key)
    {
        const auto found = map.find(key);
        return found != map.end() ? &found->second : nullptr;
    }

    std::unordered_map<std::uint32_t, IdValue> m_byNumber;
    std::unordered_map<std::u16string, IdValue> m_byText;
};

/// Rewrites references to renumbered objects in place. Linked ids show the new ones by themselves.
class ReplaceReferenceContext final : public TraverseContext
{
public:
    explicit ReplaceReferenceContext(const NewIds& newIds) : m_newIds(newIds)
    {
        SetFollowURI(0);
        GetImplementation()->includesAside = true;
    }

    zorvexTraverseResult Visit(Object* object) override
    {
        for (FieldData* data = ClassData::Of(object)->fields; data != nullptr; data = data->next)
        {
            if (data->IsSet() && data->descriptor->IsReference())
            {
                Replace(*data);
            }
        }
        return zorvexTraverseContinue;
    }

private:
    void Replace(FieldData& data)
    {
        switch (FieldData::FormOf(*data.descriptor))
        {
            case FieldData::Form::SingleId:
                Replace(*data.SingleId());
                break;
            case FieldData::Form::Ids:
                for (Id& id : *data.Ids())
                {
                    Replace(id);
                }
                break;
            case FieldData::Form::External:
                Replace(*data.External());
                break;
            case FieldData::Form::Externals:
                for (ExternalRep* uri : *data.Externals())
                {
                    Replace(*uri);
                }
                break;
            default:
                break;
        }
    }

    void Replace(Id& id)
    {
        const IdValue* newId = id.HasValue() && id.Link() == nullptr ? m_newIds.Find(id) : nullptr;
        if (newId != nullptr)
        {
            id.SetValue(*newId);
        }
    }

    void Replace(ExternalRep& uri)
    {
        std::u16string text;
        uri.AppendText(text);
        if (text.size() < 2 || text.front() != u'#')
        {
            return;
        }
        if (const IdValue* newId = m_newIds.Find(IdValue(TextView(text).substr(1))))
        {
            text = u"#";
            newId->AppendTo(text);
            uri.StoreText(text);
        }
    }

    const NewIds& m_newIds;
};

/// The next id that neither tree has. Only ids past the numbers, which are kept as texts, can stand
/// in a tree already.
IdValue NextFreeId(ClassData& root, ClassData& otherRoot, std::uint32_t& highest)
{
    IdValue next;
    do
    {
        highest = highest < std::numeric_limits<std::uint32_t>::max() ? highest + 1 : 1;
        next.SetNumber(highest);
    } while (!next.IsNumeric() &&
             (root.ResolveId(next) != nullptr || otherRoot.ResolveId(next) != nullptr));
    return next;
}

/// Gives the objects new numbers behind `highest`; the generated mark stays as it was.
void Renumber(const std::vector<ClassData*>& objects, ClassData& root, ClassData& otherRoot,
              std::uint32_t highest, NewIds& newIds)
{
    for (ClassData* data : objects)
    {
        IdValue newId = NextFreeId(root, otherRoot, highest);
        newId.SetGenerated(data->id.IsGenerated());
        newIds.Add(data->id, newId);
        data->SetId(newId, false);
    }
}

}  // namespace

Result Object::ResolveIdConflict(Object* other, int force)
{
    const ObjectPin pin(this);
    if (pin->owner != nullptr)
    {
        return Result(kFailed, "Object is not a root");
    }
    Result result;
    if (other == nullptr)
    {
        return result;
    }
    const ObjectPin otherPin(other);
    ClassData& otherRoot = *otherPin->Root();
    const std::uint32_t highest = std::max(pin->GetHighestId(), otherRoot.GetHighestId());

    ResolveIdConflictContext conflicts(otherRoot, force != 0);
    Traverse(&conflicts);
    if (conflicts.conflict != nullptr)
    {
        const String id = conflicts.conflict->id.ToString();
        result.AddError(kFailed, String::Format("Element with id %s conflicts with id in parent",
                                                ToUtf8(id).c_str()));
    }
    if (conflicts.renumber.empty())
    {
        return result;
    }
    NewIds newIds;
    Renumber(conflicts.renumber, *pin, otherRoot, highest, newIds);
    ReplaceReferenceContext replace(newIds);
    Traverse(&replace);
    return result;
}

}  // namespace zorvex_api
