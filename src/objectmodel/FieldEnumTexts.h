#pragma once

#include <cstdint>

#include "objectmodel/HookedVector.h"
#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// The allowed texts of an enumeration field. Immutable; the Strings keep their addresses.
class EnumTexts : public Allocator
{
public:
    /// The texts of `before`, if any, and those of a null-terminated list. Takes over `before`,
    /// whose texts stay for values that hold them.
    EnumTexts(EnumTexts* before, const char* const* values);
    ~EnumTexts();
    EnumTexts(const EnumTexts&) = delete;
    EnumTexts& operator=(const EnumTexts&) = delete;

    int Count() const { return static_cast<int>(m_texts.size()); }
    const String& At(int index) const { return m_texts[static_cast<size_t>(index)]; }
    /// The first text equal to the one given, or null.
    const String* Find(TextView text) const;

private:
    HookedVector<String> m_texts;
    HookedVector<std::uint16_t> m_slots;  // by hash: index + 1; 0 is free
    EnumTexts* m_before;                  // owned
};

}  // namespace zorvex_api
