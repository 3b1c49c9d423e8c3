#include "zorvex_api/Vector.h"

#include <cmath>
#include <utility>

#include "geometry/RangeLimit.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Transf.h"

namespace zorvex_api
{

namespace
{

constexpr int kArithmeticFailure = 18;
constexpr int kOutOfRange = 16;
constexpr double kEqualTolerance = 1e-8;
constexpr double kAngleTolerance = 1e-11;

double* NewBlock(double x, double y, double z)
{
    double* block = static_cast<double*>(Allocator::allocate(3 * sizeof(double)));
    block[0] = x;
    block[1] = y;
    block[2] = z;
    return block;
}

void CheckIndex(int index)
{
    if (static_cast<unsigned int>(index) > 2)
    {
        throw Exception(kOutOfRange);
    }
}

/// Brings `vector` to length 1.
void MakeUnit(Vector& vector)
{
    vector /= vector.Length();
}

}  // namespace

Vector::Vector() : m_xyz(NewBlock(0.0, 0.0, 0.0)) {}

Vector::Vector(double x, double y, double z)
    : m_xyz(
          NewBlock(internal::RangeLimited(x), internal::RangeLimited(y), internal::RangeLimited(z)))
{
}

Vector::Vector(const double* xyz) : Vector()
{
    for (int i = 0; xyz != nullptr && i < 3; ++i)
    {
        m_xyz[i] = internal::RangeLimited(xyz[i]);
    }
}

Vector::Vector(const Vector& other) : m_xyz(NewBlock(other.x(), other.y(), other.z())) {}

Vector::Vector(Vector&& other) noexcept : m_xyz(std::exchange(other.m_xyz, nullptr)) {}

Vector::~Vector()
{
    if (m_xyz != nullptr)
    {
        Allocator::deallocate(m_xyz);
    }
}

Vector& Vector::operator=(const Vector& other)
{
    const double values[] = {other.x(), other.y(), other.z()};
    x() = values[0];
    y() = values[1];
    z() = values[2];
    return *this;
}

Vector& Vector::operator=(Vector&& other) noexcept
{
    std::swap(m_xyz, other.m_xyz);
    if (this != &other && other.m_xyz != nullptr)
    {
        Allocator::deallocate(std::exchange(other.m_xyz, nullptr));
    }
    return *this;
}

double Vector::x() const
{
    return m_xyz == nullptr ? 0.0 : m_xyz[0];
}

double Vector::y() const
{
    return m_xyz == nullptr ? 0.0 : m_xyz[1];
}

double Vector::z() const
{
    return m_xyz == nullptr ? 0.0 : m_xyz[2];
}

double& Vector::x()
{
    return Component(0);
}

double& Vector::y()
{
    return Component(1);
}

double& Vector::z()
{
    return Component(2);
}

double Vector::operator[](int index) const
{
    return Component(index);
}

double& Vector::operator[](int index)
{
    return Component(index);
}

double Vector::Component(int index) const
{
    CheckIndex(index);
    return m_xyz == nullptr ? 0.0 : m_xyz[index];
}

double& Vector::Component(int index)
{
    CheckIndex(index);
    if (m_xyz == nullptr)
    {
        m_xyz = NewBlock(0.0, 0.0, 0.0);
    }
    return m_xyz[index];
}

double Vector::Length() const
{
    return std::sqrt(*this % *this);
}

UnitVector Vector::Normalise() const
{
    return UnitVector(x(), y(), z());
}

Vector& Vector::operator+=(const Vector& other)
{
    for (int i = 0; i < 3; ++i)
    {
        Component(i) += other.Component(i);
    }
    return *this;
}

Vector& Vector::operator-=(const Vector& other)
{
    for (int i = 0; i < 3; ++i)
    {
        Component(i) -= other.Component(i);
    }
    return *this;
}

Vector& Vector::operator*=(double factor)
{
    for (int i = 0; i < 3; ++i)
    {
        Component(i) *= factor;
    }
    return *this;
}

Vector& Vector::operator/=(double divisor)
{
    if (divisor == 0.0)
    {
        throw Exception(kArithmeticFailure);
    }
    for (int i = 0; i < 3; ++i)
    {
        Component(i) /= divisor;
    }
    return *this;
}

Vector& Vector::operator*=(const Transf& transform)
{
    return *this = transform * *this;
}

UnitVector::UnitVector() = default;

UnitVector::UnitVector(double x, double y, double z) : Vector(x, y, z)
{
    MakeUnit(*this);
}

UnitVector::UnitVector(const double* xyz) : Vector(xyz)
{
    MakeUnit(*this);
}

UnitVector::UnitVector(const UnitVector& other) = default;

UnitVector::UnitVector(UnitVector&& other) noexcept = default;

UnitVector::~UnitVector() = default;

UnitVector& UnitVector::operator=(const UnitVector& other) = default;

UnitVector& UnitVector::operator=(UnitVector&& other) noexcept = default;

Vector operator+(const Vector& a, const Vector& b)
{
    Vector sum(a);
    sum += b;
    return sum;
}

Vector operator-(const Vector& a, const Vector& b)
{
    Vector difference(a);
    difference -= b;
    return difference;
}

Vector operator-(const Vector& a)
{
    return Vector(-a.x(), -a.y(), -a.z());
}

Vector operator*(const Vector& a, const Vector& b)
{
    return Vector(a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(),
                  a.x() * b.y() - a.y() * b.x());
}

double operator%(const Vector& a, const Vector& b)
{
    return a.x() * b.x() + a.y() * b.y() + a.z() * b.z();
}

Vector operator*(const Vector& a, double factor)
{
    Vector product(a);
    product *= factor;
    return product;
}

Vector operator*(double factor, const Vector& a)
{
    return a * factor;
}

Vector operator/(const Vector& a, double divisor)
{
    Vector quotient(a);
    quotient /= divisor;
    return quotient;
}

int operator==(const Vector& a, const Vector& b)
{
    return Equal(a, b);
}

int operator!=(const Vector& a, const Vector& b)
{
    return Equal(a, b) ? 0 : 1;
}

int Equal(const Vector& a, const Vector& b)
{
    return Equal(a, b, kEqualTolerance);
}

int Equal(const Vector& a, const Vector& b, double tolerance)
{
    for (int i = 0; i < 3; ++i)
    {
        if (!(std::fabs(a.Component(i) - b.Component(i)) <= tolerance))
        {
            return 0;
        }
    }
    return 1;
}

int Parallel(const Vector& a, const Vector& b)
{
    return Parallel(a, b, kAngleTolerance);
}

int Parallel(const Vector& a, const Vector& b, double tolerance)
{
    const Vector cross = a * b;
    return (a % a) * (b % b) * (tolerance * tolerance) >= cross % cross ? 1 : 0;
}

int ParallelSign(const Vector& a, const Vector& b)
{
    return ParallelSign(a, b, kAngleTolerance);
}

int ParallelSign(const Vector& a, const Vector& b, double tolerance)
{
    if (!Parallel(a, b, tolerance))
    {
        return 0;
    }
    return a % b > 0.0 ? 1 : -1;
}

int Perpendicular(const Vector& a, const Vector& b)
{
    return Perpendicular(a, b, kAngleTolerance);
}

int Perpendicular(const Vector& a, const Vector& b, double tolerance)
{
    const double dot = a % b;
    return (a % a) * (b % b) * (tolerance * tolerance) >= dot * dot ? 1 : 0;
}

UnitVector Normalise(const Vector& a)
{
    return a.Normalise();
}

}  // namespace zorvex_api
