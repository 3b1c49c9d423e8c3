#include "transport/LoadText.h"

#include <new>
#include <string>

namespace zorvex_api::internal
{

LoadTextStream::LoadTextStream(TextView text, bool& gone) : m_gone(gone)
{
    const std::string bytes = ToUtf8(text);
    if (Write64(bytes.data(), bytes.size(), 1) == 0)
    {
        throw std::bad_alloc();
    }
    Rewind();
}

LoadTextStream::~LoadTextStream()
{
    m_gone = true;
}

bool IsLoadText(const Stream* stream)
{
    return dynamic_cast<const LoadTextStream*>(stream) != nullptr;
}

TextView DocumentText(TextView uri)
{
    // a byte order mark is left by whoever reads a file into a String
    const std::size_t first = uri.find_first_not_of(u" \t\r\n\uFEFF");
    if (first == TextView::npos || uri[first] != u'<')
    {
        return {};
    }
    return uri.substr(first);
}

}  // namespace zorvex_api::internal
