#include "zorvex_api/Pointer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/Printers.h"
#include "transport/PointerImpl.h"
#include "transport/PointerRef.h"

namespace zorvex_api
{
namespace
{

using testing::ElementsAre;
using testing::Pair;
using zorvex_test::Utf8;

std::vector<std::pair<std::string, std::string>> Chain(const Pointer& pointer)
{
    std::vector<std::pair<std::string, std::string>> chain;
    for (int i = 0; i < pointer.GetAdapterCount(); ++i)
    {
        chain.emplace_back(Utf8(pointer.GetAdapterType(i)), Utf8(pointer.GetControlString(i)));
    }
    return chain;
}

struct Location
{
    const char* text;
    const char* scheme;
    const char* host;
    int port;
    const char* path;
    const char* file;
    const char* extension;
    const char* canonical;
};

TEST(Pointer, ReadsLocations)
{
    const Location locations[] = {
        {"", "", "", 80, "", "", "", ""},
        {"a.xml", "", "", 80, "", "a", "xml", "a.xml"},
        {"C:/dir/a.xml", "", "", 80, "C:/dir", "a", "xml", "C:/dir/a.xml"},
        {"C:\\dir\\a.b.xml", "", "", 80, "C:/dir", "a.b", "xml", "C:/dir/a.b.xml"},
        {"C:", "", "", 80, "C:", "", "", "C:"},
        {"http://host:8080/a/b.xml", "http", "host", 8080, "/a", "b", "xml",
         "http://host:8080/a/b.xml"},
        {"http://h:80/x", "http", "h", 80, "", "x", "", "http://h/x"},
        {"http://h:x1/a/x", "http", "h", 80, "/a", "x", "", "http://h/a/x"},
        {"http://h:99999999999/a/x", "http", "h", 80, "/a", "x", "", "http://h/a/x"},
        {"http://host", "http", "host", 80, "", "", "", "http://host/"},
        {"//host/a.xml", "", "host", 80, "/", "a", "xml", "//host/a.xml"},
        {"\\\\srv\\share\\a.xml", "", "", 80, "//srv/share", "a", "xml", "////srv/share/a.xml"},
        {"file://C:/d/a.xml", "file", "", 80, "C:/d", "a", "xml", "file:///C:/d/a.xml"},
        {"file:///C:/d/a.xml", "file", "", 80, "C:/d", "a", "xml", "file:///C:/d/a.xml"},
        {"file:///d/a.xml", "file", "", 80, "/d", "a", "xml", "file:///d/a.xml"},
        {"/a.xml", "", "", 80, "/", "a", "xml", "/a.xml"},
        {"file:/a.xml", "file", "", 80, "", "a", "xml", "file:/a.xml"},
        {"file:C:/d/a.xml", "file", "", 80, "C:/d", "a", "xml", "file:C:/d/a.xml"},
        {"/a/b/../c/./d.xml", "", "", 80, "/a/c", "d", "xml", "/a/c/d.xml"},
        {"../../x", "", "", 80, "../..", "x", "", "../../x"},
        {"./a/../../x", "", "", 80, "./..", "x", "", "./../x"},
        {"a/b/../../../x", "", "", 80, "..", "x", "", "../x"},
        {"..", "", "", 80, "..", "", "", ".."},
        {"dir/", "", "", 80, "dir", "", "", "dir"},
        {"a/..", "", "", 80, "a", "", "", "a"},
        {"dir/.hidden", "", "", 80, "dir", "", "hidden", "dir"},
        {"a.xml#id.1", "", "", 80, "", "a.xml#id", "1", "a.xml#id.1"},
    };
    for (const Location& expected : locations)
    {
        SCOPED_TRACE(expected.text);
        Pointer pointer;
        EXPECT_TRUE(pointer.Parse(expected.text).Ok());
        EXPECT_EQ(expected.scheme, Utf8(pointer.GetScheme()));
        EXPECT_EQ(expected.host, Utf8(pointer.GetHost()));
        EXPECT_EQ(expected.port, pointer.GetPort());
        EXPECT_EQ(expected.path, Utf8(pointer.GetPath()));
        EXPECT_EQ(expected.file, Utf8(pointer.GetFile()));
        EXPECT_EQ(expected.extension, Utf8(pointer.GetExtension()));
        EXPECT_EQ(expected.canonical, Utf8(pointer.GetString()));
        EXPECT_EQ(0, pointer.GetAdapterCount());
    }
}

TEST(Pointer, PutsPathsTogether)
{
    const Pointer web(u"http://host:81/a/b.xml?x=1#id12");
    EXPECT_EQ("b.xml", Utf8(web.GetFileName()));
    EXPECT_EQ("//host/a", Utf8(web.GetBasePath()));
    EXPECT_EQ("//host/a/b.xml", Utf8(web.GetFullPath()));
    EXPECT_EQ("http://host/a/b.xml", Utf8(web.GetAbsolutePath()));
    EXPECT_EQ("http://host/a", Utf8(web.GetNetPath()));
    EXPECT_EQ("x=1", Utf8(web.GetQuery()));
    EXPECT_EQ("http://host:81/a/b.xml?x=1#id12", Utf8(web.GetString()));
    EXPECT_EQ("file:///d", Utf8(Pointer(u"file:///d/x").GetNetPath()));
    EXPECT_EQ("file:///C:/d", Utf8(Pointer(u"file:C:/d/x").GetNetPath()));
    EXPECT_EQ("/x.y", Utf8(Pointer(u"/x.y").GetFullPath()));
}

TEST(Pointer, TellsRelativeFromAbsoluteAndValidFromEmpty)
{
    for (const char* relative : {"a.xml", "d/a.xml", "../a.xml", ".", "..", "", "#id1"})
    {
        EXPECT_TRUE(Pointer(relative).IsRelative()) << relative;
    }
    for (const char* absolute : {"/a.xml", "C:/a.xml", "http://h/a.xml", "//h/a", "\\\\srv\\s\\a"})
    {
        EXPECT_FALSE(Pointer(absolute).IsRelative()) << absolute;
    }
    EXPECT_FALSE(Pointer(u"").IsValid());
    EXPECT_FALSE(Pointer(u"#ZORVEX(STREAM-doc)").IsValid());
    EXPECT_TRUE(Pointer(u"#id1").IsValid());
    EXPECT_TRUE(Pointer(u"#ZORVEX(STREAM-doc/ZORVEX-doc)").IsValid());
    EXPECT_TRUE(Pointer(u"a").IsValid());
}

TEST(Pointer, ReadsChains)
{
    struct
    {
        const char* text;
        std::vector<std::pair<std::string, std::string>> chain;
        const char* canonical;
    } const chains[] = {
        {"a.xml#id12", {{"ZORVEX", "id12"}}, "a.xml#id12"},
        {"a.xml#ZORVEX(ZORVEX-doc/id12/STREAM-doc/x)",
         {{"ZORVEX", "id12"}, {"STREAM", "x"}},
         "a.xml#ZORVEX(ZORVEX-doc/id12/STREAM-doc/x)"},
        {"#ZORVEX(STREAM-doc/1f40/ZORVEX-doc)",
         {{"STREAM", "1f40"}, {"ZORVEX", ""}},
         "#ZORVEX(STREAM-doc/1f40/ZORVEX-doc)"},
        {"a.xml#ZORVEX(ZORVEX-doc/id.1)", {{"ZORVEX", "id.1"}}, "a.xml#id.1"},
        {"a.xml#//Part[@id='x']",
         {{"ZORVEX", "//Part[@id='x']"}},
         "a.xml#ZORVEX(ZORVEX-doc///Part[@id='x'])"},
        {"a.xml#ZORVEX(ZORVEX-doc///Part[@id='x'])",
         {{"ZORVEX", "//Part[@id='x']"}},
         "a.xml#ZORVEX(ZORVEX-doc///Part[@id='x'])"},
        {"a#oRB(oRB-doc/id1)", {{"ZORVEX", "id1"}}, "a#id1"},
        {"a#zorvex(XPK-doc/p/q/ZORVEX-doc/id1)",
         {{"XPK", "p/q"}, {"ZORVEX", "id1"}},
         "a#ZORVEX(XPK-doc/p/q/ZORVEX-doc/id1)"},
        {"a#ZORVEX(XPK-doc/p/oRBDef/id1)",
         {{"XPK", "p/oRBDef"}, {"ZORVEX", "id1"}},
         "a#ZORVEX(XPK-doc/p/oRBDef/ZORVEX-doc/id1)"},
        {"a#ZORVEX(ZORVEX-doc/ZORVEX-doc/ZORVEX-doc/id1)", {{"ZORVEX", "id1"}}, "a#id1"},
        {"a#ZORVEX(XPK-doc/x#y.z/ZORVEX-doc/b)",
         {{"XPK", "x#y.z"}, {"ZORVEX", "b"}},
         "a#ZORVEX(XPK-doc/x#y.z/ZORVEX-doc/b)"},
        {"#ZORVEX(STREAM-doc/a#b)", {{"STREAM", "a#b"}}, "#ZORVEX(STREAM-doc/a#b)"},
        {"a#ZORVEX(CAD-doc)", {{"CAD", ""}}, "a"},
        {"a#ZORVEX(ZORVEX-doc/ZORVEX(x))",
         {{"ZORVEX", "ZORVEX(x)"}},
         "a#ZORVEX(ZORVEX-doc/ZORVEX(x))"},
    };
    for (const auto& expected : chains)
    {
        SCOPED_TRACE(expected.text);
        Pointer pointer;
        EXPECT_TRUE(pointer.Parse(expected.text).Ok());
        EXPECT_EQ(expected.chain, Chain(pointer));
        EXPECT_EQ(expected.canonical, Utf8(pointer.GetString()));
        EXPECT_EQ(expected.chain.back().first, Utf8(pointer.GetFormat()));
        EXPECT_EQ(expected.chain.back().second, Utf8(pointer.GetLocatorString()));
    }
}

TEST(Pointer, FailsWithoutTheClosingBracketAndKeepsTheLocation)
{
    Pointer pointer(u"old.xml#id1");
    const Result result = pointer.Parse(u"a.xml#ZORVEX(x");
    EXPECT_THAT(zorvex_test::Messages(result),
                ElementsAre("ERROR 517: ZORVEX Pointer error, missing \")\":a.xml#ZORVEX(x"));
    EXPECT_EQ("a", Utf8(pointer.GetFile()));
    EXPECT_EQ(0, pointer.GetAdapterCount());
}

TEST(Pointer, EditsOfTheChainShowInTheText)
{
    Pointer pointer(u"a.xml#id");
    pointer.Insert(0, u"XPK", u"p");
    EXPECT_EQ("ZORVEX(XPK-doc/p/ZORVEX-doc/id)", Utf8(pointer.GetFragment()));
    EXPECT_EQ("ZORVEX", Utf8(pointer.GetFormat()));
    pointer.SetLocatorString(u"id9");
    pointer.SetAdapterType(0, u"ZIP");
    pointer.SetControlString(7, u"ignored");
    pointer.Insert(9, u"ignored", u"");
    EXPECT_EQ("a.xml#ZORVEX(ZIP-doc/p/ZORVEX-doc/id9)", Utf8(pointer.GetString()));
    pointer.Remove(0);
    EXPECT_EQ("a.xml#id9", Utf8(pointer.GetString()));
    pointer.Add(u"oRB", pointer.GetControlString(0));
    EXPECT_EQ("a.xml#ZORVEX(ZORVEX-doc/id9/ZORVEX-doc/id9)", Utf8(pointer.GetString()));
    pointer.RemoveAll();
    EXPECT_EQ("a.xml#ZORVEX(ZORVEX-doc/id9/ZORVEX-doc/id9)", Utf8(pointer.GetString()));
    EXPECT_TRUE(pointer.GetAdapterType(-1).IsEmpty() && pointer.GetAdapterType(0).IsEmpty());
    pointer.Reset();
    EXPECT_TRUE(pointer.GetString().IsEmpty() && pointer.GetAbsolutePath().IsEmpty());
    EXPECT_FALSE(pointer.HasFragment());
}

TEST(Pointer, EnsureFormatAppendsReplacesOrTakesOutTheLastType)
{
    const auto after = [](const char16_t* text, const char16_t* format)
    {
        Pointer pointer(text);
        pointer.EnsureFormat(format);
        return Chain(pointer);
    };
    EXPECT_THAT(after(u"#ZORVEX(CAD-doc)", u"XPK"), ElementsAre(Pair("XPK", "")));
    EXPECT_THAT(after(u"#ZORVEX(CAD-doc)", u"unset"), ElementsAre());
    EXPECT_THAT(after(u"#ZORVEX(CAD-doc)", u""), ElementsAre());
    EXPECT_THAT(after(u"a#id", u"unset"), ElementsAre(Pair("ZORVEX", "id")));
    EXPECT_THAT(after(u"a#id", u"ZORVEX"), ElementsAre(Pair("ZORVEX", "id")));
    EXPECT_THAT(after(u"a#id", u"XPK"), ElementsAre(Pair("ZORVEX", "id"), Pair("XPK", "")));
    EXPECT_THAT(after(u"a", u"XPK"), ElementsAre(Pair("XPK", "")));
}

TEST(Pointer, FileNameAndFragmentCanBeReplaced)
{
    Pointer pointer(u"d/a.xml#id1");
    String text;
    EXPECT_EQ("d/a.xml", Utf8(pointer.GetAbsolutePath()));
    pointer.SetFileName(u"b.c.zorvex");
    EXPECT_EQ("b.c.zorvex", Utf8(pointer.GetFileName()));
    EXPECT_EQ("d/b.c.zorvex", Utf8(pointer.GetFullPath()));
    EXPECT_EQ("d/b.c.zorvex", Utf8(pointer.GetAbsolutePath()));
    EXPECT_EQ("d/a.xml#id1", Utf8(pointer.GetString()));
    EXPECT_TRUE(pointer.Construct(text).Ok());
    EXPECT_EQ("d/b.c.zorvex#id1", Utf8(text));
    pointer.SetFragment(u"#ZORVEX(XPK-doc/m/ZORVEX-doc/id2)");
    EXPECT_THAT(Chain(pointer), ElementsAre(Pair("XPK", "m"), Pair("ZORVEX", "id2")));
    pointer.SetFragment(pointer.GetLocatorString());
    EXPECT_EQ("d/b.c.zorvex#id2", Utf8(pointer.GetString()));
    pointer.SetFragment(String());
    EXPECT_THAT(Chain(pointer), ElementsAre(Pair("ZORVEX", "id2")));
}

TEST(Pointer, EqualityLeavesTheLocatorOut)
{
    EXPECT_TRUE(Pointer(u"d/a.xml#id1") == Pointer(u"d/a.xml#id2"));
    EXPECT_TRUE(Pointer(u"file:d/a.xml") == Pointer(u"d/a.xml"));
    EXPECT_TRUE(Pointer(u"a.xml") != Pointer(u"a.xml#id2"));
    EXPECT_TRUE(Pointer(u"http://h/a") != Pointer(u"https://h/a"));
    EXPECT_TRUE(Pointer(u"a#ZORVEX(XPK-doc/p/ZORVEX-doc/x)") ==
                Pointer(u"a#ZORVEX(XPK-doc/p/ZORVEX-doc/y)"));
    EXPECT_TRUE(Pointer(u"a#ZORVEX(XPK-doc/p/ZORVEX-doc/x)") !=
                Pointer(u"a#ZORVEX(XPK-doc/q/ZORVEX-doc/x)"));
    EXPECT_TRUE(Pointer(u"a#id1") < Pointer(u"a#id2"));
}

TEST(Pointer, CopiesAreDeepAndMovedFromIsEmptyButUsable)
{
    Pointer source(u"a.xml#id1");
    Pointer copy(source);
    copy.SetLocatorString(u"id2");
    EXPECT_EQ("a.xml#id1", Utf8(source.GetString()));
    Pointer moved(std::move(source));
    EXPECT_EQ(nullptr, source.GetImplementation());
    EXPECT_FALSE(source.IsValid());
    EXPECT_TRUE(source.GetNetPath().IsEmpty() && source == Pointer());
    source.Insert(0, u"XPK", u"p");
    EXPECT_EQ("#ZORVEX(XPK-doc/p)", Utf8(source.GetString()));
    EXPECT_EQ("a.xml#id1", Utf8(moved.GetString()));
}

TEST(Pointer, FileNamesMadeFromDataKeepTheirHash)
{
    Pointer pointer;
    EXPECT_TRUE(ParsePointer(pointer, u"#5 plate.zorvex", 1).Ok());
    EXPECT_EQ("#5 plate.zorvex", Utf8(pointer.GetFileName()));
    EXPECT_TRUE(ParsePointer(pointer, u"#5", 1).Ok());
    EXPECT_EQ("5", Utf8(pointer.GetLocatorString()));
}

std::string Escaped(const char* text, std::uint32_t mode)
{
    String out;
    EXPECT_EQ(1, Pointer::EscapeString(text, out, mode));
    return Utf8(out);
}

std::string Unescaped(const char* text, std::uint32_t mode)
{
    String out;
    EXPECT_EQ(1, Pointer::UnescapeString(text, out, mode));
    return Utf8(out);
}

TEST(Pointer, EscapesByBitsOrByStructure)
{
    EXPECT_EQ("a%20b#%", Escaped("a b#%", 1));
    EXPECT_EQ("a%20b%23%25", Escaped("a b#%", 7));
    EXPECT_EQ("a%20%25.xml?q%2fr%3f%3a%40%2c%24%25%20#id%25%20",
              Escaped("a %.xml?q/r?:@,$% #id% ", 8));
    EXPECT_EQ("a%231.xml#id1", Escaped("a#1.xml#id1", 8));
    EXPECT_EQ("a%23b.xml", Escaped("a#b.xml", 8));
    EXPECT_EQ("a#ZORVEX(XPK-doc/b%20%23c/ZORVEX-doc)",
              Escaped("a#ZORVEX(XPK-doc/b #c/ZORVEX-doc)", 8));
    EXPECT_EQ("a#ZORVEX(ZORVEX-doc/id1)", Escaped("a#ZORVEX(ZORVEX-doc/id1)", 8));
    EXPECT_EQ("a%3f.xml?", Escaped("a%3f.xml?", 0));
}

TEST(Pointer, UnescapesWhatIsHexadecimalAndKeepsTheRest)
{
    EXPECT_EQ("a b%23%25", Unescaped("a%20b%23%25", 1));
    EXPECT_EQ("a b#%", Unescaped("a%20b%23%25", 7));
    EXPECT_EQ("a?\xC3\xA9", Unescaped("a%3f%E9", 8));
    EXPECT_EQ("%", Unescaped("%", 8));
    EXPECT_EQ("@", Unescaped("%4", 8));
    EXPECT_EQ("%g1%1g%%00%z", Unescaped("%g1%1g%%00%z", 8));
    for (const char* text : {"a b%.xml?x=/ #id %1", "100%#a", "#//A[@b='%20']", "x#y.z?q#w"})
    {
        EXPECT_EQ(text, Unescaped(Escaped(text, 8).c_str(), 8));
    }
}

TEST(Pointer, RefsReuseTheirPointersClean)
{
    Pointer* used = nullptr;
    {
        const PointerRef ref(u"http://h:8/a.xml?q#id1");
        used = ref.Get();
        EXPECT_EQ("http://h:8/a.xml?q#id1", Utf8(ref->GetString()));
    }
    {
        const PointerRef first;
        const PointerRef second(String("b"));
        EXPECT_EQ(used, first.Get());
        EXPECT_NE(used, second.Get());
        EXPECT_TRUE(*first == Pointer() && first->GetString().IsEmpty());
    }
    PointerRef::ReleaseFreeList();
}

/// A text of pieces that mean something to the parser.
std::string RandomText(std::mt19937& random)
{
    static const char* const kPieces[] = {
        "a",     "b.c",     ".",          "..",      "/",           "//",       "\\",    ":",
        "C:",    "#",       "?",          "ZORVEX(", "#ZORVEX(",    ")",        "-doc",  "/",
        "oRB(",  "zorvex(", "ZORVEX-doc", "oRB-doc", "STREAM-doc/", "/oRBDef/", "http:", "80",
        "host:", "[@x]",    "*",          " ",       "%20",         "\xC3\xA9", "-d",    "oc"};
    std::string text;
    for (unsigned int i = random() % 12; i > 0; --i)
    {
        text += kPieces[random() % std::size(kPieces)];
    }
    return text;
}

TEST(Pointer, CanonicalTextReadsAsItself)
{
    std::mt19937 random(20240311);
    int settled = 0;
    int unclosed = 0;  // a location that holds the opening of a chain has no text that reads as it
    for (int i = 0; i < 60000; ++i)
    {
        const std::string text = RandomText(random);
        SCOPED_TRACE(text);
        Pointer pointer;
        if (pointer.Parse(text.c_str()).HasError())
        {
            EXPECT_EQ(0, pointer.GetAdapterCount());
            continue;
        }
        Pointer again;
        if (again.Parse(pointer.GetString()).HasError())
        {
            ASSERT_THAT(Utf8(pointer.GetString()), testing::ContainsRegex("#.*\\("));
            ++unclosed;
            continue;
        }
        ASSERT_EQ(Utf8(pointer.GetString()), Utf8(again.GetString()));
        ++settled;
    }
    EXPECT_GT(settled, 45000);
    EXPECT_LT(unclosed, 300);
}

TEST(Pointer, HostileTextsCostLinearTime)
{
    for (const char* piece : {"/", "../", "a/../", "-doc", "x/-doc", "#", "#ZORVEX(", ":", ".", "?",
                              "\\", "ZORVEX-doc/", "/oRBDef/", "%", "oRB-doc"})
    {
        std::string text;
        while (text.size() < 400000)
        {
            text += piece;
        }
        const String inside = (text + "z").c_str();
        const String chain = ("a#ZORVEX(x" + text + ")").c_str();
        Pointer pointer(inside);
        pointer.Parse(chain);
        String out;
        Pointer::EscapeString(inside, out, 8);
        Pointer::UnescapeString(inside, out, 8);
        EXPECT_FALSE(out.IsEmpty());
    }
}

}  // namespace
}  // namespace zorvex_api
