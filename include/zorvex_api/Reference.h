#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class ReferenceImpl;

/// The public value of a reference attribute: its text and the handles that it resolved to.
///
/// A value: copies are independent. One thread at a time.
class ZORVEX_API Reference : public Allocator
{
public:
    /// No text and no handle.
    Reference();
    Reference(const String& text);            // NOLINT: texts pass as references by design
    Reference(const Handle& handle);          // NOLINT: handles pass as references by design
    Reference(const Array<Handle>& handles);  // NOLINT
    Reference(const String& text, const Handle& handle);
    Reference(const String& text, const Array<Handle>& handles);
    Reference(const Reference& other);
    Reference(Reference&& other) noexcept;
    ~Reference();

    Reference& operator=(const Reference& other);
    /// Takes over the record of `other`, which is left empty.
    Reference& operator=(Reference&& other) noexcept;

    /// The text, empty when there is none. Valid until the next change.
    const String& GetString() const;
    void SetString(const String& text);

    /// The first handle, or the empty handle.
    const Handle& GetHandle() const;
    /// All handles; an empty array when there is none. Valid until the next change.
    const Array<Handle>& GetHandles() const;

    friend ZORVEX_API int operator==(const Reference& a, const Reference& b);
    friend ZORVEX_API int operator!=(const Reference& a, const Reference& b);
    /// By text, then by the number of handles, then by the first pair of handles that differs.
    friend ZORVEX_API int operator<(const Reference& a, const Reference& b);

private:
    static int Compare(const Reference& a, const Reference& b);

    ReferenceImpl* m_impl;  // owned; null while there is neither text nor handle
};

ZORVEX_API int operator==(const Reference& a, const Reference& b);
ZORVEX_API int operator!=(const Reference& a, const Reference& b);
ZORVEX_API int operator<(const Reference& a, const Reference& b);

}  // namespace zorvex_api
