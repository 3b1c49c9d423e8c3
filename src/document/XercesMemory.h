#pragma once

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>
#include <cstdint>

#include "document/ParseLimits.h"

namespace zorvex_parser
{

/// The memory of one parse, held against its limits.
///
/// Entities in attribute values are expanded before anybody is told of them: what they come to
/// shows here first. All that is left at the end is freed, so that a parse that ends by an
/// exception loses nothing. Outlives the parser and its exceptions.
class XercesMemory : public xercesc::MemoryManager
{
public:
    XercesMemory(const zorvex_api::ParseLimits& limits, const XMLFilePos& bytesRead);
    ~XercesMemory() override;
    XercesMemory(const XercesMemory&) = delete;
    XercesMemory& operator=(const XercesMemory&) = delete;

    xercesc::MemoryManager* getExceptionMemoryManager() override;
    /// A large block beyond a limit raises the limit's Exception, once.
    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;

private:
    struct alignas(std::max_align_t) Block
    {
        Block* next;
        Block* previous;
        XMLSize_t size;
    };

    void Check(XMLSize_t size);

    const zorvex_api::ParseLimits& m_limits;
    const XMLFilePos& m_bytesRead;
    Block m_blocks;  // head of the ring of live blocks
    std::uint64_t m_live = 0;
    bool m_failed = false;  // from then on blocks are freed at the end alone
};

}  // namespace zorvex_parser
