#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "CommandRunner.h"

namespace zorvex_cli_tests
{
namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

const char* const kDocument = "bracket-assembly.zorvex";

class CommandTest : public testing::Test
{
protected:
    Outcome Run(const std::vector<std::string>& arguments) const { return m_runner.Run(arguments); }

    /// Runs with --json and parses what comes out.
    json RunForJson(std::vector<std::string> arguments) const
    {
        arguments.emplace_back("--json");
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(0, outcome.code) << outcome.err;
        return json::parse(outcome.out, nullptr, false);
    }

    CommandRunner m_runner;
};

/// A document that reads, but not without findings.
std::string DocumentWith(const std::string& content)
{
    return "<?xml version=\"1.0\"?>\n"
           "<ZORVEX xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\" author=\"a\" "
           "date=\"2024-01-01\" time=\"00:00:00\" schemaVersion=\"6\">" +
           content + "</ZORVEX>\n";
}

TEST_F(CommandTest, WrongUsageIsTwoAndHelpIsGood)
{
    EXPECT_EQ(2, Run({}).code);
    EXPECT_EQ(2, Run({"fly"}).code);
    EXPECT_EQ(2, Run({"info"}).code);
    EXPECT_EQ(2, Run({"convert", kDocument, "x.zorvex", "-o", "no-equals-sign"}).code);
    EXPECT_EQ(2, Run({"tree", kDocument, "--depth", "-1"}).code);
    EXPECT_EQ(2, Run({"set", kDocument, "id47", "quantity", "8"}).code);  // nowhere to save
    for (const char* command : {"info", "convert", "tree", "get", "set", "classes", "check"})
    {
        const Outcome help = Run({command, "--help"});
        EXPECT_EQ(0, help.code);
        EXPECT_THAT(help.out, HasSubstr(command));
    }
}

TEST_F(CommandTest, FailuresGoToStandardErrorAsSeverityCodeAndText)
{
    const Outcome missing = Run({"info", "missing.zorvex"});
    EXPECT_EQ(1, missing.code);
    EXPECT_THAT(missing.out, IsEmpty());
    EXPECT_EQ("error 2: Cannot open file: missing.zorvex\n", missing.err);

    const Outcome unknown = Run({"info", "drawing.unknown"});
    EXPECT_EQ(1, unknown.code);
    EXPECT_EQ("error 2: No adapter found for \"drawing.unknown\".\n",
              unknown.err.substr(0, unknown.err.find('\n') + 1));
}

TEST_F(CommandTest, InfoCountsClassesAndReferences)
{
    m_runner.WriteFile("small.zorvex",
                       DocumentWith("<ProductDef id='id1'><InstanceGraph id='id2' rootRefs='id3'>"
                                    "<ProductRevisionView id='id3' instanceRefs='id4 id99'/>"
                                    "<ProductInstance id='id4' partRef='fasteners.zorvex#id30'/>"
                                    "</InstanceGraph></ProductDef>"));
    const json info = RunForJson({"info", "small.zorvex"});
    EXPECT_EQ("Document", info["root"]);
    EXPECT_EQ("6", info["schemaVersion"]);
    EXPECT_EQ("a", info["author"]);
    EXPECT_EQ(5, info["objects"]);
    EXPECT_EQ(1, info["classes"]["ProductInstance"]);
    EXPECT_EQ((json{{"local", 2}, {"external", 1}, {"unresolved", 1}}), info["references"]);
    EXPECT_GT(info["loadSeconds"].get<double>(), 0.0);
}

TEST_F(CommandTest, TreeMultipliesQuantitiesDownTheStructure)
{
    const json tree = RunForJson({"tree", kDocument});
    ASSERT_EQ(1u, tree.size());
    EXPECT_EQ("BRK-1000", tree[0]["number"]);

    const auto part = [](const json& parts, const std::string& number)
    {
        const auto found =
            std::find_if(parts.begin(), parts.end(),
                         [&number](const json& one) { return one["number"] == number; });
        return found == parts.end() ? json() : *found;
    };
    const json bracket = part(tree[0]["parts"], "BRK-1100");
    EXPECT_EQ(2.0, bracket["quantity"]);
    EXPECT_EQ("C", bracket["revision"]);
    // From the other document: two bolts in each of two brackets, and four below.
    EXPECT_EQ(4.0, part(bracket["parts"], "ISO 4017-M8x25-8.8")["total"]);
    EXPECT_EQ(4.0, part(tree[0]["parts"], "ISO 4017-M8x25-8.8")["total"]);
    EXPECT_EQ(0.001, part(bracket["parts"], "CHM-0243")["total"]);

    const std::string text = Run({"tree", kDocument, "--depth", "1"}).out;
    EXPECT_THAT(text, HasSubstr("\n  2 x BRK-1100 rev C  Bracket assembly\n"));
    EXPECT_THAT(text, Not(HasSubstr("Angle bracket")));
    EXPECT_EQ("BRK-1000 rev B  Shaft support\n", Run({"tree", kDocument, "--depth", "0"}).out);
}

TEST_F(CommandTest, TreeOfAStructureThatContainsItselfEnds)
{
    m_runner.WriteFile(
        "loop.zorvex",
        DocumentWith("<ProductDef id='id1'><InstanceGraph id='id2'>"
                     "<ProductRevisionView id='id3' name='top' instanceRefs='id4'/>"
                     "<ProductInstance id='id4' partRef='#id5'/>"
                     "<ProductRevisionView id='id5' name='ring' instanceRefs='id6 id7'/>"
                     "<ProductInstance id='id6' partRef='#id5'/>"
                     "<ProductInstance id='id7' partRef='#id404'/>"
                     "</InstanceGraph></ProductDef>"));
    const Outcome tree = Run({"tree", "loop.zorvex"});
    EXPECT_EQ(1, tree.code);
    EXPECT_EQ("top\n  1 x ring\n    1 x ring  (contains itself)\n    1 x (not loaded: #id404)\n",
              tree.out);
}

TEST_F(CommandTest, GetPrintsOneFieldOrAllThatHaveAValue)
{
    EXPECT_EQ("#id102\n", Run({"get", kDocument, "id24", "nameRef"}).out);
    EXPECT_EQ("#id102\n", Run({"get", kDocument, "#id24", "nameRef"}).out);
    EXPECT_EQ(1, Run({"get", kDocument, "id24", "colour"}).code);
    EXPECT_THAT(Run({"get", kDocument, "id84", "diffuse"}).out, HasSubstr("0.55 0.57 0.6"));
    EXPECT_EQ("-0.08 0 0.012\n", Run({"get", kDocument, "id62", "Content"}).out);
    EXPECT_THAT(Run({"get", kDocument, "id102", "Item"}).out,
                HasSubstr("\nItem (MultipleLanguageItem) Content=\"Sestava konzoly\" "
                          "language=\"cs\"\n"));

    const json bush = RunForJson({"get", kDocument, "id28"});
    EXPECT_EQ("Product", bush["class"]);
    EXPECT_EQ("BSH-0040", bush["attributes"]["productId"]);
    EXPECT_EQ("id89", bush["elements"][0]["id"]);

    EXPECT_EQ("en de cs ja el\n", Run({"get", kDocument, ".", "languages"}).out);
    const Outcome nobody = Run({"get", kDocument, "id9999"});
    EXPECT_EQ(1, nobody.code);
    EXPECT_THAT(nobody.err, MatchesRegex("(warning [^\n]*\n)?error 517: [^\n]*id9999[^\n]*\n"));
}

TEST_F(CommandTest, SetChangesOneValueAndNothingElse)
{
    ASSERT_EQ(0, Run({"convert", kDocument, "before.zorvex"}).code);
    ASSERT_EQ(0,
              Run({"set", "before.zorvex", "id47", "quantity", "-8.5", "-O", "after.zorvex"}).code);

    std::string expected = m_runner.ReadFile("before.zorvex");
    const std::string old = "quantity=\"4\"";
    expected.replace(expected.find(old), old.size(), "quantity=\"-8.5\"");
    EXPECT_EQ(expected, m_runner.ReadFile("after.zorvex"));
}

TEST_F(CommandTest, SetOfAnUnknownFieldSavesNothing)
{
    const Outcome set = Run({"set", kDocument, "id47", "colour", "red", "-O", "out.zorvex"});
    EXPECT_EQ(1, set.code);
    EXPECT_THAT(set.err, HasSubstr("error 525: \"colour\" is not an allowed attribute of: "
                                   "\"ProductInstance\".\n"));
    EXPECT_FALSE(m_runner.HasFile("out.zorvex"));
}

TEST_F(CommandTest, SetRefusesTextWhereNumbersBelong)
{
    const Outcome set = Run({"set", kDocument, "id47", "quantity", "4 or so", "-O", "out.zorvex"});
    EXPECT_EQ(2, set.code);
    EXPECT_THAT(set.err, HasSubstr("error 2: \"4 or so\" is no value of the field \"quantity\", "
                                   "which takes a number\n"));
    const auto code = [this](const char* id, const char* field, const char* value) {
        return Run({"set", "fields.zorvex", id, field, value, "-O", "out.zorvex"}).code;
    };
    m_runner.WriteFile("fields.zorvex",
                       DocumentWith("<ProductDef id='id1'><Material id='id2' ambient='0 0 0' "
                                    "diffuse='0 0 0'/></ProductDef><Structure id='id3'/>"));
    EXPECT_EQ(2, code("id2", "ambient", "1 1"));
    EXPECT_EQ(2, code("id2", "ambient", "1 1 red"));
    EXPECT_EQ(2, code("id3", "monolithic", "1"));
    EXPECT_FALSE(m_runner.HasFile("out.zorvex"));
    EXPECT_EQ(0, code("id2", "ambient", "1, .5e0 -1"));
    EXPECT_EQ(0, code("id3", "monolithic", "true"));
    EXPECT_EQ(0, code("id3", "monolithic", ""));
    EXPECT_EQ(0, code("id3", "catalogueId", "4 or so"));
}

TEST_F(CommandTest, ConvertGivesTheSameBytesTheSecondTime)
{
    ASSERT_EQ(0, Run({"convert", kDocument, "once.zorvex"}).code);
    ASSERT_EQ(0, Run({"convert", "once.zorvex", "twice.zorvex"}).code);
    EXPECT_EQ(m_runner.ReadFile("once.zorvex"), m_runner.ReadFile("twice.zorvex"));
    EXPECT_THAT(m_runner.ReadFile("once.zorvex"), HasSubstr("アングル 𠮷田型"));
}

TEST_F(CommandTest, ConvertPassesOptionsOn)
{
    ASSERT_EQ(0, Run({"convert", kDocument, "out.zorvex", "-o",
                      "adapters/ZORVEX/export/zorvex_sdk_version=true", "-o",
                      "adapters/ZORVEX/export/namespace_list=false"})
                     .code);
    const std::string text = m_runner.ReadFile("out.zorvex");
    EXPECT_THAT(text, HasSubstr("name=\"ZORVEX SDK\""));
    EXPECT_THAT(text, Not(HasSubstr("xmlns=")));
}

TEST_F(CommandTest, ConvertKeepsThePartsOfABrokenDocumentOnlyWhenForced)
{
    m_runner.WriteFile("cut.zorvex", DocumentWith("<ProductDef id='id1'/><Product"));
    EXPECT_EQ(1, Run({"convert", "cut.zorvex", "out.zorvex"}).code);
    EXPECT_FALSE(m_runner.HasFile("out.zorvex"));
    EXPECT_EQ(1, Run({"convert", "cut.zorvex", "out.zorvex", "--force"}).code);
    EXPECT_THAT(m_runner.ReadFile("out.zorvex"), HasSubstr("<ProductDef id=\"id1\">"));
}

TEST_F(CommandTest, ClassesTellTheMetadataWithExactlyTheseKeys)
{
    const json classes = RunForJson({"classes"});
    EXPECT_EQ(1031u, classes.size()) << "the classes of the schemas alone";
    EXPECT_EQ("Object", RunForJson({"classes", "Object"})[0]["name"]);
    const std::set<std::string> classKeys = {"name",     "namespace", "base",  "equivalence",
                                             "abstract", "version",   "fields"};
    const std::set<std::string> fieldKeys = {"name",    "type",     "length",     "class",
                                             "default", "required", "deprecated", "values"};
    for (const json& one : classes)
    {
        std::set<std::string> keys;
        for (const auto& item : one.items())
        {
            keys.insert(item.key());
        }
        ASSERT_EQ(classKeys, keys);
        for (const json& field : one["fields"])
        {
            keys.clear();
            for (const auto& item : field.items())
            {
                keys.insert(item.key());
            }
            ASSERT_EQ(fieldKeys, keys) << one["name"];
            ASSERT_NE("id", field["name"]) << one["name"];
        }
    }
}

TEST_F(CommandTest, ClassesShowFieldsAsTheyWereRegistered)
{
    const json representation = RunForJson({"classes", "Representation"})[0];
    std::vector<std::string> names;
    for (const json& field : representation["fields"])
    {
        names.push_back(field["name"]);
    }
    EXPECT_EQ((std::vector<std::string>{"transformRef", "format", "equivalentRef", "revision",
                                        "type", "location", "load", "propertyRefs"}),
              std::vector<std::string>(names.begin(), names.begin() + 8));
    EXPECT_EQ("external_reference", representation["fields"][5]["type"]);
    EXPECT_EQ("default", representation["fields"][4]["default"]);
    EXPECT_THAT(representation["fields"][4]["values"],
                testing::ElementsAre("unset", "default", "simplified", "user", "flat"));

    EXPECT_EQ("6.0 ZORVEXSchema.xsd", representation["version"]);

    const json material = RunForJson({"classes", "Material"})[0];
    EXPECT_EQ(3, material["fields"][0]["length"]);
    EXPECT_EQ(1, material["fields"][1]["length"]);
    EXPECT_TRUE(material["fields"][0]["required"].get<bool>());
    EXPECT_TRUE(material["fields"][0]["default"].is_null());
    EXPECT_EQ("0.0", material["fields"][1]["default"]);

    EXPECT_EQ(1, Run({"classes", "NoSuchClass"}).code);
}

TEST_F(CommandTest, CheckCountsWarningsAndDanglingIdsAsFindings)
{
    const Outcome sound = Run({"check", "fasteners.zorvex"});
    EXPECT_EQ(0, sound.code) << sound.err;
    EXPECT_EQ("fasteners.zorvex: 0 errors, 0 warnings\n", sound.out);

    m_runner.WriteFile("dangling.zorvex",
                       DocumentWith("<ProductDef id='id1' defaultProductViewRef='id7'/>"));
    const Outcome dangling = Run({"check", "dangling.zorvex"});
    EXPECT_EQ(1, dangling.code);
    EXPECT_THAT(dangling.err, HasSubstr("warning 517: "));
    EXPECT_THAT(dangling.err, HasSubstr("defaultProductViewRef=\"id7\""));
    EXPECT_EQ(0, Run({"check", "dangling.zorvex", "--allow-warnings"}).code);

    m_runner.WriteFile("unknown.zorvex", DocumentWith("<Nonsense/>"));
    const Outcome unknown = Run({"check", "unknown.zorvex", "--json"});
    EXPECT_EQ(1, unknown.code);
    const json report = json::parse(unknown.out);
    EXPECT_EQ(1, report["warnings"]);
    EXPECT_EQ((json{{"severity", "warning"}, {"code", 520}, {"text", "Unknown element: Nonsense"}}),
              report["findings"][0]);

    m_runner.WriteFile("cut.zorvex", DocumentWith("<ProductDef id='id1'>"));
    EXPECT_EQ(1, Run({"check", "cut.zorvex", "--allow-warnings"}).code);
}

TEST_F(CommandTest, ALibraryOfPluginsTakesAwayTheWarningAboutItsFormat)
{
    const std::string library = ZORVEX_STL_LIBRARY;
    if (library.empty())
    {
        GTEST_SKIP() << "the examples aren't built";
    }
    EXPECT_THAT(Run({"check", kDocument}).err, HasSubstr("Missing Adapter (STL)"));
    const Outcome with = Run({"--library", library, "check", kDocument});
    EXPECT_EQ(0, with.code) << with.err;
    EXPECT_EQ(1, Run({"--library", "no-such-library", "check", kDocument}).code);
}

}  // namespace
}  // namespace zorvex_cli_tests
