#pragma once

#include "runtime/Text.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// Whether a String lies over a text of somebody else's.
inline bool IsBorrowed(const String& text)
{
    const StringImpl* impl = text.GetImplementation();
    return impl != nullptr && impl->wide != nullptr && impl->capacity == 0;
}

/// A String for metadata to keep: over the same literal when `borrowed` says that `text` borrows
/// one, else a copy.
inline String KeepText(const String& text, bool borrowed)
{
    return borrowed && IsBorrowed(text) ? BorrowConstant(View(text)) : text;
}

}  // namespace zorvex_api
