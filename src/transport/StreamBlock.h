#pragma once

#include <cstdint>

namespace zorvex_api::internal
{

/// Where the compressed blocks get their bytes from and put them.
class BlockBytes
{
public:
    /// The number of bytes read.
    virtual int Read(void* buffer, int size) = 0;
    virtual bool Write(const void* buffer, int size) = 0;

protected:
    ~BlockBytes() = default;
};

/// A block is one byte 1, the length L of the deflated bytes as four bytes, least significant
/// first, and L bytes of zlib stream; or a byte 0 and the content as it is. The content's length
/// isn't in the block.

/// Writes `size` bytes of content.
bool WriteBlock(BlockBytes& bytes, const void* content, int size);

/// Reads `size` bytes of content and gives the number read: `size`, or fewer for a block that isn't
/// deflated and ends early, or 0 for damage. What a deflated block doesn't fill is zero.
int ReadBlock(BlockBytes& bytes, void* content, int size);

}  // namespace zorvex_api::internal
