#include "runtime/LocalTime.h"

#include <ctime>

#include "runtime/MutexLock.h"

namespace zorvex_api
{

LocalTime LocalTime::Now()
{
    const MutexLock lock(kMutexLocalTime);
    const std::time_t now = std::time(nullptr);
    const std::tm* parts = std::localtime(&now);
    if (parts == nullptr)
    {
        return LocalTime{1970, 1, 1, 0, 0, 0};
    }
    return LocalTime{parts->tm_year + 1900, parts->tm_mon + 1, parts->tm_mday,
                     parts->tm_hour,        parts->tm_min,     parts->tm_sec};
}

String LocalTime::DateText() const
{
    return String::Format("%04d-%02d-%02d", year, month, day);
}
String LocalTime::TimeText() const
{
    return String::Format("%02d:%02d:%02d", hour, minute, second);
}

}  // namespace zorvex_api
