#include "zorvex_api/Session.h"

#include <memory>
#include <string>

#include "objectmodel/ClassRegistry.h"
#include "objectmodel/FieldDescriptor.h"
#include "runtime/FreeList.h"
#include "runtime/HookBlocks.h"
#include "runtime/JournalHooks.h"
#include "runtime/MutexLock.h"
#include "runtime/PagingHooks.h"
#include "runtime/SessionState.h"
#include "runtime/StringData.h"
#include "runtime/Text.h"
#include "runtime/XmlPlatform.h"
#include "session/AdapterLife.h"
#include "session/LibraryLoader.h"
#include "session/StartOptions.h"
#include "transport/PointerRef.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/PluginDescriptor.h"

namespace zorvex_api
{

namespace
{

enum Code
{
    kGood = 0,
    kHooks = 80,
    kLocks = 81,
    kXmlLibraries = 82,
    kMetadata = 83,
    kExtensions = 84,
    kNoSession = 85
};

/// Runs one stage; false when it raises anything. Nothing may pass the session's functions.
template <class Stage>
bool Runs(Stage&& stage)
{
    try
    {
        stage();
        return true;
    }
    catch (...)
    {
        return false;
    }
}

bool RegisterHooks(AllocatorBase* allocator, DeAllocatorBase* deallocator)
{
    if (allocator == nullptr && deallocator == nullptr)
    {
        return true;
    }
    if (allocator == nullptr || deallocator == nullptr || Allocator::GetAllocator() != nullptr ||
        Allocator::GetDeAllocator() != nullptr)
    {
        return false;
    }
    Allocator::RegisterHandlers(allocator, deallocator);
    return true;
}

/// The list of plug-ins survives the session, so its memory must not come from hooks.
void FillPluginList()
{
    const internal::UnhookedScope outlivesTheSession;
    PluginDescriptor::RegisterAll();
}

/// Storage settings that can't be changed, because field text exists, stay as they are.
void TrySetStorage(bool pool, bool compress)
{
    StringData::Fini();
    StringData::Init(pool ? 1 : 0, compress ? 1 : 0);
}

/// The stages that make the session's own state; a failure leaves the session down.
int StartFoundation()
{
    if (!Runs([] { FillPluginList(); }))
    {
        return kMetadata;
    }
    bool xmlUp = false;
    if (!Runs([&] { xmlUp = XmlPlatform::Start(); }) || !xmlUp)
    {
        return kXmlLibraries;
    }
    if (!Runs([] { Mutex::OfSlot(0); }))
    {
        return kLocks;
    }
    TrySetStorage(false, false);  // descriptors are built from plain wide text
    const bool filled = Runs(
        []
        {
            ClassRegistry::Fill();
            PluginDescriptor::MakeMutexes();
            FieldDescriptor::MakeBuiltIns();
        });
    if (!filled || ClassDescriptor::NumberOfClassDescriptors() > ClassRegistry::kClassLimit)
    {
        return kMetadata;
    }
    return kGood;
}

/// Starts the paging service, which reads its own options, and says whether paging is on.
bool StartPaging(Configuration& options, bool& failed)
{
    bool on = false;
    failed = !Runs([&] { on = PagingHooks::Configure(&options, 0, 1); });
    return on;
}

bool LoadEnhancedSchemaSupport(const Configuration& options)
{
    String support(u"standard");
    options.Get(u"adapters/ZORVEX/initial_schema_support", support);
    return support.LowerCase() != u"enhanced" || internal::LoadLibraryByName("zorvexExtensions");
}

bool LoadSchemaOrLibrary(const char* name)
{
    if (String(name).LowerCase().EndsWith(u".xsd"))
    {
        Array<Handle> classes;
        return Load(name, classes).Ok() != 0;
    }
    return internal::LoadLibraryByName(name != nullptr ? name : "");
}

/// The stages that read options and load what they name; a failure leaves the session up.
bool ApplyOptions(const internal::StartOptions& options)
{
    bool good = true;
    bool pool = !options.ImprovementsOff();
    bool compress = pool;
    SessionState::SetMultithreading(options.Multithreading());
    pool = pool && !SessionState::Multithreading();

    {
        // Gone before the storage settings change: its values are field text.
        const std::unique_ptr<Configuration> configuration = options.MakeConfiguration();
        bool pagingFailed = false;
        if (StartPaging(*configuration, pagingFailed))
        {
            pool = false;
            compress = false;
        }
        good = LoadEnhancedSchemaSupport(*configuration) && !pagingFailed;
    }
    TrySetStorage(pool, compress);
    return good;
}

bool LoadAll(int count, const char** names)
{
    bool good = true;
    for (int i = 0; i < count; ++i)
    {
        bool loaded = false;
        good = Runs([&] { loaded = LoadSchemaOrLibrary(names[i]); }) && loaded && good;
    }
    return good;
}

bool StartAdapters(const internal::StartOptions& options)
{
    bool good = false;
    const bool ran = Runs(
        [&]
        {
            const std::unique_ptr<Configuration> configuration = options.MakeConfiguration();
            good = internal::StartAdapters(*configuration);
        });
    return ran && good;
}

void ReleaseClasses()
{
    ClassRegistry::ReleaseAll();
    FieldDescriptor::FreeBuiltIns();
}

void TellJournal()
{
    if (Journal* const journal = JournalHooks::Get())
    {
        journal->Terminating();
    }
}

}  // namespace

int Initialise(int numberOfLibraries, const char** libraries, int numberOfOptions,
               const char** options, AllocatorBase* allocator, DeAllocatorBase* deallocator)
{
    if (!RegisterHooks(allocator, deallocator))
    {
        return kHooks;
    }
    if (!SessionState::Active())
    {
        const int code = StartFoundation();
        if (code != kGood)
        {
            return code;
        }
    }

    const internal::StartOptions startOptions(options != nullptr ? numberOfOptions : 0, options);
    bool good = true;
    if (!Runs([&] { good = ApplyOptions(startOptions); }))
    {
        good = false;
    }
    good = LoadAll(libraries != nullptr ? numberOfLibraries : 0, libraries) && good;
    good = StartAdapters(startOptions) && good;
    SessionState::SetActive(true);
    return good ? kGood : kExtensions;
}

int Initialise(int numberOfLibraries, const char** libraries, AllocatorBase* allocator,
               DeAllocatorBase* deallocator)
{
    return Initialise(numberOfLibraries, libraries, 0, nullptr, allocator, deallocator);
}

int Terminate()
{
    const int result = SessionState::Active() ? kGood : kNoSession;
    if (!Runs([] { TellJournal(); }) || !Runs([] { internal::StopAdapters(); }))
    {
        return kExtensions;
    }
    if (!Runs([] { ReleaseClasses(); }))
    {
        return kMetadata;
    }
    const auto releaseLocks = []
    {
        PagingHooks::Stop();
        PointerRef::ReleaseFreeList();
        PluginDescriptor::FreeMutexes();
    };
    if (!Runs(releaseLocks))
    {
        return kLocks;
    }
    if (!Runs([] { XmlPlatform::End(); }))
    {
        return kXmlLibraries;
    }
    SessionState::SetActive(false);
    internal::BlockPool::ReleaseUnused();
    return result;
}

}  // namespace zorvex_api
