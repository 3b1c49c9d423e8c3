#pragma once

#include <cstddef>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Object;

/// General pointer to a loaded thing: an Object, or a thing of another format that only the
/// adapter of that format understands.
///
/// A value of two words. It owns nothing that it points at. A handle to an Object needs no
/// allocation; any other handle carries the name of its format as text.
class ZORVEX_API Handle : public Allocator
{
public:
    /// The empty handle: no data, no format.
    Handle();
    Handle(const Handle& other);
    /// An object handle; null gives the empty handle.
    Handle(Object* object);  // NOLINT: objects pass as handles by design
    /// A handle of `format`. The format "ZORVEX" makes an object handle of `data`, which then must
    /// be an Object.
    Handle(void* data, const String& format);
    ~Handle();

    Handle& operator=(const Handle& other);

    operator void*() const;    // NOLINT: part of the interface
    operator Object*() const;  // NOLINT: part of the interface
    /// Whether there is data, for conditions: the two pointers above leave them ambiguous.
    explicit operator bool() const { return m_data != nullptr; }

    /// The data, whatever its format.
    void* GetData() const;
    /// The object of an object handle, else null.
    Object* GetObject() const;
    /// 1 for an object handle. An empty handle isn't one.
    int IsObject() const;

    /// "ZORVEX" for an object handle, else the format's name; empty for the empty handle. Valid as
    /// long as the handle is unchanged.
    const String& GetFormat() const;
    /// "ZORVEX" turns the handle into an object handle, any other text leaves that form.
    void SetFormat(const String& format);

    /// Makes the handle empty. The thing that it pointed at stays.
    void Clear();
    /// Asks the adapter of the format to destroy the thing. Without data, format or adapter it does
    /// nothing. The handle keeps its two words.
    void Destroy();

    friend ZORVEX_API int operator==(const Handle& a, const Handle& b);
    friend ZORVEX_API int operator!=(const Handle& a, const Handle& b);
    /// By format first (an object handle counts as "ZORVEX"), then by the data as a number.
    friend ZORVEX_API int operator<(const Handle& a, const Handle& b);

private:
    bool HasObjectMark() const;
    const String& Text() const;
    void DropFormat();
    void StoreFormat(const String& format);

    void* m_data;
    // The one pointer of a String, or a marker that no String can hold: the object handle.
    void* m_format;
};

ZORVEX_API int operator==(const Handle& a, const Handle& b);
ZORVEX_API int operator!=(const Handle& a, const Handle& b);
ZORVEX_API int operator<(const Handle& a, const Handle& b);

}  // namespace zorvex_api
