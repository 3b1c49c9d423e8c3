// The containers of runtime's own types, as the library exports them.

#include "zorvex_api/Array.h"
#include "zorvex_api/Map.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

template class Array<String>;
template class Array<int>;
template class Array<double>;
template class Map<String, int>;
template class Map<String, String>;

}  // namespace zorvex_api
