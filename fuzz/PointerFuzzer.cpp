// Parsing canonical texts again and again comes to rest. The parser itself reads a few times; a
// text of many layers, as "/.&./.&./.&./", takes more, but never more than it has characters.
#include <cstdint>
#include <cstdlib>

#include "zorvex_api/Pointer.h"
#include "zorvex_api/Session.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    return zorvex_api::Initialise(0, nullptr, nullptr, nullptr);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using zorvex_api::Pointer;
    using zorvex_api::String;

    Pointer pointer;
    pointer.Parse(String(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    pointer.GetFullPath();
    pointer.GetNetPath();
    pointer.IsRelative();
    pointer.IsValid();

    String canonical(pointer.GetString());
    for (int readings = canonical.GetLength() + 1; readings >= 0; --readings)
    {
        Pointer again;
        again.Parse(canonical);
        if (again.GetString() == canonical)
        {
            return 0;
        }
        canonical = again.GetString();
    }
    std::abort();
}
