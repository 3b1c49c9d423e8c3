#pragma once

#include "runtime/Text.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// A String for metadata to keep: over the same literal when `borrowed` says that `text` borrows
/// one, else a copy.
inline String KeepText(const String& text, bool borrowed)
{
    const StringImpl* impl = text.GetImplementation();
    const bool borrows =
        borrowed && impl != nullptr && impl->wide != nullptr && impl->capacity == 0;
    return borrows ? BorrowConstant(View(text)) : text;
}

}  // namespace zorvex_api
