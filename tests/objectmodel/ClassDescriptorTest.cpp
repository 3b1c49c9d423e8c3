#include "objectmodel/ClassTestSupport.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::IsSupersetOf;

class ClassDescriptorTest : public SessionTest
{
};

TEST_F(ClassDescriptorTest, TheVersionTextIsVersionAndSchemaFile)
{
    ClassDescriptor* plain = RegisterClass(u"Plain", u"6.0");
    EXPECT_EQ("6.0", Utf8(plain->GetVersion()));
    EXPECT_FALSE(plain->GetImplementation()->HasSchemaFile());
    ClassDescriptor* instance = ClassDescriptor::FindByName(u"Instance");
    EXPECT_EQ("6.0", Utf8(instance->GetVersion()));
    EXPECT_EQ("ZORVEXSchema.xsd", Utf8(instance->GetImplementation()->SchemaFile()));
}

TEST_F(ClassDescriptorTest, AnOutputNameCountsForTheQualifiedNameUntilThatIsAskedFor)
{
    ClassDescriptor* early = MakeClass(u"Early");
    early->SetOutputName(u"Written");
    EXPECT_EQ("urn:test:Written", Utf8(early->GetQualifiedName()));
    ClassDescriptor* late = MakeClass(u"Late");
    EXPECT_EQ("urn:test:Late", Utf8(late->GetQualifiedName()));
    late->SetOutputName(u"Written2");
    EXPECT_EQ("urn:test:Late", Utf8(late->GetQualifiedName()));
    EXPECT_EQ("Written2", Utf8(late->GetOutputName()));

    ClassRegistry::Register(early);
    ClassRegistry::Register(late);
    EXPECT_EQ(early, ClassDescriptor::FindByName(u"t:Written"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"t:Early"));
    EXPECT_EQ(early, ClassRegistry::FindInAnyNamespace(u"Early"));
    ClassDescriptor::Reset();
    EXPECT_EQ(nullptr, ClassRegistry::FindInAnyNamespace(u"Early"));
}

TEST_F(ClassDescriptorTest, OnlyTheTwoKnownPropertiesAreTaken)
{
    ClassDescriptor* descriptor = RegisterClass(u"Plain");
    short place = 0;
    EXPECT_EQ(0, descriptor->SetProperty(u"legacy_class_value", &place).GetCode());
    EXPECT_EQ(0, descriptor->SetProperty(u"attributeUseOptional", String("a")).GetCode());
    EXPECT_EQ(6, descriptor->SetProperty(u"attributeUseOptional", &place).GetCode());
    EXPECT_EQ(6, descriptor->SetProperty(u"legacy_class_value", String("a")).GetCode());
    EXPECT_EQ(6, descriptor->SetProperty(u"other", String("a")).GetCode());
    String text;
    void* pointer = nullptr;
    EXPECT_EQ(6, descriptor->GetProperty(u"attributeUseOptional", text).GetCode());
    EXPECT_EQ(6, descriptor->GetProperty(u"legacy_class_value", pointer).GetCode());
}

TEST_F(ClassDescriptorTest, ConcreteClassesAreThoseBelowThroughAbstractOnes)
{
    const auto named = [](const char16_t* name) { return ClassDescriptor::FindByName(name); };
    Array<ClassDescriptor*> classes;
    EXPECT_EQ(0, named(u"Instance")->GetConcreteClasses(classes));
    EXPECT_EQ(0, classes.GetSize());
    EXPECT_EQ(1, named(u"StructureUsage")->GetConcreteClasses(classes));
    const std::vector<ClassDescriptor*> found(classes.begin(), classes.end());
    EXPECT_THAT(found, IsSupersetOf({named(u"Instance"), named(u"Occurrence")}));
    EXPECT_THAT(found, testing::Not(testing::Contains(named(u"ProductInstance"))))
        << "below a concrete class";

    classes.RemoveAll();
    EXPECT_EQ(1, named(u"Entity3D")->GetConcreteClasses(classes));
    EXPECT_GE(classes.Lookup(named(u"Instance")), 0) << "two abstract classes further down";
    EXPECT_LT(classes.Lookup(named(u"Managed")), 0);

    // Classes whose bases nobody has asked for yet.
    ClassDescriptor* between = MakeClass(u"Between", u"1 t.xsd", u"StructureUsage");
    between->SetIsAbstract(1);
    ClassRegistry::Register(between);
    ClassDescriptor* last = RegisterClass(u"Last", u"1 t.xsd", u"t:Between");
    EXPECT_EQ(1, named(u"StructureUsage")->GetConcreteClasses(classes));
    EXPECT_GE(classes.Lookup(last), 0);
    EXPECT_LT(classes.Lookup(between), 0);
}

