#include <gtest/gtest.h>

#include <utility>

#include "zorvex_api/BoxBound.h"
#include "zorvex_api/SphereBound.h"

namespace zorvex_api
{
namespace
{

TEST(BoxBound, StandsOnCentreAndHalfWidths)
{
    const BoxBound box(Vector(1, 2, 3), Vector(1, 2, 0));
    EXPECT_TRUE(box.GetLow() == Vector(0, 0, 3) && box.GetHigh() == Vector(2, 4, 3));
    EXPECT_TRUE(box.GetCentre() == Vector(1, 2, 3) && box.GetHalfWidths() == Vector(1, 2, 0));
    EXPECT_EQ(1, box.Contains(Vector(2, 0, 3)));
    EXPECT_EQ(0, box.Contains(Vector(2, 0, 3.001)));
}

TEST(BoxBound, NotSetHoldsEveryPointAndGrowsFromTheFirst)
{
    BoxBound box;
    EXPECT_EQ(0, box.IsSet());
    EXPECT_EQ(1, box.Contains(Vector(1e9, 0, 0)));
    EXPECT_TRUE(box.GetLow() == Vector() && box.GetHalfWidths() == Vector());
    box.Expand(BoxBound());
    EXPECT_EQ(0, box.IsSet());
    box.Expand(Vector(1, 1, 1));
    EXPECT_EQ(0, box.Contains(Vector()));
    box.Expand(Vector(-1, 5, 1));
    EXPECT_TRUE(box.GetLow() == Vector(-1, 1, 1) && box.GetHigh() == Vector(1, 5, 1));
    box.Expand(BoxBound(Vector(0, 0, 4), Vector(1, 1, 1)));
    EXPECT_TRUE(box.GetLow() == Vector(-1, -1, 1) && box.GetHigh() == Vector(1, 5, 5));
}

TEST(BoxBound, CopiesAreIndependentAndCanBeUnset)
{
    BoxBound box(Vector(), Vector(1, 1, 1));
    BoxBound copy(box);
    copy.Expand(Vector(9, 9, 9));
    EXPECT_EQ(0, box.Contains(Vector(9, 9, 9)));
    box = BoxBound();
    EXPECT_EQ(0, box.IsSet());
    box.Expand(copy);
    BoxBound moved(std::move(copy));
    EXPECT_EQ(0, copy.IsSet());
    EXPECT_TRUE(box.GetHigh() == moved.GetHigh());
}

TEST(SphereBound, NotSetHoldsEveryPointAndSoNeverGrowsByOne)
{
    SphereBound sphere;
    sphere.Expand(Vector(1, 2, 3));
    EXPECT_EQ(0, sphere.IsSet());
    EXPECT_EQ(0.0, sphere.GetRadius());
    EXPECT_TRUE(sphere.GetCentre() == Vector());
    sphere.Expand(SphereBound(Vector(1, 0, 0), 2));
    EXPECT_EQ(1, sphere.IsSet());
    EXPECT_EQ(1, sphere.Contains(Vector(3, 0, 0)));
    EXPECT_EQ(0, sphere.Contains(Vector(3, 0.1, 0)));
}

TEST(SphereBound, GrowsToTheSegmentFromTheFarSide)
{
    SphereBound sphere(Vector(0, 0, 0), 1);
    sphere.Expand(Vector(0.5, 0, 0));
    EXPECT_EQ(1.0, sphere.GetRadius());
    sphere.Expand(Vector(3, 0, 0));
    EXPECT_TRUE(sphere.GetCentre() == Vector(1, 0, 0));
    EXPECT_DOUBLE_EQ(2.0, sphere.GetRadius());
    sphere.Expand(SphereBound(Vector(6, 0, 0), 1));
    EXPECT_TRUE(sphere.GetCentre() == Vector(3, 0, 0));
    EXPECT_DOUBLE_EQ(4.0, sphere.GetRadius());
    // a sphere inside is not tested for: the result shrinks to the segment
    sphere.Expand(SphereBound(Vector(4, 0, 0), 1));
    EXPECT_TRUE(sphere.GetCentre() == Vector(2, 0, 0));
    EXPECT_DOUBLE_EQ(3.0, sphere.GetRadius());
    sphere.Expand(SphereBound(Vector(2 + 5e-9, 0, 0), 5));
    EXPECT_TRUE(sphere.GetCentre() == Vector(2, 0, 0));
    EXPECT_EQ(5.0, sphere.GetRadius());
}

}  // namespace
}  // namespace zorvex_api
