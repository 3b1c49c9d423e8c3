// Every class of the library, by its metadata: made, filled, written, read back.

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "objectmodel/ClassDescriptorImpl.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/Load.h"

namespace
{

using namespace zorvex_api;
using zorvex_test::Utf8;

constexpr int kAll = 14;

std::string Repeat(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
    {
        all += (i == 0 ? "" : " ") + text;
    }
    return all;
}

// How many values to give a field: 2 where any number goes.
int CountFor(const FieldInfo& field)
{
    if (field.IsVariableLengthArray())
    {
        return 2;
    }
    return field.IsArray() ? field.GetArrayLength() : 1;
}

std::string ContentText(const FieldInfo& field)
{
    switch (field.GetClass())
    {
        case -21:
            return Repeat("7", CountFor(field));
        case -22:
            return Repeat("2.5", CountFor(field));
        default:
            return "Blech, verzinkt \xC3\xA4\xC3\xB6\xC3\xBC";
    }
}

// A legal text that isn't the default.
std::string LegalText(const FieldInfo& field)
{
    if (field.IsEnum())
    {
        Array<String> values;
        field.GetEnumerationValues(values);
        const int last = values.GetSize() - 1;
        return Utf8(values[values[last] == field.GetDefaultValue() ? last - 1 : last]);
    }
    switch (field.GetType())
    {
        case zorvexFieldLogical:
            return Repeat(field.GetDefaultValue() == "true" ? "false" : "true", CountFor(field));
        case zorvexFieldInt:
            return Repeat("42", CountFor(field));
        case zorvexFieldDouble:
        case zorvexFieldVector:
            return Repeat("0.1", CountFor(field));
        case zorvexFieldMatrix:
            return "1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1";
        case zorvexFieldSingleReference:
            return "id77";
        case zorvexFieldMultipleReference:
            return "id77 id78";
        case zorvexFieldSingleURI:
            return Utf8(field.GetName()) == "location" ? "parts/plate.stp" : "#id77";
        case zorvexFieldMultipleURI:
            return "#id77 other.xml#id78";
        case zorvexFieldContentElement:
            return ContentText(field);
        default:
            return "a < b & \"c\"";
    }
}

// Whether another field than `field` would take a child of this class that is written by the name
// of its class.
bool IsTakenByAnother(const ClassDescriptor* candidate, const FieldInfo& field,
                      const Array<FieldInfo>& all)
{
    for (const FieldInfo& other : all)
    {
        const ClassDescriptor* accepted = ClassDescriptor::FindByClass(other.GetClass());
        if (other.IsElement() && other.GetDescriptor() != field.GetDescriptor() &&
            candidate->GetImplementation()->IsSubClass(accepted))
        {
            return true;
        }
    }
    return false;
}

// A class that a child of the field can have and that reading brings to the same field; null when
// there is none.
ClassDescriptor* ChildClass(const FieldInfo& field, const Array<FieldInfo>& all)
{
    if (field.GetName().IsEmpty())
    {
        return ClassDescriptor::FindByName(u"UserValue");
    }
    ClassDescriptor* descriptor = ClassDescriptor::FindByClass(field.GetClass());
    Array<ClassDescriptor*> concrete;
    if (descriptor == nullptr || !descriptor->GetConcreteClasses(concrete))
    {
        return descriptor;  // written by the name of the field
    }
    for (ClassDescriptor* candidate : concrete)
    {
        if (!IsTakenByAnother(candidate, field, all))
        {
            return candidate;
        }
    }
    return nullptr;
}

class AllClassesTest : public zorvex_test::SessionTest
{
protected:
    static std::vector<ClassDescriptor*> Classes()
    {
        std::vector<ClassDescriptor*> classes;
        for (int i = 0; i < ClassDescriptor::NumberOfClassDescriptors(); ++i)
        {
            ClassDescriptor* descriptor = ClassDescriptor::GetClassDescriptor(i);
            const std::string name = Utf8(descriptor->GetName());
            if (name != "Object" && name != "Configuration")
            {
                classes.push_back(descriptor);
            }
        }
        return classes;
    }

    // Sets every field of the object and notes what it has to hold.
    void Fill(Object& object, ClassDescriptor& descriptor)
    {
        Array<FieldInfo> fields;
        ASSERT_TRUE(descriptor.GetFields(fields, kAll, 1).Ok());
        for (const FieldInfo& field : fields)
        {
            SCOPED_TRACE(Utf8(field.GetName()));
            if (field.IsElement() && HasTextContent(object))
            {
                continue;  // mixed content: the line break before a child would join the text
            }
            if (field.IsElement())
            {
                AddChild(object, field, fields);
            }
            // The reader follows "schemaRef" at once.
            else if (field.GetName() != "id" && field.GetName() != "schemaRef")
            {
                SetText(object, field);
            }
        }
    }

