#pragma once

namespace zorvex_api
{

class Configuration;
class Result;
class String;

namespace internal
{

/// Counts the documents of one chain of references that are being loaded on this thread, for the
/// length of a scope: a.xml pulls in b.xml, which pulls in c.xml, and so on; and all documents that
/// one load opens.
///
/// Made around each load of a document. The options "adapters/ZORVEX/import/max_documents" (of one
/// chain) and "adapters/ZORVEX/import/max_all_documents" of the outermost load are the limits.
class LoadDepth
{
public:
    explicit LoadDepth(Configuration* options);
    ~LoadDepth();

    LoadDepth(const LoadDepth&) = delete;
    LoadDepth& operator=(const LoadDepth&) = delete;

    /// False, with error 4 that names the option, when a limit is passed or the stack of the
    /// thread has no room for another document: then `uri` must not be loaded.
    bool Allows(const String& uri, Result& result) const;
};

}  // namespace internal
}  // namespace zorvex_api
