#include <unistd.h>

#include "Documents.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/URIResolverRef.h"

/// Following references: within a document, into others, by options, and what fails.

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

/// Makes a folder the working folder for a scope.
class WorkingFolder
{
public:
    explicit WorkingFolder(const std::filesystem::path& folder)
        : m_before(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~WorkingFolder() { std::filesystem::current_path(m_before); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
    std::filesystem::path m_before;
};

}  // namespace

class ReferencesTest : public DocumentsTest
{
protected:
    Object* Part(const Loaded& loaded, const char* id = "id11")
    {
        return loaded.Root()->ResolveId(id);
    }
    std::string PathOf(const char* name) const { return (m_folder.Path() / name).string(); }
};

// --- within the document
// ----------------------------------------------------------------------------------

TEST_F(ReferencesTest, AnIdOfTheDocumentIsFoundAndAMissingOneIsSilent)
{
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"#id5", "#id99", "#id=id5"}));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ(loaded.Root()->ResolveId("id5"), Target(Part(loaded)));
    EXPECT_EQ(nullptr, Target(Part(loaded, "id12")));
    EXPECT_EQ(loaded.Root()->ResolveId("id5"), Target(Part(loaded, "id13")));
}

TEST_F(ReferencesTest, AnyOtherLocatorThatFindsNothingIsAWarning)
{
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"#plate"}));
    EXPECT_THAT(loaded.Messages(), ElementsAre("WARNING 517: Locator failed: plate"));
    EXPECT_EQ(nullptr, Target(Part(loaded)));
}

TEST_F(ReferencesTest, ADocumentThatNamesItselfStaysOneDocument)
{
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"a.zorvex#id5", "a.zorvex", "#"}));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ(1u, Alive());
    EXPECT_EQ(loaded.Root()->ResolveId("id5"), Target(Part(loaded)));
    EXPECT_EQ(loaded.Root(), Target(Part(loaded, "id12")));
    EXPECT_EQ(loaded.Root(), Target(Part(loaded, "id13")));

    EXPECT_TRUE(Save(loaded.Root(), m_folder.File("o.zorvex")).Ok());
    const Loaded again = LoadFrom(m_folder.File("o.zorvex"));
    EXPECT_EQ(again.Root(), Target(Part(again, "id12")));
    EXPECT_EQ(again.Root(), Target(Part(again, "id13")));
}

TEST_F(ReferencesTest, AContextThatLeadsNowhereIsReportedAndEndsThere)
{
    for (const char* context : {"#plate", "none.zorvex#id5"})
    {
        const Loaded loaded = LoadFrom(m_folder.Write(
            "a.zorvex",
            WrapDocument("<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><ProductRevisionView "
                         "id=\"id3\"><Representation id=\"id4\"><LocatorRef contextRef=\"" +
                         std::string(context) +
                         "\" locationRef=\"#id1\"/></Representation></ProductRevisionView>"
                         "</InstanceGraph></ProductDef>")));
        EXPECT_THAT(loaded.Messages(),
                    testing::Contains(context[0] == '#'
                                          ? "WARNING 517: Locator failed: plate"
                                          : "ERROR 2: Cannot open file: " + PathOf("none.zorvex")));
    }
}

TEST_F(ReferencesTest, DocumentsWhoseContextsLeadToEachOtherAreEachReadOnce)
{
    const auto document = [](const std::string& other)
    {
        const std::string locator =
            "<LocatorRef contextRef=\"" + other + "\" locationRef=\"" + other + "#id3\"/>";
        return WrapDocument(
            "<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><ProductRevisionView id=\"id3\">"
            "<Representation id=\"id4\">" +
            locator + locator +
            "</Representation></ProductRevisionView></InstanceGraph></ProductDef>");
    };
    m_folder.Write("b.zorvex", document("a.zorvex"));
    const String a = m_folder.Write("a.zorvex", document("b.zorvex"));
    for (const char* references : {"on", "off"})
    {
        const Loaded loaded = LoadFrom(a, {{"adapters/ZORVEX/references", references}});
        Array<Object*> locators;
        Part(loaded, "id4")->GetElementsByClass(u"LocatorRef", locators);
        Array<Handle> targets;
        EXPECT_THAT(Messages(locators[1]->ResolveAttribute(u"locationRef", targets)), IsEmpty());
        ASSERT_EQ(1, targets.GetSize());
        EXPECT_EQ("id3", Utf8(targets[0].GetObject()->GetId()));
        EXPECT_LE(Alive(), 3u);
    }
}

// --- into other documents
// ---------------------------------------------------------------------------------

