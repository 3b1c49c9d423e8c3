#include <gmock/gmock.h>

#include "support/Printers.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Parser.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Stream.h"
#include "zorvex_api/Transf.h"
#include "zorvex_api/Vector.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace
{

constexpr const char* kAttributes =
    " schemaVersion=\"6\" author=\"a\" date=\"2024-01-02\" time=\"03:04:05\"";

std::string Root(const std::string& attributes, const std::string& content)
{
    return "<ZORVEX" + attributes + kAttributes + ">" + content + "</ZORVEX>";
}

const std::string kMain = " xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\"";

std::string Attribute(const Object* object, const String& name)
{
    String value;
    object->GetAttributeValue(name, value);
    return Utf8(value);
}

Object* Child(Object* parent, const String& field, int index = 0)
{
    Array<Object*> children;
    parent->GetElementsByField(field, children);
    return index < children.GetSize() ? children[index] : nullptr;
}

int CountChildren(Object* parent)
{
    Array<Object*> children;
    parent->GetElements(children);
    return children.GetSize();
}

}  // namespace

class ReaderTest : public SessionTest
{
};

// --- roots and namespaces
// --------------------------------------------------------------------------

TEST_F(ReaderTest, EveryNameOfTheRootElementGivesItsClass)
{
    const std::pair<const char*, const char*> names[] = {{"ZORVEX", "Document"},
                                                         {"oRB", "Document"},
                                                         {"ZORVEXRequest", "RequestDocument"},
                                                         {"oRBRequest", "RequestDocument"},
                                                         {"Product", "Product"}};
    for (const auto& [element, className] : names)
    {
        const auto loaded = LoadText("<" + std::string(element) + kMain + "></" + element + ">");
        ASSERT_NE(nullptr, loaded.Root()) << element;
        EXPECT_EQ(className, Utf8(loaded.Root()->GetClassName()));
    }
}

TEST_F(ReaderTest, ALegacyNamespaceReadsAsTheMainOneWithAMessage)
{
    const std::string uri = "http://www.orbformat.org/Schemas/v2_0/oRBSchema";
    const auto loaded = LoadText("<oRB xmlns=\"" + uri + "\"" + kAttributes +
                                 "><ProductDef id=\"id1\"></ProductDef></oRB>");
    EXPECT_TRUE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(), ElementsAre("MESSAGE 520: Legacy namespace found: " + uri));

    const std::string option = "adapters/ZORVEX/namespaces/old";
    const auto byOption =
        LoadText("<old:oRB" + std::string(kAttributes) + "/>", {{option.c_str(), uri.c_str()}});
    EXPECT_THAT(byOption.Messages(), IsEmpty());
    EXPECT_EQ("Document", Utf8(byOption.Root()->GetClassName()));
    EXPECT_NE(nullptr, Child(loaded.Root(), u"ProductDef"));
}

TEST_F(ReaderTest, ADocumentWithoutNamespacesIsSearchedInAllOfThem)
{
    const auto loaded = LoadText(Root("", "<ProductDef id=\"id1\"></ProductDef>"));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_NE(nullptr, Child(loaded.Root(), u"ProductDef"));
}

TEST_F(ReaderTest, AnUnprefixedNameWithoutADefaultIsTakenForTheMainNamespace)
{
    const std::string uri = "http://www.zorvex.org/Schemas/ZORVEXSchema";
    const auto loaded = LoadText("<z:ZORVEX xmlns:z=\"" + uri + "\"" + kAttributes +
                                 "><ProductDef id=\"id1\"></ProductDef></z:ZORVEX>");
    EXPECT_THAT(loaded.Messages(),
                ElementsAre("WARNING 520: No namespace for element: <ProductDef>: assuming zorvex "
                            "intended"));
    EXPECT_NE(nullptr, Child(loaded.Root(), u"ProductDef"));
}

TEST_F(ReaderTest, AnUndeclaredPrefixIsAnErrorAndItsElementIsSkipped)
{
    const auto loaded = LoadText(Root(kMain, "<q:ProductDef id=\"id1\"></q:ProductDef>"));
    EXPECT_FALSE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(), Contains("ERROR 520: No namespace for element: <q:ProductDef>"));
    EXPECT_EQ(0, CountChildren(loaded.Root()));
}

