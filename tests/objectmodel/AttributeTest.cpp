#include "objectmodel/AttributeStore.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/TestObjects.h"
#include "zorvex_api/ConfigurationRef.h"
#include "zorvex_api/Transf.h"
#include "zorvex_api/Vector.h"

using namespace zorvex_api;
using namespace zorvex_test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class AttributeTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_object = Make(u"Instance");
        ASSERT_NE(nullptr, m_object);
    }
    void TearDown() override
    {
        m_object.reset();
        SessionTest::TearDown();
    }

    Object& Instance() { return *m_object; }

    std::unique_ptr<Object> m_object;
};

std::vector<double> Doubles(const Object& object, const String& name)
{
    Array<double> values;
    EXPECT_TRUE(object.GetAttributeValue(name, values).Ok());
    return std::vector<double>(values.begin(), values.end());
}

// --- names
// ------------------------------------------------------------------------------------------

TEST_F(AttributeTest, AFieldOfExactlyTheNameWinsOverASetReference)
{
    ASSERT_TRUE(Instance().SetAttributeValue(u"nameRef", u"#id9").Ok());
    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"Bolt").Ok());

    EXPECT_EQ("Bolt", Text(Instance(), u"name"));
    EXPECT_EQ("#id9", Text(Instance(), u"nameRef"));
    EXPECT_TRUE(Instance().DeleteAttribute(u"name").Ok());
    EXPECT_EQ("", Text(Instance(), u"name"));
}

TEST_F(AttributeTest, OfTwoNearNamesTheOneThatIsNoReferenceWins)
{
    const auto other = Make(u"Instance");
    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"Bolt").Ok());
    ASSERT_TRUE(Instance().SetAttributeValue(u"nameRef", u"#id9").Ok());
    ASSERT_TRUE(other->SetAttributeValue(u"nameRef", u"#id9").Ok());
    ASSERT_TRUE(other->SetAttributeValue(u"name", u"Nut").Ok());

    EXPECT_EQ("Bolt", Text(Instance(), u"Name"));
    EXPECT_EQ("Nut", Text(*other, u"Name"));
    EXPECT_EQ("#id9", Text(*other, u"NameRef"));
}

TEST_F(AttributeTest, AReferenceIsFoundWithoutItsEndingAndInEitherCase)
{
    ASSERT_TRUE(Instance().SetAttributeValue(u"Unit", u"id3").Ok());

    EXPECT_EQ("id3", Text(Instance(), u"unitRef"));
    EXPECT_EQ("id3", Text(Instance(), u"unit"));
    EXPECT_EQ("! \"unitRefs\" is not an allowed attribute of: \"Instance\".",
              Text(Instance(), u"unitRefs"));
}

TEST_F(AttributeTest, AnUnknownNameFailsInEveryOperation)
{
    const std::string message =
        "ERROR 525: \"colour\" is not an allowed attribute of: \"Instance\".";
    int number = 7;
    int has = 5;
    Array<Handle> handles;

    EXPECT_THAT(Messages(Instance().GetAttributeValue(u"colour", number)), ElementsAre(message));
    EXPECT_THAT(Messages(Instance().SetAttributeValue(u"colour", u"red")), ElementsAre(message));
    EXPECT_THAT(Messages(Instance().SetAttributeValue(u"colour", 1.5)), ElementsAre(message));
    EXPECT_THAT(Messages(Instance().AddAttributeValue(u"colour", Reference(u"id1"))),
                ElementsAre(message));
    EXPECT_THAT(Messages(Instance().DeleteAttribute(u"colour")), ElementsAre(message));
    EXPECT_THAT(Messages(Instance().ResolveAttribute(u"colour", handles)), ElementsAre(message));
    EXPECT_EQ(0, Instance().HasAttribute(u"colour", has));
    EXPECT_EQ(0, has);
    EXPECT_EQ(0, Instance().HasField(u"colour", 14));
    EXPECT_EQ(7, number);
}

