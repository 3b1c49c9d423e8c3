#include "objectmodel/ObjectBlock.h"

namespace zorvex_api::internal
{

thread_local constinit const void* ObjectBlock::t_made = nullptr;
thread_local constinit const void* ObjectBlock::t_ended = nullptr;

}  // namespace zorvex_api::internal