TEST_F(ReaderTest, AnUnknownRootGivesWayToTheElementInside)
{
    const auto loaded = LoadText("<Foo xmlns=\"x\">" + Root(kMain, "") + "</Foo>");
    ASSERT_NE(nullptr, loaded.Root());
    EXPECT_EQ("Document", Utf8(loaded.Root()->GetClassName()));
    EXPECT_THAT(loaded.Messages(), Contains("WARNING 520: Unknown element: Foo"));

    // The namespaces of a document are its root's: a class of another module needs its prefix.
    const auto wrapped = LoadText("<Foo>" + Root(kMain, "<AdminClass id=\"id1\"/>") + "</Foo>");
    EXPECT_THAT(wrapped.Messages(), ElementsAre("WARNING 520: Unknown element: Foo",
                                                "WARNING 520: Unknown element: AdminClass"));
}

TEST_F(ReaderTest, PrefixesOfTheOptionsAreKnown)
{
    const char* uri = "http://www.zorvex.org/Schemas/ZORVEXSchema";
    const auto loaded = LoadText(Root(kMain, "<m:ProductDef id=\"id1\"></m:ProductDef>"),
                                 {{"adapters/ZORVEX/namespaces/m", uri}});
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_NE(nullptr, Child(loaded.Root(), u"ProductDef"));
}

// --- unknown content
// -------------------------------------------------------------------------------

TEST_F(ReaderTest, AnUnknownElementIsReportedWithAllBelowItAndReadingGoesOn)
{
    const auto loaded = LoadText(
        Root(kMain, "<Nonsense a=\"1\"><Deeper>text</Deeper></Nonsense><ProductDef id=\"id1\"/>"));
    EXPECT_TRUE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(), ElementsAre("WARNING 520: Unknown element: Nonsense",
                                               "WARNING 520: Unknown element: Deeper"));
    EXPECT_EQ(1, CountChildren(loaded.Root()));
}

TEST_F(ReaderTest, AnUnknownElementBecomesARunTimeClassWhenThatIsAsked)
{
    const auto loaded = LoadText(Root(kMain, "<Nonsense id=\"id7\" colour=\"red\">text</Nonsense>"),
                                 {{"adapters/ZORVEX/ignore_unknown_elements", "false"}});
    EXPECT_THAT(loaded.Messages(), Not(Contains(HasSubstr("Unknown element"))));
    Object* made = loaded.Root()->ResolveId(u"id7");
    ASSERT_NE(nullptr, made);
    EXPECT_EQ("Nonsense", Utf8(made->GetClassName()));
    EXPECT_EQ("red", Attribute(made, u"colour"));
    String content;
    made->GetContent(content);
    EXPECT_EQ("text", Utf8(content));
    ClassDescriptor::Reset();
}

TEST_F(ReaderTest, AnUnknownElementIsReadUnderEveryParentAndEveryTime)
{
    const std::string text =
        Root(kMain,
             "<Nonsense a=\"1\"/><Representation id=\"id1\"><Nonsense id=\"id2\"/>"
             "</Representation>");
    for (int i = 0; i < 2; ++i)
    {
        const auto loaded = LoadText(text, {{"adapters/ZORVEX/ignore_unknown_elements", "false"}});
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        EXPECT_NE(nullptr, loaded.Root()->ResolveId(u"id2"));
        EXPECT_EQ(2, CountChildren(loaded.Root()));
    }
    // A class of the library in the wrong place stays out, whatever the option says.
    const auto misplaced = LoadText(Root(kMain, "<ProductDef id=\"id1\"><Transform/></ProductDef>"),
                                    {{"adapters/ZORVEX/ignore_unknown_elements", "false"}});
    EXPECT_THAT(misplaced.Messages(), ElementsAre("WARNING 520: Unknown element: Transform"));
    ClassDescriptor::Reset();
}

TEST_F(ReaderTest, AnElementForAnyChildTakesKnownClassesAlone)
{
    const std::string text =
        "<Schema" + kMain + " id=\"id1\"><Nonsense/><Product id=\"id2\"/></Schema>";
    const auto loaded = LoadText(text);
    EXPECT_THAT(loaded.Messages(), ElementsAre("ERROR 520: Unknown element: Nonsense",
                                               "ERROR 4:  ( last id read was: id2 ) ",
                                               StartsWith("WARNING 518: Errors parsing \"")));
    EXPECT_NE(nullptr, loaded.Root()->ResolveId(u"id2"));

    const auto all = LoadText(text, {{"adapters/ZORVEX/ignore_unknown_elements", "false"}});
    EXPECT_THAT(all.Messages(), IsEmpty());
    EXPECT_EQ(2, CountChildren(all.Root()));
    ClassDescriptor::Reset();
}

