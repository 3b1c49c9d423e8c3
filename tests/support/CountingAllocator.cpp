#include "support/CountingAllocator.h"

#include <cstdlib>
#include <new>

namespace zorvex_test
{

void* CountingAllocator::allocate(size_t size)
{
    if (++m_total == m_refuseAt)
    {
        throw std::bad_alloc();
    }
    ++m_live;
    return std::malloc(size);
}

void CountingAllocator::deallocate(void* block)
{
    if (block != nullptr)
    {
        --m_live;
    }
    std::free(block);
}

}  // namespace zorvex_test
