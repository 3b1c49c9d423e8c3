#pragma once

#include "zorvex_api/AutoPtr.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// A Pointer for short-lived use, taken from a free list and given back to it.
class PointerRef : public AutoPtr<Pointer>
{
public:
    PointerRef();
    explicit PointerRef(const String& text);
    explicit PointerRef(const unsigned short* text);
    explicit PointerRef(const char16_t* text);
    PointerRef(const PointerRef&) = delete;
    PointerRef& operator=(const PointerRef&) = delete;
    ~PointerRef() override;

    /// Deletes the Pointers that wait in the free list; run when the session ends.
    static void ReleaseFreeList();
};

}  // namespace zorvex_api
