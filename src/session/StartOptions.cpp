#include "session/StartOptions.h"

#include "zorvex_api/Array.h"

namespace zorvex_api::internal
{

bool StartOptions::AnyIs(TextView start, TextView lowerCaseEnd) const
{
    for (int i = 0; i < m_count; ++i)
    {
        const String option(m_texts[i]);
        const String lower = option.LowerCase();
        const TextView text = View(lower);
        if (View(option).substr(0, start.size()) == start && text.size() >= lowerCaseEnd.size() &&
            text.substr(text.size() - lowerCaseEnd.size()) == lowerCaseEnd)
        {
            return true;
        }
    }
    return false;
}

bool StartOptions::Multithreading() const
{
    return AnyIs(u"multithreading", u"true");
}

bool StartOptions::ImprovementsOff() const
{
    return AnyIs(u"__performance/improvements/on", u"false");
}

std::unique_ptr<Configuration> StartOptions::MakeConfiguration() const
{
    auto configuration = std::make_unique<Configuration>();
    for (int i = 0; i < m_count; ++i)
    {
        Array<String> parts;
        String(m_texts[i]).Split(u"=", parts);
        if (parts.GetSize() == 2)
        {
            configuration->Set(parts[0], parts[1]);
        }
    }
    return configuration;
}

}  // namespace zorvex_api::internal
