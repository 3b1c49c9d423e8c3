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
    const size_t folderEnd = name.rfind('/') + 1;  // 0 without a folder
    const std::string platformName =
        name.substr(0, folderEnd) + "lib" + name.substr(folderEnd) + ".so";
    return dlopen(name.c_str(), mode) != nullptr || dlopen(platformName.c_str(), mode) != nullptr;
}

}  // namespace zorvex_api::internal
