#include "zorvex60/Representation.h"

namespace zorvex60
{

Result Representation::SetInternalRep(InternalRep* element)
{
    if (NumberOfInternalReps() > 0)
    {
        return Result(2,
                      "Cannot add child of type: InternalRep to parent of type: Representation.");
    }
    return AddInternalRep(element);
}

}  // namespace zorvex60
