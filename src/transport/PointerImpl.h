#pragma once

#include <cstdint>

#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

constexpr std::uint32_t kPointerAuthority = 2;
constexpr std::uint32_t kPointerQuery = 4;
constexpr std::uint32_t kPointerFragment = 8;

/// What a Pointer holds.
struct PointerImpl : public Allocator
{
    PointerImpl() = default;
    PointerImpl(const PointerImpl& other);
    PointerImpl& operator=(const PointerImpl&) = delete;
    ~PointerImpl();

    String m_scheme;
    String m_host;
    std::int32_t m_port = 80;
    String m_path;       // the folder, without the last "/"
    String m_file;       // without extension
    String m_extension;  // behind the last "."
    String m_query;      // without "?"
    String m_fragment;   // without "#"
    std::uint32_t m_flags = 0;

    // caches of the getters of these names, filled on first use, emptied by Parse and Reset
    String m_fileName;
    String m_fullPath;
    String m_basePath;
    String m_absolutePath;
    String m_netPath;

    String m_text;  // the canonical text

    // the chain; both absent or of one length
    Array<String>* m_adapterTypes = nullptr;    // owned
    Array<String>* m_controlStrings = nullptr;  // owned

    int ChainLength() const;
    /// Makes the arrays when they are absent.
    void MakeChain();
    /// Appends a pair; the old type name is stored as the present one.
    void Append(TextView type, TextView control);
    void ClearChain();
    /// Empties everything but keeps the arrays.
    void Clear();
    /// Brings the fragment in line with the chain.
    void FitFragment();
    /// Sets the fragment and its flag.
    void SetFragment(TextView fragment);
    /// The text of the fields.
    void AppendText(std::u16string& out) const;
    /// FitFragment, then m_text from the fields.
    void RenewText();
};

/// `Pointer::Parse` with a switch for a text that is a file name made up from data: with
/// `treatAsFile` a text that begins with "#" and holds a "." behind it is a file name.
Result ParsePointer(Pointer& pointer, const String& text, int treatAsFile);

namespace internal
{

/// Empties `impl` and reads `text` into it.
Result ParsePointerText(PointerImpl& impl, TextView text, bool treatAsFile);

/// The parts of a text before any of them is changed.
struct PointerParts
{
    TextView location;  // in front of the query and the fragment
    TextView query;
    TextView fragment;
    bool hasQuery = false;
    bool hasFragment = false;
};

PointerParts SplitPointerText(TextView text, bool treatAsFile);

/// What opens a chain, and what ends the type of an element of it.
constexpr TextView kChainOpening = u"ZORVEX(";
constexpr TextView kOldChainOpening = u"oRB(";
constexpr TextView kDocMark = u"-doc";

/// Whether a fragment is read as a chain, or else as a locator.
bool OpensChain(TextView fragment);

}  // namespace internal
}  // namespace zorvex_api