    static bool HasTextContent(const Object& object)
    {
        FieldInfo content;
        return object.GetClassDescriptor()->GetField(u"Content", content, 8).Ok() &&
               content.GetType() == zorvexFieldString;
    }

    void SetText(Object& object, const FieldInfo& field)
    {
        const std::string text = LegalText(field);
        const Result result = object.SetAttributeValue(field.GetName(), String(text.c_str()));
        EXPECT_TRUE(result.Ok()) << testing::PrintToString(result);
        EXPECT_EQ(0, result.NumberOfErrors()) << testing::PrintToString(result);
        EXPECT_EQ(text, Text(object, field));
        EXPECT_EQ(1, object.HasField(field.GetName(), 10));
    }

    static std::string Text(const Object& object, const FieldInfo& field)
    {
        String text;
        EXPECT_TRUE(object.GetAttributeValue(field.GetName(), text).Ok());
        return Utf8(text);
    }

    void AddChild(Object& object, const FieldInfo& field, const Array<FieldInfo>& all)
    {
        ClassDescriptor* childClass = ChildClass(field, all);
        if (childClass == nullptr)
        {
            m_childless.insert(Utf8(field.GetClassString()));
            return;
        }
        Object* child = nullptr;
        const Result result =
            object.AddElement(childClass->GetQualifiedName(), field.GetName(), child);
        EXPECT_TRUE(result.Ok() && child != nullptr) << testing::PrintToString(result);
    }

    static String Write(Object& object)
    {
        String text;
        const Result result = object.GetXML(text, nullptr);
        EXPECT_TRUE(result.Ok()) << testing::PrintToString(result);
        return text;
    }

    static void ExpectSame(Object& original, Object& copy)
    {
        EXPECT_EQ(original.Is(), copy.Is());
        Map<String, String> expected;
        Map<String, String> found;
        EXPECT_TRUE(original.GetAttributeValues(expected).Ok());
        EXPECT_TRUE(copy.GetAttributeValues(found).Ok());
        EXPECT_EQ(expected.GetSize(), found.GetSize());
        Array<FieldInfo> fields;
        original.GetClassDescriptor()->GetFields(fields, kAll, 1);
        for (const FieldInfo& field : fields)
        {
            SCOPED_TRACE(Utf8(field.GetName()));
            if (!field.IsElement())
            {
                EXPECT_EQ(Text(original, field), Text(copy, field));
            }
            else if (!field.GetName().IsEmpty())
            {
                Array<Object*> expectedChildren;
                Array<Object*> foundChildren;
                original.GetElementsByField(field.GetName(), expectedChildren);
                copy.GetElementsByField(field.GetName(), foundChildren);
                EXPECT_EQ(expectedChildren.GetSize(), foundChildren.GetSize());
            }
        }
    }

    std::set<std::string> m_childless;  // classes of fields that got no child
};

TEST_F(AllClassesTest, EveryFieldOfEveryClassIsSetWrittenAndReadBack)
{
    int written = 0;
    for (ClassDescriptor* descriptor : Classes())
    {
        SCOPED_TRACE(Utf8(descriptor->GetQualifiedName()));
        const std::unique_ptr<Object> object(descriptor->MakeObject());
        ASSERT_NE(nullptr, object);
        ASSERT_EQ(descriptor, object->GetClassDescriptor());
        Fill(*object, *descriptor);
        const String text = Write(*object);
        const zorvex_test::Loaded loaded = zorvex_test::LoadFrom(text);
        ASSERT_TRUE(loaded.result.Ok()) << testing::PrintToString(loaded.result) << Utf8(text);
        ASSERT_EQ(1u, loaded.roots.size());
        ExpectSame(*object, *loaded.roots[0]);
        EXPECT_EQ(Utf8(text), Utf8(Write(*loaded.roots[0])));
        ++written;
        if (testing::Test::HasFailure())
        {
            break;
        }
    }
    EXPECT_EQ(1031, written);
    // A document takes any AttribOwner as such, so that a StructureDef never comes to its own
    // field.
    EXPECT_EQ(std::set<std::string>{"http://www.zorvex.org/Schemas/ZORVEXSchema:StructureDef"},
              m_childless);
}

TEST_F(AllClassesTest, ClassesOfOtherNamespacesStandUnderTheirPrefix)
{
    for (const char* name : {"zorvex_cha:Quotient", "zorvex_cl:AdminClass"})
    {
        ClassDescriptor* descriptor = ClassDescriptor::FindByName(name);
        ASSERT_NE(nullptr, descriptor) << name;
        const std::unique_ptr<Object> object(descriptor->MakeObject());
        const std::string text = Utf8(Write(*object));
        EXPECT_NE(std::string::npos, text.find(std::string("<") + name)) << text;
    }
}

}  // namespace
