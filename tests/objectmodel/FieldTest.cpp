#include <chrono>

#include "objectmodel/ClassTestSupport.h"
#include "zorvex_api/EnumBase.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;

class FieldTest : public SessionTest
{
protected:
    static std::string Found(const ClassDescriptor* descriptor, const char16_t* text,
                             unsigned int flags = 14)
    {
        FieldInfo info;
        return descriptor->GetField(text, info, flags).HasError() ? "-" : Utf8(info.GetName());
    }
    static std::string Near(const ClassDescriptor* descriptor, const char16_t* text, int mask)
    {
        const FieldDescriptor* field = descriptor->GetImplementation()->FindField(text, mask);
        return field != nullptr ? Utf8(field->Name()) : "-";
    }
    static FieldInfo Info(const ClassDescriptor* descriptor, const char16_t* name)
    {
        FieldInfo info;
        EXPECT_FALSE(descriptor->GetField(name, info, 14).HasError());
        return info;
    }
    static ClassDescriptor* Named(const char16_t* name)
    {
        return ClassDescriptor::FindByName(name);
    }
};

// --- finding ------------------------------------------------------------------------------------

TEST_F(FieldTest, IdIsBuiltInForObjectsWithAnIdAndNotForDocuments)
{
    const FieldInfo id = Info(Named(u"Instance"), u"id");
    EXPECT_EQ(zorvexFieldString, id.GetType());
    EXPECT_EQ(FieldDescriptor::BuiltIn(FieldDescriptor::kId), id.GetDescriptor());
    EXPECT_EQ("-", Found(Named(u"Document"), u"id"));
    EXPECT_EQ("-", Found(Named(u"UserValue"), u"id"));
}

TEST_F(FieldTest, AReferenceIsFoundWithoutItsEnding)
{
    const ClassDescriptor* instance = Named(u"Instance");
    EXPECT_EQ("partRef", Found(instance, u"part"));
    EXPECT_EQ("partRef", Found(instance, u"Part"));
    EXPECT_EQ("partRef", Found(instance, u"PartRef"));
    EXPECT_EQ("-", Found(instance, u"partRefs"));
    EXPECT_EQ("-", Found(instance, u"partref"));
    EXPECT_EQ("effectivityRefs", Found(instance, u"effectivity"));
    EXPECT_EQ("-", Found(instance, u"effectivityRef"));
}

TEST_F(FieldTest, TheExactNameWinsFromAnyLevelOfTheChain)
{
    // nameRef and name stand in one class; a class below with a near name doesn't hide them.
    EXPECT_EQ("name", Found(Named(u"Instance"), u"name"));
    EXPECT_EQ("nameRef", Found(Named(u"Instance"), u"nameRef"));
    ClassDescriptor* below = MakeClass(u"Below", u"1 t.xsd", u"Instance");
    below->RegisterField(u"quantityRef", zorvexFieldSingleReference);
    ClassRegistry::Register(below);
    EXPECT_EQ("quantity", Found(below, u"quantity"));
    EXPECT_EQ("quantityRef", Found(below, u"Quantity")) << "near: the nearest class wins";
    EXPECT_EQ("quantity", Near(below, u"quantity", field_kind::kAttribute));
}

TEST_F(FieldTest, ACapitalFindsASmallFirstLetterAndNotTheOtherWayRound)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    descriptor->RegisterField(u"small", zorvexFieldString);
    descriptor->RegisterField(u"Large", zorvexFieldString);
    EXPECT_EQ("small", Found(descriptor, u"Small"));
    EXPECT_EQ("Large", Found(descriptor, u"Large"));
    EXPECT_EQ("-", Found(descriptor, u"large"));
    EXPECT_EQ("-", Found(descriptor, u"SMALL"));
}

