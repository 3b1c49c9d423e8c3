#include "zorvex_api/Transf.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "geometry/LuInverse.h"
#include "geometry/RangeLimit.h"
#include "geometry/TransfImpl.h"

namespace zorvex_api
{

namespace
{

std::unique_ptr<TransfImpl> CopyOf(const TransfImpl& impl)
{
    if (const auto* highPrecision = dynamic_cast<const HPTransfImpl*>(&impl))
    {
        return std::make_unique<HPTransfImpl>(*highPrecision);
    }
    return std::make_unique<TransfImpl>(impl);
}

/// A high-precision copy; a plain record gets zero low parts.
HPTransfImpl Upgraded(const TransfImpl& impl)
{
    if (const auto* highPrecision = dynamic_cast<const HPTransfImpl*>(&impl))
    {
        return *highPrecision;
    }
    return HPTransfImpl(impl);
}

double ToDouble(double value)
{
    return value;
}

double ToDouble(const HPDouble& value)
{
    return value.hi;
}

bool IsZero(double value)
{
    return value == 0.0;
}

bool IsZero(const HPDouble& value)
{
    return value.hi == 0.0 && value.lo == 0.0;
}

/// The inverse of an affine transformation with a lower right entry, in double or HPDouble.
template <class Number>
struct AffineInverse
{
    Number rotation[9];
    Number translation[3];
    Number scale;

    /// False when the block is singular; nothing is set then.
    bool Compute(const Number (&r)[9], const Number (&t)[3], const Number& lowerRight)
    {
        // cofactors of the first row, shared by the determinant and the first column of the
        // adjugate
        const Number c0 = r[4] * r[8] - r[5] * r[7];
        const Number c1 = r[5] * r[6] - r[3] * r[8];
        const Number c2 = r[3] * r[7] - r[4] * r[6];
        const Number determinant = r[0] * c0 + r[1] * c1 + r[2] * c2;
        if (IsZero(determinant))
        {
            return false;
        }
        const Number adjugate[9] = {c0, r[2] * r[7] - r[1] * r[8], r[1] * r[5] - r[2] * r[4],
                                    c1, r[0] * r[8] - r[2] * r[6], r[2] * r[3] - r[0] * r[5],
                                    c2, r[1] * r[6] - r[0] * r[7], r[0] * r[4] - r[1] * r[3]};
        for (int i = 0; i < 9; ++i)
        {
            rotation[i] = adjugate[i] / determinant;
        }
        for (int row = 0; row < 3; ++row)
        {
            const Number* inverse = rotation + 3 * row;
            const Number turned = inverse[0] * t[0] + inverse[1] * t[1] + inverse[2] * t[2];
            translation[row] = -turned / lowerRight;
        }
        scale = Number{1.0} / lowerRight;
        return true;
    }

