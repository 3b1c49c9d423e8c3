#pragma once

#include <memory>

#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;
class Configuration;
class Object;
class URIResolver;

namespace internal
{

/// Finds or makes an instance of a plug-in: the session's default resolver, an instance configured
/// in `options` (which may be null), or one of the registered plug-ins; failing those the callback
/// is asked. `isNew` becomes 0 for a shared instance, 1 for one that the caller deletes by
/// ReleaseInstance.
void* FindInstance(int type, const String& name, Object* options, int& isNew);

/// The same for an adapter; a clone is marked as such in its record.
Adapter* FindAdapter(const String& format, Object* options, int& isNew);
URIResolver* FindResolver(Object* options, int& isNew);

/// Deletes an instance of a plug-in type through its virtual destructor.
void ReleaseInstance(int type, void* instance) noexcept;
/// How instances of type 2 are deleted; the parser's subsystem tells it.
void SetParserRelease(void (*release)(void*));

// The plug-in instance store of an object: instances to be used instead of new ones. On a
// Configuration it is a view of the option tree: "uri_resolver/instance" and
// "adapters/<format>/instance" hold instances as user pointers, and what is stored is set there.

/// An instance of the store, or null. An adapter must have the format `name`; for other types the
/// empty name matches any.
void* FindStoredInstance(Object* holder, int type, const String& name);
/// Adds an instance to the store. With `owned` it is deleted with `holder`.
void StoreInstance(Object* holder, int type, const String& name, void* instance, bool owned);
URIResolver* FindStoredResolver(Object* holder);

/// A private copy of `options`, for one operation; an empty tree for null. Values, pointers and
/// stored instances are carried over, the latter unowned.
std::unique_ptr<Configuration> CopyOptions(Configuration* options);

}  // namespace internal
}  // namespace zorvex_api
