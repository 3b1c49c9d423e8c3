// The accessors of generated classes, one class for each kind of field.

#include <gtest/gtest.h>

#include <memory>

#include "support/SessionTest.h"
#include "zorvex60/BSplineCurve.h"
#include "zorvex60/Bound.h"
#include "zorvex60/CalendarEvent.h"
#include "zorvex60/CentreOfMass.h"
#include "zorvex60/Document.h"
#include "zorvex60/Instance.h"
#include "zorvex60/InstanceGraph.h"
#include "zorvex60/Line.h"
#include "zorvex60/Material.h"
#include "zorvex60/Orthographic.h"
#include "zorvex60/Product.h"
#include "zorvex60/ProductDef.h"
#include "zorvex60/Unit.h"
#include "zorvex60/UserData.h"
#include "zorvex60/UserValue.h"
#include "zorvex60/ViewPort.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/TypedAccess.h"
#include "zorvex_cl60/KeyLOV.h"

namespace
{

using namespace zorvex60;
using zorvex_api::Exception;
using zorvex_test::Texts;
using zorvex_test::Utf8;

int CodeOf(const Result& result)
{
    return result.GetCode();
}

// The code of what `action` raises; 0 when it raises nothing.
template <class Action>
int RaisedBy(Action action)
{
    try
    {
        action();
    }
    catch (const Exception& exception)
    {
        return exception.GetCode();
    }
    return 0;
}

class TypedAccessTest : public zorvex_test::SessionTest
{
};

TEST_F(TypedAccessTest, UnsetScalarsReadAsZeroAndTakeNoValue)
{
    Instance instance;
    EXPECT_EQ(0.0, instance.GetQuantity());
    EXPECT_EQ(0, instance.GetSequenceNumber());
    EXPECT_EQ("", Utf8(instance.GetInstanceType()));
    EXPECT_EQ(0, instance.HasQuantity());
    EXPECT_TRUE(instance.SetQuantity(2.5).Ok());
    EXPECT_TRUE(instance.SetSequenceNumber(-3).Ok());
    EXPECT_TRUE(instance.SetInstanceType(u"bolt").Ok());
    EXPECT_EQ(2.5, instance.GetQuantity());
    EXPECT_EQ(-3, instance.GetSequenceNumber());
    EXPECT_EQ("bolt", Utf8(instance.GetInstanceType()));
    EXPECT_EQ(1, instance.HasQuantity());
    EXPECT_TRUE(instance.UnsetQuantity().Ok());
    EXPECT_EQ(0, instance.HasQuantity());
}

TEST_F(TypedAccessTest, DefaultsShowThroughUntilAValueIsSet)
{
    Product product;
    EXPECT_EQ(1, product.GetDesignRequired());
    EXPECT_TRUE(product.SetDesignRequired(0).Ok());
    EXPECT_EQ(0, product.GetDesignRequired());
    EXPECT_TRUE(product.UnsetDesignRequired().Ok());
    EXPECT_EQ(1, product.GetDesignRequired());
}

TEST_F(TypedAccessTest, FixedListsGoThroughBuffersOfTheirLength)
{
    Material material;
    const double colour[] = {0.1, 0.2, 0.3};
    double read[] = {9.0, 9.0, 9.0};
    EXPECT_FALSE(material.GetAmbient(read).Ok());
    EXPECT_EQ(9.0, read[0]);
    EXPECT_TRUE(material.SetAmbient(colour).Ok());
    EXPECT_TRUE(material.GetAmbient(read).Ok());
    EXPECT_EQ(0.3, read[2]);
    EXPECT_EQ(2, CodeOf(material.GetAmbient(nullptr)));
    EXPECT_EQ(2, CodeOf(material.SetAmbient(nullptr)));  // an empty list isn't of this length
    EXPECT_EQ(1, material.HasAmbient());
}

TEST_F(TypedAccessTest, FreeListsGoThroughArrays)
{
    CalendarEvent event;
    Array<int> months;
    months.Add(2);
    months.Add(11);
    EXPECT_TRUE(event.SetMonths(months).Ok());
    Array<int> read;
    EXPECT_TRUE(event.GetMonths(read).Ok());
    ASSERT_EQ(2, read.GetSize());
    EXPECT_EQ(11, read[1]);
}

TEST_F(TypedAccessTest, ContentElementsHaveAccessorsOfTheirValue)
{
    BSplineCurve curve;
    Array<double> knots;
    knots.Add(0.0);
    knots.Add(1.5);
    Array<int> multiplicities;
    multiplicities.Add(4);
    EXPECT_TRUE(curve.SetKnots(knots).Ok());
    EXPECT_TRUE(curve.SetKnotMultiplicities(multiplicities).Ok());
    EXPECT_TRUE(curve.SetDescription(u"rim").Ok());
    EXPECT_TRUE(curve.GetKnots(knots).Ok());
    EXPECT_EQ(1.5, knots[1]);
    EXPECT_EQ("rim", Utf8(curve.GetDescription()));
    EXPECT_EQ(1, curve.HasKnots());
    EXPECT_TRUE(curve.UnsetKnots().Ok());
    EXPECT_EQ(0, curve.HasKnots());

    Orthographic view;
    Vector direction;
    EXPECT_FALSE(view.GetViewTo(direction).Ok());
    EXPECT_TRUE(view.SetViewTo(Vector(1.0, 2.0, 3.0)).Ok());
    EXPECT_TRUE(view.GetViewTo(direction).Ok());
    EXPECT_EQ(3.0, direction.z());

    ViewPort port;
    const double low[] = {-1.0, -2.0};
    double read[2] = {};
    EXPECT_TRUE(port.SetViewPortLow(low).Ok());
    EXPECT_TRUE(port.GetViewPortLow(read).Ok());
    EXPECT_EQ(-2.0, read[1]);
}

TEST_F(TypedAccessTest, VectorsAreReadAndSetWhole)
{
    Line line;
    Vector origin;
    EXPECT_FALSE(line.GetOrigin(origin).Ok());
    EXPECT_TRUE(line.SetOrigin(Vector(4.0, 5.0, 6.0)).Ok());
    EXPECT_TRUE(line.GetOrigin(origin).Ok());
    EXPECT_EQ(5.0, origin.y());
    EXPECT_EQ(1, line.HasOrigin());
}

TEST_F(TypedAccessTest, EnumerationsPassUnknownTextsThrough)
{
    Bound bound;
    EXPECT_TRUE(bound.GetType() == eBoundingTypeBox);
    EXPECT_TRUE(bound.SetType(eBoundingTypeOldBox).Ok());
    EXPECT_TRUE(bound.GetType() == eBoundingTypeOldBox);
    EXPECT_EQ(523, CodeOf(bound.SetType(eBoundingType("cone"))));
    EXPECT_EQ("cone", Utf8(bound.GetType().ToString()));
    EXPECT_TRUE(bound.UnsetType().Ok());
    EXPECT_TRUE(bound.GetType() == eBoundingTypeBox);
}

TEST_F(TypedAccessTest, OneUriIsTextAndHandle)
{
    const auto document = std::make_unique<Document>();
    AttribOwner* first = document->AddAttribOwner();
    EXPECT_NE(nullptr, first);
    ProductDef* def = document->AddProductDef();
    auto* graph = def->AddInstanceGraph();
    auto* instance = graph->AddInstance();
    ASSERT_NE(nullptr, instance);
    EXPECT_TRUE(instance->SetPartURI(u"#id77").Ok());
    EXPECT_EQ("#id77", Utf8(instance->GetPartURI()));
    EXPECT_TRUE(instance->SetPartURI(Handle(graph)).Ok());
    EXPECT_EQ("#" + Utf8(graph->GetId()), Utf8(instance->GetPartURI()));
    Handle target;
    EXPECT_TRUE(instance->ResolvePartURI(target).Ok());
    EXPECT_EQ(graph, target.GetObject());
    Handle known;
    EXPECT_TRUE(instance->GetPartURI(known).Ok());
    EXPECT_EQ(graph, known.GetObject());
    EXPECT_TRUE(instance->DeletePartURI().Ok());
    EXPECT_EQ(0, instance->HasPartURI());
    instance->GetPartURI(known);
    EXPECT_EQ(nullptr, known.GetObject());
}

TEST_F(TypedAccessTest, ListsOfUrisCheckTheirIndex)
{
    Instance instance;
    EXPECT_TRUE(instance.AddAccessURI(u"#id1").Ok());
    EXPECT_TRUE(instance.AddAccessURI(u"#id2").Ok());
    EXPECT_TRUE(instance.AddAccessURI(u"#id3").Ok());
    EXPECT_EQ(3, instance.NumberOfAccessURIs());
    EXPECT_EQ("#id2", Utf8(instance.GetAccessURI(1)));
    EXPECT_EQ(16, RaisedBy([&] { instance.GetAccessURI(-1); }));
    EXPECT_EQ(16, RaisedBy([&] { instance.GetAccessURI(3); }));
    Handle target;
    EXPECT_EQ(16, CodeOf(instance.GetAccessURI(3, target)));
    EXPECT_EQ(16, CodeOf(instance.SetAccessURI(3, u"#id4")));
    EXPECT_EQ(16, CodeOf(instance.DeleteAccessURI(-1)));
    EXPECT_FALSE(instance.ResolveAccessURI(3, target).Ok());
    EXPECT_TRUE(instance.SetAccessURI(1, u"#id9").Ok());
    EXPECT_TRUE(instance.DeleteAccessURI(0).Ok());
    EXPECT_EQ(2, instance.NumberOfAccessURIs());
    EXPECT_EQ("#id9", Utf8(instance.GetAccessURI(0)));
    EXPECT_TRUE(instance.DeleteAccessURIs().Ok());
    EXPECT_EQ(0, instance.HasAccessURIs());
    EXPECT_EQ(0, instance.NumberOfAccessURIs());
}

TEST_F(TypedAccessTest, OneReferenceFollowsAnObjectOfTheTree)
{
    const auto document = std::make_unique<Document>();
    ProductDef* def = document->AddProductDef();
    Instance* instance = def->AddInstanceGraph()->AddInstance();
    auto unit = std::make_unique<Unit>();
    ASSERT_TRUE(document->AddAttribOwner(unit.get()).Ok());
    Unit* attached = unit.release();
    EXPECT_EQ(1, instance->SetUnitRef(attached));
    EXPECT_EQ(Utf8(attached->GetId()), Utf8(instance->GetUnitId()));
    EXPECT_EQ(attached, instance->ResolveUnitRef());
    EXPECT_EQ(1, instance->HasUnitRef());
    EXPECT_EQ(1, instance->SetUnitRef(nullptr));
    EXPECT_EQ(0, instance->HasUnitRef());
    EXPECT_EQ(nullptr, instance->ResolveUnitRef());
    EXPECT_EQ(1, instance->SetUnitId(u"id4711"));
    EXPECT_EQ("id4711", Utf8(instance->GetUnitId()));
    EXPECT_EQ(nullptr, instance->ResolveUnitRef());
    instance->RemoveUnitRef();
    EXPECT_EQ("", Utf8(instance->GetUnitId()));
}

class ReferenceListTest : public TypedAccessTest
{
protected:
    // An owner with two attributes that its list refers to.
    void SetUp() override
    {
        TypedAccessTest::SetUp();
        owner = std::make_unique<Instance>();
        owner->SetId(u"id100");
        first = Attach();
        second = Attach();
        EXPECT_EQ(1, owner->AddAttributeRef(first));
        EXPECT_EQ(1, owner->AddAttributeRef(second));
    }
    void TearDown() override
    {
        owner.reset();
        TypedAccessTest::TearDown();
    }
    UserData* Attach()
    {
        auto data = std::make_unique<UserData>();
        EXPECT_TRUE(owner->AddAttribute(data.get()).Ok());
        return data.release();
    }

