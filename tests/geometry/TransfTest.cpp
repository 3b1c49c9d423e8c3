#include "zorvex_api/Transf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geometry/TransfImpl.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{
namespace
{

bool IsHighPrecision(const Transf& transf)
{
    return dynamic_cast<HPTransfImpl*>(transf.GetImplementation()) != nullptr;
}

void ExpectMatrix(const Transf& transf, const double (&expected)[4][4], double tolerance = 0.0)
{
    double matrix[4][4];
    transf.ToMatrix4x4(matrix);
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_NEAR(expected[i / 4][i % 4], matrix[i / 4][i % 4], tolerance)
            << "row " << i / 4 << " column " << i % 4;
    }
}

constexpr double kIdentity[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

Transf FromRows(const double (&rows)[4][4])
{
    Transf transf;
    transf.FromMatrix4x4(rows);
    return transf;
}

Transf RandomAffine(std::mt19937& random)
{
    std::uniform_real_distribution<double> entry(-10.0, 10.0);
    double rows[4][4] = {};
    for (int i = 0; i < 12; ++i)
    {
        rows[i / 4][i % 4] = entry(random);
    }
    rows[3][3] = 0.5 + std::fabs(entry(random));
    return FromRows(rows);
}

TEST(Transf, ConstructorsGiveTheirMatrices)
{
    ExpectMatrix(Transf(), kIdentity);
    ExpectMatrix(Transf(4.0), {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0.25}});
    ExpectMatrix(Transf(Vector(1, 2, 3)), {{1, 0, 0, 1}, {0, 1, 0, 2}, {0, 0, 1, 3}, {0, 0, 0, 1}});
    ExpectMatrix(Transf(UnitVector(0, 0, 1), std::acos(-1.0) / 2),
                 {{0, -1, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}, 1e-15);
    ExpectMatrix(Transf(UnitVector(1, 1, 1), std::acos(-1.0) * 2 / 3),
                 {{0, 0, 1, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}}, 1e-15);
    // axes that aren't at right angles: the third is still of length 1
    ExpectMatrix(Transf(Vector(7, 8, 9), UnitVector(1, 0, 0), UnitVector(3, 4, 0)),
                 {{1, 0.6, 0, 7}, {0, 0.8, 0, 8}, {0, 0, 1, 9}, {0, 0, 0, 1}}, 1e-15);
    EXPECT_THROW(Transf(Vector(), UnitVector(1, 0, 0), UnitVector(1, 0, 0)), Exception);
}

TEST(Transf, ScalesPointsByTheReciprocalOfItsScale)
{
    EXPECT_TRUE(Transf(2.0) * Vector(1, 1, 1) == Vector(2, 2, 2));
    EXPECT_EQ(0.5, Transf(2.0).GetScale());
}

TEST(Transf, ProductAppliesTheRightOneFirst)
{
    const Transf move(Vector(10, 0, 0));
    const Transf scale(2.0);
    EXPECT_TRUE(move * scale * Vector(1, 1, 1) == Vector(12, 2, 2));
    EXPECT_TRUE(Multiply(scale, move) * Vector(1, 1, 1) == Vector(22, 2, 2));
    const double a[4][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}};
    const double b[4][4] = {{2, 0, 1, 3}, {1, 1, 0, 2}, {0, 4, 1, 1}, {5, 0, 2, 1}};
    Transf product = FromRows(a);
    product *= FromRows(b);
    ExpectMatrix(product,
                 {{24, 14, 12, 14}, {56, 34, 28, 42}, {88, 54, 44, 70}, {120, 74, 60, 98}});
    product *= product;  // both sides are the same object
    EXPECT_EQ(24 * 24 + 14 * 56 + 12 * 88 + 14 * 120,
              product.GetImplementation()->m_rotation[0][0]);
}

TEST(Transf, InverseUndoesTheTransformation)
{
    std::mt19937 random(20240719);
    for (int i = 0; i < 50; ++i)
    {
        const Transf a = RandomAffine(random);
        ExpectMatrix(a * a.Inverse(), kIdentity, 1e-9);
        Transf perspective = a;
        perspective.GetImplementation()->m_perspective = Vector(0.3, -0.2, 0.1);
        Transf inverse;
        ExpectMatrix(InverseMultiply(perspective, perspective, inverse), kIdentity, 1e-9);
        ExpectMatrix(perspective * inverse, kIdentity, 1e-9);
    }
}

TEST(Transf, InverseOfAffineScalesItsTranslation)
{
    const Transf inverse =
        FromRows({{2, 0, 0, 8}, {0, 4, 0, 8}, {0, 0, 8, 8}, {0, 0, 0, 0.5}}).Inverse();
    ExpectMatrix(inverse, {{0.5, 0, 0, -8}, {0, 0.25, 0, -4}, {0, 0, 0.125, -2}, {0, 0, 0, 2}});
}

