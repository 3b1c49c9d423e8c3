#pragma once

#include <cstddef>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

class Object;
class Transf;
class UnitVector;

/// Three doubles: a point, a displacement or a direction. Lengths are in the document's unit.
///
/// A value: copies are independent. Where "range limited" stands, a component of a magnitude
/// below 1e-36 becomes 0 and one above 1e36 becomes +1e36.
class ZORVEX_API Vector : public Allocator
{
public:
    /// (0, 0, 0).
    Vector();

    /// The given components, range limited.
    Vector(double x, double y, double z);

    /// The three doubles at `xyz`, range limited; (0, 0, 0) for null.
    Vector(const double* xyz);

    /// (0, 0, 0), as for either kind of null pointer.
    Vector(std::nullptr_t) : Vector() {}

    /// The content of a `VectorField` object of the main namespace; (0, 0, 0) for null, for an
    /// object of another class and for a content that can't be read.
    Vector(Object* object);

    /// Copies without range limiting.
    Vector(const Vector& other);

    /// Takes over the components; `other` reads as (0, 0, 0) afterwards.
    Vector(Vector&& other) noexcept;

    virtual ~Vector();

    Vector& operator=(const Vector& other);
    Vector& operator=(Vector&& other) noexcept;

    double x() const;
    double& x();
    double y() const;
    double& y();
    double z() const;
    double& z();

    /// Component 0 to 2. @throws Exception code 16 for any other index.
    double operator[](int index) const;
    double& operator[](int index);

    /// Same as `operator[]`.
    double Component(int index) const;
    double& Component(int index);

    /// Square root of x*x + y*y + z*z.
    double Length() const;

    /// The direction of this vector. @throws Exception code 18 for a zero length.
    UnitVector Normalise() const;

    /// Componentwise, not range limited.
    Vector& operator+=(const Vector& other);
    Vector& operator-=(const Vector& other);
    Vector& operator*=(double factor);

    /// @throws Exception code 18 for a zero divisor.
    Vector& operator/=(double divisor);

    /// Carries this point through `transform` with division by the fourth component, range
    /// limited at the end.
    Vector& operator*=(const Transf& transform);

    /// The cross product has no assigning form; without this a Vector would pass for a translation.
    Vector& operator*=(const Vector& other) = delete;

private:
    double* m_xyz;  // owned block of three; null only after a move
};

/// A Vector of length 1, unless default-constructed or changed through its components.
class ZORVEX_API UnitVector : public Vector
{
public:
    /// (0, 0, 0), which is not of unit length.
    UnitVector();

    /// The direction of the given components, range limited first.
    /// @throws Exception code 18 for a zero length.
    UnitVector(double x, double y, double z);

    /// As above from three doubles; null throws code 18 as well.
    UnitVector(const double* xyz);

    UnitVector(const UnitVector& other);
    UnitVector(UnitVector&& other) noexcept;
    ~UnitVector() override;

    UnitVector& operator=(const UnitVector& other);
    UnitVector& operator=(UnitVector&& other) noexcept;
};

/// Componentwise sum and difference, not range limited.
ZORVEX_API Vector operator+(const Vector& a, const Vector& b);
ZORVEX_API Vector operator-(const Vector& a, const Vector& b);

/// Negation, range limited.
ZORVEX_API Vector operator-(const Vector& a);

/// Cross product, range limited.
ZORVEX_API Vector operator*(const Vector& a, const Vector& b);

/// Dot product.
ZORVEX_API double operator%(const Vector& a, const Vector& b);

/// Scaled, not range limited.
ZORVEX_API Vector operator*(const Vector& a, double factor);
ZORVEX_API Vector operator*(double factor, const Vector& a);

/// @throws Exception code 18 for a zero divisor.
ZORVEX_API Vector operator/(const Vector& a, double divisor);

/// The point `a` through `transform`, see `Vector::operator*=(const Transf&)`.
ZORVEX_API Vector operator*(const Transf& transform, const Vector& a);

/// `Equal` with the tolerance 1e-8.
ZORVEX_API int operator==(const Vector& a, const Vector& b);
ZORVEX_API int operator!=(const Vector& a, const Vector& b);

/// 1 when the components differ by at most `tolerance` (1e-8 by default) on each axis, else 0.
ZORVEX_API int Equal(const Vector& a, const Vector& b);
ZORVEX_API int Equal(const Vector& a, const Vector& b, double tolerance);

/// 1 when the sine of the angle is at most `tolerance` (1e-11 by default), else 0. A zero vector
/// is parallel to everything.
ZORVEX_API int Parallel(const Vector& a, const Vector& b);
ZORVEX_API int Parallel(const Vector& a, const Vector& b, double tolerance);

/// 0 when not `Parallel`, +1 for a positive dot product, -1 otherwise.
ZORVEX_API int ParallelSign(const Vector& a, const Vector& b);
ZORVEX_API int ParallelSign(const Vector& a, const Vector& b, double tolerance);

/// 1 when the cosine of the angle is at most `tolerance` (1e-11 by default), else 0. A zero vector
/// is perpendicular to everything.
ZORVEX_API int Perpendicular(const Vector& a, const Vector& b);
ZORVEX_API int Perpendicular(const Vector& a, const Vector& b, double tolerance);

/// The direction of `a`. @throws Exception code 18 for a zero length.
ZORVEX_API UnitVector Normalise(const Vector& a);

}  // namespace zorvex_api
