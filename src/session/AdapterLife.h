#pragma once

namespace zorvex_api
{

class Configuration;

namespace internal
{

/// Runs the start operation of every adapter; false when one reports an error or raises.
bool StartAdapters(Configuration& options);
/// Runs the stop operation of every adapter. What they raise passes through.
void StopAdapters();

}  // namespace internal
}  // namespace zorvex_api
