#pragma once

namespace zorvex_api
{

class ClassData;
class IdTable;
class Object;

/// The one place where the end of an object reaches whatever knows it: the parser plug-in,
/// resolvers and use counts, references from anywhere, the map of documents, its document network,
/// the table of its ids, active configurations, the paging pool and the Java wrappers.
///
/// Runs once for each object, before its fields go. Its cost is the number of links to the object.
/// `treeTable` is the table of the tree that the object leaves, null when that dies as a whole.
void EndOfObject(ClassData& data, IdTable* treeTable) noexcept;

/// Deletes a root that nothing holds any more. While an object ends on this thread the root waits
/// for that, so that a chain of documents that hold each other ends without a stack of its length.
void DeleteUnheldRoot(Object* root) noexcept;

}  // namespace zorvex_api
