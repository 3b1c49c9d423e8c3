#include "zorvex_api/Vector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "zorvex_api/Exception.h"
#include "zorvex_api/Transf.h"

namespace zorvex_api
{
namespace
{

/// The code of the Exception that `act` raises, 0 for none.
template <class Act>
int CodeOf(Act&& act)
{
    try
    {
        act();
        return 0;
    }
    catch (const Exception& exception)
    {
        EXPECT_TRUE(exception.GetMessage().IsEmpty());
        return exception.GetCode();
    }
}

void ExpectExactly(const Vector& v, double x, double y, double z)
{
    EXPECT_EQ(x, v.x());
    EXPECT_EQ(y, v.y());
    EXPECT_EQ(z, v.z());
}

TEST(Vector, ConstructorsLimitTheRangeAndSumsDoNot)
{
    ExpectExactly(Vector(-1e37, 0, 1e-37), 1e36, 0, 0);
    ExpectExactly(Vector(1e36, -1e36, -1e-36), 1e36, -1e36, -1e-36);  // the limits are strict
    ExpectExactly(Vector(9e35, 0, 0) + Vector(9e35, 0, 0), 1.8e36, 0, 0);
    ExpectExactly(Vector(1e36, 0, 0) * 2.0, 2e36, 0, 0);
    ExpectExactly(-(Vector(1e36, 0, 0) * 2.0), 1e36, 0, 0);
    ExpectExactly(Vector(1e20, 0, 0) * Vector(0, 1e20, 0), 0, 0, 1e36);
    EXPECT_TRUE(std::isnan(Vector(std::nan(""), 0, 0).x()));
    const double outside[] = {1e40, 1e-40, 3};
    ExpectExactly(Vector(outside), 1e36, 0, 3);
    ExpectExactly(Vector(static_cast<const double*>(nullptr)), 0, 0, 0);
    ExpectExactly(Vector(nullptr), 0, 0, 0);
}

TEST(Vector, ProductsFollowTheRightHand)
{
    const Vector a(1, 2, 3);
    const Vector b(-4, 5, 6);
    ExpectExactly(a * b, -3, -18, 13);
    EXPECT_EQ(24, a % b);
    ExpectExactly(2 * a - b / 2, 4, 1.5, 3);
    EXPECT_EQ(13, Vector(3, 4, 12).Length());
}

TEST(Vector, RefusesOtherComponentsAndZeroDivisors)
{
    Vector v(1, 2, 3);
    const Vector& constant = v;
    v[2] = 7;
    EXPECT_EQ(7, constant.Component(2));
    EXPECT_EQ(16, CodeOf([&] { v[3] = 1; }));
    EXPECT_EQ(16, CodeOf([&] { constant.Component(-1); }));
    EXPECT_EQ(18, CodeOf([&] { v /= -0.0; }));
    EXPECT_EQ(18, CodeOf([&] { v = v / 0.0; }));
    EXPECT_EQ(18, CodeOf([] { Vector(0, 0, 0).Normalise(); }));
    EXPECT_EQ(18, CodeOf([] { UnitVector(1e-37, 0, 0); }));
    EXPECT_EQ(18, CodeOf([] { UnitVector(static_cast<const double*>(nullptr)); }));
    ExpectExactly(UnitVector(), 0, 0, 0);
    ExpectExactly(UnitVector(0, -3, 4), 0, -0.6, 0.8);
}

TEST(Vector, MovedFromAndSelfAssignedVectorsStayUsable)
{
    Vector source(1, 2, 3);
    Vector target(std::move(source));
    ExpectExactly(source, 0, 0, 0);
    source.y() = 5;
    ExpectExactly(source, 0, 5, 0);
    Vector& same = target;
    target = same;
    target += target;
    ExpectExactly(target, 2, 4, 6);
}

TEST(Vector, ComparesAxisByAxisWithTheToleranceIncluded)
{
    EXPECT_EQ(1, Equal(Vector(1, 1, 1), Vector(1.5, 0.5, 1.5), 0.5));
    EXPECT_EQ(0, Equal(Vector(1, 1, 1), Vector(1, 1, 1.5000001), 0.5));
    EXPECT_TRUE(Vector(1, 0, 0) == Vector(1 + 9e-9, 0, 0));
    EXPECT_TRUE(Vector(1, 0, 0) != Vector(1 + 2e-8, 0, 0));
    EXPECT_EQ(0, Equal(Vector(std::nan(""), 0, 0), Vector(std::nan(""), 0, 0)));
}

TEST(Vector, TellsParallelFromPerpendicular)
{
    const Vector zero;
    const Vector x(2, 0, 0);
    EXPECT_EQ(1, Parallel(x, Vector(-5, 1e-11, 0)));
    EXPECT_EQ(0, Parallel(x, Vector(5, 1e-9, 0)));
    EXPECT_EQ(1, Parallel(x, Vector(5, 1e-9, 0), 1e-9));
    EXPECT_EQ(1, Parallel(zero, zero));
    EXPECT_EQ(1, Perpendicular(x, Vector(0, 3, -8)));
    EXPECT_EQ(0, Perpendicular(x, Vector(1e-9, 3, 0)));
    EXPECT_EQ(1, Perpendicular(zero, x));
    EXPECT_EQ(1, ParallelSign(x, Vector(4, 0, 0)));
    EXPECT_EQ(-1, ParallelSign(x, Vector(-4, 0, 0)));
    EXPECT_EQ(0, ParallelSign(x, Vector(0, 1, 0)));
    EXPECT_EQ(-1, ParallelSign(x, zero));
}

TEST(Vector, GoesThroughATransformationWithDivisionAtTheEnd)
{
    double matrix[4][4] = {{1, 2, 0, 3}, {0, 1, 0, -1}, {0, 0, 4, 0}, {0.5, 0, 0, 1}};
    Transf m;
    m.FromMatrix4x4(matrix);
    ExpectExactly(m * Vector(2, 1, 1), 3.5, 0, 2);
    Vector point(-2, -3, 1);  // the divisor is 0: infinities are limited
    point *= m;
    ExpectExactly(point, 1e36, 1e36, 1e36);
    EXPECT_TRUE(std::isnan((m * Vector(-2, 1, 1)).y()));
}

}  // namespace
}  // namespace zorvex_api