TEST_F(FieldTest, AClassQualifiedTextNamesTheFieldOfThatClassOnly)
{
    const String main = ToString(Namespace::MainUri());
    const auto found = [&](const ClassDescriptor* descriptor, const char16_t* key)
    { return Found(descriptor, AsChar16((main + key).GetData())); };
    const ClassDescriptor* instance = Named(u"Instance");
    EXPECT_EQ("Attribute", found(instance, u":AttribOwner:Attribute"));
    EXPECT_EQ("partRef", found(instance, u":StructureUsage:part"));
    EXPECT_EQ("-", found(instance, u":Instance:Attribute"));
    EXPECT_EQ("-", found(instance, u":AttribOwner:partRef"));
    EXPECT_EQ("-", found(instance, u":attribOwner:Attribute"));
    EXPECT_EQ("-", Found(instance, u"AttribOwner:Attribute")) << "one colon is no qualification";
}

TEST_F(FieldTest, KindsAreKeptApart)
{
    ClassDescriptor* descriptor = RegisterClass(u"Kinds");
    descriptor->RegisterField(u"Content", zorvexFieldString);
    descriptor->RegisterField(u"content", zorvexFieldString);
    descriptor->RegisterField(u"Part", zorvexFieldMultipleElement);
    descriptor->RegisterField(u"partRef", zorvexFieldSingleReference);
    EXPECT_EQ("Content", Found(descriptor, u"Content"));
    EXPECT_TRUE(Info(descriptor, u"Content").IsContent());
    EXPECT_FALSE(Info(descriptor, u"Content").IsAttribute());
    EXPECT_TRUE(Info(descriptor, u"content").IsAttribute());
    EXPECT_EQ("Content", Found(descriptor, u"anything", 8)) << "content has one answer";
    EXPECT_EQ("partRef", Found(descriptor, u"Part", 2));
    EXPECT_EQ("Part", Found(descriptor, u"Part", 4));
    EXPECT_EQ("Part", Found(descriptor, u"Part", 14));
    EXPECT_EQ("-", Found(descriptor, u"part", 4));
}

TEST_F(FieldTest, AnExternalReferenceIsSeenAsLoadAndLocation)
{
    const ClassDescriptor* representation = Named(u"Representation");
    EXPECT_EQ(zorvexFieldSingleURI, Info(representation, u"location").GetType());
    EXPECT_EQ(zorvexFieldLogical, Info(representation, u"load").GetType());
    EXPECT_EQ(0, representation->IsField(u"location", 4));
    Array<FieldInfo> fields;
    representation->GetFields(fields, 2, 1);
    std::vector<std::string> names;
    for (const FieldInfo& field : fields)
    {
        EXPECT_NE(zorvexFieldExternalReference, field.GetType());
        names.push_back(Utf8(field.GetName()));
    }
    EXPECT_EQ(1, std::count(names.begin(), names.end(), "location"));
    EXPECT_EQ(1, std::count(names.begin(), names.end(), "load"));
    EXPECT_EQ("id", names.front());

    // A field of another name is reached by the same two texts.
    ClassDescriptor* other = RegisterClass(u"Other");
    other->RegisterField(u"file", zorvexFieldExternalReference);
    EXPECT_EQ("location", Found(other, u"location"));
    EXPECT_EQ("file", Near(other, u"load", field_kind::kAttribute));
    EXPECT_EQ("-", Found(other, u"file"));
}

TEST_F(FieldTest, WhatIsNoFieldIsNamedInTheMessage)
{
    FieldInfo info = Info(Named(u"Instance"), u"quantity");
    const Result unknown = Named(u"Instance")->GetField(u"nosuch", info, 14);
    EXPECT_THAT(Messages(unknown), ElementsAre("ERROR 2: nosuch is not a field of: Instance."));
    EXPECT_EQ("quantity", Utf8(info.GetName()));
    EXPECT_THAT(Messages(Named(u"Instance")->GetField(String(), info, 14)),
                ElementsAre("ERROR 2: empty field name"));
}

