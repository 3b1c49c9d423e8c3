#include "transport/ExternalQuestions.h"

#include "objectmodel/FieldDescriptor.h"
#include "runtime/Text.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api::internal
{

ReferenceQuestion::ReferenceQuestion(URIResolver* resolver, Object* owner,
                                     const FieldDescriptor* field, Configuration* options)
    : m_resolver(resolver), m_owner(owner), m_options(options)
{
    if (field != nullptr)
    {
        m_fieldName = ToUtf8(field->NameView());
    }
}

bool ReferenceQuestion::MayFollow(Pointer& pointer, Result& result)
{
    return Ask(kResolverAskReference, pointer, result);
}

bool ReferenceQuestion::MayLoad(Pointer& pointer, Result& result)
{
    return Ask(kResolverAskLoad, pointer, result);
}

bool ReferenceQuestion::Ask(int operation, Pointer& pointer, Result& result)
{
    if (m_resolver == nullptr)
    {
        return true;
    }
    int one = 1;
    int answer = 0;
    PluginProcessData data;
    data.m_operation = operation;
    data.Set(kResultSlot, &result);
    data.Set(kOptionsSlot, m_options);
    data.Set(kObjectSlot, m_owner);
    data.Set(kFieldNameSlot, m_fieldName.data());
    data.Set(kPointerSlot, &pointer);
    data.Set(kModeSlot, &one);
    data.Set(kAnswerSlot, &answer);
    ProcessLocked(m_resolver, data);
    return answer == 1;
}

ReferenceResolver::ReferenceResolver(URIResolver* given, Configuration* options, Object* owner)
    : m_resolver(given)
{
    if (m_resolver == nullptr && options != nullptr)
    {
        m_resolver = FindStoredResolver(options);
    }
    int isNew = 0;
    if (m_resolver == nullptr)
    {
        m_resolver =
            static_cast<URIResolver*>(PluginDescriptor::GetDefaultInstance(kResolverPlugin));
    }
    if (m_resolver == nullptr && owner != nullptr)
    {
        m_resolver = FindStoredResolver(owner->GetRoot());
    }
    if (m_resolver == nullptr)
    {
        m_resolver = FindResolver(nullptr, isNew);
        m_owned = isNew != 0;
    }
}

ReferenceResolver::~ReferenceResolver()
{
    if (m_owned)
    {
        ReleaseInstance(kResolverPlugin, m_resolver);
    }
}

}  // namespace zorvex_api::internal
