#pragma once

#include <atomic>
#include <cstddef>

#include "zorvex_api/Allocator.h"

namespace zorvex_test
{

/// Memory hooks that know how many blocks are out, and can refuse one.
class CountingAllocator : public zorvex_api::AllocatorBase, public zorvex_api::DeAllocatorBase
{
public:
    void* allocate(size_t size) override;
    void deallocate(void* block) override;

    long long Live() const { return m_live; }
    long long Total() const { return m_total; }

    /// Raises std::bad_alloc for the `nth` allocation from now, 1 being the next; 0 never.
    void RefuseNth(long long nth) { m_refuseAt = nth == 0 ? 0 : m_total + nth; }

private:
    std::atomic<long long> m_live{0};
    std::atomic<long long> m_total{0};
    std::atomic<long long> m_refuseAt{0};
};

/// Registers hooks for a scope, as an application does through `Initialise`, and takes them off.
class HooksScope
{
public:
    explicit HooksScope(CountingAllocator& hooks)
    {
        zorvex_api::Allocator::RegisterHandlers(&hooks, &hooks);
    }
    ~HooksScope() { zorvex_api::Allocator::RegisterHandlers(nullptr, nullptr); }
    HooksScope(const HooksScope&) = delete;
    HooksScope& operator=(const HooksScope&) = delete;
};

}  // namespace zorvex_test