TEST_F(FieldTest, FieldsComeInDeclarationOrderTheClassItselfFirst)
{
    ClassDescriptor* upper = MakeClass(u"Upper");
    for (const char16_t* name : {u"c", u"a"})
    {
        upper->RegisterField(name, zorvexFieldString);
    }
    upper->RegisterField(u"E", zorvexFieldMultipleElement);
    ClassRegistry::Register(upper);
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"t:Upper");
    below->RegisterField(u"z", zorvexFieldString);
    below->GetImplementation()->RegisterField(u"y", zorvexFieldString,
                                              ClassDescriptorImpl::Place::Front);
    const auto names = [&](unsigned int flags, int inherited)
    {
        Array<FieldInfo> fields;
        below->GetFields(fields, flags, inherited);
        std::vector<std::string> result;
        for (const FieldInfo& field : fields)
        {
            result.push_back(Utf8(field.GetName()));
        }
        return result;
    };
    EXPECT_THAT(names(14, 0), ElementsAre("y", "z"));
    EXPECT_THAT(names(14, 1), ElementsAre("y", "z", "c", "a", "E", "schemaLocation"));
    EXPECT_THAT(names(4, 1), ElementsAre("E"));
    std::vector<std::string> baseFirst;
    for (const FieldDescriptor* field : below->GetImplementation()->Layout().BaseFirst())
    {
        baseFirst.push_back(Utf8(field->Name()));
    }
    EXPECT_THAT(baseFirst, ElementsAre("schemaLocation", "c", "a", "E", "y", "z"));
}

// --- registering --------------------------------------------------------------------------------

TEST_F(FieldTest, AnAttributeIsRegisteredOnceInAChainAnElementAnyNumberOfTimes)
{
    ClassDescriptor* upper = RegisterClass(u"Upper");
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"t:Upper");
    EXPECT_EQ(1, upper->RegisterField(u"a", zorvexFieldString));
    EXPECT_EQ(0, upper->RegisterField(u"a", zorvexFieldInt));
    EXPECT_EQ(0, below->RegisterField(u"a", zorvexFieldString));
    EXPECT_EQ(1, below->RegisterField(u"A", zorvexFieldString))
        << "another name in a schema's class";
    EXPECT_EQ(1, upper->RegisterField(u"E", zorvexFieldMultipleElement));
    EXPECT_EQ(1, upper->RegisterField(u"E", zorvexFieldMultipleElement));
    EXPECT_EQ(1, below->RegisterField(u"E", zorvexFieldSingleElement));

    ClassDescriptor* loose = RegisterClass(u"Loose", u"1");
    EXPECT_EQ(1, loose->RegisterField(u"partRef", zorvexFieldSingleReference));
    EXPECT_EQ(0, loose->RegisterField(u"part", zorvexFieldString)) << "matches without a schema";
}

TEST_F(FieldTest, RegisteringIdAgainIsAcceptedWhereItIsBuiltIn)
{
    EXPECT_EQ(1, Named(u"IdObject")->RegisterField(u"id", zorvexFieldString));
    EXPECT_EQ(0, Named(u"IdObject")->GetImplementation()->Fields().size());
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"IdObject");
    EXPECT_EQ(0, below->RegisterField(u"id", zorvexFieldInt));
    EXPECT_EQ(1, below->RegisterField(u"id", zorvexFieldString));
    EXPECT_EQ(1, below->RegisterField(u"id", zorvexFieldString));
    EXPECT_THAT(below->GetImplementation()->Fields(),
                ElementsAre(FieldDescriptor::BuiltIn(FieldDescriptor::kId)));
    EXPECT_EQ(1, below->SetFieldRequired(u"id", 1));
    EXPECT_EQ(0, Info(Named(u"Instance"), u"id").IsRequired());
    const char* texts[] = {"a", nullptr};
    EXPECT_EQ(0, below->SetFieldLength(u"id", -1));
    EXPECT_EQ(0, below->SetFieldClass(u"id", u"Instance Occurrence", 0));
    EXPECT_EQ(0, below->SetFieldAllowedValues(u"id", texts));

    // Elsewhere an id is an attribute like others.
    ClassDescriptor* apart = RegisterClass(u"Apart");
    EXPECT_EQ(0, apart->SetFieldRequired(u"id", 1));
    EXPECT_EQ(1, apart->RegisterField(u"id", zorvexFieldString));
    EXPECT_EQ(1, apart->RegisterField(u"id", zorvexFieldString)) << "straight below the root class";
    EXPECT_EQ(0, apart->RegisterField(u"id", zorvexFieldInt));
    EXPECT_EQ(1, apart->GetImplementation()->Fields().size());
    EXPECT_EQ(
        0,
        RegisterClass(u"Lower", u"1 t.xsd", u"t:Apart")->RegisterField(u"id", zorvexFieldString));
}

