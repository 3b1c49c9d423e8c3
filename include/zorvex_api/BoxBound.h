#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Vector.h"

namespace zorvex_api
{

struct BoxBoundImpl;

/// A box along the axes, or not set. A value: copies are independent.
class ZORVEX_API BoxBound : public Allocator
{
public:
    /// Not set.
    BoxBound();

    /// The box from `centre` - `halfWidths` to `centre` + `halfWidths`.
    BoxBound(const Vector& centre, const Vector& halfWidths);

    BoxBound(const BoxBound& other);
    BoxBound(BoxBound&& other) noexcept;
    ~BoxBound();

    BoxBound& operator=(const BoxBound& other);
    BoxBound& operator=(BoxBound&& other) noexcept;

    /// 1 when set, else 0.
    int IsSet() const;

    /// The corners; a constant zero vector when not set.
    const Vector& GetLow() const;
    const Vector& GetHigh() const;

    /// Zero vectors when not set.
    Vector GetCentre() const;
    Vector GetHalfWidths() const;

    /// 1 when `point` lies in the box or on its surface, and when the box isn't set.
    int Contains(const Vector& point) const;

    /// Grows to hold `point`; a box that isn't set becomes that point.
    void Expand(const Vector& point);

    /// Grows to hold `other`; a box that isn't set becomes a copy, one not set adds nothing.
    void Expand(const BoxBound& other);

private:
    BoxBoundImpl* m_impl;  // owned; null: not set
};

}  // namespace zorvex_api
