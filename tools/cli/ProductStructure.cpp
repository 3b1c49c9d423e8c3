#include "ProductStructure.h"

#include <algorithm>
#include <unordered_set>

#include "Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Reference.h"
#include "zorvex_api/TraverseContext.h"

using zorvex_api::Array;
using zorvex_api::Object;
using zorvex_api::Reference;
using zorvex_api::String;
using zorvex_api::zorvexTraverseResult;

namespace zorvex_cli
{
namespace
{

const String& ViewClass()
{
    static const String name(u"StructureRevisionView");
    return name;
}

class ViewCollector : public zorvex_api::TraverseContext
{
public:
    ViewCollector() { SetFollowURI(0); }

    zorvexTraverseResult Visit(Object* object) override
    {
        if (object->IsSubClass(ViewClass()))
        {
            m_views.push_back(object);
        }
        return zorvex_api::zorvexTraverseContinue;
    }

    std::vector<Object*> m_views;
};

std::string Text(const Object* object, const char16_t* name)
{
    String value;
    return object && object->GetAttributeValue(name, value).Ok() ? ToUtf8(value) : std::string();
}

/// What a single reference leads to, null for nothing; its text goes to `text`.
Object* Follow(const Object& object, const char16_t* name, std::string* text = nullptr)
{
    Reference reference;
    if (!object.GetAttributeValue(name, reference).Ok())
    {
        return nullptr;
    }
    if (text)
    {
        *text = ToUtf8(reference.GetString());
    }
    return reference.GetHandle().GetObject();
}

double Quantity(const Object& instance)
{
    int hasValue = 0;
    double quantity = 1.0;
    const String name(u"quantity");
    if (instance.HasAttributeValue(name, hasValue) && hasValue)
    {
        instance.GetAttributeValue(name, quantity);
    }
    return quantity;
}

PartUse UseOf(const Object& instance)
{
    PartUse use;
    use.view = Follow(instance, u"partRef", &use.reference);
    if (!use.view && use.reference.empty())
    {
        use.view = Follow(instance, u"instancedRef", &use.reference);
    }
    if (use.view && !use.view->IsSubClass(ViewClass()))
    {
        use.view = nullptr;
    }
    use.quantity = Quantity(instance);
    return use;
}

}  // namespace

std::vector<Object*> ProductStructure::Roots()
{
    ViewCollector collector;
    m_document.Traverse(&collector);

    std::unordered_set<Object*> placed;
    for (Object* view : collector.m_views)
    {
        for (const PartUse& use : Uses(*view))
        {
            placed.insert(use.view);
        }
    }
    std::vector<Object*> roots;
    std::copy_if(collector.m_views.begin(), collector.m_views.end(), std::back_inserter(roots),
                 [&placed](Object* view) { return placed.count(view) == 0; });
    return roots;
}

const std::vector<PartUse>& ProductStructure::Uses(Object& view)
{
    const auto known = m_uses.find(&view);
    if (known != m_uses.end())
    {
        return known->second;
    }

    std::vector<PartUse> uses;
    std::unordered_map<std::string, size_t> places;  // by what the reference leads to
    Array<Reference> instances;
    view.GetAttributeValue(String(u"instanceRefs"), instances);
    for (int i = 0; i < instances.GetSize(); ++i)
    {
        const Object* instance = instances[i].GetHandle().GetObject();
        if (!instance)
        {
            continue;
        }
        PartUse use = UseOf(*instance);
        const std::string key =
            use.view ? std::to_string(reinterpret_cast<size_t>(use.view)) : "?" + use.reference;
        const auto [place, isNew] = places.emplace(key, uses.size());
        if (isNew)
        {
            uses.push_back(std::move(use));
        }
        else
        {
            uses[place->second].quantity += use.quantity;
        }
    }
    return m_uses.emplace(&view, std::move(uses)).first->second;
}

PartName ProductStructure::Name(const Object& view) const
{
    const Object* revision = Follow(view, u"revisionRef");
    const Object* master = revision ? Follow(*revision, u"masterRef") : nullptr;

    PartName name;
    name.number = Text(master, u"productId");
    if (name.number.empty())
    {
        name.number = Text(master, u"catalogueId");
    }
    name.revision = Text(revision, u"revision");
    name.name = Text(&view, u"name");
    if (name.name.empty())
    {
        name.name = Text(master, u"name");
    }
    return name;
}

}  // namespace zorvex_cli