TEST_F(FieldTest, NamesInDocumentsAreLoweredOnlyWithoutASchema)
{
    ClassDescriptor* loose = RegisterClass(u"Loose", u"1");
    ClassDescriptor* strict = RegisterClass(u"Strict");
    for (ClassDescriptor* descriptor : {loose, strict})
    {
        descriptor->RegisterField(u"Attr", zorvexFieldString);
        descriptor->RegisterField(u"Elem", zorvexFieldMultipleElement);
        descriptor->RegisterField(u"Content", zorvexFieldString);
    }
    const auto xmlNames = [](const ClassDescriptor* descriptor)
    {
        std::vector<std::string> names;
        for (const FieldDescriptor* field : descriptor->GetImplementation()->Fields())
        {
            names.push_back(field->Utf8XmlName());
        }
        return names;
    };
    EXPECT_THAT(xmlNames(loose), ElementsAre("attr", "Elem", "Content"));
    EXPECT_THAT(xmlNames(strict), ElementsAre("Attr", "Elem", "Content"));
    EXPECT_THAT(xmlNames(Named(u"Object")), ElementsAre("xsi:schemaLocation"));
    EXPECT_EQ(1, loose->SetFieldRequired(u"attr", 1));
    EXPECT_EQ(1, loose->SetFieldRequired(u"Attr", 1));
    EXPECT_EQ(0, strict->SetFieldRequired(u"attr", 1));
}

TEST_F(FieldTest, ALegacyClassTextGivesTheNameInDocuments)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    descriptor->RegisterField(u"modern", zorvexFieldString);
    descriptor->GetImplementation()->Layout();
    EXPECT_EQ(1, descriptor->SetFieldClass(u"modern", u"legacy/Foo", 0));
    const FieldDescriptor* field = descriptor->GetImplementation()->Layout().FindAttribute(u"Foo");
    ASSERT_NE(nullptr, field);
    EXPECT_EQ("modern", Utf8(field->Name()));
    EXPECT_EQ("Foo", field->Utf8XmlName());
    EXPECT_EQ("", Utf8(Info(descriptor, u"modern").GetClassString()));
    EXPECT_EQ(1, descriptor->SetFieldDefault(u"modern", u"x")) << "known by its name from now on";
    EXPECT_EQ(0, descriptor->SetFieldDefault(u"Foo", u"x"));
}

TEST_F(FieldTest, LengthsTellArraysApart)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    descriptor->RegisterField(u"a", zorvexFieldDouble);
    const auto state = [&]
    {
        const FieldInfo info = Info(descriptor, u"a");
        return std::make_tuple(info.IsArray(), info.IsVariableLengthArray(), info.GetArrayLength());
    };
    EXPECT_EQ(std::make_tuple(0, 0, 0), state());
    EXPECT_EQ(1, descriptor->SetFieldLength(u"a", 3));
    EXPECT_EQ(std::make_tuple(1, 0, 3), state());
    EXPECT_EQ(0, descriptor->SetFieldLength(u"a", -1));
    EXPECT_EQ(std::make_tuple(1, 0, 3), state());
    EXPECT_EQ(1, descriptor->SetFieldLength(u"a", 0));
    EXPECT_EQ(std::make_tuple(1, 1, 0), state());
    EXPECT_EQ(1, descriptor->SetFieldLength(u"a", 1));
    EXPECT_EQ(std::make_tuple(0, 0, 0), state());
    EXPECT_EQ(0, descriptor->SetFieldLength(u"nosuch", 1));
}

