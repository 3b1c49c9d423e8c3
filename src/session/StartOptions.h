#pragma once

#include <memory>

#include "runtime/Text.h"
#include "zorvex_api/Configuration.h"

namespace zorvex_api::internal
{

/// The option texts given to `Initialise`.
class StartOptions
{
public:
    StartOptions(int count, const char** texts) : m_count(count), m_texts(texts) {}

    /// "multithreading..." with an end of "true" in any case.
    bool Multithreading() const;
    /// "__performance/improvements/on..." with an end of "false" in any case.
    bool ImprovementsOff() const;

    /// A tree of the options of the form "name=value"; others are left out.
    std::unique_ptr<Configuration> MakeConfiguration() const;

private:
    bool AnyIs(TextView start, TextView lowerCaseEnd) const;

    int m_count;
    const char** m_texts;  // the caller's
};

}  // namespace zorvex_api::internal
