#pragma once

/// What the object model needs from the subsystems above it. Declared here, defined there.

namespace zorvex_api
{

class ClassData;
class Object;
class Handle;

namespace upper
{

/// Takes a dying object out of all live resolvers and of the table of use counts
/// (src/transport/ObjectEnd.cpp). Called only for objects marked kRegistered or kUseCounted.
void ForgetRegistered(ClassData& data) noexcept;
/// A document ends: deletes the pulled-in documents that only it, and those documents themselves,
/// refer to (src/transport/ObjectEnd.cpp). Called once, before the document's fields go.
void ReleaseDocumentNetwork(ClassData& document) noexcept;
/// Tells the parser plug-in the end of an object that belongs to it (src/document).
void ReleaseParserCache(Object* object) noexcept;
/// Asks the adapter of a handle's format to destroy the thing (src/transport).
void DestroyForeign(const Handle& handle);
/// Takes a dying Configuration off the stacks of active configurations of this thread
/// (src/objectmodel/ConfigurationRef.cpp).
void ForgetConfiguration(Object* configuration) noexcept;

}  // namespace upper
}  // namespace zorvex_api
