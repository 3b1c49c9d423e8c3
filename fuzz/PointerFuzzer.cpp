// A canonical text is a fixed point: parsing it gives the same canonical text again.
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

    const String canonical(pointer.GetString());
    Pointer again;
    again.Parse(canonical);
    if (again.GetString() != canonical)
    {
        std::abort();
    }
    return 0;
}
