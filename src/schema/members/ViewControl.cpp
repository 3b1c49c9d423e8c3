#include "zorvex60/ViewControl.h"

#include "zorvex60/Orthographic.h"
#include "zorvex60/Perspective.h"
#include "zorvex60/ViewPort.h"

namespace zorvex60
{

namespace
{

template <class Child, class Value>
int Read(const Child* child, Result (Child::*get)(Value) const, Value value)
{
    return child != nullptr && (child->*get)(value).Ok() ? 1 : 0;
}

ViewPort* FindOrAddViewPort(ViewControl& control)
{
    ViewPort* port = control.GetViewPort();
    return port != nullptr ? port : control.AddViewPort();
}

}  // namespace

Result ViewControl::GetViewMatrix(Transf& value) const
{
    if (!HasField(u"ViewMatrix", 2))
    {
        return Result(2, "ViewMatrix has not been set.");
    }
    return typed::GetContent(*this, u"ViewMatrix", value);
}

int ViewControl::GetViewDirection(Vector& value) const
{
    return Read<Orthographic, Vector&>(GetOrthographic(), &Orthographic::GetViewDirection, value);
}

void ViewControl::SetViewDirection(const Vector& value)
{
    if (Orthographic* child = GetOrthographic())
    {
        child->SetViewDirection(value);
    }
}

int ViewControl::GetViewFrom(Vector& value) const
{
    return Read<Perspective, Vector&>(GetPerspective(), &Perspective::GetViewFrom, value);
}

void ViewControl::SetViewFrom(const Vector& value)
{
    if (Perspective* child = GetPerspective())
    {
        child->SetViewFrom(value);
    }
}

int ViewControl::GetViewTo(Vector& value) const
{
    return Read<Orthographic, Vector&>(GetOrthographic(), &Orthographic::GetViewTo, value) ||
           Read<Perspective, Vector&>(GetPerspective(), &Perspective::GetViewTo, value);
}

void ViewControl::SetViewTo(const Vector& value)
{
    if (Orthographic* orthographic = GetOrthographic())
    {
        orthographic->SetViewTo(value);
    }
    else if (Perspective* perspective = GetPerspective())
    {
        perspective->SetViewTo(value);
    }
}

int ViewControl::GetViewVertical(Vector& value) const
{
    return Read<Orthographic, Vector&>(GetOrthographic(), &Orthographic::GetViewVertical, value) ||
           Read<Perspective, Vector&>(GetPerspective(), &Perspective::GetViewVertical, value);
}

void ViewControl::SetViewVertical(const Vector& value)
{
    if (Orthographic* orthographic = GetOrthographic())
    {
        orthographic->SetViewVertical(value);
    }
    else if (Perspective* perspective = GetPerspective())
    {
        perspective->SetViewVertical(value);
    }
}

int ViewControl::GetViewPortHigh(double* values) const
{
    return Read<ViewPort, double*>(GetViewPort(), &ViewPort::GetViewPortHigh, values);
}

void ViewControl::SetViewPortHigh(const double* values)
{
    if (ViewPort* port = FindOrAddViewPort(*this))
    {
        port->SetViewPortHigh(values);
    }
}

int ViewControl::GetViewPortLow(double* values) const
{
    return Read<ViewPort, double*>(GetViewPort(), &ViewPort::GetViewPortLow, values);
}

void ViewControl::SetViewPortLow(const double* values)
{
    if (ViewPort* port = FindOrAddViewPort(*this))
    {
        port->SetViewPortLow(values);
    }
}

}  // namespace zorvex60
