#include "zorvex_api/SphereBound.h"

#include <algorithm>
#include <utility>

#include "geometry/ZeroVector.h"

namespace zorvex_api
{

struct SphereBoundImpl : public Allocator
{
    Vector centre;
    double radius;
};

SphereBound::SphereBound() : m_impl(nullptr) {}

SphereBound::SphereBound(const Vector& centre, double radius)
    : m_impl(new SphereBoundImpl{{}, centre, radius})
{
}

SphereBound::SphereBound(const SphereBound& other)
    : m_impl(other.m_impl == nullptr ? nullptr : new SphereBoundImpl(*other.m_impl))
{
}

SphereBound::SphereBound(SphereBound&& other) noexcept
    : m_impl(std::exchange(other.m_impl, nullptr))
{
}

SphereBound::~SphereBound()
{
    delete m_impl;
}

SphereBound& SphereBound::operator=(const SphereBound& other)
{
    if (this != &other)
    {
        SphereBound copy(other);
        std::swap(m_impl, copy.m_impl);
    }
    return *this;
}

SphereBound& SphereBound::operator=(SphereBound&& other) noexcept
{
    if (this != &other)
    {
        delete std::exchange(m_impl, std::exchange(other.m_impl, nullptr));
    }
    return *this;
}

int SphereBound::IsSet() const
{
    return m_impl != nullptr ? 1 : 0;
}

const Vector& SphereBound::GetCentre() const
{
    return m_impl ? m_impl->centre : internal::ZeroVector();
}

double SphereBound::GetRadius() const
{
    return m_impl ? m_impl->radius : 0.0;
}

int SphereBound::Contains(const Vector& point) const
{
    if (m_impl == nullptr)
    {
        return 1;
    }
    const Vector offset = point - m_impl->centre;
    return offset % offset <= m_impl->radius * m_impl->radius ? 1 : 0;
}

void SphereBound::Expand(const Vector& point)
{
    if (Contains(point))
    {
        return;
    }
    const UnitVector direction = Normalise(m_impl->centre - point);
    const Vector far = m_impl->centre + direction * m_impl->radius;
    const Vector centre = (far + point) * 0.5;
    m_impl->radius = (point - centre).Length();
    m_impl->centre = centre;
}

void SphereBound::Expand(const SphereBound& other)
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
    if (Equal(other.m_impl->centre, m_impl->centre))
    {
        m_impl->radius = std::max(m_impl->radius, other.m_impl->radius);
        return;
    }
    const UnitVector direction = Normalise(other.m_impl->centre - m_impl->centre);
    const Vector a = other.m_impl->centre + direction * other.m_impl->radius;
    const Vector b = m_impl->centre - direction * m_impl->radius;
    m_impl->centre = (a + b) * 0.5;
    m_impl->radius = (a - b).Length() * 0.5;
}

}  // namespace zorvex_api
