#include <functional>
#include <memory>
#include <set>
#include <thread>

#include "objectmodel/BuiltInClasses.h"
#include "objectmodel/ClassTestSupport.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/LinkNode.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class ClassRegistryTest : public SessionTest
{
};

String InMain(const char16_t* name)
{
    return ToString(Namespace::MainUri()) + u":" + name;
}

// --- looking classes up -------------------------------------------------------------------------

TEST_F(ClassRegistryTest, AllFormsOfANameReachTheSameClass)
{
    ClassDescriptor* occurrence = ClassDescriptor::FindByName(u"Occurrence");
    ASSERT_NE(nullptr, occurrence);
    EXPECT_EQ(InMain(u"Occurrence"), occurrence->GetQualifiedName());
    EXPECT_EQ(occurrence, ClassDescriptor::FindByName(InMain(u"Occurrence")));
    EXPECT_EQ(occurrence, ClassDescriptor::FindByName(u"::Occurrence"));
    EXPECT_EQ(occurrence, ClassDescriptor::FindByName(u"anything::Occurrence"));
    EXPECT_EQ(occurrence, ClassDescriptor::FindByClass(occurrence->GetClass()));
}

TEST_F(ClassRegistryTest, ARegisteredPrefixStandsForItsNamespace)
{
    ClassDescriptor* thing = RegisterClass(u"Thing");
    EXPECT_EQ(thing, ClassDescriptor::FindByName(u"t:Thing"));
    EXPECT_EQ(thing, ClassDescriptor::FindByName(u"urn:test:Thing"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"Thing"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"nosuch:Thing"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"t:Occurrence"));
}

TEST_F(ClassRegistryTest, TheOldNameOfAClassFindsTheNewOne)
{
    ClassDescriptor* view = ClassDescriptor::FindByName(u"ProductRevisionView");
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(view, ClassDescriptor::FindByName(u"Part"));
    EXPECT_EQ(view, ClassDescriptor::FindByName(InMain(u"Part")));
}

TEST_F(ClassRegistryTest, WhatIsNoClassIsNull)
{
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(String()));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"occurrence"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u":"));
    for (const short value : {0, -999, -1, -23, 32760, 32767})
    {
        EXPECT_EQ(nullptr, ClassDescriptor::FindByClass(value)) << value;
    }
    EXPECT_EQ(nullptr, ClassDescriptor::GetClassDescriptor(-1));
    EXPECT_EQ(nullptr,
              ClassDescriptor::GetClassDescriptor(ClassDescriptor::NumberOfClassDescriptors()));
}

TEST_F(ClassRegistryTest, ANameThatIsTooLongIsRefused)
{
    const int room = 1022 - static_cast<int>(Namespace::MainUri().size());
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(String(u'x', room - 1)));
    const std::u16string space = u"urn:" + std::u16string(1000, u's');
    ClassDescriptor* far = ClassRegistry::MakeRuntimeClass(u"Far", space, u"far", nullptr);
    EXPECT_EQ(far, ClassDescriptor::FindByName(u"far:Far"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(String(u"::") + String(u'x', room - 1)));
    for (const String& name : {String(u'x', room), String(u"http:") + String(u'x', 1017),
                               String(u"far:") + String(u'x', 18)})
    {
        try
        {
            ClassDescriptor::FindByName(name);
            ADD_FAILURE() << "no exception";
        }
        catch (const Exception& exception)
        {
            EXPECT_EQ(520, exception.GetCode());
            EXPECT_EQ("Invalid XML namespace", Utf8(exception.GetMessage()));
        }
    }
}

TEST_F(ClassRegistryTest, EveryClassIsFoundByNameAndValueAndEndsAtTheRootClass)
{
    const int count = ClassDescriptor::NumberOfClassDescriptors();
    ASSERT_GT(count, 1000);
    std::set<short> values;
    const ClassDescriptor* root = ClassDescriptor::FindByName(u"Object");
    for (int i = 0; i < count; ++i)
    {
        ClassDescriptor* descriptor = ClassDescriptor::GetClassDescriptor(i);
        ASSERT_NE(nullptr, descriptor);
        EXPECT_TRUE(values.insert(descriptor->GetClass()).second);
        EXPECT_EQ(descriptor, ClassDescriptor::FindByClass(descriptor->GetClass()));
        EXPECT_EQ(descriptor, ClassDescriptor::FindByName(descriptor->GetQualifiedName()))
            << Utf8(descriptor->GetQualifiedName());

        const ClassDescriptorImpl* impl = descriptor->GetImplementation();
        const ClassDescriptor* last = descriptor;
        while (ClassDescriptor* base = last->GetBaseClass())
        {
            EXPECT_TRUE(impl->IsSubClass(base));
            EXPECT_FALSE(base->GetImplementation()->IsSubClass(descriptor));
            last = base;
        }
        EXPECT_EQ(root, last) << Utf8(descriptor->GetName());
    }
}

