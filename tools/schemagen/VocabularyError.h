#pragma once

#include <stdexcept>
#include <string>

#include "Model.h"

namespace schemagen
{

/// A fault in a vocabulary file: "file:line: cause".
class VocabularyError : public std::runtime_error
{
public:
    VocabularyError(const Place& place, const std::string& cause)
        : std::runtime_error(place.file + ":" + std::to_string(place.line) + ": " + cause)
    {
    }
};

}  // namespace schemagen
