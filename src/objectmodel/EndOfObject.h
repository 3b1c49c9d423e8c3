#pragma once

namespace zorvex_api
{

class ClassData;
class IdTable;

/// The one place where the end of an object reaches whatever knows it: the parser plug-in,
/// resolvers and use counts, references from anywhere, the map of documents, its document network,
/// the table of its ids, active configurations, the paging pool and the Java wrappers.
///
/// Runs once for each object, before its fields go. Its cost is the number of links to the object.
/// `treeTable` is the table of the tree that the object leaves, null when that dies as a whole.
void EndOfObject(ClassData& data, IdTable* treeTable) noexcept;

}  // namespace zorvex_api