TEST_F(ClassRegistryTest, AnyNamespaceMeansTheMainOneThenTheLastRegistered)
{
    const auto make = [](const char16_t* name, const char16_t* space)
    { return ClassRegistry::Register(MakeClass(name, u"1 t.xsd", u"Object", space)); };
    make(u"Occurrence", u"urn:a");
    make(u"Other", u"urn:c");
    ClassDescriptor* odd = make(u"Odd", u"urn:b");
    make(u"Odd", u"urn:c");
    EXPECT_EQ(ClassDescriptor::FindByName(u"Occurrence"),
              ClassRegistry::FindInAnyNamespace(u"Occurrence"));
    EXPECT_EQ(odd, ClassRegistry::FindInAnyNamespace(u"Odd"));
    EXPECT_EQ(odd, ClassRegistry::FindForField(u"Odd", true));
    EXPECT_EQ(nullptr, ClassRegistry::FindForField(u"Odd", false));
}

// --- classes made at run time -------------------------------------------------------------------

TEST_F(ClassRegistryTest, AClassMadeAtRunTimeIsMadeOnce)
{
    const int before = ClassDescriptor::NumberOfClassDescriptors();
    bool made = false;
    ClassDescriptor* first =
        ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr, &made);
    EXPECT_TRUE(made);
    EXPECT_EQ(first, ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr, &made));
    EXPECT_FALSE(made);
    EXPECT_EQ(before + 1, ClassDescriptor::NumberOfClassDescriptors());
    EXPECT_EQ(first, ClassDescriptor::GetClassDescriptor(before)) << "after the built-in ones";
    EXPECT_EQ("Object", Utf8(first->GetBaseClass()));
    EXPECT_TRUE(first->GetImplementation()->IsSubClass(class_value::kAny));
}

TEST_F(ClassRegistryTest, AClassMadeAtRunTimeNeverStandsInForABuiltInOne)
{
    ClassDescriptor* builtIn = ClassDescriptor::FindByName(u"Occurrence");
    bool made = true;
    EXPECT_EQ(builtIn, ClassRegistry::MakeRuntimeClass(u"Occurrence", Namespace::MainUri(), u"",
                                                       nullptr, &made));
    EXPECT_FALSE(made);
}

TEST_F(ClassRegistryTest, ResetByNamespaceOrNameTakesRunTimeClassesOnly)
{
    const int before = ClassDescriptor::NumberOfClassDescriptors();
    ClassDescriptor* foo = ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr);
    ClassRegistry::MakeRuntimeClass(u"Bar", u"urn:y", u"y", nullptr);
    ClassRegistry::MakeRuntimeClass(u"Baz", u"urn:y", u"y", nullptr);
    const short value = foo->GetClass();

    static std::vector<short> released;
    released.clear();
    ClassRegistry::SetReleaseListener([](const Array<short>& values)
                                      { released.assign(values.begin(), values.end()); });
    EXPECT_TRUE(ClassDescriptor::Reset(u"urn:x").Ok());
    EXPECT_THAT(released, ElementsAre(value));
    ClassRegistry::SetReleaseListener(nullptr);
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"urn:x:Foo"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByClass(value));

    ClassDescriptor::Reset(u"urn:y:Baz");
    EXPECT_NE(nullptr, ClassDescriptor::FindByName(u"urn:y:Bar"));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"urn:y:Baz"));
    ClassDescriptor::Reset(u"Occurrence");
    EXPECT_NE(nullptr, ClassDescriptor::FindByName(u"Occurrence"));
    EXPECT_TRUE(ClassDescriptor::Reset(String(u'x', 5000)).Ok()) << "nothing of that name";
    ClassDescriptor::Reset();
    EXPECT_EQ(before, ClassDescriptor::NumberOfClassDescriptors());
}