TEST(Transf, SingularBlockInvertsToTheIdentity)
{
    const Transf flat = FromRows({{1, 2, 3, 4}, {2, 4, 6, 5}, {0, 0, 1, 6}, {0, 0, 0, 7}});
    ExpectMatrix(flat.Inverse(), kIdentity);
    // a zero row with perspective ends without a result
    ExpectMatrix(FromRows({{0, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 1}}).Inverse(),
                 kIdentity);
    // a regular matrix whose block is singular goes through the full inversion
    const double swap[4][4] = {{0, 0, 0, 1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}};
    ExpectMatrix(FromRows(swap).Inverse(), swap);

    const Transf highPrecision = flat.HPInverse();
    EXPECT_TRUE(IsHighPrecision(highPrecision));
    ExpectMatrix(highPrecision, {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 1}});
    HPDouble rotation[9];
    highPrecision.GetImplementation()->GetHPRotation(rotation);
    EXPECT_EQ(1.0, rotation[4].hi);
}

/// How far the high-precision half of `transf`, an identity but for rounding, is off.
double Deviation(const Transf& transf)
{
    HPDouble matrix[16];
    transf.GetImplementation()->GetHPMatrix(matrix);
    double worst = 0.0;
    for (int i = 0; i < 16; ++i)
    {
        const double expected = i % 5 == 0 ? 1.0 : 0.0;
        worst = std::max(worst, std::fabs((matrix[i].hi - expected) + matrix[i].lo));
    }
    return worst;
}

TEST(Transf, HighPrecisionKeepsWhatDoubleLoses)
{
    std::mt19937 random(7);
    for (int i = 0; i < 50; ++i)
    {
        const Transf a = RandomAffine(random);
        Transf inverse;
        const Transf product = HPInverseMultiply(a, a, inverse);
        EXPECT_TRUE(IsHighPrecision(product));
        EXPECT_LT(Deviation(product), 1e-25);
        EXPECT_LT(Deviation(HPMultiply(a, inverse)), 1e-25);
        ExpectMatrix(inverse, {{0}, {0}, {0}, {0, 0, 0, 1 / a.GetScale()}}, 1e300);
    }
}

TEST(Transf, HighPrecisionRoundsLikeLongArithmetic)
{
    const HPDouble third = HPDouble{1.0, 0.0} / HPDouble{3.0, 0.0};
    EXPECT_EQ(1.0 / 3.0, third.hi);
    EXPECT_EQ(0x1.5555555555555p-56, third.lo);
    const HPDouble sum = HPDouble{1.0, 0.0} + HPDouble{0x1p-80, 0.0} - HPDouble{1.0, 0.0};
    EXPECT_EQ(0x1p-80, sum.hi);
    const HPDouble square = HPDouble{1 + 0x1p-40, 0.0} * HPDouble{1 + 0x1p-40, 0.0};
    EXPECT_EQ(1 + 0x1p-39, square.hi);
    EXPECT_EQ(0x1p-80, square.lo);
}

TEST(Transf, AssignmentTakesOverThePrecision)
{
    const Transf plain(Vector(1, 2, 3));
    const Transf high = Transf(UnitVector(1, 2, 3), 0.7).HPInverse();
    Transf target = plain;
    target = high;
    EXPECT_TRUE(IsHighPrecision(target));
    HPDouble expected[9];
    HPDouble copied[9];
    high.GetImplementation()->GetHPRotation(expected);
    Transf(target).GetImplementation()->GetHPRotation(copied);
    for (int i = 0; i < 9; ++i)
    {
        EXPECT_EQ(expected[i].hi, copied[i].hi);
        EXPECT_EQ(expected[i].lo, copied[i].lo);
    }
    target = plain;
    EXPECT_FALSE(IsHighPrecision(target));
    Transf moved(std::move(target));
    ExpectMatrix(target, kIdentity);
    moved.Initialise();
    ExpectMatrix(moved, kIdentity);
}

TEST(Transf, HighPrecisionInverseWithPerspectiveIsThePlainOne)
{
    const double rows[4][4] = {{2, 1, 0, 3}, {0, 3, 1, 1}, {1, 0, 4, 2}, {0.5, 0, 0, 1}};
    const Transf inverse = FromRows(rows).HPInverse();
    EXPECT_TRUE(IsHighPrecision(inverse));
    double expected[4][4];
    FromRows(rows).Inverse().ToMatrix4x4(expected);
    ExpectMatrix(inverse, expected);
}

}  // namespace
}  // namespace zorvex_api
