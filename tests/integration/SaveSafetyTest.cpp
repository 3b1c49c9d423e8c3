#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "Documents.h"
#include "transport/DocumentPointer.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

/// A save that fails or is cut short leaves what stood there before.

namespace zorvex_test
{

using namespace zorvex_api;
using internal::GetSlot;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr rlim_t kLimit = 20000;  // bytes; the documents below are larger

/// No file grows beyond the limit, for a scope: as on a full disk.
class FullDisk
{
public:
    FullDisk() : m_handler(signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{kLimit, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

/// Fails at one step of writing.
class FailingStream : public MemoryStream
{
public:
    enum class Step
    {
        Write,
        Close
    };
    explicit FailingStream(Step step) : m_step(step) { ++s_live; }
    ~FailingStream() override { --s_live; }

    int Write(const void* bytes, int count, int size, int compressed) override
    {
        return m_step == Step::Write ? 0 : MemoryStream::Write(bytes, count, size, compressed);
    }
    int Close() override { return m_step == Step::Close ? 0 : MemoryStream::Close(); }

    static inline int s_live = 0;

private:
    Step m_step;
};

/// Gives failing streams for one file name.
class FailingResolver : public URIResolver
{
public:
    void Process(PluginProcessData* data) override
    {
        const auto* name = GetSlot<String>(*data, internal::kNameSlot);
        if (data->m_operation == internal::kResolverOpenStream && name->EndsWith(file))
        {
            *GetSlot<Stream*>(*data, internal::kStreamOutSlot) = new FailingStream(step);
            return;
        }
        URIResolver::Process(data);
    }

    String file;
    FailingStream::Step step = FailingStream::Step::Write;
};

}  // namespace

class SaveSafetyTest : public DocumentsTest
{
protected:
    std::size_t FileCount() const
    {
        const std::filesystem::directory_iterator files(m_folder.Path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
    /// A document of more bytes than the limit.
    Loaded LoadLarge(const std::string& name)
    {
        return LoadFrom(Write(name, std::vector<std::string>(2000, "#id5")));
    }
};

TEST_F(SaveSafetyTest, AFullDiskLeavesTheOldFileAndNothingElse)
{
    const Loaded loaded = LoadLarge("a.zorvex");
    const std::string before = m_folder.Read("a.zorvex");
    ASSERT_GT(before.size(), kLimit);
    {
        const FullDisk full;
        EXPECT_THAT(
            Messages(Save(loaded.Root(), m_folder.File("a.zorvex"))),
            ElementsAre("ERROR 4: ZORVEX Adapter: Exception whilst saving stream a.zorvex"));
    }
    EXPECT_EQ(before, m_folder.Read("a.zorvex"));
    EXPECT_EQ(1u, FileCount());
    EXPECT_THAT(Messages(Save(loaded.Root(), m_folder.File("a.zorvex"))), IsEmpty());
}

TEST_F(SaveSafetyTest, RefusedMemoryLeavesNothingOfALoadOrASave)
{
    const String path = m_folder.Write(
        "a.zorvex",
        WrapDocument("<Header id='id9' traverseRootRefs='#id1 #id2'/><ProductDef id='id1'>"
                     "<Description>a text that takes a block of its own</Description>"
                     "<InstanceGraph id='id2'><ProductInstance id='id3' partRef='#id4' quantity="
                     "'2.5'><Transform id='id6' type='general3'>1 0 0 0 1 0 0 0 1</Transform>"
                     "</ProductInstance><ProductRevisionView id='id4' revisionRef='#id2' "
                     "instanceRefs='id3'/><Material id='id7' ambient='1 0 0' diffuse='1 0 0'/>"
                     "</InstanceGraph></ProductDef>"));
    const auto run = [&]
    {
        const Loaded loaded = LoadFrom(path);
        if (loaded.roots.size() != 1 || !loaded.GetResult().Ok())
        {
            return false;
        }
        Object* copy = nullptr;
        const Result copied = loaded.Root()->Copy(copy, 0);
        const std::unique_ptr<Object> owned(copy);
        return copied.Ok() && Save(loaded.Root(), m_folder.File("c.zorvex")).Ok();
    };
    ASSERT_TRUE(run());
    const long long before = Hooks().Total();
    ASSERT_TRUE(run());
    const long long needed = Hooks().Total() - before;
    ASSERT_GT(needed, 20);
    for (long long nth = 1; nth <= needed; ++nth)
    {
        Hooks().RefuseNth(nth);
        try
        {
            run();
        }
        catch (const std::bad_alloc&)
        {
            // As it may be; what counts is that nothing stays behind.
        }
        Hooks().RefuseNth(0);
        ASSERT_EQ(0u, Alive()) << nth;
    }
    EXPECT_TRUE(run());
}

TEST_F(SaveSafetyTest, AKilledProcessLeavesTheOldFile)
{
    const Loaded loaded = LoadLarge("a.zorvex");
    const std::string before = m_folder.Read("a.zorvex");
    const pid_t child = fork();
    if (child == 0)
    {
        const rlimit noCore{0, 0};
        const rlimit limit{kLimit, kLimit};
        setrlimit(RLIMIT_CORE, &noCore);
        setrlimit(RLIMIT_FSIZE, &limit);
        signal(SIGXFSZ, SIG_DFL);  // the write that passes the limit ends the process
        Save(loaded.Root(), m_folder.File("a.zorvex"));
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(before, m_folder.Read("a.zorvex"));
    EXPECT_THAT(Messages(Save(loaded.Root(), m_folder.File("a.zorvex"))), IsEmpty());
    EXPECT_THAT(LoadFrom(m_folder.File("a.zorvex")).Messages(), IsEmpty());
}

TEST_F(SaveSafetyTest, AStreamThatFailsIsReportedAndDeleted)
{
    FailingResolver failing;
    failing.file = u"a.zorvex";
    const URIResolverRef active(&failing);
    for (const auto step : {FailingStream::Step::Write, FailingStream::Step::Close})
    {
        failing.step = step;
        const auto document = MakeDocument();
        EXPECT_THAT(
            Messages(Save(document.get(), m_folder.File("a.zorvex"),
                          {{"adapters/ZORVEX/export/zorvex_sdk_version", "true"}})),
            ElementsAre("ERROR 4: ZORVEX Adapter: Exception whilst saving stream a.zorvex"));
        EXPECT_EQ(0, FailingStream::s_live);
        // It doesn't stand there: nobody is to think so. What the save added is gone.
        Pointer pointer;
        EXPECT_EQ(0, failing.FindPointer(Handle(document.get()), pointer));
        EXPECT_EQ(nullptr, internal::GetDocumentPointer(document.get()));
        Array<Object*> headers;
        document->GetElementsByField(u"Header", headers);
        EXPECT_EQ(0, headers.GetSize());
    }
}

TEST_F(SaveSafetyTest, AFailedSaveElsewhereLeavesAResolverWithTheOldPlaceOnly)
{
    FailingResolver failing;
    failing.file = u"b.zorvex";
    const URIResolverRef active(&failing);
    const String path = Write("a.zorvex", {});
    const Loaded loaded = LoadFrom(path);
    EXPECT_FALSE(Save(loaded.Root(), m_folder.File("b.zorvex")).Ok());
    Pointer pointer;
    EXPECT_EQ(1, failing.FindPointer(Handle(loaded.Root()), pointer));
    EXPECT_EQ(Utf8(path), Utf8(pointer.GetString()));
    Array<Handle> found;
    failing.FindObjects(Pointer(m_folder.File("b.zorvex")), found);
    EXPECT_EQ(0, found.GetSize());
}

TEST_F(SaveSafetyTest, ASecondDocumentThatFailsIsWrittenTheNextTime)
{
    FailingResolver failing;
    failing.file = u"a_id11.zorvex";
    const auto a = MakeDocument();
    const auto b = MakeDocument();
    Refer(a.get(), b->ResolveId("id5"));
    {
        const URIResolverRef active(&failing);
        EXPECT_THAT(
            Messages(Save(a.get(), m_folder.File("a.zorvex"))),
            ElementsAre("ERROR 4: ZORVEX Adapter: Exception whilst saving stream a_id11.zorvex"));
    }
    EXPECT_FALSE(m_folder.Has("a_id11.zorvex"));
    EXPECT_THAT(Messages(Save(a.get(), m_folder.File("a.zorvex"))), IsEmpty());
    EXPECT_TRUE(m_folder.Has("a_id11.zorvex"));
    EXPECT_THAT(m_folder.Read("a.zorvex"), HasSubstr("revisionRef=\"a_id11.zorvex#id5\""));
}

TEST_F(SaveSafetyTest, ADeviceThatIsFullIsAnError)
{
    if (!std::filesystem::is_character_file("/dev/full"))
    {
        GTEST_SKIP() << "no such device here";
    }
    const Loaded loaded = LoadLarge("a.zorvex");
    std::filesystem::create_symlink("/dev/full", m_folder.Path() / "full.zorvex");
    EXPECT_THAT(Messages(Save(loaded.Root(), m_folder.File("full.zorvex"))),
                ElementsAre("ERROR 4: ZORVEX Adapter: Exception whilst saving stream full.zorvex"));
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder.Path() / "full.zorvex"));
}

}  // namespace zorvex_test
