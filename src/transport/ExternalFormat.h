#pragma once

#include "zorvex_api/String.h"

namespace zorvex_api
{

class Object;
struct ExternalRep;

namespace internal
{

/// What the owner of a reference tells of its target.
struct OwnerFormat
{
    String format;                    // empty: nothing
    ExternalRep* location = nullptr;  // of a representation whose targets the reference can share
};

/// Works out the format of a reference from its owner, which may be null.
OwnerFormat FormatFromOwner(const ExternalRep& reference, Object* owner);

}  // namespace internal
}  // namespace zorvex_api
