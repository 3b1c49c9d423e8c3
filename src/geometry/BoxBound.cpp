#include "zorvex_api/BoxBound.h"

#include <algorithm>
#include <utility>

#include "geometry/ZeroVector.h"

namespace zorvex_api
{

struct BoxBoundImpl : public Allocator
{
    Vector low;
    Vector high;
};

BoxBound::BoxBound() : m_impl(nullptr) {}

BoxBound::BoxBound(const Vector& centre, const Vector& halfWidths)
    : m_impl(new BoxBoundImpl{{}, centre - halfWidths, centre + halfWidths})
{
}

BoxBound::BoxBound(const BoxBound& other)
    : m_impl(other.m_impl == nullptr ? nullptr : new BoxBoundImpl(*other.m_impl))
{
}

BoxBound::BoxBound(BoxBound&& other) noexcept : m_impl(std::exchange(other.m_impl, nullptr)) {}

BoxBound::~BoxBound()
{
    delete m_impl;
}

BoxBound& BoxBound::operator=(const BoxBound& other)
{
    if (this != &other)
    {
        BoxBound copy(other);
        std::swap(m_impl, copy.m_impl);
    }
    return *this;
}

BoxBound& BoxBound::operator=(BoxBound&& other) noexcept
{
    if (this != &other)
    {
        delete std::exchange(m_impl, std::exchange(other.m_impl, nullptr));
    }
    return *this;
}

int BoxBound::IsSet() const
{
    return m_impl != nullptr ? 1 : 0;
}

const Vector& BoxBound::GetLow() const
{
    return m_impl ? m_impl->low : internal::ZeroVector();
}

const Vector& BoxBound::GetHigh() const
{
    return m_impl ? m_impl->high : internal::ZeroVector();
}

Vector BoxBound::GetCentre() const
{
    return m_impl ? (m_impl->low + m_impl->high) / 2.0 : Vector();
}

Vector BoxBound::GetHalfWidths() const
{
    return m_impl ? (m_impl->high - m_impl->low) / 2.0 : Vector();
}

int BoxBound::Contains(const Vector& point) const
{
    for (int i = 0; m_impl != nullptr && i < 3; ++i)
    {
        const double component = point.Component(i);
        if (!(std::as_const(m_impl->low).Component(i) <= component &&
              component <= std::as_const(m_impl->high).Component(i)))
        {
            return 0;
        }
    }
    return 1;
}

void BoxBound::Expand(const Vector& point)
{
    if (m_impl == nullptr)
    {
        m_impl = new BoxBoundImpl{{}, point, point};
        return;
    }
    for (int i = 0; i < 3; ++i)
    {
        m_impl->low[i] = std::min(m_impl->low[i], point.Component(i));
        m_impl->high[i] = std::max(m_impl->high[i], point.Component(i));
    }
}

void BoxBound::Expand(const BoxBound& other)
{
    if (other.m_impl == nullptr)
    {
        return;
    }
    if (m_impl == nullptr)
    {
        *this = other;
        return;
    }
    for (int i = 0; i < 3; ++i)
    {
        m_impl->low[i] = std::min(m_impl->low[i], other.m_impl->low[i]);
        m_impl->high[i] = std::max(m_impl->high[i], other.m_impl->high[i]);
    }
}

}  // namespace zorvex_api