    void StorePlain(TransfImpl& impl) const
    {
        for (int i = 0; i < 9; ++i)
        {
            impl.m_rotation[i / 3][i % 3] = ToDouble(rotation[i]);
        }
        for (int i = 0; i < 3; ++i)
        {
            impl.m_translation[i] = ToDouble(translation[i]);
        }
        impl.m_scale = ToDouble(scale);
    }
};

TransfImpl* NewAffineInverse(const TransfImpl& impl)
{
    auto result = std::make_unique<TransfImpl>();
    const auto& r = impl.m_rotation;
    const double rotation[9] = {r[0][0], r[0][1], r[0][2], r[1][0], r[1][1],
                                r[1][2], r[2][0], r[2][1], r[2][2]};
    const Vector& t = impl.m_translation;
    const double translation[3] = {t.x(), t.y(), t.z()};
    AffineInverse<double> inverse;
    if (inverse.Compute(rotation, translation, impl.m_scale))
    {
        for (double& component : inverse.translation)
        {
            component = internal::RangeLimited(component);
        }
        inverse.StorePlain(*result);
    }
    return result.release();
}

TransfImpl* NewHPAffineInverse(const HPTransfImpl& impl)
{
    auto result = std::make_unique<HPTransfImpl>();
    HPDouble rotation[9];
    HPDouble translation[3];
    impl.GetHPRotation(rotation);
    impl.GetHPTranslation(translation);
    AffineInverse<HPDouble> inverse;
    if (inverse.Compute(rotation, translation, impl.GetHPScale()))
    {
        inverse.StorePlain(*result);
        result->SetHPRotation(inverse.rotation);
        result->SetHPTranslation(inverse.translation);
        result->SetHPScale(inverse.scale);
        return result.release();
    }
    for (auto& row : result->m_rotation)
    {
        row[0] = row[1] = row[2] = 0.0;
    }
    return result.release();
}

}  // namespace

Transf::Transf() : m_impl(new TransfImpl) {}

Transf::Transf(TransfImpl* impl) : m_impl(impl) {}

Transf::Transf(double factor) : Transf()
{
    m_impl->m_scale = 1.0 / factor;
}

Transf::Transf(const Vector& translation) : Transf()
{
    m_impl->m_translation = translation;
}

Transf::Transf(const UnitVector& axis, double angle) : Transf()
{
    const double x = axis.x();
    const double y = axis.y();
    const double z = axis.z();
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double d = 1.0 - c;
    const double rotation[3][3] = {{x * x * d + c, x * y * d - z * s, x * z * d + y * s},
                                   {x * y * d + z * s, y * y * d + c, y * z * d - x * s},
                                   {x * z * d - y * s, y * z * d + x * s, z * z * d + c}};
    std::copy(&rotation[0][0], &rotation[0][0] + 9, &m_impl->m_rotation[0][0]);
}

Transf::Transf(const Vector& origin, const UnitVector& x, const UnitVector& y) : Transf()
{
    const UnitVector z = Normalise(x * y);
    for (int row = 0; row < 3; ++row)
    {
        m_impl->m_rotation[row][0] = x.Component(row);
        m_impl->m_rotation[row][1] = y.Component(row);
        m_impl->m_rotation[row][2] = z.Component(row);
    }
    m_impl->m_translation = origin;
}

Transf::Transf(const Transf& other) : m_impl(CopyOf(*other.GetImplementation()).release()) {}

Transf::Transf(Transf&& other) noexcept : m_impl(std::exchange(other.m_impl, nullptr)) {}

Transf::~Transf()
{
    delete m_impl;
}

Transf& Transf::operator=(const Transf& other)
{
    if (this != &other)
    {
        std::unique_ptr<TransfImpl> copy = CopyOf(*other.GetImplementation());
        delete std::exchange(m_impl, copy.release());
    }
    return *this;
}

Transf& Transf::operator=(Transf&& other) noexcept
{
    if (this != &other)
    {
        delete std::exchange(m_impl, std::exchange(other.m_impl, nullptr));
    }
    return *this;
}

void Transf::Initialise()
{
    GetImplementation()->Initialise();
}

void Transf::GetRotation(double rotation[3][3]) const
{
    const auto& own = GetImplementation()->m_rotation;
    std::copy(&own[0][0], &own[0][0] + 9, &rotation[0][0]);
}

const Vector& Transf::GetTranslation() const
{
    return GetImplementation()->m_translation;
}

const Vector& Transf::GetPerspective() const
{
    return GetImplementation()->m_perspective;
}

double Transf::GetScale() const
{
    return GetImplementation()->m_scale;
}

void Transf::ToMatrix4x4(double matrix[4][4]) const
{
    const TransfImpl& impl = *GetImplementation();
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            matrix[row][column] = impl.m_rotation[row][column];
        }
        matrix[row][3] = impl.m_translation.Component(row);
        matrix[3][row] = impl.m_perspective.Component(row);
    }
    matrix[3][3] = impl.m_scale;
}

void Transf::FromMatrix4x4(double matrix[4][4])
{
    TransfImpl& impl = *GetImplementation();
    impl.Initialise();
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            impl.m_rotation[row][column] = matrix[row][column];
        }
        impl.m_translation[row] = matrix[row][3];
        impl.m_perspective[row] = matrix[3][row];
    }
    impl.m_scale = matrix[3][3];
}

void Transf::FromMatrix4x4(const double matrix[4][4])
{
    double copy[4][4];
    std::copy(&matrix[0][0], &matrix[0][0] + 16, &copy[0][0]);
    FromMatrix4x4(copy);
}

