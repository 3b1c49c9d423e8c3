#pragma once

#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Configuration;
class Object;

// A `uri` is a path, a URI, or a document's own text, which begins with "<" after white space. The
// roots that come back belong to the caller, who deletes them. Nothing is thrown. Failures: error 4
// "Invalid uri" (empty), error 2 "No adapter found for \"...\"." (unknown format), error 4
// "Unable to load: \"...\"", and what the adapters, the resolver and the reader report. What was
// read before a failure is given out.

/// Loads a document and appends its roots to `handles`. `options` may be null: then the active
/// configuration holds. The option "format" names the format, whatever the extension says.
ZORVEX_API Result Load(const String& uri, Array<Handle>& handles, Configuration* options = nullptr);
ZORVEX_API Result Load(const String& uri, const Configuration& options, Array<Handle>& handles);

/// Loads a document and gives its first root, or null. More than one root adds error 4 "More than
/// one DocumentBase element in the document - the first has been loaded"; the others die with the
/// first. `document` isn't null: without it nothing is loaded, error 2 "LoadDocument: no place for
/// the document.".
ZORVEX_API Result LoadDocument(const String& uri, const Configuration& options, Object** document);

/// Loads a document and appends all its roots to `documents`.
ZORVEX_API Result LoadMultipleDocument(const String& uri, const Configuration& options,
                                       Array<Object*>& documents);

/// Follows `uri` as a reference, without options: what its locator picks is appended to `handles`.
ZORVEX_API Result ResolveURI(const String& uri, Array<Handle>& handles);

}  // namespace zorvex_api