TEST_F(AttributeTest, TheIdIsAnAttributeOfItsOwnKind)
{
    int number = 0;
    ASSERT_TRUE(Instance().SetAttributeValue(u"Id", u"id12").Ok());
    EXPECT_EQ("id12", Text(Instance(), u"id"));
    ASSERT_TRUE(Instance().GetAttributeValue(u"id", number).Ok());
    EXPECT_EQ(12, number);

    ASSERT_TRUE(Instance().SetAttributeValue(u"id", 40).Ok());
    EXPECT_EQ("id40", IdOf(Instance()));
    EXPECT_FALSE(Instance().SetAttributeValue(u"id", 0).Ok());
    EXPECT_THAT(Messages(Instance().AddAttributeValue(u"id", Reference(u"id41"))),
                ElementsAre("ERROR 2: Incorrect Field Type."));
    EXPECT_EQ("id40", IdOf(Instance()));

    ASSERT_TRUE(Instance().SetAttributeValue(u"id", 2000000000).Ok());  // kept as text
    ASSERT_TRUE(Instance().GetAttributeValue(u"id", number).Ok());
    EXPECT_EQ(2000000000, number);
    Instance().SetId(u"id2147483648");
    EXPECT_FALSE(Instance().GetAttributeValue(u"id", number).Ok());

    ASSERT_TRUE(Instance().SetAttributeValue(u"id", u"bolt").Ok());
    EXPECT_THAT(Messages(Instance().GetAttributeValue(u"id", number)),
                ElementsAre("ERROR 2: Id attribute cannot be represented as an int."));
    EXPECT_TRUE(Instance().DeleteAttribute(u"id").Ok());
    EXPECT_EQ("", IdOf(Instance()));
}

// --- unset values and defaults
// ----------------------------------------------------------------------

TEST_F(AttributeTest, AnUnsetFieldGivesItsDefaultOrSaysSo)
{
    const auto material = Make(u"Material");
    double shininess = 9.0;
    double alpha = 0.0;
    int has = 0;

    EXPECT_EQ("", Text(Instance(), u"quantity"));
    EXPECT_THAT(Messages(Instance().GetAttributeValue(u"quantity", shininess)),
                ElementsAre("ERROR 2: Attribute: \"quantity\" is not set."));
    EXPECT_EQ(0, Instance().HasAttributeValue(u"quantity", has));
    EXPECT_EQ(0, Instance().HasField(u"quantity", 2));

    EXPECT_EQ("1.0", Text(*material, u"alpha"));
    EXPECT_TRUE(material->GetAttributeValue(u"alpha", alpha).Ok());
    EXPECT_EQ(1.0, alpha);
    EXPECT_THAT(Doubles(*material, u"specular"), ElementsAre(0.0, 0.0, 0.0));
    EXPECT_EQ(1, material->HasAttributeValue(u"alpha", has));
    EXPECT_EQ(0, has);
    EXPECT_EQ(1, material->HasField(u"alpha", 2));
}

TEST_F(AttributeTest, ADefaultIsNotStoredOnAnUntouchedField)
{
    const auto material = Make(u"Material");

    ASSERT_TRUE(material->SetAttributeValue(u"alpha", u"1.0").Ok());
    EXPECT_FALSE(IsStored(*material, u"alpha"));
    ASSERT_TRUE(material->SetAttributeValue(u"alpha", 1.0).Ok());
    EXPECT_FALSE(IsStored(*material, u"alpha"));
    const double black[] = {0.0, 0.0, 0.0};
    ASSERT_TRUE(material->SetAttributeValue(u"specular", Array<double>(3, black)).Ok());
    EXPECT_FALSE(IsStored(*material, u"specular"));

    // The text isn't the default's, letter for letter.
    ASSERT_TRUE(material->SetAttributeValue(u"alpha", u"1").Ok());
    EXPECT_TRUE(IsStored(*material, u"alpha"));
    ASSERT_TRUE(material->SetAttributeValue(u"alpha", u"1.0").Ok());
    EXPECT_TRUE(IsStored(*material, u"alpha"));
}

