#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "Checker.h"
#include "Generator.h"
#include "Naming.h"
#include "Reader.h"
#include "VocabularyError.h"
#include "support/ScratchFolder.h"

namespace
{

namespace fs = std::filesystem;
using schemagen::CheckVocabulary;
using schemagen::ReadVocabulary;
using testing::StartsWith;
using zorvex_test::ScratchFolder;

const fs::path kData = fs::path(ZORVEX_TEST_DATA_DIR) / "schemagen";
const fs::path kObjectHeader = fs::path(ZORVEX_TEST_DATA_DIR) / "../../include/zorvex_api/Object.h";

// All files below a folder, by relative name. Dot files aren't of the generator.
std::map<std::string, std::string> ReadTree(const fs::path& root)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(root))
    {
        if (entry.is_regular_file() && entry.path().filename().string().front() != '.')
        {
            std::ifstream stream(entry.path(), std::ios::binary);
            std::ostringstream text;
            text << stream.rdbuf();
            files[fs::relative(entry.path(), root).string()] = text.str();
        }
    }
    return files;
}

schemagen::Settings TinySettings(const fs::path& out)
{
    schemagen::Settings settings;
    settings.vocabulary = kData / "vocabulary";
    settings.members = kData / "members";
    settings.objectHeader = kObjectHeader;
    settings.out = out;
    settings.reference = out / "reference";
    return settings;
}

void GenerateTiny(const schemagen::Settings& settings)
{
    schemagen::Vocabulary vocabulary = ReadVocabulary(settings.vocabulary);
    CheckVocabulary(vocabulary);
    schemagen::Generate(vocabulary, settings);
}

TEST(SchemagenTest, TinyVocabularyGivesTheGoldenFiles)
{
    const ScratchFolder scratch;
    GenerateTiny(TinySettings(scratch.Path()));
    const auto expected = ReadTree(kData / "golden");
    const auto made = ReadTree(scratch.Path());
    for (const auto& [name, text] : made)
    {
        const auto golden = expected.find(name);
        ASSERT_NE(expected.end(), golden) << name << " is new; run tests/data/schemagen/Update.sh";
        EXPECT_EQ(golden->second, text) << name << " differs; run tests/data/schemagen/Update.sh";
    }
    EXPECT_EQ(expected.size(), made.size());
}

TEST(SchemagenTest, UnchangedFilesAreLeftAloneAndStaleOnesGo)
{
    const ScratchFolder scratch;
    const schemagen::Settings settings = TinySettings(scratch.Path());
    GenerateTiny(settings);
    const fs::path kept = scratch.Path() / "zorvex60/Bolt.h";
    const fs::path stale = scratch.Path() / "zorvex60/Gone.h";
    std::ofstream(stale) << "old";
    const fs::file_time_type before = fs::last_write_time(kept) - std::chrono::hours(1);
    fs::last_write_time(kept, before);
    GenerateTiny(settings);
    EXPECT_EQ(before, fs::last_write_time(kept));
    EXPECT_FALSE(fs::exists(stale));
}

TEST(SchemagenTest, SplittingIntoSourcesLosesNothing)
{
    const ScratchFolder scratch;
    schemagen::Settings settings = TinySettings(scratch.Path());
    settings.classSources = 3;
    GenerateTiny(settings);
    std::string all;
    for (const char* name : {"Classes00.cpp", "Classes01.cpp", "Classes02.cpp"})
    {
        all += scratch.Read(std::string("sources/") + name);
    }
    for (const char* name : {"zorvex60_Bolt", "zorvex60_Part", "zorvex60_IdObject",
                             "zorvex60_Frame", "zorvex_cha60_Nut"})
    {
        const std::string definition = std::string("int Initialise_") + name + "(void* record)\n{";
        const std::size_t first = all.find(definition);
        EXPECT_NE(std::string::npos, first) << name;
        EXPECT_EQ(std::string::npos, all.find(definition, first + 1)) << name;
    }
}