TEST_F(ReaderTest, PrefixesThatNobodyDeclaredAreErrorsInRunTimeClassesToo)
{
    const Options all = {{"adapters/ZORVEX/ignore_unknown_elements", "false"}};
    const auto attribute =
        LoadText(Root(kMain, "<Nonsense id=\"id7\" q:a=\"1\" xsi:b=\"2\"/>"), all);
    EXPECT_THAT(attribute.Messages(), Contains("ERROR 520: Invalid XML namespace prefix: \"q\"."));
    EXPECT_EQ("1", Attribute(attribute.Root()->ResolveId(u"id7"), u"q:a"));
    EXPECT_EQ("2", Attribute(attribute.Root()->ResolveId(u"id7"), u"b"));
    const auto language = LoadText(Root(kMain, "<Other id=\"id7\" xml:lang=\"de\"/>"), all);
    EXPECT_THAT(language.Messages(), IsEmpty());
    EXPECT_EQ("de", Attribute(language.Root()->ResolveId(u"id7"), u"xml:lang"));

    EXPECT_THAT(LoadText(Root(kMain, "<q:ProductDef/>"), all).Messages(),
                ElementsAre("ERROR 520: No namespace for element: <q:ProductDef>",
                            "ERROR 4: Wrong namespace for element: ProductDef",
                            StartsWith("WARNING 518: Errors parsing \"")));
    ClassDescriptor::Reset();
}

TEST_F(ReaderTest, AnEmbeddedSchemaLeavesNothingBehind)
{
    const int classes = ClassDescriptor::NumberOfClassDescriptors();
    const auto loaded = LoadText(
        "<Schema" + kMain +
        " id=\"id1\"><xsd:schema xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><xsd:element "
        "name=\"a\"><ProductInstance partRef=\"#id9\"/></xsd:element></xsd:schema>"
        "<Nonsense/></Schema>");
    EXPECT_THAT(loaded.Messages(), Not(Contains(HasSubstr("Expected end of"))));
    EXPECT_THAT(loaded.Messages(), Contains("ERROR 520: Unknown element: Nonsense"));
    EXPECT_EQ(0, CountChildren(loaded.Root()));
    EXPECT_EQ(classes, ClassDescriptor::NumberOfClassDescriptors());

    // Nor does the next one meet what the first one was held by.
    const auto again =
        LoadText("<Schema id=\"id1\"><schema><element name=\"a\"/></schema></Schema>");
    EXPECT_THAT(again.Messages(), Not(Contains(HasSubstr("No ClassDescriptor"))));
    EXPECT_EQ(0, CountChildren(again.Root()));
    ClassDescriptor::Reset();
}

TEST_F(ReaderTest, AttributesThatTheClassDoesNotHaveAreReported)
{
    EXPECT_THAT(
        LoadText("<Transform" + kMain + " Content=\"1\">2</Transform>").Messages(),
        ElementsAre("WARNING 525: \"Content\" is not an allowed attribute of: <Transform>"));
    const auto loaded = LoadText(Root(kMain + " id=\"id1\"", "<ProductDef nope=\"1\"/>"));
    EXPECT_TRUE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(),
                ElementsAre("WARNING 525: \"id\" is not an allowed attribute of: <ZORVEX>.",
                            "WARNING 525: \"nope\" is not an allowed attribute of: <ProductDef>"));
}

TEST_F(ReaderTest, AttributesAreReadAlikeInAnyOrderAndCompany)
{
    const std::vector<std::string> given = {
        "id=\"#\" name=\"n#\" subType=\"s#\"",
        "id=\"#\" name=\"n#\" subType=\"s#\"",
        "subType=\"s#\" id=\"#\" name=\"n#\"",
        "xmlns:q=\"urn:q\" subType=\"s#\" id=\"#\" name=\"n#\"",
        "id=\"#\" nope=\"1\" name=\"n#\" subType=\"s#\"",
        "id=\"#\" subType=\"s#\" name=\"n#\" names=\"1\"",
        "nam=\"1\" id=\"#\" name=\"n#\" subType=\"s#\"",
    };
    std::string content;
    for (int n = 1; n <= 70; ++n)
    {
        // Names follow each other in changing order, too.
        std::string attributes = given[static_cast<std::size_t>(n * n) % given.size()];
        for (auto at = attributes.find('#'); at != attributes.npos; at = attributes.find('#'))
        {
            attributes.replace(
                at, 1, (at > 0 && attributes[at - 1] == '"' ? "id" : "") + std::to_string(n));
        }
        const std::string name = n % 3 == 0 ? "Product" : "ProductRevisionView";
        content +=
            "<" + name + " " + attributes + (n % 5 == 0 ? "><Transform/></" + name + ">" : "/>");
    }
    const auto loaded = LoadText(
        Root(kMain, "<ProductDef><InstanceGraph>" + content + "</InstanceGraph></ProductDef>"));
    EXPECT_TRUE(loaded.GetResult().Ok()) << testing::PrintToString(loaded.Messages());
    for (int n = 1; n <= 70; ++n)
    {
        const Object* object = loaded.Root()->ResolveId(String::Format("id%d", n));
        ASSERT_NE(nullptr, object) << n;
        EXPECT_EQ("n" + std::to_string(n), Attribute(object, u"name"));
        EXPECT_EQ("s" + std::to_string(n), Attribute(object, u"subType"));
        EXPECT_EQ(n % 3 == 0 ? "Product" : "ProductRevisionView", Utf8(object->GetClassName()));
    }
}

