#include "zorvex_api/Stream.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/ScratchFolder.h"
#include "transport/FileTarget.h"
#include "transport/LiveStreams.h"
#include "transport/StreamImpl.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/FileStream.h"
#include "zorvex_api/MemoryStream.h"

namespace zorvex_api
{
namespace
{

using zorvex_test::ScratchFolder;

int WriteText(Stream& stream, std::string_view text, int compressed = 0)
{
    return stream.Write(text.data(), static_cast<int>(text.size()), 1, compressed);
}

std::string ReadText(Stream& stream, std::size_t size, int compressed = 0)
{
    std::string text(size, '?');
    const int got = stream.Read(text.data(), static_cast<int>(size), 1, compressed);
    text.resize(static_cast<std::size_t>(std::max(got, 0)));
    return text;
}

std::string Content(MemoryStream& stream)
{
    std::uint32_t length = 0;
    EXPECT_EQ(1, stream.GetLength(length));
    return std::string(static_cast<const char*>(stream.GetBuffer()), length);
}

std::string Noise(std::size_t size)
{
    std::mt19937 random(99);
    std::string noise(size, 0);
    for (char& byte : noise)
    {
        byte = static_cast<char>(random());
    }
    return noise;
}

TEST(MemoryStream, GrowsByDoublingAndThenBySteps)
{
    MemoryStream stream;
    EXPECT_EQ(3u, stream.GetMode());
    EXPECT_EQ(1, WriteText(stream, "abc"));
    EXPECT_EQ(6u, stream.GetAllocLength());
    EXPECT_EQ(1, WriteText(stream, "defg"));
    EXPECT_EQ(14u, stream.GetAllocLength());
    EXPECT_EQ(1, WriteText(stream, std::string(999993, 'x')));
    EXPECT_EQ(2000000u, stream.GetAllocLength());
    EXPECT_EQ(1, WriteText(stream, std::string(1000001, 'y')));
    EXPECT_EQ(3000001u, stream.GetAllocLength());
    EXPECT_EQ("abcdefgx", Content(stream).substr(0, 8));
    EXPECT_EQ(0, static_cast<const char*>(stream.GetBuffer())[2000001]);
}

TEST(MemoryStream, LargeContentsGrowInLinearTime)
{
    MemoryStream stream;
    const std::string piece(64 * 1024, 'x');
    for (int i = 0; i < 3200; ++i)  // 200 MiB: by copies at each step this would take 20 GiB
    {
        ASSERT_EQ(1, WriteText(stream, piece));
    }
    std::uint64_t length = 0;
    EXPECT_EQ(1, stream.GetLength64(length));
    EXPECT_EQ(3200u * piece.size(), length);
}

TEST(MemoryStream, KeepsThePositionWithinTheLength)
{
    MemoryStream stream;
    WriteText(stream, "0123456789");
    char byte = '?';
    EXPECT_EQ(0, stream.Peek(&byte));
    EXPECT_EQ(0, stream.Seek(11));
    EXPECT_EQ(1, stream.Seek(10));
    EXPECT_EQ("", ReadText(stream, 5));
    EXPECT_EQ(1, stream.Seek(8));
    EXPECT_EQ(1, stream.Peek(&byte));
    EXPECT_EQ('8', byte);
    EXPECT_EQ("89", ReadText(stream, 5));
    EXPECT_EQ(1, stream.SetLength(4));
    std::uint32_t position = 0;
    EXPECT_EQ(1, stream.Tell(position));
    EXPECT_EQ(4u, position);
    EXPECT_EQ(1, stream.SetLength(0));
    EXPECT_EQ(1, stream.Tell(position));
    EXPECT_EQ(0u, position);
    EXPECT_EQ(1, stream.SetLength(30));
    EXPECT_EQ(60u, stream.GetAllocLength());
    EXPECT_EQ(std::string(10, '\0'), Content(stream).substr(20));
    EXPECT_EQ(0, stream.SetLength64(std::uint64_t{1} << 62));
}

TEST(MemoryStream, NeitherGrowsNorFreesACallersBuffer)
{
    char buffer[100];
    std::memcpy(buffer, "0123456789abcdef", 16);
    MemoryStream stream(buffer, 10, 100);
    EXPECT_EQ("0123456789", ReadText(stream, 50));
    EXPECT_EQ(1, stream.Rewind());
    EXPECT_EQ(0, WriteText(stream, std::string(200, 'x')));
    EXPECT_EQ("0123456789", Content(stream));
    EXPECT_EQ(0, stream.SetLength(101));
    EXPECT_EQ(1, WriteText(stream, std::string(100, 'y')));
    EXPECT_EQ(0, WriteText(stream, "z"));
    EXPECT_EQ(1, WriteText(stream, ""));
    EXPECT_EQ('y', buffer[99]);

    MemoryStream mixed(buffer, 3, sizeof buffer);
    EXPECT_EQ("yyy", ReadText(mixed, 50));
    EXPECT_EQ(100u, mixed.GetAllocLength());
    MemoryStream negative(buffer, -1L, 5);
    EXPECT_EQ("", ReadText(negative, 50));
}

TEST(MemoryStream, SixtyFourBitFormsCheckTheirProduct)
{
    MemoryStream stream;
    const char text[] = "abcdef";
    EXPECT_EQ(0, stream.Write64(text, std::uint64_t{1} << 33, std::uint64_t{1} << 33));
    EXPECT_EQ(1, stream.Write64(text, 3, 2));
    char back[8] = {};
    stream.Rewind();
    EXPECT_EQ(6u, stream.Read64(back, 4, 2));
    EXPECT_STREQ("abcdef", back);
    EXPECT_EQ(0, stream.Read(back, 1 << 20, 1 << 20, 0));
    EXPECT_EQ(0, stream.Write(back, 1 << 20, 1 << 20, 0));
}

TEST(Stream, WithoutABufferNothingIsMoved)
{
    MemoryStream stream;
    WriteText(stream, "abc");
    EXPECT_EQ(0, stream.Write(nullptr, 1, 5, 0));
    EXPECT_EQ(0, stream.Write(nullptr, 1, 50, 1));
    EXPECT_EQ(0, stream.Write64(nullptr, 1, 5));
    EXPECT_EQ(1, stream.Write(nullptr, 0, 5, 0));
    stream.Rewind();
    EXPECT_EQ(0, stream.Read(nullptr, 1, 3, 0));
    EXPECT_EQ(0u, stream.Read64(nullptr, 1, 3));
    EXPECT_EQ(0, stream.Peek(nullptr));
    EXPECT_EQ("abc", ReadText(stream, 9));
}

TEST(Stream, ReversesElementsWhileBytesAreSwapped)
{
    MemoryStream stream;
    WriteText(stream, "abcdefg");
    stream.Rewind();
    stream.GetImplementation()->m_swapBytes = true;
    char back[8] = {};
    EXPECT_EQ(7, stream.Read(back, 2, 4, 0));  // the last element isn't whole
    EXPECT_STREQ("dcbaefg", back);
    stream.Rewind();
    EXPECT_EQ(7, stream.Read(back, 7, 1, 0));
    EXPECT_STREQ("abcdefg", back);
}

TEST(StreamBlock, DeflatesWhereThatPays)
{
    MemoryStream stream;
    EXPECT_EQ(1, WriteText(stream, "aaaaaaaaaa", 1));  // too short
    EXPECT_EQ(std::string("\0aaaaaaaaaa", 11), Content(stream));
    EXPECT_EQ(1, WriteText(stream, Noise(11), 1));
    EXPECT_EQ(std::string(1, '\0') + Noise(11), Content(stream).substr(11));
    const std::string text(5000, 'b');
    EXPECT_EQ(1, WriteText(stream, text, 1));
    const std::string block = Content(stream).substr(23);
    EXPECT_LT(block.size(), 100u);
    EXPECT_EQ(1, block[0]);
    EXPECT_EQ(block.size() - 5, static_cast<unsigned char>(block[1]));
    stream.Rewind();
    EXPECT_EQ("aaaaaaaaaa", ReadText(stream, 10, 1));
    EXPECT_EQ(Noise(11), ReadText(stream, 11, 1));
    EXPECT_EQ(text, ReadText(stream, 5000, 1));
    EXPECT_EQ("", ReadText(stream, 1, 1));
}

TEST(StreamBlock, DamageGivesNothingAndNeverWritesPastTheBuffer)
{
    MemoryStream good;
    const std::string text = "a text, a text, a text, a text, a text and again a text";
    ASSERT_EQ(1, WriteText(good, text, 1));
    const std::string block = Content(good);
    ASSERT_EQ(1, block[0]);
    const auto read = [](const std::string& bytes, std::size_t size)
    {
        MemoryStream stream;
        WriteText(stream, bytes);
        stream.Rewind();
        return ReadText(stream, size, 1);
    };
    EXPECT_EQ(text, read(block + "more", text.size()));
    EXPECT_EQ(text.substr(0, 20), read(block, 20));
    EXPECT_EQ(text + std::string(9, '\0'), read(block, text.size() + 9));
    for (std::size_t size = 0; size < block.size(); ++size)
    {
        EXPECT_EQ("", read(block.substr(0, size), text.size())) << size;
    }
    std::string huge = block;  // claims more than any memory holds
    huge.replace(1, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ("", read(huge, text.size()));
    for (std::size_t i = 5; i < block.size(); ++i)
    {
        std::string damaged = block;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x55);
        EXPECT_NE(text, read(damaged, text.size())) << i;
    }
    EXPECT_EQ(text.substr(0, 9), read("\x02" + text.substr(0, 9), 9));  // another flag: stored
}

TEST(FileStream, OpensByTheModeTable)
{
    const ScratchFolder folder;
    struct
    {
        int mode;
        bool needsFile;
        const char* after;  // a writes "new" into "old text"; null: can't write
    } const modes[] = {{1, true, nullptr},        {2, false, "new"},
                       {3, true, "new text"},     {3 | 16, false, "new"},
                       {4, false, "old textnew"}, {4 | 1, false, "old textnew"},
                       {0x10002, false, "new"}};
    for (const auto& mode : modes)
    {
        SCOPED_TRACE(mode.mode);
        FileStream missing;
        std::filesystem::remove(folder.Path() / "missing");
        EXPECT_EQ(mode.needsFile ? 0 : 1, missing.Open(folder.File("missing"), mode.mode));
        FileStream stream(folder.Write("file", "old text"), mode.mode);
        EXPECT_EQ(0, stream.Open(folder.File("file"), 1)) << "open already";
        EXPECT_EQ(mode.after != nullptr, WriteText(stream, "new") != 0);
        EXPECT_EQ(1, stream.Close());
        EXPECT_EQ(mode.after == nullptr ? "old text" : mode.after, folder.Read("file"));
    }
}

TEST(FileStream, RefusesWhatIsNoFile)
{
    const ScratchFolder folder;
    for (const int mode : {1, 2, 3, 4})
    {
        FileStream stream;
        EXPECT_EQ(0, stream.Open(String(folder.Path().c_str()), mode));
        EXPECT_EQ(0, stream.Open(String(), mode));
        const String cut = folder.File("file") + String(u"\0.xml", 5);
        EXPECT_EQ(0, stream.Open(cut, mode)) << "a zero byte ends no name";
        EXPECT_EQ(0, stream.Open(folder.File("missing/file"), mode));
    }
    FileStream stream;
    EXPECT_EQ(0, stream.Open(folder.File("file"), 0));
    EXPECT_EQ(1, FileStream().Close());
    EXPECT_EQ(0, stream.Close());
    try
    {
        FileStream thrown(folder.File("missing"), 1);
        FAIL();
    }
    catch (const Exception& exception)
    {
        EXPECT_EQ(17, exception.GetCode());
    }
}

TEST(FileStream, ReadsAndWritesInTurns)
{
    const ScratchFolder folder;
    FileStream stream(folder.Write("\xC3\xA4.txt", "0123456789"), 3);
    char byte = '?';
    EXPECT_EQ("01", ReadText(stream, 2));
    EXPECT_EQ(1, WriteText(stream, "ab"));
    EXPECT_EQ("45", ReadText(stream, 2));
    EXPECT_EQ(1, stream.Peek(&byte));
    EXPECT_EQ('6', byte);
    EXPECT_EQ(1, WriteText(stream, "c"));
    std::uint32_t value = 0;
    EXPECT_EQ(1, stream.Tell(value));
    EXPECT_EQ(7u, value);
    EXPECT_EQ(1, stream.GetLength(value));
    EXPECT_EQ(10u, value);
    EXPECT_EQ("789", ReadText(stream, 99));
    EXPECT_EQ(0, stream.Peek(&byte));
    EXPECT_EQ(1, stream.SetLength(12));
    EXPECT_EQ(1, stream.SetLength(11));
    EXPECT_EQ(1, stream.Flush());
    EXPECT_EQ(std::string("01ab45c789\0", 11), folder.Read("\xC3\xA4.txt"));
    EXPECT_EQ(1, stream.Close());
    EXPECT_EQ(0, stream.Flush());
    EXPECT_EQ(0, WriteText(stream, ""));
    EXPECT_EQ("", ReadText(stream, 1));
}

TEST(FileStream, LengthsBeyond32BitsHaveTheirOwnForm)
{
    const ScratchFolder folder;
    FileStream stream(folder.File("large"), 3 | 16);
    const std::uint64_t large = std::uint64_t{5} << 30;
    ASSERT_EQ(1, stream.SetLength64(large));
    std::uint32_t narrow = 7;
    std::uint64_t wide = 0;
    EXPECT_EQ(0, stream.GetLength(narrow));
    EXPECT_EQ(0u, narrow);
    EXPECT_EQ(1, stream.GetLength64(wide));
    EXPECT_EQ(large, wide);
    EXPECT_EQ(0, stream.Tell(narrow));
    EXPECT_EQ(1, stream.Tell64(wide));
    EXPECT_EQ(large, wide);
    EXPECT_EQ(0, FileStream().Seek64(0));
}

class CommittedFile : public testing::Test
{
protected:
    std::unique_ptr<FileStream> Open(std::string_view name)
    {
        auto stream = std::make_unique<FileStream>();
        CommitOnClose(*stream);
        return stream->Open(m_folder.File(name), 2) ? std::move(stream) : nullptr;
    }