TEST(SchemagenTest, PluralsAndStemsFollowTheRules)
{
    EXPECT_EQ("Fixes", schemagen::Plural("Fix"));
    EXPECT_EQ("Statuses", schemagen::Plural("Status"));
    EXPECT_EQ("Patches", schemagen::Plural("Patch"));
    EXPECT_EQ("Displaies", schemagen::Plural("Display"));
    EXPECT_EQ("Options", schemagen::Plural("Options"));
    EXPECT_EQ("PreOptions", schemagen::Plural("PreOptions"));
    EXPECT_EQ("Values", schemagen::Plural("Values"));
    EXPECT_EQ("Entity", schemagen::Stem("entityRef"));
    EXPECT_EQ("Entity", schemagen::Stem("entityRefs"));
    EXPECT_EQ("Curves", schemagen::Stem("curves"));
}

// Vocabularies with one fault each.
class VocabularyFaultTest : public testing::Test
{
protected:
    // What the generator says of these files; empty when it is content. `counts` are those of
    // module A.
    std::string Fault(const std::string& moduleText,
                      const std::string& counts = "2 classes 1 fields 0 enums 0 values")
    {
        m_scratch.Write("modules.txt",
                        "namespace main \"\" http://example.org/Main\n"
                        "unregistered Text\n"
                        "code zorvex60 main\n"
                        "module A zorvex60 \"1.0\" : " +
                            counts + "\n");
        m_scratch.Write("A.txt", moduleText);
        try
        {
            schemagen::Settings settings;
            settings.vocabulary = m_scratch.Path();
            settings.members = m_scratch.Path();
            settings.objectHeader = kObjectHeader;
            settings.out = m_scratch.Path() / "out";
            GenerateTiny(settings);
        }
        catch (const schemagen::VocabularyError& error)
        {
            return error.what();
        }
        return std::string();
    }

    // The fault of a class with this field line.
    std::string FieldFault(const std::string& field)
    {
        return Fault("class IdObject : Object\nclass B : IdObject\n    " + field + "\n");
    }

    ScratchFolder m_scratch;
};

TEST_F(VocabularyFaultTest, GoodFieldsPass)
{
    for (const char* field : {"a double[3] default \"1,2,3\"", "a uri Text | B", "a logical[3]",
                              "B elements default \"suppressId=true\"", "(any) element Object"})
    {
        EXPECT_EQ("", FieldFault(field)) << field;
    }
}

TEST_F(VocabularyFaultTest, FaultsOfFormNameFileLineAndCause)
{
    EXPECT_EQ("A.txt:1: \"class\" or \"enum\" expected", Fault("clas B : Object\n"));
    EXPECT_EQ("A.txt:2: this line belongs to no class or enumeration",
              Fault("# comment\n    a int\n"));
    EXPECT_EQ("A.txt:3: unknown field type \"integer\"", FieldFault("a integer"));
    EXPECT_EQ("A.txt:3: field type expected", FieldFault("a"));
    EXPECT_EQ("A.txt:3: \"x\" is no number", FieldFault("a int[x]"));
    EXPECT_EQ("A.txt:3: unexpected \"often\"", FieldFault("a int required often"));
    EXPECT_EQ("A.txt:3: closing quote expected", FieldFault("a int default \"1"));
    EXPECT_EQ("A.txt:1: \"2nd\" is no class name", Fault("class 2nd : Object\n"));
    EXPECT_EQ("A.txt:1: the name of an enumeration begins with \"e\"", Fault("enum Head\n"));
    EXPECT_EQ("modules.txt:4: \"values\" expected",
              Fault("", "0 classes 0 fields 0 enums 0 value"));
}

