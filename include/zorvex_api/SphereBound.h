#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Vector.h"

namespace zorvex_api
{

struct SphereBoundImpl;

/// A sphere, or not set. A value: copies are independent.
class ZORVEX_API SphereBound : public Allocator
{
public:
    /// Not set.
    SphereBound();

    SphereBound(const Vector& centre, double radius);

    SphereBound(const SphereBound& other);
    SphereBound(SphereBound&& other) noexcept;
    ~SphereBound();

    SphereBound& operator=(const SphereBound& other);
    SphereBound& operator=(SphereBound&& other) noexcept;

    /// 1 when set, else 0.
    int IsSet() const;

    /// A constant zero vector when not set.
    const Vector& GetCentre() const;

    /// 0.0 when not set.
    double GetRadius() const;

    /// 1 when `point` lies in the sphere or on its surface, and when the sphere isn't set.
    int Contains(const Vector& point) const;

    /// Grows to the sphere over `point` and the far side of this one; nothing when `Contains` is 1,
    /// so a sphere that isn't set stays so.
    void Expand(const Vector& point);

    /// Becomes the sphere on the segment through both centres, from far side to far side; for equal
    /// centres the larger radius is taken. A sphere that isn't set becomes a copy, one not set adds
    /// nothing.
    void Expand(const SphereBound& other);

private:
    SphereBoundImpl* m_impl;  // owned; null: not set
};

}  // namespace zorvex_api
