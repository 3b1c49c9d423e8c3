#include "runtime/XmlPlatform.h"

#include <xalanc/XalanTransformer/XalanCAPI.h>
#include <xalanc/XalanDOM/XalanDOMString.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include <algorithm>
#include <memory>
#include <vector>

namespace zorvex_api
{

namespace
{

/// What is kept for the session: proof that the libraries' text services work.
struct Services
{
    std::unique_ptr<xercesc::XMLTranscoder> transcoder;
    std::unique_ptr<xalanc::XalanDOMString> text;
};

Services* g_services = nullptr;  // owned; null while the libraries are down
bool g_up = false;

std::vector<void (*)()>& EndHooks()
{
    static std::vector<void (*)()> hooks;
    return hooks;
}

std::unique_ptr<Services> MakeServices()
{
    constexpr XMLSize_t kBlockSize = 1024;
    auto services = std::make_unique<Services>();
    xercesc::XMLTransService::Codes failure = xercesc::XMLTransService::Ok;
    services->transcoder.reset(xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
        "UTF-8", failure, kBlockSize, xercesc::XMLPlatformUtils::fgMemoryManager));
    if (services->transcoder == nullptr || failure != xercesc::XMLTransService::Ok)
    {
        return nullptr;
    }
    services->text =
        std::make_unique<xalanc::XalanDOMString>(*xercesc::XMLPlatformUtils::fgMemoryManager);
    return services;
}

bool KeepServices()
{
    g_services = MakeServices().release();
    return g_services != nullptr;
}

/// Whether one step of the start gave true; the libraries raise what has no common base.
template <class Step>
bool Succeeds(Step&& step)
{
    try
    {
        return step();
    }
    catch (...)
    {
        return false;
    }
}

}  // namespace

bool XmlPlatform::IsUp()
{
    return g_up;
}

bool XmlPlatform::Start()
{
    if (g_up)
    {
        return true;
    }
    if (!Succeeds(
            []
            {
                xercesc::XMLPlatformUtils::Initialize();
                return true;
            }))
    {
        return false;
    }
    const bool xalanUp = Succeeds([] { return XalanInitialize() == 0; });
    g_up = xalanUp && Succeeds(&KeepServices);
    if (!g_up)
    {
        if (xalanUp)
        {
            XalanTerminate(0);
        }
        xercesc::XMLPlatformUtils::Terminate();
    }
    return g_up;
}

void XmlPlatform::End()
{
    if (!g_up)
    {
        return;
    }
    for (void (*hook)() : EndHooks())
    {
        hook();
    }
    delete g_services;
    g_services = nullptr;
    XalanTerminate(0);
    xercesc::XMLPlatformUtils::Terminate();
    g_up = false;
}

void XmlPlatform::BeforeEnd(void (*hook)())
{
    std::vector<void (*)()>& hooks = EndHooks();
    if (std::find(hooks.begin(), hooks.end(), hook) == hooks.end())
    {
        hooks.push_back(hook);
    }
}

}  // namespace zorvex_api
