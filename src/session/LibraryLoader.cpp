#include "session/LibraryLoader.h"

#include <dlfcn.h>

#include "runtime/HookBlocks.h"

namespace zorvex_api::internal
{

bool LoadLibraryByName(const std::string& name)
{
    if (name.empty())
    {
        return false;  // the platform would answer with the program itself
    }
    const UnhookedScope outlivesTheSession;
    const int mode = RTLD_NOW | RTLD_LOCAL;
    return dlopen(name.c_str(), mode) != nullptr ||
           dlopen(("lib" + name + ".so").c_str(), mode) != nullptr;
}

}  // namespace zorvex_api::internal