TEST_F(AttributeTest, TheEmptyTextDeletesUnlessTheActiveOptionsKeepIt)
{
    Configuration options;
    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"Bolt").Ok());
    const ConfigurationRef active(&options);

    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"").Ok());
    EXPECT_FALSE(IsStored(Instance(), u"name"));

    options.Set(u"adapters/ZORVEX/empty_attributes", u"treat_as_set");
    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"").Ok());
    EXPECT_TRUE(IsStored(Instance(), u"name"));
    for (const char16_t* reference : {u"unitRef", u"partRef", u"textureRefs"})
    {
        ASSERT_TRUE(Instance().SetAttributeValue(reference, u"").Ok());
        EXPECT_TRUE(IsStored(Instance(), reference));
        EXPECT_EQ("", Text(Instance(), reference));
    }
    ASSERT_TRUE(Instance().SetAttributeValue(u"quantity", u"").Ok());
    EXPECT_FALSE(IsStored(Instance(), u"quantity"));

    options.Set(u"adapters/ZORVEX/empty_attributes", u"");
    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"").Ok());
    EXPECT_FALSE(IsStored(Instance(), u"name"));
}

TEST_F(AttributeTest, ControlCharactersAreRefused)
{
    ASSERT_TRUE(Instance().SetAttributeValue(u"name", u"Bolt").Ok());
    EXPECT_THAT(Messages(Instance().SetAttributeValue(u"name", u"M8\x0001")),
                ElementsAre("ERROR 520: Invalid Unicode character: ( 0x1 ) index: ( 2 )",
                            "ERROR 2: Unable to set attribute: \"name\"."));
    EXPECT_EQ("Bolt", Text(Instance(), u"name"));

    for (const char16_t* list : {u"textureRefs", u"attributeRefs"})
    {
        const Reference wrong(u"#id1 #\x0001");
        ASSERT_TRUE(Instance().AddAttributeValue(list, Reference(u"#id5")).Ok());
        const std::string before = Text(Instance(), list);
        const auto refused =
            ElementsAre("ERROR 520: Invalid Unicode character: ( 0x1 ) index: ( 6 )",
                        "ERROR 2: Unable to set attribute: \"" + Utf8(list) + "\".");
        EXPECT_THAT(Messages(Instance().AddAttributeValue(list, wrong)), refused);
        EXPECT_THAT(Messages(Instance().SetAttributeValue(list, wrong)), refused);
        EXPECT_EQ(before, Text(Instance(), list));
    }
    EXPECT_TRUE(Instance().SetAttributeValue(u"name", u"a\tb\r\n\u00e9\xd800").Ok());
}

// --- numbers
// ----------------------------------------------------------------------------------------

TEST_F(AttributeTest, NumbersReadAsTextAndBack)
{
    int whole = 0;
    double number = 0.0;
    ASSERT_TRUE(Instance().SetAttributeValue(u"sequenceNumber", u" 42nd").Ok());
    EXPECT_TRUE(Instance().GetAttributeValue(u"sequenceNumber", whole).Ok());
    EXPECT_EQ(42, whole);
    ASSERT_TRUE(Instance().SetAttributeValue(u"sequenceNumber", -7).Ok());
    EXPECT_EQ("-7", Text(Instance(), u"sequenceNumber"));
    ASSERT_TRUE(Instance().SetAttributeValue(u"sequenceNumber", u"none").Ok());
    EXPECT_EQ("0", Text(Instance(), u"sequenceNumber"));

    ASSERT_TRUE(Instance().SetAttributeValue(u"quantity", 0.1).Ok());
    EXPECT_EQ("0.1", Text(Instance(), u"quantity"));
    ASSERT_TRUE(Instance().SetAttributeValue(u"quantity", 1.0 / 3.0).Ok());
    EXPECT_EQ("0.3333333333333333", Text(Instance(), u"quantity"));
    ASSERT_TRUE(Instance().GetAttributeValue(u"quantity", number).Ok());
    EXPECT_EQ(1.0 / 3.0, number);

    const std::string wrong =
        "ERROR 2: Cannot get attribute: \"quantity\". Attribute field is of the wrong type.";
    EXPECT_THAT(Messages(Instance().SetAttributeValue(u"quantity", 3)), ElementsAre(wrong));
    EXPECT_THAT(Messages(Instance().SetAttributeValue(u"quantity", Vector(1, 2, 3))),
                ElementsAre(wrong));
}

