#pragma once

#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// A namespace URI that is known to the process.
///
/// One record for each URI, in a process-wide table in the order of registration, guarded by
/// mutex 6.
/// Records are counted: each class outside the main namespace holds one use of its namespace. A
/// pointer taken under the mutex is good as long as the mutex, or a use, is held.
class Namespace : public Allocator
{
public:
    const String& Uri() const { return m_uri; }
    const String& Prefix() const { return m_prefix; }
    /// What a legacy namespace stands for; null for a current one.
    const Namespace* Target() const { return m_target; }
    bool IsLegacy() const { return m_target != nullptr; }
    bool IsDefault() const { return m_isDefault; }
    bool IsCurrent() const { return m_isCurrent; }
    /// Grows from each record to the next.
    unsigned int Serial() const { return m_serial; }
    /// Next in the order of registration, null at the end. Under mutex 6.
    const Namespace* Next() const;

    /// The main namespace's URI.
    static TextView MainUri();
    static bool IsMain(TextView uri) { return uri == MainUri(); }

    // --- each of these takes mutex 6
    // --------------------------------------------------------------

    /// Enters a URI or adds a use to its record; then only the use count changes.
    static const Namespace* Register(TextView uri, TextView prefix, bool isDefault, bool isCurrent,
                                     const Namespace* target);
    /// Drops a use; the record goes with its last.
    static void Release(TextView uri);
    /// Null when the URI isn't registered.
    static const Namespace* FindByUri(TextView uri);
    /// The first record, in the order of registration, with this prefix; null if none.
    static const Namespace* FindByPrefix(TextView prefix);
    /// The prefix registered for a URI, empty if there is none.
    static String PrefixOf(TextView uri);
    /// The first record in the order of registration; hold mutex 6 for the whole walk.
    static const Namespace* First();
    static int Count();

    /// The main namespace, and at the end of the fill the legacy ones and "xsi". A second call adds
    /// no further use.
    static void RegisterMain();
    static void RegisterLegacy();
    /// Drops what RegisterMain and RegisterLegacy hold. Namespaces of classes that objects still
    /// use stay until those go.
    static void ReleaseBuiltIn();

private:
    friend class NamespaceTable;
    Namespace(TextView uri, TextView prefix, bool isDefault, bool isCurrent,
              const Namespace* target);

    const Namespace* m_target;
    String m_prefix;
    String m_uri;
    bool m_isDefault;
    bool m_isCurrent;
    int m_useCount = 1;
    unsigned int m_serial = 0;
    Namespace* m_next = nullptr;
    Namespace* m_previous = nullptr;
};

}  // namespace zorvex_api
