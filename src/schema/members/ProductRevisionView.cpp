#include "zorvex60/ProductRevisionView.h"

namespace zorvex60
{

int ProductRevisionView::IsAssembly() const
{
    return GetType() == ePartTypeAssembly;
}

int ProductRevisionView::IsBody() const
{
    return GetType() != ePartTypeAssembly;
}

}  // namespace zorvex60
