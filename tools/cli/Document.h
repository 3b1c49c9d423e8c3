#pragma once

#include <string>
#include <vector>

#include "Options.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_cli
{

/// A document that a command works on, with what its references brought in.
///
/// Owns the roots of the load. One resolver serves the load and what follows, so that references
/// find documents that are loaded already.
class Document
{
public:
    explicit Document(const Options& options);
    ~Document();

    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// Loads `uri` and reports what the Result says. False when there is no document or the Result
    /// isn't Ok; what could be read is there all the same.
    bool Load(const std::string& uri);

    /// Saves the document and reports. False when the Result isn't Ok.
    bool Save(const std::string& uri);

    /// The root, null when nothing was read.
    zorvex_api::Object* Root() const { return m_roots.empty() ? nullptr : m_roots.front(); }
    const std::vector<zorvex_api::Object*>& Roots() const { return m_roots; }

    /// What the load reported.
    const zorvex_api::Result& LoadResult() const { return m_result; }

    /// The object named on a command line: an id, with or without "#", or "." for the root. Null
    /// when there is none, which is reported.
    zorvex_api::Object* Find(const std::string& id) const;

private:
    zorvex_api::URIResolver m_resolver;
    zorvex_api::URIResolverRef m_resolverRef;
    zorvex_api::Configuration m_configuration;
    zorvex_api::Result m_result;
    std::vector<zorvex_api::Object*> m_roots;  // owned
};

}  // namespace zorvex_cli