TEST_F(AttributeTest, ANumberOutsideThirtyTwoBitsIsNotStored)
{
    ASSERT_TRUE(Instance().SetAttributeValue(u"sequenceNumber", 5).Ok());
    EXPECT_THAT(Messages(Instance().SetAttributeValue(u"sequenceNumber", u"4294967296")),
                ElementsAre("ERROR 2: Unable to convert one of: \"4294967296\" to integer. "
                            "Overflow?.",
                            "ERROR 2: Unable to set attribute: \"sequenceNumber\"."));
    EXPECT_EQ("5", Text(Instance(), u"sequenceNumber"));
    EXPECT_TRUE(Instance().SetAttributeValue(u"sequenceNumber", u"-2147483648").Ok());
    EXPECT_EQ("-2147483648", Text(Instance(), u"sequenceNumber"));
}

TEST_F(AttributeTest, ListsKeepWhatWasReadAndFixedOnesTheirLength)
{
    const auto bound = Make(u"Bound");
    ASSERT_TRUE(bound->SetAttributeValue(u"values", u"1 2.5,3 x 4").Ok());
    EXPECT_EQ("1 2.5 3", Text(*bound, u"values"));

    const auto material = Make(u"Material");
    ASSERT_TRUE(material->SetAttributeValue(u"diffuse", u"0.5").Ok());
    EXPECT_EQ("0.5 0 0", Text(*material, u"diffuse"));
    ASSERT_TRUE(material->SetAttributeValue(u"diffuse", u"1,x2 3 4 5").Ok());
    EXPECT_EQ("1 0 2", Text(*material, u"diffuse"));
    const double two[] = {1.0, 2.0};
    EXPECT_FALSE(material->SetAttributeValue(u"diffuse", Array<double>(2, two)).Ok());
    EXPECT_EQ("1 0 2", Text(*material, u"diffuse"));
}

/// Fields that the schemas don't have in this form.
class OwnFieldsTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_class = ClassDescriptor::FindByName(u"Application");
        m_class->RegisterField(u"counts", zorvexFieldInt);
        m_class->SetFieldLength(u"counts", 0);
        m_class->RegisterField(u"pair", zorvexFieldInt);
        m_class->SetFieldLength(u"pair", 2);
        m_class->RegisterField(u"marks", zorvexFieldLogical);
        m_class->SetFieldLength(u"marks", 0);
        m_class->RegisterField(u"level", zorvexFieldInt);
        m_class->SetFieldDefault(u"level", u"3rd");
        m_object = Make(u"Application");
    }
    void TearDown() override
    {
        m_object.reset();
        SessionTest::TearDown();
    }

    ClassDescriptor* m_class = nullptr;
    std::unique_ptr<Object> m_object;
};

TEST_F(OwnFieldsTest, TheLengthOfNumbersThatAnObjectHoldsStays)
{
    ASSERT_TRUE(m_object->SetAttributeValue(u"pair", u"7 8").Ok());
    EXPECT_EQ(0, m_class->SetFieldLength(u"pair", 3));
    EXPECT_EQ(1, m_class->SetFieldLength(u"pair", 2)) << "nothing changes";
    EXPECT_EQ("7 8", Text(*m_object, u"pair"));
    m_object.reset();
    EXPECT_EQ(1, m_class->SetFieldLength(u"pair", 3));
}

TEST_F(OwnFieldsTest, TheClassOfAContentElementThatAnObjectHoldsStays)
{
    m_class->RegisterField(u"mass", zorvexFieldContentElement);
    ASSERT_EQ(1, m_class->SetFieldClass(u"mass", u"Integer", 0));
    ASSERT_EQ(1, m_class->SetFieldLength(u"mass", 3));
    ASSERT_TRUE(m_object->SetAttributeValue(u"mass", u"7 8 9").Ok());
    EXPECT_EQ(0, m_class->SetFieldClass(u"mass", u"Double", 0));
    EXPECT_EQ(0, m_class->SetFieldClass(u"mass", u"String", 0));
    EXPECT_EQ(1, m_class->SetFieldClass(u"mass", u"Integer", 0)) << "nothing changes";
    EXPECT_EQ("7 8 9", Text(*m_object, u"mass"));
    m_object.reset();
    EXPECT_EQ(1, m_class->SetFieldClass(u"mass", u"String", 0));
}

