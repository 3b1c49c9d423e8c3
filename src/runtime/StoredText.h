#pragma once

/// Field text in the form that the session stores: pooled or owned, UTF-8 or wide. All text of a
/// run has one form; a null word is the empty text.

#include <cstddef>
#include <string>
#include <string_view>

#include "runtime/SessionState.h"
#include "runtime/Text.h"

namespace zorvex_api::stored
{

using Word = const void*;

/// Makes the stored form of a text; null for an empty one.
Word Make(TextView text);
/// Another owner's word for the same text.
Word Share(Word word);
void Release(Word word);

bool IsEmpty(Word word);
size_t Bytes(Word word);  ///< memory of the text with its terminator

/// The stored bytes, when the session compresses: UTF-8, save that lone surrogates stand as three
/// bytes each. A writer has to replace those.
inline bool IsUtf8()
{
    return SessionState::Compression();
}
std::string_view Utf8(Word word);
/// The stored units, when the session doesn't compress.
TextView Wide(Word word);

String ToString(Word word);
void AppendTo(Word word, std::u16string& out);
bool Equals(Word word, TextView text);

/// The text as a view: of the stored units, or decoded into a buffer of its own.
class Reader
{
public:
    explicit Reader(Word word);
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    TextView Text() const { return m_text; }

private:
    static constexpr size_t kInline = 128;

    char16_t m_inline[kInline];
    std::u16string m_long;
    TextView m_text;
};

/// True while any field text is stored: the flags must not change.
bool AnyAlive();

}  // namespace zorvex_api::stored