TEST_F(ReferencesTest, RelativeTextsAreReadFromTheFolderOfTheirOwnDocument)
{
    const String a = Write("p/a.zorvex", {"sub/b.zorvex#id5", "./sub/b.zorvex#id6"});
    Write("p/sub/b.zorvex", {"../../q/c.zorvex#id5"});
    Write("q/c.zorvex", {});
    const WorkingFolder here(m_folder.Path() / "q");
    for (const String& uri : {a, String(u"../p/a.zorvex")})
    {
        const Loaded loaded = LoadFrom(uri);
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        EXPECT_EQ(3u, Alive());
        Object* five = Target(Part(loaded));
        ASSERT_NE(nullptr, five);
        EXPECT_EQ("five", Text(five, u"name"));
        EXPECT_EQ(five->GetRoot(), Target(Part(loaded, "id12"))->GetRoot());
        EXPECT_NE(nullptr, Target(five->ResolveId(u"id11")));
    }
}

TEST_F(ReferencesTest, AReferenceFollowedLaterIsReadFromTheSameFolder)
{
    Write("d/b.zorvex", {});
    const WorkingFolder here(m_folder.Path());
    for (const String& uri : {Write("d/a.zorvex", {"b.zorvex#id5"}), String(u"d/a.zorvex")})
    {
        const Loaded loaded = LoadFrom(uri, {{"adapters/ZORVEX/references", "off"}});
        ASSERT_EQ(1u, Alive());
        Array<Handle> targets;
        EXPECT_THAT(Messages(Part(loaded)->ResolveAttribute(u"revisionRef", targets)), IsEmpty());
        ASSERT_EQ(1, targets.GetSize());
        EXPECT_EQ(targets[0].GetObject(), Target(Part(loaded)));
        EXPECT_EQ(2u, Alive());
    }
}

TEST_F(ReferencesTest, AReferenceToAFileIsItsRoot)
{
    const String a = Write("a.zorvex", {"b.zorvex", "p.zorvex", "p.zorvex#id7"});
    Write("b.zorvex", {});
    m_folder.Write("p.zorvex",
                   "<Product xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\" id=\"id7\"/>");
    const Loaded loaded = LoadFrom(a);
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ("Document", Utf8(Target(Part(loaded))->GetClassName()));
    Object* product = Target(Part(loaded, "id12"));
    ASSERT_NE(nullptr, product);
    EXPECT_EQ("Product", Utf8(product->GetClassName()));
    EXPECT_EQ(product, Target(Part(loaded, "id13")));
}

TEST_F(ReferencesTest, TextsAreUnescapedBeforeTheFileIsLookedFor)
{
    const String a = Write(
        "a.zorvex", {"b%20c.zorvex#id5", "%C3%A9%f0%9d%84%9e.zorvex#id5", "100%25.zorvex#id5"});
    Write("b c.zorvex", {});
    Write("\xC3\xA9\xF0\x9D\x84\x9E.zorvex", {});
    Write("100%.zorvex", {});
    const Loaded loaded = LoadFrom(a);
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ(4u, Alive());
    EXPECT_EQ("b c.zorvex#id5", Text(Part(loaded), u"revisionRef"));
    EXPECT_EQ("100%.zorvex#id5", Text(Part(loaded, "id13"), u"revisionRef"));
}

TEST_F(ReferencesTest, ControlCharactersAndBadEscapesStayAsTheyAre)
{
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"#a%00%1f%zz%4", "#%e9%C3"}));
    EXPECT_EQ("#a%00%1f%zz%4", Text(Part(loaded), u"revisionRef"));
    EXPECT_EQ("#\xC3\xA9\xC3\x83", Text(Part(loaded, "id12"), u"revisionRef"));
}

TEST_F(ReferencesTest, WhatCantBeFollowedLeavesTheDocumentLoaded)
{
    const String a = Write("a.zorvex", {"none.zorvex#id5", "b.zorvex#id99", "x.unknown"});
    Write("b.zorvex", {});
    const Loaded loaded = LoadFrom(a);
    EXPECT_THAT(loaded.Messages(),
                ElementsAre("ERROR 2: Cannot open file: " + PathOf("none.zorvex"),
                            "WARNING 517: Locator failed: id99",
                            "WARNING 525: Unable to determine URI format of <ProductRevisionView "
                            "revisionRef=\"x.unknown\">",
                            "WARNING 518: Errors parsing \"" + PathOf("a.zorvex") + "\""));
    for (const char* id : {"id11", "id12", "id13"})
    {
        EXPECT_EQ(nullptr, Target(Part(loaded, id))) << id;
    }
}

