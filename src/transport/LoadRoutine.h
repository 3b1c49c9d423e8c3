#pragma once

#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"

namespace zorvex_api
{

class Configuration;
class Result;
class String;
class URIResolver;

namespace internal
{

struct LoadSwitches
{
    bool resolveOnly = false;  // follow the URI as a reference
    bool nested = false;       // called for a reference: a resolver isn't left with the document
    bool multiple = false;     // all roots of a document
    URIResolver* resolver = nullptr;  // to be used before any other; not owned
};

/// The one routine behind all entry points that load. `options` isn't changed and may be null.
/// Roots are appended to `handles`, failures to `result`; nothing is thrown.
void LoadDocumentInto(const String& uri, Array<Handle>& handles, Configuration* options,
                      Result& result, const LoadSwitches& switches);

}  // namespace internal
}  // namespace zorvex_api