    std::unique_ptr<Instance> owner;
    UserData* first = nullptr;
    UserData* second = nullptr;
};

TEST_F(ReferenceListTest, IdsAndObjectsAreReadByIndex)
{
    EXPECT_EQ(2, owner->NumberOfAttributeRefs());
    EXPECT_EQ(Utf8(second->GetId()), Utf8(owner->GetAttributeId(1)));
    EXPECT_EQ(16, RaisedBy([&] { owner->GetAttributeId(-1); }));
    EXPECT_EQ(16, RaisedBy([&] { owner->GetAttributeId(2); }));
    EXPECT_EQ(second, owner->ResolveAttributeRef(1));
    EXPECT_EQ(nullptr, owner->ResolveAttributeRef(2));
    EXPECT_EQ(nullptr, owner->ResolveAttributeRef(-1));
}

TEST_F(ReferenceListTest, IdsAndResolvedObjectsAreAppendedButElementsReplace)
{
    Array<String> ids;
    owner->GetAttributeIds(ids);
    owner->GetAttributeIds(ids);
    EXPECT_EQ(4, ids.GetSize());
    Array<Attribute*> targets;
    owner->ResolveAttributeRefs(targets);
    owner->ResolveAttributeRefs(targets);
    EXPECT_EQ(4, targets.GetSize());
    Array<Attribute*> elements;
    owner->GetAttributes(elements);
    owner->GetAttributes(elements);
    EXPECT_EQ(2, elements.GetSize());
}

TEST_F(ReferenceListTest, EntriesAreReplacedAndTakenOut)
{
    EXPECT_EQ(0, owner->SetAttributeRef(2, first));
    EXPECT_EQ(0, owner->SetAttributeId(-1, u"id5"));
    EXPECT_EQ(1, owner->SetAttributeRef(0, second));
    EXPECT_EQ(second, owner->ResolveAttributeRef(0));
    owner->RemoveAttributeRef(u"nowhere");
    owner->RemoveAttributeRef(first);
    EXPECT_EQ(2, owner->NumberOfAttributeRefs());
    owner->RemoveAttributeRef(second);
    EXPECT_EQ(1, owner->NumberOfAttributeRefs());
    EXPECT_EQ(16, RaisedBy([&] { owner->RemoveAttributeRef(1); }));
    EXPECT_EQ(16, RaisedBy([&] { owner->RemoveAttributeRef(-1); }));
    owner->RemoveAttributeRef(0);
    EXPECT_EQ(0, owner->HasAttributeRefs());
}

TEST_F(TypedAccessTest, OneElementIsMadeOnce)
{
    CentreOfMass centre;
    EXPECT_EQ(nullptr, centre.GetBound());
    Bound* bound = centre.AddBound();
    ASSERT_NE(nullptr, bound);
    EXPECT_EQ(bound, centre.GetBound());
    EXPECT_EQ(nullptr, centre.AddBound());
    EXPECT_EQ(2, CodeOf(centre.SetBound(nullptr)));
    Bound spare;
    EXPECT_FALSE(centre.SetBound(&spare).Ok());
    EXPECT_EQ(nullptr, spare.GetOwner());
    centre.DeleteBound();
    EXPECT_EQ(nullptr, centre.GetBound());
    EXPECT_EQ(0, centre.HasField(u"Bound", 4));
}

TEST_F(TypedAccessTest, ElementsAreListedAndDeleted)
{
    UserData data;
    UserValue* first = data.AddUserValue();
    UserValue* second = data.AddUserValue();
    EXPECT_EQ(2, CodeOf(data.AddUserValue(nullptr)));
    EXPECT_EQ(2, data.NumberOfUserValues());
    EXPECT_EQ(second, data.GetUserValue(1));
    EXPECT_EQ(nullptr, data.GetUserValue(2));
    EXPECT_EQ(nullptr, data.GetUserValue(-1));
    EXPECT_EQ(16, RaisedBy([&] { data.DeleteUserValue(2); }));
    data.DeleteUserValue(first);
    EXPECT_EQ(second, data.GetUserValue(0));
    data.DeleteUserValue(0);
    EXPECT_EQ(0, data.NumberOfUserValues());
    data.AddUserValue();
    data.DeleteUserValues();
    EXPECT_EQ(0, data.NumberOfUserValues());
}

TEST_F(TypedAccessTest, AnOwnerThatRefusesRaises)
{
    Unit unit;
    EXPECT_EQ(2, RaisedBy([&] { const Document refused(&unit); }));
    InstanceGraph graph;
    auto* instance = new Instance(&graph);
    EXPECT_EQ(&graph, instance->GetOwner());
    EXPECT_EQ(instance, graph.GetInstance(0));
    const Instance alone(nullptr);
    EXPECT_EQ(nullptr, alone.GetOwner());
}

TEST_F(TypedAccessTest, OperationsOfObjectStayWithinReach)
{
    Instance instance;
    auto data = std::make_unique<UserData>();
    ASSERT_TRUE(instance.AddAttribute(data.get()).Ok());
    UserData* attached = data.release();
    EXPECT_TRUE(instance.SetQuantity(1.0).Ok());
    EXPECT_TRUE(instance.DeleteAttribute(u"quantity").Ok());
    EXPECT_EQ(0, instance.HasQuantity());
    instance.DeleteAttribute(attached);
    EXPECT_EQ(0, instance.NumberOfAttributes());
}

TEST_F(TypedAccessTest, AccessorsOfABaseStayBesideOverloadsForOtherFields)
{
    zorvex_cl60::KeyLOV list;
    EXPECT_TRUE(list.SetName(u"colours").Ok());  // the attribute `name`
    ASSERT_NE(nullptr, list.AddName());          // an element `Name`
    EXPECT_EQ("colours", Utf8(list.GetName()));
    EXPECT_NE(nullptr, list.GetName(0));
}

}  // namespace
