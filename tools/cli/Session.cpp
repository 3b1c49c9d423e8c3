#include "Session.h"

#include "Report.h"
#include "zorvex_api/Session.h"

namespace zorvex_cli
{
namespace
{

constexpr int kPartlyStarted = 84;  // up, but a library or an adapter is missing

int Start(const std::vector<std::string>& libraries)
{
    std::vector<const char*> names;
    names.reserve(libraries.size());
    for (const std::string& library : libraries)
    {
        names.push_back(library.c_str());
    }
    return zorvex_api::Initialise(static_cast<int>(names.size()), names.data(), 0, nullptr, nullptr,
                                  nullptr);
}

}  // namespace

Session::Session(const std::vector<std::string>& libraries) : m_code(Start(libraries))
{
    if (m_code == kPartlyStarted)
    {
        Report(zorvex_api::ERROR, m_code, "A library or an adapter could not be started");
    }
    else if (m_code != 0)
    {
        Report(zorvex_api::FATAL, m_code, "The session could not be started");
    }
}

Session::~Session()
{
    if (m_code == 0 || m_code == kPartlyStarted)
    {
        zorvex_api::Terminate();
    }
}

}  // namespace zorvex_cli