TEST_F(ClassDescriptorTest, ABaseThatComesLaterIsFoundThen)
{
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"Upper");
    const ClassDescriptorImpl* impl = below->GetImplementation();
    EXPECT_EQ("Upper", Utf8(below->GetBaseClass()));
    EXPECT_FALSE(below->GetBaseClass());
    EXPECT_FALSE(impl->IsIdObject());
    EXPECT_EQ(0, below->IsField(u"up", 14));

    ClassDescriptor* upper = MakeClass(u"Upper", u"1 t.xsd", u"IdObject");
    upper->RegisterField(u"up", zorvexFieldString);
    ClassRegistry::Register(upper);
    EXPECT_EQ(upper, below->GetBaseClass()) << "in the class's own namespace";
    EXPECT_TRUE(impl->IsSubClass(upper));
    EXPECT_TRUE(impl->IsIdObject());
    EXPECT_EQ(1, below->IsField(u"up", 14));

    // The link stands beside null in a condition.
    for (const bool wanted : {true, false})
    {
        const ClassLink link = wanted ? below->GetBaseClass() : nullptr;
        EXPECT_EQ(wanted, link == upper);
        EXPECT_EQ(wanted ? "Upper" : "", Utf8(link));
    }
}

TEST_F(ClassDescriptorTest, ANewBaseIsSeenByTheClassesBelow)
{
    ClassDescriptor* upper = RegisterClass(u"Upper");
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"t:Upper");
    const ClassDescriptorImpl* impl = below->GetImplementation();
    EXPECT_FALSE(impl->IsIdObject());
    const std::uint32_t generation = impl->Generation();
    upper->SetBaseClass(u"DocumentBase");
    EXPECT_NE(generation, impl->Generation());
    EXPECT_TRUE(impl->IsIdObject());
    EXPECT_TRUE(impl->IsDocumentBase());
    EXPECT_EQ(1, below->IsField(u"schemaVersion", 2));
    upper->SetBaseClass(u"Object");
    EXPECT_FALSE(impl->IsDocumentBase());
    EXPECT_EQ(0, below->IsField(u"schemaVersion", 2));
}

TEST_F(ClassDescriptorTest, AClassCannotBeItsOwnBase)
{
    ClassDescriptor* self = RegisterClass(u"Self", u"1 t.xsd", u"t:Self");
    EXPECT_FALSE(self->GetBaseClass());
    ClassDescriptor* a = RegisterClass(u"A", u"1 t.xsd", u"t:B");
    ClassDescriptor* b = RegisterClass(u"B", u"1 t.xsd", u"t:A");
    EXPECT_TRUE(a->GetBaseClass() == b || b->GetBaseClass() == a);
    EXPECT_FALSE(a->GetBaseClass() == b && b->GetBaseClass() == a);
    EXPECT_EQ(0, a->IsField(u"x", 14));
}

TEST_F(ClassDescriptorTest, AVeryLongChainEndsWithoutHarm)
{
    std::u16string base = u"Object";
    ClassDescriptor* last = nullptr;
    for (int i = 0; i < 3000; ++i)
    {
        std::u16string name = u"L";
        for (const char digit : std::to_string(i))
        {
            name += static_cast<char16_t>(digit);
        }
        last = RegisterClass(name.c_str(), u"1 t.xsd", base.c_str());
        base = u"t:" + name;
    }
    EXPECT_FALSE(last->GetImplementation()->IsIdObject());
    EXPECT_EQ(0, last->IsField(u"nosuch", 14));
    ClassDescriptor::Reset();
}

TEST_F(ClassDescriptorTest, ContentMayComeFromABase)
{
    EXPECT_EQ(1, ClassDescriptor::FindByName(u"Transform")->HasContent());
    EXPECT_EQ(0, ClassDescriptor::FindByName(u"Instance")->HasContent());
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"Transform");
    EXPECT_EQ(1, below->HasContent());
}

TEST_F(ClassDescriptorTest, ObjectsOfAbstractClassesCanBeMade)
{
    const std::unique_ptr<Object> object(ClassDescriptor::FindByName(u"Managed")->MakeObject());
    ASSERT_NE(nullptr, object);
    EXPECT_EQ("Managed", Utf8(object->GetClassName()));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"Object")->MakeObject());
}

}  // namespace zorvex_test
