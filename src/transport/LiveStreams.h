#pragma once

#include "runtime/Text.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Stream;

/// The live Stream whose address `address` gives in the form of "%p"; null for any other text and
/// for an address that isn't that of a Stream alive in this process. Nothing is dereferenced.
Stream* FindLiveStream(TextView address);
/// The same for an address that isn't text.
Stream* FindLiveStream(void* address);

/// The address as `FindLiveStream` reads it.
String StreamAddress(const Stream* stream);

namespace internal
{

/// Called by the constructor and the destructor of Stream. Thread-safe.
void EnterLiveStream(Stream* stream);
void LeaveLiveStream(Stream* stream);

}  // namespace internal
}  // namespace zorvex_api
