#pragma once

#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;
class Configuration;
class Object;
class URIResolver;
struct ExternalRep;

namespace internal
{

/// What the owner of a reference tells of its target.
struct OwnerFormat
{
    String format;                    // empty: nothing
    ExternalRep* location = nullptr;  // of a representation whose targets the reference can share
};

/// How the context of a LocatorRef is followed, should that be needed: as the reference itself is,
/// so that one resolver sees all documents of a load. Nothing is owned.
struct ContextWay
{
    Adapter* previous;
    Configuration* options;
    URIResolver* resolver;
    int load;
    bool loadAllowed;
};

/// Works out the format of a reference from its owner, which may be null. Without a `way` a context
/// that wasn't followed yet tells nothing.
OwnerFormat FormatFromOwner(const ExternalRep& reference, Object* owner, const ContextWay* way);

}  // namespace internal
}  // namespace zorvex_api