TEST_F(ReferencesTest, AReferenceWithoutAKnownFormatIsReported)
{
    const Loaded loaded = LoadFrom(m_folder.Write(
        "a.zorvex", WrapDocument("<ProductDef id=\"id1\"><InstanceGraph id=\"id2\">"
                                 "<ProductRevisionView id=\"id3\"><Representation id=\"id4\" "
                                 "location=\"geo/x.unknown\"/></ProductRevisionView>"
                                 "</InstanceGraph></ProductDef>")));
    EXPECT_THAT(loaded.Messages(),
                ElementsAre("WARNING 525: Unable to determine URI format of <Representation "
                            "location=\"geo/x.unknown\">"));
    const Loaded known = LoadFrom(m_folder.Write(
        "a.zorvex", WrapDocument("<ProductDef id=\"id1\"><InstanceGraph id=\"id2\">"
                                 "<ProductRevisionView id=\"id3\"><Representation id=\"id4\" "
                                 "format=\"NONE\" location=\"x.dat\"/></ProductRevisionView>"
                                 "</InstanceGraph></ProductDef>")));
    EXPECT_THAT(known.Messages(),
                testing::Contains("WARNING 517: Missing Adapter (NONE), resolving: x.dat"));
}

TEST_F(ReferencesTest, ADocumentReadFromATextFollowsNoReference)
{
    const Loaded loaded = LoadText(Document({"b.zorvex#id5", "#id5"}));
    EXPECT_THAT(loaded.Messages(), ElementsAre("WARNING 517: External references are not supported "
                                               "for loading from a String."));
    EXPECT_EQ(loaded.Root()->ResolveId("id5"), Target(Part(loaded, "id12")));
}

TEST_F(ReferencesTest, AnIdWithADotIsFoundInTheOtherDocument)
{
    const String a = Write("a.zorvex", {"b.zorvex#ZORVEX(ZORVEX-doc/part.1)"});
    m_folder.Write("b.zorvex", WrapDocument("<ProductDef id=\"part.1\"/>"));
    const auto followed = [&](const String& uri)
    {
        const Loaded loaded = LoadFrom(uri);
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        const Object* target = Target(Part(loaded));
        EXPECT_TRUE(Save(loaded.Root(), m_folder.File("o/a.zorvex")).Ok());
        return target != nullptr ? Utf8(target->GetId()) : "nothing";
    };
    std::filesystem::create_directory(m_folder.Path() / "o");
    EXPECT_EQ("part.1", followed(a));
    EXPECT_EQ("part.1", followed(m_folder.File("o/a.zorvex")));
}

// --- options
// ----------------------------------------------------------------------------------------------

TEST_F(ReferencesTest, ReferencesOffFollowsNothingAndKeepsTheTexts)
{
    const std::vector<std::string> texts = {"none.zorvex#id5", "a%20b.zorvex", "x&amp;%41%25.y"};
    const Options off = {{"adapters/ZORVEX/references", "off"}};
    const Loaded loaded = LoadFrom(Write("a.zorvex", texts), off);
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_TRUE(Save(loaded.Root(), m_folder.File("o.zorvex"), off).Ok());
    const std::string saved = m_folder.Read("o.zorvex");
    EXPECT_THAT(saved, HasSubstr("revisionRef=\"none.zorvex#id5\""));
    EXPECT_THAT(saved, HasSubstr("revisionRef=\"a b.zorvex\""));
    // "A%" alone would do as well, but "%.y" must not be read as an escape.
    const Loaded again = LoadFrom(m_folder.File("o.zorvex"), off);
    for (const char* id : {"id11", "id12", "id13"})
    {
        EXPECT_EQ(Text(Part(loaded, id), u"revisionRef"), Text(Part(again, id), u"revisionRef"));
    }
}

TEST_F(ReferencesTest, TranslateMakesTheTextsCanonicalAndOpensNoFile)
{
    const Loaded loaded = LoadFrom(Write("d/a.zorvex", {"./e/../none.zorvex#id5", "#id5"}),
                                   {{"adapters/ZORVEX/references", "translate"}});
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ(PathOf("d/none.zorvex") + "#id5", Text(Part(loaded), u"revisionRef"));
    EXPECT_EQ(nullptr, Target(Part(loaded)));
    EXPECT_NE(nullptr, Target(Part(loaded, "id12")));
}