TEST_F(OwnFieldsTest, AnIntListKeepsTheNumbersBeforeTheBadOne)
{
    EXPECT_THAT(Messages(m_object->SetAttributeValue(u"counts", u"1 2\t99999999999 4")),
                ElementsAre("ERROR 2: Unable to convert one of: \"1 2\t99999999999 4\" to integer. "
                            "Overflow?.",
                            "ERROR 2: Unable to set attribute: \"counts\"."));
    EXPECT_EQ("1 2", Text(*m_object, u"counts"));

    int number = 0;
    EXPECT_THAT(Messages(m_object->GetAttributeValue(u"counts", number)),
                ElementsAre("ERROR 2: Attribute: \"counts\" is not set."));
    EXPECT_THAT(Messages(m_object->SetAttributeValue(u"pair", u"7 3000000000")),
                ElementsAre(testing::HasSubstr("Overflow?."), testing::_));
    EXPECT_FALSE(IsStored(*m_object, u"pair"));
    ASSERT_TRUE(m_object->SetAttributeValue(u"pair", u"7").Ok());
    EXPECT_EQ("7 0", Text(*m_object, u"pair"));
}

TEST_F(OwnFieldsTest, LogicalsAndDefaultsOfInts)
{
    int level = 0;
    EXPECT_TRUE(m_object->GetAttributeValue(u"level", level).Ok());
    EXPECT_EQ(3, level);

    ASSERT_TRUE(m_object->SetAttributeValue(u"marks", u"true, false,0").Ok());
    EXPECT_EQ("true false true", Text(*m_object, u"marks"));
    const int marks[] = {5, 0};
    ASSERT_TRUE(m_object->SetAttributeValue(u"marks", Array<int>(2, marks)).Ok());
    EXPECT_EQ("true false", Text(*m_object, u"marks"));
}

// --- enumerations and formats
// -----------------------------------------------------------------------

TEST_F(AttributeTest, AnUnknownEnumTextIsKeptWithAWarning)
{
    const auto representation = Make(u"Representation");
    EXPECT_THAT(Messages(representation->SetAttributeValue(u"type", u"hologram")),
                ElementsAre(testing::StartsWith(
                    "WARNING 523: \"hologram\" is not an allowed value of the enum: \"")));
    EXPECT_EQ("hologram", Text(*representation, u"type"));
    EXPECT_THAT(Messages(representation->SetAttributeValue(u"type", u"default")), IsEmpty());
    EXPECT_EQ("default", Text(*representation, u"type"));
}

TEST_F(AttributeTest, ThePredecessorsFormatReadsAsZorvex)
{
    const auto file = Make(u"ExternalFile");
    ASSERT_TRUE(file->SetAttributeValue(u"format", u"oRB").Ok());
    EXPECT_EQ("ZORVEX", Text(*file, u"format"));
    ASSERT_TRUE(file->SetAttributeValue(u"name", u"oRB").Ok());
    EXPECT_EQ("oRB", Text(*file, u"name"));
}

TEST_F(AttributeTest, AFormatIsToldToTheFileAndNotToOtherReferences)
{
    const auto format = [](Object& object, TextView name)
    {
        FieldData* data = nullptr;
        attribute_store::FindField(*ClassData::Of(&object), name, data);
        return data != nullptr ? ToUtf8(data->External()->FormatText()) : "no record";
    };
    const auto representation = Make(u"Representation");
    const auto file = Make(u"ExternalFile");
    representation->SetAttributeValue(u"location", u"plate.stp");
    file->SetAttributeValue(u"locationRef", u"plate.stp");
    for (Object* object : {representation.get(), file.get()})
    {
        ASSERT_TRUE(object->SetAttributeValue(u"nameRef", u"#id9").Ok());
        ASSERT_TRUE(object->SetAttributeValue(u"format", u"TOY").Ok());
        EXPECT_EQ("", format(*object, u"nameRef"));
    }
    EXPECT_EQ("TOY", format(*representation, u"location"));
    EXPECT_EQ("TOY", format(*file, u"locationRef"));
    representation->SetAttributeValue(u"format", u"oRB");
    EXPECT_EQ("ZORVEX", format(*representation, u"location"));
}

// --- references
// -------------------------------------------------------------------------------------