TEST_F(FieldTest, TheClassOfAFieldComesFromItsClassTextOrItsName)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    for (const char16_t* name : {u"Instance", u"Other"})
    {
        descriptor->RegisterField(name, zorvexFieldMultipleElement);
    }
    descriptor->RegisterField(u"refs", zorvexFieldMultipleReference);
    descriptor->RegisterField(u"Text", zorvexFieldContentElement);
    EXPECT_EQ(Named(u"Instance")->GetClass(), Info(descriptor, u"Instance").GetClass());
    EXPECT_EQ(class_value::kUnset, Info(descriptor, u"Other").GetClass());
    EXPECT_EQ(1, descriptor->SetFieldClass(u"Other", u"Occurrence", 0));
    EXPECT_EQ(Named(u"Occurrence")->GetClass(), Info(descriptor, u"Other").GetClass());

    EXPECT_EQ(0, descriptor->SetFieldClass(u"Other", u"Instance Occurrence", 0));
    EXPECT_EQ(1, descriptor->SetFieldClass(u"refs", u"ProductInstance nosuch Occurrence", 0));
    const FieldInfo refs = Info(descriptor, u"refs");
    EXPECT_EQ(Named(u"StructureUsage")->GetClass(), refs.GetClass()) << "nearest common base";
    Array<short> classes;
    refs.GetDescriptor()->Classes(classes);
    EXPECT_EQ(2, classes.GetSize());
    EXPECT_EQ("ProductInstance nosuch Occurrence", Utf8(refs.GetClassString()));
    EXPECT_EQ(1, descriptor->SetFieldClass(u"refs", u"Managed", 0));
    EXPECT_EQ("Managed", Utf8(refs.GetClassString())) << "the text set last";
    EXPECT_EQ(Named(u"Managed")->GetClass(), refs.GetClass());

    // A name that is too long for a look-up by an application raises nothing here.
    descriptor->RegisterField(String(u'L', 2000), zorvexFieldMultipleElement);
    Array<FieldInfo> fields;
    descriptor->GetFields(fields, 4, 0);
    EXPECT_EQ(class_value::kUnset, fields[fields.GetSize() - 1].GetClass());

    EXPECT_EQ(1, descriptor->SetFieldClass(u"Text", u"Double", 0));
    EXPECT_EQ(-22, Info(descriptor, u"Text").GetClass());
    EXPECT_EQ(nullptr, Info(descriptor, u"Text").GetDescriptor()->Class());
}

TEST_F(FieldTest, ADefaultOfAnElementOnlySuppressesIds)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    descriptor->RegisterField(u"E", zorvexFieldMultipleElement);
    descriptor->RegisterField(u"a", zorvexFieldString);
    EXPECT_EQ(0, descriptor->SetFieldDefault(u"E", u"suppressId"));
    EXPECT_EQ(0, descriptor->SetFieldDefault(u"E", u"a=b=c"));
    EXPECT_EQ(1, descriptor->SetFieldDefault(u"E", u"other=true"));
    EXPECT_FALSE(Info(descriptor, u"E").GetDescriptor()->SuppressId());
    EXPECT_EQ(1, descriptor->SetFieldDefault(u"E", u"suppressId=true"));
    EXPECT_TRUE(Info(descriptor, u"E").GetDescriptor()->SuppressId());
    EXPECT_EQ("suppressId=true", Utf8(Info(descriptor, u"E").GetDefaultValue()));
    EXPECT_FALSE(Info(descriptor, u"E").GetDescriptor()->HasDefault()) << "no value of the field";
    EXPECT_EQ(1, descriptor->SetFieldDefault(u"a", u"x"));
    EXPECT_EQ("x", Utf8(Info(descriptor, u"a").GetDefaultValue()));
}

