#include "zorvex_api/BuildInfo.h"

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "zorvex_api/Session.h"

namespace zorvex_api
{

namespace
{

enum Value
{
    kMajor,
    kMinor,
    kRevision,
    kBuild,
    kYear,
    kMonth,
    kDay,
    kHour,
    kMinute,
    kSecond,
    kValues
};

std::vector<std::string> SplitDate(std::string_view date)
{
    std::vector<std::string> tokens;
    size_t start = date.find_first_not_of("/-: ");
    while (start != std::string_view::npos)
    {
        const size_t end = date.find_first_of("/-: ", start);
        tokens.emplace_back(date.substr(start, end - start));
        start = date.find_first_not_of("/-: ", end);
    }
    tokens.resize(6);
    return tokens;
}

int Number(const std::string& text)
{
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

int Month(const std::string& text)
{
    if (text.empty() || (text[0] >= '0' && text[0] <= '9'))
    {
        return Number(text);
    }
    static constexpr std::string_view kNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int month = 1; month <= 12; ++month)
    {
        if (text == kNames[month - 1])
        {
            return month;
        }
    }
    return 0;
}

}  // namespace

struct BuildInfoImpl : Allocator
{
    std::array<int, kValues> values{};
};

BuildInfo::BuildInfo() : m_impl(new BuildInfoImpl) {}

BuildInfo::BuildInfo(int major, int minor, int revision, int build, const char* date) : BuildInfo()
{
    const std::vector<std::string> tokens = SplitDate(date != nullptr ? date : "");
    const int year = Number(tokens[2]);
    m_impl->values = {major,
                      minor,
                      revision,
                      build,
                      year < 1900 ? year + 2000 : year,
                      Month(tokens[1]),
                      Number(tokens[0]),
                      Number(tokens[3]),
                      Number(tokens[4]),
                      Number(tokens[5])};
}

BuildInfo::BuildInfo(int major, int minor, int revision, int build, int year, int month, int day,
                     int hour, int minute, int second)
    : BuildInfo()
{
    m_impl->values = {major, minor, revision, build, year, month, day, hour, minute, second};
}

BuildInfo::BuildInfo(const BuildInfo& other) : Allocator(), m_impl(new BuildInfoImpl(*other.m_impl))
{
}

BuildInfo& BuildInfo::operator=(const BuildInfo& other)
{
    m_impl->values = other.m_impl->values;
    return *this;
}

BuildInfo::~BuildInfo()
{
    delete m_impl;
}

int BuildInfo::GetMajorRevision() const
{
    return m_impl->values[kMajor];
}
int BuildInfo::GetMinorRevision() const
{
    return m_impl->values[kMinor];
}
int BuildInfo::GetRevision() const
{
    return m_impl->values[kRevision];
}
int BuildInfo::GetBuildNumber() const
{
    return m_impl->values[kBuild];
}
int BuildInfo::GetYear() const
{
    return m_impl->values[kYear];
}
int BuildInfo::GetMonth() const
{
    return m_impl->values[kMonth];
}
int BuildInfo::GetDay() const
{
    return m_impl->values[kDay];
}
int BuildInfo::GetHour() const
{
    return m_impl->values[kHour];
}
int BuildInfo::GetMinute() const
{
    return m_impl->values[kMinute];
}
int BuildInfo::GetSecond() const
{
    return m_impl->values[kSecond];
}

String BuildInfo::GetVersionText() const
{
    return String::Format("%d.%d.%d.%.3d", GetMajorRevision(), GetMinorRevision(), GetRevision(),
                          GetBuildNumber());
}

BuildInfo GetBuildInfo()
{
    return BuildInfo(7, 2, 0, 36, "16/10/2024 17:02:41");
}

}  // namespace zorvex_api
