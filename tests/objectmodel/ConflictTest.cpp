#include "objectmodel/ClassData.h"
#include "objectmodel/TestObjects.h"

using namespace zorvex_api;
using namespace zorvex_test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/// Two graphs whose generated ids are the same.
class ConflictTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_document = Make(u"Document");
        m_other = AddChild(*m_document, u"ProductRevisionView");
        m_def = AddChild(*m_document, u"ProductDef");
        m_joining = Make(u"InstanceGraph");
        m_view = AddChild(*m_joining, u"ProductRevisionView");
        m_instance = AddChild(*m_joining, u"Instance");
    }
    void TearDown() override
    {
        m_joining.reset();
        m_document.reset();
        SessionTest::TearDown();
    }

    std::unique_ptr<Object> m_document;
    std::unique_ptr<Object> m_joining;
    Object* m_other = nullptr;
    Object* m_def = nullptr;
    Object* m_view = nullptr;
    Object* m_instance = nullptr;
};

TEST_F(ConflictTest, GeneratedIdsAreRenumberedAndReferencesFollow)
{
    ASSERT_EQ(IdOf(*m_other), IdOf(*m_view));
    const String old = m_view->GetId();
    m_instance->SetAttributeValue(u"unitRef", Reference(old));
    m_instance->SetAttributeValue(u"partRef", "#" + old);
    m_instance->SetAttributeValue(u"textureRefs", "#id900 #" + old + " x.xml#" + old);

    EXPECT_THAT(Messages(m_joining->ResolveIdConflict(m_document.get(), 0)), IsEmpty());

    EXPECT_EQ(nullptr, m_document->ResolveId(m_view->GetId()));
    EXPECT_EQ(nullptr, m_document->ResolveId(m_instance->GetId()));
    EXPECT_NE(IdOf(*m_view), IdOf(*m_instance));
    EXPECT_EQ(m_view, m_joining->ResolveId(m_view->GetId()));
    EXPECT_EQ(IdOf(*m_view), Text(*m_instance, u"unitRef"));
    EXPECT_EQ("#" + IdOf(*m_view), Text(*m_instance, u"partRef"));
    EXPECT_EQ("#id900 #" + IdOf(*m_view) + " x.xml#" + Utf8(old),
              Text(*m_instance, u"textureRefs"));
    EXPECT_TRUE(ClassData::Of(m_view)->id.IsGenerated());
}

TEST_F(ConflictTest, AnIdThatWasGivenIsAConflictUnlessForced)
{
    m_other->SetId(u"bolt");
    m_view->SetId(u"bolt");
    m_instance->SetAttributeValue(u"partRef", u"#bolt");
    EXPECT_THAT(Messages(m_joining->ResolveIdConflict(m_document.get(), 0)),
                ElementsAre("ERROR 2: Element with id bolt conflicts with id in parent"));
    EXPECT_EQ("bolt", IdOf(*m_view));
    EXPECT_THAT(Messages(m_joining->SetOwner(m_def)),
                ElementsAre("ERROR 2: Element with id bolt conflicts with id in parent"));
    EXPECT_EQ(nullptr, m_joining->GetOwner());

    EXPECT_THAT(Messages(m_joining->ResolveIdConflict(m_document.get(), 1)), IsEmpty());
    EXPECT_NE("bolt", IdOf(*m_view));
    EXPECT_EQ("#" + IdOf(*m_view), Text(*m_instance, u"partRef"));
    EXPECT_FALSE(ClassData::Of(m_view)->id.IsGenerated());
}

TEST_F(ConflictTest, WhatWasFoundBeforeAConflictIsRenumberedAllTheSame)
{
    m_def->SetId(u"bolt");
    m_view->SetId(u"bolt");
    m_instance->SetId(u"");
    ClassData::Of(m_instance)->TakeGeneratedId();
    m_other->SetId(m_instance->GetId());

    EXPECT_FALSE(m_joining->ResolveIdConflict(m_document.get(), 0).Ok());
    EXPECT_NE(IdOf(*m_other), IdOf(*m_instance));
    EXPECT_EQ("bolt", IdOf(*m_view));
}

TEST_F(ConflictTest, NewNumbersLieAboveBothTrees)
{
    AddChild(*m_document, u"ProductRevisionView")->SetId(u"id500");
    m_joining->SetId(u"id700");
    ASSERT_TRUE(m_joining->ResolveIdConflict(m_document.get(), 0).Ok());
    EXPECT_EQ("id701", std::min(IdOf(*m_view), IdOf(*m_instance)));
    EXPECT_EQ("id702", std::max(IdOf(*m_view), IdOf(*m_instance)));
}

TEST_F(ConflictTest, ChildrenKeptAsideGiveWayToo)
{
    const auto keepAside = [](Object& owner)
    {
        Object* aside = Make(u"Instance").release();
        EXPECT_EQ(
            1,
            ClassData::Of(aside)->SetOwner(&owner, {}, nullptr, true, false, 1).NumberOfErrors());
        return aside;
    };
    Object* aside = keepAside(*m_instance);
    Object* below = keepAside(*aside);
    for (Object* object : {aside, below})
    {
        Object* taken = AddChild(*m_document, u"ProductRevisionView");
        taken->SetId(object->GetId());
    }
    m_view->SetAttributeValue(u"unitRef", Reference(below->GetId()));
    below->SetAttributeValue(u"unitRef", Reference(aside->GetId()));

    ASSERT_TRUE(m_joining->SetOwner(m_def).Ok());
    m_joining.release();

    for (Object* object : {aside, below})
    {
        EXPECT_EQ(object, m_document->ResolveId(object->GetId())) << IdOf(*object);
    }
    EXPECT_NE(IdOf(*aside), IdOf(*below));
    EXPECT_EQ(IdOf(*aside), Text(*below, u"unitRef"));

    const auto another = Make(u"InstanceGraph");
    Object* clash = keepAside(*AddChild(*another, u"Instance"));
    clash->SetId(aside->GetId());
    EXPECT_THAT(
        Messages(another->ResolveIdConflict(m_document.get(), 0)),
        ElementsAre("ERROR 2: Element with id " + IdOf(*aside) + " conflicts with id in parent"));
}

TEST_F(ConflictTest, OnlyARootCanGiveWay)
{
    EXPECT_THAT(Messages(m_view->ResolveIdConflict(m_document.get(), 1)),
                ElementsAre("ERROR 2: Object is not a root"));
}

}  // namespace
