#include <filesystem>
#include <map>

#include "Documents.h"
#include "transport/LiveStreams.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

/// Whole roads: load, save here and elsewhere, load again.

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class SaveAndLoadTest : public DocumentsTest
{
protected:
    /// Name below the scratch folder and bytes of every file.
    std::map<std::string, std::string> Files() const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
        {
            if (entry.is_regular_file())
            {
                const std::string name = entry.path().lexically_relative(m_folder.Path()).string();
                files[name] = m_folder.Read(name);
            }
        }
        return files;
    }
    std::string SavedAs(Object* document, const std::string& name, Options options = {})
    {
        std::filesystem::create_directories((m_folder.Path() / name).parent_path());
        const Result saved = Save(document, m_folder.File(name), options);
        EXPECT_TRUE(saved.Ok()) << testing::PrintToString(saved);
        return m_folder.Read(name);
    }
    static std::string RevisionRefs(const std::string& text)
    {
        std::string found;
        const std::string mark = "revisionRef=\"";
        for (std::size_t at = text.find(mark); at != text.npos; at = text.find(mark, at + 1))
        {
            const std::size_t begin = at + mark.size();
            found += text.substr(begin, text.find('"', begin) - begin) + " ";
        }
        return found;
    }
};

// --- round trips
// ------------------------------------------------------------------------------------------

TEST_F(SaveAndLoadTest, ASaveOverTheLoadedFileChangesNothingElse)
{
    Write("sub/b.zorvex", {"../a.zorvex#id6"});
    const String path = Write("a.zorvex", {"sub/b.zorvex#id5", "b.zorvex", "#id5", "#id98"});
    Write("b.zorvex", {});
    // The first save brings the form of the library; every other one the same bytes.
    SavedAs(LoadFrom(path).Root(), "a.zorvex");
    const auto before = Files();
    EXPECT_EQ("sub/b.zorvex#id5 b.zorvex #id5 #id98 ", RevisionRefs(before.at("a.zorvex")));
    const Loaded loaded = LoadFrom(path);
    EXPECT_EQ(3u, Alive());
    SavedAs(loaded.Root(), "a.zorvex");
    EXPECT_EQ(before, Files());
    SavedAs(loaded.Root(), "a.zorvex");
    EXPECT_EQ(before, Files());
}

TEST_F(SaveAndLoadTest, ASaveElsewhereLeadsToTheSameDocuments)
{
    Write("x/sub/b.zorvex", {});
    Write("x/c d.zorvex", {});
    const String path = Write("x/a.zorvex", {"sub/b.zorvex#id5", "c%20d.zorvex#id5", "#id5"});
    const auto before = Files();
    const std::string folder = m_folder.Path().string();
    std::string first;
    {
        const Loaded loaded = LoadFrom(path);
        first = SavedAs(loaded.Root(), "y/a.zorvex");
        EXPECT_EQ(folder + "/x/sub/b.zorvex#id5 " + folder + "/x/c%20d.zorvex#id5 #id5 ",
                  RevisionRefs(first));
        // Back beside the others the texts are short again.
        EXPECT_EQ("b.zorvex#id5 " + folder + "/x/c%20d.zorvex#id5 #id5 ",
                  RevisionRefs(SavedAs(loaded.Root(), "x/sub/a.zorvex")));
    }
    const Loaded again = LoadFrom(m_folder.File("y/a.zorvex"));
    EXPECT_THAT(again.Messages(), IsEmpty());
    EXPECT_EQ(3u, Alive());
    EXPECT_EQ(first, SavedAs(again.Root(), "z/a.zorvex"));
    EXPECT_EQ(before.at("x/sub/b.zorvex"), m_folder.Read("x/sub/b.zorvex"));
}

