#pragma once

#include "zorvex_api/String.h"

namespace zorvex_api
{

class Pointer;

namespace internal
{

/// The net path with the port, which a server's other documents are to be asked for too.
String LocationOf(const Pointer& pointer);

/// Whether what the pointer names is meant from some folder. A scheme stands for itself.
bool NeedsFolder(const Pointer& pointer);

/// `name` with a query behind it. A file has no query: it stays as it is.
String WithQuery(const String& name, const String& query);

/// The query of what the pointer names; empty for a file.
String QueryOf(const Pointer& pointer);

/// A name with nothing in front of it: one that begins with "#" would be read as a fragment.
String AsPlace(const String& name);

}  // namespace internal
}  // namespace zorvex_api
