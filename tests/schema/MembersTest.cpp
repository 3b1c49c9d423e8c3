// Members of generated classes that are written by hand.

#include <gtest/gtest.h>

#include <memory>

#include "support/SessionTest.h"
#include "zorvex60/Bound.h"
#include "zorvex60/FeatureTree.h"
#include "zorvex60/InstanceGraph.h"
#include "zorvex60/InternalRep.h"
#include "zorvex60/Material.h"
#include "zorvex60/Orthographic.h"
#include "zorvex60/Perspective.h"
#include "zorvex60/ProductRevisionView.h"
#include "zorvex60/Representation.h"
#include "zorvex60/VectorField.h"
#include "zorvex60/ViewControl.h"
#include "zorvex_api/Exception.h"

namespace
{

using namespace zorvex60;
using zorvex_api::BoxBound;
using zorvex_api::SphereBound;
using zorvex_test::Utf8;

class MembersTest : public zorvex_test::SessionTest
{
};

constexpr double kColour[] = {0.25, 0.5, 0.7};

TEST_F(MembersTest, MaterialOfAColourEqualsThatColour)
{
    Material material;
    EXPECT_EQ(0, material.EqualTo(kColour));
    material.Initialise(kColour);
    EXPECT_EQ(1, material.EqualTo(kColour));
    EXPECT_EQ(80.0, material.GetShininess());
    double specular[3] = {};
    EXPECT_TRUE(material.GetSpecular(specular).Ok());
    EXPECT_EQ(1.0, specular[1]);

    const double near[] = {0.25, 0.5 + 0.9e-5, 0.7};
    const double far[] = {0.25, 0.5 + 1.2e-5, 0.7};
    EXPECT_EQ(1, material.EqualTo(near));
    EXPECT_EQ(0, material.EqualTo(far));
    material.SetShininess(80.00001);
    material.SetAlpha(0.99999);
    EXPECT_EQ(1, material.EqualTo(kColour));
    material.SetShininess(80.000011);
    EXPECT_EQ(0, material.EqualTo(kColour));
}

TEST_F(MembersTest, MaterialTakesOverTheColoursThatAnotherHas)
{
    Material from;
    from.SetAmbient(kColour);
    from.SetAlpha(0.5);
    Material to;
    const double old[] = {1.0, 1.0, 1.0};
    to.SetDiffuse(old);
    to.Initialise(from);
    double read[3] = {};
    EXPECT_TRUE(to.GetAmbient(read).Ok());
    EXPECT_EQ(0.7, read[2]);
    EXPECT_TRUE(to.GetDiffuse(read).Ok());
    EXPECT_EQ(1.0, read[2]);
    EXPECT_EQ(0.5, to.GetAlpha());
}

TEST_F(MembersTest, BoundKeepsBoxesAndSpheres)
{
    Bound bound;
    BoxBound box;
    SphereBound sphere;
    EXPECT_EQ(0, bound.GetBound(box));
    bound.SetBound(BoxBound(Vector(1.0, 2.0, 3.0), Vector(4.0, 5.0, 6.0)));
    ASSERT_EQ(1, bound.GetBound(box));
    EXPECT_EQ(6.0, box.GetHalfWidths().z());
    EXPECT_EQ(0, bound.GetBound(sphere));
    EXPECT_TRUE(bound.GetType() == eBoundingTypeBox);

    bound.SetBound(SphereBound(Vector(7.0, 8.0, 9.0), 2.5));
    ASSERT_EQ(1, bound.GetBound(sphere));
    EXPECT_EQ(2.5, sphere.GetRadius());
    EXPECT_EQ(8.0, sphere.GetCentre().y());
    EXPECT_EQ(0, bound.GetBound(box));
}

TEST_F(MembersTest, BoundExtendsItsValuesAsNeeded)
{
    Bound bound;
    bound.SetRadius(3.0);
    Array<double> values;
    ASSERT_TRUE(bound.GetValues(values).Ok());
    ASSERT_EQ(4, values.GetSize());
    EXPECT_EQ(3.0, values[3]);
    bound.SetLowCorner(nullptr);
    ASSERT_TRUE(bound.GetValues(values).Ok());
    EXPECT_EQ(4, values.GetSize());
    const double corner[] = {1.0, 2.0, 3.0};
    bound.SetHighCorner(corner);
    bound.SetCentre(corner);
    ASSERT_TRUE(bound.GetValues(values).Ok());
    ASSERT_EQ(6, values.GetSize());
    EXPECT_EQ(2.0, values[1]);
    EXPECT_EQ(1.0, values[3]);
    BoxBound box;
    EXPECT_EQ(1, bound.GetBound(box));
}

TEST_F(MembersTest, ExternalReferenceHasTextAndFlag)
{
    Representation representation;
    EXPECT_EQ(0, representation.HasExternalRefURI());
    EXPECT_TRUE(representation.SetExternalRefURI(u"parts/plate.stp").Ok());
    representation.SetExternalRefLoad(1);
    EXPECT_EQ("parts/plate.stp", Utf8(representation.GetExternalRefURI()));
    EXPECT_EQ(1, representation.GetExternalRefLoad());
    EXPECT_EQ(1, representation.HasExternalRefURI());
    EXPECT_TRUE(representation.DeleteExternalRef().Ok());
    EXPECT_EQ("", Utf8(representation.GetExternalRefURI()));
}

TEST_F(MembersTest, ClientDataStandsBelowTheLocationInItsFormat)
{
    Representation representation;
    representation.SetFormat(eRepresentationFormatType("STEP"));
    representation.SetExternalRefURI(u"plate.stp");
    EXPECT_EQ(nullptr, representation.GetHandle(0));
    int data = 1;
    representation.AddHandle(&data);
    EXPECT_EQ(1, representation.NumberOfHandles());
    EXPECT_EQ(&data, representation.GetHandle(0));
    EXPECT_EQ(nullptr, representation.GetHandle(-1));
    EXPECT_EQ(nullptr, representation.GetHandle(1));
    Array<Handle> targets;
    EXPECT_TRUE(representation.GetExternalRef(targets).Ok());
    ASSERT_EQ(1, targets.GetSize());
    EXPECT_EQ("STEP", Utf8(targets[0].GetFormat()));

    int other = 2;
    representation.AddHandle(&other);
    EXPECT_EQ(2, representation.NumberOfHandles());
    EXPECT_EQ(&other, representation.GetHandle(1));
    void* list[] = {&other, &data};
    representation.SetHandles(2, list);
    EXPECT_EQ(2, representation.NumberOfHandles());
    EXPECT_EQ(&other, representation.GetHandle(0));
    representation.SetHandles(1, list);
    EXPECT_EQ(1, representation.NumberOfHandles());
    EXPECT_EQ(&other, representation.GetHandle(0));
    Array<Handle> detached;
    representation.DetachHandles(detached);
    ASSERT_EQ(1, detached.GetSize());
    EXPECT_EQ(&other, detached[0].GetData());
    EXPECT_EQ(0, representation.NumberOfHandles());
    EXPECT_EQ("plate.stp", Utf8(representation.GetExternalRefURI()));
}

TEST_F(MembersTest, RepresentationTakesOneInternalRep)
{
    Representation representation;
    EXPECT_EQ(2, representation.SetInternalRep(nullptr).GetCode());
    auto* first = new FeatureTree;
    ASSERT_TRUE(representation.SetInternalRep(first).Ok());
    FeatureTree spare;
    const Result second = representation.SetInternalRep(&spare);
    EXPECT_EQ(2, second.GetCode());
    EXPECT_EQ("Cannot add child of type: InternalRep to parent of type: Representation.",
              Utf8(second.GetMessage()));
    EXPECT_EQ(nullptr, spare.GetOwner());
    EXPECT_EQ(first, representation.GetInternalRep(0));
    EXPECT_EQ(1, representation.NumberOfInternalReps());
}

TEST_F(MembersTest, PartsAreTheProductRevisionViewsAmongTheViews)
{
    InstanceGraph graph;
    ASSERT_NE(nullptr, graph.AddStructureRevisionView());
    auto first = std::make_unique<ProductRevisionView>();
    ASSERT_TRUE(graph.AddPart(first.get()).Ok());
    ProductRevisionView* attached = first.release();
    ProductRevisionView* second = graph.AddPart();
    EXPECT_EQ(2, graph.NumberOfParts());
    EXPECT_EQ(3, graph.NumberOfStructureRevisionViews());
    EXPECT_EQ(attached, graph.GetPart(0));
    EXPECT_EQ(second, graph.GetPart(1));
    EXPECT_EQ(nullptr, graph.GetPart(2));
    EXPECT_THROW(graph.DeletePart(2), zorvex_api::Exception);
    graph.DeletePart(attached);
    EXPECT_EQ(second, graph.GetPart(0));
    graph.AddPart();
    graph.DeleteParts();
    EXPECT_EQ(0, graph.NumberOfParts());
    EXPECT_EQ(1, graph.NumberOfStructureRevisionViews());
}

TEST_F(MembersTest, AssembliesAreToldByTheirType)
{
    ProductRevisionView view;
    EXPECT_EQ(0, view.IsAssembly());
    EXPECT_EQ(1, view.IsBody());
    view.SetType(ePartTypeAssembly);
    EXPECT_EQ(1, view.IsAssembly());
    EXPECT_EQ(0, view.IsBody());
}

TEST_F(MembersTest, ViewControlReachesItsChildren)
{
    ViewControl control;
    Vector value;
    control.SetViewTo(Vector(1.0, 0.0, 0.0));
    EXPECT_EQ(0, control.GetViewTo(value));
    ASSERT_NE(nullptr, control.AddPerspective());
    control.SetViewFrom(Vector(0.0, 0.0, 9.0));
    ASSERT_EQ(1, control.GetViewFrom(value));
    EXPECT_EQ(9.0, value.z());
    control.SetViewTo(Vector(2.0, 0.0, 0.0));
    ASSERT_EQ(1, control.GetViewTo(value));
    EXPECT_EQ(2.0, value.x());

    ASSERT_NE(nullptr, control.AddOrthographic());
    control.SetViewTo(Vector(3.0, 0.0, 0.0));
    ASSERT_EQ(1, control.GetViewTo(value));
    EXPECT_EQ(3.0, value.x());
    EXPECT_EQ(0, control.GetViewDirection(value));
    control.SetViewDirection(Vector(0.0, 1.0, 0.0));
    EXPECT_EQ(1, control.GetViewDirection(value));

    double corner[2] = {};
    EXPECT_EQ(0, control.GetViewPortLow(corner));
    const double high[] = {3.0, 4.0};
    control.SetViewPortHigh(high);
    EXPECT_EQ(0, control.GetViewPortLow(corner));
    ASSERT_EQ(1, control.GetViewPortHigh(corner));
    EXPECT_EQ(4.0, corner[1]);
}

TEST_F(MembersTest, ViewMatrixKeepsATransform)
{
    ViewControl control;
    Transf value;
    const Result unset = control.GetViewMatrix(value);
    EXPECT_EQ(2, unset.GetCode());
    EXPECT_EQ("ViewMatrix has not been set.", Utf8(unset.GetMessage()));
    EXPECT_TRUE(control.SetViewMatrix(Transf(Vector(1.0, 2.0, 3.0))).Ok());
    EXPECT_TRUE(control.GetViewMatrix(value).Ok());
    EXPECT_EQ(2.0, value.GetTranslation().y());
    String text;
    EXPECT_TRUE(control.GetAttributeValue(u"ViewMatrix", text).Ok());
    EXPECT_EQ("1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1", Utf8(text));
}

TEST_F(MembersTest, VectorFieldHoldsItsVector)
{
    const VectorField field(Vector(1.0, 2.0, 3.0));
    Vector value;
    EXPECT_TRUE(field.GetContent(value).Ok());
    EXPECT_EQ(2.0, value.y());
}

}  // namespace