TEST_F(SaveAndLoadTest, RelativePlacesStayRelative)
{
    Write("x/sub/b.zorvex", {});
    Write("x/a.zorvex", {"sub/b.zorvex#id5"});
    const auto working = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    std::filesystem::create_directories("y/z");
    for (const char* uri : {"x/a.zorvex", "./x/a.zorvex"})
    {
        const Loaded loaded = LoadFrom(uri);
        for (const auto& [place, text] : {std::pair{"y/z/a.zorvex", "../../x/sub/b.zorvex#id5 "},
                                          std::pair{"x/a2.zorvex", "sub/b.zorvex#id5 "},
                                          std::pair{"a.zorvex", "x/sub/b.zorvex#id5 "},
                                          std::pair{"x/sub/a.zorvex", "b.zorvex#id5 "}})
        {
            EXPECT_THAT(Messages(Save(loaded.Root(), place)), IsEmpty());
            EXPECT_EQ(text, RevisionRefs(m_folder.Read(place)));
            EXPECT_EQ("sub/b.zorvex#id5", Text(loaded.Root()->ResolveId(u"id11"), u"revisionRef"));
            EXPECT_NE(nullptr, Target(LoadFrom(place).Root()->ResolveId(u"id11"))) << place;
        }
    }
    std::filesystem::current_path(working);
}

TEST_F(SaveAndLoadTest, AFileWhoseNameBeginsWithAHashIsFoundAgain)
{
    Write("x/#b.zorvex", {});
    Write("x/a.zorvex", {"./%23b.zorvex#id5", "./%23b.zorvex"});
    const auto working = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    std::filesystem::create_directory("#y");
    for (const auto& [from, to] :
         {std::pair{"x/a.zorvex", "x/o.zorvex"}, std::pair{"x/o.zorvex", "o.zorvex"},
          std::pair{"o.zorvex", "./#y/p.zorvex"}, std::pair{"x/../#y/p.zorvex", "./x/p.zorvex"},
          std::pair{"x/p.zorvex", "x/#p.zorvex"}})
    {
        const Loaded loaded = LoadFrom(from);
        EXPECT_THAT(loaded.Messages(), IsEmpty()) << from;
        EXPECT_NE(nullptr, Target(loaded.Root()->ResolveId(u"id11"))) << from;
        EXPECT_NE(nullptr, Target(loaded.Root()->ResolveId(u"id12"))) << from;
        EXPECT_THAT(Messages(Save(loaded.Root(), to)), IsEmpty()) << to;
    }
    std::filesystem::current_path("x");
    EXPECT_THAT(LoadFrom(u"p.zorvex").Messages(), IsEmpty());
    EXPECT_EQ(m_folder.Read("x/p.zorvex"), m_folder.Read("x/#p.zorvex"));
    std::filesystem::current_path(working);
}

TEST_F(SaveAndLoadTest, AllPartsOfTheExampleSurvive)
{
    const auto loaded = LoadFrom(String(ZORVEX_EXAMPLE_DATA_DIR) + u"/bracket-assembly.zorvex");
    const std::string first = SavedAs(loaded.Root(), "a.zorvex");
    const Loaded again = LoadFrom(m_folder.File("a.zorvex"));
    EXPECT_EQ(first, SavedAs(again.Root(), "b.zorvex"));
    EXPECT_NE(nullptr, Target(again.Root()->ResolveId("id43"), u"partRef"));
}

TEST_F(SaveAndLoadTest, AChangedIdIsWhatOtherDocumentsAreSavedWith)
{
    Write("b.zorvex", {});
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"b.zorvex#id5"}));
    EXPECT_EQ(1, Target(loaded.Root()->ResolveId("id11"))->SetId("plate"));
    EXPECT_EQ("b.zorvex#plate ", RevisionRefs(SavedAs(loaded.Root(), "a.zorvex")));
}

TEST_F(SaveAndLoadTest, WithReferencesOffNoOtherDocumentIsTouched)
{
    Write("x/b.zorvex", {});
    const Loaded loaded = LoadFrom(Write("x/a.zorvex", {"b.zorvex#id5"}));
    EXPECT_EQ("b.zorvex#id5 ", RevisionRefs(SavedAs(loaded.Root(), "x/c.zorvex",
                                                    {{"adapters/ZORVEX/references", "off"}})));
    EXPECT_EQ(m_folder.Path().string() + "/x/b.zorvex#id5 ",
              RevisionRefs(SavedAs(loaded.Root(), "y/c.zorvex",
                                   {{"adapters/ZORVEX/references", "translate"}})));
}

