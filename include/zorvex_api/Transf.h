#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Vector.h"

namespace zorvex_api
{

class TransfImpl;

/// A homogeneous transformation of points, a 4x4 matrix for column vectors:
///
///     r00 r01 r02 tx
///     r10 r11 r12 ty
///     r20 r21 r22 tz
///     p0  p1  p2  scale
///
/// The 3x3 block need not be orthonormal. A point (x, y, z, 1) is multiplied from the left and
/// divided by its fourth component, so `scale` is the reciprocal of a uniform scale factor.
///
/// A value: copies are independent. A high-precision Transf (a result of the HP operations) holds
/// each entry but the perspective as a sum of two doubles, and so do its copies.
class ZORVEX_API Transf : public Allocator
{
public:
    /// The identity.
    Transf();

    /// Scales points by `factor`: the identity with `scale` 1.0 / factor.
    Transf(double factor);

    /// The translation by `translation`.
    Transf(const Vector& translation);

    /// The right-handed rotation about `axis` by `angle` radians.
    Transf(const UnitVector& axis, double angle);

    /// Columns `x`, `y` and the unit vector of their cross product, translation `origin`.
    /// @throws Exception code 18 when the axes are parallel.
    Transf(const Vector& origin, const UnitVector& x, const UnitVector& y);

    Transf(const Transf& other);

    /// Takes over the values; `other` reads as the identity afterwards.
    Transf(Transf&& other) noexcept;

    ~Transf();

    Transf& operator=(const Transf& other);
    Transf& operator=(Transf&& other) noexcept;

    /// Resets to the identity.
    void Initialise();

    /// The upper left block, first index the row.
    void GetRotation(double rotation[3][3]) const;

    /// The three entries right of the block. The reference lives as long as this Transf does and is
    /// not assigned to.
    const Vector& GetTranslation() const;

    /// The three entries below the block; lifetime as `GetTranslation`.
    const Vector& GetPerspective() const;

    /// The lower right entry.
    double GetScale() const;

    /// Gives the matrix, first index the row.
    void ToMatrix4x4(double matrix[4][4]) const;

    /// Takes the matrix over as it is, without range limiting.
    void FromMatrix4x4(double matrix[4][4]);
    void FromMatrix4x4(const double matrix[4][4]);

    /// The product with this Transf on the left.
    Transf& operator*=(const Transf& other);

    /// The inverse in double. A singular block without perspective gives the identity.
    Transf Inverse() const;

    /// The inverse with each entry carried as a sum of two doubles. A singular block without
    /// perspective gives a high-precision Transf whose plain block is zero; with perspective the
    /// plain inverse is given.
    Transf HPInverse() const;

    /// a * b: `b` is applied first.
    static Transf Multiply(const Transf& a, const Transf& b);

    /// `inverse` becomes the inverse of `a`; returns `inverse` * `b`.
    static Transf InverseMultiply(const Transf& a, const Transf& b, Transf& inverse);

    /// As `Multiply` and `InverseMultiply`, in high precision.
    static Transf HPMultiply(const Transf& a, const Transf& b);
    static Transf HPInverseMultiply(const Transf& a, const Transf& b, Transf& inverse);

    /// The record, owned by this Transf.
    TransfImpl* GetImplementation() const;

private:
    explicit Transf(TransfImpl* impl);

    mutable TransfImpl* m_impl;  // owned; null only after a move, made again on demand
};

/// a * b: `b` is applied first.
ZORVEX_API Transf operator*(const Transf& a, const Transf& b);

/// The free forms of the static operations of Transf.
ZORVEX_API Transf Multiply(const Transf& a, const Transf& b);
ZORVEX_API Transf InverseMultiply(const Transf& a, const Transf& b, Transf& inverse);
ZORVEX_API Transf HPMultiply(const Transf& a, const Transf& b);
ZORVEX_API Transf HPInverseMultiply(const Transf& a, const Transf& b, Transf& inverse);

}  // namespace zorvex_api