TEST_F(AttributeTest, AReferenceNeedsOneTreeOrALink)
{
    const auto graph = Make(u"InstanceGraph");
    Object* instance = AddChild(*graph, u"Instance");
    Object* view = AddChild(*graph, u"ProductRevisionView");
    const auto other = Make(u"InstanceGraph");
    Object* stranger = AddChild(*other, u"Instance");
    graph->SetId(u"id50");

    ASSERT_TRUE(graph->SetAttributeValue(u"rootRefs", Reference(Handle(view))).Ok());
    ASSERT_TRUE(instance->SetAttributeValue(u"unitRef", Reference(Handle(view))).Ok());
    EXPECT_EQ(IdOf(*view), Text(*instance, u"unitRef"));
    EXPECT_THAT(Messages(instance->SetAttributeValue(u"unitRef", Reference(Handle(stranger)))),
                ElementsAre("ERROR 2: Unable to set attribute: \"unitRef\". The reference \"" +
                            IdOf(*stranger) + "\" must be in the same root as object."));

    // The refusal leaves the field empty.
    EXPECT_EQ(0, instance->HasField(u"unitRef", 2));
    EXPECT_TRUE(instance->AddAttributeValue(u"unitRef", Reference(Handle(view))).Ok());

    // An object without an owner is linked, and shows the id that its target has at the time.
    ASSERT_TRUE(Instance().SetAttributeValue(u"unitRef", Reference(Handle(stranger))).Ok());
    stranger->SetId(u"id77");
    EXPECT_EQ("id77", Text(Instance(), u"unitRef"));
    Reference read;
    ASSERT_TRUE(Instance().GetAttributeValue(u"unitRef", read).Ok());
    EXPECT_EQ(stranger, read.GetHandle().GetObject());
}

TEST_F(AttributeTest, ATargetWithoutAnIdGetsOneWhenItIsReferredTo)
{
    const auto graph = Make(u"InstanceGraph");
    Object* instance = AddChild(*graph, u"Instance");
    Object* view = AddChild(*graph, u"ProductRevisionView");
    view->SetId(u"");
    ClassData::Of(view)->SetNoId();

    ASSERT_TRUE(instance->SetAttributeValue(u"unitRef", Reference(Handle(view))).Ok());
    EXPECT_NE("", IdOf(*view));
    EXPECT_EQ(IdOf(*view), Text(*instance, u"unitRef"));
    EXPECT_EQ(view, graph->ResolveId(view->GetId()));
}

TEST_F(AttributeTest, ListsOfReferencesGrowAndLeaveOutWhatTheyHave)
{
    const auto graph = Make(u"InstanceGraph");
    Object* view = AddChild(*graph, u"ProductRevisionView");
    Object* first = AddChild(*graph, u"ProductRevisionView");

    EXPECT_THAT(Messages(view->AddAttributeValue(u"partRefs", Reference(u"id9"), 1)),
                ElementsAre("ERROR 19: flags"));
    ASSERT_TRUE(view->AddAttributeValue(u"partRefs", Reference(Handle(first))).Ok());
    ASSERT_TRUE(view->AddAttributeValue(u"partRefs", Reference(u"#id9")).Ok());
    EXPECT_EQ(IdOf(*first) + " id9", Text(*view, u"partRefs"));
    EXPECT_THAT(Messages(view->AddAttributeValue(u"partRefs", Reference(Handle(first)), 2)),
                ElementsAre("ERROR 20: At least one supplied reference already exists."));
    Reference several(u"id9 id10 id10");
    EXPECT_TRUE(view->AddAttributeValue(u"partRefs", several, 2).Ok());
    EXPECT_EQ(IdOf(*first) + " id9 id10", Text(*view, u"partRefs"));

    Reference one;
    EXPECT_THAT(Messages(view->GetAttributeValue(u"partRefs", one)),
                ElementsAre("ERROR 517: More then one IDREF value exists."));
    ASSERT_TRUE(view->SetAttributeValue(u"materialRef", Reference(u"id1")).Ok());
    EXPECT_THAT(Messages(view->AddAttributeValue(u"materialRef", Reference(u"id2"))),
                ElementsAre("ERROR 2: Incorrect Field Type."));
    Array<Reference> pair;
    pair.Add(Reference(u"id1"));
    pair.Add(Reference(u"id2"));
    EXPECT_THAT(Messages(view->SetAttributeValue(u"materialRef", pair)),
                ElementsAre("ERROR 2: Field is of type \"zorvexFieldSingleReference\" and size of "
                            "Reference array != 1."));
}

