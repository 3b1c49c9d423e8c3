#include "objectmodel/UpperServices.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Parser.h"

namespace zorvex_api::upper
{

/// What the parser plug-in kept for an object goes with the object.
void ReleaseParserCache(Object* object) noexcept
{
    try
    {
        int isNew = 0;
        auto* parser = static_cast<Parser*>(
            internal::FindInstance(internal::kParserPlugin, String(), nullptr, isNew));
        if (parser == nullptr)
        {
            return;
        }
        PluginProcessData data;
        data.m_operation = ZORVEX_OP_PARSER_RELEASE;
        data.Set(internal::kObjectSlot, object);
        {
            const PluginLock lock(parser->GetPluginDescriptor());
            parser->Process(&data);
        }
        if (isNew != 0)
        {
            delete parser;
        }
    }
    catch (...)
    {
        // The object is going: nobody is left to tell.
    }
}

}  // namespace zorvex_api::upper
