// The registered classes against the vocabulary that they were generated from.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "Checker.h"
#include "Reader.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "schema/GeneratedClasses.h"
#include "support/SessionTest.h"
#include "zorvex60/ProductRevisionView.h"
#include "zorvex_api/ClassDescriptor.h"

namespace
{

using namespace zorvex_api;
using schemagen::Kind;
using zorvex_test::Utf8;

schemagen::Vocabulary ReadOwnVocabulary()
{
    schemagen::Vocabulary vocabulary = schemagen::ReadVocabulary(
        std::filesystem::path(ZORVEX_TEST_DATA_DIR) / "../../src/schema/vocabulary");
    schemagen::CheckVocabulary(vocabulary);
    return vocabulary;
}

ClassDescriptor* Find(const schemagen::Class& item)
{
    return ClassDescriptor::FindByName(String(item.QualifiedName().c_str()));
}

int ExpectedType(const schemagen::Field& field)
{
    static const std::map<Kind, int> kTypes = {
        {Kind::Logical, 1},   {Kind::Int, 2},        {Kind::Double, 3},    {Kind::String, 4},
        {Kind::Reference, 5}, {Kind::References, 6}, {Kind::Element, 7},   {Kind::Elements, 8},
        {Kind::Uri, 9},       {Kind::Uris, 10},      {Kind::External, 11}, {Kind::Content, 13},
        {Kind::Matrix, 19},   {Kind::Vector, 20}};
    return kTypes.at(field.kind);
}

void ExpectEnumeration(const schemagen::Field& field, const FieldInfo& info)
{
    EXPECT_TRUE(info.IsEnum());
    EXPECT_EQ(field.enumeration->TypeName(), Utf8(info.GetClassString()));
    Array<String> values;
    info.GetEnumerationValues(values);
    std::vector<std::string> expected;
    for (const schemagen::EnumValue& value : field.enumeration->values)
    {
        expected.push_back(value.text);
    }
    EXPECT_EQ(expected, zorvex_test::Texts(values));
}

void ExpectField(const schemagen::Field& field, FieldDescriptor* descriptor)
{
    const FieldInfo info(descriptor);
    EXPECT_EQ(field.name, Utf8(info.GetName()));
    EXPECT_EQ(field.required, info.IsRequired() != 0);
    EXPECT_EQ(field.deprecated, info.IsDeprecated() != 0);
    if (field.kind == Kind::Enum)
    {
        ExpectEnumeration(field, info);
    }
    else
    {
        EXPECT_EQ(ExpectedType(field), info.GetType());
    }
    EXPECT_EQ(field.defaultText.value_or(""), Utf8(info.GetDefaultValue()));
    const int length = field.length.value_or(field.kind == Kind::Vector ? 3 : 1);
    EXPECT_EQ(length != 1, info.IsArray() != 0);
    EXPECT_EQ(length == 0, info.IsVariableLengthArray() != 0);
    EXPECT_EQ(length == 1 ? 0 : length, info.GetArrayLength());
}

class VocabularyTest : public zorvex_test::SessionTest
{
};

TEST_F(VocabularyTest, EveryClassIsRegisteredAsItsFileHasIt)
{
    const schemagen::Vocabulary vocabulary = ReadOwnVocabulary();
    for (const schemagen::Class& item : vocabulary.classes)
    {
        SCOPED_TRACE(item.QualifiedName());
        ClassDescriptor* descriptor = Find(item);
        ASSERT_NE(nullptr, descriptor);
        EXPECT_EQ(item.qualifiedBase, Utf8(descriptor->GetBaseClass()));
        EXPECT_EQ(item.equivalent, Utf8(descriptor->GetEquivalenceClass()));
        EXPECT_EQ(item.equivalent.empty(),
                  static_cast<ClassDescriptor*>(descriptor->GetEquivalenceClass()) == nullptr);
        EXPECT_EQ(item.abstract, descriptor->GetIsAbstract() != 0);
        EXPECT_EQ(item.schemaType, Utf8(descriptor->GetSchemaName()));
        EXPECT_EQ(item.XmlNamespace().prefix, Utf8(descriptor->GetNamespacePrefix()));
        const FieldSpan fields = descriptor->GetImplementation()->Fields();
        ASSERT_EQ(item.fields.size(), fields.size());
        for (std::size_t i = 0; i < fields.size(); ++i)
        {
            SCOPED_TRACE(item.fields[i].name);
            ExpectField(item.fields[i], fields[i]);
        }
    }
}

TEST_F(VocabularyTest, EveryClassOfAFieldIsFoundUnlessNoModuleHasIt)
{
    const schemagen::Vocabulary vocabulary = ReadOwnVocabulary();
    for (const schemagen::Class& item : vocabulary.classes)
    {
        const FieldSpan fields = Find(item)->GetImplementation()->Fields();
        for (std::size_t i = 0; i < fields.size(); ++i)
        {
            const schemagen::Class* target = item.fields[i].target;
            if (target != nullptr)
            {
                EXPECT_EQ(Find(*target), fields[i]->Class())
                    << item.name << "." << item.fields[i].name;
            }
        }
    }
}

// Counted apart from the counts that the generator checks.
TEST_F(VocabularyTest, TheWholeVocabularyIsThere)
{
    int classes = 0;
    int abstracts = 0;
    int fields = 0;
    std::map<std::string, int> byFile;
    for (int i = 0; i < ClassDescriptor::NumberOfClassDescriptors(); ++i)
    {
        ClassDescriptor* descriptor = ClassDescriptor::GetClassDescriptor(i);
        const std::string name = Utf8(descriptor->GetName());
        if (name == "Object" || name == "Configuration")
        {
            continue;
        }
        ++classes;
        abstracts += descriptor->GetIsAbstract();
        fields += static_cast<int>(descriptor->GetImplementation()->Fields().size());
        EXPECT_EQ("6.0", Utf8(descriptor->GetVersion()));
        ++byFile[Utf8(descriptor->GetImplementation()->SchemaFile())];
    }
    EXPECT_EQ(1031, classes);
    EXPECT_EQ(1031u, internal::GeneratedClassCount());
    EXPECT_EQ(66, abstracts);
    EXPECT_EQ(4050, fields);
    EXPECT_EQ(16u, byFile.size());
    EXPECT_EQ(368, byFile["ZORVEXSchema.xsd"]);
    EXPECT_EQ(44, byFile["ZORVEXCharacteristicSchema.xsd"]);
    EXPECT_EQ(31, byFile[""]);

    const schemagen::Vocabulary vocabulary = ReadOwnVocabulary();
    std::map<std::string, int> enums;
    std::size_t values = 0;
    for (const schemagen::Enumeration& item : vocabulary.enums)
    {
        ++enums[item.CodeName()];
        values += item.values.size();
    }
    EXPECT_EQ(313, enums["zorvex60"]);
    EXPECT_EQ(29, enums["zorvex_cha60"]);
    EXPECT_EQ(5, enums["zorvex_cl60"]);
    EXPECT_EQ(6, enums["zorvex_deprecated"]);
    EXPECT_EQ(2547u, values);
}

TEST_F(VocabularyTest, SpecialPropertiesOfClassesAreSet)
{
    EXPECT_EQ(zorvex60::zorvexClassProductRevisionView, zorvex60::zorvexClassPart);
    zorvex60::ProductRevisionView view;
    EXPECT_TRUE(view.Is(zorvex60::zorvexClassPart));
    EXPECT_TRUE(view.Is(String(u"Part")));
    EXPECT_EQ(ClassDescriptor::FindByName(u"Part"),
              ClassDescriptor::FindByName(u"ProductRevisionView"));
    for (const char16_t* name : {u"ScheduleRevision", u"ScheduleTaskRevision"})
    {
        const auto& optional =
            ClassDescriptor::FindByName(name)->GetImplementation()->OptionalAttributes();
        ASSERT_EQ(2u, optional.size());
        EXPECT_EQ("revision", Utf8(optional[0]));
        EXPECT_EQ("masterRef", Utf8(optional[1]));
    }
}

TEST_F(VocabularyTest, InitialisersAnswerANullRecord)
{
    EXPECT_EQ(0, internal::GeneratedClassInitialisers()[0](nullptr));
}

}  // namespace