TEST_F(AttributeTest, AListThatCannotGrowStaysAsItWas)
{
    const std::string message = "ERROR 2: Unable to add attribute: \"partRefs\".";
    const auto view = Make(u"ProductRevisionView");
    ASSERT_TRUE(view->AddAttributeValue(u"partRefs", Reference(u"id1")).Ok());
    const String name(u"partRefs");
    const Reference second(u"id2 id3 id4 id5 id6 id7 id8 id9");
    ASSERT_EQ(0, second.GetHandles().GetSize());  // takes its memory now
    Hooks().RefuseNth(1);
    const Result refused = view->AddAttributeValue(name, second);
    Hooks().RefuseNth(0);
    EXPECT_THAT(Messages(refused), ElementsAre(message));
    EXPECT_EQ("id1", Text(*view, u"partRefs"));
    EXPECT_TRUE(view->AddAttributeValue(name, second).Ok());
}

TEST_F(AttributeTest, AnUnsetReferenceIsAWarningAndOtherFieldsAreNone)
{
    Reference value;
    Array<Reference> values;
    EXPECT_THAT(Messages(Instance().GetAttributeValue(u"unitRef", value)),
                ElementsAre("WARNING 2: Attribute: \"unitRef\" is not set."));
    EXPECT_THAT(Messages(Instance().ResolveAttributeValue(u"unitRef", values, nullptr)),
                ElementsAre("WARNING 2: Attribute: \"unitRef\" is not set."));
    EXPECT_THAT(Messages(Instance().GetAttributeValue(u"quantity", value)),
                ElementsAre("ERROR 517: Unexpected field type."));
    Instance().SetId(u"bolt");
    EXPECT_THAT(Messages(Instance().ResolveAttributeValue(u"id", values, nullptr)),
                ElementsAre("ERROR 517: Unexpected field type."));

    ASSERT_TRUE(Instance().SetAttributeValue(u"unitRef", u"id404").Ok());
    Array<Handle> handles;
    EXPECT_TRUE(Instance().ResolveAttributeValue(u"unitRef", values, nullptr).Ok());
    EXPECT_EQ("id404", Utf8(values[0].GetString()));
    EXPECT_THAT(Messages(Instance().ResolveAttribute(u"unitRef", handles)),
                ElementsAre("ERROR 2: Unable to resolve attribute: \"unitRef\"."));
}

TEST_F(AttributeTest, AUriShowsItsTargetsPresentIdAndKeepsItsTextWhenThatDies)
{
    const auto graph = Make(u"InstanceGraph");
    Object* instance = AddChild(*graph, u"Instance");
    Object* view = AddChild(*graph, u"ProductRevisionView");

    ASSERT_TRUE(instance->SetAttributeValue(u"partRef", Reference(Handle(view))).Ok());
    EXPECT_EQ("#" + IdOf(*view), Text(*instance, u"partRef"));
    view->SetId(u"id300");
    EXPECT_EQ("#id300", Text(*instance, u"partRef"));
    Reference read;
    ASSERT_TRUE(instance->GetAttributeValue(u"partRef", read).Ok());
    EXPECT_EQ(view, read.GetHandle().GetObject());

    ASSERT_TRUE(graph->DeleteElement(view).Ok());
    EXPECT_EQ("#id300", Text(*instance, u"partRef"));
    ASSERT_TRUE(instance->GetAttributeValue(u"partRef", read).Ok());
    EXPECT_EQ(nullptr, read.GetHandle().GetData());
}

TEST_F(AttributeTest, TheTextOfAUriIsNormalisedOnlyWhereItHasTo)
{
    ASSERT_TRUE(Instance().SetAttributeValue(u"partRef", u"abc").Ok());
    EXPECT_EQ("#abc", Text(Instance(), u"partRef"));
    ASSERT_TRUE(Instance().SetAttributeValue(u"partRef", u"b.xml#id5").Ok());
    EXPECT_EQ("b.xml#id5", Text(Instance(), u"partRef"));
    ASSERT_TRUE(
        Instance().SetAttributeValue(u"textureRefs", u" a%20b.xml\tc/../d.xml #id5 e..f").Ok());
    EXPECT_EQ("a b.xml d.xml #id5 e..f", Text(Instance(), u"textureRefs"));
    ASSERT_TRUE(Instance().SetAttributeValue(u"textureRefs", Array<Reference>()).Ok());
    EXPECT_FALSE(IsStored(Instance(), u"textureRefs"));
}

