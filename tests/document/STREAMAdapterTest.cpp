#include "document/STREAMAdapter.h"

#include "support/SessionTest.h"
#include "transport/LiveStreams.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

Stream* GetStream(const String& address)
{
    const AdapterRef chain(Pointer("#ZORVEX(STREAM-doc/" + address + "/ZORVEX-doc)"), nullptr);
    Stream* stream = nullptr;
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_GET;
    data.Set(7, &stream);
    chain->GetPrevious()->Process(&data);
    return stream;
}

}  // namespace

class STREAMAdapterTest : public SessionTest
{
};

TEST_F(STREAMAdapterTest, OnlyTheAddressOfALiveStreamIsTaken)
{
    auto stream = std::make_unique<MemoryStream>();
    const String address = StreamAddress(stream.get());
    EXPECT_EQ(stream.get(), GetStream(address));
    EXPECT_EQ(nullptr, GetStream("0x10"));
    EXPECT_EQ(nullptr, GetStream("-5"));
    EXPECT_EQ(nullptr, GetStream(address + "zz"));
    stream.reset();
    EXPECT_EQ(nullptr, GetStream(address));
}

TEST_F(STREAMAdapterTest, AStreamHeldByAHandleGoesWithIt)
{
    const ScratchFolder folder;
    Array<Handle> handles;
    EXPECT_THAT(Messages(Load(folder.Write("a.bin", "bytes") + "#ZORVEX(STREAM-doc)", handles)),
                IsEmpty());
    ASSERT_EQ(1, handles.GetSize());
    const String address = StreamAddress(static_cast<Stream*>(handles[0].GetData()));
    EXPECT_NE(nullptr, FindLiveStream(View(address)));
    handles[0].Destroy();
    EXPECT_EQ(nullptr, FindLiveStream(View(address)));
    handles[0].Destroy();  // gone already
}

TEST_F(STREAMAdapterTest, LoadGivesTheStreamOfTheLocationAsAHandle)
{
    const ScratchFolder folder;
    const String path = folder.Write("a.bin", "bytes");
    const auto load = [](const String& uri, Array<Handle>& handles)
    {
        const AdapterRef chain(Pointer(uri), nullptr);
        Result result;
        PluginProcessData data;
        data.m_operation = ZORVEX_OP_ADAPTER_LOAD;
        data.Set(0, &result);
        data.Set(10, &handles);
        chain->Process(&data);
        return result;
    };
    Array<Handle> handles;
    EXPECT_THAT(Messages(load(path + "#ZORVEX(STREAM-doc)", handles)), IsEmpty());
    ASSERT_EQ(1, handles.GetSize());
    EXPECT_EQ("STREAM", Utf8(handles[0].GetFormat()));
    const std::unique_ptr<Stream> stream(static_cast<Stream*>(handles[0].GetData()));
    char bytes[8] = {};
    EXPECT_EQ(5, stream->Read(bytes, 8, 1, 0));

    EXPECT_THAT(Messages(load("/none/a.bin#ZORVEX(STREAM-doc)", handles)),
                ElementsAre("ERROR 2: Cannot open file: /none/a.bin"));
    EXPECT_EQ(1, handles.GetSize());
}

}  // namespace zorvex_test
