#include <algorithm>
#include <memory>
#include <random>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/ObjectCallbackBase.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"

namespace zorvex_test
{

using testing::ElementsAre;
using testing::IsEmpty;
using zorvex_api::Array;
using zorvex_api::ClassData;
using zorvex_api::ClassDescriptor;
using zorvex_api::ClassDescriptorImpl;
using zorvex_api::ElementList;
using zorvex_api::FieldType;
using zorvex_api::Object;
using zorvex_api::ObjectCallbackBase;
using zorvex_api::Result;
using zorvex_api::String;

class TreeTest : public SessionTest
{
protected:
    static std::unique_ptr<Object> Make(const char16_t* className)
    {
        return std::unique_ptr<Object>(ClassDescriptor::FindByName(className)->MakeObject());
    }
    /// A child that the tree owns.
    static Object* Add(Object* parent, const char16_t* className, const char16_t* field = u"")
    {
        Object* child = nullptr;
        const Result result = parent->AddElement(String(className), String(field), child);
        EXPECT_THAT(Messages(result), IsEmpty());
        return child;
    }
    static std::vector<Object*> ByField(const Object* parent, const char16_t* field)
    {
        Array<Object*> found;
        EXPECT_THAT(Messages(parent->GetElementsByField(field, found)), IsEmpty());
        return {found.begin(), found.end()};
    }
    static std::vector<Object*> Children(const Object* parent)
    {
        Array<Object*> found;
        EXPECT_THAT(Messages(parent->GetElements(found)), IsEmpty());
        return {found.begin(), found.end()};
    }
};

// --- placing ----------------------------------------------------------------------------------

TEST_F(TreeTest, AChildGoesToTheFirstFieldThatTakesItsClassUnlessANameFilters)
{
    const auto unit = Make(u"Unit");
    Object* metre = Add(unit.get(), u"UnitComponent");
    Object* second = Add(unit.get(), u"UnitComponent", u"Second");
    Object* byField = nullptr;
    EXPECT_TRUE(unit->AddElement(String(), u"Ampere", byField).Ok());
    EXPECT_THAT(ByField(unit.get(), u"Metre"), ElementsAre(metre));
    EXPECT_THAT(ByField(unit.get(), u"Second"), ElementsAre(second));
    EXPECT_THAT(ByField(unit.get(), u"Ampere"), ElementsAre(byField));
}

TEST_F(TreeTest, AFieldForAnyChildTakesWhatNoNamedFieldTakes)
{
    const auto schema = Make(u"Schema");
    Object* unit = nullptr;
    EXPECT_TRUE(schema->AddElement(u"Unit", u"noSuchField", unit).Ok());
    EXPECT_THAT(Children(schema.get()), ElementsAre(unit));
    EXPECT_EQ("Unit", Utf8(schema->GetChildElementName(unit)));
    EXPECT_TRUE(schema->DeleteElement(unit).Ok());
    EXPECT_THAT(Children(schema.get()), IsEmpty());
}

TEST_F(TreeTest, ASecondChildOfASingleFieldIsRefusedAndTheCallerKeepsIt)
{
    const auto product = Make(u"Product");
    Object* first = Add(product.get(), u"PropertyGroup");
    Object* out = first;
    EXPECT_THAT(Messages(product->AddElement(u"PropertyGroup", String(), out)),
                ElementsAre("ERROR 2: Cannot add child of type: PropertyGroup to parent of type: "
                            "Product."));
    EXPECT_EQ(first, out);
    const auto another = Make(u"PropertyGroup");
    EXPECT_EQ(2, another->SetOwner(product.get()).GetCode());
    EXPECT_EQ(nullptr, another->GetOwner());
    EXPECT_THAT(Children(product.get()), ElementsAre(first));
}

TEST_F(TreeTest, StrictnessOneWarnsAndKeepsTheChildAside)
{
    const auto product = Make(u"Product");
    Add(product.get(), u"PropertyGroup");
    Object* extra = Make(u"PropertyGroup").release();
    extra->SetId(u"id700");
    const Result result =
        ClassData::Of(extra)->SetOwner(product.get(), {}, nullptr, false, false, 1);
    EXPECT_THAT(Messages(result),
                ElementsAre("WARNING 2: Cannot add child of type: PropertyGroup to parent of type: "
                            "Product."));
    EXPECT_EQ(product.get(), extra->GetOwner());
    EXPECT_EQ(1u, Children(product.get()).size());
    EXPECT_EQ(extra, product->ResolveId(u"id700"));
    EXPECT_EQ("", Utf8(extra->GetElementName()));
}

TEST_F(TreeTest, StrictnessTwoGivesTheFieldToTheNewChildAndKeepsTheOldOneAside)
{
    const auto product = Make(u"Product");
    Object* first = Add(product.get(), u"PropertyGroup");
    const String id = first->GetId();
    auto* field = ClassDescriptorImpl::Of(product->GetClassDescriptor())
                      ->FindField(u"PropertyGroup", zorvex_api::field_kind::kElement);
    Object* second = Make(u"PropertyGroup").release();
    EXPECT_TRUE(ClassData::Of(second)->SetOwner(product.get(), {}, field, false, false, 2).Ok());
    EXPECT_THAT(Children(product.get()), ElementsAre(second));
    EXPECT_EQ(first, product->ResolveId(id));
    // What is aside moves with the tree's ids.
    const auto graph = Make(u"InstanceGraph");
    Object* root = Add(graph.get(), u"Product");
    EXPECT_TRUE(graph->DeleteElement(root).Ok());
}

TEST_F(TreeTest, MissingAndUnknownClassesAreReported)
{
    const auto product = Make(u"Product");
    Object* child = nullptr;
    const Result nothing = product->AddElement(String(), String(), child);
    EXPECT_EQ(19, nothing.GetCode());
    EXPECT_EQ("", Utf8(nothing.GetMessage()));
    EXPECT_THAT(Messages(product->AddElement(u"Spaceship", u"nowhere", child)),
                ElementsAre("ERROR 2: Unable to find class: \"Spaceship\"."));
    EXPECT_THAT(Messages(product->AddElement(short{-999}, String(), child)),
                ElementsAre("ERROR 2: Unable to find class: \"-999\"."));
    EXPECT_EQ(nullptr, child);
}

TEST_F(TreeTest, AddChildElementPrefersTheClassAndFallsBackOnTheField)
{
    const auto unit = Make(u"Unit");
    Result result;
    Object* metre = unit->AddChildElement(u"Metre", result);
    ASSERT_NE(nullptr, metre);
    EXPECT_TRUE(metre->Is(u"UnitComponent"));
    EXPECT_EQ(nullptr, unit->AddChildElement(u"Nowhere", result));
    EXPECT_EQ(2, result.GetCode());
    const auto product = Make(u"Product");
    EXPECT_TRUE(product->AddChildElement(u"PropertyGroup", result)->Is(u"PropertyGroup"));
}

// --- owners -----------------------------------------------------------------------------------

TEST_F(TreeTest, AnObjectIsNeverAttachedToItselfItsDescendantOrTwice)
{
    const auto graph = Make(u"InstanceGraph");
    Object* product = Add(graph.get(), u"Product");
    const std::vector<std::string> self = {"ERROR 2: Cannot set the owner to be this Object."};
    EXPECT_EQ(self, Messages(graph->SetOwner(graph.get())));
    EXPECT_EQ(self, Messages(graph->SetOwner(product)));
    EXPECT_THAT(Messages(product->SetOwner(graph.get())),
                ElementsAre("ERROR 2: Object already has owner"));
    EXPECT_TRUE(graph->SetOwner(nullptr).Ok());
}

TEST_F(TreeTest, ADetachedTreeTakesItsIdsAlong)
{
    const auto graph = Make(u"InstanceGraph");
    Object* product = Add(graph.get(), u"Product");
    Object* group = Add(product, u"PropertyGroup");
    product->SetId(u"shaft");
    const String groupId = group->GetId();
    ASSERT_TRUE(product->SetOwner(nullptr).Ok());
    const std::unique_ptr<Object> held(product);
    EXPECT_EQ(nullptr, graph->ResolveId(u"shaft"));
    EXPECT_EQ(nullptr, graph->ResolveId(groupId));
    EXPECT_EQ(group, product->ResolveId(groupId));
    EXPECT_EQ(product, group->ResolveId(u"shaft"));
    EXPECT_EQ(nullptr, product->GetOwner());
    EXPECT_EQ(product, group->GetRoot());
    Object* next = Add(graph.get(), u"Product");
    EXPECT_EQ("id3", Utf8(next->GetId())) << "numbers aren't used twice";
}

TEST_F(TreeTest, TheNumberOfAnIdThatWasReplacedIsNotGivenOutAgain)
{
    const auto product = Make(u"Product");
    product->SetId(u"id50");
    product->SetId(u"id3");
    Object* group = Add(product.get(), u"PropertyGroup");
    EXPECT_EQ("id51", Utf8(group->GetId()));
    EXPECT_EQ(product.get(), group->ResolveId(u"id3"));
    EXPECT_EQ(nullptr, group->ResolveId(u"id50"));
    group->SetId(u"id90");
    group->SetId(u"washer");
    EXPECT_EQ("id91", Utf8(Add(group, u"Property")->GetId()));
}

TEST_F(TreeTest, DetachingWithAFieldNameLooksInThatFieldAlone)
{
    const auto unit = Make(u"Unit");
    Object* second = Add(unit.get(), u"UnitComponent", u"Second");
    EXPECT_THAT(Messages(second->SetOwner(nullptr, u"Metre")),
                ElementsAre("ERROR 2: Cannot find child of type UnitComponent in parent of type "
                            "Unit"));
    EXPECT_EQ(unit.get(), second->GetOwner());
    EXPECT_TRUE(second->SetOwner(nullptr, u"Second").Ok());
    const std::unique_ptr<Object> held(second);
    EXPECT_EQ(nullptr, second->GetOwner());
    EXPECT_EQ(0, unit->HasField(u"Second", 4));
}

TEST_F(TreeTest, AMissingChildIsReportedAndEmptiesAFieldInside)
{
    const auto unit = Make(u"Unit");
    EXPECT_THAT(Messages(unit->AddElement(static_cast<Object*>(nullptr), u"Metre")),
                ElementsAre("ERROR 2: Unable to add Element: \"Metre\" to parent class: \"Unit\". "
                            "NULL input element."));
    Add(unit.get(), u"UnitComponent");
    ClassData& data = *ClassData::Of(unit.get());
    EXPECT_TRUE(data.PlaceChild(nullptr, u"Metre", nullptr, 0).Ok());
    EXPECT_EQ(nullptr, data.fields);
    EXPECT_EQ(2, data.PlaceChild(nullptr, u"Metre", nullptr, 0).GetCode());
}

TEST_F(TreeTest, AttachingEntersTheIdsOfTheSubtreeAndGivesMissingOnes)
{
    const auto graph = Make(u"InstanceGraph");
    auto product = Make(u"Product");
    Object* group = Add(product.get(), u"PropertyGroup");
    group->SetId(u"id90");
    EXPECT_EQ("", Utf8(product->GetId()));
    ASSERT_TRUE(graph->AddElement(product.get()).Ok());
    Object* attached = product.release();
    EXPECT_EQ("id91", Utf8(attached->GetId()));
    EXPECT_EQ(group, graph->ResolveId(u"id90"));
    EXPECT_EQ(attached, graph->ResolveId(u"id91"));
}

TEST_F(TreeTest, GeneratedIdsBeyondNineDigitsStayFindable)
{
    const auto graph = Make(u"InstanceGraph");
    Add(graph.get(), u"Product")->SetId(u"id999999999");
    Add(graph.get(), u"Product")->SetId(u"id1000000001");
    Object* third = Add(graph.get(), u"Product");
    Object* fourth = Add(graph.get(), u"Product");
    EXPECT_EQ("id1000000002", Utf8(third->GetId())) << "the one before is taken";
    EXPECT_NE(third->GetId(), fourth->GetId());
    for (Object* object : Children(graph.get()))
    {
        EXPECT_EQ(object, graph->ResolveId(object->GetId())) << Utf8(object->GetId());
    }
}

TEST_F(TreeTest, ATreeTakesOverARootThatReferencesBroughtIn)
{
    const auto graph = Make(u"InstanceGraph");
    Object* product = Make(u"Product").release();
    ClassData::Of(product)->stateFlags |= ClassData::kPulledInRoot;
    ASSERT_TRUE(product->SetOwner(graph.get()).Ok());
    ASSERT_TRUE(product->SetOwner(nullptr).Ok());
    const std::unique_ptr<Object> held(product);  // no reference deletes it any more
    EXPECT_EQ(0u, ClassData::Of(product)->stateFlags & ClassData::kPulledInRoot);
}

TEST_F(TreeTest, SearchesUpwardsTellDocumentsFromOtherRoots)
{
    const auto document = Make(u"Document");
    Object* product = Add(document.get(), u"Product");
    Object* group = Add(product, u"PropertyGroup");
    EXPECT_EQ(document.get(), group->GetDocument());
    EXPECT_EQ(document.get(), group->GetDocumentRoot());
    EXPECT_EQ(document.get(), group->GetDocumentBase());
    EXPECT_EQ(document.get(), group->GetDocumentBaseRoot());
    const auto loose = Make(u"Product");
    EXPECT_EQ(nullptr, loose->GetDocument());
    EXPECT_EQ(nullptr, loose->GetDocumentBaseRoot());
    EXPECT_EQ(loose.get(), loose->GetRoot());
}

// --- names and gathering ----------------------------------------------------------------------

TEST_F(TreeTest, AChildIsNamedByItsFieldUnlessItStandsInForTheFieldsClass)
{
    const auto document = Make(u"Document");
    const auto unit = Make(u"Unit");
    EXPECT_EQ("ZORVEX", Utf8(document->GetElementName()));
    EXPECT_EQ("Unit", Utf8(unit->GetElementName()));
    EXPECT_EQ("DocumentHeader",
              Utf8(Add(document.get(), u"DocumentHeader")->GetClassDescriptor()->GetName()));
    EXPECT_EQ("Header", Utf8(ByField(document.get(), u"Header").at(0)->GetElementName()));
    EXPECT_EQ("Product", Utf8(Add(document.get(), u"Product")->GetElementName()));
    Object* metre = Add(unit.get(), u"UnitComponent");
    EXPECT_EQ("Metre", Utf8(metre->GetElementName()));
    ASSERT_TRUE(metre->SetOwner(nullptr).Ok());
    EXPECT_EQ("UnitComponent", Utf8(metre->GetElementName()));
    ASSERT_TRUE(metre->SetOwner(unit.get(), u"Second").Ok());
    EXPECT_EQ("Second", Utf8(metre->GetElementName()));
    EXPECT_EQ("", Utf8(unit->GetChildElementName(nullptr)));
}

TEST_F(TreeTest, ChildrenComeFromTheFieldTouchedLastOnwards)
{
    const auto unit = Make(u"Unit");
    Object* metre = Add(unit.get(), u"UnitComponent", u"Metre");
    Object* second = Add(unit.get(), u"UnitComponent", u"Second");
    Object* metre2 = Add(unit.get(), u"UnitComponent", u"Metre");
    EXPECT_THAT(Children(unit.get()), ElementsAre(second, metre, metre2));
    Array<Object*> twice;
    unit->GetElementsByClass(u"UnitComponent", twice);
    unit->GetElementsByClass(u"UnitComponent", twice);
    EXPECT_EQ(6, twice.GetSize());
    EXPECT_THAT(Messages(unit->GetElementsByClass(u"Spaceship", twice)),
                ElementsAre("ERROR 2: Cannot find the class: \"Spaceship\"."));
}

TEST_F(TreeTest, GatheringByFieldTellsEmptyFieldsFromUnknownOnes)
{
    const auto unit = Make(u"Unit");
    EXPECT_THAT(ByField(unit.get(), u"Metre"), IsEmpty());
    Array<Object*> out;
    EXPECT_THAT(Messages(unit->GetElementsByField(u"Parsec", out)),
                ElementsAre("ERROR 2: \"Parsec\" is not an allowed element field of: \"Unit\"."));
    EXPECT_THAT(Messages(ClassData::Of(unit.get())->ElementsByField(u"Metre", nullptr)),
                ElementsAre("ERROR 19: Call back must be non NULL."));
    Object* metre = Add(unit.get(), u"UnitComponent");
    EXPECT_TRUE(unit->GetChildElements(u"Metre", out).Ok());
    ASSERT_EQ(1, out.GetSize());
    EXPECT_EQ(metre, out[0]);
}

TEST_F(TreeTest, ChainedListsAnswerLikeArrays)
{
    const auto unit = Make(u"Unit");
    ClassData::Of(unit.get())->stateFlags |= ClassData::kChainedLists;
    std::vector<Object*> metres;
    for (int i = 0; i < 5; ++i)
    {
        metres.push_back(Add(unit.get(), u"UnitComponent"));
    }
    EXPECT_TRUE(unit->DeleteElement(metres[4]).Ok());
    EXPECT_TRUE(unit->DeleteElement(metres[0]).Ok());
    Object* last = Add(unit.get(), u"UnitComponent");
    EXPECT_THAT(ByField(unit.get(), u"Metre"), ElementsAre(metres[1], metres[2], metres[3], last));

    struct FirstOnly : ObjectCallbackBase
    {
        void Process(Object**, int) override { ADD_FAILURE() << "a chain has no array"; }
        int Process(Object* child) override
        {
            seen.push_back(child);
            return 0;
        }
        std::vector<Object*> seen;
    } callback;
    ClassData::Of(unit.get())->ElementsByField(u"Metre", &callback);
    EXPECT_THAT(callback.seen, ElementsAre(metres[1]));
    EXPECT_TRUE(unit->DeleteElementsByClass(u"UnitComponent").Ok());
    EXPECT_THAT(Children(unit.get()), IsEmpty());
}

TEST_F(TreeTest, ElementTypesListTheFieldsOfTheClassAndItsBases)
{
    Array<FieldType> types;
    EXPECT_TRUE(Make(u"Product")->GetChildElementTypes(types).Ok());
    std::vector<std::string> names;
    for (const FieldType& type : types)
    {
        names.push_back(Utf8(type.m_name));
    }
    EXPECT_THAT(names, ElementsAre("PropertyGroup", "DeterminedPropertyGroup", "Bound", "Attribute",
                                   "ApplicationRef"));
    EXPECT_EQ(zorvex_api::zorvexFieldSingleElement, types[0].m_type);
    EXPECT_EQ(ClassDescriptor::FindByName(u"Bound")->GetClass(), types[2].m_class);
}

// --- deleting ---------------------------------------------------------------------------------

TEST_F(TreeTest, DeletingTakesChildrenAndTheirIdsOutOfTheTree)
{
    const auto graph = Make(u"InstanceGraph");
    Object* product = Add(graph.get(), u"Product");
    Object* revision = Add(graph.get(), u"ProductRevision");
    Object* group = Add(product, u"PropertyGroup");
    const String productId = product->GetId();
    const String groupId = group->GetId();
    EXPECT_THAT(Messages(graph->DeleteElement(nullptr)),
                ElementsAre("ERROR 19: Element to delete is NULL."));
    EXPECT_TRUE(graph->DeleteElementsByClass(u"Structure").Ok());
    EXPECT_THAT(Children(graph.get()), ElementsAre(revision));
    EXPECT_EQ(nullptr, graph->ResolveId(productId));
    EXPECT_EQ(nullptr, graph->ResolveId(groupId));
    EXPECT_TRUE(graph->DeleteElementsByField(u"noSuchField").Ok());
    EXPECT_TRUE(graph->DeleteElementsByField(u"StructureRevision").Ok());
    EXPECT_THAT(Children(graph.get()), IsEmpty());
    EXPECT_EQ(0, graph->HasField(u"StructureRevision", 4));
    EXPECT_THAT(Messages(graph->DeleteElementsByClass(u"Spaceship")),
                ElementsAre("ERROR 2: Cannot find the class: \"Spaceship\"."));
}

TEST_F(TreeTest, DeleteElementWorksOnWhateverOwnsTheChild)
{
    const auto graph = Make(u"InstanceGraph");
    Object* product = Add(graph.get(), u"Product");
    const auto elsewhere = Make(u"Unit");
    EXPECT_TRUE(elsewhere->DeleteElement(product).Ok());
    EXPECT_THAT(Children(graph.get()), IsEmpty());
}

TEST_F(TreeTest, ManyChildrenGoOneByOneFromEitherEnd)
{
    const auto graph = Make(u"InstanceGraph");
    std::vector<Object*> products;
    for (int i = 0; i < 20000; ++i)
    {
        products.push_back(Add(graph.get(), u"Product"));
    }
    for (int i = 0; i < 9999; ++i)
    {
        ASSERT_TRUE(graph->DeleteElement(products[i]).Ok());
        ASSERT_TRUE(graph->DeleteElement(products[19999 - i]).Ok());
    }
    EXPECT_THAT(Children(graph.get()), ElementsAre(products[9999], products[10000]));
    EXPECT_EQ(products[10000], graph->ResolveId(products[10000]->GetId()));
}

TEST(ElementListTest, AgreesWithAListThroughRandomChanges)
{
    std::mt19937 random(20);
    std::vector<char> memory(1 << 16);
    int unused = 0;  // the list compares children and never looks at one
    for (const int most : {100, 3000})
    {
        ElementList list(false);
        std::vector<Object*> expected;
        const auto read = [&]
        {
            std::vector<Object*> children;
            list.Walk(
                [&](Object* child)
                {
                    children.push_back(child);
                    return true;
                });
            return children;
        };
        for (int step = 0; step < 40000; ++step)
        {
            // Long runs of removals, with and without additions between, and few looks at the list.
            const bool adds =
                expected.empty() || (step / 2000 % 3 == 0 ? step % 2 == 0 : step / 2000 % 3 == 1);
            if (adds && static_cast<int>(expected.size()) < most)
            {
                expected.push_back(reinterpret_cast<Object*>(&memory[unused++]));
                list.Append(expected.back());
                continue;
            }
            if (step % 1009 == 0)
            {
                ASSERT_EQ(expected.back(), list.TakeLast());
                expected.pop_back();
                continue;
            }
            const size_t index = random() % expected.size();
            Object* child = expected[index];
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
            ASSERT_TRUE(list.Remove(child));
            ASSERT_FALSE(list.Contains(child));
            ASSERT_EQ(static_cast<int>(expected.size()), list.Count());
            if (step % 997 == 0)
            {
                ASSERT_EQ(expected, read()) << step;
            }
        }
        ASSERT_EQ(expected, read());
    }
}

TEST(ElementListTest, AWalkMayTakeOutWhatItIsAt)
{
    char memory[1000];
    ElementList list(false);
    for (char& place : memory)
    {
        list.Append(reinterpret_cast<Object*>(&place));
    }
    for (int i = 100; i < 900; ++i)  // from the middle: the list remembers places
    {
        ASSERT_TRUE(list.Remove(reinterpret_cast<Object*>(&memory[i % 2 == 0 ? i : 1000 - i])));
    }
    int met = 0;
    list.Walk(
        [&](Object* child)
        {
            ++met;
            return met % 2 == 0 || list.Remove(child);
        });
    EXPECT_EQ(200, met);
    EXPECT_EQ(100, list.Count());
    EXPECT_EQ(reinterpret_cast<Object*>(&memory[1]), list.At(0));
}

}  // namespace zorvex_test