    std::size_t FilesInFolder() const
    {
        const std::filesystem::directory_iterator files(m_folder.Path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    ScratchFolder m_folder;
};

TEST_F(CommittedFile, AppearsWholeOnClose)
{
    m_folder.Write("doc", "what stood there");
    const auto stream = Open("doc");
    ASSERT_NE(nullptr, stream);
    EXPECT_EQ(1, WriteText(*stream, "new"));
    EXPECT_EQ(1, stream->Flush());
    EXPECT_EQ("what stood there", m_folder.Read("doc"));
    EXPECT_EQ(1, stream->Close());
    EXPECT_EQ("new", m_folder.Read("doc"));
    EXPECT_EQ(1u, FilesInFolder());
    EXPECT_EQ(0, stream->Close());
}

TEST_F(CommittedFile, IsDroppedWithoutClose)
{
    m_folder.Write("doc", "what stood there");
    WriteText(*Open("doc"), "new");
    WriteText(*Open("fresh"), "new");
    EXPECT_EQ("what stood there", m_folder.Read("doc"));
    EXPECT_EQ(1u, FilesInFolder());
}

TEST_F(CommittedFile, KeepsRightsAndFollowsLinks)
{
    namespace fs = std::filesystem;
    m_folder.Write("sub/doc", "old");
    fs::permissions(m_folder.Path() / "sub/doc", fs::perms(0640));
    fs::create_symlink("sub/doc", m_folder.Path() / "link");
    const auto stream = Open("link");
    ASSERT_NE(nullptr, stream);
    WriteText(*stream, "new");
    EXPECT_EQ(1, stream->Close());
    EXPECT_EQ("new", m_folder.Read("sub/doc"));
    EXPECT_TRUE(fs::is_symlink(m_folder.Path() / "link"));
    EXPECT_EQ(fs::perms(0640), fs::status(m_folder.Path() / "sub/doc").permissions());

    const auto fresh = Open("fresh");
    EXPECT_EQ(1, fresh->Close());
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(fs::perms(0666 & ~mask), fs::status(m_folder.Path() / "fresh").permissions());
}

TEST_F(CommittedFile, WritesDirectlyToWhatIsNoRegularFile)
{
    ASSERT_EQ(0, mkfifo((m_folder.Path() / "pipe").c_str(), 0600));
    std::string got;
    std::thread reader(
        [&]
        {
            FileStream pipe(m_folder.File("pipe"), 1);
            got = ReadText(pipe, 100);
        });
    const auto stream = Open("pipe");
    WriteText(*stream, "through");
    EXPECT_EQ(1, stream->Close());
    reader.join();
    EXPECT_EQ("through", got);

    std::filesystem::create_symlink("nowhere", m_folder.Path() / "link");
    const auto dangling = Open("link");
    WriteText(*dangling, "x");
    EXPECT_EQ(1, dangling->Close());
    EXPECT_EQ("x", m_folder.Read("nowhere"));
}

/// Makes writes past `bytes` of a file fail, as on a full disk.
class SmallDisk
{
public:
    explicit SmallDisk(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int);
    rlimit m_before;
};

TEST_F(CommittedFile, KeepsTheOldContentWhenTheDiskIsFull)
{
    m_folder.Write("doc", "old");
    for (const std::size_t size : {std::size_t{2000}, std::size_t{200000}})
    {
        const auto stream = Open("doc");
        ASSERT_NE(nullptr, stream);
        int written = 0;
        int closed = 0;
        {
            const SmallDisk small(1000);
            written = WriteText(*stream, std::string(size, 'x'));
            closed = stream->Close();
        }
        EXPECT_EQ(0, closed) << "a write gave " << written;
        EXPECT_EQ("old", m_folder.Read("doc"));
        EXPECT_EQ(1u, FilesInFolder());
    }
}

TEST_F(CommittedFile, ReportsThatItCantBePutInPlace)
{
    const auto stream = Open("doc");
    ASSERT_NE(nullptr, stream);
    std::filesystem::create_directories(m_folder.Path() / "doc");
    EXPECT_EQ(0, stream->Close());
    EXPECT_EQ(1u, FilesInFolder());
}

TEST_F(CommittedFile, RefusesReadOnlyFilesAndMissingFolders)
{
    EXPECT_EQ(nullptr, Open("missing/doc"));
    if (geteuid() == 0)
    {
        return;  // nothing is read-only for the superuser
    }
    m_folder.Write("doc", "old");
    std::filesystem::permissions(m_folder.Path() / "doc", std::filesystem::perms(0400));
    EXPECT_EQ(nullptr, Open("doc"));
}

TEST(LiveStreams, FindsAStreamByItsAddressWhileItLives)
{
    auto stream = std::make_unique<MemoryStream>();
    const String address = StreamAddress(stream.get());
    const std::u16string text(View(address));
    EXPECT_EQ(stream.get(), FindLiveStream(text));
    EXPECT_EQ(stream.get(), FindLiveStream(u"0000" + text.substr(2)));
    for (const std::u16string& forged :
         {text + u"z", text + u" ", u" " + text, u"-" + text, text + u"0", u"0x" + text,
          u"0xF0000000000000000" + text.substr(2), std::u16string(u"(nil)"), std::u16string(u"-5"),
          std::u16string(u"0x"), std::u16string(), std::u16string(u"1f40zz")})
    {
        EXPECT_EQ(nullptr, FindLiveStream(forged)) << ToUtf8(TextView(forged));
    }
    stream.reset();
    EXPECT_EQ(nullptr, FindLiveStream(text));
}

TEST(LiveStreams, AreKeptFromSeveralThreads)
{
    const auto work = []
    {
        for (int i = 0; i < 2000; ++i)
        {
            MemoryStream stream;
            EXPECT_EQ(&stream, FindLiveStream(View(StreamAddress(&stream))));
        }
    };
    std::thread other(work);
    work();
    other.join();
}

}  // namespace
}  // namespace zorvex_api
