#pragma once

#include <string>

#include "zorvex_api/String.h"

namespace zorvex_api
{

class Configuration;
class FieldDescriptor;
class Object;
class Pointer;
class Result;
class URIResolver;

namespace internal
{

/// What the resolver is asked about one reference: an application's resolver can refuse to have it
/// followed, or change the pointer in place.
class ReferenceQuestion
{
public:
    /// `owner` and `field` may be null. None is owned.
    ReferenceQuestion(URIResolver* resolver, Object* owner, const FieldDescriptor* field,
                      Configuration* options);

    /// Before anything is done about the reference, and before its document is opened or written.
    /// True when the resolver agrees.
    bool MayFollow(Pointer& pointer, Result& result);
    bool MayLoad(Pointer& pointer, Result& result);

private:
    bool Ask(int operation, Pointer& pointer, Result& result);

    URIResolver* m_resolver;
    Object* m_owner;
    Configuration* m_options;
    std::string m_fieldName;  // UTF-8
};

/// The resolver for a reference: the one given, of the options, the session's, of the owner's
/// document, or a new one that lives as long as this.
class ReferenceResolver
{
public:
    ReferenceResolver(URIResolver* given, Configuration* options, Object* owner);
    ~ReferenceResolver();
    ReferenceResolver(const ReferenceResolver&) = delete;
    ReferenceResolver& operator=(const ReferenceResolver&) = delete;

    URIResolver* Get() const { return m_resolver; }

private:
    URIResolver* m_resolver = nullptr;
    bool m_owned = false;
};

}  // namespace internal
}  // namespace zorvex_api
