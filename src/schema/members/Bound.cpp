#include "zorvex60/Bound.h"

#include "zorvex_api/Vector.h"

namespace zorvex60
{

namespace
{

using zorvex_api::BoxBound;
using zorvex_api::SphereBound;

constexpr int kSphereValues = 4;
constexpr int kBoxValues = 6;

// Overwrites `count` of the values from `first` on; there are at least `size` afterwards. Null
// changes nothing.
void Overwrite(Bound& bound, int size, int first, const double* from, int count)
{
    if (from == nullptr)
    {
        return;
    }
    Array<double> values;
    bound.GetValues(values);
    while (values.GetSize() < size)
    {
        values.Add(0.0);
    }
    for (int i = 0; i < count; ++i)
    {
        values[first + i] = from[i];
    }
    bound.SetValues(values);
}

void Append(Array<double>& values, const Vector& vector)
{
    values.Add(vector.x());
    values.Add(vector.y());
    values.Add(vector.z());
}

}  // namespace

void Bound::SetCentre(const double* centre)
{
    Overwrite(*this, kSphereValues, 0, centre, 3);
}

void Bound::SetRadius(double radius)
{
    Overwrite(*this, kSphereValues, 3, &radius, 1);
}

void Bound::SetLowCorner(const double* corner)
{
    Overwrite(*this, kBoxValues, 0, corner, 3);
}

void Bound::SetHighCorner(const double* corner)
{
    Overwrite(*this, kBoxValues, 3, corner, 3);
}

void Bound::SetBound(const BoxBound& bound)
{
    Array<double> values;
    Append(values, bound.GetCentre());
    Append(values, bound.GetHalfWidths());
    SetValues(values);
}

void Bound::SetBound(const SphereBound& bound)
{
    Array<double> values;
    Append(values, bound.GetCentre());
    values.Add(bound.GetRadius());
    SetValues(values);
    SetType(eBoundingTypeSphere);
}

int Bound::GetBound(BoxBound& bound) const
{
    Array<double> values;
    if (GetType() != eBoundingTypeBox || !GetValues(values).Ok() || values.GetSize() < kBoxValues)
    {
        return 0;
    }
    bound = BoxBound(Vector(values.GetData()), Vector(values.GetData() + 3));
    return 1;
}

int Bound::GetBound(SphereBound& bound) const
{
    Array<double> values;
    if (GetType() != eBoundingTypeSphere || !GetValues(values).Ok() ||
        values.GetSize() < kSphereValues)
    {
        return 0;
    }
    bound = SphereBound(Vector(values.GetData()), values[3]);
    return 1;
}

}  // namespace zorvex60