TEST_F(ReaderTest, TextWhereNoneBelongsIsAnErrorOnceARun)
{
    const auto loaded = LoadText(Root(kMain, "  <ProductDef>a<!-- c -->b</ProductDef>\n"));
    EXPECT_FALSE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(),
                Contains("ERROR 520: Unexpected element content: <ProductDef>: >ab<"));
}

// --- ids and required attributes
// -------------------------------------------------------------------

TEST_F(ReaderTest, ADuplicateIdIsAnErrorAndTheFirstIsFound)
{
    const auto loaded =
        LoadText(Root(kMain, "<ProductDef id=\"a\" name=\"1\"/><ProductDef id=\"a\" name=\"2\"/>"));
    EXPECT_FALSE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(), Contains("ERROR 513: Duplicate id: a"));
    EXPECT_EQ(2, CountChildren(loaded.Root()));
    ASSERT_NE(nullptr, loaded.Root()->ResolveId(u"a"));
    EXPECT_EQ("1", Attribute(loaded.Root()->ResolveId(u"a"), u"name"));
}

TEST_F(ReaderTest, MissingRequiredAttributesNameTheClass)
{
    const std::string body = "<Structure/><StructureRevision id=\"id2\"/>";
    const auto loaded = LoadText(Root(kMain, body));
    EXPECT_TRUE(loaded.GetResult().Ok());
    EXPECT_THAT(
        loaded.Messages(),
        ElementsAre(
            "WARNING 518: Missing attribute: \"masterRef\", element: \"StructureRevision\"",
            "WARNING 518: Missing attribute: \"revision\", element: \"StructureRevision\""));
    EXPECT_THAT(LoadText(Root(kMain, body + "<Product id=\"id2\"/>"),
                         {{"adapters/ZORVEX/validation/load_save", "minimal"}})
                    .Messages(),
                IsEmpty());
}

TEST_F(ReaderTest, ARootWithoutStampsLacksNothing)
{
    const auto loaded = LoadText("<ZORVEX" + kMain + "/>");
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ("unset", Attribute(loaded.Root(), u"author"));
}

// --- content
// ---------------------------------------------------------------------------------------

TEST_F(ReaderTest, TextArrivesWholeAcrossCommentsAndReferences)
{
    const auto loaded =
        LoadText(Root(kMain,
                      "<ProductDef><Description>a <![CDATA[<b>]]> &#x20AC;<!-- x --> c"
                      "</Description><Description> d</Description></ProductDef>"));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ("a <b> \xE2\x82\xAC c d",
              Utf8(Child(loaded.Root(), u"ProductDef")->GetObjectDescription()));
}

TEST_F(ReaderTest, AContentElementHoldsNoElements)
{
    const auto loaded = LoadText(
        Root(kMain, "<ProductDef id=\"id9\"><Description>a<b/></Description></ProductDef>"));
    EXPECT_FALSE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(),
                ElementsAre("ERROR 520: Invalid ZORVEX.", "ERROR 4:  ( last id read was: id9 ) ",
                            StartsWith("WARNING 518: Errors parsing \"")));
    EXPECT_NE(nullptr, loaded.Root());
}