TEST_F(VocabularyFaultTest, UnknownNamesAreFound)
{
    EXPECT_EQ("A.txt:1: unknown base class \"C\"", Fault("class B : C\n"));
    EXPECT_EQ("A.txt:1: unknown equivalent class \"C\"", Fault("class B : Object equivalent C\n"));
    EXPECT_EQ("A.txt:3: unknown class \"C\"", FieldFault("a uri Text | C"));
    EXPECT_EQ("A.txt:3: unknown class \"other:B\"", FieldFault("a uri other:B"));
    EXPECT_EQ("A.txt:3: unknown class \"Missing\"", FieldFault("Missing element"));
    EXPECT_EQ("A.txt:3: unknown enumeration \"eHead\"", FieldFault("a enum eHead"));
    EXPECT_EQ("A.txt:2: \"code\" is no required attribute of a base class",
              Fault("class IdObject : Object\nclass B : IdObject\n    @optional code\n"));
    EXPECT_EQ(
        "A.txt:2: there is no accessor \"GetB\" to replace",
        Fault("class IdObject : Object\nclass B : IdObject\n    @replaces GetB\n    a int\n"));
    EXPECT_EQ("A.txt:1: the members \"IdObject\" can't be read",
              Fault("class IdObject : Object\n    @members\n    a int\nclass B : Object\n"));
}

TEST_F(VocabularyFaultTest, DuplicatesAndCirclesAreFound)
{
    EXPECT_EQ("A.txt:2: class \"B\" exists already", Fault("class B : Object\nclass B : Object\n"));
    EXPECT_THAT(Fault("class B : C\nclass C : B\n"), StartsWith("A.txt:1: class \"B\" is a base"));
    EXPECT_EQ("A.txt:4: field \"a\" exists already in this class",
              FieldFault("a int\n    a string"));
    EXPECT_EQ("A.txt:4: field \"a\" exists already in class \"IdObject\"",
              Fault("class IdObject : Object\n    a int\nclass B : IdObject\n    a int\n"));
    EXPECT_EQ("A.txt:4: accessor GetAURI of field \"aRef\" exists already in class \"B\"",
              Fault("class IdObject : Object\nclass B : IdObject\n    a uri\n    aRef uri\n",
                    "2 classes 2 fields 0 enums 0 values"));
    EXPECT_EQ("A.txt:1: value \"x\" of eHead exists already",
              Fault("enum eHead\n    x\n    x as Other\n"));
    EXPECT_EQ("A.txt:1: value \"X\" of eHead exists already", Fault("enum eHead\n    x\n    X\n"));
    EXPECT_EQ("A.txt:1: value \"a b\" of eHead needs \"as\" and a name",
              Fault("enum eHead\n    \"a b\"\n"));
}

TEST_F(VocabularyFaultTest, DefaultsHaveToFitTheirField)
{
    for (const char* field :
         {"a logical default \"yes\"", "a int default \"1.5\"", "a double default \"1,2\"",
          "a double[3] default \"1,2\"", "a vector default \"1,2\"", "a int default \"\"",
          "a uri default \"#id1\"", "B element default \"suppressId\""})
    {
        EXPECT_THAT(FieldFault(field), testing::HasSubstr("is no value of field")) << field;
    }
    EXPECT_EQ("A.txt:3: \"big\" is no value of field \"a\"",
              Fault("class IdObject : Object\nclass B : Object\n    a enum eHead default \"big\"\n"
                    "enum eHead\n    small\n"));
    EXPECT_EQ("A.txt:3: a field of this type has no length", FieldFault("a string[2]"));
    EXPECT_EQ("A.txt:3: \"String\", \"Double\" or \"Integer\" expected", FieldFault("A content B"));
}

TEST_F(VocabularyFaultTest, WrongCountsAreFound)
{
    EXPECT_EQ("modules.txt:4: module A has 3 classes, not 2",
              Fault("class A : Object\nclass B : Object\nclass C : Object\n"));
    EXPECT_EQ("modules.txt:4: module A has 2 values, not 3",
              Fault("enum eHead\n    x\n", "0 classes 0 fields 1 enums 3 values"));
}

}  // namespace
