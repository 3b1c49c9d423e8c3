#include <vector>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/ObjectPin.h"
#include "objectmodel/TraverseContextImpl.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

bool IsWalked(const FieldDescriptor& field, bool followURI)
{
    switch (field.Type())
    {
        case zorvexFieldSingleElement:
        case zorvexFieldMultipleElement:
            return true;
        case zorvexFieldSingleURI:
        case zorvexFieldMultipleURI:
        case zorvexFieldExternalReference:
            return followURI;
        default:
            return false;
    }
}

/// The walk's place in one object: which of its fields, and which entry of that.
///
/// Nothing of the object's storage is kept between two steps, so a visit may add and remove
/// children, or the whole list.
class Place
{
public:
    Place(Object* object, const TraverseContextImpl& context)
        : m_object(object), m_followURI(context.followURI != 0)
    {
        for (const FieldData* field = m_object->fields; field != nullptr; field = field->next)
        {
            if (field->IsSet() && IsWalked(*field->descriptor, m_followURI))
            {
                Open();
                return;
            }
        }
    }

    /// The next object to walk into, null behind the last.
    Object* Next(const TraverseContextImpl& context)
    {
        for (; m_field < m_fields.size(); ++m_field, m_index = 0, m_last = nullptr)
        {
            const FieldDescriptor* field = m_fields[m_field];
            if (!IsWalked(*field, m_followURI))
            {
                continue;
            }
            const FieldData* data = m_object->FindField(field);
            // Two fields of type 11 share one record; it is walked for its own field.
            if (data == nullptr || !data->IsSet() || data->descriptor != field)
            {
                continue;
            }
            if (Object* next = NextOf(*data, context))
            {
                return next;
            }
        }
        return context.includesAside ? NextAside() : nullptr;
    }

    /// A visit's own value ends the list that its object stands in, and nothing more.
    void LeaveList()
    {
        if (m_field < m_fields.size() && m_fields[m_field]->Type() == zorvexFieldMultipleElement)
        {
            ++m_field;
            m_index = 0;
            m_last = nullptr;
        }
    }

private:
    void Open()
    {
        ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(m_object->GetClassDescriptor());
        if (descriptor != nullptr)
        {
            m_fields = descriptor->Layout().DerivedFirst();
        }
    }

    Object* NextOf(const FieldData& data, const TraverseContextImpl& context)
    {
        switch (data.descriptor->Type())
        {
            case zorvexFieldSingleElement:
                return m_index++ == 0 ? data.Element() : nullptr;
            case zorvexFieldMultipleElement:
                return NextChild(*data.Elements());
            case zorvexFieldMultipleURI:
                return NextDocument(*data.Externals(), context);
            default:
                return m_index++ == 0 ? DocumentOf(*data.External(), context) : nullptr;
        }
    }

    Object* NextChild(const ElementList& list)
    {
        // The child visited last may have been taken out: then its place holds the next one.
        if (m_last != nullptr && m_index < list.Count() && list.At(m_index) == m_last)
        {
            ++m_index;
        }
        m_last = m_index < list.Count() ? list.At(m_index) : nullptr;
        return m_last;
    }

    Object* NextAside()
    {
        const Array<Object*>* aside = m_object->AsideChildren();
        return aside != nullptr && m_index < aside->GetSize() ? aside->GetAt(m_index++) : nullptr;
    }

    Object* NextDocument(const Array<ExternalRep*>& references, const TraverseContextImpl& context)
    {
        while (m_index < references.GetSize())
        {
            if (Object* document = DocumentOf(*references.GetData()[m_index++], context))
            {
                return document;
            }
        }
        return nullptr;
    }

    static Object* DocumentOf(const ExternalRep& reference, const TraverseContextImpl& context)
    {
        const Object* target = reference.TargetObject();
        Object* document = target != nullptr ? target->GetDocumentBase() : nullptr;
        return document != nullptr && context.visited.count(document) == 0 ? document : nullptr;
    }

    ObjectPin m_object;
    FieldRange m_fields;
    size_t m_field = 0;
    int m_index = 0;
    Object* m_last = nullptr;  // compared only, it may be gone
    bool m_followURI;
};

bool IsDocumentBase(const Object* object)
{
    const ClassDescriptorImpl* descriptor =
        ClassDescriptorImpl::Of(ClassData::Of(object)->GetClassDescriptor());
    return descriptor != nullptr && descriptor->IsDocumentBase();
}

zorvexTraverseResult Visit(TraverseContext& context, Object* object)
{
    const ObjectPin pin(object);
    if (IsDocumentBase(object))
    {
        context.GetImplementation()->visited.insert(object);
    }
    return context.Visit(object);
}

}  // namespace

/// Keeps its own stack, so that the depth of a tree is no matter of the thread's.
zorvexTraverseResult Object::Traverse(TraverseContext* context)
{
    if (context == nullptr)
    {
        return zorvexTraverseContinue;
    }
    TraverseContextImpl& walk = *context->GetImplementation();
    if (walk.depth == 0)
    {
        walk.visited.clear();
    }
    const int depth = walk.depth;
    walk.depth = depth + 1;

    zorvexTraverseResult result = Visit(*context, this);
    std::vector<Place> path;
    if (result == zorvexTraverseContinue)
    {
        path.emplace_back(this, walk);
    }
    while (!path.empty())
    {
        Object* next = path.back().Next(walk);
        if (next == nullptr)
        {
            path.pop_back();
            continue;
        }
        walk.depth = depth + 1 + static_cast<int>(path.size());
        const zorvexTraverseResult visited = Visit(*context, next);
        if (visited == zorvexTraverseStop)
        {
            walk.depth = depth;
            return zorvexTraverseStop;
        }
        if (visited == zorvexTraverseContinue)
        {
            path.emplace_back(next, walk);
        }
        else if (visited != zorvexTraverseSkip)
        {
            path.back().LeaveList();
        }
    }
    walk.depth = depth;
    return result == zorvexTraverseSkip ? zorvexTraverseContinue : result;
}

}  // namespace zorvex_api