TEST_F(ClassRegistryTest, AReleasedClassStaysInMemoryForItsObjectsAndKeepsItsValue)
{
    ClassDescriptor* foo = ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr);
    foo->RegisterField(u"a", zorvexFieldString);
    const short value = foo->GetClass();
    std::unique_ptr<Object> object(foo->MakeObject());
    ASSERT_TRUE(object->SetAttributeValue(u"a", String("kept")).Ok());

    const int alive = ClassDescriptorImpl::NumberAlive();
    ClassDescriptor::Reset();
    EXPECT_EQ(alive, ClassDescriptorImpl::NumberAlive());
    EXPECT_TRUE(ClassRegistry::IsClassValueTaken(value));
    String text;
    EXPECT_TRUE(object->GetAttributeValue(u"a", text).Ok());
    EXPECT_EQ("kept", Utf8(text));

    // A class of the same name is another one.
    EXPECT_NE(foo, ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr));
    object.reset();
    EXPECT_FALSE(ClassRegistry::IsClassValueTaken(value));
    EXPECT_EQ(alive, ClassDescriptorImpl::NumberAlive()) << "one gone, one new";
}

TEST_F(ClassRegistryTest, FieldsForgetAReleasedClassAndFindItsSuccessor)
{
    ClassDescriptor* holder = RegisterClass(u"Holder");
    ClassDescriptor* foo = ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr);
    FieldDescriptor* field = holder->GetImplementation()->AddRuntimeField(
        u"foo", zorvexFieldMultipleElement, foo, nullptr);
    EXPECT_EQ(foo, field->Class());
    ClassDescriptor::Reset(u"urn:x");
    EXPECT_EQ(nullptr, field->Class());
    EXPECT_EQ(class_value::kUnset, field->ClassValue());
    foo = ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr);
    EXPECT_EQ(foo, field->Class());
}

TEST_F(ClassRegistryTest, ExhaustedClassValuesRaiseAnErrorThatNamesTheClasses)
{
    std::string message;
    int made = 0;
    try
    {
        for (; made <= ClassRegistry::kMaxClassValue; ++made)
        {
            std::u16string name(u"C");
            for (const char digit : std::to_string(made))
            {
                name += static_cast<char16_t>(digit);
            }
            ClassRegistry::MakeRuntimeClass(name, u"urn:many", u"m", nullptr);
        }
    }
    catch (const Exception& exception)
    {
        EXPECT_EQ(2, exception.GetCode());
        message = Utf8(exception.GetMessage());
    }
    EXPECT_EQ(ClassRegistry::kMaxClassValue, ClassDescriptor::NumberOfClassDescriptors());
    EXPECT_THAT(message, StartsWith("zorvexClass values exhausted: \nObject\n"));
    EXPECT_THAT(message, HasSubstr("\nC31000\n"));
    EXPECT_EQ(nullptr, ClassRegistry::Find(u"urn:many", u"C32760"));

    ClassDescriptor::Reset();
    EXPECT_NE(nullptr, ClassRegistry::MakeRuntimeClass(u"Again", u"urn:many", u"m", nullptr));
}

TEST_F(ClassRegistryTest, ObjectsCanBeDeletedAfterTerminateAndInALaterSession)
{
    ClassDescriptor* foo = ClassRegistry::MakeRuntimeClass(u"Foo", u"urn:x", u"x", nullptr);
    std::unique_ptr<Object> generic(foo->MakeObject());
    std::unique_ptr<Object> builtIn(ClassDescriptor::FindByName(u"Instance")->MakeObject());
    builtIn->SetAttributeValue(u"quantity", 2.0);
    builtIn->SetAttributeValue(u"partRef", String("#id9"));
    EXPECT_EQ(0, Terminate());
    EXPECT_GT(ClassDescriptorImpl::NumberAlive(), 0);
    generic.reset();
    EXPECT_EQ(0, Initialise(0, nullptr, nullptr, nullptr));
    EXPECT_NE(nullptr, ClassDescriptor::FindByName(u"Instance"));
    builtIn.reset();
    EXPECT_EQ(ClassDescriptor::NumberOfClassDescriptors(), ClassDescriptorImpl::NumberAlive());
}