// --- documents made by hand
// -------------------------------------------------------------------------------

TEST_F(SaveAndLoadTest, ADocumentWithoutAPlaceIsWrittenBesideTheOneThatRefersToIt)
{
    {
        const auto b = MakeDocument();
        const auto a = MakeDocument();
        Refer(a.get(), b->ResolveId("id5"));
        EXPECT_EQ("a_id11.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "d/a.zorvex")));
        const std::string bytes = m_folder.Read("d/a_id11.zorvex");
        EXPECT_THAT(bytes, HasSubstr("id=\"id5\""));

        // It has a place now, so that it isn't written again.
        b->ResolveId("id5")->SetAttributeValue(u"name", String(u"changed"));
        EXPECT_EQ("a_id11.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "d/a.zorvex")));
        EXPECT_EQ(bytes, m_folder.Read("d/a_id11.zorvex"));
        SavedAs(b.get(), "d/a_id11.zorvex");
    }
    const Loaded loaded = LoadFrom(m_folder.File("d/a.zorvex"));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ("changed", Text(Target(loaded.Root()->ResolveId("id11")), u"name"));
}

TEST_F(SaveAndLoadTest, UnnamedDocumentsThatReferToEachOtherAreAllWritten)
{
    {
        const auto a = MakeDocument();
        const auto b = MakeDocument();
        const auto c = MakeDocument();
        Refer(a.get(), b->ResolveId("id5"));
        Refer(b.get(), c->ResolveId("id5"));
        Refer(c.get(), a->ResolveId("id5"));
        EXPECT_EQ("a_id11.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "a.zorvex")));
    }
    EXPECT_EQ(3u, Files().size());
    const Loaded loaded = LoadFrom(m_folder.File("a.zorvex"));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ(3u, Alive());
    const Object* back = loaded.Root();
    for (int i = 0; i < 3; ++i)
    {
        back = Target(back->ResolveId(u"id11"))->GetRoot();
    }
    EXPECT_EQ(loaded.Root(), back);
}

TEST_F(SaveAndLoadTest, AWholeDocumentIsReferredToByItsFile)
{
    const auto b = MakeDocument();
    const auto a = MakeDocument();
    Refer(a.get(), b.get());
    EXPECT_EQ("a_id11.zorvex ", RevisionRefs(SavedAs(a.get(), "a.zorvex")));
    const Loaded loaded = LoadFrom(m_folder.File("a.zorvex"));
    Object* target = Target(loaded.Root()->ResolveId("id11"));
    ASSERT_NE(nullptr, target);
    EXPECT_EQ(target->GetRoot(), target);
}

TEST_F(SaveAndLoadTest, AnInstanceOfAWholeDocumentFindsItAgain)
{
    const Loaded b = LoadFrom(Write("b.zorvex", {}));
    const auto a = MakeDocument();
    Object* instance = nullptr;
    a->ResolveId("id5")->GetOwner()->AddElement(u"ProductInstance", u"", instance);
    EXPECT_EQ(1, instance->SetId(u"id20"));
    instance->SetAttributeValue(u"partRef", Reference(Handle(b.Root())));
    const std::string saved = SavedAs(a.get(), "a.zorvex");
    const Loaded loaded = LoadFrom(m_folder.File("a.zorvex"));
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_NE(nullptr, Target(loaded.Root()->ResolveId("id20"), u"partRef"));
    EXPECT_EQ(saved, SavedAs(loaded.Root(), "a.zorvex"));
}

TEST_F(SaveAndLoadTest, ATakenNameGetsANumber)
{
    const URIResolverRef kept;
    const auto a = MakeDocument();
    std::vector<std::unique_ptr<Object>> others;
    for (const char* wanted : {"a_id11.zorvex", "a_id11_0.zorvex", "a_id11_1.zorvex"})
    {
        others.push_back(MakeDocument());
        Refer(a.get(), others.back()->ResolveId("id5"));
        EXPECT_EQ(std::string(wanted) + "#id5 ", RevisionRefs(SavedAs(a.get(), "a.zorvex")));
    }
    EXPECT_EQ(4u, Files().size());
}

TEST_F(SaveAndLoadTest, ANameThatIsMadeUpNeverTakesTheFileOfAnother)
{
    const auto a = MakeDocument();
    const auto b = MakeDocument();
    const auto c = MakeDocument();
    const auto d = MakeDocument();
    Refer(a.get(), b->ResolveId("id5"));
    SavedAs(a.get(), "a.zorvex");
    const std::string ofB = m_folder.Read("a_id11.zorvex");
    // No resolver remembers the first save.
    Refer(a.get(), c->ResolveId("id5"));
    EXPECT_EQ("a_id11_0.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "a.zorvex")));
    EXPECT_EQ(ofB, m_folder.Read("a_id11.zorvex"));
    // Nor does a document take the place of the one that is being written.
    const URIResolverRef kept;
    SavedAs(a.get(), "e/a.zorvex");
    Refer(a.get(), d->ResolveId("id5"));
    EXPECT_EQ("a_id11_0.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "e/a_id11.zorvex")));
}

TEST_F(SaveAndLoadTest, ANameIsMadeFromWhatTheTextPicksOutOfItsFile)
{
    for (const auto& [text, name] :
         {std::pair{"x.dat#ZORVEX(FOO-doc/body_index_3.x/ZORVEX-doc/id5)", "x_3_x.zorvex"},
          std::pair{"x.dat#ZORVEX(FOO-doc/x(y)//z/FOO-doc/body/ZORVEX-doc/id5)", "x_y_z.zorvex"},
          std::pair{"x.dat#ZORVEX(FOO-doc/Facetmesh/ZORVEX-doc/id5)", "x.zorvex"}})
    {
        const auto b = MakeDocument();
        const auto a = MakeDocument();
        Array<Handle> handles;
        handles.Add(Handle(b->ResolveId("id5")));
        a->ResolveId("id11")->SetAttributeValue(u"revisionRef", Reference(text, handles));
        EXPECT_EQ(name + std::string("#id5 "), RevisionRefs(SavedAs(a.get(), "a.zorvex")));
        EXPECT_TRUE(m_folder.Has(name));
    }
}

TEST_F(SaveAndLoadTest, ATextNamesTheFileOfADocumentWithoutAPlace)
{
    const auto b = MakeDocument();
    const auto a = MakeDocument();
    Array<Handle> handles;
    handles.Add(Handle(b->ResolveId("id5")));
    a->ResolveId("id11")->SetAttributeValue(u"revisionRef", Reference(u"parts.zorvex", handles));
    EXPECT_EQ("parts.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "a.zorvex")));
    EXPECT_TRUE(m_folder.Has("parts.zorvex"));
}

// --- what a save sets
// -------------------------------------------------------------------------------------

TEST_F(SaveAndLoadTest, AuthorAndTimeAreFilledOnlyWhenTheyAreMissing)
{
    const auto document = MakeDocument();
    document->SetAttributeValue(u"author", String());
    document->SetAttributeValue(u"time", String(u"unset"));
    document->SetAttributeValue(u"date", String(u"2001-02-03"));
    document->SetAttributeValue(u"schemaVersion", String(u"5"));
    const std::string saved = SavedAs(document.get(), "a.zorvex");
    EXPECT_THAT(saved, HasSubstr(" author=\"ZORVEX Adapter\" date=\"2001-02-03\""));
    EXPECT_THAT(saved, HasSubstr(" schemaVersion=\"6\""));
    EXPECT_THAT(Text(document.get(), u"time"), MatchesRegex("[0-9][0-9]:[0-9][0-9]:[0-9][0-9]"));
    EXPECT_EQ(saved, SavedAs(document.get(), "b.zorvex"));
    EXPECT_THAT(SavedAs(MakeDocument().get(), "c.zorvex"), HasSubstr(" author=\"unset\""));
}

TEST_F(SaveAndLoadTest, TheRecordOfTheLibraryStandsInTheFileAlone)
{
    const Options with = {{"adapters/ZORVEX/export/zorvex_sdk_version", "true"}};
    const auto document = MakeDocument();
    const std::string plain = SavedAs(document.get(), "a.zorvex");
    const std::string saved = SavedAs(document.get(), "b.zorvex", with);
    EXPECT_THAT(saved, HasSubstr("name=\"ZORVEX SDK\""));
    EXPECT_THAT(saved, HasSubstr("version=\"7.2.0.036\""));
    EXPECT_EQ(plain, SavedAs(document.get(), "a.zorvex"));
    const Loaded loaded = LoadFrom(m_folder.File("b.zorvex"));
    EXPECT_EQ(saved, SavedAs(loaded.Root(), "c.zorvex", with));
}

TEST_F(SaveAndLoadTest, TheFormatIsSaidByOptionPointerOrExtension)
{
    const auto document = MakeDocument();
    const std::string wanted = SavedAs(document.get(), "a.zorvex");
    EXPECT_EQ(wanted, SavedAs(document.get(), "a.ORBFMT"));
    EXPECT_EQ(wanted, SavedAs(document.get(), "a.dat", {{"format", "ZORVEX"}}));
    const String unknown = m_folder.File("a.unknown");
    EXPECT_THAT(Messages(Save(document.get(), unknown)),
                ElementsAre("WARNING 19: No adapter found for \"" + Utf8(unknown) +
                            "\". Assuming ZORVEX."));
    EXPECT_EQ(wanted, m_folder.Read("a.unknown"));
    Array<Handle> handles;
    EXPECT_THAT(Messages(document->Export(unknown, handles, nullptr)),
                ElementsAre("WARNING 19: No adapter found for \"" + Utf8(unknown) + "\"."));
    EXPECT_THAT(Messages(document->Export(m_folder.File("a.xml"), handles, nullptr)),
                ElementsAre("ERROR 6: ZORVEX:: invalid operation code."));
}

TEST_F(SaveAndLoadTest, ASaveThatWroteNothingIsNoSuccess)
{
    const auto document = MakeDocument();
    const std::string folder = m_folder.Path().string();
    EXPECT_THAT(Messages(Save(document.get(), m_folder.File("none/a.zorvex"))),
                ElementsAre("ERROR 2: Cannot open file: " + folder + "/none/a.zorvex"));
    EXPECT_THAT(Messages(Save(document.get(), m_folder.File("a.dat"), {{"format", "NONE"}})),
                ElementsAre("WARNING 517: Missing Adapter (NONE), resolving: " + folder + "/a.dat",
                            "ERROR 4: Unable to save: \"" + folder + "/a.dat\""));
    EXPECT_THAT(Messages(Save(document.get(), "#ZORVEX(STREAM-doc/0x10/ZORVEX-doc)")),
                ElementsAre("ERROR 4: Unable to save: \"#ZORVEX(STREAM-doc/0x10/ZORVEX-doc)\""));
    EXPECT_THAT(Messages(Save(document.get(), "http://h/a.zorvex")),
                testing::Contains("ERROR 2: Cannot write to http: or https: streams"));
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(SaveAndLoadTest, AResolverKnowsWhereADocumentWasLoadedAndSaved)
{
    const URIResolverRef kept;
    const String path = Write("a.zorvex", {});
    const Loaded loaded = LoadFrom(path);
    const String other = m_folder.File("b.zorvex");
    EXPECT_TRUE(Save(loaded.Root(), other).Ok());
    Pointer pointer;
    EXPECT_EQ(1, kept->FindPointer(Handle(loaded.Root()), pointer));
    EXPECT_EQ(Utf8(path), Utf8(pointer.GetString()));
    Array<Handle> found;
    EXPECT_EQ(1, kept->FindObjects(Pointer(other), found));
    ASSERT_EQ(1, found.GetSize());
    EXPECT_EQ(loaded.Root(), found[0].GetObject());
}

TEST_F(SaveAndLoadTest, APartInAFileIsNotThePlaceOfItsDocument)
{
    const auto a = MakeDocument();
    const auto b = MakeDocument();
    Refer(a.get(), b->ResolveId("id5"));
    Object* part = b->ResolveId("id5");
    EXPECT_TRUE(
        Save(part, m_folder.File("part.zorvex"), {{"adapters/ZORVEX/export/mode", "xml_only"}})
            .Ok());
    EXPECT_THAT(m_folder.Read("part.zorvex"), Not(HasSubstr("ProductDef")));
    EXPECT_EQ("a_id11.zorvex#id5 ", RevisionRefs(SavedAs(a.get(), "a.zorvex")));
    // Without that mode the whole document is saved, whichever object is asked.
    EXPECT_TRUE(Save(part, m_folder.File("b.zorvex")).Ok());
    EXPECT_EQ(m_folder.Read("a_id11.zorvex"), m_folder.Read("b.zorvex"));
}

TEST_F(SaveAndLoadTest, ADocumentWithoutAPlaceCannotGoBesideAStream)
{
    const auto a = MakeDocument();
    const auto b = MakeDocument();
    Refer(a.get(), b->ResolveId("id5"));
    const String address = StreamAddress(new MemoryStream);
    EXPECT_THAT(Messages(Save(a.get(), "#ZORVEX(STREAM-doc/" + address + "/ZORVEX-doc)")),
                ElementsAre(HasSubstr("ERROR 4: Unable to save: ")));
    EXPECT_THAT(Files(), IsEmpty());
}

// --- texts and streams
// ------------------------------------------------------------------------------------

TEST_F(SaveAndLoadTest, TheTextOfAnObjectIsThatOfItsTree)
{
    const Loaded loaded = LoadText(WrapDocument(
        "<ProductDef id=\"id1\" name=\"\xC3\xA9\"><InstanceGraph id=\"id2\"/></ProductDef>"));
    String text;
    EXPECT_THAT(Messages(loaded.Root()->ResolveId("id2")->GetXML(text, nullptr)), IsEmpty());
    EXPECT_THAT(Utf8(text),
                MatchesRegex(".*\n<InstanceGraph xmlns=.*\n id=\"id2\"></InstanceGraph>"));
    const auto unknown = MakeOptions({{"format", "NONE"}, {"adapters/ZORVEX/export/prolog", "x"}});
    EXPECT_THAT(Messages(loaded.Root()->GetXML(text, unknown.get())), IsEmpty());
    EXPECT_THAT(Utf8(text), HasSubstr("name=\"\xC3\xA9\""));
    const Loaded again = LoadFrom(text);
    String second;
    EXPECT_TRUE(again.Root()->GetXML(second, nullptr).Ok());
    EXPECT_EQ(Utf8(text), Utf8(second));
}

TEST_F(SaveAndLoadTest, ATextWithFollowedReferencesIsGivenWithAWarning)
{
    Write("sub/b.zorvex", {});
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"sub/b.zorvex#id5", "#id5"}));
    String text;
    EXPECT_THAT(Messages(loaded.Root()->GetXML(text, nullptr)),
                ElementsAre("WARNING 520: Object contains an external reference."));
    EXPECT_EQ("sub/b.zorvex#id5 #id5 ", RevisionRefs(Utf8(text)));
}

TEST_F(SaveAndLoadTest, AStreamOfTheCallerIsReadWrittenAndDeleted)
{
    const auto document = MakeDocument();
    const std::string wanted = SavedAs(document.get(), "a.zorvex");
    struct Gone : MemoryStream
    {
        explicit Gone(std::string& out) : content(out) {}
        ~Gone() override
        {
            std::uint64_t length = 0;
            GetLength64(length);
            content.assign(static_cast<const char*>(GetBuffer()), length);
        }
        std::string& content;
    };
    std::string written;
    const String address = StreamAddress(new Gone(written));
    EXPECT_THAT(Messages(Save(document.get(), "#ZORVEX(STREAM-doc/" + address + "/ZORVEX-doc)")),
                IsEmpty());
    EXPECT_EQ(wanted, written);

    auto* source = new MemoryStream;
    source->Write(written.data(), static_cast<int>(written.size()), 1, 0);
    source->Rewind();
    const String from = "#ZORVEX(STREAM-doc/" + StreamAddress(source) + "/ZORVEX-doc)";
    const Loaded loaded = LoadFrom(from);
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_EQ(wanted, SavedAs(loaded.Root(), "b.zorvex"));
    EXPECT_FALSE(LoadFrom(from).GetResult().Ok());  // the stream is gone
}

TEST_F(SaveAndLoadTest, AForgedStreamInADocumentIsRefused)
{
    MemoryStream mine;  // not to be read nor deleted by a document that guesses its address
    const std::string bytes = Document();
    mine.Write(bytes.data(), static_cast<int>(bytes.size()), 1, 0);
    mine.Rewind();
    for (const std::string& address : {std::string("0x1234560"), Utf8(StreamAddress(&mine))})
    {
        const std::string text = "#ZORVEX(STREAM-doc/" + address + "/ZORVEX-doc/id5)";
        const Loaded loaded = LoadFrom(Write("a.zorvex", {text}));
        EXPECT_EQ("ERROR 4: Unable to load: \"" + text + "\"", loaded.Messages().at(0));
        Array<Handle> targets;
        Object* part = loaded.Root()->ResolveId("id11");
        EXPECT_FALSE(part->ResolveAttribute(u"revisionRef", targets).Ok());
        EXPECT_EQ(nullptr, Target(part));
    }
}

TEST_F(SaveAndLoadTest, AnOperationWithoutItsSlotsDoesNothing)
{
    Write("a.zorvex", {});
    for (const char* chain : {"#ZORVEX(ZORVEX-doc)", "#ZORVEX(STREAM-doc)"})
    {
        const AdapterRef adapters(Pointer(m_folder.File("a.zorvex") + chain), nullptr);
        ASSERT_EQ(1, adapters.IsValid());
        adapters->Process(nullptr);
        for (int operation = 0; operation < 13; ++operation)
        {
            PluginProcessData data;
            data.m_operation = operation;
            adapters->Process(&data);
            EXPECT_EQ(0u, Alive()) << operation;
        }
    }
    Array<Handle> handles;  // no one reads the Result
    const AdapterRef adapters(Pointer(m_folder.File("a.zorvex") + u"#ZORVEX(ZORVEX-doc)"), nullptr);
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_IMPORT;
    data.Set(10, &handles);
    adapters->Process(&data);
    ASSERT_EQ(1, handles.GetSize());
    handles.Add(Handle(handles[0]));  // one object twice
    data.m_operation = ZORVEX_OP_ADAPTER_DESTROY;
    adapters->Process(&data);
}

TEST_F(SaveAndLoadTest, ObjectsWithoutIdsStayWithoutUntilTheyAreReferredTo)
{
    const Loaded loaded = LoadFrom(m_folder.Write(
        "a.zorvex", WrapDocument("<ProductDef><InstanceGraph><Product id=\"id7\"/>"
                                 "<ProductRevisionView/></InstanceGraph></ProductDef>")));
    EXPECT_THAT(SavedAs(loaded.Root(), "b.zorvex"), Not(HasSubstr("<ProductRevisionView id")));
    Array<Object*> views;
    loaded.Root()->ResolveId("id7")->GetOwner()->GetElementsByClass(u"ProductRevisionView", views);
    ASSERT_EQ(1, views.GetSize());
    const auto other = MakeDocument();
    Refer(other.get(), views[0]);
    EXPECT_EQ("id8", Utf8(views[0]->GetId()));
    EXPECT_EQ("a.zorvex#id8 ", RevisionRefs(SavedAs(other.get(), "o.zorvex")));
}

}  // namespace zorvex_test
