#include "transport/StreamBlock.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace zorvex_api::internal
{

namespace
{

constexpr int kLengthBytes = 4;
constexpr int kSmallest = 11;            // shorter contents aren't worth deflating
constexpr std::uint32_t kPiece = 16384;  // bytes read at a time: L is not to be trusted with memory

bool WriteStored(BlockBytes& bytes, const void* content, int size)
{
    const char flag = 0;
    return bytes.Write(&flag, 1) && bytes.Write(content, size);
}

/// The deflated length, 0 when it doesn't fit into `room`, or -1 for an error of zlib.
int Deflate(const void* content, int size, unsigned char* out, int room)
{
    z_stream z{};
    if (deflateInit(&z, Z_DEFAULT_COMPRESSION) != Z_OK)
    {
        return -1;
    }
    z.next_in = static_cast<Bytef*>(const_cast<void*>(content));
    z.avail_in = static_cast<uInt>(size);
    z.next_out = out;
    z.avail_out = static_cast<uInt>(room);
    const int status = deflate(&z, Z_FINISH);
    const int length = room - static_cast<int>(z.avail_out);
    deflateEnd(&z);
    if (status == Z_STREAM_END)
    {
        return length;
    }
    return status == Z_OK || status == Z_BUF_ERROR ? 0 : -1;
}

/// Inflates pieces into a room that never grows.
class Inflater
{
public:
    Inflater(void* out, int room)
    {
        m_z.next_out = static_cast<Bytef*>(out);
        m_z.avail_out = static_cast<uInt>(room);
        m_ready = inflateInit(&m_z) == Z_OK;
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    ~Inflater()
    {
        if (m_ready)
        {
            inflateEnd(&m_z);
        }
    }

    bool IsReady() const { return m_ready; }
    uInt RoomLeft() const { return m_z.avail_out; }

    /// False for damaged bytes. What comes behind the end or doesn't fit is passed over.
    bool Put(unsigned char* piece, std::uint32_t size)
    {
        m_z.next_in = piece;
        m_z.avail_in = size;
        while (!m_ended && m_z.avail_in > 0)
        {
            const int status = inflate(&m_z, Z_NO_FLUSH);
            if (status == Z_BUF_ERROR && m_z.avail_out == 0)
            {
                m_ended = true;
                return true;
            }
            if (status != Z_OK && status != Z_STREAM_END)
            {
                return false;
            }
            m_ended = status == Z_STREAM_END;
        }
        return true;
    }

private:
    z_stream m_z{};
    bool m_ready = false;
    bool m_ended = false;
};

int ReadDeflated(BlockBytes& bytes, void* content, int size, std::uint32_t length)
{
    Inflater inflater(content, size);
    if (!inflater.IsReady())
    {
        return 0;
    }
    unsigned char piece[kPiece];
    while (length > 0)
    {
        const int wanted = static_cast<int>(std::min(length, kPiece));
        if (bytes.Read(piece, wanted) != wanted ||
            !inflater.Put(piece, static_cast<std::uint32_t>(wanted)))
        {
            return 0;
        }
        length -= static_cast<std::uint32_t>(wanted);
    }
    const uInt left = inflater.RoomLeft();
    std::memset(static_cast<char*>(content) + (size - static_cast<int>(left)), 0, left);
    return size;
}

}  // namespace

bool WriteBlock(BlockBytes& bytes, const void* content, int size)
{
    if (size < kSmallest)
    {
        return WriteStored(bytes, content, size);
    }
    const int room = size - kLengthBytes - 1;  // longer doesn't pay
    std::unique_ptr<unsigned char[]> deflated(new (std::nothrow) unsigned char[room]);
    if (deflated == nullptr)
    {
        return false;
    }
    const int length = Deflate(content, size, deflated.get(), room);
    if (length <= 0)
    {
        return length == 0 && WriteStored(bytes, content, size);
    }
    const auto bits = static_cast<std::uint32_t>(length);
    const unsigned char head[] = {
        1, static_cast<unsigned char>(bits), static_cast<unsigned char>(bits >> 8),
        static_cast<unsigned char>(bits >> 16), static_cast<unsigned char>(bits >> 24)};
    return bytes.Write(head, static_cast<int>(sizeof head)) && bytes.Write(deflated.get(), length);
}

int ReadBlock(BlockBytes& bytes, void* content, int size)
{
    unsigned char head[kLengthBytes];
    if (bytes.Read(head, 1) != 1)
    {
        return 0;
    }
    if (head[0] != 1)
    {
        return bytes.Read(content, size);
    }
    if (bytes.Read(head, kLengthBytes) != kLengthBytes)
    {
        return 0;
    }
    const std::uint32_t length =
        static_cast<std::uint32_t>(head[0]) | static_cast<std::uint32_t>(head[1]) << 8 |
        static_cast<std::uint32_t>(head[2]) << 16 | static_cast<std::uint32_t>(head[3]) << 24;
    return ReadDeflated(bytes, content, size, length);
}

}  // namespace zorvex_api::internal
