#include "document/XercesMemory.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <new>

namespace zorvex_parser
{

namespace
{

// Smaller blocks are never refused: they are many only as long as the document is.
constexpr XMLSize_t kLargeBlock = 64 * 1024;
constexpr std::uint64_t kValueSlack = 1024 * 1024;
// A text that grows stands in a buffer of twice its size, and may be copied once.
constexpr std::uint64_t kBytesPerUnit = 4 * sizeof(XMLCh);
constexpr std::uint64_t kOwnNeeds = 32 * 1024 * 1024;

}  // namespace

XercesMemory::XercesMemory(const zorvex_api::ParseLimits& limits, const XMLFilePos& bytesRead)
    : m_limits(limits), m_bytesRead(bytesRead), m_blocks{&m_blocks, &m_blocks, 0}
{
}

XercesMemory::~XercesMemory()
{
    Block* block = m_blocks.next;
    while (block != &m_blocks)
    {
        Block* const next = block->next;
        ::operator delete(block);
        block = next;
    }
}

xercesc::MemoryManager* XercesMemory::getExceptionMemoryManager()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager;
}

void XercesMemory::Check(XMLSize_t size)
{
    using zorvex_api::ParseLimits;
    if (m_failed || size < kLargeBlock)
    {
        return;
    }
    if (size / 2 > std::max(m_limits.valueBytes, kValueSlack))
    {
        m_failed = true;
        m_limits.FailValue();
    }
    const std::uint64_t units =
        ParseLimits::kAmplificationAllowance +
        ParseLimits::kAmplification * static_cast<std::uint64_t>(m_bytesRead);
    if (m_live + size > kOwnNeeds + units * kBytesPerUnit)
    {
        m_failed = true;
        ParseLimits::FailAmplification();
    }
}

void* XercesMemory::allocate(XMLSize_t size)
{
    Check(size);
    auto* block = static_cast<Block*>(::operator new(sizeof(Block) + size));
    block->size = size;
    block->next = m_blocks.next;
    block->previous = &m_blocks;
    block->next->previous = block;
    m_blocks.next = block;
    m_live += size;
    return block + 1;
}

void XercesMemory::deallocate(void* memory)
{
    // After a failure in the middle of things the parser may give the same block back twice.
    if (memory == nullptr || m_failed)
    {
        return;
    }
    Block* block = static_cast<Block*>(memory) - 1;
    block->previous->next = block->next;
    block->next->previous = block->previous;
    m_live -= block->size;
    ::operator delete(block);
}

}  // namespace zorvex_parser
