#include "objectmodel/ClassData.h"
#include "objectmodel/TestObjects.h"
#include "zorvex_api/ConfigurationRef.h"

using namespace zorvex_api;
using namespace zorvex_test;
using testing::ElementsAre;

namespace
{

/// A graph of an instance and the view that it places, with references to the inside and outside.
class CopyTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_graph = Make(u"InstanceGraph");
        m_view = AddChild(*m_graph, u"ProductRevisionView");
        m_instance = AddChild(*m_graph, u"Instance");
        m_outside = Make(u"Document");
        m_material = AddChild(*m_outside, u"Material");
        m_instance->SetAttributeValue(u"name", u"Schraube M8 \u00d7 20");
        m_instance->SetAttributeValue(u"quantity", 1.0 / 3.0);
        m_instance->SetAttributeValue(u"partRef", Reference(Handle(m_view)));
        m_instance->SetAttributeValue(u"textureRefs", Reference(Handle(m_material)));
        m_instance->SetAttributeValue(u"unitRef", Reference(Handle(m_view)));
        m_instance->SetUserPointer(this);
    }
    void TearDown() override
    {
        m_copy.reset();
        m_graph.reset();
        m_outside.reset();
        SessionTest::TearDown();
    }

    Object& CopyOf(const Object& object, unsigned int flags)
    {
        Object* copy = nullptr;
        const Result result = object.Copy(copy, flags);
        EXPECT_THAT(Messages(result), testing::IsEmpty());
        m_copy.reset(copy);
        return *copy;
    }
    static Object* Child(const Object& object, const String& field)
    {
        Array<Object*> children;
        EXPECT_TRUE(object.GetElementsByField(field, children).Ok());
        return children.GetSize() == 1 ? children[0] : nullptr;
    }

    std::unique_ptr<Object> m_graph;
    std::unique_ptr<Object> m_outside;
    std::unique_ptr<Object> m_copy;
    Object* m_view = nullptr;
    Object* m_instance = nullptr;
    Object* m_material = nullptr;
};

TEST_F(CopyTest, ADeepCopyHasTheWholeTreeWithItsIds)
{
    Object& copy = CopyOf(*m_graph, 4);
    Object* instance = Child(copy, u"Instance");
    ASSERT_NE(nullptr, instance);
    EXPECT_EQ(IdOf(*m_instance), IdOf(*instance));
    EXPECT_EQ(instance, copy.ResolveId(instance->GetId()));
    EXPECT_EQ(Text(*m_instance, u"name"), Text(*instance, u"name"));
    double quantity = 0.0;
    ASSERT_TRUE(instance->GetAttributeValue(u"quantity", quantity).Ok());
    EXPECT_EQ(1.0 / 3.0, quantity);
    EXPECT_EQ(this, instance->GetUserPointer());

    // New ids go on behind the copied ones, and generated ones may still be changed.
    EXPECT_NE(IdOf(*instance), IdOf(*AddChild(copy, u"Instance")));
    EXPECT_TRUE(ClassData::Of(instance)->id.IsGenerated());
}

TEST_F(CopyTest, ReferencesInsideMeanTheCopyAndOthersKeepTheirTarget)
{
    Object& copy = CopyOf(*m_graph, 4);
    Object* instance = Child(copy, u"Instance");
    Object* view = Child(copy, u"StructureRevisionView");
    Reference reference;
    Array<Reference> textures;

    ASSERT_TRUE(instance->GetAttributeValue(u"unitRef", reference).Ok());
    EXPECT_EQ(view, reference.GetHandle().GetObject());
    EXPECT_EQ("#" + IdOf(*view), Text(*instance, u"partRef"));
    ASSERT_TRUE(instance->GetAttributeValue(u"partRef", reference).Ok());
    EXPECT_NE(m_view, reference.GetHandle().GetObject());
    ASSERT_TRUE(instance->GetAttributeValue(u"textureRefs", textures).Ok());
    EXPECT_EQ(m_material, textures[0].GetHandle().GetObject());
}

TEST_F(CopyTest, AnObjectCopiedAloneHasNoChildrenAndRefersToTheOldTree)
{
    Object& shallow = CopyOf(*m_graph, 0);
    Array<Object*> children;
    ASSERT_TRUE(shallow.GetElements(children).Ok());
    EXPECT_EQ(0, children.GetSize());

    Object& instance = CopyOf(*m_instance, 4);
    EXPECT_EQ(nullptr, instance.GetOwner());
    Reference reference;
    ASSERT_TRUE(instance.GetAttributeValue(u"unitRef", reference).Ok());
    EXPECT_EQ(m_view, reference.GetHandle().GetObject());
    ASSERT_TRUE(instance.GetAttributeValue(u"partRef", reference).Ok());
    EXPECT_EQ(m_view, reference.GetHandle().GetObject());
}

TEST_F(CopyTest, FlagEightLeavesTheTextOfReferencesAlone)
{
    Object& instance = CopyOf(*m_instance, 8);
    Reference reference;
    for (const char16_t* name : {u"unitRef", u"partRef"})
    {
        ASSERT_TRUE(instance.GetAttributeValue(name, reference).Ok());
        EXPECT_EQ(nullptr, reference.GetHandle().GetData());
        EXPECT_EQ(Text(*m_instance, name), Text(instance, name));
    }
}