TEST_F(ReferencesTest, ATranslatedTextMeansTheSameWhenItIsFollowed)
{
    const WorkingFolder here(m_folder.Path());
    Write("d/a.zorvex", {"./e/../b.zorvex#id5"});
    Write("d/b.zorvex", {});
    const Options translate = {{"adapters/ZORVEX/references", "translate"}};
    const Loaded loaded = LoadFrom(u"d/a.zorvex", translate);
    Array<Handle> targets;
    EXPECT_THAT(Messages(Part(loaded)->ResolveAttribute(u"revisionRef", targets)), IsEmpty());
    EXPECT_EQ(1, targets.GetSize());
    EXPECT_TRUE(Save(loaded.Root(), u"d/a2.zorvex", translate).Ok());
    EXPECT_THAT(LoadFrom(u"d/a2.zorvex").Messages(), IsEmpty());
}

TEST_F(ReferencesTest, OneAdapterIsReadForAnother)
{
    const String a = Write("a.zorvex", {"b.zorvex#ZORVEX(FOO-doc/id5)"});
    Write("b.zorvex", {});
    EXPECT_THAT(LoadFrom(a).Messages(),
                ElementsAre("WARNING 517: Missing Adapter (FOO), resolving: "
                            "b.zorvex#ZORVEX(FOO-doc/id5)"));
    const Loaded loaded =
        LoadFrom(a, {{"adapters/substitute", "X/Y,broken,/,FOO/ZORVEX,FOO/LATE"}});
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    ASSERT_NE(nullptr, Target(Part(loaded)));
    EXPECT_EQ("five", Text(Target(Part(loaded)), u"name"));
}

TEST_F(ReferencesTest, AChainOfDocumentsEndsAtTheLimit)
{
    for (int i = 0; i < 6; ++i)
    {
        Write("d" + std::to_string(i) + ".zorvex", {"d" + std::to_string(i + 1) + ".zorvex#id5"});
    }
    const String first = m_folder.File("d0.zorvex");
    {
        const Loaded loaded = LoadFrom(first, {{"adapters/ZORVEX/import/max_documents", "3"}});
        EXPECT_THAT(loaded.Messages().at(0),
                    HasSubstr("option \"adapters/ZORVEX/import/max_documents\""));
        EXPECT_EQ(3u, Alive());
    }
    const Loaded all = LoadFrom(first, {{"adapters/ZORVEX/references", "on"}});
    EXPECT_EQ(6u, Alive());
}

TEST_F(ReferencesTest, ATreeOfDocumentsEndsAtItsOwnLimit)
{
    for (const char* name : {"b.zorvex", "c.zorvex", "d.zorvex"})
    {
        Write(name, {});
    }
    const String a = Write("a.zorvex", {"b.zorvex#id5", "c.zorvex#id5", "d.zorvex#id5"});
    for (int i = 0; i < 2; ++i)  // each load counts anew
    {
        const Loaded loaded = LoadFrom(a, {{"adapters/ZORVEX/import/max_all_documents", "3"}});
        EXPECT_THAT(loaded.Messages(),
                    ElementsAre("ERROR 4: Unable to load: \"" + PathOf("d.zorvex") +
                                    "\": more than 3 documents in one load (option "
                                    "\"adapters/ZORVEX/import/max_all_documents\")",
                                HasSubstr("WARNING 518")));
        EXPECT_EQ(3u, Alive());
    }
}

// --- setting references
// -----------------------------------------------------------------------------------

TEST_F(ReferencesTest, ATextWithParentFoldersIsStoredCanonically)
{
    const Loaded loaded = LoadFrom(Write("a.zorvex", {}));
    Object* view = loaded.Root()->ResolveId("id5");
    view->SetAttributeValue(u"revisionRef", String(u"x/../y\\b.zorvex#id5"));
    EXPECT_EQ("y/b.zorvex#id5", Text(view, u"revisionRef"));
    view->SetAttributeValue(u"revisionRef", String(u"x..y/b.zorvex#id5"));
    EXPECT_EQ("x..y/b.zorvex#id5", Text(view, u"revisionRef"));
    for (const char* odd : {"../b.zorvex#ZORVEX(", "x/../"})  // none that a pointer could have
    {
        view->SetAttributeValue(u"revisionRef", String(odd));
        EXPECT_EQ(odd, Text(view, u"revisionRef"));
    }
}

TEST_F(ReferencesTest, ALocalReferenceReadsAsTheCurrentIdOfItsTarget)
{
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"#id5"}));
    EXPECT_EQ(1, loaded.Root()->ResolveId("id5")->SetId("plate"));
    EXPECT_EQ("#plate", Text(Part(loaded), u"revisionRef"));
    loaded.Root()->ResolveId("id2")->DeleteElement(loaded.Root()->ResolveId("plate"));
    EXPECT_EQ("#plate", Text(Part(loaded), u"revisionRef"));
    EXPECT_EQ(nullptr, Target(Part(loaded)));
}

}  // namespace zorvex_test