TEST_F(FieldTest, AllowedTextsAreSharedAndSurviveAdditions)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    descriptor->RegisterField(u"e", EnumBase::Init());
    descriptor->RegisterField(u"s", zorvexFieldString);
    const char* first[] = {"unset", "box", "b\xc3\xb6x", nullptr};
    const char* second[] = {"more", nullptr};
    EXPECT_EQ(0, descriptor->SetFieldAllowedValues(u"s", first));
    EXPECT_EQ(1, descriptor->SetFieldAllowedValues(u"e", first));
    const FieldDescriptor& field = *Info(descriptor, u"e").GetDescriptor();
    const String* held = field.FindAllowedValue(u"b\u00f6x");
    ASSERT_NE(nullptr, held);
    EXPECT_EQ(nullptr, field.FindAllowedValue(u"Box"));
    EXPECT_EQ(1, descriptor->SetFieldAllowedValues(u"e", second));
    EXPECT_EQ(u"b\u00f6x", View(*held)) << "a value may hold it";
    EXPECT_NE(nullptr, field.FindAllowedValue(u"more"));
    Array<String> values;
    EXPECT_EQ(1, Info(descriptor, u"e").GetEnumerationValues(values));
    EXPECT_THAT(Texts(values), ElementsAre("unset", "box", "b\xc3\xb6x", "more"));
    EXPECT_EQ(0, Info(descriptor, u"s").GetEnumerationValues(values));
}

TEST_F(FieldTest, AFieldInfoOfNoFieldAnswersNothing)
{
    const FieldInfo none;
    EXPECT_EQ(-999, none.GetClass());
    EXPECT_TRUE(none.GetName().IsEmpty() && none.GetClassString().IsEmpty() &&
                none.GetDefaultValue().IsEmpty());
    EXPECT_EQ(0, none.GetType() + none.IsArray() + none.IsAttribute() + none.IsElement() +
                     none.IsEnum() + none.GetArrayLength() + none.HasDefaultValue());
}

// --- layouts ------------------------------------------------------------------------------------

TEST_F(FieldTest, RequiredFieldsLeaveOutWhatASubclassMakesOptional)
{
    const auto required = [](const char16_t* name)
    {
        std::vector<std::string> names;
        for (const FieldDescriptor* field :
             Named(name)->GetImplementation()->Layout().RequiredFields())
        {
            names.push_back(Utf8(field->Name()));
        }
        return names;
    };
    EXPECT_THAT(required(u"StructureRevision"), ElementsAre("masterRef", "revision"));
    EXPECT_THAT(required(u"ScheduleRevision"), testing::IsEmpty());
}

TEST_F(FieldTest, ManyFieldsAddedOneByOneAreFoundInTimeThatGrowsWithTheirNumber)
{
    ClassDescriptorImpl& impl = *RegisterClass(u"Growing", u"1")->GetImplementation();
    constexpr int kFields = 20000;
    const auto nameOf = [](int number)
    {
        std::u16string name = u"n";
        for (const char digit : std::to_string(number))
        {
            name += static_cast<char16_t>(digit);
        }
        return name;
    };
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kFields; ++i)
    {
        const std::u16string name = nameOf(i);
        ASSERT_EQ(nullptr, impl.FindField(name, field_kind::kAttribute));
        ASSERT_EQ(nullptr, impl.Layout().FindAttribute(name));
        FieldDescriptor* added = impl.AddRuntimeField(name, zorvexFieldString, nullptr, nullptr);
        ASSERT_EQ(added, impl.Layout().FindAttribute(name));
    }
    // Some microseconds a field, under a sanitizer too; a step for each field at each change would
    // take minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    for (int i = 0; i < kFields; i += 97)
    {
        const FieldDescriptor* field = impl.Layout().FindField(nameOf(i), field_kind::kAttribute);
        ASSERT_NE(nullptr, field);
        EXPECT_EQ(nameOf(i), field->NameView());
    }
}

TEST_F(FieldTest, ARemovedFieldIsFoundNoMoreAndStaysForTheObjectsThatHoldIt)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    descriptor->RegisterField(u"a", zorvexFieldString);
    descriptor->RegisterField(u"b", zorvexFieldString);
    const std::unique_ptr<Object> object(descriptor->MakeObject());
    object->SetAttributeValue(u"a", String("held"));
    ClassDescriptorImpl& impl = *descriptor->GetImplementation();
    FieldDescriptor* field = impl.FindField(u"a", field_kind::kAll);
    EXPECT_TRUE(impl.RemoveField(field));
    EXPECT_FALSE(impl.RemoveField(field));
    EXPECT_EQ("-", Found(descriptor, u"a"));
    EXPECT_EQ("b", Found(descriptor, u"b"));
}

}  // namespace zorvex_test