TEST_F(ClassRegistryTest, ThreadsThatMeetTheSameUnknownNamesShareTheClassesAndFields)
{
    constexpr int kThreads = 4;
    constexpr int kNames = 60;
    std::vector<std::vector<const void*>> seen(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
    {
        threads.emplace_back(
            [&mine = seen[static_cast<size_t>(i)]]
            {
                for (int n = 0; n < kNames; ++n)
                {
                    const std::u16string name =
                        u"N" + std::u16string(1, static_cast<char16_t>(u'a' + n));
                    ClassDescriptor* descriptor =
                        ClassRegistry::MakeRuntimeClass(name, u"urn:x", u"x", nullptr);
                    ClassDescriptorImpl* common = ClassDescriptorImpl::Of(
                        ClassRegistry::MakeRuntimeClass(u"Common", u"urn:x", u"x", nullptr));
                    FieldDescriptor* field = common->AddRuntimeField(
                        name, zorvexFieldMultipleElement, descriptor, nullptr);
                    FieldDescriptor* attribute =
                        common->AddRuntimeField(u"x" + name, zorvexFieldString, nullptr, nullptr);
                    EXPECT_EQ(field, common->FindField(name, field_kind::kElement));
                    EXPECT_EQ(attribute, common->Layout().FindAttribute(u"x" + name));
                    EXPECT_EQ(descriptor, field->Class());
                    EXPECT_TRUE(descriptor->GetImplementation()->IsSubClass(zorvexClassObject));
                    mine.insert(mine.end(), {descriptor, field, attribute});
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    for (const auto& other : seen)
    {
        EXPECT_EQ(seen[0], other);
    }
}

TEST_F(ClassRegistryTest, ThreadsMayReleaseClassesWhileOthersWalkOverThem)
{
    const int before = ClassDescriptor::NumberOfClassDescriptors();
    ClassDescriptor* managed = ClassDescriptor::FindByName(u"Managed");
    std::vector<std::thread> threads;
    const auto repeat = [&threads](const std::function<void(int)>& step)
    {
        threads.emplace_back(
            [step]
            {
                for (int i = 0; i < 300; ++i)
                {
                    step(i);
                }
            });
    };
    repeat(
        [managed](int i)
        {
            const std::u16string name(1, static_cast<char16_t>(u'A' + i % 26));
            ClassRegistry::MakeRuntimeClass(name, u"urn:x", u"x", managed);
        });
    repeat(
        [managed](int)
        {
            Array<ClassDescriptor*> classes;
            managed->GetConcreteClasses(classes);
        });
    for (int i = 0; i < 2; ++i)
    {
        repeat([](int) { EXPECT_TRUE(ClassDescriptor::Reset().Ok()); });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    ClassDescriptor::Reset();
    EXPECT_EQ(before, ClassDescriptor::NumberOfClassDescriptors());
    EXPECT_EQ(before, ClassDescriptorImpl::NumberAlive());
}

// --- classes that come and go with a library ----------------------------------------------------

short g_lateValue = 0;
short g_lateLegacyValue = 0;
const char16_t* g_lateVersion = u"1 late.xsd";
const char16_t* g_lateField = u"first";
short* g_latePlace = &g_lateValue;
Object* (*g_lateMake)() = nullptr;

int InitLateClass(void* data)
{
    auto& record = *static_cast<ClassInitRecord*>(data);
    EXPECT_EQ(1, record.version);
    *g_latePlace = record.descriptor->GetClass();
    record.staticClass = g_latePlace;
    record.descriptor->SetMakeFunction(g_lateMake);
    record.descriptor->SetVersion(g_lateVersion);
    record.descriptor->SetName(u"LateClass");
    record.descriptor->SetNamespace(u"urn:late", u"late");
    record.descriptor->SetBaseClass(u"Object");
    record.descriptor->SetEquivalenceClass(u"0");
    record.descriptor->SetProperty(u"legacy_class_value", &g_lateLegacyValue);
    return record.descriptor->RegisterField(g_lateField, zorvexFieldString);
}

int RefuseClass(void*)
{
    return 0;
}

TEST_F(ClassRegistryTest, AClassThatArrivesLateIsThereAtTheNextAccessAndLeavesWithItsNode)
{
    g_lateVersion = u"1 late.xsd";
    g_lateField = u"first";
    const int before = ClassDescriptor::NumberOfClassDescriptors();
    {
        const LinkNode refused(&RefuseClass, LinkNode::kClass);
        const LinkNode node(&InitLateClass, LinkNode::kClass);
        ClassDescriptor* late = ClassDescriptor::FindByName(u"late:LateClass");
        ASSERT_NE(nullptr, late);
        EXPECT_EQ(before + 1, ClassDescriptor::NumberOfClassDescriptors());
        EXPECT_EQ(late->GetClass(), g_lateValue);
        EXPECT_EQ(ClassDescriptor::FindByName(u"Object"), late->GetBaseClass());
        EXPECT_TRUE(late->GetEquivalenceClass() == String());
    }
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName(u"late:LateClass"));
    EXPECT_EQ(before, ClassDescriptor::NumberOfClassDescriptors());
}

TEST_F(ClassRegistryTest, OfTwoClassesOfOneNameTheNewerVersionGivesTheFieldsTheOlderTheValue)
{
    g_lateVersion = u"2 late.xsd";
    g_lateField = u"first";
    const LinkNode node(&InitLateClass, LinkNode::kClass);
    ClassDescriptor* late = ClassDescriptor::FindByName(u"late:LateClass");
    ASSERT_NE(nullptr, late);
    const short value = late->GetClass();
    const int count = ClassDescriptor::NumberOfClassDescriptors();
    {
        g_lateVersion = u"3 late.xsd";
        g_lateField = u"second";
        g_lateLegacyValue = 0;
        const LinkNode newer(&InitLateClass, LinkNode::kClass);
        EXPECT_EQ(late, ClassDescriptor::FindByName(u"late:LateClass"));
        EXPECT_EQ(value, g_lateValue);
        EXPECT_EQ(value, g_lateLegacyValue);
        EXPECT_EQ("3", Utf8(late->GetVersion()));
        EXPECT_EQ(0, late->IsField(u"first", 14));
        EXPECT_EQ(1, late->IsField(u"second", 14));
    }
    EXPECT_EQ(late, ClassDescriptor::FindByName(u"late:LateClass"))
        << "the first node still holds it";

    g_lateVersion = u"1 late.xsd";
    g_lateField = u"third";
    const LinkNode older(&InitLateClass, LinkNode::kClass);
    EXPECT_EQ(count, ClassDescriptor::NumberOfClassDescriptors());
    EXPECT_EQ("3", Utf8(late->GetVersion()));
    EXPECT_EQ(0, late->IsField(u"third", 14));
    EXPECT_EQ(value, g_lateValue);
}

TEST_F(ClassRegistryTest, NothingOfALibraryThatIsGoneIsCalledOrWritten)
{
    g_lateVersion = u"1 late.xsd";
    g_lateField = u"first";
    static int madeBy;
    const auto announce = [](short& place, Object* (*make)())
    {
        g_latePlace = &place;
        g_lateMake = make;
        auto node = std::make_unique<LinkNode>(&InitLateClass, LinkNode::kClass);
        EXPECT_NE(nullptr, ClassDescriptor::FindByName(u"late:LateClass"));
        return node;
    };
    short values[4] = {};
    auto first = announce(values[0],
                          []() -> Object*
                          {
                              madeBy = 1;
                              return new GenericObject;
                          });
    ClassDescriptor* late = ClassDescriptor::FindByName(u"late:LateClass");
    auto second = announce(values[1], nullptr);
    auto third = announce(values[2],
                          []() -> Object*
                          {
                              madeBy = 3;
                              return new GenericObject;
                          });
    EXPECT_EQ(values[0], values[2]);
    const auto maker = [late]
    {
        madeBy = 0;
        delete late->MakeObject();
        return madeBy;
    };
    EXPECT_EQ(1, maker());
    second.reset();
    EXPECT_EQ(1, maker());
    first.reset();
    values[0] = values[1] = -1;
    EXPECT_EQ(3, maker());

    const auto fourth = announce(values[3], nullptr);
    EXPECT_EQ(late->GetClass(), values[3]);
    EXPECT_EQ(-1, values[0]) << "its library is gone";
    EXPECT_EQ(-1, values[1]);
    third.reset();
    EXPECT_EQ(nullptr, late->MakeObject());
    g_latePlace = &g_lateValue;
    g_lateMake = nullptr;
}

TEST_F(ClassRegistryTest, ARunTimeClassTakesTheFieldsOfABuiltInOneOnlyWithoutObjects)
{
    g_lateVersion = u"1 late.xsd";
    g_lateField = u"first";
    const LinkNode node(&InitLateClass, LinkNode::kClass);
    ClassDescriptor* late = ClassDescriptor::FindByName(u"late:LateClass");
    ASSERT_NE(nullptr, late);
    const auto newer = []
    {
        ClassDescriptor* descriptor = MakeClass(u"LateClass", u"9 x.xsd", u"Object", u"urn:late");
        descriptor->RegisterField(u"other", zorvexFieldString);
        return descriptor;
    };
    // An object of a class below counts as well.
    ClassDescriptor* below = RegisterClass(u"Below", u"1 t.xsd", u"urn:late:LateClass");
    {
        std::unique_ptr<Object> object(below->MakeObject());
        ASSERT_NE(nullptr, object->GetClassDescriptor());
        EXPECT_EQ(late, ClassRegistry::Register(newer()));
        EXPECT_EQ(1, late->IsField(u"first", 14));
    }
    EXPECT_EQ(late, ClassRegistry::Register(newer()));
    EXPECT_EQ(0, late->IsField(u"first", 14));
    EXPECT_EQ(1, below->IsField(u"other", 14));
}

}  // namespace zorvex_test
