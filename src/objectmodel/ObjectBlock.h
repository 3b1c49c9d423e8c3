#pragma once

#include <cstddef>
#include <new>

#include "objectmodel/ClassData.h"
#include "runtime/FreeList.h"
#include "zorvex_api/Object.h"

namespace zorvex_api::internal
{

/// Shell and record of one object in one block of a free list: a document costs one block for each
/// object, and what is used together lies together.
///
/// Only for classes whose shell is an Object and nothing more, made by their make function. An
/// object that an application makes with `new` has a shell of its own.
class ObjectBlock
{
public:
    /// Makes an object of a class whose shell fits.
    template <class T>
    static Object* Make()
    {
        static_assert(sizeof(T) == sizeof(Object));
        Guard guard{Take()};
        Object* const object = ::new (guard.block) T();
        guard.block = nullptr;
        return object;
    }

    /// The place of the record of a shell that is being made; null unless it stands in a block.
    static void* TakeRecordPlace(const Object* shell)
    {
        if (t_made != shell)
        {
            return nullptr;
        }
        t_made = nullptr;
        return static_cast<char*>(const_cast<void*>(static_cast<const void*>(shell))) +
               sizeof(Object);
    }
    /// For the destructor of a shell that stands in a block, at its very end: the block goes when
    /// the shell's memory is given back.
    static void NoteEnd(const Object* shell) { t_ended = shell; }
    /// Gives the block back if the memory is that of a shell that stood in one.
    static bool GiveBack(void* memory)
    {
        if (t_ended != memory || memory == nullptr)
        {
            return false;
        }
        t_ended = nullptr;
        FreeList<kSize>::Give(memory);
        return true;
    }

private:
    static constexpr size_t kSize = sizeof(Object) + sizeof(ClassData);
    static_assert(sizeof(Object) % alignof(ClassData) == 0);

    /// Gives the block back when a constructor throws.
    struct Guard
    {
        ~Guard()
        {
            if (block != nullptr)
            {
                t_made = nullptr;
                t_ended = nullptr;
                FreeList<kSize>::Give(block);
            }
        }
        void* block;
    };

    static void* Take()
    {
        void* const block = FreeList<kSize>::Take();
        t_made = block;
        return block;
    }

    static thread_local constinit const void* t_made;
    static thread_local constinit const void* t_ended;
};

}  // namespace zorvex_api::internal