TEST_F(CopyTest, AValueEqualToTheDefaultIsLeftOut)
{
    m_material->SetAttributeValue(u"alpha", u"0.5");
    m_material->SetAttributeValue(u"alpha", u"1.0");
    ASSERT_TRUE(IsStored(*m_material, u"alpha"));
    m_material->SetAttributeValue(u"shininess", u"0");
    Object& copy = CopyOf(*m_material, 0);
    // "%.16g" of 1 is "1", which isn't the default's text "1.0".
    EXPECT_EQ("1", Text(copy, u"alpha"));

    const auto representation = Make(u"Representation");
    representation->SetAttributeValue(u"type", u"hologram");
    representation->SetAttributeValue(u"type", u"default");
    ASSERT_TRUE(IsStored(*representation, u"type"));
    EXPECT_FALSE(IsStored(CopyOf(*representation, 4), u"type"));
}

TEST_F(CopyTest, AnEmptyValueIsLeftOut)
{
    Configuration options;
    options.Set(u"adapters/ZORVEX/empty_attributes", u"treat_as_set");
    const ConfigurationRef active(&options);
    const char16_t* names[] = {u"name", u"unitRef", u"partRef", u"textureRefs"};
    for (const char16_t* name : names)
    {
        ASSERT_TRUE(m_instance->SetAttributeValue(name, u"").Ok());
        ASSERT_TRUE(IsStored(*m_instance, name));
    }
    Object& copy = CopyOf(*m_instance, 4);
    for (const char16_t* name : names)
    {
        EXPECT_FALSE(IsStored(copy, name));
    }
}

TEST_F(CopyTest, AnExternalReferenceIsCopiedWithItsFlag)
{
    const auto representation = Make(u"Representation");
    representation->SetAttributeValue(u"load", u"true");
    representation->SetAttributeValue(u"location", u"plate.stp");
    Object& copy = CopyOf(*representation, 4);
    EXPECT_EQ("plate.stp", Text(copy, u"location"));
    EXPECT_EQ("true", Text(copy, u"load"));
    representation->DeleteAttribute(u"location");
    EXPECT_EQ("true", Text(CopyOf(*representation, 4), u"load"));
}

TEST_F(CopyTest, ACopiedDocumentHasTheSourcesAuthor)
{
    m_outside->SetAttributeValue(u"author", u"Ada");
    EXPECT_EQ("Ada", Text(CopyOf(*m_outside, 4), u"author"));
}

TEST_F(CopyTest, AnObjectReadWithoutAnIdHasNoneInTheCopyEither)
{
    m_view->SetId(u"");
    ClassData::Of(m_view)->SetNoId();
    Object& copy = CopyOf(*m_graph, 4);
    EXPECT_TRUE(ClassData::Of(Child(copy, u"StructureRevisionView"))->id.IsNone());
}

TEST_F(CopyTest, AGenericCopyHoldsTextsInAClassOfTheElementsName)
{
    Object* odd = nullptr;
    const auto lonely = Make(u"ViewControl");
    lonely->SetAttributeValue(u"name", u"north");
    lonely->SetId(u"id5");
    ASSERT_TRUE(lonely->Copy(odd, 2 | 8).Ok());
    m_copy.reset(odd);
    EXPECT_EQ("ViewControl", Utf8(odd->GetClassName()));
}

TEST_F(CopyTest, AGenericCopyOfAnElementNamedLikeNoClassMakesOne)
{
    ClassDescriptor* application = ClassDescriptor::FindByName(u"Application");
    application->RegisterField(u"holder", zorvexFieldSingleElement);
    application->SetFieldClass(u"holder", u"Representation", 0);
    const auto owner = Make(u"Application");
    Object* held = nullptr;
    ASSERT_TRUE(owner->AddElement(u"Representation", u"holder", held).Ok());
    held->SetId(u"plate");
    held->SetAttributeValue(u"location", u"plate.stp");
    held->SetAttributeValue(u"load", u"true");
    held->SetAttributeValue(u"transformRef", u"id7");
    held->SetAttributeValue(u"propertyRefs", u"a.xml#id1 #id2");

    Object& copy = CopyOf(*held, 2);
    EXPECT_EQ("holder", Utf8(copy.GetClassName()));
    EXPECT_EQ("plate", Text(copy, u"id"));
    EXPECT_EQ("plate.stp", Text(copy, u"location"));
    EXPECT_EQ("true", Text(copy, u"load"));
    EXPECT_EQ("id7", Text(copy, u"transformRef"));
    EXPECT_EQ("a.xml#id1 #id2", Text(copy, u"propertyRefs"));
    FieldInfo info;
    ASSERT_TRUE(copy.GetClassDescriptor()->GetField(u"propertyRefs", info, 2).Ok());
    EXPECT_EQ(zorvexFieldString, info.GetType());
}

}  // namespace
