#include "zorvex_api/Allocator.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "runtime/HookBlocks.h"

namespace zorvex_api
{

AllocatorBase* Allocator::pAllocatorBase = nullptr;
DeAllocatorBase* Allocator::pDeAllocatorBase = nullptr;

AllocatorBase::~AllocatorBase() = default;
DeAllocatorBase::~DeAllocatorBase() = default;

namespace
{

void* AllocateHooked(AllocatorBase& hook, DeAllocatorBase* owner, size_t size)
{
    void* const block = hook.allocate(size);
    if (block != nullptr && owner != nullptr)
    {
        try
        {
            internal::HookBlocks::Add(block, owner);
        }
        catch (...)
        {
            owner->deallocate(block);
            throw;
        }
    }
    return block;
}

}  // namespace

void* Allocator::allocate(size_t size)
{
    void* const block = pAllocatorBase != nullptr && !internal::UnhookedScope::IsActive()
                            ? AllocateHooked(*pAllocatorBase, pDeAllocatorBase, size)
                            : std::malloc(size);
    if (block == nullptr && size != 0)
    {
        throw std::bad_alloc();
    }
    return block;
}

void Allocator::deallocate(void* block)
{
    if (block == nullptr)
    {
        if (pDeAllocatorBase != nullptr)
        {
            pDeAllocatorBase->deallocate(nullptr);
        }
        return;
    }
    DeAllocatorBase* const owner =
        internal::HookBlocks::AnyEver() ? internal::HookBlocks::Remove(block) : nullptr;
    if (owner != nullptr)
    {
        owner->deallocate(block);
        return;
    }
    std::free(block);
}

void Allocator::copy(void* to, const void* from, size_t size)
{
    if (size != 0)
    {
        std::memcpy(to, from, size);
    }
}

void Allocator::move(void* to, const void* from, size_t size)
{
    if (size != 0)
    {
        std::memmove(to, from, size);
    }
}

void Allocator::set(void* to, int value, size_t size)
{
    if (size != 0)
    {
        std::memset(to, value, size);
    }
}

int Allocator::compare(const void* left, const void* right, size_t size)
{
    const int difference = size != 0 ? std::memcmp(left, right, size) : 0;
    return (difference > 0) - (difference < 0);
}

void Allocator::RegisterHandlers(AllocatorBase* allocator, DeAllocatorBase* deallocator)
{
    pAllocatorBase = allocator;
    pDeAllocatorBase = deallocator;
}

AllocatorBase* Allocator::GetAllocator()
{
    return pAllocatorBase;
}
DeAllocatorBase* Allocator::GetDeAllocator()
{
    return pDeAllocatorBase;
}

}  // namespace zorvex_api