Transf& Transf::operator*=(const Transf& other)
{
    double a[4][4];
    double b[4][4];
    double product[4][4];
    ToMatrix4x4(a);
    other.ToMatrix4x4(b);
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            double sum = a[row][0] * b[0][column];
            for (int k = 1; k < 4; ++k)
            {
                sum += a[row][k] * b[k][column];
            }
            product[row][column] = sum;
        }
    }
    FromMatrix4x4(product);
    return *this;
}

Transf Transf::Inverse() const
{
    const TransfImpl& impl = *GetImplementation();
    if (!impl.HasPerspective())
    {
        return Transf(NewAffineInverse(impl));
    }
    Transf result;
    double matrix[4][4];
    ToMatrix4x4(matrix);
    if (internal::InvertMatrix4x4(matrix))
    {
        result.FromMatrix4x4(matrix);
    }
    return result;
}

Transf Transf::HPInverse() const
{
    const TransfImpl& impl = *GetImplementation();
    if (impl.HasPerspective())
    {
        return Transf(new HPTransfImpl(*Inverse().GetImplementation()));
    }
    return Transf(NewHPAffineInverse(Upgraded(impl)));
}

Transf Transf::Multiply(const Transf& a, const Transf& b)
{
    Transf product(a);
    product *= b;
    return product;
}

Transf Transf::InverseMultiply(const Transf& a, const Transf& b, Transf& inverse)
{
    const Transf right(b);  // `inverse` may be `b` itself
    inverse = a.Inverse();
    return inverse * right;
}

Transf Transf::HPMultiply(const Transf& a, const Transf& b)
{
    HPDouble left[16];
    HPDouble right[16];
    Upgraded(*a.GetImplementation()).GetHPMatrix(left);
    Upgraded(*b.GetImplementation()).GetHPMatrix(right);
    HPDouble product[16];
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            HPDouble sum = left[4 * row] * right[column];
            for (int k = 1; k < 4; ++k)
            {
                sum = sum + left[4 * row + k] * right[4 * k + column];
            }
            product[4 * row + column] = sum;
        }
    }
    auto result = std::make_unique<HPTransfImpl>();
    result->SetHPMatrix(product);
    return Transf(result.release());
}

Transf Transf::HPInverseMultiply(const Transf& a, const Transf& b, Transf& inverse)
{
    const Transf right(b);  // `inverse` may be `b` itself
    inverse = a.HPInverse();
    return HPMultiply(inverse, right);
}

TransfImpl* Transf::GetImplementation() const
{
    if (m_impl == nullptr)
    {
        m_impl = new TransfImpl;
    }
    return m_impl;
}

Transf operator*(const Transf& a, const Transf& b)
{
    return Transf::Multiply(a, b);
}

Transf Multiply(const Transf& a, const Transf& b)
{
    return Transf::Multiply(a, b);
}

Transf InverseMultiply(const Transf& a, const Transf& b, Transf& inverse)
{
    return Transf::InverseMultiply(a, b, inverse);
}

Transf HPMultiply(const Transf& a, const Transf& b)
{
    return Transf::HPMultiply(a, b);
}

Transf HPInverseMultiply(const Transf& a, const Transf& b, Transf& inverse)
{
    return Transf::HPInverseMultiply(a, b, inverse);
}

Vector operator*(const Transf& transform, const Vector& a)
{
    const TransfImpl& impl = *transform.GetImplementation();
    const Vector& p = impl.m_perspective;
    const Vector& t = impl.m_translation;
    const auto& r = impl.m_rotation;
    const double x = a.x();
    const double y = a.y();
    const double z = a.z();
    const double divisor = p.x() * x + impl.m_scale + p.y() * y + p.z() * z;
    const double u = (r[0][0] * x + r[0][1] * y + r[0][2] * z + t.x()) / divisor;
    const double v = (r[1][0] * x + r[1][1] * y + r[1][2] * z + t.y()) / divisor;
    const double w = (r[2][0] * x + r[2][1] * y + r[2][2] * z + t.z()) / divisor;
    return Vector(u, v, w);
}

}  // namespace zorvex_api