TEST_F(ReaderTest, TransformsAreReadByTheirType)
{
    const auto matrixOf = [](const std::string& type, const std::string& numbers)
    {
        const auto loaded = LoadText("<Transform" + kMain + type + ">" + numbers + "</Transform>");
        Transf transform;
        EXPECT_TRUE(loaded.Root()->GetContent(transform).Ok()) << numbers;
        std::array<std::array<double, 4>, 4> matrix{};
        transform.ToMatrix4x4(reinterpret_cast<double(*)[4]>(matrix.data()));
        return matrix;
    };
    const auto general = matrixOf("", "1 0 0 0 0 1 0 0 0 0 1 0 <!-- a -->5 6 7 1");
    EXPECT_EQ(5, general[0][3]);
    EXPECT_EQ(6, general[1][3]);
    EXPECT_EQ(7, general[2][3]);
    const auto translate = matrixOf(" type=\"translate\"", "1 2 3");
    EXPECT_EQ(2, translate[1][3]);
    EXPECT_EQ(1, translate[1][1]);
    const auto rotate = matrixOf(" type=\"rotate\"", "1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(4, rotate[0][1]);
    EXPECT_EQ(2, rotate[1][0]);
    EXPECT_EQ(0.5, matrixOf(" type=\"scale\"", "2")[3][3]);

    EXPECT_THAT(LoadText("<Transform" + kMain + " type=\"scale\">0</Transform>").Messages(),
                Contains("ERROR 2: 0 scale transform specified."));
}

TEST_F(ReaderTest, BoundsOfThePredecessorAreConverted)
{
    const auto bound = [](const std::string& content)
    {
        const auto loaded = LoadText(Root(kMain, "<Product>" + content + "</Product>"));
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        Object* made = Child(Child(loaded.Root(), u"Structure"), u"Bound");
        return made == nullptr ? std::string("none")
                               : Attribute(made, u"type") + ": " + Attribute(made, u"values");
    };
    EXPECT_EQ("box: 1 2 3 1 2 3", bound("<BoxBound><LowCorner>0 0 0</LowCorner>"
                                        "<HighCorner>2 4 6</HighCorner></BoxBound>"));
    EXPECT_EQ("sphere: 1 2 3 4",
              bound("<SphereBound><Centre>1 2 3</Centre><Radius>4</Radius></SphereBound>"));
    EXPECT_EQ("box: ", bound("<BoxBound></BoxBound>"));
}

TEST_F(ReaderTest, ASecondChildOfASingleFieldIsTakenAsTheOptionTells)
{
    const std::string two = Root(kMain, "<ProductInstance id=\"id1\"/>");
    const std::string body =
        Root(kMain,
             "<Representation id=\"id1\"><Transform id=\"id2\" type=\"translate\">1 2 3"
             "</Transform><Transform id=\"id3\">9</Transform></Representation>");
    const auto refused = LoadText(body);
    EXPECT_FALSE(refused.GetResult().Ok());
    EXPECT_THAT(refused.Messages(),
                Contains("ERROR 520: Unable to add <Transform> to parent <Representation>"));

    const auto warned =
        LoadText(body, {{"adapters/ZORVEX/import/multiple_sub_elements", "warning"}});
    EXPECT_TRUE(warned.GetResult().Ok());
    EXPECT_THAT(warned.Messages(),
                ElementsAre("WARNING 2: Cannot add child of type: Transform to parent of type: "
                            "Representation."));
    EXPECT_NE(nullptr, warned.Root()->ResolveId(u"id3"));

    const auto replaced =
        LoadText(body, {{"adapters/ZORVEX/import/multiple_sub_elements", "none"}});
    EXPECT_TRUE(replaced.GetResult().Ok());
    Object* kept = Child(Child(replaced.Root(), u"Representation"), u"Transform");
    ASSERT_NE(nullptr, kept);
    EXPECT_EQ("id3", Utf8(kept->GetId()));
}

// --- malformed and hostile input
// -------------------------------------------------------------------

TEST_F(ReaderTest, ACutOffDocumentGivesItsRootAndTheLastId)
{
    const auto loaded =
        LoadText("<ZORVEX" + kMain + kAttributes + "><ProductDef id=\"id5\"><Instance");
    EXPECT_FALSE(loaded.GetResult().Ok());
    EXPECT_THAT(loaded.Messages(), ElementsAre(StartsWith("ERROR 4: XML Parser error: "),
                                               "ERROR 4:  ( last id read was: id5 ) ",
                                               StartsWith("WARNING 518: Errors parsing \"")));
    ASSERT_NE(nullptr, loaded.Root());
    EXPECT_NE(nullptr, loaded.Root()->ResolveId(u"id5"));
}

TEST_F(ReaderTest, TextBeforeTheLastTagOfACutOffDocumentIsKept)
{
    const auto loaded = LoadText("<Odd xmlns=\"urn:odd\">one<Inner>two<Leaf/>three",
                                 {{"adapters/ZORVEX/ignore_unknown_elements", "false"}});
    EXPECT_FALSE(loaded.GetResult().Ok());
    String text;
    loaded.Root()->GetContent(text);
    EXPECT_EQ("one", Utf8(text));
    Child(loaded.Root(), u"Inner")->GetContent(text);
    EXPECT_EQ("two", Utf8(text));
    ClassDescriptor::Reset();
}

TEST_F(ReaderTest, AnElementThatEndsTheParseLeavesNothingOfItself)
{
    // The reference stands before the value that is too long: nobody may follow it later.
    const auto loaded = LoadText(
        "<ZORVEX><ProductDef id=\"a\"/><Header id=\"b\" traverseRootRefs=\"#a\" "
        "z=\"0123456789012345678901234567890\"/></ZORVEX>",
        {{"adapters/ZORVEX/import/max_value", "40"}});
    EXPECT_THAT(loaded.Messages(),
                Contains("ERROR 4: Limit exceeded: \"adapters/ZORVEX/import/max_value\" (40)"));
    EXPECT_EQ(1, CountChildren(loaded.Root()));
    EXPECT_EQ(nullptr, loaded.Root()->ResolveId(u"b"));
}

TEST_F(ReaderTest, AStrayControlByteFailsUnlessItIsFiltered)
{
    const std::string text =
        Root(kMain, std::string("<ProductDef name=\"a\x01") + "b\"></ProductDef>");
    EXPECT_FALSE(LoadText(text).GetResult().Ok());
    const auto filtered = LoadText(text, {{"adapters/ZORVEX/char_filter", "true"}});
    EXPECT_THAT(filtered.Messages(), IsEmpty());
    EXPECT_EQ("a b", Attribute(Child(filtered.Root(), u"ProductDef"), u"name"));
}

TEST_F(ReaderTest, LimitsEndTheParseAndNameTheirOption)
{
    std::string deep = "<ZORVEX" + kMain + ">";
    for (int i = 0; i < 2000; ++i)
    {
        deep += "<Nonsense>";
    }
    EXPECT_THAT(LoadText(deep).Messages(),
                Contains("ERROR 4: Limit exceeded: \"adapters/ZORVEX/import/max_depth\" (1024)"));
    EXPECT_THAT(LoadText(Root(kMain, "<ProductDef name=\"0123456789\"/>"),
                         {{"adapters/ZORVEX/import/max_value", "10"}})
                    .Messages(),
                Contains("ERROR 4: Limit exceeded: \"adapters/ZORVEX/import/max_value\" (10)"));
}

TEST_F(ReaderTest, EntityBombsAreDefused)
{
    const auto bomb = [](const char* kind, const std::string& use)
    {
        std::string dtd = "<!DOCTYPE ZORVEX [<!ENTITY " + std::string(kind) + "a0 \"" +
                          (kind[0] == '%' ? "<!--x-->" : "xx") + "\">";
        const std::string mark = kind[0] == '%' ? "&#37;" : "&";
        for (int i = 1; i < 12; ++i)
        {
            dtd += "<!ENTITY " + std::string(kind) + "a" + std::to_string(i) + " \"";
            for (int k = 0; k < 10; ++k)
            {
                dtd += mark + "a" + std::to_string(i - 1) + ";";
            }
            dtd += "\">";
        }
        return dtd + (kind[0] == '%' ? "%a11;" : "") + "]><ZORVEX" + kMain + use + "</ZORVEX>";
    };
    const auto named = Contains(
        "ERROR 4: Limit exceeded: \"adapters/ZORVEX/import/entity_expansion_limit\" "
        "(10000)");
    EXPECT_THAT(LoadText(bomb("", "><ProductDef>&a11;</ProductDef>")).Messages(), named);
    EXPECT_THAT(LoadText(bomb("", "><ProductDef name=\"&a11;\"/>")).Messages(), named);
    EXPECT_THAT(LoadText(bomb("% ", ">")).Messages(), named);
    EXPECT_THAT(LoadText(bomb("", "><Nonsense name=\"&a11;\"/>")).Messages(), named);

    // Few expansions of a long text: caught by what they deliver.
    const std::string longText(200000, 'x');
    std::string uses;
    for (int i = 0; i < 9000; ++i)
    {
        uses += "&l;";
    }
    EXPECT_THAT(
        LoadText("<!DOCTYPE ZORVEX [<!ENTITY l \"" + longText + "\">]><ZORVEX" + kMain +
                 "><ProductDef><Description>" + uses + "</Description></ProductDef></ZORVEX>")
            .Messages(),
        Contains(HasSubstr("Limit exceeded: the entities of the document expand")));
    EXPECT_THAT(LoadText("<!DOCTYPE ZORVEX [<!ENTITY l \"" + longText + "\">]><ZORVEX" + kMain +
                         " author=\"" + uses + "\"></ZORVEX>")
                    .Messages(),
                Contains(StartsWith("ERROR 4: Limit exceeded: ")));
}

TEST_F(ReaderTest, ManyNamesCostNoMoreEach)
{
    // Each declares a prefix and a namespace of its own; quadratic, this would take minutes.
    std::string content = "<ProductDef";
    for (int i = 0; i < 60000; ++i)
    {
        content += " xmlns:p" + std::to_string(i) + "='urn:" + std::to_string(i) + "'";
    }
    content += ">";
    for (int i = 0; i < 60000; ++i)
    {
        content += "<p0:x/>";
    }
    const auto loaded = LoadText(Root(kMain, content + "</ProductDef>"));
    EXPECT_EQ(60000, loaded.GetResult().NumberOfErrors());
}

namespace
{

/// Gives its text and then fails.
class BreakingStream : public Stream
{
public:
    explicit BreakingStream(std::string text) : m_text(std::move(text)) { SetName(u"pipe"); }

protected:
    int ReadBytes(void* buffer, int size) override
    {
        if (m_text.empty())
        {
            return -1;
        }
        const auto count = std::min(m_text.size(), static_cast<std::size_t>(size));
        m_text.copy(static_cast<char*>(buffer), count);
        m_text.erase(0, count);
        return static_cast<int>(count);
    }
    int WriteBytes(const void*, int) override { return 0; }
    int PeekByte(char*) override { return 0; }

private:
    std::string m_text;
};

Loaded LoadStream(Stream* stream, Options options = {})
{
    return LoadFrom(
        String::Format("#ZORVEX(STREAM-doc/%p/ZORVEX-doc)", static_cast<const void*>(stream)),
        options);
}

}  // namespace

TEST_F(ReaderTest, AStreamThatBreaksIsNamed)
{
    const auto loaded =
        LoadStream(new BreakingStream("<ZORVEX" + kMain + "><ProductDef id='id1'>"));
    EXPECT_THAT(loaded.Messages(), Contains("ERROR 520: Unable to read from stream: \"pipe\"."));
    EXPECT_THAT(LoadStream(new BreakingStream("")).Messages(),
                Contains("ERROR 520: Unable to read from stream: \"pipe\"."));
}

TEST_F(ReaderTest, CharactersOfWideTextAreFilteredWhole)
{
    // U+0120 has the byte 1 in it and stays; U+0001 becomes a blank.
    const std::u32string text =
        U"<ZORVEX xmlns='http://www.zorvex.org/Schemas/ZORVEXSchema' author='\x0120\x0001z'/>";
    for (const unsigned width : {2u, 4u})
    {
        for (const bool highFirst : {false, true})
        {
            auto* stream = new MemoryStream;
            for (const char32_t character :
                 (width == 2 ? U"\xFEFF" : U"<?xml version='1.0'?>") + text)
            {
                for (unsigned i = 0; i < width; ++i)
                {
                    const char byte =
                        static_cast<char>(character >> 8 * (highFirst ? width - 1 - i : i));
                    stream->Write(&byte, 1, 1, 0);
                }
            }
            stream->Rewind();
            const auto loaded = LoadStream(stream, {{"adapters/ZORVEX/char_filter", "true"}});
            EXPECT_THAT(loaded.Messages(), IsEmpty()) << width << highFirst;
            ASSERT_NE(nullptr, loaded.Root());
            EXPECT_EQ("\xC4\xA0 z", Attribute(loaded.Root(), u"author"));
        }
    }
}

namespace
{

/// The parser of an application: each line opens an element with a text, a blank one closes it.
class LineParser : public Parser
{
public:
    ~LineParser() override { s_descriptor->RemoveInstance(this); }
    PluginDescriptor* GetPluginDescriptor() override { return s_descriptor; }
    void Process(PluginProcessData* data) override
    {
        void* slot = nullptr;
        data->Get(8, slot);
        std::u16string line;
        for (char byte = 0; static_cast<Stream*>(slot)->Read(&byte, 1, 1, 0) == 1;)
        {
            if (byte != '\n')
            {
                line += static_cast<char16_t>(byte);
                continue;
            }
            TakeLine(line);
            line.clear();
        }
    }

    static int Initialise(void* argument)
    {
        Array<PluginDescriptor*> parsers;
        PluginDescriptor::GetDescriptors(2, parsers);
        s_descriptor = static_cast<PluginDescriptor*>(argument);
        s_descriptor->SetType(2);
        s_descriptor->SetName("Lines");
        s_descriptor->SetBase(parsers[0]);
        s_descriptor->SetInstanceFunction([]() -> void* { return new LineParser; });
        return 1;
    }

private:
    struct List final : UCharList
    {
        explicit List(const char16_t* only) : text(only) {}
        int GetLength() const override { return text != nullptr ? 1 : 0; }
        const unsigned short* operator[](int) const override
        {
            return reinterpret_cast<const unsigned short*>(text);
        }
        const char16_t* text;
    };

    void TakeLine(const std::u16string& line)
    {
        if (line.empty())
        {
            EndElement(nullptr);
            return;
        }
        const std::size_t blank = line.find(u' ');
        const std::u16string name = line.substr(0, blank);
        const std::u16string text = blank != line.npos ? line.substr(blank + 1) : u"";
        const bool hasId = !text.empty() && text[0] == u'#';
        StartElement(reinterpret_cast<const unsigned short*>(name.c_str()),
                     List(hasId ? u"id" : nullptr), List(hasId ? text.c_str() + 1 : nullptr));
        if (!hasId)
        {
            Characters(reinterpret_cast<const unsigned short*>(text.data()), text.size());
        }
    }

    static inline PluginDescriptor* s_descriptor = nullptr;
};

}  // namespace

TEST_F(ReaderTest, AParserOfTheApplicationTakesTheLibrarysPlace)
{
    const LinkNode node(&LineParser::Initialise, LinkNode::kPlugin);
    auto* stream = new MemoryStream;
    // It closes once too often, and leaves its last document open.
    const std::string lines =
        "ZORVEX\nProductDef #id1\nDescription some text\n\n\n\n\nZORVEX\nProductDef #id2\n";
    stream->Write(lines.data(), static_cast<int>(lines.size()), 1, 0);
    stream->Rewind();
    const auto loaded = LoadStream(stream);
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    ASSERT_EQ(2u, loaded.Roots().size());
    EXPECT_EQ("some text", Utf8(loaded.Roots()[0]->ResolveId(u"id1")->GetObjectDescription()));
    EXPECT_NE(nullptr, loaded.Roots()[1]->ResolveId(u"id2"));
}

TEST_F(ReaderTest, ValidationReportsTheFirstViolationAndEnds)
{
    const auto loaded = LoadText(Root(kMain, ""), {{"parsers/validate", "true"}});
    EXPECT_THAT(loaded.Messages(), Contains(StartsWith("ERROR 4: XML Parser error: ")));
}

TEST_F(ReaderTest, ExternalEntitiesAreNeverFetched)
{
    const auto loaded = LoadText(
        "<!DOCTYPE ZORVEX SYSTEM \"/nonexistent/evil.dtd\" [<!ENTITY e "
        "SYSTEM \"/etc/hostname\">]>" +
        Root(kMain,
             "<ProductDef><Description>&e;</Description>"
             "</ProductDef>"));
    ASSERT_NE(nullptr, loaded.Root());
    EXPECT_EQ("", Utf8(Child(loaded.Root(), u"ProductDef")->GetObjectDescription()));
}

TEST_F(ReaderTest, ADamagedDocumentNeverHarms)
{
    const std::string good =
        Root(kMain +
                 " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                 "xsi:schemaLocation=\"a b\"",
             "<Header id=\"id1\"/><ProductDef id=\"id2\"><InstanceGraph id=\"id3\" "
             "rootRefs=\"id4 id5\"><ProductInstance id=\"id4\" partRef=\"#id6\" quantity=\"2.5\">"
             "<Transform id=\"id7\">1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1</Transform></ProductInstance>"
             "<Part id=\"id6\"><BoxBound><LowCorner>0 0 0</LowCorner></BoxBound></Part>"
             "</InstanceGraph></ProductDef>");
    unsigned seed = 12345;
    const auto next = [&seed](std::size_t below)
    {
        seed = seed * 1103515245u + 12345u;
        return static_cast<std::size_t>(seed >> 8) % below;
    };
    int loadedRoots = 0;
    for (int i = 0; i < 400; ++i)
    {
        std::string damaged = good;
        for (std::size_t k = 0; k <= next(3); ++k)
        {
            const std::size_t at = next(damaged.size());
            switch (next(4))
            {
                case 0:
                    damaged[at] = static_cast<char>(next(256));
                    break;
                case 1:
                    damaged.erase(at, next(12));
                    break;
                case 2:
                    damaged.insert(at, damaged.substr(next(damaged.size()), next(40)));
                    break;
                default:
                    damaged.resize(at + 1);
                    break;
            }
        }
        loadedRoots += static_cast<int>(LoadText(damaged).Roots().size());
    }
    EXPECT_GT(loadedRoots, 100);
    ClassDescriptor::Reset();
}

}  // namespace zorvex_test