TEST_F(AttributeTest, AListOfUrisIsReadChangedAndSetEntryByEntry)
{
    Instance().SetAttributeValue(u"textureRefs", u"a%20b.xml #id5");
    Array<Reference> entries;
    ASSERT_TRUE(Instance().GetAttributeValue(u"textureRefs", entries).Ok());
    ASSERT_EQ(2, entries.GetSize());
    EXPECT_EQ("a b.xml", Utf8(entries[0].GetString()));  // unescaped, but one entry
    entries[1] = Reference(u"#id6 #id7");
    ASSERT_TRUE(Instance().SetAttributeValue(u"textureRefs", entries).Ok());
    ASSERT_TRUE(Instance().GetAttributeValue(u"textureRefs", entries).Ok());
    ASSERT_EQ(3, entries.GetSize());
    EXPECT_EQ("a b.xml", Utf8(entries[0].GetString()));
    EXPECT_EQ("#id6", Utf8(entries[1].GetString()));
}

TEST_F(AttributeTest, LoadAndLocationShareOneRecord)
{
    const auto representation = Make(u"Representation");
    int load = 0;
    EXPECT_FALSE(representation->GetAttributeValue(u"load", load).Ok());
    ASSERT_TRUE(representation->SetAttributeValue(u"load", u"true").Ok());
    ASSERT_TRUE(representation->SetAttributeValue(u"location", u"plate.stp").Ok());
    EXPECT_TRUE(representation->GetAttributeValue(u"load", load).Ok());
    EXPECT_EQ(1, load);
    EXPECT_EQ("true", Text(*representation, u"load"));
    EXPECT_EQ("plate.stp", Text(*representation, u"location"));

    ASSERT_TRUE(representation->DeleteAttribute(u"location").Ok());
    EXPECT_EQ("", Text(*representation, u"location"));
    EXPECT_EQ("true", Text(*representation, u"load"));
    ASSERT_TRUE(representation->SetAttributeValue(u"load", 0).Ok());
    EXPECT_EQ("false", Text(*representation, u"load"));
}

// --- all attributes
// ---------------------------------------------------------------------------------

TEST_F(AttributeTest, AllAttributesComeInTheOrderOfTheClass)
{
    Instance().SetAttributeValue(u"name", u"Bolt");
    Instance().SetAttributeValue(u"quantity", 4.0);
    Instance().SetId(u"id8");
    Map<String, String> values;
    ASSERT_TRUE(Instance().GetAttributeValues(values).Ok());
    ASSERT_LE(3, values.GetSize());
    EXPECT_EQ("id", Utf8(values.GetKey(0)));
    EXPECT_LT(values.LookupIndex(u"quantity"), values.LookupIndex(u"name"));
    EXPECT_EQ("4", Utf8(values.GetValue(values.LookupIndex(u"quantity"))));

    Map<String, int> types;
    ASSERT_TRUE(Instance().GetAttributeTypes(types).Ok());
    int type = 0;
    EXPECT_TRUE(types.Lookup(u"unitRef", type));
    EXPECT_EQ(zorvexFieldSingleReference, type);
}

TEST_F(AttributeTest, ContentIsAnAttributeByItsOwnName)
{
    const auto point = Make(u"VectorField");
    ASSERT_TRUE(point->SetContent(Vector(1.0, 2.0, 3.5)).Ok());
    String text;
    ASSERT_TRUE(point->GetContent(text).Ok());
    EXPECT_EQ("1 2 3.5", Utf8(text));
    EXPECT_EQ(1, point->HasContent());
    ASSERT_TRUE(point->ResetContent().Ok());
    EXPECT_EQ(0, point->HasContent());
    Vector value;
    EXPECT_THAT(Messages(point->GetContent(value)),
                ElementsAre("ERROR 2: Attribute: \"Content\" is not set."));
    EXPECT_THAT(
        Messages(Instance().GetContent(text)),
        ElementsAre("ERROR 525: \"Content\" is not an allowed attribute of: \"Instance\"."));
}

}  // namespace
