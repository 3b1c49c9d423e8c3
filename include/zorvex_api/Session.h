#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/BuildInfo.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

/// Starts the session. Call it from one thread, with no other call of the library running.
///
/// @param libraries    names of shared libraries to load, and of schemas (names in ".xsd")
/// @param options      "name=value" texts; among them "multithreading=true", which makes
///                     separate documents usable on separate threads
/// @param allocator    the application's memory hooks, both or none; they stay registered, and
///                     have to live as long as anything that was made with them
/// @return 0 session up; 80 hooks given singly or registered already; 81 locks or constants,
///         82 XML libraries, 83 class metadata couldn't be made; 84 session up, but a library, a
///         schema or an adapter failed to start
ZORVEX_API int Initialise(int numberOfLibraries, const char** libraries, int numberOfOptions,
                          const char** options, AllocatorBase* allocator,
                          DeAllocatorBase* deallocator);
/// The same with no options.
ZORVEX_API int Initialise(int numberOfLibraries, const char** libraries, AllocatorBase* allocator,
                          DeAllocatorBase* deallocator);

/// Ends the session; a later `Initialise` can start it again. Objects that the application still
/// holds may only be deleted afterwards.
///
/// @return 0 session down; 81 to 84 an exception while releasing locks and constants, XML
///         libraries, class metadata, adapters; 85 there was no session, all steps were run
ZORVEX_API int Terminate();

/// Version and build time of the library.
ZORVEX_API BuildInfo GetBuildInfo();

}  // namespace zorvex_api

extern "C"
{
    /// Sets how the text of fields is stored: shared between equal values, held as UTF-8.
    /// Returns 1, or 0 when text is stored already and the settings stay.
    ZORVEX_API int StringDataInit(int pool, int compress);
    /// Frees the table of shared text if no text is in use.
    ZORVEX_API void StringDataFini();
}
