// Whatever is loaded as a document: no crash, and what was read can be written and read again.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "zorvex_api/Configuration.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Session.h"

namespace
{

using zorvex_api::Array;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::String;

/// Loads `text`, gives the first root's XML and deletes the roots. An empty text for no root.
String RoundTrip(const String& text)
{
    Configuration options;
    // References would let an input name files of the machine.
    options.Set(u"adapters/ZORVEX/references", u"off");
    Array<Handle> handles;
    zorvex_api::Load(text, options, handles);
    String xml;
    for (int i = 0; i < handles.GetSize(); ++i)
    {
        if (i == 0)
        {
            handles[i].GetObject()->GetXML(xml, &options);
        }
        delete handles[i].GetObject();
    }
    return xml;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    return zorvex_api::Initialise(0, nullptr, nullptr, nullptr);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // "<" makes it a document's text; anything else would be the name of a file.
    const std::string bytes = "<" + std::string(reinterpret_cast<const char*>(data), size);
    const String first = RoundTrip(String(bytes.c_str(), static_cast<int>(bytes.size())));
    if (!first.IsEmpty() && RoundTrip(first).IsEmpty())
    {
        std::abort();
    }
    return 0;
}
