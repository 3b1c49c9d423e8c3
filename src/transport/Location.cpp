#include "transport/Location.h"

#include "zorvex_api/Pointer.h"

namespace zorvex_api::internal
{

namespace
{

constexpr int kStandardPort = 80;

bool NamesFile(const Pointer& pointer)
{
    const String scheme = pointer.GetScheme().LowerCase();
    return scheme.IsEmpty() != 0 || scheme == u"file";
}

}  // namespace

String LocationOf(const Pointer& pointer)
{
    const String& netPath = pointer.GetNetPath();
    if (pointer.GetHost().IsEmpty() != 0 || pointer.GetPort() == kStandardPort)
    {
        return netPath;
    }
    const String host = u"//" + pointer.GetHost();
    const int end = netPath.Find(host) + host.GetLength();
    return netPath.Substring(0, end) + String::Format(":%d", pointer.GetPort()) +
           netPath.Substring(end);
}

bool NeedsFolder(const Pointer& pointer)
{
    return pointer.GetScheme().IsEmpty() != 0 && pointer.IsRelative() != 0;
}

String WithQuery(const String& name, const String& query)
{
    if (query.IsEmpty() != 0)
    {
        return name;
    }
    return NamesFile(Pointer(name)) ? name : name + u"?" + query;
}

String QueryOf(const Pointer& pointer)
{
    return NamesFile(pointer) ? String() : pointer.GetQuery();
}

String AsPlace(const String& name)
{
    return name.StartsWith(u"#") != 0 ? u"./" + name : name;
}

}  // namespace zorvex_api::internal
