#include "runtime/XmlPlatform.h"

#include <xalanc/XalanTransformer/XalanCAPI.h>
#include <xalanc/XalanDOM/XalanDOMString.hpp>
#include <xercesc/sax/SAXParseException.hpp>
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
    try
    {
        xercesc::XMLPlatformUtils::Initialize();
        if (XalanInitialize() != 0)
        {
            xercesc::XMLPlatformUtils::Terminate();
            return false;
        }
        g_services = MakeServices().release();
        if (g_services == nullptr)
        {
            XalanTerminate(0);
            xercesc::XMLPlatformUtils::Terminate();
            return false;
        }
    }
    catch (const xercesc::XMLException&)
    {
        return false;
    }
    catch (const xercesc::SAXParseException&)
    {
        return false;
    }
    g_up = true;
    return true;
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
