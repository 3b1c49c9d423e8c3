#pragma once

/// The pool of field text: equal values of all documents share one buffer.

#include <cstddef>

#include "runtime/Text.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/Session.h"

namespace zorvex_api
{

/// Every operation takes mutex 7. A pooled pointer refers to terminated text: UTF-8 when the
/// session compresses, else wide units.
class StringData
{
public:
    /// Pooled pointer for a text, with one use added. Null for a null text. Without compression,
    /// and with `copy` 0, the pool takes over the buffer, which came from Allocator.
    static const void* Acquire(const unsigned short* text, int copy);
    static const void* Acquire(TextView text);
    /// The same for text in stored form, which came from Allocator and is taken over.
    static const void* AcquireStored(void* stored);
    /// Adds a use to a pooled pointer.
    static const void* AddUse(const void* stored);
    /// Drops a use; the last one frees the text.
    static void Release(const void* stored);

    /// Number of different texts in the pool.
    static size_t GetOccupied();

    /// Sets the storage flags; refused with a WARNING while any field text is stored.
    static Result Init(int pool, int compress);
    /// Frees the table if nothing is in it.
    static void Fini();
};

}  // namespace zorvex_api
