#pragma once

#include <cstdint>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

struct PointerImpl;

/// Names a document or a part of one: a location and a chain of adapters.
///
///     [scheme ":"] ["//" host [":" port]] [path "/"] file ["." extension] ["?" query] ["#"
///     fragment] fragment = locator | "ZORVEX(" type "-doc" ["/" control] {"/" type "-doc" ["/"
///     control]} ")"
///
/// The chain is a list of pairs of an adapter type and a control string, outermost first. A
/// fragment without the opening "ZORVEX(" is a chain of one, of the type `ZORVEX`.
///
/// A value: copies are independent. Touches no file and no network. One thread at a time: getters
/// fill caches. References returned are valid until the next change of the Pointer.
class ZORVEX_API Pointer : public Allocator
{
public:
    /// Empty.
    Pointer();

    /// Parses `text` and drops the Result.
    Pointer(const String& text);

    Pointer(const Pointer& other);

    /// Takes over the state; `other` is left empty and invalid.
    Pointer(Pointer&& other) noexcept;

    ~Pointer();

    Pointer& operator=(const Pointer& other);
    Pointer& operator=(Pointer&& other) noexcept;

    /// Replaces the whole state by the reading of `text`. Code 517 for an opening "ZORVEX(" without
    /// a ")": the location then stands as read, the chain is empty.
    Result Parse(const String& text);

    /// Brings the fragment in line with the chain and gives the canonical text. Always succeeds.
    Result Construct(String& out);

    /// Appends a pair; the old type name "oRB" is stored as "ZORVEX".
    Result Add(const String& type, const String& control);

    /// Puts a pair in at `index`, 0 to the count; ignored for another index.
    void Insert(int index, const String& type, const String& control);

    /// Takes the pair at `index` out; ignored for an index outside the chain.
    void Remove(int index);

    /// Empties the chain; the text stays as it is until the next `Construct`.
    void RemoveAll();

    /// Empties everything; the port is 80.
    void Reset();

    /// The length of the chain.
    int GetAdapterCount() const;

    /// Empty outside the chain.
    const String& GetAdapterType(int index) const;
    void SetAdapterType(int index, const String& type);

    /// Empty outside the chain.
    const String& GetControlString(int index) const;
    void SetControlString(int index, const String& control);

    /// The last adapter type, empty for an empty chain.
    const String& GetFormat() const;

    /// The last control string, empty for an empty chain.
    const String& GetLocatorString() const;
    void SetLocatorString(const String& control);

    /// Makes `format` the last adapter type. Empty or "unset" takes out a lone type that names no
    /// place, and changes nothing else.
    void EnsureFormat(const String& format);

    const String& GetScheme() const;
    const String& GetHost() const;
    const String& GetPath() const;
    const String& GetFile() const;
    const String& GetExtension() const;
    const String& GetQuery() const;
    const String& GetFragment() const;

    /// 80 unless the text gives another.
    int GetPort() const;

    /// The canonical text.
    const String& GetString() const;

    /// The file with its extension.
    const String& GetFileName() const;

    /// Host and path.
    const String& GetBasePath() const;

    /// Host, path and file name.
    const String& GetFullPath() const;

    /// Scheme, host, path and file name.
    const String& GetAbsolutePath() const;

    /// Scheme, host and path.
    const String& GetNetPath() const;

    /// Splits `name` at its last "." into file and extension. The canonical text follows at the
    /// next `Construct`.
    void SetFileName(const String& name);

    /// Replaces the fragment, a leading "#" taken off, and reads the whole text again. An empty one
    /// only has the text read again.
    void SetFragment(const String& fragment);

    /// Non-zero when the text has a fragment.
    int HasFragment() const;

    /// Non-zero when the chain isn't empty.
    int HasPtrFragment() const;

    /// Non-zero when the path isn't empty.
    int HasPath() const;

    /// Non-zero when the place depends on a working folder.
    int IsRelative() const;

    /// Non-zero when there is a location or a chain that can stand without one.
    int IsValid() const;

    /// The record, owned by this Pointer; null after a move.
    PointerImpl* GetImplementation() const;

    /// Escapes by the bits of `mode`: 4 "%", 1 blank, 2 "#"; 8 (alone) by the structure of `in`
    /// read as a Pointer. Gives 1.
    static int EscapeString(const String& in, String& out, std::uint32_t mode);

    /// The reverse: 1 "%20", 2 "%23", 4 "%25"; 8 (alone) each "%xx" to the unit of that value. A
    /// "%" without hexadecimal digits behind it stays, and so does "%00". Gives 1.
    static int UnescapeString(const String& in, String& out, std::uint32_t mode);

private:
    PointerImpl& Impl();

    PointerImpl* m_impl;  // owned; null after a move
};

/// 1 when both name the same document through the same adapters. The last control string takes no
/// part, and an empty scheme equals "file".
ZORVEX_API int operator==(const Pointer& a, const Pointer& b);
ZORVEX_API int operator!=(const Pointer& a, const Pointer& b);

/// The order of the canonical texts.
ZORVEX_API int operator<(const Pointer& a, const Pointer& b);

}  // namespace zorvex_api
